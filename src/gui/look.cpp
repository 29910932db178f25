// Colours of fields.
#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>

#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/number_edit.h"
#include "gui/program_style.h"
#include "gui/small_labels.h"
#include "session/entry.h"

namespace tv {
namespace {

// Black or white, whichever stands out more.
QColor contrasting(const QColor& paper) {
  return contrast(paper, Qt::black) > contrast(paper, Qt::white) ? Qt::black : Qt::white;
}

}  // namespace

QColor paper_colour(Paper paper, const QPalette& palette) {
  const bool dark = is_dark(palette);
  switch (paper) {
    case Paper::white:
      return palette.color(QPalette::Base);
    case Paper::red:
      return dark ? QColor(170, 0, 0) : QColor(255, 60, 60);
    case Paper::magenta:
      return dark ? QColor(150, 0, 150) : QColor(255, 90, 255);
    case Paper::yellow:
      return dark ? QColor(110, 95, 0) : QColor(255, 255, 90);
    case Paper::grey:
      return dark ? palette.color(QPalette::AlternateBase) : QColor(192, 192, 192);
    case Paper::failed:
      return dark ? QColor(120, 40, 40) : QColor(255, 128, 128);
  }
  return palette.color(QPalette::Base);
}

QColor ink_colour(Ink ink, Paper paper, const QPalette& palette) {
  if (paper != Paper::white) return contrasting(paper_colour(paper, palette));
  const bool dark = is_dark(palette);
  switch (ink) {
    case Ink::black:
      return palette.color(QPalette::Text);
    case Ink::red:
      return dark ? QColor(255, 120, 120) : QColor(185, 0, 0);
    case Ink::magenta:
      return dark ? QColor(255, 130, 255) : QColor(160, 0, 160);
    case Ink::grey:
      return dim_colour(palette);
  }
  return palette.color(QPalette::Text);
}

namespace {

void set_italic(QWidget& widget, bool italic) {
  if (widget.font().italic() == italic) return;
  QFont font = widget.font();
  font.setItalic(italic);
  widget.setFont(font);
}

// A label has no paper of its own: what it stands on shows through.
void show_label_look(const Field& field, QLabel& label) {
  const QPalette ground = label.parentWidget()->palette();
  const Ink ink = field.stale ? Ink::grey : field.ink;
  QColor colour = ink_colour(ink, Paper::white, ground);
  if (auto* dim = dynamic_cast<DimLabel*>(&label)) {
    dim->set_ink(ink == Ink::black || ink == Ink::grey ? QColor() : colour);
  } else if (label.palette().color(QPalette::WindowText) != colour) {
    QPalette own;
    own.setColor(QPalette::WindowText, colour);
    label.setPalette(own);
  }
  set_italic(label, field.stale);
}

}  // namespace

void Binder::show_look(const Field& field, QWidget* widget) {
  if (auto* label = qobject_cast<QLabel*>(widget)) return show_label_look(field, *label);
  auto* edit = dynamic_cast<FieldEdit*>(widget);
  const QPalette standard = QApplication::palette();
  const Ink ink = field.stale ? Ink::grey : field.ink;
  // A display that nothing marks looks like the window, so that what can be typed into stands out.
  const bool plain = edit && edit->isReadOnly() && field.paper == Paper::white;
  const QColor paper = plain ? standard.color(QPalette::Window) : paper_colour(field.paper, standard);
  const QColor text = ink_colour(ink, field.paper, standard);
  if (widget->palette().color(QPalette::Base) != paper || widget->palette().color(QPalette::Text) != text) {
    QPalette palette = standard;
    palette.setColor(QPalette::Base, paper);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Disabled, QPalette::Base, standard.color(QPalette::Window));
    palette.setColor(QPalette::Disabled, QPalette::Text, standard.color(QPalette::Disabled, QPalette::Text));
    widget->setPalette(palette);
  }
  set_italic(*widget, field.stale);
  if (!edit) return;
  // A row that was chosen is yellow as well, and warns of nothing.
  const bool chosen = field.paper == Paper::yellow && can_mark(session_, screen_, utf8(widget->objectName()));
  edit->show_mark(field.ink == Ink::red || field.ink == Ink::magenta || field.paper == Paper::red ||
                  field.paper == Paper::magenta || (field.paper == Paper::yellow && !chosen) ||
                  field.paper == Paper::failed);
}

}  // namespace tv
