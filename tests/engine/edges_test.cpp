// Loads at the edges of the model, each with what it must come to.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/burn_model.h"
#include "engine/loads.h"

namespace tv::test {
namespace {

struct Shot {
  ShotCurve c;
  ShotResult r;
  ShotOutcome outcome;
};

const Shot& shoot(CalcState& s) {
  static Shot shot;
  EXPECT_EQ(set_up(s), SetUp::ok);
  shot.outcome = runShot(s, shot.c, shot.r);
  return shot;
}

bool noted(const ShotResult& r, Note note) {
  for (int i = 0; i < r.runNotes.count; ++i) {
    if (r.runNotes.notes[static_cast<std::size_t>(i)] == note) return true;
  }
  return false;
}

TEST(Edges, LawThatNeverChangesGoesFromPhaseOneToBurnout) {
  for (double start : {0.0, 20e6}) {
    CalcState s = worked_load();
    s.Limz1 = 1;
    s.Ba0 = 0.6;
    s.start_pressure = start;
    const Shot& shot = shoot(s);
    ASSERT_TRUE(shot.outcome.ok());
    EXPECT_EQ(shot.r.z1Idx, -1);
    ASSERT_GT(shot.r.burnIdx, 0);
    EXPECT_NEAR(shot.c.z[static_cast<std::size_t>(shot.r.burnIdx)], 1, 1e-4);
    EXPECT_TRUE(noted(shot.r, Note::fwarn10));
  }
}

// b = 0 has forms of its own; a progressivity next to nothing must come to the same shot.
TEST(Edges, NoProgressivityIsTheLimitOfLittle) {
  for (double start : {0.0, 20e6}) {
    CalcState none = worked_load(), little = none;
    none.start_pressure = little.start_pressure = start;
    none.Ba0 = little.Ba0 = 0.7;
    none.PDko = 0;
    little.PDko = 1e-5;
    const ShotResult r = shoot(none).r;
    const ShotResult close = shoot(little).r;
    EXPECT_NEAR(close.vMuzzle / r.vMuzzle, 1, 1e-4);
    EXPECT_NEAR(close.pMax / r.pMax, 1, 1e-3);
  }
}

TEST(Edges, StartPressureCountsFromOneMegapascalOn) {
  CalcState s = worked_load();
  s.start_pressure = 0;
  const double plain = shoot(s).r.pMax;
  const double base = shoot(s).c.pB[50];
  s.start_pressure = 999999;
  EXPECT_EQ(shoot(s).r.pMax, plain);
  EXPECT_NE(shoot(s).c.pB[50], base) << "the base pressure counts it whatever its size";
  EXPECT_EQ(shoot(s).c.z[0], 0);
  s.start_pressure = 1000000;
  EXPECT_GT(shoot(s).c.z[0], 0);
  EXPECT_NEAR(shoot(s).c.p[0], 1000000, 1e-3);
  EXPECT_NE(shoot(s).r.pMax, plain);
}

TEST(Edges, BarrelShorterThanTheRiseEndsAtTheMuzzle) {
  CalcState s = worked_load();
  s.dim.Wob = 20;
  for (double start : {0.0, 25e6}) {
    s.start_pressure = start;
    const Shot& shot = shoot(s);
    ASSERT_TRUE(shot.outcome.ok());
    EXPECT_EQ(shot.r.notBurnt, 1);
    EXPECT_EQ(shot.r.peakState, 1);
    EXPECT_EQ(shot.r.peakIdx, shot.r.lastIdx);
    EXPECT_NEAR(shot.c.x[static_cast<std::size_t>(shot.r.lastIdx)], 0.02, 1e-12);
    EXPECT_TRUE(noted(shot.r, Note::fwarn8) && noted(shot.r, Note::fwarn9));
  }
}

TEST(Edges, ChargeBurntBeforeThePeakReportsThePeakAtBurnout) {
  CalcState s = worked_load();
  s.start_pressure = 0;
  s.Limz1 = 1;
  s.Ba0 = 0.9;
  s.PDko = 4;
  s.chargeGr = 40;
  s.dim.Bwg = 500;
  const Shot& shot = shoot(s);
  ASSERT_TRUE(shot.outcome.ok());
  EXPECT_EQ(shot.r.peakState, 3);
  EXPECT_EQ(shot.r.peakIdx, shot.r.burnIdx);
  EXPECT_TRUE(noted(shot.r, Note::fwarn12));
}

TEST(Edges, SetUpBlamesTheFirstValueOutOfRange) {
  const auto refused = [](auto change) {
    CalcState s = worked_load();
    change(s);
    return set_up(s);
  };
  EXPECT_EQ(refused([](CalcState& s) { s.Exw = 0.9, s.Kap = 2; }), SetUp::Exw);
  EXPECT_EQ(refused([](CalcState& s) { s.Ba0 = NAN, s.Kap = 2; }), SetUp::Ba0);
  EXPECT_EQ(refused([](CalcState& s) { s.PDko = -0.991; }), SetUp::PDko);
  EXPECT_EQ(refused([](CalcState& s) { s.Limz1 = 1.0001; }), SetUp::Limz1);
  EXPECT_EQ(refused([](CalcState& s) { s.chargeGr = 0; }), SetUp::chargeGr);
  // A charge whose solid volume reaches the case leaves no chamber, which is no arithmetic failure.
  EXPECT_EQ(refused([](CalcState& s) { s.chargeGr = s.dim.Veff / dicht_H2 * s.Pdens; }), SetUp::freeVol);
  EXPECT_EQ(refused([](CalcState& s) { s.dim.Wob = 1e308, s.dim.qfq = 1e300; }), SetUp::failed);
}

TEST(Edges, NoSpaceRunsNothingAndTableRowsOfFinishedTablesHaveNoBasePressure) {
  CalcState s = worked_load();
  ASSERT_EQ(set_up(s), SetUp::ok);
  static Shot shot;
  s.tableKind = 2;
  ASSERT_TRUE(runShot(s, shot.c, shot.r).ok());
  EXPECT_EQ(shot.c.pB[50], 0);
  s.freeVol = 0.9 * kLeastFreeVol;
  EXPECT_EQ(runShot(s, shot.c, shot.r).end, ShotEnd::no_space);
  EXPECT_EQ(shot.r.lastIdx, 0);
  EXPECT_EQ(shot.c.p[10], 0);
}

TEST(Friction, TakesNothingUpToOnePascalThenEnergyAndCanStopTheBullet) {
  CalcState s = worked_load();
  s.schrit = 1;
  const Shot bare = shoot(s);
  s.frictionOn = true;
  for (double none : {0.0, 1.0}) {
    s.frictionPress = none;
    EXPECT_EQ(shoot(s).c.v, bare.c.v);
  }
  s.frictionPress = 10e6;
  const Shot& slowed = shoot(s);
  ASSERT_TRUE(slowed.outcome.ok());
  EXPECT_LT(slowed.r.vMuzzle, bare.r.vMuzzle);
  EXPECT_GT(slowed.r.vMuzzle, 0.9 * bare.r.vMuzzle);
  EXPECT_EQ(slowed.c.p, bare.c.p) << "pressures stay those without friction";
  EXPECT_EQ(slowed.r.pMax, bare.r.pMax);
  EXPECT_GT(-slowed.c.t[1], -bare.c.t[1]) << "the slower bullet takes longer";

  s.frictionPress = 3e9;
  const Shot& stuck = shoot(s);
  EXPECT_EQ(stuck.outcome.end, ShotEnd::stuck);
  EXPECT_LT(stuck.r.lastIdx, bare.r.lastIdx);
  const auto last = static_cast<std::size_t>(stuck.r.lastIdx);
  EXPECT_EQ(stuck.c.v[last], 0);
  EXPECT_EQ(stuck.c.p[last], 0);
  EXPECT_EQ(stuck.r.pMax, 0);
  EXPECT_EQ(stuck.r.ptime, 0);
  EXPECT_EQ(stuck.r.vPeak, bare.r.vPeak) << "the peak found before keeps its velocity";
}

// A factor behind z1 far below the continuous one drives the closed form backwards: no such figure is shown.
TEST(Edges, BulletThatWouldRunBackwardsFailsTheRun) {
  int backwards = 0;
  LoadMaker make(41);
  static Shot shot;
  for (int n = 0; n < 400; ++n) {
    CalcState s = make.reasonable(n % 2 == 0);
    if (s.Limz1 == 1) continue;
    s.Ba1 *= make.between(0.05, 0.4);
    const ShotOutcome outcome = runShot(s, shot.c, shot.r);
    const int end = shot.r.lastIdx;
    for (int i = std::max(shot.r.z1Idx, 0) + 1; outcome.ok() && i <= end; ++i) {
      ASSERT_GE(shot.c.x[static_cast<std::size_t>(i)], shot.c.x[static_cast<std::size_t>(i - 1)] - 1e-12);
    }
    if (outcome.end != ShotEnd::failed) continue;
    ++backwards;
    EXPECT_EQ(outcome.failure, 5);
    EXPECT_EQ(outcome.stage, Stage::Ca_All_n_Z1);
  }
  EXPECT_GT(backwards, 10);
}

}  // namespace
}  // namespace tv::test
