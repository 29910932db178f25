#include "tables/root_finder.h"

#include <algorithm>
#include <cmath>

#include "engine/checked.h"

namespace tv {
namespace {

double proposal(const SecantState& state, double target, double x_in) {
  const auto n = static_cast<std::size_t>(state.n);
  const double y = state.y[n], y_before = state.y[n - 1];
  if (y_before == y) return x_in - 1.1e-5;
  return finite(state.x[n] + checked_div((target - y) * (state.x[n - 1] - state.x[n]), y_before - y));
}

// Half of the step before, but a chamber never tighter than the guard's own bound.
double halved(double x, Guard guard, const CalcState& s) {
  const double least = guard == Guard::chamber ? 1.2 * checked_div(s.chargeKg, s.Pdens * 1000) : 0;
  return std::max(x / 2, least);
}

}  // namespace

double GuardStep(double x, Guard guard, const CalcState& s) {
  const double density = s.Pdens * 1000;  // kg/m3
  if (guard == Guard::chamber) {
    const double solid = checked_div(s.chargeKg, density);
    return x - solid <= 0 ? 1.2 * solid : x;
  }
  if (guard == Guard::charge) return s.caseM3 - checked_div(x, density) <= 0 ? 0.95 * s.caseM3 * density : x;
  return x;
}

FitStep SecantStep(SecantState& state, double target, double current, double& x, int max_steps,
                   double tolerance, Guard guard, const CalcState& s) {
  const auto finish = [&state](FitStep step) {
    state = SecantState{};
    return step;
  };
  if (std::abs(target - current) <= tolerance) return finish(FitStep::met);

  const auto n = static_cast<std::size_t>(++state.n);
  state.x[n] = x;
  state.y[n] = current;
  if (n == 1) {
    x = state.x[2] = x + 1e-5;
    return FitStep::more;
  }
  try {
    double next = proposal(state, target, x);
    if (!(next > 0)) next = halved(x, guard, s);
    if (state.n >= max_steps) return finish(FitStep::failed);
    x = state.x[n + 1] = GuardStep(next, guard, s);
    return FitStep::more;
  } catch (const ArithmeticFailure&) {
    return finish(FitStep::failed);
  }
}

}  // namespace tv
