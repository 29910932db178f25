// Bodies that were turned, as half an outline: what the drawings of cartridge, case and bullet share.
#pragma once

#include <vector>

#include "engine/calc_state.h"
#include "output/draw_list.h"

namespace tv {

inline constexpr double kMostInch = 100;  // nothing of a cartridge is larger
// A length that was measured: above zero and of a size that can be.
bool known_inch(double inch);

// Distance along the axis and radius, inch.
using Profile = std::vector<Point>;
// The part of it between two places along the axis.
Profile part(const Profile& p, double from, double to);

struct TurnedShape {
  Profile outline;
  double dotted_from = kMostInch, dotted_to = kMostInch;  // the part that is only schematic
  void dot(double from, double to) { dotted_from = from, dotted_to = to; }
};

// The bullet's diameter, else that of the bore, inch.
double calibre(const CartridgeDimensions& d);

// Inch; radii at the base and where the body begins. No length: no tail, or one that does not count.
struct TailShape {
  double length = 0, base = 0, body = 0;
};
TailShape tail_shape(const CartridgeDimensions& d);

// From its base on at the given place. The tip is only schematic: a parabola with a small flat, as long as
// wanted but never too blunt nor longer than what the tail leaves.
TurnedShape bullet_shape(const CartridgeDimensions& d, double base, double tip_length);

}  // namespace tv
