// What starts a calculation, what it leaves, and what makes its results stale.
#include <cmath>
#include <utility>

#include "screens/output_window.h"
#include "session/load_steps.h"
#include "session/started.h"
#include "tables/table_text.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class Driver : public Started {
protected:
  Driver() {
    EXPECT_TRUE(load_read(s, example("308_winchester_168")));
    user.forget();
  }
  void calculated() { ASSERT_EQ(recalculate(s), -1); }
};

TEST_F(Driver, FirstUseAsksForTheChargeAndClosesTheQuickStart) {
  s.screens["frmFast"].visible = true;
  const double charge = std::exchange(s.state.chargeGr, 0);
  Patdef(s);
  EXPECT_FALSE(s.firstRun);
  EXPECT_FALSE(s.screens["frmFast"].visible);
  EXPECT_FALSE(s.valid.results);
  EXPECT_EQ(user.last_focus(), "Form4.MPgn");
  EXPECT_EQ(user.box_keys(), "");
  user.forget();
  s.firstRun = true;  // with a charge it calculates at once
  s.state.chargeGr = charge;
  Patdef(s);
  EXPECT_TRUE(s.valid.results);
  EXPECT_EQ(user.last_front(), "Form7");
  s.valid.ask_charge = true;
  Patdef(s);
  EXPECT_FALSE(s.valid.ask_charge);
  EXPECT_EQ(user.last_focus(), "Form4.MPgn");
}

TEST_F(Driver, ARunWritesTheLoadAndTheTransferFileAndFillsThePanel) {
  refresh_screens(s);
  EXPECT_EQ(s.screens["Form5"].paper, Paper::grey);
  calculated();
  EXPECT_TRUE(s.valid.results);
  refresh_screens(s);
  EXPECT_EQ(s.screens["Form5"].paper, Paper::grey);
  EXPECT_NEAR(read_number(text("Form5", "Mgas")), 343.9, 3.4);  // by an independent integration
  EXPECT_NEAR(read_number(text("Form5", "Vnull")), 775.5, 15);
  EXPECT_NE(text("Form5", "merker").find(s.language.notice()), std::string::npos);
  s.writer.drain();
  EXPECT_NE(root.read("ternofw.set").find("powwht= 38.7"), std::string::npos);
  EXPECT_NE(root.read("ternofw.xmt").find("vnull=" + text("Form5", "Vnull") + "\r"), std::string::npos)
      << root.read("ternofw.xmt");
  EXPECT_EQ(user.waiting, 0);
}

TEST_F(Driver, EveryInputMakesResultsAndTablesStaleAndNothingElseDoes) {
  const std::function<void()> changes[] = {[&] { type("Form4", "MPgn", "38"); },
                                           [&] { type("Form4", "Kap", "1.23"); },
                                           [&] { type("Form3", "Bwgn", "169"); },
                                           [&] { type("Form3", "Bsdm", "10"); },
                                           [&] { type("Form3", "zul_P0", "400"); },
                                           [&] { toggle(s, "Form3", "TAIL"); },
                                           [&] { setStep(s, 2); },
                                           [&] { type("FormBorefrict", "sugg_P0", "2"); },
                                           [&] { SetLoadTableStep(s, 3); },
                                           [&] { pick("Form4", "PulvDat", "Example R-05 medium rifle"); },
                                           [&] { type("Form4", "ini_press1", "20"); }};
  for (const auto& change : changes) {
    ASSERT_TRUE(load_read(s, example("308_winchester_168")));
    setStep(s, 0);
    SetLoadTableStep(s, 1);
    calculated();
    s.valid.load_table = s.valid.powder_table = true;
    change();
    EXPECT_FALSE(s.valid.results);
    EXPECT_FALSE(s.valid.load_table || s.valid.powder_table);
    EXPECT_TRUE(shown(s, "Form5", "Mgas").stale);
  }
  ASSERT_TRUE(load_read(s, example("308_winchester_168")));
  setStep(s, 0);
  calculated();
  s.valid.load_table = true;
  setStep(s, 0);
  set_unit_mode(s, UnitMode::imperial);
  set_pressure_unit(s, false);
  SetDisplayMode(s, -2);
  SetDisplayMode(s, 4);
  type("FormPsel", "lminratio", "80");
  EXPECT_TRUE(s.valid.results && s.valid.load_table);
  EXPECT_NEAR(read_number(text("Form5", "Mgas")), 3439, 34) << "bar";
  SetBaTolerance(s, 7);
  EXPECT_TRUE(s.valid.results) << "no single shot depends on the tolerance";
  EXPECT_FALSE(s.valid.load_table);
}

