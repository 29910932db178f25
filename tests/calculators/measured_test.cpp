#include "calculators/measured.h"

#include <gtest/gtest.h>

#include <cmath>

#include "data/measured_strings.h"

namespace tv {
namespace {

TEST(Measured, FiguresOfASampleComputedByHand) {
  MeasuredSeries series;
  for (const double v : {812.0, 815.0, 809.0, 820.0, 814.0}) series.shots.push_back({v, 0, false, ""});
  series.shots.push_back({700, 0, true, "sighter"});
  series.shots.push_back({0, 350e6, false, ""});  // pressure alone
  const SampleFigures f = velocity_figures(series);
  EXPECT_EQ(f.count, 5);
  EXPECT_DOUBLE_EQ(f.mean, 814);
  EXPECT_NEAR(f.sd, std::sqrt((4 + 1 + 25 + 36 + 0) / 4.0), 1e-12);
  EXPECT_DOUBLE_EQ(f.es, 11);
  EXPECT_NEAR(f.high - f.mean, 2.776445 * f.sd / std::sqrt(5), 1e-5);
  EXPECT_NEAR(f.mean - f.low, f.high - f.mean, 1e-9);
  EXPECT_EQ(counted_pressures(series), std::vector<double>{350e6});

  series.shots.resize(1);
  EXPECT_EQ(velocity_figures(series).mean, 812);
  EXPECT_FALSE(velocity_figures(series).has_spread());
  EXPECT_EQ(velocity_figures({}).count, 0);
}

// Printed tables of Student's distribution, two-sided.
TEST(Measured, QuantilesOfT) {
  const struct {
    double level;
    int freedom;
    double t;
  } cases[] = {{0.95, 1, 12.7062}, {0.95, 2, 4.30265},  {0.95, 3, 3.18245},   {0.95, 4, 2.77645},
               {0.95, 9, 2.26216}, {0.95, 30, 2.04227}, {0.95, 120, 1.97993}, {0.99, 5, 4.03214}};
  for (const auto& c : cases) EXPECT_NEAR(student_t(c.level, c.freedom), c.t, 2e-5 * c.t) << c.freedom;
  EXPECT_EQ(student_t(0.95, 0), student_t(0.95, 1));
}

TEST(Measured, StringsSurviveALoadFile) {
  std::vector<MeasuredSeries> series(2);
  series[0] = {
      "41.0 gr; warm = \"x\"", 41, "21", {{812.3456789, 0, false, ""}, {700.1, 3.5e8, true, "first; cold"}}};
  series[1] = {std::string(300, 'n'), 0, "", {{806.7072, 0, true, ""}}};
  SectionedFile file("[metrics]\r\nlaflen= 24\r\n[measured]\r\nnote=mine\r\n");
  write_measured(series, file);
  series[1].name.resize(200);
  EXPECT_EQ(read_measured(SectionedFile(file.bytes())), series);
  // Fewer than before: nothing of the former version comes back, and what is not ours stays.
  series.resize(1);
  series[0].shots.resize(1);
  write_measured(series, file);
  EXPECT_EQ(read_measured(file), series);
  write_measured({}, file);
  EXPECT_TRUE(read_measured(file).empty());
  EXPECT_EQ(file.get("measured", "note"), "mine");
  EXPECT_EQ(file.get("metrics", "laflen"), "24");
  EXPECT_EQ(read_measured(SectionedFile("[measured]\ns1=-3;;odd\ns1v1=x;-1;2\ns1v3=800\n")),
            (std::vector<MeasuredSeries>{{"odd", 0, "", {{0, 0, false, ""}}}}));
}

}  // namespace
}  // namespace tv
