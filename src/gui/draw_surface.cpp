#include "gui/draw_surface.h"

#include <QMouseEvent>
#include <QPainter>

#include "gui/painter.h"

namespace tv {

DrawSurface::DrawSurface(QWidget* parent) : QWidget(parent) {
  setMinimumSize(240, 115);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize DrawSurface::sizeHint() const { return {360, 140}; }

void DrawSurface::paintEvent(QPaintEvent*) {
  if (!draw) return;
  QPainter painter(this);
  replay(painter, draw(width(), height(), palette().color(QPalette::Window).lightness() < 128));
}

void DrawSurface::mouseReleaseEvent(QMouseEvent* event) {
  if (clicked && event->button() == Qt::LeftButton && rect().contains(event->pos())) clicked();
}

}  // namespace tv
