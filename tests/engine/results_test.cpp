#include "engine/results.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>

#include "engine/loads.h"

namespace tv::test {
namespace {

struct Panel : Shot {
  std::map<std::string, std::string> text;

  void show(double charge_g, double Veff_cm3) {
    ASSERT_TRUE(run());
    for (const PanelField& field : showResults(s, c, r, charge_g, Veff_cm3)) text[field.name] = field.text;
  }
};

// By hand from v = 899.32 m/s, 366.49 MPa at the peak and 105.62 at the muzzle; 180 and 73 grains, 3935
// kJ/kg, 47.32 mm2, 549.63 mm, 5.1813 cm3; not burnt out, so that times are those of 95 percent.
TEST(Results, PanelShowsTheFiguresInTheirFormats) {
  static Panel panel;
  panel.show(4.730, 5.181);
  EXPECT_EQ(panel.text.size(), 21U);
  const std::map<std::string, std::string> figures{
      {"Vnull", "899"},     {"Vnullfps", "2951"}, {"Ener", "4717"},     {"Enerfp", "3479"},
      {"Vbrannt", "99.87"}, {"wgrad", "25.3"},    {"cmratio", "0.406"}, {"exprat", "6.020"},
      {"ladich", "0.913"},  {"endich", "3592"},   {"Maxpe", "88"},      {"Xpmzoll", "2.92"}};
  for (const auto& [name, figure] : figures) EXPECT_EQ(panel.text[name], figure) << name;
  EXPECT_EQ(panel.text["Mgaspsi"].substr(0, 3), "531");
  EXPECT_EQ(burn_caption(panel.r), BurnCaption::at95);
  EXPECT_NE(panel.text["tbrs"], " n.a.");
  panel.s.pressure_unit_factor = 10;
  panel.show(4.73, 0);
  EXPECT_EQ(panel.text["Mgas"], "3665");
  EXPECT_EQ(panel.text["ladich"] + panel.text["endich"], "??");
}

TEST(Results, TimesNeedFineStepsAndBurnout) {
  static Panel panel;
  panel.s.schrit = 2;
  panel.show(4.73, 5.18);
  for (const char* name : {"Sdau", "ptime", "tbrs", "xbrsmm", "xbrsin"}) EXPECT_EQ(panel.text[name], " n.a.");
  EXPECT_EQ(panel.text["Vnull"], "899");
  panel.s.schrit = 0;
  panel.s.dim.Wob = 200;
  panel.show(4.73, 5.18);
  EXPECT_NE(panel.text["Sdau"], " n.a.");
  EXPECT_EQ(panel.text["tbrs"], " n.a.");
  EXPECT_EQ(burn_caption(panel.r), BurnCaption::none);
}

TEST(Results, LimitIsFlaggedFromExactlyTheLimitOn) {
  EXPECT_EQ(pressure_state(400e6, 400), PressureState::over_limit);
  EXPECT_EQ(pressure_state(399.9e6, 400), PressureState::near_limit);
  EXPECT_EQ(pressure_state(340e6, 400), PressureState::near_limit);
  EXPECT_EQ(pressure_state(339.9e6, 400), PressureState::caution);
  EXPECT_EQ(pressure_state(300e6, 400), PressureState::caution);
  EXPECT_EQ(pressure_state(299.9e6, 400), PressureState::fine);
  EXPECT_EQ(pressure_state(1e6, 0), PressureState::unknown);
  EXPECT_EQ(pressure_state(1e6, NAN), PressureState::unknown);
}

TEST(Results, StatusLineResolvesNotesInTheLanguageInForce) {
  const std::string path = testing::TempDir() + "tv_engine_status.lan";
  std::ofstream(path)
      << "[messages]\n75msg=Warning\n151msg=\" % over.\"\n[fastmsg]\nfwarn1=\"Over! \"\n"
         "fwarn3=\"No limit! \"\nfwarn5=\"Notes: \"\nfwarn8=\" Leaves.\"\nfwarn11=\" Burning.\"\n";
  Language language;
  ASSERT_NE(language.read(path), LanguageRead::unreadable);
  std::remove(path.c_str());
  static Panel panel;
  panel.s.fill = 103.25;
  ASSERT_TRUE(panel.run());
  EXPECT_TRUE(status_line_red(panel.s, panel.r));
  EXPECT_EQ(
      status_line(panel.s, panel.c, panel.r, language),
      "Notes: No limit!  Warning : 3.3 % over. Leaves. Burning. (IPSC Factor= 531.1 - DSB MIP= 1049.0)\n");
  panel.s.dim.zul_P = 360;
  EXPECT_EQ(status_line(panel.s, panel.c, panel.r, language).substr(0, 13), "Notes: Over! ");
  EXPECT_TRUE(status_line_red(panel.s, panel.r));
  panel.s.dim.zul_P = 380;
  EXPECT_FALSE(status_line_red(panel.s, panel.r));
}

}  // namespace
}  // namespace tv::test
