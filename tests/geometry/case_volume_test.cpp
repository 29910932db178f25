#include "geometry/case_volume.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tv {
namespace {

constexpr double kInch = 25.4;

struct Case {
  CaseBody body;
  double Hlen = 51.18 / kInch;
};
// A rifle case of known figures.
Case rifle(int shape = kBottleneck) {
  return {{39.62 / kInch, 43.48 / kInch, 5.08 / kInch, 12.01 / kInch, 11.96 / kInch, 11.53 / kInch,
           8.72 / kInch, 8.72 / kInch, shape}};
}

// The stack by slices along the axis, from its outline in mm: cylinder, body, shoulder, neck.
double slices(const Case& c) {
  const CaseBody& b = c.body;
  const auto radius = [&](double x) {
    const auto between = [x](double x0, double d0, double x1, double d1) {
      return (d0 + (d1 - d0) * (x - x0) / (x1 - x0)) / 2;
    };
    if (x < b.rim) return b.rim_dia / 2;
    if (x < b.l1) return between(b.rim, b.P1, b.l1, b.P2);
    return x < b.l2 ? between(b.l1, b.P2, b.l2, b.H1) : between(b.l2, b.H1, c.Hlen, b.H2);
  };
  const double end = case_form(b.Shape) == kBottleneck ? c.Hlen : b.l1;
  constexpr int n = 400000;
  double sum = 0;
  for (int i = 0; i < n; ++i) {
    const double r = radius(end * (i + 0.5) / n);
    sum += r * r;
  }
  return 3.14159265358979 * sum * end / n * kInch * kInch * kInch / 1000;
}

TEST(CaseVolume, EveryShapeHeadAndMaterial) {
  const Case known = rifle();
  const CaseVolume v = case_volume(known.body, known.Hlen, kBrass, 11.0);
  ASSERT_EQ(v.finding, CaseFinding::none);
  EXPECT_NEAR(v.outside_cm3, 5.03345, 1e-5);
  EXPECT_NEAR(v.inside_cm3, 3.76177, 1e-5);
  EXPECT_NEAR(v.water_gr, 57.937, 1e-3);
  EXPECT_NEAR(v.water_g, 3.76177 * 0.998, 1e-5);

  const double density[] = {8.65, 7.87, 2.75};
  for (const int form : {kBottleneck, kCone, kCylinder})
    for (const int head : {kRimless, kRimmed, kBelted})
      for (const int material : {kBrass, kSteel, kAluminium}) {
        Case c = rifle(form + 10 * head);
        if (form == kCylinder) c.body.P2 = c.body.P1;
        const double groove = head == kRimless ? 5.98 * 5.98 * 0.0016 : 0;
        const CaseVolume each = case_volume(c.body, c.Hlen, static_cast<CaseMaterial>(material), 9.0);
        EXPECT_NEAR(each.outside_cm3, slices(c) - groove, 2e-5) << form << ' ' << head;
        EXPECT_NEAR(each.outside_cm3 - each.inside_cm3, 9.0 / density[material], 1e-6) << material;
      }
}

TEST(CaseVolume, Refusals) {
  using enum CaseFinding;
  const auto finding = [](const Case& c, double weight_g) {
    return case_volume(c.body, c.Hlen, kBrass, weight_g).finding;
  };
  EXPECT_EQ(finding(rifle(), 0.99), weight_missing);
  EXPECT_EQ(finding(rifle(), 1), none);
  EXPECT_EQ(finding(rifle(kCone), 0), weight_missing);
  EXPECT_EQ(finding(rifle(kCone), 0.1), none);
  EXPECT_EQ(finding(rifle(), 43.5), none);
  EXPECT_EQ(finding(rifle(), 43.6), no_capacity);  // the metal takes it all
  // A neck is asked of a bottleneck only.
  double CaseBody::*const needed[] = {&CaseBody::rim, &CaseBody::rim_dia, &CaseBody::P1, &CaseBody::l1,
                                      &CaseBody::P2,  &CaseBody::l2,      &CaseBody::H1, &CaseBody::H2};
  for (std::size_t i = 0; i < std::size(needed); ++i) {
    Case bottle = rifle(), cone = rifle(kCone);
    bottle.body.*needed[i] = cone.body.*needed[i] = 0;
    EXPECT_EQ(finding(bottle, 11), no_capacity) << i;
    EXPECT_EQ(finding(cone, 5), i < 5 ? no_capacity : none) << i;
  }
  Case no_length = rifle();
  no_length.Hlen = 0;
  EXPECT_EQ(finding(no_length, 11), no_capacity);
}

TEST(CaseVolume, SebertAndNeckAngle) {
  CaseBody b = rifle().body;
  EXPECT_NEAR(*estimated_sebert(b), 0.500, 5e-4);
  EXPECT_NEAR(*neck_angle(b), 20.0, 0.05);
  b.l1 = b.P1 = b.H2 = 0;  // the bore from the shoulder, the slimness from its usual value, no neck
  const double d = 0.91 * 11.53;
  EXPECT_NEAR(*estimated_sebert(b), (0.96 + 1.15 * 0.91 * 0.91 + 10.52 / std::pow(d, 1.5)) / 5, 1e-9);
  b.P2 = 0;
  EXPECT_FALSE(estimated_sebert(b));
  EXPECT_FALSE(estimated_sebert({}));
  b = rifle().body;
  b.H1 = b.P2;
  EXPECT_EQ(*neck_angle(b), 0);
  b.l2 = b.l1 + 0.0049 / kInch;
  EXPECT_FALSE(neck_angle(b));
  EXPECT_EQ(case_form(21), kCone);
  EXPECT_EQ(case_head(21), kBelted);
  EXPECT_EQ(case_form(-7), kBottleneck);
  EXPECT_EQ(case_head(95), kRimless);
}

}  // namespace
}  // namespace tv
