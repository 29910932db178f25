#include "gui/binder.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QTimer>
#include <algorithm>

#include "gui/captions.h"
#include "gui/fold_head.h"
#include "gui/number_edit.h"
#include "gui/record_list.h"
#include "screens/commands.h"
#include "session/entry.h"
#include "session/folds.h"
#include "session/record_lists.h"

namespace tv {
namespace {

// Focus that goes to a menu, a popup or another window of the desktop comes back: the field is not left.
bool passing(Qt::FocusReason reason) {
  return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
         reason == Qt::MenuBarFocusReason;
}

// Options of one group differ in the number behind the name of its action, which may end in a digit itself.
std::pair<std::string, int> split_index(const ScreenSpec& spec, const std::string& name) {
  std::size_t at = name.find_last_not_of("0123456789") + 1;
  for (const ControlAction& action : spec.actions) {
    const std::size_t length = std::string_view(action.control).size();
    if (name.starts_with(action.control) && length > at && length < name.size()) at = length;
  }
  return {name.substr(0, at), at < name.size() ? std::stoi(name.substr(at)) : 0};
}

std::string spelled_key(int pressed, Qt::KeyboardModifiers modifiers) {
  return QKeySequence(static_cast<int>(modifiers & ~Qt::KeypadModifier) | pressed)
      .toString(QKeySequence::PortableText)
      .toStdString();
}

}  // namespace

Binder::Binder(Session& session, Act act, const ScreenSpec& spec, QWidget* root)
    : QObject(root), session_(session), act_(std::move(act)), spec_(spec), screen_(spec.name), root_(root) {
  for (const auto& [name, field] : session_.screens[screen_].fields)
    if (auto* widget = bound(name)) connect_widget(name, widget);
  for (QWidget* child : root_->findChildren<QWidget*>()) {
    if (child->focusPolicy() != Qt::NoFocus) child->installEventFilter(this);
    if (auto* head = dynamic_cast<FoldHead*>(child)) connect_fold(head);
  }
  root_->installEventFilter(this);
}

// A window draws the widgets that it marks as its own.
QWidget* Binder::bound(const std::string& name) const {
  auto* widget = root_->findChild<QWidget*>(qt(name));
  return widget && !widget->property(kOwn).toBool() ? widget : nullptr;
}

void Binder::connect_widget(const std::string& name, QWidget* widget) {
  const auto run = [this](auto operation) { act_([this, operation] { operation(session_); }); };
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) {
    connect(edit, &QLineEdit::textEdited, this, [this, run, name](const QString& text) {
      run([this, name, typed = utf8(text)](Session& s) {
        if (!has_session_focus(name)) focus_field(s, screen_, name);
        edit_field(s, screen_, name, typed);
      });
    });
  } else if (auto* records = dynamic_cast<RecordList*>(widget)) {
    connect(records, &QComboBox::activated, this, [this, run, name, records](int row) {
      records->lineEdit()->setModified(false);
      run([this, name, entry = records->entry_at(row)](Session& s) { pick(s, screen_, name, entry); });
    });
  } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
    if (leads(name)) {
      const auto lead = [this, run, name, list](const QModelIndex& at) {
        list->setCurrentRow(-1);
        run([this, name, row = at.row()](Session& s) { pick(s, screen_, name, row); });
      };
      connect(list, &QListWidget::clicked, this, lead);
      connect(list, &QListWidget::activated, this, lead);
      return;
    }
    connect(list, &QListWidget::currentRowChanged, this, [this, run, name](int row) {
      if (row >= 0 && row != field(session_, screen_, name).selected)
        run([this, name, row](Session& s) { pick(s, screen_, name, row); });
    });
  } else if (auto* option = qobject_cast<QRadioButton*>(widget)) {
    connect(option, &QRadioButton::clicked, this, [this, run, name] {
      const auto [group, n] = split_index(spec_, name);
      run([this, group, n](Session& s) { choose(s, screen_, group, n); });
    });
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    connect(button, &QAbstractButton::clicked, this, [this, run, name, button] {
      run([this, name, box = button->isCheckable()](Session& s) {
        box ? toggle(s, screen_, name) : press(s, screen_, name);
      });
    });
  } else if (auto* memo = qobject_cast<QPlainTextEdit*>(widget); memo && !memo->isReadOnly()) {
    connect(memo, &QPlainTextEdit::textChanged, this, [this, run, name, memo] {
      const std::string typed = utf8(memo->toPlainText());
      if (typed != field(session_, screen_, name).text)
        run([this, name, typed](Session& s) { edit_field(s, screen_, name, typed); });
    });
  } else if (auto* bar = qobject_cast<QSlider*>(widget)) {
    connect(bar, &QSlider::actionTriggered, this, [this, run, name, bar] {
      run([this, name, position = bar->sliderPosition()](Session& s) {
        move_bar(s, screen_, name, position);
      });
    });
  }
}

