#include "geometry/bore_area.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tv {
namespace {

constexpr double kTurn = 2 * 3.14159265358979;

Rifling grooves(float Dz, float Df, float n, float groove, float land) {
  return {.Dz = Dz, .Df = Df, .n = n, .groove_width = groove, .land_width = land};
}
Rifling polygon_r2(float Dz, float Df, float n, float r2) {
  Rifling r{.polygon = true, .Dz = Dz, .Df = Df, .n = n, .r2 = r2};
  r.r1 = r1_of_r2(r);
  return r;
}

// The area within the outline by slices of its arcs and edges, which shares nothing with the formulas.
double area_within(const std::vector<BoreArc>& arcs) {
  std::vector<std::pair<double, double>> points;
  for (const BoreArc& a : arcs)
    for (int i = 0; i <= 4000; ++i) {
      const double t = a.from + (a.to - a.from) * i / 4000;
      points.emplace_back(a.x + a.radius * std::cos(t), a.y + a.radius * std::sin(t));
    }
  double twice = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto& [x, y] = points[i];
    const auto& [u, v] = points[(i + 1) % points.size()];
    twice += x * v - u * y;
  }
  return twice / 2;
}

TEST(BoreArea, BothProfilesAgreeWithTheirOutline) {
  const struct {
    Rifling rifling;
    double mm2;  // 0: not known beforehand
  } cases[] = {{grooves(7.82F, 7.62F, 4, 4.47F, 1.59F), 47.5106},
               {grooves(5.69F, 5.56F, 6, 1.95F, 1.0F), 0},
               {grooves(11.63F, 11.43F, 8, 2.5F, 2.03F), 0},
               {grooves(9.03F, 8.82F, 2, 6.0F, 8.0F), 0},
               {polygon_r2(7.82F, 7.62F, 4, 3.2F), 46.7148},
               {polygon_r2(7.82F, 7.62F, 4, 3.5F), 46.9953},
               {polygon_r2(9.03F, 8.82F, 6, 3.0F), 0},
               {polygon_r2(9.03F, 8.82F, 2, 4.3F), 0}};
  for (const auto& c : cases) {
    const BoreArea area = bore_area(c.rifling);
    ASSERT_EQ(area.finding, BoreFinding::none);
    EXPECT_FALSE(area.outside || area.radii_reversed);
    if (c.mm2 > 0) {
      EXPECT_NEAR(area.mm2, c.mm2, 1e-4);
    }
    const auto outline = bore_outline(c.rifling);
    ASSERT_EQ(outline.size(), 2 * static_cast<std::size_t>(c.rifling.n));
    EXPECT_NEAR(area_within(outline) / area.mm2, 1, 2e-6) << c.rifling.Dz << ' ' << c.rifling.n;
  }
}

// Arcs meet in one point and run on in one direction, lands lie on the land circle, grooves on theirs.
TEST(BoreArea, ArcsOfAPolygonAreTangent) {
  EXPECT_NEAR(polygon_r2(7.82F, 7.62F, 4, 3.2F).r1, 4.42137, 1e-5);
  EXPECT_NEAR(polygon_r2(7.82F, 7.62F, 4, 3.5F).r1, 5.6023, 1e-4);
  for (const Rifling& r : {polygon_r2(7.82F, 7.62F, 4, 3.2F), polygon_r2(9.03F, 8.82F, 6, 3.0F),
                           polygon_r2(5.69F, 5.56F, 3, 2.5F)}) {
    Rifling back = r;
    back.r2 = 0;
    EXPECT_NEAR(r2_of_r1(back), r.r2, 2e-4);
    const auto arcs = bore_outline(r);
    for (std::size_t i = 0; i < arcs.size(); ++i) {
      const BoreArc &a = arcs[i], &b = arcs[(i + 1) % arcs.size()];
      EXPECT_NEAR(a.x + a.radius * std::cos(a.to), b.x + b.radius * std::cos(b.from), 1e-5);
      EXPECT_NEAR(a.y + a.radius * std::sin(a.to), b.y + b.radius * std::sin(b.from), 1e-5);
      EXPECT_NEAR(std::remainder(a.to - b.from, kTurn), 0, 1e-5);
      const double middle = (a.from + a.to) / 2;
      EXPECT_NEAR(std::hypot(a.x + a.radius * std::cos(middle), a.y + a.radius * std::sin(middle)),
                  static_cast<double>(i % 2 == 0 ? r.Df : r.Dz) / 2, 1e-5);
    }
  }
}

TEST(BoreArea, WidthsShareTheCircumference) {
  Rifling r = grooves(7.82F, 7.62F, 4, 4.47F, 0);
  EXPECT_NEAR(other_width(r, r.groove_width), (7.82 + 7.62) * kTurn / 2 / 8 - 4.47, 1e-6);
  EXPECT_LT(other_width(r, 7), 0);  // too wide: the area then refuses the width
  r.land_width = other_width(r, r.groove_width);
  // The land as drawn is what the chord of the groove leaves of the circumference.
  const double chord_angle = 2 * std::asin(2 * 4.47 / 15.44);
  EXPECT_NEAR(mean_land_width(r), (kTurn / 4 - chord_angle) * 15.44 / 4, 1e-5);
  r.Df = 0;
  EXPECT_EQ(other_width(r, 4), 0);
}

TEST(BoreArea, RefusalsAndSentinels) {
  using enum BoreFinding;
  const struct {
    Rifling rifling;
    BoreFinding finding;
  } cases[] = {{grooves(7.82F, 7.82F, 4, 4.4F, 1.6F), land_not_below},
               {grooves(7.62F, 7.82F, 4, 4.4F, 1.6F), land_not_below},
               {grooves(7.82F, 7.62F, 0.9F, 4.4F, 1.6F), value_missing},
               {grooves(7.82F, 7.62F, 4, 7, other_width(grooves(7.82F, 7.62F, 4, 0, 0), 7)), value_missing},
               {grooves(7.82F, 0, 4, 4.4F, 1.6F), value_missing},
               {grooves(8, 7, 2, 7.5F, 4.3F), no_area},  // as wide as the mean diameter
               {grooves(7.82F, 7.62F, 2, 9, 3), no_area},
               {{.polygon = true, .Dz = 7.82F, .Df = 7.62F, .n = 4, .r1 = 3.5F, .r2 = 3.5F}, no_area},
               {{.polygon = true, .Dz = 7.82F, .Df = 7.62F, .n = 4, .r2 = 3.5F}, value_missing}};
  for (const auto& c : cases) {
    const BoreArea area = bore_area(c.rifling);
    EXPECT_EQ(area.finding, c.finding) << c.rifling.Dz << ' ' << c.rifling.groove_width;
    EXPECT_EQ(area.mm2, 0);
    EXPECT_TRUE(bore_outline(c.rifling).empty());
  }
  const BoreArea outside = bore_area(polygon_r2(9.03F, 8.82F, 6, 4.2F));
  EXPECT_NEAR(outside.mm2, 64.348, 1e-3);  // above the groove circle, 64.042
  EXPECT_TRUE(outside.outside);
  EXPECT_TRUE(bore_area({.polygon = true, .Dz = 9, .Df = 8.8F, .n = 6, .r1 = 3, .r2 = 4}).radii_reversed);
  // Round, with a single direction: nothing to divide by.
  Rifling round{.polygon = true, .Dz = 8, .Df = 8, .n = 1e30F, .r2 = 3};
  EXPECT_EQ(r1_of_r2(round), kNoRadius);
  round.r1 = 2000;
  EXPECT_EQ(r2_of_r1(round), kNoRadius);
}

}  // namespace
}  // namespace tv
