#include "calculators/sight_clicks.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tv {
namespace {

// Against the angle itself: tan of a minute over the distance. The factors hold to a few millionths.
TEST(SightClicks, MinutesInchesAndCentimetres) {
  const double minute = std::tan(3.14159265358979 / 180 / 60);
  const struct {
    ClickDistance at;
    double distance_cm;
  } cases[] = {{ClickDistance::m100, 10000}, {ClickDistance::yd100, 9144}};
  for (const auto& [at, distance] : cases) {
    const double cm = 0.25 * minute * distance;
    for (const Click& c : {click_of_moa(0.25, at), click_of_inch(cm / 2.54, at), click_of_cm(cm, at)}) {
      EXPECT_NEAR(c.moa, 0.25, 1e-6);
      EXPECT_NEAR(c.cm, cm, 1e-6);
      EXPECT_NEAR(c.inch, cm / 2.54, 1e-6);
    }
    EXPECT_NEAR(mrad_of_inch(1 / 2.54, at), 1000 / distance, 1e-12);
  }
  const Click m = click_of_moa(1, ClickDistance::m100), yd = click_of_moa(1, ClickDistance::yd100);
  EXPECT_EQ(m.inch, 1.145229);  // inches and centimetres by a factor of their own, not one by the other
  EXPECT_EQ(m.cm, 2.908882);
  EXPECT_EQ(yd.inch, 1.047198);
  EXPECT_EQ(yd.cm, 2.659882);
}

}  // namespace
}  // namespace tv