void Binder::connect_fold(FoldHead* head) {
  folds_.push_back(head);
  connect(head, &QAbstractButton::clicked, this,
          [this, head] { act_([this, head] { toggle_fold(session_, screen_, head->group()); }); });
}

void Binder::show_folds() {
  for (FoldHead* head : folds_)
    head->show_state(fold_open(session_, screen_, head->group()), qt(head->group().summary(session_)));
}

bool Binder::leads(const std::string& name) const {
  return std::ranges::any_of(controls_of(spec_), [&](const Control& control) {
    return control.name == name && control.place && control.place->list == ListOf::leads;
  });
}

bool Binder::has_session_focus(std::string_view name) const {
  return session_.focus.screen == screen_ && session_.focus.field == name;
}

void Binder::focus_in(const std::string& name, QWidget* widget) {
  act_([this, &name] {
    if (!has_session_focus(name)) leave_focus(session_);
    focus_field(session_, screen_, name);
  });
  // After the press of the mouse, which would set the cursor.
  if (auto* edit = qobject_cast<QLineEdit*>(widget))
    QTimer::singleShot(0, edit, [edit] {
      if (edit->hasFocus()) edit->selectAll();
    });
}

// A name typed into a list that none of its entries has.
void Binder::finish_list(const std::string& name, RecordList* records) {
  if (!records->lineEdit()->isModified()) return;
  records->lineEdit()->setModified(false);
  const QString typed = records->lineEdit()->text();
  const int found = records->find_entry(typed);
  act_([&] {
    if (found >= 0)
      pick(session_, screen_, name, found);
    else if (!typed.isEmpty())
      edit_field(session_, screen_, name, utf8(typed));
  });
}

void Binder::escape() {
  act_([&] { key(session_, screen_, "Escape"); });
}

bool Binder::key_pressed(const std::string& name, QWidget* widget, int pressed,
                         Qt::KeyboardModifiers modifiers) {
  const bool enter = pressed == Qt::Key_Return || pressed == Qt::Key_Enter;
  if (pressed == Qt::Key_Escape && !modifiers) {
    if (auto* combo = qobject_cast<QComboBox*>(widget); combo && combo->lineEdit()->isModified()) {
      combo->lineEdit()->setModified(false);
      refresh();
    } else {
      escape();
    }
    return true;
  }
  auto* push = qobject_cast<QPushButton*>(widget);
  if (enter && push) {
    push->click();
    return true;
  }
  // Space is for boxes, options and folds.
  if (enter && !modifiers && spec_.default_button &&
      (qobject_cast<QLineEdit*>(widget) || qobject_cast<QAbstractButton*>(widget))) {
    act_([this] { press(session_, screen_, spec_.default_button); });
    return true;
  }
  // Keys that no entry field uses may mean something to the screen.
  if (pressed == Qt::Key_Space && !modifiers && can_mark(session_, screen_, name)) {
    act_([&] { toggle(session_, screen_, name); });
    return true;
  }
  if (name.empty() || (pressed < Qt::Key_Escape && !(modifiers & (Qt::ControlModifier | Qt::AltModifier))))
    return false;
  const std::string spelled = spelled_key(pressed, modifiers);
  // The menus have their own shortcuts, and a field undoes its own typing first.
  if (auto* edit = qobject_cast<QLineEdit*>(widget);
      edit && is_own_key(spelled) && QKeySequence(spelled.c_str()) == QKeySequence(QKeySequence::Undo) &&
      edit->isUndoAvailable() && edit->isModified())
    return false;
  if (!is_own_key(spelled))
    for (const Command& command : commands())
      if (command.shortcut && spelled == command.shortcut) return false;
  bool used = false;
  act_([&] { used = key(session_, screen_, spelled); });
  if (auto* edit = qobject_cast<QLineEdit*>(widget); edit && used) edit->selectAll();  // a step of its number
  return used;
}

bool Binder::is_own_key(std::string_view key) const {
  return std::ranges::find(spec_.own_keys, key) != spec_.own_keys.end();
}

