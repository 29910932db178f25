// Texts that go to files hold only what the code page of the language has: other letters are dropped as they are
// typed or pasted, not when it is too late to see.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "session/session.h"

namespace tv {

void keep_to_page(QLineEdit* edit, const Session& s);
void keep_to_page(QPlainTextEdit* edit, const Session& s);

}  // namespace tv
