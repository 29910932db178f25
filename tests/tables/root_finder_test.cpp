#include "tables/root_finder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tables/fit.h"
#include "tables/fixture.h"

namespace tv {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

CalcState chamber() {
  CalcState s;
  s.caseM3 = 3e-6;
  s.chargeKg = 0.0027;
  s.Pdens = 1.6;
  return s;
}

FitStep step(SecantState& state, double target, double current, double& x, Guard guard = Guard::none) {
  return SecantStep(state, target, current, x, kMaxFitSteps, 1e-9, guard, chamber());
}

TEST(SecantStep, FindsTheRootOfALineInThreeSteps) {
  SecantState state;
  double x = 0.002;
  const auto f = [](double v) { return 3e8 * v - 1e5; };
  EXPECT_EQ(step(state, 4e5, f(x), x), FitStep::more);
  EXPECT_DOUBLE_EQ(x, 0.00201);  // the fixed nudge
  EXPECT_EQ(step(state, 4e5, f(x), x), FitStep::more);
  EXPECT_NEAR(x, 5e5 / 3e8, 1e-15);
  EXPECT_EQ(SecantStep(state, 4e5, f(x), x, kMaxFitSteps, 1e-3, Guard::none, chamber()), FitStep::met);
  EXPECT_EQ(state.n, 0);
  EXPECT_EQ(state.x[1], 0);
}

TEST(SecantStep, PartsTwoEqualValues) {
  SecantState state;
  double x = 0.002;
  step(state, 5, 1, x);
  const double second = x;
  EXPECT_EQ(step(state, 5, 1, x), FitStep::more);
  EXPECT_DOUBLE_EQ(x, second - 1.1e-5);
}

TEST(SecantStep, GivesUpAtTheLastStep) {
  SecantState state;
  double x = 0.002, before = x;
  int steps = 0;
  FitStep answer = FitStep::more;
  while (answer == FitStep::more) {
    before = x;
    answer = step(state, 5, 1 + 1e-3 * (steps % 3), x);
    ++steps;
  }
  EXPECT_EQ(answer, FitStep::failed);
  EXPECT_EQ(steps, kMaxFitSteps);
  EXPECT_EQ(x, before);
  EXPECT_EQ(state.n, 0);
}

TEST(SecantStep, ValuesThatAreNotFiniteEndTheFit) {
  for (const double bad : {kInf, -kInf, std::nan("")}) {
    SecantState state;
    double x = 0.002;
    step(state, 5, 1, x);
    const double before = x;
    EXPECT_EQ(step(state, 5, bad, x), FitStep::failed) << bad;
    EXPECT_EQ(x, before);
  }
  SecantState state;  // a step that overflows
  double x = 1e300;
  step(state, 1e308, 0, x);
  x = -1e300;
  EXPECT_EQ(step(state, 1e308, 1e-300, x), FitStep::failed);
}

TEST(GuardStep, LeavesFreeVolume) {
  const CalcState s = chamber();
  EXPECT_EQ(GuardStep(0.0047, Guard::charge, s), 0.0047);
  CalcState exact;
  exact.caseM3 = 0.5;
  exact.Pdens = 0.001;
  EXPECT_EQ(GuardStep(0.5, Guard::charge, exact), 0.475);  // no space left
  EXPECT_DOUBLE_EQ(GuardStep(1, Guard::charge, s), 0.95 * 0.0048);
  EXPECT_EQ(GuardStep(2e-6, Guard::chamber, s), 2e-6);
  EXPECT_DOUBLE_EQ(GuardStep(1e-6, Guard::chamber, s), 1.2 * 0.0027 / 1600);
  EXPECT_EQ(GuardStep(-1, Guard::none, s), -1);
  SecantState state;
  double x = 0.002;
  CalcState no_density = s;
  no_density.Pdens = 0;
  SecantStep(state, 5, 1, x, kMaxFitSteps, 0.1, Guard::charge, no_density);
  EXPECT_EQ(SecantStep(state, 5, 2, x, kMaxFitSteps, 0.1, Guard::charge, no_density), FitStep::failed);
}

TEST(FitCharge, MeetsEachTargetByTheChargeAlone) {
  for (const int schrit : {0, 2}) {
    test::Shot shot = test::rifle();
    ASSERT_TRUE(shot.run());
    shot.s.schrit = schrit;
    setBaseStep(shot.s);
    const CalcState before = shot.s;
    const struct {
      FitMode mode;
      Meets meets;
      double target, tolerance;
    } cases[] = {{FitMode::peak_pressure, Meets::peak_pressure, 400e6, 0.05e6},
                 {FitMode::velocity, Meets::velocity, 800, 0.01},
                 {FitMode::barrel_time, Meets::whole_time, 1.6e-3, 1e-6}};
    for (const auto& c : cases) {
      SCOPED_TRACE(static_cast<int>(c.mode));
      ASSERT_TRUE(fit_charge(shot.s, shot.curve, shot.result, c.mode, c.target));
      test::Shot single = test::rifle();
      single.s.chargeGr = shot.s.chargeGr;
      single.s.schrit = c.mode == FitMode::barrel_time ? 0 : schrit;
      ASSERT_TRUE(single.run());
      EXPECT_NEAR(measured(c.meets, single.curve, single.result), c.target, c.tolerance * 1.001);
      EXPECT_NEAR(shot.s.chargeGr, shot.s.chargeKg * 15432.358353, 1e-9);
      shot.s.chargeKg = before.chargeKg;
      shot.s.chargeGr = before.chargeGr;
      EXPECT_EQ(shot.s, before);
    }
  }
}

TEST(FitCharge, AnImpossibleTargetLeavesTheLoadAlone) {
  test::Shot shot = test::rifle();
  const CalcState before = shot.s;
  EXPECT_FALSE(fit_charge(shot.s, shot.curve, shot.result, FitMode::velocity, 5000));
  EXPECT_FALSE(fit_charge(shot.s, shot.curve, shot.result, FitMode::peak_pressure, -1e6));
  EXPECT_FALSE(fit_charge(shot.s, shot.curve, shot.result, FitMode::peak_pressure, kInf));
  EXPECT_EQ(shot.s, before);
}

TEST(FitGeometry, BarrelAndTravelDifferByTheSpaceToTheBulletBase) {
  const CalcState s = test::rifle().s;
  const FitGeometry travel = fit_geometry(s, FitMode::travel, 500);
  EXPECT_TRUE(travel.ok);
  EXPECT_NEAR(travel.barrel_in, 500 / 25.4 + 1.7, 1e-12);
  const FitGeometry barrel = fit_geometry(s, FitMode::barrel_length, 20);
  EXPECT_TRUE(barrel.ok);
  EXPECT_NEAR(barrel.travel_mm, 18.3 * 25.4, 1e-9);
  EXPECT_TRUE(fit_geometry(s, FitMode::travel, 1).ok);
  EXPECT_FALSE(fit_geometry(s, FitMode::travel, 0.99).ok);
  EXPECT_FALSE(fit_geometry(s, FitMode::barrel_length, 0.99).ok);
  EXPECT_FALSE(fit_geometry(s, FitMode::barrel_length, 1.6).ok);  // ends behind the bullet
  EXPECT_FALSE(fit_geometry(s, FitMode::travel, std::nan("")).ok);
}

}  // namespace
}  // namespace tv
