// A drawing surface of a screen: paints its draw list and passes on what mouse, wheel and keys do to it.
#pragma once

#include <QWidget>

#include "gui/desk.h"
#include "output/draw_list.h"

namespace tv {

class SurfaceView : public QWidget {
public:
  SurfaceView(Desk& desk, std::string screen, const Surface& surface, QWidget* parent);

  void refresh();  // draws anew what has changed
  DrawList picture(bool dark) const;
  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  Extent extent(bool dark) const;
  bool send(Pointer::What what, const QPointF& at, double turns = 0);

  Desk& desk_;
  std::string screen_;
  const Surface& surface_;
  DrawList drawn_;
  QPoint pressed_;
  bool down_ = false, drags_ = false;
};

}  // namespace tv
