#include "gui/diagram_surface.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QWheelEvent>

#include "gui/captions.h"
#include "gui/painter.h"
#include "screens/output_window.h"

namespace tv {
namespace {

constexpr double kWheelNotch = 120;   // eighths of a degree
constexpr double kPixelsANotch = 50;  // of a touch pad

Point at(const QPointF& place) { return {place.x(), place.y()}; }

double steps_of(const QWheelEvent& event) {
  if (event.angleDelta().y() != 0) return event.angleDelta().y() / kWheelNotch;
  return event.pixelDelta().y() / kPixelsANotch;
}

}  // namespace

DiagramSurface::DiagramSurface(Desk& desk, QWidget* parent) : QWidget(parent), desk_(desk) {
  setObjectName("Pict1");
  setProperty(kOwn, true);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(227, 200);  // 3400 x 3000 twips
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

const Diagram& DiagramSurface::diagram() {
  if (stale_ || width() != drawn_.list.width || height() != drawn_.list.height) {
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    drawn_ = output_diagram(desk_.session(), width(), height(), qt_text_width, dark);
    stale_ = false;
  }
  return drawn_;
}

void DiagramSurface::redraw() {
  stale_ = true;
  if (pointer_ && isVisible()) read_out_at(at(*pointer_));  // other figures stand there now
  update();
}

void DiagramSurface::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  replay(painter, diagram().list);
  const bool dark = palette().color(QPalette::Window).lightness() < 128;
  if (!told_.on_curve.empty()) replay(painter, read_out_marks(diagram_options(desk_.session(), dark), told_));
  if (hasFocus() && window()->isActiveWindow()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
}

void DiagramSurface::tell(const std::optional<ReadOut>& told) {
  const bool marked = !told_.on_curve.empty();
  told_ = told.value_or(ReadOut{});
  if (marked || !told_.on_curve.empty()) update();
  on_read_out(told);
}

void DiagramSurface::read_out_at(Point place) {
  const Session& s = desk_.session();
  if (!s.shown.any || (press_ && press_->drags)) return tell(std::nullopt);
  const DiagramRun run{&s.shown.state, &s.curve, &s.result};
  tell(read_out(diagram().frame, diagram_options(s), run, place));
}

void DiagramSurface::change(const std::function<void(Session&)>& action) {
  desk_.act([&] { action(desk_.session()); });
}

void DiagramSurface::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  press_ = Press{event->pos(), diagram().frame, desk_.session().diagram_view};
}

void DiagramSurface::mouseMoveEvent(QMouseEvent* event) {
  pointer_ = event->position();
  if (press_ && (event->buttons() & Qt::LeftButton)) {
    const bool far = (event->pos() - press_->at).manhattanLength() >= QApplication::startDragDistance();
    const bool movable = inside_plot(press_->frame, at(press_->at)) && !is_whole(press_->view);
    if (far && !press_->drags) {
      press_->drags = true;  // also where there is nothing to move: this is no click any more
      if (movable) setCursor(Qt::ClosedHandCursor);
    }
    if (press_->drags && movable)
      return change([&](Session& s) {
        s.diagram_view = drag_view(press_->frame, press_->view, at(press_->at), at(event->position()));
      });
  }
  read_out_at(at(event->position()));
}

void DiagramSurface::leaveEvent(QEvent*) {
  pointer_.reset();
  tell(std::nullopt);
}

// A click counts on release: beside an axis it fits the load, on the legend it picks or hides a curve.
void DiagramSurface::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !press_) return;
  const bool clicked = !press_->drags && rect().contains(event->pos());
  press_.reset();
  unsetCursor();
  if (!clicked) return read_out_at(at(event->position()));
  change([&](Session& s) {
    if (const LegendHit hit = legend_hit(diagram(), at(event->position())); hit.curve)
      click_legend(s, hit);
    else
      click_output(s, diagram().frame, at(event->position()));
  });
}

void DiagramSurface::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (inside_plot(diagram().frame, at(event->position())))
    on_double_click();
  else
    mousePressEvent(event);  // two quick clicks
}

void DiagramSurface::wheelEvent(QWheelEvent* event) {
  const double steps = steps_of(*event);
  event->accept();  // never scrolls what is around the picture
  if (steps == 0 || press_) return;
  pointer_ = event->position();
  change([&](Session& s) { zoom_output(s, diagram().frame, at(event->position()), steps); });
}

// Printable keys; the others reach the screen like those of every other window.
void DiagramSurface::keyPressEvent(QKeyEvent* event) {
  const Qt::KeyboardModifiers others = event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
  const QString key = QKeySequence(event->key()).toString(QKeySequence::PortableText);
  bool used = false;
  if (!others) change([&](Session& s) { used = output_key(s, utf8(key)); });
  if (!used) QWidget::keyPressEvent(event);
}

}  // namespace tv
