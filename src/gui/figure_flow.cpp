#include "gui/figure_flow.h"

#include <algorithm>
#include <numeric>

namespace tv {
namespace {

constexpr int kGapX = 16, kGapY = 4;

}  // namespace

FigureFlow::FigureFlow(QWidget* parent) : QLayout(parent) { setContentsMargins(9, 4, 9, 5); }

FigureFlow::~FigureFlow() {
  for (const QLayoutItem* item : items_) delete item;
}

void FigureFlow::addItem(QLayoutItem* item) { items_.push_back(item); }

QLayoutItem* FigureFlow::itemAt(int i) const {
  return i >= 0 && i < count() ? items_[static_cast<std::size_t>(i)] : nullptr;
}

QLayoutItem* FigureFlow::takeAt(int i) {
  QLayoutItem* item = itemAt(i);
  if (item) items_.erase(items_.begin() + i);
  return item;
}

// What each column needs for its widest box.
std::vector<int> FigureFlow::widths_of(int columns) const {
  std::vector<int> widths(static_cast<std::size_t>(columns), 0);
  for (std::size_t i = 0; i < items_.size(); ++i) {
    int& width = widths[i % widths.size()];
    width = std::max(width, items_[i]->minimumSize().width());
  }
  return widths;
}

int FigureFlow::width_of(int columns) const {
  const std::vector<int> widths = widths_of(columns);
  const QMargins around = contentsMargins();
  return std::accumulate(widths.begin(), widths.end(), 0) + kGapX * (columns - 1) + around.left() +
         around.right();
}

int FigureFlow::columns_for(int width) const {
  const int all = std::max(1, count());
  if (width >= width_of(all)) return all;
  return width >= width_of(std::min(all, 3)) ? std::min(all, 3) : std::min(all, 2);
}

// Lays the boxes out, or only tells the height.
int FigureFlow::place(const QRect& room, bool apply) const {
  const QRect inner = room.marginsRemoved(contentsMargins());
  const int columns = columns_for(room.width());
  std::vector<int> widths = widths_of(columns);
  const int spare = inner.width() - std::accumulate(widths.begin(), widths.end(), 0) - kGapX * (columns - 1);
  for (int& width : widths) width += std::clamp(spare / columns, 0, 30);
  int y = inner.top(), x = inner.left(), height = 0;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const std::size_t column = i % widths.size();
    if (column == 0 && i > 0) {
      y += height + kGapY;
      height = 0;
    }
    if (column == 0) x = inner.left();
    const int own = items_[i]->sizeHint().height();
    if (apply) items_[i]->setGeometry({x, y, widths[column], own});
    x += widths[column] + kGapX;
    height = std::max(height, own);
  }
  return y + height - room.top() + contentsMargins().bottom();
}

int FigureFlow::heightForWidth(int width) const { return place({0, 0, width, 0}, false); }

QSize FigureFlow::minimumSize() const {
  const int width = width_of(std::min(2, std::max(1, count())));
  return {width, heightForWidth(100000)};
}

QSize FigureFlow::sizeHint() const {
  const int width = width_of(std::max(1, count()));
  return {width, heightForWidth(width)};
}

void FigureFlow::setGeometry(const QRect& room) {
  QLayout::setGeometry(room);
  place(room, true);
}

}  // namespace tv
