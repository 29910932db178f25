// Wild inputs: every run ends, soon, as a value.
#include <gtest/gtest.h>

#include <chrono>

#include "engine/loads.h"
#include "engine/results.h"

namespace tv::test {
namespace {

bool finite_result(const ShotCurve& c, const ShotResult& r) {
  bool fine = true;
  for (std::size_t i = 0; i <= static_cast<std::size_t>(r.lastIdx); ++i) {
    for (const double value : {c.x[i], c.v[i], c.p[i], c.z[i], c.sigma[i], c.w[i], c.t[i], c.pB[i]}) {
      fine = fine && std::isfinite(value);
    }
  }
  for (const double value :
       {r.pMax, r.xPeak, r.vPeak, r.zPeak, r.vMuzzle, r.zMuzzle, r.t10, r.ptime, r.tStart, r.pBasePeak}) {
    fine = fine && std::isfinite(value);
  }
  return fine;
}

struct Tally {
  int finished = 0, failed = 0, other = 0;
  double longest = 0;  // s
};

void shoot(const CalcState& s, Tally& tally) {
  static ShotCurve c;
  ShotResult r;
  const auto start = std::chrono::steady_clock::now();
  const ShotOutcome outcome = runShot(s, c, r);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  tally.longest = std::max(tally.longest, took.count());
  ASSERT_GE(r.lastIdx, 0);
  ASSERT_LT(r.lastIdx, 998);
  if (outcome.ok()) {
    ++tally.finished;
    ASSERT_TRUE(finite_result(c, r));
    ASSERT_GE(r.lastIdx, 1);
  } else if (outcome.end == ShotEnd::failed) {
    ++tally.failed;
    ASSERT_STRNE(stage_name(outcome.stage), "");
    ASSERT_TRUE(outcome.failure == 5 || outcome.failure == 6 || outcome.failure == 11) << outcome.failure;
  } else {
    ++tally.other;
  }
}

TEST(Hostile, WildValuesEndAsValues) {
  LoadMaker make(31);
  Tally tally;
  CalcState base;
  for (int n = 0; n < 120000; ++n) {
    if (n % 100 == 0) base = make.reasonable(n % 200 == 0);
    shoot(make.wild(base), tally);
    if (HasFatalFailure()) FAIL() << "case " << n;
  }
  EXPECT_GT(tally.finished, 10000);
  EXPECT_GT(tally.failed, 10000);
  EXPECT_LT(tally.longest, 2.0);
}

TEST(Hostile, EdgesOfTheAcceptedRangesEndAsValues) {
  LoadMaker make(32);
  Tally tally;
  for (int n = 0; n < 100000; ++n) {
    shoot(make.edge(), tally);
    if (HasFatalFailure()) FAIL() << "case " << n;
  }
  EXPECT_GT(tally.finished, 10000);
  EXPECT_LT(tally.longest, 2.0);
}

// kEff exactly 1 has no solution; next to it the run ends as any other.
TEST(Hostile, kEffAtOneIsToldAndNextToItEnds) {
  CalcState s = worked_load();
  s.start_pressure = 0;
  ASSERT_EQ(set_up(s), SetUp::ok);
  const double q = s.Ba0 / (98066.5 * s.boreM2);
  const double exact = 2 / (q * q * s.effMass * s.chargeKg * s.ExwJ);
  ShotCurve c;
  ShotResult r;
  bool met = false;
  Tally tally;
  for (int n = -200; n <= 200; ++n) {
    s.PDko = exact * (1 + n * 0x1p-52);
    const ShotOutcome outcome = runShot(s, c, r);
    if (outcome.end == ShotEnd::kEff_one) {
      met = true;
      ASSERT_EQ(r.runNotes.count, 1);
      EXPECT_EQ(r.runNotes.notes[0], Note::fwarn14);
    }
    shoot(s, tally);
  }
  EXPECT_TRUE(met);
}

}  // namespace
}  // namespace tv::test
