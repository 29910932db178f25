// Bore friction, quick start and the criteria of the powder table.
#include <cmath>

#include "screens/commands.h"
#include "session/started.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class SmallScreens : public Started {
protected:
  SmallScreens() {
    EXPECT_TRUE(load_read(s, example("308_winchester_168")));
    user.forget();
  }
};

TEST_F(SmallScreens, FrictionRunsWithTheFineStep) {
  user.on_dialog = [&](std::string_view) {
    type("FormBorefrict", "sugg_P0", "30");
    EXPECT_EQ(s.state.frictionPress, 30e6);
    EXPECT_EQ(text("FormBorefrict", "sugg_P1"), "4351");
    toggle(s, "FormBorefrict", "frictiononoff");
    type("FormBorefrict", "sugg_P0", "30.000001");
    press(s, "FormBorefrict", "okfriction");
    EXPECT_TRUE(s.screens["FormBorefrict"].visible) << "too much: the window stays";
    EXPECT_EQ(user.last_focus(), "FormBorefrict.sugg_P0");
    EXPECT_EQ(s.state.schrit, 0);
    type("FormBorefrict", "sugg_P1", "1450,4");
    EXPECT_NEAR(s.state.frictionPress, 10.0e6, 1000);
    close_screen(s, "FormBorefrict");  // as its button does
  };
  EXPECT_TRUE(open_screen(s, "FormBorefrict"));
  EXPECT_FALSE(s.screens["FormBorefrict"].visible);
  EXPECT_EQ(s.state.schrit, 1);
  setStep(s, 2);
  EXPECT_EQ(s.state.schrit, 2) << "a later choice stands";
}

TEST_F(SmallScreens, QuickStartMirrorsTheMainScreens) {
  open_screen(s, "frmFast");
  EXPECT_TRUE(shown(s, "frmFast", "met_eng").checked);
  EXPECT_EQ(text("frmFast", "MPgn"), "2.508");
  EXPECT_EQ(text("frmFast", "Plenz"), "71.12");
  EXPECT_EQ(text("frmFast", "PulvDat"), text("Form4", "PulvDat"));
  EXPECT_EQ(shown(s, "frmFast", "Bnam").items.size(), shown(s, "Form3", "Bnam").items.size());
  toggle(s, "frmFast", "met_eng");
  EXPECT_EQ(text("frmFast", "MPgn"), "38.7");
  EXPECT_EQ(text("frmFast", "Llenz"), "24");
  type("frmFast", "MPgn", "40");
  toggle(s, "frmFast", "met_eng");
  EXPECT_EQ(text("frmFast", "MPgn"), "2.592") << "what was typed is told in the other unit";
  EXPECT_EQ(s.state.chargeGr, 38.7) << "and goes to the load by Proceed only";

  toggle(s, "frmFast", "TAIL");
  EXPECT_FALSE(shown(s, "Form3", "TAIL").checked || s.state.dim.TAIL);
  pick("frmFast", "HVolDat", ".223 Remington");
  EXPECT_EQ(text("Form3", "HVolDat"), ".223 Remington");
  EXPECT_EQ(text("frmFast", "Bnam"), text("Form3", "Bnam"));
  pick("Form4", "PulvDat", "Example R-05 medium rifle");
  EXPECT_EQ(text("frmFast", "PulvDat"), "Example R-05 medium rifle") << "the other way too";
  run_command(s, "imperial");
  EXPECT_FALSE(shown(s, "frmFast", "met_eng").checked);
  EXPECT_EQ(text("frmFast", "Llenz"), "24");
}

