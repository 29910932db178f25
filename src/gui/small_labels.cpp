#include "gui/small_labels.h"

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

DimLabel::DimLabel(QWidget* parent) : QLabel(parent) { dim(); }

void DimLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) dim();
}

void DimLabel::dim() {
  QPalette own = palette();
  const QColor wanted = dim_colour(own);
  if (own.color(QPalette::WindowText) == wanted) return;
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
