#include "output/turned.h"

#include <algorithm>
#include <cmath>

namespace tv {

bool known_inch(double inch) { return std::isfinite(inch) && inch > 0 && inch < kMostInch; }

Profile part(const Profile& p, double from, double to) {
  Profile cut;
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (i > 0 && p[i].x > p[i - 1].x)
      for (const double at : {from, to})
        if (at > p[i - 1].x && at < p[i].x) {
          const double share = (at - p[i - 1].x) / (p[i].x - p[i - 1].x);
          cut.push_back({at, p[i - 1].y + share * (p[i].y - p[i - 1].y)});
        }
    if (p[i].x >= from && p[i].x <= to) cut.push_back(p[i]);
  }
  return cut;
}

double calibre(const CartridgeDimensions& d) { return known_inch(d.buldin) ? d.buldin : d.Zkal; }

TailShape tail_shape(const CartridgeDimensions& d) {
  const double length = d.tail_len / kMmPerInch;
  if (!d.TAIL || d.tail_type == kFlatBase || !known_inch(length) || length >= d.Glen) return {};
  const double most = calibre(d) / 2;
  const auto radius = [most](double mm) { return known_inch(mm) ? std::min(mm / kMmPerInch / 2, most) : 0; };
  return {length, radius(d.tail_dia_small), radius(d.tail_dia_large)};
}

TurnedShape bullet_shape(const CartridgeDimensions& d, double base, double tip_length) {
  const double r = calibre(d) / 2, tip = base + d.Glen;
  const TailShape tail = tail_shape(d);
  TurnedShape shape;
  if (tail.length > 0 && d.tail_type == kOuterCone)
    shape.outline = {{base, tail.base}, {base + tail.length, tail.body}};
  else
    shape.outline = {{base, r}};
  const double body_from = shape.outline.back().x;
  const double nose = std::min(std::max({tip_length, 0.15 * d.Glen, r}), tip - body_from);
  if (shape.outline.back().y < r) shape.outline.push_back({body_from, r});
  constexpr int steps = 16;
  constexpr double flat = 0.14;  // radius of the flat over that of the bullet
  for (int i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    shape.outline.push_back({tip - nose * (1 - t), r * (1 - (1 - flat) * t * t)});
  }
  shape.dot(tip - nose, tip);
  return shape;
}

}  // namespace tv
