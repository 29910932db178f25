// Wild inputs: every run ends as a value. bench/hostile.cpp does the same a million times over.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/loads.h"

namespace tv::test {
namespace {

bool all_finite(const Shot& shot) {
  double gap = 0;  // 0 as long as all are finite
  const auto look = [&](double value) { gap += value - value; };
  const ShotResult& r = shot.r;
  for (double value : {r.pMax, r.vMuzzle, r.xPeak, r.t10, r.ptime, r.tStart, r.pBasePeak}) look(value);
  const ShotCurve& c = shot.c;
  for (const double* curve :
       {c.x.data(), c.v.data(), c.p.data(), c.z.data(), c.w.data(), c.pB.data(), c.t.data()}) {
    std::for_each_n(curve, shot.last() + 1, look);
  }
  return gap == 0;
}

TEST(Hostile, EveryRunEndsAsAValue) {
  LoadMaker make(31);
  static Shot shot;
  CalcState base;
  int finished = 0, failed = 0;
  for (int n = 0; n < 60000; ++n) {
    if (n % 100 == 0) base = make.reasonable(n % 200 == 0);
    shot.outcome = runShot(n % 2 == 0 ? make.wild(base) : make.edge(), shot.c, shot.r);
    ASSERT_TRUE(shot.r.lastIdx >= 0 && shot.r.lastIdx < 998) << n;
    ASSERT_TRUE(!shot.outcome.ok() || (shot.r.lastIdx >= 1 && all_finite(shot))) << n;
    finished += shot.outcome.ok();
    if (shot.outcome.end != ShotEnd::failed) continue;
    ++failed;
    ASSERT_STRNE(stage_name(shot.outcome.stage), "") << n;
    ASSERT_TRUE(shot.outcome.failure == 5 || shot.outcome.failure == 6 || shot.outcome.failure == 11) << n;
  }
  EXPECT_GT(finished, 10000);
  EXPECT_GT(failed, 10000);
}

// kEff exactly 1 has no solution; next to it the run ends as any other.
TEST(Hostile, NoSolutionWhereKEffIsOne) {
  static Shot shot;
  shot.s.start_pressure = 0;
  ASSERT_EQ(set_up(shot.s), SetUp::ok);
  const double q = shot.s.Ba0 / (98066.5 * shot.s.boreM2);
  const double exact = 2 / (q * q * shot.s.effMass * shot.s.chargeKg * shot.s.ExwJ);
  int met = 0;
  for (int n = -200; n <= 200; ++n) {
    shot.s.PDko = exact * (1 + n * 0x1p-52);
    shot.outcome = runShot(shot.s, shot.c, shot.r);
    ASSERT_TRUE(!shot.outcome.ok() || all_finite(shot));
    if (shot.outcome.end != ShotEnd::kEff_one) continue;
    ++met;
    EXPECT_TRUE(shot.r.runNotes.count == 1 && shot.r.runNotes.has(Note::fwarn14));
  }
  EXPECT_GT(met, 0);
}

}  // namespace
}  // namespace tv::test
