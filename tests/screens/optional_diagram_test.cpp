// The optional diagram: every quantity against a calculation of its own, the kept curve, and what is exported.
#include <cmath>

#include "output/quantities.h"
#include "screens/commands.h"
#include "screens/output_window.h"
#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class OptionalDiagram : public Started {
protected:
  void shoot() { ASSERT_NE(recalculate(s), 0); }
  Chart chart() { return describe_diagram(diagram_run(s), diagram_options(s), s.language); }
};

// From the points by the laws themselves, in SI: momentum, energy and Newton's second law, without the
// program's rounded constants, which differ by less than half a thousandth.
TEST_F(OptionalDiagram, EveryQuantityFollowsFromThePoints) {
  load("308_winchester_168");
  s.options.gunmas = 3.6;
  shoot();
  constexpr double kG = 9.80665, kFoot = 0.3048, kFootPound = 1.3558179, kPsi = 6894.757;
  const CalcState& state = s.shown.state;
  const double m = state.dim.Bwg * 64.79891e-6, w = state.chargeGr * 64.79891e-6, area = state.dim.qfq * 1e-6;
  const double space = state.dim.Veff * 64.79891e-6 / 998 - w / (state.Pdens * 1000);
  const double moving = m + state.dim.sebf * w, gun = 3.6;
  for (std::size_t i = 2; i <= static_cast<std::size_t>(s.result.lastIdx); i += 40) {
    const double x = s.curve.x[i], v = s.curve.v[i], p = s.curve.p[i];
    const double t = s.curve.t[i] - s.curve.t[0];
    const double expected[] = {x * 1e3,
                               t * 1e3,
                               v,
                               p / 1e6,
                               s.curve.z[i] * 100,
                               m * v * v / 2,
                               m * v * v / 2 / kFootPound,
                               p / kPsi,
                               v / kFoot,
                               p * area / moving / kG,
                               p * area / (gun + w / 2) / kG,
                               (m + w / 2) * v / (gun + w / 2),
                               (m + w / 2) * x * 1e3 / (gun + w + m),
                               (space + area * x) * 1e6,
                               s.curve.pB[i] / 1e6,
                               s.curve.pB[i] / kPsi};
    for (int y = 0; y < 16; ++y) {
      const double value = y_quantity(y).value(diagram_run(s), diagram_options(s), i);
      EXPECT_NEAR(value, expected[y], 5e-4 * std::abs(expected[y])) << "quantity " << y << " at " << i;
    }
    const double over[] = {x * 1e3, t * 1e3, x * 1e3 / 25.4, s.curve.z[i] * 100, x * 1e3, x * 1e3 / 25.4};
    for (int n = 0; n < 6; ++n)
      EXPECT_NEAR(x_quantity(n).value(diagram_run(s), diagram_options(s), i), over[n], 1e-6 + 5e-4 * over[n])
          << n;
  }
}

TEST_F(OptionalDiagram, IsExportedAsDrawnInEveryPairAndUnit) {
  load("308_winchester_168");
  shoot();
  keep_run(s);
  type("Form4", "MPgn", "36");
  shoot();
  s.state.pressure_unit_factor = 10;  // bar
  for (int x = 0; x < 6; ++x)
    for (int y = 0; y < 16; ++y) {
      SCOPED_TRACE(std::to_string(x) + "," + std::to_string(y));
      ASSERT_TRUE(show_optional(s, x, y));
      const Chart drawn = chart();
      const auto data = output_export(s);
      ASSERT_TRUE(data);
      ASSERT_EQ(drawn.series.size(), 2U);
      std::size_t row = 0;
      for (std::size_t n = 0; n < 2; ++n)
        for (const Point& point : drawn.series[n].points) {
          EXPECT_EQ(std::get<double>(data->data[row][0]), point.x + drawn.x.offset);
          EXPECT_EQ(std::get<double>(data->data[row][1 + n]), point.y);
          EXPECT_TRUE(std::holds_alternative<std::monostate>(data->data[row++][2 - n]));
          EXPECT_LE(point.x, drawn.x.to * (1 + 1e-5));
          EXPECT_LE(point.y, drawn.left.to);
        }
      EXPECT_EQ(row, data->data.size());
      if (y == 3) {
        EXPECT_NE(data->headers[1].find("(bar)"), std::string::npos) << data->headers[1];
      }
      if (x >= 4) {  // bolt face to muzzle
        EXPECT_NEAR((drawn.x.to + drawn.x.offset) * (x == 5 ? 25.4 : 1), s.shown.state.dim.Llen * 25.4, 0.01);
      }
    }
}

