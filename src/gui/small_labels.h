// Labels of a form that are more than captions: units and headings, dimmer than what they belong to; figures to
// be read at a glance.
#pragma once

#include <QLabel>

namespace tv {

// Text of a colour between that of text and the ground, with a contrast of 4.5 to 1 all the same.
class DimLabel : public QLabel {
public:
  explicit DimLabel(QWidget* parent = nullptr);
  void set_ink(const QColor& ink);  // in place of the dim one; invalid: dim again

protected:
  bool event(QEvent* event) override;

private:
  void colour();
  QColor ink_;
};

// Sizes of a font as shares of that of the window.
inline constexpr double kFigureScale = 1.8, kSmallScale = 0.9;
// The label keeps that share of its window's font, through every choice of another font.
void scale_label(QLabel& label, double scale, bool bold = false);
void rescale_labels(QWidget* root);  // the font has changed

}  // namespace tv
