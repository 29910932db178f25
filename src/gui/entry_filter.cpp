#include "gui/entry_filter.h"

#include "gui/captions.h"
#include "text/codepage.h"

namespace tv {
namespace {

QString kept(const QString& text, const Session& s) {
  return qt(drop_foreign(utf8(text), s.language.page()));
}

}  // namespace

void keep_to_page(QLineEdit* edit, const Session& s) {
  QObject::connect(edit, &QLineEdit::textEdited, edit, [edit, &s](const QString& text) {
    const QString good = kept(text, s);
    if (good == text) return;
    const auto cursor = kept(text.left(edit->cursorPosition()), s).size();
    edit->setText(good);
    edit->setCursorPosition(static_cast<int>(cursor));
  });
}

void keep_to_page(QPlainTextEdit* edit, const Session& s) {
  QObject::connect(edit, &QPlainTextEdit::textChanged, edit, [edit, &s] {
    const QString text = edit->toPlainText(), good = kept(text, s);
    if (good == text) return;
    const auto at = kept(text.left(edit->textCursor().position()), s).size();
    edit->setPlainText(good);
    QTextCursor cursor = edit->textCursor();
    cursor.setPosition(static_cast<int>(at));
    edit->setTextCursor(cursor);
  });
}

}  // namespace tv