TEST_F(SmallScreens, ProceedTakesWhatWasEnteredAndCalculates) {
  open_screen(s, "frmFast");
  const CartridgeDimensions before = s.state.dim;
  EXPECT_TRUE(press(s, "frmFast", "Proceed"));
  EXPECT_TRUE(s.valid.results);
  EXPECT_EQ(s.state.chargeGr, 38.7) << "what was not touched keeps its digits";
  EXPECT_EQ(s.state.dim.Plen, before.Plen);

  open_screen(s, "frmFast");
  type("frmFast", "MPgn", "2.4");
  type("frmFast", "Llenz", "0");
  press(s, "frmFast", "Proceed");
  EXPECT_TRUE(s.valid.results);
  EXPECT_DOUBLE_EQ(s.state.chargeGr, 2.4 * 15.432358353);
  EXPECT_EQ(s.state.dim.Llen, 24);
  EXPECT_EQ(text("Form3", "Llenm"), "609.6");

  open_screen(s, "frmFast");
  type("frmFast", "Plenz", "0");
  user.forget();
  press(s, "frmFast", "Proceed");
  EXPECT_EQ(text("Form3", "Plenm") + text("Form3", "Plenz"), "??");
  EXPECT_EQ(user.last_focus(), "Form3.Plenm");
}

TEST_F(SmallScreens, ProceedStaysWhenTheChargeDoesNotFit) {
  open_screen(s, "frmFast");
  s.state.bulkdn = 0;
  type("frmFast", "MPgn", "9");
  press(s, "frmFast", "Proceed");
  EXPECT_EQ(user.box_keys(), "msg413 msg414");
  EXPECT_EQ(user.count("beep"), 1);
  EXPECT_TRUE(s.screens["frmFast"].visible);
  type("frmFast", "MPgn", "2.5");
  press(s, "frmFast", "Proceed");
  EXPECT_FALSE(s.screens["frmFast"].visible) << "a missing bulk density alone does not stop";
  EXPECT_TRUE(s.valid.results);
}

TEST_F(SmallScreens, CriteriaEnableWhatTheStrategyLooksAt) {
  const char* enabled[] = {"P", "L", "PL", "PR", "V", "", "", "H", "PV"};
  user.on_dialog = [&](std::string_view) {
    for (int n = 0; n < 9; ++n) {
      EXPECT_TRUE(choose(s, "FormPsel", "searchwhat", n));
      std::string on;
      for (const auto& [mark, name] :
           {std::pair{"P", "sugg_P0"}, {"V", "sugg_V1"}, {"L", "lratio"}, {"R", "lowpress"}, {"H", "hfill"}})
        if (shown(s, "FormPsel", name).enabled) on += mark;
      EXPECT_EQ(on, enabled[n]) << n;
      EXPECT_EQ(s.tables.strategy, n);
    }
    type("FormPsel", "tbamin", "0.5");
    press(s, "FormPsel", "cancel");
  };
  s.options.bamint = 0.45;
  open_screen(s, "FormPsel");
  EXPECT_EQ(s.tables.strategy, 0) << "cancel puts everything back";
  EXPECT_EQ(s.options.bamint, 0.45);
  EXPECT_EQ(text("FormPsel", "tbamin"), "0.45");
}

TEST_F(SmallScreens, CriteriaLimitsHangOnEachOther) {
  open_screen(s, "FormPsel");
  choose(s, "FormPsel", "searchwhat", 2);
  s.options.lv_min = 80;
  const auto red = [&](const char* name, const char* typed) {
    type("FormPsel", name, typed);
    return shown(s, "FormPsel", name).ink == Ink::red;
  };
  EXPECT_FALSE(red("lratio", "80") || red("lratio", "140"));
  EXPECT_TRUE(red("lratio", "79.9") && red("lratio", "141"));
  type("FormPsel", "lratio", "100");
  EXPECT_TRUE(red("lminratio", "28.9"));
  type("FormPsel", "lminratio", "120");
  EXPECT_EQ(text("FormPsel", "lminratio"), "99");
  EXPECT_EQ(s.options.lv_min, 100);
  EXPECT_FALSE(red("sugg_P0", "1500") || red("sugg_P1", "1450"));
  EXPECT_TRUE(red("sugg_P0", "9.9") && red("sugg_P1", "1449"));
  choose(s, "FormPsel", "searchwhat", 3);
  EXPECT_TRUE(red("lowpress", "51"));
  EXPECT_FALSE(red("lowpress", "10"));
  EXPECT_DOUBLE_EQ(s.options.lod2nd, 0.9) << "ten percent below";
}

