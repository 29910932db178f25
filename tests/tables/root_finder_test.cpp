#include "tables/root_finder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tables/fit.h"
#include "tables/fixture.h"

namespace tv {
namespace {

CalcState chamber() {
  CalcState s;
  s.caseM3 = 3e-6;
  s.chargeKg = 0.0027;
  s.Pdens = 1.6;
  return s;
}

FitStep step(SecantState& state, double target, double current, double& x, Guard guard = Guard::none,
             double tolerance = 1e-9) {
  return SecantStep(state, target, current, x, kMaxFitSteps, tolerance, guard, chamber());
}

TEST(SecantStep, FindsTheRootOfALineInThreeStepsAndPartsEqualValues) {
  SecantState state;
  double x = 0.002;
  const auto f = [](double v) { return 3e8 * v - 1e5; };
  EXPECT_EQ(step(state, 4e5, f(x), x), FitStep::more);
  EXPECT_DOUBLE_EQ(x, 0.00201);  // the fixed nudge
  EXPECT_EQ(step(state, 4e5, f(x), x), FitStep::more);
  EXPECT_NEAR(x, 5e5 / 3e8, 1e-15);
  EXPECT_EQ(step(state, 4e5, f(x), x, Guard::none, 1e-3), FitStep::met);
  EXPECT_TRUE(state.n == 0 && state.x[1] == 0);

  step(state, 5, 1, x);
  const double second = x;
  EXPECT_EQ(step(state, 5, 1, x), FitStep::more);
  EXPECT_DOUBLE_EQ(x, second - 1.1e-5);
}

TEST(GuardStep, LeavesFreeVolumeAndNeverGoesToNothing) {
  const CalcState s = chamber();
  CalcState exact;
  exact.caseM3 = 0.5;
  exact.Pdens = 0.001;
  const double least = 1.2 * 0.0027 / 1600;
  const struct {
    Guard guard;
    const CalcState& state;
    double x, guarded;
  } cases[] = {{Guard::charge, s, 0.0047, 0.0047},   {Guard::charge, exact, 0.5, 0.475},
               {Guard::charge, s, 1, 0.95 * 0.0048}, {Guard::chamber, s, 2e-6, 2e-6},
               {Guard::chamber, s, 1e-6, least},     {Guard::none, s, -1, -1}};
  for (const auto& c : cases) EXPECT_DOUBLE_EQ(GuardStep(c.x, c.guard, c.state), c.guarded) << c.x;

  // A proposal below 0 is half the step before; a chamber keeps room for its charge.
  for (const auto& [guard, from, halved] : {std::tuple{Guard::charge, 0.002, 0.001005},
                                            {Guard::none, 0.4, 0.200005},
                                            {Guard::chamber, 2.1e-6, 6.05e-6},
                                            {Guard::chamber, -7e-6, least}}) {
    SecantState state;
    double x = from;
    step(state, 100, 1, x, guard);
    EXPECT_EQ(step(state, 100, 0.99999, x, guard), FitStep::more);
    EXPECT_NEAR(x, halved, 1e-12) << from;
  }
  SecantState state;
  double x = 0.002;
  CalcState no_density = s;
  no_density.Pdens = 0;
  SecantStep(state, 5, 1, x, kMaxFitSteps, 0.1, Guard::charge, no_density);
  EXPECT_EQ(SecantStep(state, 5, 2, x, kMaxFitSteps, 0.1, Guard::charge, no_density), FitStep::failed);
}

TEST(FitGeometry, BarrelAndTravelDifferByTheSpaceToTheBulletBase) {
  const CalcState s = test::rifle().s;
  EXPECT_NEAR(fit_geometry(s, FitMode::travel, 500).barrel_in, 500 / 25.4 + 1.7, 1e-12);
  EXPECT_NEAR(fit_geometry(s, FitMode::barrel_length, 20).travel_mm, 18.3 * 25.4, 1e-9);
  const struct {
    FitMode mode;
    double value;
    bool ok;
  } cases[] = {{FitMode::travel, 1, true},
               {FitMode::travel, 0.99, false},
               {FitMode::barrel_length, 0.99, false},
               {FitMode::barrel_length, 1.6, false},  // ends behind the bullet
               {FitMode::travel, std::nan(""), false}};
  for (const auto& c : cases) EXPECT_EQ(fit_geometry(s, c.mode, c.value).ok, c.ok) << c.value;
}

}  // namespace
}  // namespace tv
