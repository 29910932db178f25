#include "gui/number_edit.h"

#include <QStyle>
#include <QStyleOptionFrame>
#include <QValidator>

#include "gui/captions.h"
#include "gui/icons.h"
#include "session/entry.h"

namespace tv {
namespace {

class NumberValidator : public QValidator {
public:
  explicit NumberValidator(FieldEdit* field) : QValidator(field), field_(field) {}

  State validate(QString& text, int& cursor) const override {
    if (text == field_->program_text()) return Acceptable;
    for (qsizetype i = text.size() - 1; i >= 0; --i)
      if (text[i].isSpace()) {
        text.remove(i, 1);
        if (i < cursor) --cursor;
      }
    text.replace(',', '.');
    return number_text_ok(utf8(text)) ? Acceptable : Invalid;
  }

private:
  FieldEdit* field_;
};

}  // namespace

FieldEdit::FieldEdit(ControlKind kind, QWidget* parent) : QLineEdit(parent), kind_(kind) {
  if (kind == ControlKind::number) {
    setValidator(new NumberValidator(this));
    setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  }
  if (kind == ControlKind::display) {
    setReadOnly(true);
    setFocusPolicy(Qt::ClickFocus);  // to copy from; the tab key passes it by
  }
  if (kind != ControlKind::text) setAlignment(Qt::AlignRight);
}

void FieldEdit::show_text(const QString& shown) {
  program_text_ = shown;
  if (text() == shown) return;
  const int cursor = cursorPosition();
  setText(shown);
  setCursorPosition(hasFocus() ? cursor : 0);
}

void FieldEdit::show_mark(bool marked) {
  if (marked && !mark_) mark_ = addAction(warning_icon(), QLineEdit::LeadingPosition);
  if (mark_) mark_->setVisible(marked);
}

QSize FieldEdit::room_for(int digits, bool mark) const {
  QStyleOptionFrame option;
  initStyleOption(&option);
  const int sign = mark ? style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this) : 0;
  const QSize inner(fontMetrics().horizontalAdvance(QString(digits, '0')) + sign + 6,
                    QLineEdit::sizeHint().height());
  return {style()->sizeFromContents(QStyle::CT_LineEdit, &option, inner, this).width(), inner.height()};
}

QSize FieldEdit::sizeHint() const {
  return kind_ == ControlKind::text ? QLineEdit::sizeHint() : room_for(9, true);
}

}  // namespace tv
