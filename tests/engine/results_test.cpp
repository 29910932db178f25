#include "engine/results.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>

#include "engine/loads.h"
#include "engine/shot.h"
#include "text/number.h"

namespace tv::test {
namespace {

struct Panel {
  CalcState s = worked_load();
  ShotCurve c;
  ShotResult r;
  std::map<std::string, std::string> text;

  void show() {
    ASSERT_EQ(set_up(s), SetUp::ok);
    ASSERT_TRUE(runShot(s, c, r).ok());
    fill(4.730, 5.181);
  }
  void fill(double charge_g, double Veff_cm3) {
    text.clear();
    for (const PanelField& field : showResults(s, c, r, charge_g, Veff_cm3)) text[field.name] = field.text;
  }
};

// Figures of the worked load, by hand from v = 899.32 m/s, 366.49 and 105.62 MPa.
TEST(Results, PanelShowsTheFiguresInTheirFormats) {
  static Panel panel;
  panel.show();
  auto& text = panel.text;
  EXPECT_EQ(text.size(), 21U);
  EXPECT_EQ(text["Mgas"], format_number(panel.r.pMax / 1e6, "0"));
  EXPECT_EQ(text["Mgaspsi"].substr(0, 3), "531");
  EXPECT_EQ(text["Vnull"], "899");
  EXPECT_EQ(text["Vnullfps"], "2951");
  EXPECT_EQ(text["Ener"], "4717");    // 899.32^2 * 180 / 30860
  EXPECT_EQ(text["Enerfp"], "3479");  // 899.32^2 * 180 / 41840
  EXPECT_EQ(text["Vbrannt"], "99.87");
  EXPECT_EQ(text["wgrad"], "25.3");     // of 4.7303 g at 3935 kJ/kg
  EXPECT_EQ(text["cmratio"], "0.406");  // 73 / 180
  EXPECT_EQ(text["exprat"], "6.020");   // 47.32 mm2 * 549.63 mm against 5.1813 cm3
  EXPECT_EQ(text["ladich"], "0.913");
  EXPECT_EQ(text["endich"], "3592");
  // Base pressure at the muzzle: mean 105.62 MPa over 1 + 0.5 * 73 / 180.
  EXPECT_EQ(text["Maxpe"], "88");
  // Not burnt out: times are those of 95 percent.
  EXPECT_EQ(burn_caption(panel.r), BurnCaption::at95);
  EXPECT_NE(text["tbrs"], " n.a.");
  panel.s.pressure_unit_factor = 10;
  panel.fill(4.73, 0);
  EXPECT_EQ(text["Mgas"], "3665");
  EXPECT_EQ(text["ladich"], "?");
  EXPECT_EQ(text["endich"], "?");
}

TEST(Results, TimesNeedFineStepsAndBurnout) {
  static Panel panel;
  panel.s.schrit = 2;
  panel.show();
  for (const char* name : {"Sdau", "ptime", "tbrs", "xbrsmm", "xbrsin"}) EXPECT_EQ(panel.text[name], " n.a.");
  EXPECT_EQ(panel.text["Vnull"], "899");
  EXPECT_EQ(burn_caption(panel.r), BurnCaption::at95);
  panel.s.schrit = 0;
  panel.s.dim.Wob = 200;
  panel.show();
  EXPECT_NE(panel.text["Sdau"], " n.a.");
  EXPECT_EQ(panel.text["tbrs"], " n.a.");
  EXPECT_EQ(burn_caption(panel.r), BurnCaption::none);
}

TEST(Results, LimitIsFlaggedFromExactlyTheLimitOn) {
  EXPECT_EQ(pressure_state(400e6, 400), PressureState::over_limit);
  EXPECT_EQ(pressure_state(399.9e6, 400), PressureState::near_limit);
  EXPECT_EQ(pressure_state(339e6, 400), PressureState::caution);
  EXPECT_EQ(pressure_state(299e6, 400), PressureState::fine);
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
  panel.show();
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
