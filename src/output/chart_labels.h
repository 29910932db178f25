// Finds room for labels in a picture: inside its bounds, off each other, and off the curves where it can;
// cuts lines at a box.
#pragma once

#include <optional>
#include <vector>

#include "output/draw_list.h"

namespace tv {

struct LabelBox {
  double left = 0, top = 0, right = 0, bottom = 0;
};
bool overlap(const LabelBox& a, const LabelBox& b);
bool contains(const LabelBox& box, Point at);
bool crosses(const LabelBox& box, Point from, Point to);  // a line from point to point touches the box
// The pieces of a line that lie in the box; points inside stay what they are.
std::vector<std::vector<Point>> clipped(const LabelBox& box, const std::vector<Point>& line);

struct LabelPlacer {
  LabelBox bounds;
  std::vector<LabelBox> taken;
  std::vector<std::vector<Point>> lines;  // curves that a label should leave free

  // The free candidate that the fewest lines cross, the first among equals; it is then taken. Nothing if
  // every candidate leaves the bounds or lies over a label.
  std::optional<LabelBox> place(const std::vector<LabelBox>& candidates);
};

}  // namespace tv
