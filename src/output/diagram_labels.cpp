#include "output/diagram_labels.h"

#include <algorithm>

namespace tv {
namespace {

bool inside(const LabelBox& box, const LabelBox& bounds) {
  return box.left >= bounds.left && box.right <= bounds.right && box.top >= bounds.top &&
         box.bottom <= bounds.bottom;
}

bool touches(const LabelBox& box, const std::vector<Point>& line) {
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (crosses(box, line[i - 1], line[i])) return true;
  }
  return false;
}

}  // namespace

bool overlap(const LabelBox& a, const LabelBox& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool crosses(const LabelBox& box, Point from, Point to) {
  // The part of the line within both pairs of edges, as shares of its length.
  double enter = 0, leave = 1;
  const auto cut = [&](double start, double delta, double low, double high) {
    if (delta == 0) return start >= low && start <= high;
    const double a = (low - start) / delta, b = (high - start) / delta;
    enter = std::max(enter, std::min(a, b));
    leave = std::min(leave, std::max(a, b));
    return enter <= leave;
  };
  return cut(from.x, to.x - from.x, box.left, box.right) && cut(from.y, to.y - from.y, box.top, box.bottom);
}

std::optional<LabelBox> LabelPlacer::place(const std::vector<LabelBox>& candidates) {
  const LabelBox* best = nullptr;
  std::ptrdiff_t fewest = 0;
  for (const LabelBox& box : candidates) {
    const auto over = [&box](const LabelBox& other) { return overlap(box, other); };
    if (!inside(box, bounds) || std::any_of(taken.begin(), taken.end(), over)) continue;
    const auto crossed =
        std::count_if(lines.begin(), lines.end(), [&box](const auto& line) { return touches(box, line); });
    if (best && crossed >= fewest) continue;
    best = &box;
    fewest = crossed;
    if (crossed == 0) break;
  }
  if (!best) return std::nullopt;
  taken.push_back(*best);
  return *best;
}

}  // namespace tv
