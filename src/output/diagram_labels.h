// Finds room for labels in a picture: inside its bounds, off each other, and off the curves where it can.
#pragma once

#include <optional>
#include <vector>

#include "output/draw_list.h"

namespace tv {

struct Box {
  double left = 0, top = 0, right = 0, bottom = 0;
};
bool overlap(const Box& a, const Box& b);
bool crosses(const Box& box, Point from, Point to);  // a line from point to point touches the box

struct LabelPlacer {
  Box bounds;
  std::vector<Box> taken;
  std::vector<std::vector<Point>> lines;  // curves that a label should leave free

  // The free candidate that the fewest lines cross, the first among equals; it is then taken. Nothing if
  // every candidate leaves the bounds or lies over a label.
  std::optional<Box> place(const std::vector<Box>& candidates);
};

}  // namespace tv