TEST_F(Driver, LoadTableInPlaceOfTheShotLeavesTheLoadAsItWas) {
  calculated();
  const CalcState single = s.state;
  const std::string panel = text("Form5", "Mgas") + text("Form5", "Sdau") + text("Form5", "merker");
  const double peak = s.result.pMax;
  SetDisplayMode(s, -1);
  calculated();
  EXPECT_TRUE(s.valid.load_table && s.valid.results);
  EXPECT_TRUE(s.state == single);
  EXPECT_EQ(text("Form5", "Mgas") + text("Form5", "Sdau") + text("Form5", "merker"), panel);
  EXPECT_EQ(s.tables.load.pmax[LoadTable::kNominal], peak);
  EXPECT_EQ(s.result.pMax, peak) << "the load's own shot is on show again";
  EXPECT_EQ(s.tables.load.inputs.block.powder, s.load.pulver);
}

TEST_F(Driver, LoadTableStepByWeight) {
  calculated();
  user.inputs = {std::nullopt, "9.1", "0,5"};
  for (const double step : {1.0, 1.0, 0.5}) {
    ask_percent_step(s);
    EXPECT_EQ(s.options.ldstep, step);
  }
  set_unit_mode(s, UnitMode::imperial);
  user.inputs = {"5.01", "0.5"};
  ask_weight_step(s);
  EXPECT_TRUE(s.options.ldperc && !s.options.ldweight);
  ask_weight_step(s);
  EXPECT_TRUE(s.options.ldweight && !s.options.ldperc);
  EXPECT_DOUBLE_EQ(s.options.ldstep, 50 / s.state.chargeGr) << "stored at once";
  s.state.chargeGr = 40;
  settle_steps(s);
  EXPECT_EQ(s.options.ldstep, 1.25) << "the weight stands, the percentage follows the charge";
  SetDisplayMode(s, -1);
  calculated();
  EXPECT_NEAR(s.tables.load.charge[0], 35, 1e-9);
  set_unit_mode(s, UnitMode::metric);
  user.inputs = {"0.3x", "0.05"};
  ask_weight_step(s);
  EXPECT_NE(s.status.find("0.3x (0.01 ... 0.32)"), std::string::npos) << s.status;
  ask_weight_step(s);
  EXPECT_NEAR(s.tables.weight_step, 0.05 * 15.432358353, 1e-12);
  EXPECT_EQ(user.asked.back().value, "0.0324") << "half a grain, in grams";
}

TEST_F(Driver, ARowOfThePowderTableIsTakenWithItsPowderAndTakenBack) {
  calculated();
  const CalcState before = s.state;
  const std::string name = s.load.pulver;
  s.options.bamint = 0.55, s.options.bamaxt = 0.75;
  s.tables.strategy = 4, s.options.veltab = 780;
  SetDisplayMode(s, -2);
  calculated();
  const auto& rows = s.tables.powder.rows;
  std::size_t i = 0;
  while (i + 1 < rows.size() && (trim(rows[i].name) == name || !shows_figures(s.tables.powder, rows[i]))) ++i;
  const int row = static_cast<int>(i);
  ASSERT_TRUE(take_table_row(s, row));
  EXPECT_EQ(s.load.pulver, trim(rows[i].name));
  EXPECT_NE(s.state.Ba0, before.Ba0);
  EXPECT_NEAR(s.state.chargeGr, rows[i].cell(2) * 15432.358353, 1e-9);
  EXPECT_TRUE(s.valid.powder_table && !s.valid.results);
  EXPECT_EQ(present_row(s), row);
  undo_fit(s);
  EXPECT_EQ(s.load.pulver, name);
  EXPECT_TRUE(s.state.Ba0 == before.Ba0 && s.state.ExwJ == before.ExwJ &&
              s.state.chargeGr == before.chargeGr);
  EXPECT_FALSE(take_table_row(s, row)) << "the table is out of date with it";
}

