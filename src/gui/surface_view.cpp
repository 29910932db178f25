#include "gui/surface_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

#include "gui/captions.h"
#include "gui/painter.h"
#include "gui/program_style.h"
#include "session/entry.h"

namespace tv {
namespace {

constexpr double kWheelNotch = 120;   // eighths of a degree
constexpr double kPixelsANotch = 50;  // of a touch pad
constexpr int kLeastPixels = 8;       // smaller nothing is drawn
constexpr double kLeastHeight = 200;  // of a surface that can give way
constexpr double kLeastShare = 0.7;   // of the height that a small one would like

double turns_of(const QWheelEvent& event) {
  if (event.angleDelta().y() != 0) return event.angleDelta().y() / kWheelNotch;
  return event.pixelDelta().y() / kPixelsANotch;
}

}  // namespace

SurfaceView::SurfaceView(Desk& desk, std::string screen, const Surface& surface, QWidget* parent)
    : QWidget(parent), desk_(desk), screen_(std::move(screen)), surface_(surface) {
  setObjectName(surface.control);
  setProperty(kOwn, true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumSize(static_cast<int>(surface.width / 2),
                 static_cast<int>(std::min(kLeastShare * surface.height, kLeastHeight)));
  setMouseTracking(surface.pointer != nullptr);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize SurfaceView::sizeHint() const {
  return {static_cast<int>(surface_.width), static_cast<int>(surface_.height)};
}

Extent SurfaceView::extent(bool dark) const {
  const QColor ground = palette().color(QPalette::Window);
  const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
  return {static_cast<double>(width()), static_cast<double>(height()), qt_text_width, dark,
          Colour{part(ground.red()), part(ground.green()), part(ground.blue()), 255}};
}

DrawList SurfaceView::picture(bool dark) const { return surface_.draw(desk_.session(), extent(dark)); }

void SurfaceView::refresh() {
  if (!isVisible() || width() < kLeastPixels || height() < kLeastPixels) return;
  DrawList list = picture(is_dark(palette()));
  if (list == drawn_) return;
  drawn_ = std::move(list);
  update();
}

void SurfaceView::paintEvent(QPaintEvent*) {
  if (drawn_.items.empty()) refresh();
  QPainter painter(this);
  replay(painter, drawn_);
  if (hasFocus() && window()->isActiveWindow()) {
    painter.setPen(palette().color(QPalette::Highlight));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void SurfaceView::resizeEvent(QResizeEvent*) { refresh(); }
void SurfaceView::showEvent(QShowEvent*) { refresh(); }  // it may have changed while it was hidden

// A tip would stand over the figures that the pointer reads; a screen reader still has it.
bool SurfaceView::event(QEvent* event) {
  return (event->type() == QEvent::ToolTip && surface_.clickable) || QWidget::event(event);
}

void SurfaceView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) refresh();
  QWidget::changeEvent(event);
}

bool SurfaceView::send(Pointer::What what, const QPointF& at, double turns) {
  bool used = false;
  desk_.act([&] {
    used = point_at(desk_.session(), screen_, surface_.control, {what, {at.x(), at.y()}, turns},
                    extent(is_dark(palette())));
  });
  return used;
}

void SurfaceView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !surface_.pointer) return;
  pressed_ = event->pos();
  down_ = true;
  drags_ = false;
  send(Pointer::What::press, event->position());
}

void SurfaceView::mouseMoveEvent(QMouseEvent* event) {
  if (!surface_.pointer) return;
  if (down_ && (event->buttons() & Qt::LeftButton)) {
    drags_ = drags_ || (event->pos() - pressed_).manhattanLength() >= QApplication::startDragDistance();
    if (drags_) {
      setCursor(Qt::ClosedHandCursor);
      send(Pointer::What::drag, event->position());
    }
    return;
  }
  const QPointF at = event->position();
  if (surface_.clickable)
    surface_.clickable(desk_.session(), {at.x(), at.y()}, extent(is_dark(palette())))
        ? setCursor(Qt::PointingHandCursor)
        : unsetCursor();
  send(Pointer::What::move, at);
}

void SurfaceView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !down_) return;
  down_ = false;
  unsetCursor();
  // Let go outside it is no click.
  send(drags_ || rect().contains(event->pos()) ? Pointer::What::release : Pointer::What::away,
       event->position());
}

void SurfaceView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !surface_.pointer) return;
  down_ = true;
  drags_ = false;
  send(Pointer::What::double_click, event->position());
}

void SurfaceView::wheelEvent(QWheelEvent* event) {
  if (!surface_.pointer) return QWidget::wheelEvent(event);
  event->accept();  // never scrolls what is around the picture
  if (const double turns = turns_of(*event); turns != 0 && !down_)
    send(Pointer::What::wheel, event->position(), turns);
}

// Printable keys; the others reach the screen like those of every other window.
void SurfaceView::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers others = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  const std::string name = utf8(QKeySequence(event->key()).toString(QKeySequence::PortableText));
  const ScreenSpec* spec = desk_.session().screens[screen_].spec;
  bool used = false;
  if (!others && spec->key) desk_.act([&] { used = spec->key(desk_.session(), name); });
  if (!used) QWidget::keyPressEvent(event);
}

void SurfaceView::leaveEvent(QEvent*) {
  if (surface_.pointer) send(Pointer::What::away, QPointF());
}

}  // namespace tv
