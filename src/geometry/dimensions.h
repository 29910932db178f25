// The dimensions of cartridge and bullet: seating depth, lengths, volumes and travel kept consistent. Works
// on stored values only; a listener is told of each value written, in the order of writing.
#pragma once

#include <functional>

#include "engine/calc_state.h"

namespace tv {

enum class Dimension { Plen, Bsd, ssd, Vvg, Veff, Wob };

// What was changed, and so what moves with it.
enum DimensionEdit : int {
  kSeatingDepth = 0,   // overall length follows
  kBulletLength = 1,   // seating depth follows
  kOverallLength = 2,  // seating depth follows
  kCaseLength = 3,     // seating depth follows; the overall length is never below the case
  kBandSeating = 4,    // seating depth follows, then the overall length
  kNothingMoved = 9,   // any other number: volumes and travel only
};

// in:  Zkalm_shown the groove diameter as its metric field shows it [mm]; used for the tail of a boat tail
// bullet out: false when an overflow abandoned the operation; the values so far stand why: the displaced
// volume's constant 198.23 holds pi/4 and the conversion of cubic inches to grains of water; the
//      further division by the density of water is meant so
bool move_dimensions(CartridgeDimensions& d, int kind, double Zkalm_shown,
                     const std::function<void(Dimension)>& wrote);

// The band seating depth from the seating depth, and back: a boat tail shortens the full-diameter body.
double ssd_of_Bsd(const CartridgeDimensions& d);
double Bsd_of_ssd(const CartridgeDimensions& d);

// Volume of the tail that the bullet's cylinder does not fill, cm3: for a boat tail the cylinder less the
// frustum, for a hollow base the frustum.
double tail_volume(const CartridgeDimensions& d, double Zkalm_shown);

// Whether the tail's dimensions fit each other and the bullet; its large end may exceed the bullet by 0.02
// mm.
bool tail_is_possible(const CartridgeDimensions& d);

// Half the angle of the tail's cone, degrees: above zero for a boat tail, below for a hollow base. 0 where
// the ends differ by less than 0.01 mm or there is no length.
double tail_angle(const CartridgeDimensions& d);

// The full-diameter body of a boat tail bullet does not reach into the case: the tail stands above its mouth.
inline bool body_stands_off(const CartridgeDimensions& d) {
  return d.TAIL && d.tail_type == kOuterCone && d.ssd < 0;
}

}  // namespace tv