TEST_F(SmallScreens, BarsOfTheBandDoNotCross) {
  open_screen(s, "FormPsel");
  double least = 320, most = 0;
  const RecordTable& powders = s.set(RecordKind::powders).file.table;
  for (int row = 0; row <= powders.last(); ++row) {
    least = std::min(least, powders.number(row, powder_field::Ba0));
    most = std::max(most, powders.number(row, powder_field::Ba0));
  }
  const BarPlace place = bar_place(s, "FormPsel", "scrminba");
  EXPECT_EQ(place.least, static_cast<int>(least * 100 + 0.0001));
  EXPECT_EQ(place.most, static_cast<int>(most * 100 + 0.0001));
  EXPECT_TRUE(move_bar(s, "FormPsel", "scrmaxba", 60));
  EXPECT_TRUE(move_bar(s, "FormPsel", "scrminba", 45));
  EXPECT_EQ(text("FormPsel", "tbamin") + " " + text("FormPsel", "tbamax"), "0.45 0.60");
  EXPECT_TRUE(move_bar(s, "FormPsel", "scrmaxba", 40));
  EXPECT_EQ(s.options.bamint, 0.4) << "pulled along";
  EXPECT_TRUE(move_bar(s, "FormPsel", "scrminba", 57));
  EXPECT_EQ(text("FormPsel", "tbamax"), "0.57");
  EXPECT_EQ(bar_place(s, "FormPsel", "scrmaxba").position, 57);
  EXPECT_TRUE(move_bar(s, "FormPsel", "scrmaxba", 99999));
  EXPECT_EQ(bar_place(s, "FormPsel", "scrmaxba").position, place.most);
  EXPECT_FALSE(move_bar(s, "FormPsel", "lratio", 5) || move_bar(s, "Form3", "scrminba", 5));
}

TEST_F(SmallScreens, CriteriaOkChecksInItsOrderAndCalculatesTheTable) {
  struct Case {
    double Options::*value;
    double bad;
    const char* focus;
  };
  for (const Case& c : {Case{&Options::lod2nd, 0.499, "FormPsel.lowpress"},
                        {&Options::lod2nd, 0.951, "FormPsel.lowpress"},
                        {&Options::maxtab, 9.9, "FormPsel.sugg_P0"},
                        {&Options::maxtab, 1501, "FormPsel.sugg_P0"},
                        {&Options::lratio, 29, "FormPsel.lratio"},
                        {&Options::lratio, 141, "FormPsel.lratio"}}) {
    open_screen(s, "FormPsel");
    const double good = s.options.*c.value;
    s.options.*c.value = c.bad;
    press(s, "FormPsel", "okproptab");
    EXPECT_EQ(user.last_focus(), c.focus);
    EXPECT_TRUE(s.screens["FormPsel"].visible);
    EXPECT_NE(s.options.grftyp, -2);
    s.options.*c.value = good;
  }
  s.options.bamint = 0.75, s.options.bamaxt = 0.55;
  press(s, "FormPsel", "okproptab");
  EXPECT_FALSE(s.screens["FormPsel"].visible);
  EXPECT_EQ(s.options.bamint, 0.55) << "a reversed band is turned round";
  EXPECT_EQ(s.options.grftyp, -2);
  EXPECT_TRUE(s.valid.powder_table);
  EXPECT_EQ(user.last_front(), "Form7");
}

TEST_F(SmallScreens, CriteriaFollowThePickedCartridge) {
  open_screen(s, "FormPsel");
  pick("Form3", "HVolDat", ".223 Remington");
  EXPECT_EQ(read_number(text("FormPsel", "sugg_P0")), 376.3) << "0.875 of 430 MPa";
  EXPECT_EQ(text("FormPsel", "sugg_P1"), format_number(1e6 * 0.875 * 430 / 6894.76, "0"));
}

}  // namespace
}  // namespace tv_test
