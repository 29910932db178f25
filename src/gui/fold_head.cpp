#include "gui/fold_head.h"

#include <QAccessible>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include "gui/program_style.h"

namespace tv {
namespace {

constexpr int kGap = 6, kMargin = 3;

}  // namespace

FoldHead::FoldHead(const Group& group, QWidget* body, QWidget* parent)
    : QAbstractButton(parent), group_(group), body_(body) {
  setObjectName(group.title);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FoldHead::show_state(bool open, const QString& summary) {
  if (open == open_ && summary == summary_ && body_->isHidden() != open) return;
  open_ = open;
  summary_ = summary;
  body_->setVisible(open);
  // What is folded is told as well, to those who cannot see it.
  setAccessibleDescription(open ? QString() : summary);
  QAccessible::State expanded;
  expanded.expanded = expanded.collapsed = true;
  QAccessibleStateChangeEvent changed(this, expanded);
  QAccessible::updateAccessibility(&changed);
  update();
}

QSize FoldHead::minimumSizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.height() + kGap + metrics.horizontalAdvance(text()), metrics.height() + 2 * kMargin + 2};
}

QSize FoldHead::sizeHint() const { return minimumSizeHint(); }

void FoldHead::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(QPointF(0, 0.5), QPointF(width(), 0.5));
  const double size = fontMetrics().height() * 0.5, left = size * 0.3;
  const QPointF centre(left + size / 2, height() / 2.0 + 0.5);
  const double a = size * 0.5, b = size * 0.4;
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::WindowText));
  painter.drawPolygon(open_ ? QPolygonF({{centre.x() - a, centre.y() - b},
                                         {centre.x() + a, centre.y() - b},
                                         {centre.x(), centre.y() + b}})
                            : QPolygonF({{centre.x() - b, centre.y() - a},
                                         {centre.x() + b, centre.y()},
                                         {centre.x() - b, centre.y() + a}}));
  QRect place = rect().adjusted(fontMetrics().height() + kGap, 1, -2, 0);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, text());
  if (!open_) {
    place.setLeft(place.left() + fontMetrics().horizontalAdvance(text()) + 3 * kGap);
    painter.setPen(dim_colour(palette()));
    painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter,
                     fontMetrics().elidedText(summary_, Qt::ElideRight, place.width()));
  }
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  focus.rect = rect().adjusted(0, 2, 0, 0);
  focus.backgroundColor = palette().color(QPalette::Window);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

}  // namespace tv
