// Number fields: what may be typed, the limits, the partner that follows, and that a slip leaves no trace.
#include <cmath>
#include <set>

#include "screens/screen_actions.h"
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

TEST_F(NumberFields, PartnersFollowInBothDirections) {
  int pairs = 0;
  for (const NumberPair& pair : number_pairs()) {
    if (!pair.imperial.field || pair.read_only) continue;
    ++pairs;
    const double held = pair.value(s) == 0 ? 12.5 : pair.value(s);
    for (const bool from_metric : {true, false}) {
      const NumberSide& own = from_metric ? pair.metric : pair.imperial;
      const NumberSide& other = from_metric ? pair.imperial : pair.metric;
      SCOPED_TRACE(std::string(pair.screen) + "." + own.field);
      const std::string typed = format_number(shown_value(own.unit, held, s), "0.0000");
      type(pair.screen, own.field, typed);
      const double stored = stored_value(own.unit, read_number(typed), s);
      EXPECT_EQ(pair.value(s), stored);
      EXPECT_NEAR(field_number(s, pair.screen, other.field), shown_value(other.unit, stored, s),
                  rounding(other.as_partner));
      EXPECT_NEAR(field_number(s, pair.screen, own.field), read_number(typed), rounding(own.on_leave));
      // The partner's text, typed in its turn, gives the same value within its rounding.
      type(pair.screen, other.field, text(pair.screen, other.field));
      const double unit = shown_value(own.unit, 1, s) / shown_value(other.unit, 1, s);
      EXPECT_NEAR(field_number(s, pair.screen, own.field), read_number(typed),
                  rounding(other.as_partner) * unit * 1.01 + rounding(own.as_partner) +
                      (own.unit == Unit::fps_of_mps || other.unit == Unit::fps_of_mps ? 0.02 : 0));
    }
  }
  EXPECT_EQ(pairs, 16);
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
  struct Case {
    const char *typed, *stands;
  };
  for (const Case& c : {Case{"1,5", "1.5"},
                        {"1.2.3", "1.23"},
                        {"-12", "-12"},
                        {"1-2", "12"},
                        {"--3", "-3"},
                        {"12abc%", "12"},
                        {"1e5", "15"},
                        {"12345678901234567890", "123456789012345678"},
                        {" 7", "7"},
                        {"", ""}}) {
    focus_field(s, "Form3", "Bsdz");
    std::string typed;
    type("Form3", "Bsdz", c.typed);
    EXPECT_EQ(text("Form3", "Bsdz"), c.stands) << c.typed;
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
    const Field& f = field(s, "Form3", c.field);
    EXPECT_EQ(f.ink == Ink::red, !c.good) << c.field << " " << c.typed;
    EXPECT_EQ(f.reason.empty(), c.good) << c.field << " " << c.typed;
  }
  set_pressure_unit(s, false);
  type("Form3", "zul_P0", "4150");
  EXPECT_EQ(field(s, "Form3", "zul_P0").ink, Ink::black) << "15000 bar";
  EXPECT_EQ(s.state.dim.zul_P, 415);
}

TEST_F(NumberFields, OutOfRangeIsRedAtOnceAndToldWhenLeftOrEnteredAgain) {
  focus_field(s, "Form3", "Zkalm");
  edit("Zkalm", "0");
  EXPECT_EQ(field(s, "Form3", "Zkalm").ink, Ink::red);
  EXPECT_EQ(field(s, "Form3", "Zkalz").ink, Ink::red) << "the partner too";
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
  EXPECT_EQ(field(s, "Form3", "Zkalz").ink, Ink::black);
  EXPECT_EQ(s.screens["Form3"].hint, "");
  leave_field(s, "Form3", "Zkalm");

  set_text(s, "Form3", "Hlenm", "0");  // written by the program: coloured, but nobody is blamed
  focus_field(s, "Form3", "Hlenm");
  EXPECT_EQ(field(s, "Form3", "Hlenm").ink, Ink::red);
  leave_field(s, "Form3", "Hlenm");
  EXPECT_EQ(user.count("beep"), 2);
}

