// What must hold of every finished curve.
#include <gtest/gtest.h>

#include "engine/allocations.h"
#include "engine/loads.h"

namespace tv::test {
namespace {

// A point of phase 1 that the search accepted behind z1 stays on the curve, so that the point at z1 lies
// before it; it happens in two or three of a thousand loads.
bool behind_change(const ShotResult& r, int i) { return i == r.z1Idx; }

// Where the law never changes, a start pressure leaves z at burnout to the tolerance of the bisection, and
// the expansion goes on with that energy.
bool burnout_found_by_bisection(const CalcState& s) { return s.start_pressure > 0 && s.Limz1 == 1; }

void expect_consistent(const CalcState& s, const ShotCurve& c, const ShotResult& r, int& turned) {
  double work = 0;
  for (int n = 0; n <= r.lastIdx; ++n) {
    const auto i = static_cast<std::size_t>(n);
    const double gas = c.p[i] * (s.freeVol + s.boreM2 * c.x[i]) / (s.Kap - 1);
    const double bullet = s.effMass * c.v[i] * c.v[i] / 2;
    ASSERT_NEAR((gas + bullet) / (s.chargeKg * s.ExwJ), c.z[i], burnout_found_by_bisection(s) ? 1e-4 : 1e-9);
    ASSERT_LE(c.p[i], r.pMax);
    ASSERT_NEAR(c.sigma[i] * s.freeVol, s.boreM2 * c.x[i], 1e-9 * s.freeVol);
    if (n == 0) continue;
    if (behind_change(r, n) && c.x[i] <= c.x[i - 1]) {
      ++turned;
    } else {
      ASSERT_GT(c.t[i], c.t[i - 1]) << n;
      ASSERT_GT(c.x[i], c.x[i - 1]) << n;
    }
    // Motion: the work of the gas on the bore is the energy of the moving mass.
    work += (c.p[i] + c.p[i - 1]) / 2 * (c.x[i] - c.x[i - 1]) * s.boreM2;
  }
  const auto last = static_cast<std::size_t>(r.lastIdx);
  const double energy = s.effMass * r.vMuzzle * r.vMuzzle / 2;
  // The trapezes cost a percent with coarse steps; phase 1 with a start pressure is not exact in motion.
  EXPECT_NEAR(work / energy, 1, s.start_pressure > 0 ? 0.16 : 0.02);
  EXPECT_EQ(c.t[last], 0);
  EXPECT_EQ(c.p[static_cast<std::size_t>(r.peakIdx)], r.pMax);
  EXPECT_NEAR(c.x[last], s.travelM, 0.00001);
  EXPECT_LT(r.t10, 0);
  EXPECT_GT(r.ptime, 0);
}

void expect_marks(const CalcState& s, const ShotCurve& c, const ShotResult& r) {
  if (r.z1Idx >= 0) {
    EXPECT_NEAR(c.z[static_cast<std::size_t>(r.z1Idx)], s.Limz1, 1e-9);
  }
  if (r.burnIdx >= 0) {
    EXPECT_NEAR(c.z[static_cast<std::size_t>(r.burnIdx)], 1, burnout_found_by_bisection(s) ? 1e-4 : 1e-9);
  }
  EXPECT_EQ(r.notBurnt == 0, r.burnIdx >= 0);
  if (r.idx95 >= 0) {
    EXPECT_GT(c.z[static_cast<std::size_t>(r.idx95)], 0.949);
    EXPECT_LE(c.z[static_cast<std::size_t>(r.idx95 - 1)], 0.949);
  }
}

TEST(Curve, EnergyMotionAndMarksHoldAtEveryPoint) {
  LoadMaker make(11);
  ShotCurve c;
  ShotResult r;
  int turned = 0;
  for (int n = 0; n < 600; ++n) {
    SCOPED_TRACE(n);
    const CalcState s = make.reasonable(n % 2 == 0);
    ASSERT_TRUE(runShot(s, c, r).ok());
    expect_consistent(s, c, r, turned);
    if (HasFatalFailure()) return;
    expect_marks(s, c, r);
  }
  EXPECT_LE(turned, 6);
}

TEST(Curve, RunAllocatesNothingAndDependsOnItsInputsOnly) {
  LoadMaker make(12);
  static ShotCurve c, fresh;
  ShotResult r, again;
  for (int n = 0; n < 20; ++n) {
    CalcState s = make.reasonable(n % 2 == 0);
    fresh = ShotCurve{};
    ASSERT_TRUE(runShot(s, fresh, again).ok());
    const long before = allocations();
    ASSERT_TRUE(runShot(s, c, r).ok());
    EXPECT_EQ(allocations(), before);
    EXPECT_EQ(r.lastIdx, again.lastIdx);
    EXPECT_EQ(r.t10, again.t10);
    EXPECT_TRUE(c.p == fresh.p && c.x == fresh.x && c.v == fresh.v && c.t == fresh.t && c.pB == fresh.pB);
    // The short set-up of a table row gives the same shot, and leaves it standing when there is no room.
    ASSERT_TRUE(quickShot(s, c, r));
    EXPECT_EQ(r.t10, again.t10);
    s.chargeKg = s.caseM3 * s.Pdens * 1000;
    EXPECT_FALSE(quickShot(s, c, r));
    EXPECT_EQ(r.t10, again.t10);
    EXPECT_TRUE(c.p == fresh.p);
  }
}

}  // namespace
}  // namespace tv::test
