// The bisection with its signs told beforehand against the literal one.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "engine/burn_model.h"
#include "engine/checked.h"
#include "engine/loads.h"

namespace tv::test {
namespace {

struct Solved {
  std::uint64_t bits = 0;  // of the value
  int failure = 0;
  bool operator==(const Solved&) const = default;
};

template <typename Solve>
Solved solved(Solve solve, const BurnModel& model, BurnSolver& solver, double x) {
  try {
    return {std::bit_cast<std::uint64_t>(solve(model, solver, x)), 0};
  } catch (const ArithmeticFailure& failure) {
    return {0, failure.number};
  }
}

TEST(BurnSolve, SameBitsWithAThirdOfTheEvaluationsOnTheWalk) {
  LoadMaker make(21);
  ShotCurve c;
  ShotResult r;
  long told = 0, literal = 0;
  for (int n = 0; n < 3000; ++n) {
    const CalcState s = make.reasonable(true);
    ASSERT_TRUE(runShot(s, c, r).ok());
    BurnModel model = burn_inputs(s);
    ASSERT_TRUE(phase1_constants(model));
    BurnSolver fast, plain;
    const int end = r.z1Idx >= 0 ? r.z1Idx : r.burnIdx >= 0 ? r.burnIdx : r.lastIdx;
    for (int i = 1; i <= end; ++i) {
      const double x = c.x[static_cast<std::size_t>(i)];
      ASSERT_EQ(solved(burnSolve, model, fast, x), solved(burnSolveLiteral, model, plain, x))
          << n << " " << i;
    }
    told += fast.evaluations;
    literal += plain.evaluations;
  }
  EXPECT_LT(told * 3, literal);
}

// Odd powders and travels in any order, as no walk would ask: digressive up to where the root vanishes,
// nearly no progressivity, a start pressure at the bound, loads that need more than all of the charge.
TEST(BurnSolve, SameBitsForOddLoadsAndJumpingTravels) {
  LoadMaker make(22);
  constexpr double kOdd[] = {0,    1e-12, 1e-9,  1e-6, 1e-3,  -1e-9, -1e-3,
                             -0.5, -0.65, -0.67, -0.9, -0.99, 100,   1e4};
  int compared = 0;
  for (int n = 0; n < 20000; ++n) {
    CalcState s = make.reasonable(true);
    s.PDko = n % 3 == 0 ? kOdd[n / 3 % std::size(kOdd)] : make.between(-0.99, 6);
    s.start_pressure = std::exp(make.between(std::log(1e6), std::log(1.3 * start_pressure_bound(s))));
    s.Ba0 *= std::exp(make.between(-2, 2));
    if (n % 5 == 0) s.dim.qfq = std::exp(make.between(0, 7));
    BurnModel model;
    try {
      model = burn_inputs(s);
      if (!phase1_constants(model)) continue;
    } catch (const ArithmeticFailure&) {
      continue;
    }
    BurnSolver fast, plain;
    for (int k = 0; k < 12; ++k) {
      const double x = s.travelM * std::exp(make.between(-16, 1));
      ASSERT_EQ(solved(burnSolve, model, fast, x), solved(burnSolveLiteral, model, plain, x))
          << n << " b " << s.PDko << " x " << x;
      ++compared;
    }
  }
  EXPECT_GT(compared, 150000);
}

}  // namespace
}  // namespace tv::test