TEST_F(Driver, PowderTableLeavesTheLoadAsItWasAndCancelKeepsTheRowsDone) {
  calculated();
  const CalcState single = s.state;
  const std::string panel = text("Form5", "Mgas");
  s.options.bamint = 0.55, s.options.bamaxt = 0.75;
  s.tables.strategy = 4, s.options.veltab = 780;
  SetDisplayMode(s, -2);
  calculated();
  EXPECT_TRUE(s.valid.powder_table && s.valid.results);
  EXPECT_TRUE(s.tables.powder_shown);
  const std::size_t rows = s.tables.powder.rows.size();
  EXPECT_GE(rows, 3U);
  for (const PowderRow& r : s.tables.powder.rows)
    EXPECT_TRUE(r.status != RowStatus::ok || std::fabs(r.cell(1) - 780) <= 0.15) << r.name;
  EXPECT_TRUE(s.state == single);
  EXPECT_EQ(text("Form5", "Mgas"), panel);

  calculated();  // a finished table is left for a diagram
  EXPECT_EQ(s.options.grftyp, 3);
  EXPECT_FALSE(s.tables.powder_shown);

  int asked = 0;
  user.wants_to_cancel = [&] { return ++asked > 2; };
  SetDisplayMode(s, -2);
  calculated();
  EXPECT_EQ(s.options.grftyp, 3);
  EXPECT_TRUE(s.state == single);
  EXPECT_TRUE(s.tables.powder.cancelled);
  EXPECT_LT(s.tables.powder.rows.size(), rows);
}

TEST_F(Driver, FitMeetsItsTargetInFiveModesAndIsUndone) {
  calculated();
  struct Case {
    int mode;
    double value, tolerance;
    std::function<double()> reached;
  };
  const Case cases[] = {
      {0, 300, 0.06, [&] { return s.result.pMax / 1e6; }},
      {1, 750, 0.02, [&] { return s.result.vMuzzle; }},
      {2, std::fabs(s.curve.t[0]) * 1050, 2e-3, [&] { return std::fabs(s.curve.t[0]) * 1000; }},
      {3, 500, 1e-9, [&] { return s.state.dim.Wob; }},
      {4, 500, 1e-9, [&] { return s.state.dim.Llen * 25.4; }}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.mode);
    const auto load_values = [&] { return std::array{s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob}; };
    const auto before = load_values();
    s.valid.load_table = s.valid.powder_table = true;
    FitChargeToTarget(s, c.value, c.mode);
    EXPECT_TRUE(s.valid.results);
    EXPECT_FALSE(s.valid.load_table || s.valid.powder_table) << "they are of the load before";
    EXPECT_NEAR(c.reached(), c.value, c.tolerance);
    EXPECT_FALSE(s.tables.powder_shown);
    EXPECT_EQ(text("frmMAIN", "status_line"), s.status);
    EXPECT_NE(s.status.find(" -> "), std::string::npos);
    EXPECT_NEAR(read_number(text("Form4", "MPgn")), s.state.chargeGr, 0.051);
    EXPECT_NEAR(read_number(text("Form3", "Llenm")), s.state.dim.Llen * 25.4, 0.0051);
    const double travel = s.state.dim.Wob;
    recompute_dimensions(s, 9);
    EXPECT_NEAR(s.state.dim.Wob, travel, 1e-9) << "barrel and travel belong together";
    undo_fit(s);
    EXPECT_EQ(load_values(), before);
    EXPECT_FALSE(s.valid.results);
    EXPECT_FALSE(can_undo_fit(s));
    EXPECT_EQ(text("frmMAIN", "status_line"), "");
    calculated();
  }
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(Driver, FitThatCannotBeMetLeavesTheLoad) {
  FitChargeToTarget(s, 300, 0);
  EXPECT_EQ(s.state.chargeGr, 38.7) << "nothing without valid results";
  calculated();
  const CalcState before = s.state;
  user.forget();
  for (const auto& [target, mode] : {std::pair{-3.0, 0}, {0.9, 3}, {5000.0, 1}}) {
    FitChargeToTarget(s, target, mode);
    EXPECT_TRUE(s.state == before && s.valid.results && !can_undo_fit(s)) << target;
  }
  EXPECT_EQ(user.count("beep"), 3);
  EXPECT_EQ(user.box_keys(), "msg159 msg160");
  s.output.imperial = true;
  FitChargeToTarget(s, 45000, 0);
  EXPECT_NEAR(s.result.pMax / 6894.76, 45000, 10);
  FitChargeToTarget(s, 2500, 1);
  EXPECT_NEAR(s.result.vMuzzle / 0.3048, 2500, 0.05);
  FitChargeToTarget(s, 20, 3);
  EXPECT_NEAR(s.state.dim.Wob, 508, 1e-9);
  FitChargeToTarget(s, 22, 4);
  EXPECT_NEAR(s.state.dim.Llen, 22, 1e-9);
}

