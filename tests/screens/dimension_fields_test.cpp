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

TEST_F(DimensionFields, SeatingDepthOfTheBodyIsMarkedBelowZero) {
  load("308_winchester_168");
  for (const auto& [typed, ink] :
       {std::pair{"-0.1", Ink::magenta}, {"0.1", Ink::black}, {"-0.1", Ink::magenta}}) {
    type("Form3", "ssdm", typed);
    for (const char* both : {"ssdm", "ssdz"}) EXPECT_EQ(shown(s, "Form3", both).ink, ink) << both;
  }
  EXPECT_EQ(shown(s, "Form3", "ssdm").reason, s.language.msg(177));
  toggle(s, "Form3", "TAIL");
  EXPECT_EQ(shown(s, "Form3", "ssdz").ink, Ink::black) << "without a tail nothing stands off";
}

TEST_F(DimensionFields, GrooveDiameterWaitsForTheNextRecompute) {
  load("308_winchester_168");
  type("Form3", "Zkalz", "0.31");
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
