// The drawing surface of the output window: paints the diagram and passes on what mouse and keys do to it.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "gui/desk.h"
#include "output/diagram.h"

namespace tv {

class DiagramSurface : public QWidget {
public:
  DiagramSurface(Desk& desk, QWidget* parent);
  std::function<void(const std::optional<ReadOut>&)> on_read_out;
  std::function<void()> on_double_click;

  QSize sizeHint() const override { return {520, 330}; }
  void redraw();

protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent*) override;

private:
  // The left button is down; from a certain distance on it drags the picture instead of clicking.
  struct Press {
    QPoint at;
    DiagramFrame frame;
    DiagramView view;
    bool drags = false;
  };

  const Diagram& diagram();
  void read_out_at(Point at);
  void tell(const std::optional<ReadOut>& told);
  void change(const std::function<void(Session&)>& action);

  Desk& desk_;
  Diagram drawn_;
  bool stale_ = true;
  std::optional<Press> press_;
  std::optional<QPointF> pointer_;
  ReadOut told_;
};

}  // namespace tv