bool Binder::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget) return false;
  const std::string name = utf8(widget->objectName());
  const bool known = session_.screens[screen_].fields.contains(name);
  switch (event->type()) {
    case QEvent::FocusIn: {
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      if (known && !(passing(reason) && has_session_focus(name)) && reason != Qt::PopupFocusReason)
        focus_in(name, widget);
      return false;
    }
    case QEvent::FocusOut:
      if (passing(static_cast<QFocusEvent*>(event)->reason())) return false;
      if (auto* records = dynamic_cast<RecordList*>(widget)) finish_list(name, records);
      if (known && has_session_focus(name)) act_([&] { leave_field(session_, screen_, name); });
      return false;
    case QEvent::ShortcutOverride: {  // a key of the screen's own goes before a menu's
      const auto* pressed = static_cast<QKeyEvent*>(event);
      if (!is_own_key(spelled_key(pressed->key(), pressed->modifiers()))) return false;
      event->accept();
      return true;
    }
    case QEvent::MouseButtonRelease:
      if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && known &&
          can_mark(session_, screen_, name))
        act_([&] { toggle(session_, screen_, name); });
      return false;
    case QEvent::KeyPress: {
      const auto* pressed = static_cast<QKeyEvent*>(event);
      return key_pressed(name, widget, pressed->key(), pressed->modifiers());
    }
    case QEvent::MouseButtonDblClick: {
      bool used = false;
      if (known) act_([&] { used = double_click(session_, screen_, name); });
      return used;
    }
    case QEvent::DragEnter:  // a file is no text to be put in: the frame knows what to do with it
      if (!static_cast<QDragEnterEvent*>(event)->mimeData()->hasUrls()) return false;
      event->ignore();
      return true;
    case QEvent::ApplicationPaletteChange:
    case QEvent::PaletteChange:
      if (watched == root_) QTimer::singleShot(0, this, [this] { refresh(); });
      return false;
    default:
      return false;
  }
}

bool Binder::refresh() {
  relabelled_ = false;
  const Screen& screen = session_.screens[screen_];
  for (const auto& [name, field] : screen.fields)
    if (auto* widget = bound(name)) show(name, field, widget);
  show_groups();
  show_folds();
  show_units();
  say_units();
  show_sources();
  show_hint(screen);
  return relabelled_;
}

void Binder::show_label(QLabel* label, const QString& text) {
  if (label->text() == text) return;
  label->setText(text);
  relabelled_ = true;
}

void Binder::show(const std::string& name, const Field& field, QWidget* widget) {
  if (widget->isHidden() == field.visible) {
    widget->setVisible(field.visible);
    if (auto* label = root_->findChild<QLabel*>("label_" + qt(name))) label->setVisible(field.visible);
  }
  if (widget->isEnabled() != field.enabled) widget->setEnabled(field.enabled);
  const QString text = qt(field.text);
  if (auto* edit = dynamic_cast<FieldEdit*>(widget)) {
    edit->show_text(text);
  } else if (auto* records = dynamic_cast<RecordList*>(widget)) {
    show_list(name, field, records);
  } else if (auto* list = qobject_cast<QListWidget*>(widget)) {
    show_rows(name, field, list);
  } else if (auto* view = qobject_cast<QPlainTextEdit*>(widget)) {
    QString shown = text;
    shown.remove('\r');
    if (view->toPlainText() != shown) view->setPlainText(shown);
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    if (button->isCheckable() && button->isChecked() != field.checked) button->setChecked(field.checked);
  } else if (auto* label = qobject_cast<QLabel*>(widget)) {
    show_label(label, text);
  } else if (auto* bar = qobject_cast<QSlider*>(widget)) {
    const BarPlace place = bar_place(session_, screen_, name);
    bar->setRange(place.least, place.most);
    bar->setPageStep(std::max(1, (place.most - place.least) / 20));
    bar->setValue(place.position);
    return;
  }
  show_look(field, widget);
  const QString reason = qt(field.reason);
  if (widget->property(kReason).toString() != reason) {
    widget->setProperty(kReason, reason);
    widget->setToolTip(tip_text(session_, widget));
    widget->setAccessibleDescription(widget->toolTip());
  }
}

