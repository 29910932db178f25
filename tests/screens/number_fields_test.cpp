// Number fields: what may be typed, the limits, the partner that follows, and that a slip leaves no trace.
#include <cmath>
#include <set>

#include "screens/all.h"
#include "session/numbers.h"
#include "session/started.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class NumberFields : public Started {
protected:
  NumberFields() {
    EXPECT_TRUE(load_read(s, example("308_winchester_168")));
    user.forget();
  }
  void edit(const char* name, const char* typed) { EXPECT_TRUE(edit_field(s, "Form3", name, typed)); }
};

// Half a unit of the last place that a pattern can show.
double rounding(const char* pattern) {
  const std::string p = pattern ? pattern : "0";
  const auto point = p.find('.');
  const auto places = point == std::string::npos ? 0 : p.size() - point - 1;
  return 0.5000001 * std::pow(10, -static_cast<double>(places));
}

// Calls visit(place) for every number that can be typed into, array fields one by one.
template <class Visit>
void each_number(const Session& s, Visit visit) {
  for (const ScreenSpec* spec : s.program.screens)
    for (const NumberField& number : spec->numbers)
      for (int i = number.count > 0 ? 1 : 0; i <= number.count; ++i)
        if (!number.read_only) visit(NumberPlace{spec->name, &number, 0, i});
}

// On every screen, in every direction: what is typed is stored, the other fields show it, and each limit
// counts at both ends.
TEST_F(NumberFields, EveryFieldStoresWhatItShowsAndKeepsItsLimits) {
  take_powder(s, 0);  // the burn function takes no coefficient without the others
  open_screen(s, "Form9");
  each_number(s, [&](NumberPlace at) {
    for (at.side = 0; at.side < at.number->sides.size(); ++at.side) {
      if (!at.own().field || !shown(s, at.screen, field_of(at, at.side)).enabled) continue;
      const std::string name = field_of(at, at.side);
      if (name == "cp_cv") continue;  // red before its limits, where the calculation does not take it
      SCOPED_TRACE(std::string(at.screen) + "." + name);
      const Unit& unit = *at.own().unit;
      const Limits limits = limits_of(s, at);
      const std::string typed = format_number(limits.least + (limits.most - limits.least) / 7, "0.000");
      focus_field(s, at.screen, name);
      ASSERT_TRUE(edit_field(s, at.screen, name, typed));
      EXPECT_DOUBLE_EQ(at.value(s), unit.stored(read_number(typed), s));
      for (std::size_t k = 0; k < at.number->sides.size(); ++k) {
        const NumberSide& other = at.number->sides[k];
        if (!other.field || k == at.side) continue;
        EXPECT_NEAR(read_number(shown(s, at.screen, field_of(at, k)).text), other.unit->shown(at.value(s), s),
                    rounding(other.as_partner))
            << other.field;
      }
      for (const auto& [value, good] : {std::pair{limits.most * 1.001 + 1, false},
                                        {limits.most, true},
                                        {limits.least, true},
                                        {limits.least - std::abs(limits.least) * 0.001 - 1, false}}) {
        edit_field(s, at.screen, name, general(value));
        EXPECT_EQ(shown(s, at.screen, name).ink == Ink::red, !good) << value;
      }
      restore_field(s);
      leave_field(s, at.screen, name);
    }
  });
}

TEST_F(NumberFields, ConversionsAreThoseOfTheTrade) {
  struct Case {
    const char *field, *typed, *partner, *shown, *own;
  };
  for (const Case& c : {Case{"Zkalm", "7.82", "Zkalz", "0.308", "7.82"},
                        {"Zkalz", ".308", "Zkalm", "7.82", "0.308"},
                        {"Bwgn", "168", "Bwgm", "10.886", "168"},
                        {"Bwgm", "10,886", "Bwgn", "168.0", "10.886"},
                        {"Llenz", "24", "Llenm", "609.6", "24"},
                        {"qfqm", "47.541", "qfqi", "0.073689", "47.541"},
                        {"Volfgn", "56", "Volfml", "3.636", "56"},
                        {"zul_P0", "415", "zul_P1", "60191", "415"},
                        {"Plenm", "71.1", "Plenz", "2.799", "71.10"},
                        {"sebf", ".5", nullptr, "", "0.5"}}) {
    type("Form3", c.field, c.typed);
    EXPECT_EQ(text("Form3", c.field), c.own) << c.field;
    if (c.partner) {
      EXPECT_EQ(text("Form3", c.partner), c.shown) << c.field;
    }
  }
}

