// The secant search that every fit of the tables uses: one step after each shot.
#pragma once

#include <array>

#include "engine/calc_state.h"

namespace tv {

inline constexpr int kMaxFitSteps = 39;  // shots that a fit may take, in every use

// The search so far; x[0], y[0] stand before the first point. One per fit, idle with n = 0.
struct SecantState {
  int n = 0;
  std::array<double, 51> x{};
  std::array<double, 51> y{};
};

enum class FitStep { more, met, failed };

// Which upper bound watches over a proposed value.
enum class Guard {
  none,
  charge,   // kg: never more powder than 95 % of the chamber takes at solid density
  chamber,  // m3: never less than 1.2 times the solid volume of the charge
};

// The proposal, or the bound when the powder would leave no free volume. Charge, chamber and density from s.
// Throws ArithmeticFailure for a density of 0; SecantStep answers that as a failed fit.
double GuardStep(double x, Guard guard, const CalcState& s);

// One step, to be called after the shot at x with the value that it gave.
// in:  target, current and tolerance in the unit of the value; x and everything derived from it in SI
// out: met: within the tolerance, x stands; more: x is the next value to try; failed: no convergence in
//      max_steps, or an arithmetic failure, x stands. After met and failed the state is idle again.
// why: the first step is a fixed nudge of 1e-5 (0.01 g of charge); two equal values in a row are parted by
//      1.1e-5 the other way. A proposal not above 0 becomes half the value of the step before, for a chamber
//      at least the guard's bound.
FitStep SecantStep(SecantState& state, double target, double current, double& x, int max_steps,
                   double tolerance, Guard guard, const CalcState& s);

}  // namespace tv
