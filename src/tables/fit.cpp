#include "tables/fit.h"

#include <array>
#include <cmath>
#include <limits>

#include "engine/checked.h"

namespace tv {
namespace {

double& fitted_value(CalcState& s, Fitted fitted) {
  switch (fitted) {
    case Fitted::chamber:
      return s.caseM3;
    case Fitted::travel:
      return s.travelM;
    case Fitted::charge:
      break;
  }
  return s.chargeKg;
}

// The rise time falls with the charge, but in small jumps, since it ends at a logged point. So a search for
// it is kept between the greatest charge that is too slow and the least above it that is too fast.
struct ChargesAround {
  double slow = 0, fast = std::numeric_limits<double>::infinity();  // kg
  double slow_off = 0, fast_off = 0;                                // s beyond the target, either way

  void note(double x, double off) {
    if (off > 0 && x > slow) {
      slow = x;
      slow_off = off;
      if (fast <= slow) fast = std::numeric_limits<double>::infinity();
    } else if (off < 0 && x > slow && x < fast) {
      fast = x;
      fast_off = -off;
    }
  }
  double between(double x) const {
    if (x > slow && x < fast) return x;
    if (std::isfinite(fast)) return (slow + fast) / 2;
    return 1.2 * slow;
  }
  // Only a jump is left between them; its nearer side is the closest that there is.
  bool at_jump() const { return fast - slow < 1e-7 && std::min(slow_off, fast_off) < kJump; }
  double nearer() const { return slow_off < fast_off ? slow : fast; }

  static constexpr double kJump = 10e-6;  // s; those of good powders have up to 7
};

constexpr std::array<FitRule, 3> kChargeFits{{
    {Fitted::charge, Meets::peak_pressure, 0.05e6, Guard::charge},
    {Fitted::charge, Meets::velocity, 0.01, Guard::charge},
    {Fitted::charge, Meets::whole_time, 1e-6, Guard::charge},
}};

}  // namespace

double measured(Meets meets, const ShotCurve& curve, const ShotResult& result) {
  switch (meets) {
    case Meets::peak_pressure:
      return result.pMax;
    case Meets::velocity:
      return curve.v[static_cast<std::size_t>(result.lastIdx)];
    case Meets::barrel_time:
      return std::abs(result.t10);
    case Meets::rise_time:
      return std::abs(result.ptime);
    case Meets::whole_time:
      return std::abs(curve.t[0]);
    case Meets::nothing:
      break;
  }
  return 0;
}

namespace {

// The next value after a shot that could not be calculated; false where that ends the fit. A charge too low
// to drive the bullet out is too slow for any rise time. Chamber and travel go half the way back to the last
// good value: the first step of a search is a fixed one, and for a pistol's chamber twenty times that
// chamber.
bool go_back(const FitRule& rule, SecantState& search, ChargesAround& around, double& x) {
  if (search.n == 0) return false;
  const auto next = static_cast<std::size_t>(search.n) + 1;
  if (rule.meets == Meets::rise_time && x < around.fast) {
    around.note(x, std::numeric_limits<double>::infinity());
    x = around.between(x);
  } else if (rule.fitted != Fitted::charge) {
    x = (search.x[next - 1] + x) / 2;
  } else {
    return false;
  }
  search.x[next] = x;
  return true;
}

}  // namespace

FitEnd run_fit(CalcState& s, ShotCurve& curve, ShotResult& result, const FitRule& rule, double target,
               int& shots) {
  SecantState search;
  ChargesAround around;
  double& x = fitted_value(s, rule.fitted);
  for (int failed = 0; x > 0;) {
    ++shots;
    if (!quickShot(s, curve, result)) {
      if (++failed > kMaxFitSteps || !go_back(rule, search, around, x)) return FitEnd::shot_failed;
      continue;
    }
    if (rule.meets == Meets::nothing) return FitEnd::met;
    const double current = measured(rule.meets, curve, result);
    around.note(x, current - target);
    const FitStep step = SecantStep(search, target, current, x, kMaxFitSteps, rule.tolerance, rule.guard, s);
    if (step == FitStep::met) return FitEnd::met;
    if (step == FitStep::failed) break;
    if (rule.meets != Meets::rise_time) continue;
    if (around.at_jump()) {
      x = around.nearer();
      ++shots;
      return quickShot(s, curve, result) ? FitEnd::met : FitEnd::shot_failed;
    }
    x = search.x[static_cast<std::size_t>(search.n) + 1] = around.between(x);
  }
  return FitEnd::not_converged;
}

bool fit_charge(CalcState& s, ShotCurve& curve, ShotResult& result, FitMode mode, double target) {
  if (mode == FitMode::travel || mode == FitMode::barrel_length || !std::isfinite(target)) return false;
  const CalcState before = s;
  if (mode == FitMode::barrel_time && s.schrit == 2) s.schrit = 0;
  int shots = 0;
  const FitRule& rule = kChargeFits[static_cast<std::size_t>(mode)];
  const bool met = run_fit(s, curve, result, rule, target, shots) == FitEnd::met;
  const double found = s.chargeKg;
  s = before;
  if (!met) return false;
  s.chargeKg = found;
  s.chargeGr = found * (kGrainsPerGram * 1000);
  return true;
}

FitGeometry fit_geometry(const CalcState& s, FitMode mode, double value) {
  FitGeometry fitted;
  if (!(value >= 1.0) || !std::isfinite(value)) return fitted;
  const double base_in = s.dim.Plen - s.dim.Glen;  // bolt face to bullet base
  if (mode == FitMode::travel) {
    fitted.travel_mm = value;
    fitted.barrel_in = value / kMmPerInch + base_in;
  } else if (mode == FitMode::barrel_length) {
    fitted.barrel_in = value;
    fitted.travel_mm = (value - base_in) * kMmPerInch;
  } else {
    return fitted;
  }
  fitted.ok = fitted.travel_mm > 0 && fitted.barrel_in > 0;
  return fitted;
}

}  // namespace tv
