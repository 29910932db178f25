#include "output/limit_bar.h"

#include <algorithm>

namespace tv {
namespace {

constexpr double kCaution = 0.75, kNear = 0.85;
constexpr double kMarkWidth = 3;

}  // namespace

const LimitColours& limit_colours(bool dark) {
  static constexpr LimitColours kLight{
      {112, 173, 114}, {219, 176, 55}, {224, 128, 44}, {200, 30, 30}, {20, 20, 20}};
  static constexpr LimitColours kDark{
      {104, 160, 106}, {200, 160, 50}, {224, 128, 44}, {235, 70, 70}, {245, 245, 245}};
  return dark ? kDark : kLight;
}

DrawList limit_bar(double share, double width, double height, bool dark) {
  const LimitColours& colours = limit_colours(dark);
  DrawList list;
  list.width = width;
  list.height = height;
  list.background = colours.good;
  const auto zone = [&](double from, Colour colour) {
    add_band(list, {from * width, 0}, {width, height}, colour);
  };
  if (share > 1) {
    zone(0, colours.over);
  } else {
    zone(0, colours.good);
    zone(kCaution, colours.caution);
    zone(kNear, colours.near_limit);
  }
  const double at = std::clamp(share * width, kMarkWidth, width) - kMarkWidth;
  add_band(list, {at, 0}, {at + kMarkWidth, height}, colours.mark);
  return list;
}

}  // namespace tv