TEST_F(OptionalDiagram, TheKeptCurveStaysAndTheLegendTellsBothLoads) {
  load("308_winchester_168");
  EXPECT_TRUE(run_command(s, "delcalc")) << "none kept: nothing happens";
  EXPECT_FALSE(run_command(s, "savecalc")) << "nothing to keep yet";
  shoot();
  for (const int type : {1, 3, 5, 6}) {
    SetDisplayMode(s, type);
    s.kept.reset();
    const auto first = chart().series;
    ASSERT_TRUE(run_command(s, "savecalc"));
    load("9mm_luger_124");
    shoot();
    type == 5 ? language_switch(s, "german") : language_switch(s, "english");
    const Chart both = chart();
    ASSERT_EQ(both.series.size(), 2 * first.size());
    for (const ChartSeries& series : both.series) {
      EXPECT_LT(std::abs(series.points.back().x), both.x.to * (1 + 1e-5)) << "the axis covers both";
      if (series.id < kKeptLeft) continue;
      const ChartSeries& was = first[series.id == kKeptLeft ? 0 : 1];
      EXPECT_EQ(series.points, was.points) << type;
      EXPECT_LT(series.weight, 1);
      const ChartAxis& axis = series.right_scale ? *both.right : both.left;
      for (const Point& point : series.points) ASSERT_LE(point.y, axis.to);
    }
    ASSERT_EQ(both.legend_lines.size(), 2U);
    EXPECT_NE(both.legend_lines[0].find("9 mm Luger"), std::string::npos) << both.legend_lines[0];
    EXPECT_NE(both.legend_lines[1].find(".308 Winchester"), std::string::npos) << both.legend_lines[1];
    EXPECT_NE(both.legend_lines[1].find("2.508"), std::string::npos) << both.legend_lines[1];
    s.output.imperial = true;  // the same run in other units
    EXPECT_NEAR(chart().series.back().points.back().y,
                first.back().points.back().y / (type == 1 ? 0.00689476 : 1 / kFeetPerMetre), 1e-6);
    s.output.imperial = false;
    EXPECT_FALSE(draw_diagram(diagram_run(s), diagram_options(s), s.language, 400, 300, estimated_text_width)
                     .list.items.empty());
    load("308_winchester_168");
    shoot();
    run_command(s, "delcalc");
    EXPECT_EQ(chart().series.size(), first.size());
    EXPECT_TRUE(chart().legend_lines.empty());
  }
}

TEST_F(OptionalDiagram, ThePairIsChosenOnItsScreen) {
  load("308_winchester_168");
  shoot();
  SetDisplayMode(s, -1);
  s.options.graf_x = 77, s.options.graf_y = -3;  // of a damaged file
  open_screen(s, "FormGset");
  EXPECT_TRUE(field(s, "FormGset", "OptionX0").checked && field(s, "FormGset", "OptionY3").checked);
  s.options.gunmas = 0;
  choose(s, "FormGset", "OptionY", 11);
  press(s, "FormGset", "newcurve");
  EXPECT_EQ(user.count("box msg470"), 1) << "no recoil without a gun";
  choose(s, "FormGset", "OptionX", 3);
  choose(s, "FormGset", "OptionY", 9);
  press(s, "FormGset", "newcurve");
  EXPECT_TRUE(diagram_shown(s));
  EXPECT_EQ(s.options.graf_x, 3);
  EXPECT_EQ(chart().left.title, s.language.fastmsg("fbulacc"));
  EXPECT_FALSE(command_checked(s, *find_command("weg_press_vel")));
  shoot();
  EXPECT_EQ(chart().left.title, s.language.fastmsg("fbulacc")) << "a run redraws the pair";
  const Diagram drawn = output_diagram(s, 600, 400, estimated_text_width);
  EXPECT_FALSE(click_output(s, drawn.frame, {drawn.frame.left - 5, 100})) << "fits nothing";
  run_command(s, "Zeit_press");
  EXPECT_EQ(chart().left.title, s.language.fastmsg("fchp"));
}

}  // namespace
}  // namespace tv_test
