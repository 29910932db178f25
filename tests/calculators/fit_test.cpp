// The fit gives back powders that strings were made with, and says so when it cannot.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "calculators/powder_fit.h"
#include "example_loads.h"

namespace tv {
namespace {

double velocity(CalcState s, double charge_gr) {
  static ShotCurve curve;
  ShotResult result;
  s.chargeGr = charge_gr;
  convertUnits(s);
  EXPECT_EQ(prepareShot(s), SetUp::ok);
  EXPECT_TRUE(runShot(s, curve, result).ok());
  return result.vMuzzle;
}

struct Ladder {
  int charges, shots;
  double sd;           // m/s
  double span = 0.08;  // of the charge, either way
};

std::vector<MeasuredSeries> strings(const CalcState& truth, const Ladder& ladder, unsigned seed) {
  std::mt19937_64 random(seed);
  const auto normal = [&] {  // twelve uniform numbers, near enough
    double sum = -6;
    for (int i = 0; i < 12; ++i) sum += static_cast<double>(random() >> 11) * 0x1p-53;
    return sum;
  };
  std::vector<MeasuredSeries> all;
  for (int i = 0; i < ladder.charges; ++i) {
    const double at = ladder.charges == 1 ? 0 : 2.0 * i / (ladder.charges - 1) - 1;
    MeasuredSeries& series = all.emplace_back();
    series.charge_gr = truth.chargeGr * (1 + ladder.span * at);
    const double mean = velocity(truth, series.charge_gr);
    for (int k = 0; k < ladder.shots; ++k)
      series.shots.push_back({mean + ladder.sd * normal(), 0, false, ""});
  }
  return all;
}

double true_value(const CalcState& s, std::string_view key) {
  return key == "abkof0" ? s.Ba0 : key == "prodeg" ? s.PDko : s.start_pressure;
}

TEST(PowderFit, StringsOfKnownPowdersComeBackWithinTheirIntervals) {
  const struct {
    const char* what;
    Ladder ladder;
    FitNumbers numbers;
    std::size_t fitted;
  } cases[] = {{"one charge", {1, 5, 6}, FitNumbers::automatic, 1},
               {"a ladder", {5, 5, 6}, FitNumbers::automatic, 1},
               {"three shots each", {4, 3, 6}, FitNumbers::one, 1},
               {"two numbers", {7, 10, 1.5, 0.1}, FitNumbers::two, 2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    int within = 0;
    for (unsigned seed = 1; seed <= 100; ++seed) {
      const CalcState truth = test::rifle_load();
      CalcState load = truth;
      load.Ba0 *= seed % 2 == 0 ? 1.15 : 0.9;
      if (c.fitted == 2) load.start_pressure *= 0.85;
      const PowderFit fit = fit_powder(load, fit_points(strings(truth, c.ladder, seed)), c.numbers);
      ASSERT_EQ(fit.fitted.size(), c.fitted);
      ASSERT_NE(fit.verdict, FitVerdict::undetermined) << seed;
      bool all = true;
      for (const FittedNumber& n : fit.fitted)
        all = all && true_value(truth, n.key) >= n.low && true_value(truth, n.key) <= n.high;
      within += all;
    }
    EXPECT_GE(within, 90);
    EXPECT_LE(within, 100);
  }
}

TEST(PowderFit, OneChargeMeetsItsMean) {
  const CalcState load = test::rifle_load();
  const double target = 1.03 * velocity(load, load.chargeGr);
  const FitPoint points[] = {{load.chargeGr, target, 5, 10}};
  const PowderFit fit = fit_powder(load, points);
  EXPECT_EQ(fit.verdict, FitVerdict::determined);
  EXPECT_NEAR(fit.after.vMuzzle, target, 0.02);
  EXPECT_NEAR(velocity(fit.state, load.chargeGr), target, 0.02);
  EXPECT_GT(fit.after.pMax, fit.before.pMax);
  // The standard error by hand: that of the mean over the slope of the velocity.
  CalcState above = fit.state, below = fit.state;
  above.Ba0 *= 1.01;
  below.Ba0 *= 0.99;
  const double slope =
      (velocity(above, load.chargeGr) - velocity(below, load.chargeGr)) / (0.02 * fit.state.Ba0);
  EXPECT_NEAR(fit.fitted[0].error, 5 / std::sqrt(10) / slope, 0.01 * fit.fitted[0].error);
  const double t9 = 2.26216;
  EXPECT_NEAR(std::log(fit.fitted[0].high / fit.fitted[0].value),
              t9 * fit.fitted[0].error / fit.fitted[0].value, 1e-4);
}

TEST(PowderFit, WhatTheDataCannotTellIsSaid) {
  const CalcState load = test::rifle_load();
  const double v = velocity(load, load.chargeGr);
  const auto verdict = [&](std::vector<FitPoint> points, FitNumbers numbers = FitNumbers::automatic) {
    const PowderFit fit = fit_powder(load, points, numbers);
    if (fit.verdict == FitVerdict::undetermined) {
      EXPECT_EQ(fit.state, load);
      EXPECT_EQ(fit.after.vMuzzle, 0);
    }
    EXPECT_NEAR(fit.before.vMuzzle, v, 1e-9);
    return fit.verdict;
  };
  EXPECT_EQ(verdict({}), FitVerdict::undetermined);
  EXPECT_EQ(verdict({{42, v, 0, 1}}), FitVerdict::barely) << "no scatter known";
  EXPECT_EQ(verdict({{42, v, 60, 4}}), FitVerdict::undetermined) << "scatter beyond use";
  EXPECT_EQ(verdict({{42, 3 * v, 5, 10}}), FitVerdict::undetermined) << "no vivacity is that fast";
  EXPECT_EQ(verdict({{200, v, 5, 10}}), FitVerdict::undetermined) << "no room for the charge";
  EXPECT_EQ(verdict({{41, v, 5, 10}, {42, v, 5, 10}}, FitNumbers::two), FitVerdict::undetermined);
  // A short ladder with the scatter of every day: one number yes, two no.
  const auto points = fit_points(strings(load, {5, 5, 8, 0.04}, 3));
  EXPECT_EQ(verdict(points, FitNumbers::one), FitVerdict::determined);
  EXPECT_EQ(verdict(points, FitNumbers::two), FitVerdict::undetermined);
  EXPECT_EQ(fit_powder(load, points).fitted.size(), 1u);
}

// Points without spread or count take the pooled one, so a wild point among good ones has its say by its
// weight only.
TEST(PowderFit, Weights) {
  const CalcState load = test::rifle_load();
  const double a = velocity(load, 41), b = velocity(load, 43);
  const auto Ba0 = [&](FitPoint first, FitPoint second) {
    const FitPoint points[] = {first, second};
    return fit_powder(load, points).fitted.at(0).value;
  };
  const double even = Ba0({41, a + 3, 5, 5}, {43, b, 5, 5});
  EXPECT_NEAR(Ba0({41, a + 3, 0, 0}, {43, b, 0, 0}), even, 1e-5);
  EXPECT_NEAR(Ba0({41, a + 3, 5, 5}, {43, b, 0, 5}), even, 1e-5);
  const double light = Ba0({41, a + 3, 15, 5}, {43, b, 5, 5});  // a ninth of the weight
  EXPECT_NEAR((light / load.Ba0 - 1) / (even / load.Ba0 - 1), 0.1 / 0.5, 0.02);
}

}  // namespace
}  // namespace tv
