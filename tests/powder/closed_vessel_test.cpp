#include "powder/closed_vessel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "text/number.h"

namespace tv {
namespace {

TEST(ClosedVessel, ALawSampledAtTwoRowsComesBack) {
  const BurnLaw laws[] = {{0.735, 1.2, 0.405, 0}, {0.51, 0, 0.5, 0},     {2.3, -0.6, 0.7, 0},
                          {0.9, -0.98, 0.35, 0},  {0.04, 37.5, 0.25, 0}, {800, 0.3, 0.9, 0}};
  for (const BurnLaw& made : laws) {
    const BurnLaw law = joined(made);
    for (const double a : {0.05, 0.1, 0.2})
      for (const double b : {0.15, 0.22, 0.24}) {
        if (a >= b) continue;
        const auto fit = fit_through({a, burn_rate(law, a)}, {b, burn_rate(law, b)}, law.Limz1);
        ASSERT_TRUE(fit) << law.PDko << " " << a << " " << b;
        EXPECT_NEAR(fit->Ba0, law.Ba0, 1e-6 * law.Ba0);
        EXPECT_NEAR(fit->PDko, law.PDko, 1e-6 * std::max(1.0, std::fabs(law.PDko)));
        EXPECT_NEAR(fit->Ba1, law.Ba1, 1e-6 * law.Ba1) << "the joint";
      }
  }
}

TEST(ClosedVessel, WhereNoFunctionPasses) {
  const auto whole = fit_through({0.3, 0.5}, {0.6, 0.4}, 1);
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->PDko, -1);
  EXPECT_DOUBLE_EQ(whole->Ba0, 0.5 / std::sqrt(0.7));
  EXPECT_EQ(whole->Ba1, 0);
  const auto none = fit_through({0.1, 0.5}, {0.3, 0}, 0.4);
  ASSERT_TRUE(none);
  EXPECT_EQ(none->PDko, -0.99999);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    VivacityPoint a, b;
  } refused[] = {{{0.3, 0.7}, {0.3, 0.7}},   // one point twice
                 {{0.1, 0.7}, {0.4, 1.4}},   // a root through 0 at 0: no finite Ba0
                 {{0.1, 0.7}, {0.4, 1.5}},   // steeper than that
                 {{0.1, 0.7}, {0.9, 0.05}},  // would end before z = 1
                 {{0.1, 0}, {0.3, 0.7}},         {{0.1, 1000}, {0.3, 900}},
                 {{0.1, 0.0001}, {0.9, 0.0002}}, {{0.1, nan}, {0.3, 0.7}}};
  for (const auto& c : refused) EXPECT_FALSE(fit_through(c.a, c.b, 0.4)) << c.a.f << " " << c.b.f;
}

TEST(ClosedVessel, TwoMeans) {
  EXPECT_DOUBLE_EQ(value_at_80(0.742, 0.701), 6 * 0.701 - 5 * 0.742);
  const auto law = law_from_means(0.496, 0.44);
  ASSERT_TRUE(law);
  const double w = 0.496 / std::sqrt(0.2) * std::sqrt(0.56);
  EXPECT_NEAR(law->Ba0, w, 1e-12);
  EXPECT_EQ(general(law->PDko), "0");
  EXPECT_NEAR(burn_rate(*law, 0.44), w, 1e-12);
  EXPECT_NEAR(burn_rate(*law, 0.8), 0.496, 1e-12) << "the second part passes through the value";
  EXPECT_EQ(law_from_means(0.5, 0.8)->Limz1, 0.5);
  EXPECT_EQ(law_from_means(0.5, 0.79)->Limz1, 0.79);
  EXPECT_FALSE(law_from_means(0, 0.4));
  EXPECT_FALSE(law_from_means(900, 0.4)) << "beyond any vivacity";
}

TEST(ClosedVessel, MeansOfTheFunction) {
  const BurnLaw law = joined({0.7, 0.9, 0.44, 0});
  const VivacityMeans means = means_of(burn_curve(law));
  double sum = 0;
  for (int i = 3; i <= 7; ++i) sum += burn_rate(law, i / 10.0);
  EXPECT_NEAR(means.mean37, sum / 5, 1e-12);
  EXPECT_NEAR(means.mean38, (sum + burn_rate(law, 0.8)) / 6, 1e-12);
  EXPECT_NEAR(means.value[10], 0, 1e-12);
  EXPECT_FALSE(is_off(1.0099, 1));
  EXPECT_TRUE(is_off(0.98, 1));
  EXPECT_FALSE(is_off(0.98, 0));
}