TEST_F(NumberFields, ASlipLeavesNoTrace) {
  s.options.bamint = 0.4, s.options.bamaxt = 0.7;  // within what the powders have
  refresh_criteria(s);
  ASSERT_EQ(recalculate(s), -1);
  const Screens before = s.screens;
  const CalcState state = s.state;
  const LoadData load = s.load;
  const auto same = [&](const char* what) {
    SCOPED_TRACE(what);
    EXPECT_TRUE(s.state == state);
    EXPECT_TRUE(s.resultsValid);
    EXPECT_EQ(s.load.pulver, load.pulver);
    EXPECT_EQ(s.load.bore_area_stale, load.bore_area_stale);
    for (const char* screen : {"Form3", "Form4", "Form5", "FormPsel"})
      for (const auto& [name, f] : before.find(screen)->second.fields) {
        EXPECT_EQ(field(s, screen, name).text, f.text) << name;
        EXPECT_EQ(field(s, screen, name).ink, f.ink) << name;
        EXPECT_EQ(field(s, screen, name).stale, f.stale) << name;
      }
  };
  focus_field(s, "Form3", "Hlenm");
  for (const char* typed : {"5", "51", "511"}) edit("Hlenm", typed);
  EXPECT_GT(s.state.dim.Plen, 20) << "pushed up by a case of half a metre";
  EXPECT_TRUE(restore_field(s));
  same("Escape");
  EXPECT_FALSE(restore_field(s));
  leave_field(s, "Form3", "Hlenm");

  for (const NumberPair& pair : number_pairs()) {
    if (pair.read_only || !pair.value || std::string_view(pair.screen) == "FormBorefrict") continue;
    if (!field(s, pair.screen, pair.metric.field).enabled) continue;
    EXPECT_TRUE(edit_field(s, pair.screen, pair.metric.field, "1.5"));
    EXPECT_TRUE(restore_field(s));
    same(pair.metric.field);
    leave_field(s, pair.screen, pair.metric.field);
  }

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
  write_pair(s, "Form3", "Plenm");
  refresh_all_fields(s);
  EXPECT_TRUE(s.state == before && s.resultsValid);
  EXPECT_TRUE(user.events.empty());
  EXPECT_FALSE(edit_field(s, "Form3", "Veffm", "3")) << "only shown";
  EXPECT_FALSE(edit_field(s, "Form3", "Wobm", "3"));
  focus_field(s, "Form3", "Plenm");
  leave_field(s, "Form3", "Plenm");
  EXPECT_TRUE(s.state == before && s.resultsValid) << "passing through changes nothing";
}

TEST_F(NumberFields, EditedPowderIsMarked) {
  type("Form4", "Ba0", "0.71");
  type("Form4", "Exw", "3800");
  EXPECT_EQ(text("Form4", "PulvDat"), "Example R-04 light bullet rifle ?");
  EXPECT_EQ(s.load.pulver, text("Form4", "PulvDat"));
  EXPECT_EQ(text("Form4", "Ba0"), "0.7100");
}

TEST_F(NumberFields, ChargeMovesTheLoadingRatioAndEndsTheQuestionForIt) {
  s.askCharge = true;
  type("Form4", "MPgn", "0");
  EXPECT_TRUE(s.askCharge);
  EXPECT_EQ(text("Form4", "fill"), "0") << "no powder is no unknown";
  type("Form4", "MPgm", "2.5");
  EXPECT_FALSE(s.askCharge);
  EXPECT_EQ(text("Form4", "fill"),
            format_number(100 * 2.5 / (s.state.bulkdn * field_number(s, "Form3", "Veffm")), "0.0"));
  type("Form4", "bulkdn", "0");
  EXPECT_EQ(text("Form4", "fill"), "?????");
  EXPECT_EQ(s.state.fill, 0);
}

}  // namespace
}  // namespace tv_test
