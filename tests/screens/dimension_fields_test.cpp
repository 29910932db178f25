// Each dimension, entered in its field, moves exactly what belongs to it.
#include <cmath>
#include <map>

#include "session/started.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class DimensionFields : public Started {
protected:
  using Values = std::map<std::string, double>;
  Values values() const {
    const auto& d = s.state.dim;
    return {{"Zkal", d.Zkal}, {"buldin", d.buldin}, {"Bwg", d.Bwg}, {"Glen", d.Glen}, {"Hlen", d.Hlen},
            {"Plen", d.Plen}, {"Llen", d.Llen},     {"qfq", d.qfq}, {"Volf", d.Volf}, {"Vvg", d.Vvg},
            {"Veff", d.Veff}, {"Bsd", d.Bsd},       {"ssd", d.ssd}, {"Wob", d.Wob},   {"sebf", d.sebf}};
  }
  std::string moved(const Values& before) const {
    std::string names;
    for (const auto& [name, value] : values())
      if (value != before.at(name)) names += (names.empty() ? "" : " ") + name;
    return names;
  }
};

TEST_F(DimensionFields, EveryKindMovesWhatItShould) {
  struct Case {
    const char *field, *typed, *moved;
  };
  const Case cases[] = {{"Bsdz", "0.3", "Bsd Plen Veff Vvg Wob ssd"},
                        {"Bsdz", "2.2", "Bsd Veff Vvg Wob ssd"},  // deeper than the case: no length follows
                        {"ssdz", "0.1", "Bsd Plen Veff Vvg Wob ssd"},
                        {"ssdz", "2.1", "Bsd Veff Vvg Wob ssd"},
                        {"Glenz", "1.3", "Bsd Glen Veff Vvg Wob ssd"},
                        {"Plenz", "2.75", "Bsd Plen Veff Vvg Wob ssd"},
                        {"Hlenz", "2.1", "Bsd Hlen Veff Vvg ssd"},  // the bullet's base stays: so the travel
                        {"Hlenz", "2.9", "Bsd Hlen Plen Veff Vvg Wob ssd"},
                        {"Llenz", "20", "Llen Wob"},
                        {"Volfgn", "55", "Veff Volf"},
                        {"Zkalz", "0.31", "Zkal"},
                        {"buldinch", "0.307", "buldin"},
                        {"Bwgn", "170", "Bwg"},
                        {"qfqm", "47", "qfq"},
                        {"sebf", "0.6", "sebf"}};
  for (const Case& c : cases) {
    load("308_winchester_168");
    const Values before = values();
    type("Form3", c.field, c.typed);
    std::string after = moved(before);
    // Bolt face to bullet base is the difference of two lengths: it may differ by a rounding.
    if (after.ends_with(" Wob ssd") && std::fabs(s.state.dim.Wob - before.at("Wob")) < 1e-9)
      after.replace(after.size() - 8, 8, " ssd");
    EXPECT_EQ(after, c.moved) << c.field << " " << c.typed;
    const auto& d = s.state.dim;
    EXPECT_NEAR(d.Wob, (d.Llen - d.Hlen + d.Bsd) * 25.4, 1e-9) << c.field;
    EXPECT_NEAR(d.Veff, d.Volf - d.Vvg, 1e-9) << c.field;
    EXPECT_NEAR(d.ssd, d.Bsd - d.tail_len / 25.4, 1e-9) << c.field << ": a boat tail shortens the body";
    for (const auto& [name, value] :
         {std::pair{"Plenz", d.Plen}, {"Bsdz", d.Bsd}, {"ssdz", d.ssd}, {"Veffz", d.Veff}})
      if (std::string_view(c.field) != "ssdz" || std::string_view(name) != "Plenz") {
        EXPECT_NEAR(read_number(text("Form3", name)), value, 0.00051) << c.field;
      }
  }
}

TEST_F(DimensionFields, LengthsAtTheirEdges) {
  load("308_winchester_168");
  const double Plen = s.state.dim.Plen;
  type("Form3", "Bsdz", "1.5");
  EXPECT_EQ(s.state.dim.Plen, s.state.dim.Hlen) << "seated deeper than it is long";
  load("308_winchester_168");
  type("Form3", "Hlenz", "3");
  EXPECT_EQ(s.state.dim.Plen, 3);
  EXPECT_NEAR(s.state.dim.Bsd, s.state.dim.Glen, 1e-12);
  load("308_winchester_168");
  focus_field(s, "Form3", "ssdz");
  edit_field(s, "Form3", "ssdz", "0.1");
  EXPECT_EQ(read_number(text("Form3", "Plenz")), Plen) << "the field lags one entry behind";
  EXPECT_NE(s.state.dim.Plen, Plen);
  leave_field(s, "Form3", "ssdz");
  EXPECT_NEAR(read_number(text("Form3", "Plenz")), s.state.dim.Plen, 0.0005) << "until it is left";
  type("Form3", "Bsdz", "-0.1");
  EXPECT_LT(s.state.dim.Vvg, 0) << "a bullet that stands off is legal";
  type("Form3", "Glenz", "0");
  const double Bsd = s.state.dim.Bsd;
  type("Form3", "Hlenz", "2");
  EXPECT_EQ(s.state.dim.Bsd, Bsd) << "nothing is moved while a length is missing";
}

