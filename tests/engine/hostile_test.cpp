// Wild inputs: every run ends, soon, as a value.
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "engine/loads.h"
#include "engine/results.h"

namespace tv::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kWild[] = {0,      -0.0,  1,    -1,     1e-300,       -1e-300,     1e300,
                            -1e300, 1e-9,  1e9,  5e-324, kInf,         -kInf,       NAN,
                            1e15,   -1e15, 1e-5, 1e5,    1.0000000001, 0.9999999999};

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

double* input_of(CalcState& s, int n) {
  double* const fields[] = {&s.Kap,      &s.Ba0,     &s.Ba1,      &s.PDko,     &s.Limz1,    &s.start_pressure,
                            &s.bulletKg, &s.caseM3,  &s.boreM2,   &s.travelM,  &s.ExwJ,     &s.chargeKg,
                            &s.freeVol,  &s.effMass, &s.sigmaEnd, &s.baseStep, &s.dim.sebf, &s.frictionPress};
  return fields[static_cast<std::size_t>(n) % std::size(fields)];
}

// One to four inputs of the run itself replaced, with nothing checked before it.
TEST(Hostile, WildValuesEndAsValues) {
  LoadMaker make(31);
  Tally tally;
  CalcState base;
  for (int n = 0; n < 120000; ++n) {
    if (n % 100 == 0) base = make.reasonable(n % 200 == 0);
    CalcState s = base;
    s.frictionOn = make.chance(0.2);
    for (int k = static_cast<int>(make.between(1, 4.999)); k > 0; --k) {
      double* const field = input_of(s, static_cast<int>(make.between(0, 17.999)));
      const double wild =
          kWild[static_cast<std::size_t>(make.between(0, static_cast<double>(std::size(kWild)) - 0.001))];
      *field = make.chance(0.5) ? wild : *field * std::exp(make.between(-12, 12));
    }
    shoot(s, tally);
    if (HasFatalFailure()) FAIL() << "case " << n;
  }
  EXPECT_GT(tally.finished, 10000);
  EXPECT_GT(tally.failed, 10000);
  EXPECT_LT(tally.longest, 2.0);
}

// Within the ranges that the set-up accepts, at their edges.
TEST(Hostile, EdgesOfTheAcceptedRangesEndAsValues) {
  LoadMaker make(32);
  Tally tally;
  for (int n = 0; n < 100000; ++n) {
    CalcState s;
    const auto wide = [&](double low, double high) {
      if (make.chance(0.15)) return low;
      if (make.chance(0.15)) return high;
      return std::exp(make.between(std::log(low), std::log(high)));
    };
    s.Exw = wide(1, 10000);
    s.Kap = 1 + wide(0.001, 0.999);
    s.Ba0 = wide(0.001, 1000);
    s.PDko = make.chance(0.3) ? 0 : make.chance(0.3) ? -make.between(0, 0.99) : wide(1e-9, 10000);
    if (make.chance(0.05)) s.PDko = -0.99;
    s.Limz1 = wide(0.01, 1);
    s.Ba1 = make.chance(0.5) ? wide(0.001, 1000) : continuous_factor(s.PDko, s.Limz1);
    s.Pdens = wide(0.5, 100);
    s.dim.Bwg = wide(0.1, 100000);
    s.dim.Veff = wide(0.1, 10000);
    s.dim.qfq = wide(0.1, 10000);
    s.dim.Wob = wide(0.01, 100000);
    s.dim.sebf = make.between(0, 12);
    s.chargeGr = s.dim.Veff * wide(1e-6, 1);
    s.schrit = n % 3;
    // A chamber a hair above the least one.
    if (make.chance(0.1)) s.chargeGr = s.Pdens / dicht_H2 * s.dim.Veff * (1 - 1e-4 * make.between(0, 1));
    if (set_up(s) != SetUp::ok) continue;
    const double bound = start_pressure_bound(s);
    s.start_pressure = make.chance(0.3) ? 0 : make.chance(0.3) ? bound : bound * make.between(0, 1.2);
    s.frictionOn = make.chance(0.2);
    s.frictionPress = make.between(0, 30e6);
    shoot(s, tally);
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
