// Entry fields. A number field lets only what may become a number stand; a comma becomes a point, blanks of
// pasted text fall away. Texts that the program itself writes ("?", " n.a.") may stand until they are edited.
#pragma once

#include <QAction>
#include <QLineEdit>

#include "session/screen.h"

namespace tv {

class FieldEdit : public QLineEdit {
public:
  FieldEdit(ControlKind kind, QWidget* parent);

  ControlKind kind() const { return kind_; }
  // Writes a text as the program does: no signal of an edit, the cursor stays.
  void show_text(const QString& text);
  const QString& program_text() const { return program_text_; }
  // A warning sign at the field's end: a limit colour is never the only sign.
  void show_mark(bool marked);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return narrow_ ? room_for(7, false) : sizeHint(); }
  void allow_narrow() { narrow_ = true; }  // where there is little room, seven digits will do

private:
  QSize room_for(int digits, bool mark) const;

  ControlKind kind_;
  bool narrow_ = false;
  QString program_text_;
  QAction* mark_ = nullptr;
};

}  // namespace tv
