#include "gui/small_labels.h"

#include <QApplication>
#include <QEvent>
#include <QVariant>

#include "gui/program_style.h"

namespace tv {
namespace {

constexpr const char* kScale = "font_scale";

void scale_now(QLabel& label) {
  const QWidget* parent = label.parentWidget();
  if (!parent) return;
  QFont font = label.font();
  const double scale = label.property(kScale).toDouble();
  font.setFamily(parent->font().family());
  if (parent->font().pointSizeF() > 0) font.setPointSizeF(parent->font().pointSizeF() * scale);
  if (font != label.font()) label.setFont(font);
}

}  // namespace

DimLabel::DimLabel(QWidget* parent) : QLabel(parent) { colour(); }

void DimLabel::set_ink(const QColor& ink) {
  ink_ = ink;
  colour();
}

bool DimLabel::event(QEvent* event) {
  const bool used = QLabel::event(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::ParentChange:
    case QEvent::Show:
      colour();
      break;
    default:
      break;
  }
  return used;
}

// Only the text is the label's own: the ground stays that of what it stands on.
void DimLabel::colour() {
  const QWidget* ground = parentWidget();
  const QColor wanted =
      ink_.isValid() ? ink_ : dim_colour(ground ? ground->palette() : QApplication::palette());
  if (palette().color(QPalette::WindowText) == wanted) return;
  QPalette own;
  own.setColor(QPalette::WindowText, wanted);
  setPalette(own);
}

void scale_label(QLabel& label, double scale, bool bold) {
  label.setProperty(kScale, scale);
  QFont font = label.font();
  font.setBold(bold);
  label.setFont(font);
  scale_now(label);
}

void rescale_labels(QWidget* root) {
  for (QLabel* label : root->findChildren<QLabel*>())
    if (label->property(kScale).isValid()) scale_now(*label);
}

}  // namespace tv
