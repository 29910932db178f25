// Fits: the shot repeated until a value of it meets a target. The powder table fits each powder this way, a
// click beside an axis the load at hand.
#pragma once

#include "engine/shot.h"
#include "tables/root_finder.h"

namespace tv {

enum class Fitted { charge, chamber, travel };  // kg, m3, m: the value that is varied
enum class Meets {
  nothing,        // one shot, no fit
  peak_pressure,  // Pa
  velocity,       // at shot exit, m/s
  barrel_time,    // from a tenth of the peak pressure to shot exit, s
  rise_time,      // from a tenth of the peak pressure to the peak, s
  whole_time,     // from the first logged point to shot exit, s
};
struct FitRule {
  Fitted fitted = Fitted::charge;
  Meets meets = Meets::nothing;
  double tolerance = 0;  // in the unit of the target
  Guard guard = Guard::none;
};

enum class FitEnd { met, shot_failed, not_converged };

// Repeats quickShot from the value now in s until the rule is met; s, curve and result then hold that shot. A
// shot that fails ends the fit, but for chamber, travel and the rise time. shots is counted up.
FitEnd run_fit(CalcState& s, ShotCurve& curve, ShotResult& result, const FitRule& rule, double target,
               int& shots);

// The value that a rule looks at, from the last shot.
double measured(Meets meets, const ShotCurve& curve, const ShotResult& result);

enum class FitMode { peak_pressure = 0, velocity = 1, barrel_time = 2, travel = 3, barrel_length = 4 };

// Fits the charge of the load to a target, mode peak_pressure (Pa), velocity (m/s) or barrel_time (s).
// True: chargeKg and chargeGr are the charge found, everything else in s is as before, and curve and result
// hold its shot. False: not to be met; s is as before in every field.
// why: a coarse step has no times, so barrel_time runs with the normal step.
bool fit_charge(CalcState& s, ShotCurve& curve, ShotResult& result, FitMode mode, double target);

// Mode travel (value in mm, at least 1) or barrel_length (inch, at least 1): barrel and travel that belong
// together. Between them lies the space from bolt face to bullet base, overall length less bullet length. Not
// ok when the value is too small, or the barrel would not reach beyond the bullet.
struct FitGeometry {
  bool ok = false;
  double travel_mm = 0;
  double barrel_in = 0;
};
FitGeometry fit_geometry(const CalcState& s, FitMode mode, double value);

}  // namespace tv
