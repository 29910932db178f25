#include "powder/burn_function.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tv {
namespace {

const BurnLaw kRising{0.7350, 1.2, 0.405, 1.5803};

TEST(BurnFunction, TwoPartsAndTheLimitBelongsToTheSecond) {
  EXPECT_DOUBLE_EQ(burn_rate(kRising, 0), 0.735);
  EXPECT_DOUBLE_EQ(burn_rate(kRising, 0.3), 0.735 * std::sqrt(1.36));
  EXPECT_DOUBLE_EQ(burn_rate(kRising, 0.405), 1.5803 * 0.735 * std::sqrt(0.595));
  EXPECT_EQ(burn_rate(kRising, 1), 0);
  const BurnLaw whole{0.8, 0.5, 1, 0};
  EXPECT_DOUBLE_EQ(burn_rate(whole, 1), 0.8 * std::sqrt(1.5)) << "no second part, at the end neither";
}

TEST(BurnFunction, TheFactorLetsBothPartsMeet) {
  EXPECT_NEAR(joined(kRising).Ba1, 1.5803, 5e-5);
  std::mt19937 random(11);
  std::uniform_real_distribution<double> pdko(-0.99, 5), limit(0.01, 0.99);
  for (int i = 0; i < 1000; ++i) {
    const BurnLaw law = joined({0.7, pdko(random), limit(random), 0});
    EXPECT_NEAR(burn_rate(law, std::nextafter(law.Limz1, 0)), burn_rate(law, law.Limz1), 1e-9);
  }
  EXPECT_EQ(joined({0.7, 2, 1, 9}), (BurnLaw{0.7, 2, 1, 0}));
  for (const double low : {-1.0, -1.5})
    EXPECT_EQ(joined({0.7, low, 0.4, 9}), (BurnLaw{0.7, -0.99, 0.4, 1.001}));
}

TEST(BurnFunction, WhatIsRefusedNamesItsHint) {
  const struct {
    BurnLaw law;
    BurnHint hint;
  } cases[] = {{kRising, kNoHint},
               {{0, 1, 0.4, 1}, kHintVivacity},
               {{NAN, 1, 0.4, 1}, kHintVivacity},
               {{0.7, -2, 0.4, 1}, kNoHint},
               {{0.7, -2.01, 0.4, 1}, kHintCoefficient},
               {{0.7, -1, 1, 0}, kNoHint},
               {{0.7, -1.05, 1, 0}, kHintCoefficient},  // its root has no value near z = 1
               {{0.7, 1, 1.001, 1}, kHintLimit},
               {{0.7, 1, -0.1, 1}, kHintLimit},
               {{0.0009, 1, 0.4, 1}, kHintRange},
               {{1000.1, 1, 0.4, 1}, kHintRange},
               {{0.7, 10001, 0.4, 1}, kHintRange},
               {{0.7, 1, 0.009, 1}, kHintRange}};
  for (const auto& c : cases)
    EXPECT_EQ(law_hint(c.law), c.hint) << c.law.Ba0 << " " << c.law.PDko << " " << c.law.Limz1;
}

TEST(BurnFunction, StepsOfShaping) {
  using enum ShapingStep;
  const BurnLaw law = joined(kRising);
  EXPECT_DOUBLE_EQ(shaped(law, more_vivacity).Ba0, 0.745);
  EXPECT_DOUBLE_EQ(shaped(law, less_vivacity).Ba0, 0.725);
  EXPECT_DOUBLE_EQ(shaped(law, more_PDko).PDko, 1.3);
  EXPECT_DOUBLE_EQ(shaped(law, less_PDko).PDko, 1.1);
  EXPECT_DOUBLE_EQ(shaped(law, later_limit).Limz1, 0.415);
  EXPECT_DOUBLE_EQ(shaped(law, earlier_limit).Limz1, 0.395);
  BurnLaw at = law;
  for (int i = 0; i < 100; ++i) at = shaped(at, earlier_limit);
  EXPECT_EQ(at.Limz1, 0.01);
  for (int i = 0; i < 99; ++i) at = shaped(at, later_limit);
  EXPECT_EQ(at.Limz1, 1) << "reached exactly, in spite of the sums";
  EXPECT_EQ(at.Ba1, 0);
  at = {0.7, -0.9, 0.4, 0};
  EXPECT_EQ(shaped(at, less_PDko).PDko, -0.99);
}

TEST(BurnFunction, HandOverHasTheDigitsOnShow) {
  const HandOver over = handed_over({0.123456, 1.23456, 0.40449, 1.58034});
  EXPECT_FALSE(over.raised);
  EXPECT_EQ(over.law, (BurnLaw{0.1235, 1.2346, 0.404, 1.5803}));
  EXPECT_EQ(handed_over({0.7, 1, 0.9996, 70}).law, (BurnLaw{0.7, 1, 1, 0}));
  const HandOver raised = handed_over({0.7, -0.995, 0.5, 0.9975});
  EXPECT_TRUE(raised.raised);
  EXPECT_EQ(raised.law, (BurnLaw{0.7, -0.99, 0.5, 1.005}));
}

TEST(BurnFunction, Curve) {
  const BurnCurve curve = burn_curve(joined(kRising));
  EXPECT_DOUBLE_EQ(curve.slot[12], burn_rate(curve.law, 0.3));
  EXPECT_EQ(curve.slot[40], 0);
  EXPECT_NEAR(curve.top, 1.3 * 0.735 * std::sqrt(1.48), 1e-9) << "its highest slot is at 0.4";
  EXPECT_NEAR(*curve.joint, 0.735 * std::sqrt(1.486), 1e-9);
  EXPECT_FALSE(burn_curve({0.7, 1, 1, 0}).joint);
  EXPECT_EQ(burn_curve({0.7, 0.5, 0.4, 1}).law, (BurnLaw{0.7, -0.99999, 0.4, 1.0001}));
  const struct {
    double top, step;
  } steps[] = {{0.1, 0.01}, {0.11, 0.02}, {0.5, 0.05}, {1, 0.1},  {1.1, 0.2}, {3, 0.3},
               {3.1, 0.5},  {10, 1},      {21, 3},     {100, 10}, {199, 10},  {350, 30}};
  for (const auto& s : steps) EXPECT_EQ(burn_axis_step(s.top), s.step) << s.top;
}

TEST(BurnFunction, HistoryWalksBothWaysAndANewStepEndsIt) {
  ShapingHistory history;
  begin_history(history, {1});
  for (const double Ba0 : {2.0, 3.0, 3.0, 4.0}) add_step(history, {Ba0});
  EXPECT_EQ(undo_step(history).Ba0, 3);
  EXPECT_EQ(undo_step(history).Ba0, 2) << "the second 3 was no step";
  EXPECT_EQ(redo_step(history).Ba0, 3);
  add_step(history, {5});
  EXPECT_FALSE(can_redo(history));
  EXPECT_EQ(redo_step(history).Ba0, 5);
  for (int i = 0; i < 9; ++i) undo_step(history);
  EXPECT_EQ(undo_step(history).Ba0, 1);
  EXPECT_FALSE(can_undo(history));
}

}  // namespace
}  // namespace tv
