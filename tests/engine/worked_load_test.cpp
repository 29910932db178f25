#include <gtest/gtest.h>

#include "engine/loads.h"

namespace tv::test {
namespace {

// The load worked by hand, and its tolerances: the curve is flat at the peak.
TEST(WorkedLoad, EveryStepSettingGivesTheSameShot) {
  for (int schrit : {0, 1, 2}) {
    SCOPED_TRACE(schrit);
    CalcState s = worked_load();
    s.schrit = schrit;
    ASSERT_EQ(set_up(s), SetUp::ok);
    ShotCurve c;
    ShotResult r;
    ASSERT_TRUE(runShot(s, c, r).ok());
    const auto z1 = static_cast<std::size_t>(r.z1Idx);
    EXPECT_NEAR(c.x[z1], 0.08403, 0.00001);
    EXPECT_NEAR(c.v[z1], 419.05, 0.01);
    EXPECT_NEAR(c.p[z1] / 1e6, 365.60, 0.01);
    EXPECT_NEAR(r.pMax / 1e6, 366.49, 0.05);
    EXPECT_NEAR(r.xPeak, 0.0729, 0.0015);
    EXPECT_NEAR(r.vMuzzle, 899.32, 0.02);
    EXPECT_NEAR(c.p[static_cast<std::size_t>(r.lastIdx)] / 1e6, 105.62, 0.05);
    EXPECT_NEAR(r.zMuzzle, 0.99876, 0.00001);
    EXPECT_NEAR(c.x[static_cast<std::size_t>(r.lastIdx)], s.travelM, 0.00001);
    EXPECT_EQ(r.notBurnt, 1);
    EXPECT_EQ(r.burnIdx, -1);
    EXPECT_EQ(r.peakState, 2);
  }
}

}  // namespace
}  // namespace tv::test
