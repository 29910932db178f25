#include "powder/reference_curve.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/shot.h"
#include "example_loads.h"
#include "powder/black_powder.h"
#include "text/number.h"

namespace tv {
namespace {

// A rise to 300 MPa at 0.4 ms and a fall.
ReferenceCurve hump() {
  ReferenceCurve curve;
  for (int i = 0; i < kReferenceRows; ++i) {
    const double ms = 0.1 * i;
    curve.rows[static_cast<std::size_t>(i)] = {ms, i <= 4 ? 10 + 72.5 * i : 300 - 30.0 * (i - 4)};
  }
  return curve;
}

TEST(Reference, AllTwelveRowsMustBeFilled) {
  EXPECT_EQ(reference_fault(hump()).hint, kNoHint) << "time 0 in the first row is one";
  const struct {
    int row;
    double ms, MPa;
    BurnHint hint;
  } cases[] = {{0, -0.2, 10, kHintTimes},    {0, -0.1, 10, kHintTimes},   {1, 0, 10, kHintTimes},
               {11, 0, 10, kHintTimes},      {5, 0.5, 0, kHintPressures}, {0, 0, 0, kHintPressures},
               {11, 1.1, -5, kHintPressures}};
  for (const auto& c : cases) {
    ReferenceCurve curve = hump();
    curve.rows[static_cast<std::size_t>(c.row)] = {c.ms, c.MPa};
    EXPECT_EQ(reference_fault(curve).hint, c.hint) << c.row;
    EXPECT_EQ(reference_fault(curve).row, c.row);
  }
}

TEST(Reference, TheLastTwoRowsAreNotSorted) {
  ReferenceCurve curve = hump();
  std::swap(curve.rows[0], curve.rows[9]);
  std::swap(curve.rows[10], curve.rows[11]);
  sort_reference(curve);
  EXPECT_EQ(curve.rows[0].MPa, 10) << "pairs stay together";
  EXPECT_NEAR(curve.rows[9].ms, 0.9, 1e-12);
  EXPECT_NEAR(curve.rows[10].ms, 1.1, 1e-12);
  EXPECT_TRUE(last_rows_late(curve));
  EXPECT_FALSE(last_rows_late(hump()));
}

// A shot made by hand: x = 100 t^2 m over 1 ms, times negative and 0 at the muzzle.
struct Shot {
  ShotCurve curve;
  ShotResult result;
  Shot() {
    result.lastIdx = 100;
    for (std::size_t i = 0; i <= 100; ++i) {
      curve.t[i] = static_cast<double>(i) * 1e-5 - 1e-3;
      curve.x[i] = static_cast<double>(i * i) * 1e-4;
    }
    result.t10 = -0.8e-3;
    result.peakIdx = 55;
  }
};

TEST(Reference, ItsRiseIsLaidOnThatOfTheShot) {
  const Shot shot;
  // A tenth, 30 MPa, is passed 20/72.5 of the first step after the begin; the shot passes its at 0.2 ms.
  const double rise = 0.1 * 20 / 72.5;
  EXPECT_NEAR(alignment_ms(hump(), shot.curve, shot.result), 0.2 - rise, 1e-12);
  ReferenceCurve late = hump();
  for (ReferencePoint& row : late.rows) row.ms += 7;
  EXPECT_NEAR(alignment_ms(late, shot.curve, shot.result), 0.2 - rise - 7, 1e-12);
  late.rows[0].MPa = 31;  // begins above a tenth: peak on peak, 7.4 ms on 0.55 ms
  EXPECT_NEAR(alignment_ms(late, shot.curve, shot.result), 0.55 - 7.4, 1e-12);
  EXPECT_NEAR(reference_over_time(late, shot.curve, shot.result, false)[4].ms, 0.55, 1e-12);
  EXPECT_NEAR(reference_over_time(late, shot.curve, shot.result, true)[4].ms, 7.4, 1e-12);
}

TEST(Reference, OverTravelItEndsWithTheShot) {
  const Shot shot;
  ReferenceCurve curve = hump();
  for (ReferencePoint& row : curve.rows) row.ms -= 0.05;
  const auto points = reference_over_travel(curve, shot.curve, shot.result, true);
  ASSERT_EQ(points.size(), 12U);
  EXPECT_EQ(points.front().x_m, 0);
  EXPECT_NEAR(points.front().MPa, 10 + 72.5 / 2, 1e-9) << "cut at the begin";
  EXPECT_NEAR(points[1].x_m, 0.0025, 1e-12) << "0.05 ms";
  EXPECT_NEAR(points[2].x_m, 0.0225, 1e-12);
  EXPECT_NEAR(points.back().x_m, 1, 1e-12) << "cut at the muzzle, 1 ms";
  EXPECT_NEAR(points.back().MPa, 300 - 30 * 6.5, 1e-9);
  EXPECT_TRUE(reference_over_travel(curve, shot.curve, {}, true).empty());
}

// A reference sampled from a shot lies on that shot's own curve, whenever its clock was started.
TEST(Reference, ASampledShotLiesOnItself) {
  CalcState s = test::worked_load();
  ShotCurve curve;
  ShotResult result;
  convertUnits(s);
  ASSERT_EQ(prepareShot(s), SetUp::ok);
  ASSERT_TRUE(runShot(s, curve, result).ok());
  ReferenceCurve reference;
  int begin = 0;
  while (curve.p[static_cast<std::size_t>(begin)] < 0.05 * result.pMax) ++begin;
  for (int i = 0; i < kReferenceRows; ++i) {
    const auto at = static_cast<std::size_t>(begin + i * (result.lastIdx - begin) / 11);
    reference.rows[static_cast<std::size_t>(i)] = {curve.t[at] * 1000 + 3.3, curve.p[at] / 1e6};
  }
  const auto over_time = reference_over_time(reference, curve, result, false);
  EXPECT_NEAR(over_time[6].ms, reference.rows[6].ms - 3.3 - curve.t[0] * 1000, 0.02);
}

TEST(BlackPowder, Velocity) {
  const struct {
    int load;
    double v;
    const char *fps, *mps;
  } cases[] = {{0, 1344.8, "1345", "410"}, {1, 1194.1, "1195", "364"}, {2, 1194.1, "1195", "364"}};
  for (const auto& c : cases) {
    const auto v = black_powder_velocity(c.load, 1000, 70, 177, 30);
    ASSERT_TRUE(v);
    EXPECT_NEAR(*v, c.v, 0.05);
    EXPECT_EQ(format_number(*v + 0.5, "0"), c.fps);
    EXPECT_EQ(format_number((*v + 0.5) / kFeetPerMetre, "0"), c.mps);
  }
  EXPECT_LT(*black_powder_velocity(1, 1000, 1200, 100, 30), 0);
  EXPECT_FALSE(black_powder_velocity(0, 1000, 0, 177, 30));
  EXPECT_FALSE(black_powder_velocity(0, 1000, 70, 0, 30));
  EXPECT_FALSE(black_powder_velocity(0, 1000, 70, 177, -1));
  EXPECT_NEAR(round_ball_weight(0.49), 176.47, 0.01) << "a .490 ball weighs about 177 grains";
}

TEST(BlackPowder, OnlyWhatAPowderOffers) {
  const BlackPowder pan{{1290, 0, 0}}, metal{{0, 0, 1500}}, gap{{1200, 0, 1400}}, none;
  EXPECT_EQ(offered_load(pan, 2), 0);
  EXPECT_EQ(offered_load(metal, 0), 2);
  EXPECT_EQ(offered_load(gap, 1), 0);
  EXPECT_EQ(offered_load(gap, 2), 2);
  EXPECT_EQ(offered_load(none, 1), 1);
}

}  // namespace
}  // namespace tv
