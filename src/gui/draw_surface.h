// A place on a form for a drawing, painted anew at every size.
#pragma once

#include <QWidget>
#include <functional>

#include "output/draw_list.h"

namespace tv {

class DrawSurface : public QWidget {
public:
  explicit DrawSurface(QWidget* parent);
  std::function<DrawList(double width, double height, bool dark)> draw;  // logical units
  std::function<void()> clicked;

  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
};

}  // namespace tv