TEST_F(DimensionFields, BandSeatingDepthIsMarkedBelowZero) {
  load("308_winchester_168");
  for (const char* name : {"ssdz", "ssdm"}) {
    type("Form3", name, "-0.1");
    EXPECT_EQ(shown(s, "Form3", "ssdm").ink, Ink::magenta) << name;
    EXPECT_EQ(shown(s, "Form3", "ssdz").ink, Ink::magenta) << name;
    EXPECT_EQ(shown(s, "Form3", "ssdm").reason, s.language.msg(177));
    focus_field(s, "Form3", name);
    EXPECT_EQ(shown(s, "Form3", "ssdm").ink, Ink::magenta) << "also with the focus";
    type("Form3", name, "0.1");
    EXPECT_EQ(shown(s, "Form3", "ssdm").ink, Ink::black) << name;
  }
  type("Form3", "Bsdz", "0.1");
  EXPECT_EQ(shown(s, "Form3", "ssdz").ink, Ink::magenta);
  toggle(s, "Form3", "TAIL");
  EXPECT_EQ(shown(s, "Form3", "ssdz").ink, Ink::black) << "without a tail nothing stands off";
}

TEST_F(DimensionFields, GrooveDiameterWaitsForTheNextRecompute) {
  load("308_winchester_168");
  type("Form3", "Zkalz", "0.31");
  EXPECT_TRUE(s.load.bore_area_stale);
  for (const char* name : {"Vvgm", "Vvgn", "Veffm", "Veffz"}) EXPECT_TRUE(shown(s, "Form3", name).stale);
  const double Vvg = s.state.dim.Vvg;
  type("Form3", "Llenz", "22");
  EXPECT_GT(s.state.dim.Vvg, Vvg);
  EXPECT_FALSE(shown(s, "Form3", "Veffm").stale);
}

TEST_F(DimensionFields, TailBoxSwitchesTheTailOnAndOff) {
  load("308_winchester_168");
  const double with = s.state.dim.Vvg;
  EXPECT_TRUE(toggle(s, "Form3", "TAIL"));
  const auto& d = s.state.dim;
  EXPECT_FALSE(d.TAIL);
  EXPECT_EQ(d.ssd, d.Bsd);
  EXPECT_NEAR(d.Vvg, d.Bsd * 198.23 * d.Zkal * d.Zkal / 0.998, 1e-9);
  EXPECT_GT(d.Vvg, with);
  EXPECT_TRUE(toggle(s, "Form3", "TAIL"));
  EXPECT_NEAR(d.Vvg, with, 1e-9);
  load("9mm_luger_124");
  toggle(s, "Form3", "TAIL");
  EXPECT_FALSE(shown(s, "Form3", "TAIL").checked || s.state.dim.TAIL) << "a flat base has none to switch on";
}

TEST_F(DimensionFields, CoatingLowersTheStartPressure) {
  load("308_winchester_168");
  user.inputs = {"2", "0,3", "0.8"};
  EXPECT_TRUE(toggle(s, "Form3", "fproof"));
  EXPECT_EQ(user.count("beep"), 2);
  EXPECT_EQ(user.asked.at(0).value, "0.66");
  EXPECT_EQ(s.state.moly_factor, 0.8);
  EXPECT_DOUBLE_EQ(s.state.start_pressure, 20e6);
  EXPECT_EQ(text("Form4", "ini_press1"), "20");
  EXPECT_TRUE(s.load.fproof);
  toggle(s, "Form3", "fproof");
  EXPECT_DOUBLE_EQ(s.state.start_pressure, 25e6);
  EXPECT_FALSE(s.load.fproof);

  user.inputs = {std::nullopt};
  toggle(s, "Form3", "fproof");
  EXPECT_DOUBLE_EQ(s.state.start_pressure, 20e6) << "cancelled: the factor in force";
  toggle(s, "Form3", "fproof");

  type("Form4", "ini_press1", "1.2");
  user.forget();
  user.inputs = {""};
  toggle(s, "Form3", "fproof");
  EXPECT_EQ(user.box_keys(), "msg43 msg44");
  EXPECT_FALSE(shown(s, "Form3", "fproof").checked);
  EXPECT_NEAR(s.state.start_pressure, 1.2e6, 1e-6) << "switched off again";

  s.state.start_pressure = 0;  // of the bullet; what is shown is what runs
  set_text(s, "Form4", "ini_press1", "30");
  user.inputs = {"0.5"};
  toggle(s, "Form3", "fproof");
  EXPECT_DOUBLE_EQ(s.state.start_pressure, 15e6);
}

TEST_F(DimensionFields, WordOfAgreementTakesTheNoticeAway) {
  type("Form3", "method", "  CUP ");
  EXPECT_EQ(s.load.pmetho, "CUP");
  EXPECT_FALSE(s.options.nowarn);
  std::string word = s.language.fastmsg("agreeit2");
  type("Form3", "method", lower(word));
  EXPECT_TRUE(s.options.nowarn);
  EXPECT_EQ(text("Form3", "method"), "?");
  EXPECT_NE(root.read("ternofw.set").find("nowarn=-1"), std::string::npos);
}

}  // namespace
}  // namespace tv_test