TEST_F(Driver, FailedRunsAreToldAndShownAsFailed) {
  calculated();
  s.state.Ba1 = 0;
  EXPECT_EQ(recalculate(s), 0);
  ASSERT_FALSE(user.boxes.empty());
  EXPECT_EQ(user.box_keys(), "msg102 msg155 msg156 msg158");
  EXPECT_NE(user.boxes.back().title.find("Ca_Knst_n_Z1"), std::string::npos) << user.boxes.back().title;
  EXPECT_FALSE(s.valid.results);
  refresh_screens(s);
  EXPECT_EQ(s.screens["Form5"].paper, Paper::failed);
  const std::string& line = text("Form5", "merker");
  const std::string note = s.language.fastmsg("fwarn14");
  EXPECT_NE(line.find(note), std::string::npos);
  EXPECT_EQ(line.find(note), line.rfind(note)) << "told once";
  EXPECT_EQ(user.waiting, 0);
}

// The progressivity at which the model has no solution is told, and nothing goes on with the run before.
TEST_F(Driver, AModelWithoutASolutionIsTold) {
  calculated();
  const double q = s.state.Ba0 / (98066.5 * s.state.boreM2);
  const double about = 2 / (q * q * s.state.effMass * s.state.chargeKg * s.state.ExwJ);
  ShotOutcome outcome;
  for (int n = -200; n <= 200 && outcome.end != ShotEnd::kEff_one; ++n) {
    s.state.PDko = about * (1 + n * 0x1p-52);
    outcome = runShot(s.state, s.curve, s.result);
  }
  ASSERT_EQ(outcome.end, ShotEnd::kEff_one);
  user.forget();
  EXPECT_EQ(recalculate(s), 0);
  EXPECT_EQ(user.box_keys(), "msg150");
  EXPECT_EQ(user.last_front(), "Form4");
  EXPECT_FALSE(s.valid.results);
  EXPECT_EQ(text("Form5", "Vnull"), "0");
  EXPECT_NE(text("Form5", "merker").find(s.language.fastmsg("fwarn14")), std::string::npos);
}

TEST_F(Driver, AStuckBulletShowsNothingGood) {
  type("FormBorefrict", "sugg_P0", "30");
  type("Form4", "MPgn", "12");
  s.state.frictionOn = true;
  type("Form3", "Llenm", "3000");
  user.forget();
  EXPECT_EQ(recalculate(s), 0);
  EXPECT_EQ(user.box_keys(), "msg134 msg135 msg136 msg137");
  EXPECT_EQ(text("Form5", "Vnull"), "0");
  EXPECT_EQ(text("Form5", "merker"), s.language.fastmsg("fehlEG"));
  EXPECT_EQ(shown(s, "Form5", "merker").ink, Ink::red);
  set_pressure_unit(s, false);
  EXPECT_EQ(text("Form5", "merker"), s.language.fastmsg("fehlEG"));
  language_switch(s, "german");
  EXPECT_EQ(text("Form5", "merker"), s.language.fastmsg("fehlEG")) << "no word of leaving the barrel";
  SetDisplayMode(s, 0);
  EXPECT_EQ(output_text(s).find("Muzzle"), std::string::npos) << "it did not get there";
}

TEST_F(Driver, LimitColoursComeWithAWord) {
  struct Case {
    double share;
    Paper paper;
    Ink ink, line;
    const char* reason;
  };
  calculated();
  const double peak = s.result.pMax / 1e6;
  for (const Case& c : {Case{0.99, Paper::red, Ink::black, Ink::red, "fwarn1"},
                        Case{1.1, Paper::magenta, Ink::black, Ink::black, "fwarn2"},
                        Case{1.25, Paper::yellow, Ink::black, Ink::black, "fwarn2"},
                        Case{1.4, Paper::white, Ink::black, Ink::black, nullptr},
                        Case{0, Paper::white, Ink::red, Ink::red, "fwarn3"}}) {
    s.state.dim.zul_P = c.share * peak;
    calculated();
    const Field& f = shown(s, "Form5", "Mgas");
    EXPECT_EQ(f.paper, c.paper) << c.share;
    EXPECT_EQ(f.ink, c.ink) << c.share;
    EXPECT_EQ(shown(s, "Form5", "merker").ink, c.line) << c.share;
    EXPECT_EQ(f.reason.empty(), c.reason == nullptr);
  }
}

}  // namespace
}  // namespace tv_test
