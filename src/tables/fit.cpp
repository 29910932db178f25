#include "tables/fit.h"

#include <array>
#include <cmath>

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

FitEnd run_fit(CalcState& s, ShotCurve& curve, ShotResult& result, const FitRule& rule, double target,
               int& shots) {
  SecantState search;
  double& x = fitted_value(s, rule.fitted);
  while (x > 0) {
    ++shots;
    if (!quickShot(s, curve, result)) return FitEnd::shot_failed;
    if (rule.meets == Meets::nothing) return FitEnd::met;
    const double current = measured(rule.meets, curve, result);
    const FitStep step = SecantStep(search, target, current, x, kMaxFitSteps, rule.tolerance, rule.guard, s);
    if (step == FitStep::met) return FitEnd::met;
    if (step == FitStep::failed) break;
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
