// The bisection with its signs known beforehand against the literal one.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "engine/burn_model.h"
#include "engine/checked.h"
#include "engine/loads.h"

namespace tv::test {
namespace {

// The bits of the value, or the number of a failure.
template <typename Solve>
std::uint64_t solved(Solve solve, const BurnModel& model, BurnSolver& solver, double x) {
  try {
    return std::bit_cast<std::uint64_t>(solve(model, solver, x));
  } catch (const ArithmeticFailure& failure) {
    return static_cast<std::uint64_t>(failure.number);
  }
}

// Odd powders and travels in any order, as no walk would have them: digressive up to where the root vanishes,
// nearly no progressivity, a start pressure at the bound, loads that need more than all of the charge.
CalcState odd_load(LoadMaker& make, int n) {
  constexpr double kOdd[] = {0,    1e-12, 1e-9,  1e-6, 1e-3,  -1e-9, -1e-3,
                             -0.5, -0.65, -0.67, -0.9, -0.99, 100,   1e4};
  CalcState s = make.reasonable(true);
  s.PDko = n % 3 == 0 ? kOdd[static_cast<std::size_t>(n) / 3 % std::size(kOdd)] : make.between(-0.99, 6);
  s.start_pressure = std::exp(make.between(std::log(1e6), std::log(1.3 * start_pressure_bound(s))));
  s.Ba0 *= std::exp(make.between(-2, 2));
  if (n % 5 == 0) s.dim.qfq = std::exp(make.between(0, 7));
  return s;
}

TEST(BurnSolve, SameBitsAsTheLiteralBisection) {
  LoadMaker make(22);
  int compared = 0;
  for (int n = 0; n < 12000; ++n) {
    const bool odd = n % 2 == 0;
    const CalcState s = odd ? odd_load(make, n) : make.reasonable(true);
    BurnModel model;
    try {
      model = burn_inputs(s);
      if (!phase1_constants(model)) continue;
    } catch (const ArithmeticFailure&) {
      continue;
    }
    BurnSolver fast, literal;
    for (int k = 1; k <= 20; ++k) {
      const double x = odd ? s.travelM * std::exp(make.between(-16, 1)) : 0.005 * k;
      ASSERT_EQ(solved(burnSolve, model, fast, x), solved(burnSolveLiteral, model, literal, x))
          << n << " b " << s.PDko << " x " << x;
      ++compared;
    }
  }
  EXPECT_GT(compared, 150000);
}

}  // namespace
}  // namespace tv::test