TEST(ClosedVessel, Marks) {
  RowMarks m;
  const auto after = [&](int row) {
    toggle_mark(m, row);
    return std::pair(m.first, m.second);
  };
  EXPECT_EQ(after(4), std::pair(4, -1));
  EXPECT_EQ(after(1), std::pair(1, 4)) << "the first has the lower index";
  EXPECT_EQ(after(7), std::pair(1, 4)) << "a third has no effect";
  EXPECT_EQ(after(1), std::pair(4, -1)) << "the second moves up";
  EXPECT_EQ(after(8), std::pair(4, 8));
  EXPECT_EQ(after(8), std::pair(4, -1));
  EXPECT_EQ(after(4), std::pair(-1, -1));
}

VivacityTable filled(const BurnLaw& law) {
  VivacityTable table;
  for (VivacityPoint& row : table.rows) row.f = burn_rate(law, row.x);
  return table;
}

TEST(ClosedVessel, FitOfRowsSortsTheTable) {
  const BurnLaw law = joined({0.735, 1.2, 0.405, 0});
  VivacityTable table = filled(law);
  const VivacityTable sorted = table;
  std::swap(table.rows[0], table.rows[6]);  // 0.7 first, 0.1 as the seventh
  RowMarks marks{2, 6};
  const RowFit fit = fit_rows(table, marks, law.Limz1);
  EXPECT_EQ(table, sorted);
  EXPECT_EQ(marks, (RowMarks{0, 2})) << "the marks go with their rows";
  EXPECT_EQ(fit.a.x, 0.1);
  EXPECT_EQ(fit.b.x, 0.3);
  ASSERT_TRUE(fit.law);
  EXPECT_NEAR(fit.law->PDko, 1.2, 1e-6);
  EXPECT_FALSE(fit.beyond_limit);
  marks = {0, 4};
  EXPECT_TRUE(fit_rows(table, marks, law.Limz1).beyond_limit);
  table.rows[7].f *= 1.05;
  EXPECT_EQ(largest_miss(table, law).row, 7);
  EXPECT_NEAR(largest_miss(table, law).percent, 100 - 100 / 1.05, 1e-9);
}

TEST(ClosedVessel, WhatAFitIsMadeFrom) {
  VivacityTable table = filled({0.7, 0.9, 1, 0});
  EXPECT_EQ(fit_kind(table, {0, 3}, 0, 0), FitKind::rows);
  EXPECT_EQ(fit_kind(table, {3, -1}, 0.7, 0.7), FitKind::too_few_rows) << "means do not help a full table";
  table.rows[5].f = 0;
  EXPECT_EQ(fit_kind(table, {0, 3}, 0.7, 0.7), FitKind::means);
  EXPECT_EQ(fit_kind(table, {0, 3}, 0.7, 0), FitKind::rows_missing);
}

TEST(ClosedVessel, HeatRatio) {
  EXPECT_NEAR(*heat_ratio(3935, 96.918, 20, 200, 1.61), 1.2310, 5e-5);
  EXPECT_NEAR(*heat_ratio(3935, 193.836, 20, 200, 1.61) - 1, 2 * 0.2310, 1e-4) << "in proportion to p";
  const double five[] = {3935, 96.918, 20, 200, 1.61};
  for (int i = 0; i < 5; ++i) {
    double v[5];
    for (int j = 0; j < 5; ++j) v[j] = i == j ? 0 : five[j];
    EXPECT_FALSE(heat_ratio(v[0], v[1], v[2], v[3], v[4])) << i;
  }
  EXPECT_TRUE(is_heat_ratio(1.001) && is_heat_ratio(1.999));
  EXPECT_FALSE(is_heat_ratio(1.0009) || is_heat_ratio(2) || is_heat_ratio(NAN));
}

}  // namespace
}  // namespace tv