TEST_F(NumberFields, KeyFilterAndPaste) {
  for (const auto& [typed, stands] : {std::pair{"1,5", "1.5"},
                                      {"1.2.3", "1.23"},
                                      {"1-2", "12"},
                                      {"--3", "-3"},
                                      {"12abc%", "12"},
                                      {"1e5", "15"},
                                      {"12345678901234567890", "123456789012345678"}}) {
    type("Form3", "Bsdz", typed);
    EXPECT_EQ(text("Form3", "Bsdz"), stands) << typed;
  }
  for (const char* good : {"", "-", ".", "-.5", "123456789012345678", "0007"})
    EXPECT_TRUE(number_text_ok(good));
  for (const char* bad : {"1,5", "1.2.3", "1-", "--1", "1e5", "0x1F", " 1", "1234567890123456789", "½"})
    EXPECT_FALSE(number_text_ok(bad)) << bad;
}

TEST_F(NumberFields, LimitsCountAsSinglePrecision) {
  struct Case {
    const char *field, *typed;
    bool good;
  };
  for (const Case& c : {Case{"Zkalm", "609.6", true},
                        {"Zkalm", "609.61", false},
                        {"Zkalz", "24", true},
                        {"Zkalz", "0.04", true},
                        {"Zkalz", "0.039", false},
                        {"qfqi", "50.26", true},
                        {"qfqi", "50.27", false},
                        {"sebf", "3", true},
                        {"sebf", "3.01", false},
                        {"Bsdm", "51.181", true},
                        {"Bsdm", "51.19", false},
                        {"Bsdz", "-40", true},
                        {"zul_P0", "1500", true},
                        {"zul_P0", "1501", false},
                        {"zul_P1", "217557", true},
                        {"zul_P1", "217558", false}}) {
    type("Form3", c.field, c.typed);
    const Field& f = shown(s, "Form3", c.field);
    EXPECT_EQ(f.ink == Ink::red, !c.good) << c.field << " " << c.typed;
    EXPECT_EQ(f.reason.empty(), c.good) << c.field << " " << c.typed;
  }
  set_pressure_unit(s, false);
  type("Form3", "zul_P0", "4150");
  EXPECT_EQ(shown(s, "Form3", "zul_P0").ink, Ink::black) << "15000 bar";
  EXPECT_EQ(s.state.dim.zul_P, 415);
}

TEST_F(NumberFields, OutOfRangeIsRedAtOnceAndToldWhenLeftOrEnteredAgain) {
  focus_field(s, "Form3", "Zkalm");
  edit("Zkalm", "0");
  EXPECT_EQ(shown(s, "Form3", "Zkalm").ink, Ink::red);
  EXPECT_EQ(shown(s, "Form3", "Zkalz").ink, Ink::red) << "the partner too";
  EXPECT_EQ(user.count("beep"), 0) << "or the second digit would be eaten";
  EXPECT_EQ(s.screens["Form3"].hint, "");
  leave_field(s, "Form3", "Zkalm");
  EXPECT_EQ(user.count("beep"), 1);
  EXPECT_EQ(s.screens["Form3"].hint, "Max:609.6\nMin:1");
  EXPECT_EQ(text("Form3", "Zkalm"), "0") << "it stands until corrected";
  focus_field(s, "Form3", "Zkalm");
  EXPECT_EQ(user.count("beep"), 2);
  EXPECT_EQ(s.focus.select_length, 1U);
  edit("Zkalm", "7.82");
  EXPECT_EQ(shown(s, "Form3", "Zkalz").ink, Ink::black);
  EXPECT_EQ(s.screens["Form3"].hint, "");
  leave_field(s, "Form3", "Zkalm");

  set_text(s, "Form3", "Hlenm", "0");  // written by the program: coloured, but nobody is blamed
  focus_field(s, "Form3", "Hlenm");
  EXPECT_EQ(shown(s, "Form3", "Hlenm").ink, Ink::red);
  leave_field(s, "Form3", "Hlenm");
  EXPECT_EQ(user.count("beep"), 2);
}

