// What the general chart can and no standard diagram needs.
#include "output/chart.h"

#include <algorithm>
#include <cmath>

#include "output/diagram_shot.h"

namespace tv {
namespace {

// Curves and points over z as of a burn function, with handles and an upright line.
Chart example() {
  Chart c;
  c.x.title = "z";
  c.left = spread_axis(-0.3, 1.15, "");
  ChartSeries curve;
  curve.id = 4;
  curve.name = "edited";
  for (int i = 0; i <= 40; ++i) curve.points.push_back({i / 40.0, std::sqrt(1 - i / 40.0)});
  curve.colour = c.look.colours.velocity;
  ChartSeries measured;
  measured.id = 9;
  measured.name = "measured";
  measured.points = {{0.3, 0.8}, {0.6, 0.7}, {0.9, std::nan("")}};
  measured.spread = {0.1, 0, 0.1};
  measured.weight = 0;
  measured.shape = ChartPoints::dots;
  measured.reading = ChartReading::at_points;
  c.series = {curve, measured};
  c.marks = {{"Ba", {0, 1}, false, 0, 7, std::nullopt}, {"z1", {0.4, 0.77}, false, 4, 8, std::nullopt}};
  c.limits = {{0.5, "M", LineStyle::solid, true, true}};
  return c;
}

DrawnChart drawn(const Chart& c) { return draw_chart(c, 700, 500, nullptr); }

TEST(Chart, AxesOfAnySignHoldWholeTicks) {
  const struct {
    double low, high, from, to;
  } cases[] = {{-0.3, 1.15, -0.4, 1.2}, {-5, -2, -5.5, -1.5}, {2, 5, 1.5, 5.5}, {3, 3, 0, 1}};
  for (const auto& c : cases) {
    const ChartAxis axis = spread_axis(c.low, c.high, "");
    EXPECT_NEAR(axis.from, c.from, 1e-12) << c.low;
    EXPECT_NEAR(axis.to, c.to, 1e-12) << c.low;
  }
  const DrawnChart d = drawn(example());
  EXPECT_TRUE(text_item(d.list, "1.20")) << "without a unit the last tick keeps its value";
  Chart named = example();
  named.x.ticks = {{0.25, "powder", false}, {0.75, "charge", false}, {7, "beyond", false}};
  EXPECT_TRUE(text_item(drawn(named).list, "charge"));
  EXPECT_FALSE(text_item(drawn(named).list, "beyond"));
}

TEST(Chart, HandlesAreFoundAndTheirPlaceIsAValue) {
  const DrawnChart d = drawn(example());
  ASSERT_EQ(d.handles.size(), 2U);
  const Point at = d.handles[1].at;
  EXPECT_EQ(handle_hit(d, {at.x + 5, at.y - 5}), 8);
  EXPECT_EQ(handle_hit(d, {at.x + 60, at.y}), 0);
  EXPECT_NEAR(x_value(d.frame, at.x), 0.4, 1e-9);
  EXPECT_NEAR(y1_value(d.frame, at.y), 0.77, 1e-9);
  Chart hidden = example();
  hidden.series[0].hidden = true;
  EXPECT_EQ(drawn(hidden).handles.size(), 1U) << "goes with its curve";
}

TEST(Chart, ReadsCurvesAnywhereAndPointsCloseBy) {
  const Chart c = example();
  const DrawnChart d = drawn(c);
  const auto at = [&](double x) { return chart_read_out(c, d.frame, projected(d.frame, x, 0.1, false)); };
  const auto both = at(0.302);
  ASSERT_TRUE(both && both->entries.size() == 2U);
  EXPECT_EQ(both->entries[0].series, 4);
  EXPECT_NEAR(both->entries[0].number, std::sqrt(1 - 0.302), 2e-4);
  EXPECT_EQ(both->entries[1].number, 0.8) << "the point itself";
  EXPECT_EQ(at(0.45)->entries.size(), 1U);
  EXPECT_FALSE(at(1.2));
  EXPECT_GT(pointer_overlay(c, d.frame, {300, 200}, nullptr).items.size(), 4U);
  const DrawList target = pointer_overlay(c, d.frame, {d.frame.left - 4, 200}, nullptr);
  ASSERT_EQ(target.items.size(), 1U);
  EXPECT_EQ(target.items[0].points[1].y, 200);
}

TEST(Chart, BandsAreasAndBarsStayInsideTheSectionOnShow) {
  Chart c = example();
  c.bands = {{0.2, 0.3, c.look.colours.caution, true}, {0.9, HUGE_VAL, c.look.colours.over}};
  c.areas = {{{{0, -1}, {1, -9}}, {{0, 1}, {1, 9}}, c.look.colours.caution}};
  ChartSeries bars = c.series[1];
  bars.id = 10;
  bars.shape = ChartPoints::bars;
  bars.bar_width = 0.1;
  c.series.push_back(bars);
  for (const DiagramView& view : {DiagramView{}, DiagramView{{0.25, 0.31}, {0.3, 0.6}}}) {
    c.view = view;
    const DrawnChart d = drawn(c);
    const ChartFrame& f = d.frame;
    int filled = 0;
    for (const DrawItem& item : d.list.items) {
      if (item.kind != DrawKind::band && !item.filled) continue;
      if (item.kind == DrawKind::circle) continue;
      ++filled;
      for (const Point& p : item.points) {
        EXPECT_TRUE(p.x >= f.left - 1e-6 && p.x <= f.right + 1e-6 && p.y >= f.top - 1e-6)
            << p.x << " " << p.y;
      }
    }
    EXPECT_GE(filled, 4);
  }
}

}  // namespace
}  // namespace tv
