#include "geometry/dimensions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tv {
namespace {

CartridgeDimensions rifle() {
  CartridgeDimensions d;
  d.Zkal = d.buldin = 0.308;
  d.Glen = 1.2;
  d.Hlen = 2.015;
  d.Plen = 2.8;
  d.Llen = 24;
  d.Volf = 56;
  d.Bsd = d.Hlen + d.Glen - d.Plen;
  return d;
}

// Displaced volume, hand-computed from the geometry: cone 4.6 mm, 7.82 to 6.30 mm.
TEST(Dimensions, DisplacedVolumeOfTheThreeTails) {
  auto d = rifle();
  d.Bsd = 0.46;
  d.tail_len = 4.6;
  d.tail_dia_large = 7.82;
  d.tail_dia_small = 6.30;
  struct {
    bool tail;
    int type;
    double Vvg;
  } cases[] = {{false, kFlatBase, 8.6676}, {true, kOuterCone, 8.0466}, {true, kInnerCone, 5.8723}};
  for (const auto& c : cases) {
    d.TAIL = c.tail;
    d.tail_type = c.type;
    EXPECT_TRUE(move_dimensions(d, kNothingMoved, 7.82, [](Dimension) {}));
    EXPECT_NEAR(d.Vvg, c.Vvg, 5e-5) << c.type;
  }
  d.tail_type = kInnerCone;
  EXPECT_NEAR(tail_volume(d, 7.82), 0.18077, 5e-6);
  // The frustum by slices, which share nothing with its formula.
  double slices = 0;
  for (int i = 0; i < 100000; ++i) {
    const double r = (7.82 + (6.30 - 7.82) * (i + 0.5) / 100000) / 2;
    slices += 3.141592654 * r * r * 4.6 / 100000;
  }
  EXPECT_NEAR(tail_volume(d, 7.82), slices / 1000, 1e-8);
}

TEST(Dimensions, TailMustFitTheBullet) {
  auto d = rifle();
  d.tail_len = 4;
  d.tail_dia_small = 6;
  d.tail_dia_large = 0.308 * 25.4 + 0.0199;
  EXPECT_TRUE(tail_is_possible(d));
  d.tail_dia_large += 0.001;
  EXPECT_FALSE(tail_is_possible(d));
  d.tail_dia_large = 5;
  EXPECT_FALSE(tail_is_possible(d));
}

TEST(Dimensions, AngleOfTheTail) {
  auto d = rifle();
  d.tail_len = 4.6;
  d.tail_dia_large = 7.82;
  d.tail_dia_small = 6.30;
  EXPECT_EQ(tail_angle(d), 0);  // a flat base has none
  d.tail_type = kOuterCone;
  EXPECT_NEAR(std::tan(tail_angle(d) * 3.14159265358979 / 180), 0.76 / 4.6, 1e-9);
  d.tail_type = kInnerCone;
  EXPECT_NEAR(tail_angle(d), -9.38, 0.005);
  d.tail_dia_small = 7.811;
  EXPECT_EQ(tail_angle(d), 0);
  d.tail_dia_small = 6.30;
  d.tail_len = 0;
  EXPECT_EQ(tail_angle(d), 0);
}

TEST(Dimensions, WildValuesEndAsValues) {
  std::mt19937 random(7);
  const double wild[] = {0, -1, 1, 1e308, -1e308, 1e-308, NAN, INFINITY, 0.3, 2};
  std::uniform_int_distribution<std::size_t> pick(0, std::size(wild) - 1);
  for (int i = 0; i < 20000; ++i) {
    CartridgeDimensions d;
    for (double* v :
         {&d.Zkal, &d.Glen, &d.Hlen, &d.Plen, &d.Llen, &d.Volf, &d.Bsd, &d.tail_len, &d.tail_dia_large})
      *v = wild[pick(random)];
    d.TAIL = i % 2 == 0;
    d.tail_type = i % 3;
    const double Veff = d.Veff;
    const bool ok = move_dimensions(d, i % 6, wild[pick(random)], [](Dimension) {});
    if (ok)
      EXPECT_TRUE(std::isfinite(d.Veff) && std::isfinite(d.Wob));
    else
      EXPECT_TRUE(std::isfinite(d.Veff) || d.Veff == Veff);
  }
}

}  // namespace
}  // namespace tv