TEST_F(NumberFields, ASlipLeavesNoTrace) {
  s.options.bamint = 0.4, s.options.bamaxt = 0.7;  // within what the powders have
  open_screen(s, "FormPsel");
  ASSERT_EQ(recalculate(s), -1);
  refresh_screens(s);
  const Screens before = s.screens;
  const CalcState state = s.state;
  const LoadData load = s.load;
  const auto same = [&](const char* what) {
    SCOPED_TRACE(what);
    EXPECT_TRUE(s.state == state);
    EXPECT_TRUE(s.valid.results);
    EXPECT_EQ(s.load.pulver, load.pulver);
    EXPECT_EQ(s.load.bore_area_stale, load.bore_area_stale);
    for (const char* screen : {"Form3", "Form4", "Form5", "FormPsel"})
      for (const auto& [name, f] : before.find(screen)->second.fields) {
        EXPECT_EQ(shown(s, screen, name).text, f.text) << name;
        EXPECT_EQ(shown(s, screen, name).ink, f.ink) << name;
        EXPECT_EQ(shown(s, screen, name).stale, f.stale) << name;
      }
  };
  focus_field(s, "Form3", "Hlenm");
  for (const char* typed : {"5", "51", "511"}) edit("Hlenm", typed);
  EXPECT_GT(s.state.dim.Plen, 20) << "pushed up by a case of half a metre";
  EXPECT_TRUE(restore_field(s));
  same("Escape");
  EXPECT_FALSE(restore_field(s));
  leave_field(s, "Form3", "Hlenm");

  each_number(s, [&](const NumberPlace& at) {
    const std::string name = field_of(at, 0);
    if (!s.screens.find(at.screen)->second.visible && at.screen != "FormPsel") return;
    if (!shown(s, at.screen, name).enabled) return;
    EXPECT_TRUE(edit_field(s, at.screen, name, "1.5"));
    EXPECT_TRUE(restore_field(s));
    same(name.c_str());
    leave_field(s, at.screen, name);
  });

  // Corrected in place of given up: as if typed right at once.
  focus_field(s, "Form3", "Hlenm");
  for (const char* typed : {"", "5", "51", "511", "51.", "51.1"}) edit("Hlenm", typed);
  leave_field(s, "Form3", "Hlenm");
  EXPECT_EQ(s.state.dim.Plen, state.dim.Plen);
  EXPECT_EQ(text("Form3", "Plenm"), before.find("Form3")->second.fields.at("Plenm").text);
  EXPECT_DOUBLE_EQ(s.state.dim.Hlen, 51.1 / 25.4);
  EXPECT_DOUBLE_EQ(s.state.dim.Bsd, 51.1 / 25.4 + state.dim.Glen - state.dim.Plen);
}

TEST_F(NumberFields, WhatTheProgramWritesStartsNothing) {
  ASSERT_EQ(recalculate(s), -1);
  const CalcState before = s.state;
  user.forget();
  set_text(s, "Form3", "Hlenm", "20");
  write_number(s, s.state.dim.Plen);
  refresh_all_fields(s);
  EXPECT_TRUE(s.state == before && s.valid.results);
  EXPECT_TRUE(user.events.empty());
  EXPECT_FALSE(edit_field(s, "Form3", "Veffm", "3")) << "only shown";
  EXPECT_FALSE(edit_field(s, "Form3", "Wobm", "3"));
  focus_field(s, "Form3", "Plenm");
  leave_field(s, "Form3", "Plenm");
  EXPECT_TRUE(s.state == before && s.valid.results) << "passing through changes nothing";
}

TEST_F(NumberFields, EditedPowderIsMarked) {
  type("Form4", "Ba0", "0.71");
  type("Form4", "Exw", "3800");
  EXPECT_EQ(text("Form4", "PulvDat"), "Example R-04 light bullet rifle ?");
  EXPECT_EQ(s.load.pulver, text("Form4", "PulvDat"));
  EXPECT_EQ(text("Form4", "Ba0"), "0.7100");
}

TEST_F(NumberFields, ChargeMovesTheLoadingRatioAndEndsTheQuestionForIt) {
  s.valid.ask_charge = true;
  type("Form4", "MPgn", "0");
  EXPECT_TRUE(s.valid.ask_charge);
  EXPECT_EQ(text("Form4", "fill"), "0") << "no powder is no unknown";
  type("Form4", "MPgm", "2.5");
  EXPECT_FALSE(s.valid.ask_charge);
  EXPECT_EQ(text("Form4", "fill"),
            format_number(100 * 2.5 / (s.state.bulkdn * shown_number(s, s.state.dim.Veff)), "0.0"));
  type("Form4", "bulkdn", "0");
  EXPECT_EQ(text("Form4", "fill"), "?????");
  EXPECT_EQ(s.state.fill, 0);
}

TEST_F(NumberFields, BarsOfTheBandDoNotCross) {
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

// A gun, picked and accepted, gives each of its numbers to its own place.
TEST_F(NumberFields, AGunArrivesWhole) {
  Record gun;
  for (int i = 1; i < 20; ++i) gun[static_cast<std::size_t>(i)] = std::to_string(10 * i) + ".5";
  gun[gun_field::name] = "mine";
  gun[gun_field::CalDat] = ".308 Winchester";
  gun[gun_field::gclidst] = "1";
  add_row(RecordKind::guns, gun);
  const auto stands = [&](int at) { return read_number(gun[static_cast<std::size_t>(at)]); };
  open_screen(s, "frmGun");
  pick("frmGun", "GunNam", "mine");
  press(s, "frmGun", "F6ok");
  EXPECT_NEAR(s.state.dim.Llen * 25.4, stands(gun_field::Llenm), 1e-9);
  EXPECT_NEAR(s.options.gunhos * 25.4, stands(gun_field::vhmm), 1e-9);
  EXPECT_NEAR(s.options.twistlen * 25.4, stands(gun_field::twlenmm), 1e-9);
  EXPECT_EQ(s.options.gunmas, stands(gun_field::gun_weight_kg));
  EXPECT_EQ(s.options.gmoacli, stands(gun_field::gmoacli));
  EXPECT_EQ(s.state.dim.Volf, stands(gun_field::cartridge_copy));
}

}  // namespace
}  // namespace tv_test
