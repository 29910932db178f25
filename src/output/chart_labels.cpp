#include "output/chart_labels.h"

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

struct Part {
  double enter = 0, leave = 1;  // shares of the length
};

// The part of the line within both pairs of edges.
std::optional<Part> part_within(const LabelBox& box, Point from, Point to) {
  Part part;
  const auto cut = [&part](double start, double delta, double low, double high) {
    if (delta == 0) return start >= low && start <= high;
    const double a = (low - start) / delta, b = (high - start) / delta;
    part.enter = std::max(part.enter, std::min(a, b));
    part.leave = std::min(part.leave, std::max(a, b));
    return part.enter <= part.leave;
  };
  if (!cut(from.x, to.x - from.x, box.left, box.right)) return std::nullopt;
  if (!cut(from.y, to.y - from.y, box.top, box.bottom)) return std::nullopt;
  return part;
}

}  // namespace

bool overlap(const LabelBox& a, const LabelBox& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool crosses(const LabelBox& box, Point from, Point to) { return part_within(box, from, to).has_value(); }

bool contains(const LabelBox& box, Point at) { return crosses(box, at, at); }

std::vector<std::vector<Point>> clipped(const LabelBox& box, const std::vector<Point>& line) {
  std::vector<std::vector<Point>> pieces;
  if (line.size() == 1 && contains(box, line.front())) pieces.push_back(line);
  bool open = false;  // the last piece ends at the point that comes next
  for (std::size_t i = 1; i < line.size(); ++i) {
    const Point a = line[i - 1], b = line[i];
    const auto part = part_within(box, a, b);
    if (!part) {
      open = false;
      continue;
    }
    const auto along = [&](double share) {
      return Point{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
    };
    if (!open) pieces.push_back({part->enter > 0 ? along(part->enter) : a});
    pieces.back().push_back(part->leave < 1 ? along(part->leave) : b);
    open = part->leave == 1;
  }
  return pieces;
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
