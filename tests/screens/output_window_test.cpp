// What the output window shows: of the last run, never of inputs that have changed since.
#include "screens/output_window.h"

#include <functional>
#include <sstream>
#include <tuple>

#include "output/spreadsheet.h"
#include "screens/commands.h"
#include "session/started.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class OutputWindow : public Started {};

TEST_F(OutputWindow, ShowsTheRunAndMarksItWhenStale) {
  load("308_winchester_168");
  for (int mode = -2; mode <= 6; ++mode) {
    SetDisplayMode(s, mode);
    EXPECT_EQ(output_text(s).find(s.language.fastmsg(mode < 0 ? "fcrgvar6" : "noshot0")), 0U) << mode;
    EXPECT_FALSE(output_export(s).has_value() || output_stale(s)) << mode;
    EXPECT_EQ(output_shows_text(s), mode <= 0);
  }
  s.options.bamint = 0.6, s.options.bamaxt = 0.72;
  for (const int mode : {-2, -1, 0}) {
    SetDisplayMode(s, mode);
    ASSERT_EQ(recalculate(s), -1);
  }
  for (int mode = -2; mode <= 3; ++mode) {
    SetDisplayMode(s, mode);
    EXPECT_TRUE(output_export(s).has_value()) << mode;
    EXPECT_FALSE(output_stale(s)) << mode;
    const std::string before = output_text(s), cells = output_tsv(s);
    EXPECT_NE(before.find(".308 Winchester"), std::string::npos) << mode;
    EXPECT_NE(cells.find('\t'), std::string::npos) << mode;
    const std::string exported = csv_text(*output_export(s));
    EXPECT_EQ(before.find('\r'), std::string::npos);

    const double charge = s.state.chargeGr, limit = s.state.dim.zul_P;
    const Options options = s.options;
    pick("Form3", "HVolDat", ".223 Remington");
    s.state.bulkdn *= 2, s.state.schrit = 2, s.state.dim.zul_P = 0, s.tables.strategy = 3;
    s.options.maxtab = 111, s.options.lv_min = 33, s.options.ldstep = 7, s.options.batols = 15;
    EXPECT_TRUE(output_stale(s)) << mode;
    EXPECT_TRUE(output_text(s).ends_with(before)) << "the old figures under the old names: " << mode;
    EXPECT_NE(output_text(s).find(s.language.fastmsg("fobsol0")), std::string::npos);
    EXPECT_TRUE(output_tsv(s).ends_with(cells));
    EXPECT_EQ(csv_text(*output_export(s)), exported);
    EXPECT_FALSE(command_enabled(s, *find_command("toexcel"))) << "nothing stale leaves in a file";
    EXPECT_TRUE(output_tsv(s).starts_with(s.language.fastmsg("fobsol0"))) << "also where it is copied to";
    s.state.chargeGr = charge, s.state.bulkdn /= 2, s.state.schrit = 0, s.state.dim.zul_P = limit;
    s.options = options, s.tables.strategy = 0;
    s.valid.results = s.valid.load_table = s.valid.powder_table = true;
  }
  SetDisplayMode(s, 2);
  output_switch(s);
  EXPECT_TRUE(output_shows_text(s));
  output_switch(s);
  EXPECT_FALSE(output_shows_text(s));
}

TEST_F(OutputWindow, TellsThePeakInTheUnitsOfTheWindow) {
  load("308_winchester_168");
  ASSERT_EQ(recalculate(s), -1);
  SetDisplayMode(s, 3);
  for (const auto& [imperial, MPa, pascal, mps] :
       {std::tuple{false, true, 1e6, 1.0}, {false, false, 1e5, 1.0}, {true, true, 6894.757, 0.3048}}) {
    s.output.imperial = imperial;
    set_pressure_unit(s, MPa);
    const DiagramOptions options = diagram_options(s);
    const DiagramFrame f = output_diagram(s, 800, 600, estimated_text_width).frame;
    const double share = (s.result.xPeak * 1000 / options.distance_factor - f.x_from) / (f.x_to - f.x_from);
    const auto told = read_out(f, options, {&s.state, &s.curve, &s.result, true},
                               {f.left + share * (f.right - f.left), f.top + 9});
    ASSERT_TRUE(told);
    EXPECT_NEAR(read_number(told->y1), s.result.pMax / pascal, 2e-3 * s.result.pMax / pascal)
        << imperial << MPa;
    const auto peak = static_cast<std::size_t>(s.result.peakIdx);
    EXPECT_NEAR(read_number(told->y2), s.curve.v[peak] / mps, 0.01 * s.curve.v[peak] / mps) << imperial;
  }
}

TEST_F(OutputWindow, ChosenColoursStandForThoseOfThePalette) {
  const Colour green{0, 120, 0, 255}, blue{0, 0, 200, 255};
  s.output.colours.left = green;
  s.output.colours.right = blue;
  s.options.grftyp = 6;
  EXPECT_EQ(diagram_options(s).colours.pressure, green);
  EXPECT_EQ(diagram_options(s).colours.velocity, blue);
  EXPECT_EQ(diagram_options(s, true).colours.paper, dark_colours().paper);
  s.options.grftyp = 5;  // the velocity stands at the left
  EXPECT_EQ(diagram_options(s).colours.velocity, green);
}

TEST_F(OutputWindow, ASectionEndsWithItsShotAndItsAxes) {
  load("308_winchester_168");
  ASSERT_EQ(recalculate(s), -1);
  const DiagramView part{{0.2, 0.5}, {0.3, 0.9}};
  const struct {
    const char* what;
    std::function<void()> change;
    bool stays;
  } cases[] = {{"calculation", [&] { recalculate(s); }, false},
               {"type", [&] { SetDisplayMode(s, s.options.grftyp == 4 ? 5 : 4); }, false},
               {"barrel", [&] { run_command(s, "rax_llen"); }, false},
               {"units of the window", [&] { run_command(s, "toggleunits"); }, false},
               {"pressure unit", [&] { set_pressure_unit(s, false); }, false},
               {"limit", [&] { run_command(s, "drawmax"); }, false},
               {"zones", [&] { run_command(s, "shozone"); }, true},
               {"same type", [&] { SetDisplayMode(s, s.options.grftyp); }, true},
               {"input", [&] { type("Form4", "MPgn", "40"); }, true}};
  SetDisplayMode(s, 3);
  for (const auto& c : cases) {
    s.output.view = part;
    c.change();
    EXPECT_EQ(s.output.view == part, c.stays) << c.what;
    EXPECT_EQ(is_whole(s.output.view), !c.stays) << c.what;
  }
  s.output.view = {};
  EXPECT_FALSE(move_output(s, 0.1, 0.1));
  zoom_output(s, 3);
  EXPECT_NEAR(s.output.view.x.from + s.output.view.x.to, 1, 1e-12);
  while (move_output(s, 0.1, 0.1)) continue;
  EXPECT_EQ(s.output.view.x.to, 1);
  const Diagram exported = output_diagram(s, 700, 500, estimated_text_width);
  EXPECT_GT(exported.frame.x_from, 0) << "what is exported is what is seen";
}

}  // namespace
}  // namespace tv_test
