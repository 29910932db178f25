// How far the closed forms of a shot are from its equations: peak pressure and muzzle velocity by a step by
// step integration of the four equations of docs/model.md, beside those of the walk. It shares no formula
// with the walk. The difference is the part of a prediction's error that is arithmetic; what the model leaves
// out is in neither figure.
#pragma once

#include "engine/calc_state.h"

namespace tv {

struct PeakAndMuzzle {
  double pMax = 0;     // highest mean pressure, Pa
  double vMuzzle = 0;  // m/s
};

struct IntegratedShot {
  bool ok = false;        // false: the equations have no way to the muzzle, or it was not found
  PeakAndMuzzle figures;  // valid when ok
  int steps = 0;          // taken and refused
};

// Integrates from ignition to the muzzle, by the Runge-Kutta pair of orders 5 and 4 of Dormand and Prince
// over the velocity, with steps that end where the burn law changes, at burnout and at the muzzle.
//
// in:  s set up by prepareShot, any values; friction is not looked at
//      tolerance of one step, relative to the gas volume and to the charge, 1e-13 to 0.001; 1e-9 gives the
//      velocity to 1e-8 and the peak to 1e-5
IntegratedShot integrate_shot(const CalcState& s, double tolerance = 1e-9);

struct CrossCheck {
  bool ok = false;           // false: one of the two did not finish
  PeakAndMuzzle closed;      // of the walk without bore friction, at the step setting of s
  PeakAndMuzzle integrated;  // as integrate_shot gives them
  PeakAndMuzzle percent;     // of closed over integrated, less 100
};

// in:  s set up by prepareShot; curve is overwritten
CrossCheck cross_check(const CalcState& s, ShotCurve& curve);

}  // namespace tv