void Binder::show_list(const std::string& name, const Field& field, RecordList* records) {
  QStringList texts;
  for (const ListItem& item : field.items) texts << qt(item.text);
  const bool typing = records->lineEdit()->isModified();
  const QString typed = records->lineEdit()->text();
  std::vector<int> used;
  for (const Control& control : controls_of(spec_))
    if (control.name == name && control.place->list == ListOf::load_records)
      used = used_entries(session_, control.place->records, field.items);
  records->show_entries(texts, used);
  records->show_selected(field.selected);
  const QString text = typing ? typed : qt(field.text);
  if (records->lineEdit()->text() == text) return;
  records->lineEdit()->setText(text);
  records->lineEdit()->setCursorPosition(typing ? static_cast<int>(text.size()) : 0);
  records->lineEdit()->setModified(typing);
}

void Binder::show_rows(const std::string& name, const Field& field, QListWidget* list) {
  std::vector<std::string>& shown = shown_items_[name];
  if (!std::ranges::equal(shown, field.items, {}, {}, &ListItem::text)) {
    shown.clear();
    QStringList texts;
    for (const ListItem& item : field.items) {
      shown.push_back(item.text);
      texts << qt(item.text);
    }
    list->clear();
    list->addItems(texts);
    for (int i = 0; i < list->count(); ++i) list->item(i)->setToolTip(texts[i].toHtmlEscaped());
  }
  if (list->currentRow() != field.selected) list->setCurrentRow(field.selected);
}

// The file or the selection that a list shows.
void Binder::show_sources() {
  for (const Control& control : controls_of(spec_)) {
    if (!control.place || control.place->list == ListOf::texts) continue;
    auto* label = root_->findChild<QLabel*>("source_" + qt(control.name));
    if (!label) continue;
    const QString caption = qt(session_.set(control.place->records).caption);
    if (label->text() != caption) label->setText(caption);
    if (label->toolTip() != caption) label->setToolTip(caption);
  }
}

// Groups that come and go with a mode of the screen.
void Binder::show_groups() {
  for (QWidget* box : root_->findChildren<QWidget*>()) {
    const QVariant group = box->property(kGroup);
    if (!group.isValid()) continue;
    const bool shown = spec_.form[static_cast<std::size_t>(group.toInt())].shown(session_);
    if (box->isHidden() == shown) box->setVisible(shown);
  }
}

// Units that follow the choice of the pressure unit or a screen's own unit system.
void Binder::show_units() {
  const bool imperial = spec_.imperial && spec_.imperial(session_);
  for (QLabel* label : root_->findChildren<QLabel*>()) {
    QString unit;
    if (const QVariant pressure = label->property("pressure_unit"); pressure.isValid())
      unit =
          qt(pressure.toString() == "mode" ? mode_pressure_unit(session_) : chosen_pressure_unit(session_));
    else if (const QStringList units = label->property("local_units").toStringList(); units.size() == 2)
      unit = qt(session_.language.text("units", utf8(units[imperial ? 1 : 0])));
    if (!unit.isEmpty()) show_label(label, unit);
  }
}

// A screen reader says what a field is and in which unit, also where a choice of the person changes the unit.
void Binder::say_units() {
  for (QLineEdit* edit : root_->findChildren<QLineEdit*>()) {
    auto* unit = qobject_cast<QLabel*>(edit->property(kUnitLabel).value<QObject*>());
    QString spoken = edit->property(kSpoken).toString();
    if (!unit || spoken.isEmpty()) continue;
    spoken += ' ' + unit->text();
    if (edit->accessibleName() != spoken) edit->setAccessibleName(spoken);
  }
}

void Binder::show_hint(const Screen& screen) {
  auto* beside = root_->findChild<QWidget*>(qt(screen.hint_field));
  if (screen.hint.empty() || !beside) {
    if (hint_) hint_->hide();
    return;
  }
  if (!hint_) {
    hint_ = new QLabel(root_);
    hint_->setObjectName("grenzen_box");
    hint_->setFrameShape(QFrame::Box);
    hint_->setMargin(3);
    hint_->setAutoFillBackground(true);
    hint_->setBackgroundRole(QPalette::ToolTipBase);
    hint_->setForegroundRole(QPalette::ToolTipText);
    hint_->setFocusPolicy(Qt::NoFocus);
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  hint_->setText(qt(screen.hint));
  hint_->adjustSize();
  QPoint at = beside->mapTo(root_, QPoint(0, beside->height() + 2));
  if (at.y() + hint_->height() > root_->height())
    at.setY(beside->mapTo(root_, QPoint()).y() - hint_->height() - 2);
  at.setX(std::clamp(at.x(), 0, std::max(0, root_->width() - hint_->width())));
  hint_->move(at);
  hint_->show();
  hint_->raise();
}

}  // namespace tv
