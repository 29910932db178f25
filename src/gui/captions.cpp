#include "gui/captions.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QStringList>
#include <QTabWidget>
#include <QTableWidget>
#include <functional>

namespace tv {
namespace {

class Walk {
public:
  Walk(const Session& s, std::string_view section) : s_(s), section_(section) {}

  void visit(QWidget* widget) const {
    if (auto* label = qobject_cast<QLabel*>(widget))
      visit_label(*label);
    else if (auto* button = qobject_cast<QAbstractButton*>(widget))
      visit_button(*button);
    else if (auto* group = qobject_cast<QGroupBox*>(widget))
      group->setTitle(caption(group));
    else if (auto* tabs = qobject_cast<QTabWidget*>(widget))
      for (int i = 0; i < tabs->count(); ++i) tabs->setTabText(i, caption(tabs->widget(i)));
    else if (auto* table = qobject_cast<QTableWidget*>(widget))
      table->setHorizontalHeaderLabels(page_captions(table));
    else if (auto* combo = qobject_cast<QComboBox*>(widget))
      visit_entries(*combo);
    else if (auto* menu = qobject_cast<QMenu*>(widget))
      visit_menu(*menu);
    name_and_tip(*widget);
  }

private:
  QString text(const QString& key) const { return qt(s_.language.text(section_, utf8(key))); }

  static QString key_of(const QObject* widget) {
    const QVariant key = widget->property(kCaptionKey);
    return key.isValid() ? key.toString() : widget->objectName();
  }

  QString caption(const QObject* widget) const {
    const QVariant fixed = widget->property(kFixedText);
    return fixed.isValid() ? fixed.toString() : text(key_of(widget));
  }

  QStringList page_captions(const QObject* widget) const {
    QStringList captions;
    for (const QString& key : widget->property(kPageKeys).toStringList()) captions << text(key);
    return captions;
  }

  void visit_label(QLabel& label) const {
    label.setTextFormat(Qt::PlainText);  // names of records and files are no markup
    const QVariant unit = label.property(kUnitKey);
    if (unit.isValid())
      label.setText(qt(s_.language.text("units", utf8(unit.toString()))));
    else if (label.property(kCaptionKey).isValid())
      label.setText(caption(&label));
  }

  void visit_button(QAbstractButton& button) const {
    if (!button.objectName().startsWith("qt_") && !key_of(&button).isEmpty() &&
        !button.property("no_caption").toBool())
      button.setText(caption(&button));
  }

  void visit_entries(QComboBox& combo) const {
    const QStringList captions = page_captions(&combo);
    for (int i = 0; i < captions.size() && i < combo.count(); ++i) combo.setItemText(i, captions[i]);
  }

  void visit_menu(QMenu& menu) const {
    if (!menu.objectName().isEmpty()) menu.setTitle(caption(&menu));
    for (QAction* action : menu.actions())
      if (!action->menu() && !action->isSeparator() && !action->objectName().isEmpty()) {
        // Two blanks or more part the caption from a key that the system itself defines.
        QString shown = caption(action);
        if (action->property(kEllipsis).toBool() && !shown.contains("...")) shown += QChar(0x2026);
        if (const qsizetype gap = shown.indexOf("  "); gap > 0)
          shown = shown.left(gap) + '\t' + shown.mid(gap).trimmed();
        action->setText(shown);
        action->setToolTip(plain_tip(tip_text(s_, action->objectName(), caption(action))));
      }
  }

  static QString tip_text(const Session& s, const QString& name, const QString& otherwise) {
    const QString tip = qt(s.language.tip(utf8(name)));
    return tip.isEmpty() ? plain_caption(otherwise) : tip;
  }

  // A screen reader says the caption of the field's label, and its unit.
  void name_and_tip(QWidget& widget) const {
    const QString name = widget.objectName();
    if (name.isEmpty() || name.startsWith("qt_")) return;
    QString spoken = caption(&widget);
    if (const QVariant label = widget.property("label_key"); label.isValid()) {
      spoken = text(label.toString());
      if (const QVariant index = widget.property("label_index"); index.isValid())
        spoken += ' ' + index.toString();
    }
    widget.setProperty(kSpoken, plain_caption(spoken));
    if (!spoken.isEmpty()) widget.setAccessibleName(plain_caption(spoken));
    widget.setToolTip(tv::tip_text(s_, &widget));
    widget.setAccessibleDescription(widget.toolTip());
  }

  const Session& s_;
  std::string section_;
};

}  // namespace

QString plain_caption(QString caption) {
  const qsizetype tab = caption.indexOf('\t');
  if (tab >= 0) caption.truncate(tab);
  for (qsizetype i = caption.indexOf('&'); i >= 0; i = caption.indexOf('&', i + 1)) caption.remove(i, 1);
  return caption;
}

QString plain_tip(const QString& text) {
  return Qt::mightBeRichText(text) ? "<qt>" + text.toHtmlEscaped().replace('\n', "<br>") + "</qt>" : text;
}

void apply_captions(QWidget* root, const Session& s, std::string_view section) {
  const Walk walk(s, section);
  const std::function<void(QWidget*)> descend = [&](QWidget* widget) {
    walk.visit(widget);
    for (QObject* child : widget->children())
      if (auto* inner = qobject_cast<QWidget*>(child); inner && !inner->property(kOwnSection).toBool())
        descend(inner);
  };
  descend(root);
}

namespace {

// The tip of a name on its screen, if one name serves several; else that of the name, last that of its array.
QString tip_key_of(const Session& s, const QWidget* widget, QString name) {
  const auto has_tip = [&](const QString& key) { return !s.language.tip(utf8(key)).empty(); };
  for (const QWidget* at = widget; at; at = at->parentWidget())
    if (const QString key = at->objectName() + '.' + name; key.size() > name.size() + 1 && has_tip(key))
      return key;
  if (has_tip(name)) return name;
  while (!name.isEmpty() && name.back().isDigit()) name.chop(1);
  return !name.isEmpty() && has_tip(name) ? name : QString();
}

}  // namespace

std::string tip_key(const Session& s, const QWidget* widget) {
  for (const QString& name : {widget->objectName(), widget->property("label_key").toString(),
                              widget->property(kCaptionKey).toString()})
    if (!name.isEmpty())
      if (const QString key = tip_key_of(s, widget, name); !key.isEmpty()) return utf8(key);
  return utf8(widget->objectName());
}

QString tip_text(const Session& s, const QWidget* widget) {
  const QString tip = qt(s.language.tip(tip_key(s, widget)));
  const QString reason = widget->property(kReason).toString();
  if (reason.isEmpty()) return tip;
  return tip.isEmpty() ? reason : reason + "\n\n" + tip;
}

}  // namespace tv
