#include "calculators/band.h"

#include <gtest/gtest.h>

#include <cmath>

#include "example_loads.h"

namespace tv {
namespace {

double sum_of_squares(const Band& band, double BandEffect::*change) {
  double sum = 0;
  for (const BandEffect& e : band.effects) sum += (e.*change) * (e.*change);
  return std::sqrt(sum);
}

TEST(Band, SmallSpreadsAgreeWithLinearPropagation) {
  const CalcState s = test::rifle_load();
  BandSpreads spreads = standard_spreads();
  for (double& spread : spreads) spread /= 10;
  const Band band = predict_band(s, spreads, {20000, 7, 0});
  ASSERT_TRUE(band.ok);
  EXPECT_EQ(band.failed, 0);
  for (const auto& [figure, change] :
       {std::pair{&band.pMax, &BandEffect::pMax}, {&band.vMuzzle, &BandEffect::vMuzzle}}) {
    const double sd = sum_of_squares(band, change);
    EXPECT_NEAR(figure->sd / sd, 1, 0.02);
    EXPECT_NEAR(figure->q[2], figure->value, 0.03 * sd);
    EXPECT_NEAR(figure->q[4] - figure->q[0], 2 * 1.96 * sd, 0.08 * sd);
    EXPECT_NEAR(figure->q[3] - figure->q[1], 2 * 0.9945 * sd, 0.06 * sd);  // 16 and 84 %
  }
}

// One input at a time: its effect by hand from the load changed by that amount.
TEST(Band, EachSpreadMovesItsOwnInput) {
  const CalcState s = test::rifle_load();
  const auto figures = [](CalcState c) {
    static ShotCurve curve;
    ShotResult r;
    convertUnits(c);
    EXPECT_EQ(prepareShot(c), SetUp::ok);
    EXPECT_TRUE(runShot(c, curve, r).ok());
    return std::pair{r.pMax, r.vMuzzle};
  };
  const auto changed = [&](std::size_t input, double by) {
    CalcState c = s;
    if (input == 0) c.Ba0 *= 1 + 0.02 * by;
    if (input == 1) c.chargeGr += 0.1 * by;
    if (input == 2) c.dim.Veff += 0.56 * by;
    if (input == 3) c.dim.Bwg += 0.3 * by;
    if (input == 4) {  // a cylinder of the groove diameter, in grains of water
      c.dim.Veff -= by * M_PI / 4 * std::pow(0.308 * 25.4, 2) * 0.1 / 1000 * 15.432 / 0.998;
      c.dim.Wob += 0.1 * by;
    }
    if (input == 5) c.dim.Wob += by;
    if (input == 6) c.start_pressure *= 1 + 0.1 * by;
    return figures(c);
  };
  const Band band = predict_band(s, standard_spreads(), {10, 1, 0});
  ASSERT_EQ(band.effects.size(), kBandInputs);
  double before = 1e12;
  for (const BandEffect& e : band.effects) {
    SCOPED_TRACE(band_inputs()[e.input].key);
    const auto above = changed(e.input, 1), below = changed(e.input, -1);
    // The program's constant of the displaced volume is 0.2 % off the cylinder's.
    EXPECT_NEAR(e.pMax, (above.first - below.first) / 2, 3e-3 * std::fabs(e.pMax) + 1);
    EXPECT_NEAR(e.vMuzzle, (above.second - below.second) / 2, 0.01);
    EXPECT_LE(std::fabs(e.pMax), before) << "sorted by size";
    before = std::fabs(e.pMax);
  }
}

TEST(Band, SeedLimitAndSpreadsOfNothing) {
  CalcState s = test::rifle_load();
  const Band one = predict_band(s, standard_spreads()), again = predict_band(s, standard_spreads());
  EXPECT_EQ(one.draws, 2000);
  EXPECT_EQ(one.pMax.q, again.pMax.q);
  EXPECT_NE(one.pMax.q, predict_band(s, standard_spreads(), {2000, 2, 0}).pMax.q);
  // The limit at the median: half of the draws pass it.
  s.dim.zul_P = one.pMax.q[2] / 1e6;
  EXPECT_NEAR(*predict_band(s, standard_spreads()).over_limit, 0.5, 0.002);
  s.dim.zul_P = 2 * one.pMax.q[2] / 1e6;
  EXPECT_EQ(predict_band(s, standard_spreads()).over_limit, 0);
  s.dim.zul_P = 0;
  EXPECT_FALSE(predict_band(s, standard_spreads()).over_limit);
  const Band sure = predict_band(s, {}, {10, 1, 0});
  EXPECT_EQ(sure.pMax.q[0], sure.pMax.value);
  EXPECT_NEAR(sure.pMax.sd, 0, 1e-6);
  s.start_pressure = 0;
  EXPECT_EQ(predict_band(s, standard_spreads(), {10, 1, 0}).effects.back().pMax, 0) << "no start pressure";
  // Shots that cannot be calculated are counted, not taken for good ones.
  BandSpreads wild{};
  wild[1] = 60;
  const Band failing = predict_band(s, wild, {200, 1, 0});
  EXPECT_GT(failing.failed, 20);
  EXPECT_GT(failing.pMax.q[0], 0);
  s.chargeGr = 0;
  EXPECT_FALSE(predict_band(s, standard_spreads()).ok);
}

}  // namespace
}  // namespace tv
