// Bore friction, for bullets with heavy resistance in the bore: energy taken from the finished velocity
// curve. The pressures stay those of the run without friction.
#include "engine/burn_model.h"
#include "engine/checked.h"

namespace tv {
namespace {

constexpr double kLeastFriction = 1;  // Pa

// Share of the friction pressure at point i. The eighth power of the sine, reached late by the factor 1.1,
// lets the resistance rise slowly over the ramp; behind it the force falls as the velocity rises.
//
// in:  ramp [m], not above 0 when there is no rise at all; best [m/s], the highest velocity before point i
double resistance(const ShotCurve& c, std::size_t i, double ramp, double best) {
  if (ramp > 0 && c.x[i] / ramp < 1) {
    return checked_pow(std::sin(checked_div(c.x[i] * kPi, 2 * ramp * 1.1)), 8);
  }
  return checked_div(best, c.v[i]);
}

}  // namespace

bool applyBoreFriction(const CalcState& s, ShotCurve& c, ShotResult& r) {
  if (!(s.frictionPress > kLeastFriction)) return true;
  r.vMuzzle = 0;  // from here the best velocity so far
  const double P = checked_div(s.frictionPress * s.effMass, s.bulletKg);
  const double ramp =
      checked_div((checked_div((s.Kap - 1) * s.chargeKg * s.ExwJ, P) - s.freeVol) * 0.5, s.boreM2);
  double taken = 0;
  for (std::size_t i = 1; i <= static_cast<std::size_t>(r.lastIdx); ++i) {
    const double dx = c.x[i] - c.x[i - 1];
    taken = finite(taken - dx * s.boreM2 * P * resistance(c, i, ramp, r.vMuzzle));
    const double q = finite(c.v[i] * c.v[i] + checked_div(2 * taken, s.bulletKg));
    if (!(q > 0)) {
      r.lastIdx = static_cast<int>(i) - 1;
      c.v[i] = 0;
      return false;
    }
    c.v[i] = std::sqrt(q);
    if (c.v[i] > r.vMuzzle) r.vMuzzle = c.v[i];
  }
  return true;
}

}  // namespace tv
