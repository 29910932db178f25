// Every refusal and every warning between entry and run, as a person meets them: typed into the screens, with
// the focus where it belongs.
#include <gtest/gtest.h>

#include "cli_run.h"

namespace tv::test {
namespace {

struct Case {
  const char* name;
  const char* script;             // what is entered
  std::vector<std::string> told;  // messages of the boxes, first key of each
  const char *screen, *field;     // of the refusal; empty: it runs
};

// A load with a boat tail, everything in order.
const char* const kBegin = "open load \"%LOAD%\"\nboxes\n";
const char* const kEnd = "\npress Form4.CalcAll\nboxes\nfocus\nshow Form5\n";

const std::vector<Case> kCases = {
    {"in order", "", {}, "", ""},
    {"no cartridge", "type Form3.HVolDat \"\"", {}, "Form3", "HVolDat"},
    {"the text for no data", "type Form3.HVolDat \"%NONAME%\"", {}, "Form3", "HVolDat"},
    {"no bullet", "type Form3.Bnam \"  \"", {}, "Form3", "Bnam"},
    {"the text for no bullet", "type Form3.Bnam \"%NOBULLET%\"", {}, "Form3", "Bnam"},
    {"no weight", "type Form3.Bwgm \"0\"", {}, "Form3", "Bwgm"},
    {"Sebert's factor at its end", "type Form3.sebf \"12\"", {}, "", ""},
    {"Sebert's factor", "type Form3.sebf \"12.01\"", {}, "Form3", "sebf"},
    {"negative factor", "type Form3.sebf \"-0.1\"", {}, "Form3", "sebf"},
    {"stale bore, No", "type Form3.Zkalm \"7.83\"\nanswer no", {"msg161"}, "Form3", "qfqi"},
    {"stale bore, Yes", "type Form3.Zkalm \"7.83\"\nanswer yes", {"msg161"}, "", ""},
    {"stale bore, entered anew", "type Form3.Zkalm \"7.83\"\ntype Form3.qfqm \"47.6\"", {}, "", ""},
    {"large bore", "type Form3.qfqm \"52.9\"", {"msg163"}, "", ""},
    {"bore large but in order", "type Form3.qfqm \"52.8\"", {}, "", ""},
    {"small bore", "type Form3.qfqm \"38.4\"", {"msg165"}, "", ""},
    {"no bore", "type Form3.qfqm \"0\"", {}, "", ""},
    {"no barrel", "type Form3.Llenm \"0\"", {}, "Form3", "Llenm"},
    {"no overall length", "type Form3.Plenm \"0\"", {}, "Form3", "Plenm"},
    {"no bullet length", "type Form3.Glenz \"0\"", {}, "Form3", "Glenm"},
    {"no case length", "type Form3.Hlenm \"0\"", {}, "Form3", "Hlenm"},
    {"no calibre", "type Form3.Zkalm \"0\"\nanswer yes", {"msg161"}, "Form3", "Zkalm"},
    {"thick bullet", "type Form3.buldinch \"0.312\"", {"msg167"}, "", ""},
    {"thin bullet", "type Form3.buldinch \"0.301\"", {"msg167"}, "", ""},
    {"bullet in order", "type Form3.buldinch \"0.302\"", {}, "", ""},
    {"no capacity", "type Form3.Volfgn \"0\"", {}, "Form3", "Volfgn"},
    {"not seated", "type Form3.Bsdz \"-0.05\"", {"msg174", "msg177"}, "", ""},
    {"seated by its tail", "type Form3.Bsdz \"0.1\"", {"msg177"}, "", ""},
    {"barrel within the case", "type Form3.Llenz \"1\"", {"msg178"}, "Form3", "Llenz"},
    {"no room under the bullet", "type Form3.Volfgn \"6\"", {"msg180"}, "Form3", "Plenm"},
    {"heat", "type Form4.Exw \"10001\"", {"fpow"}, "Form4", "Exw"},
    {"vivacity", "type Form4.Ba0 \"0\"", {"fpow"}, "Form4", "Ba0"},
    {"ratio of heats", "type Form4.Kap \"1\"", {"fpow"}, "Form4", "Kap"},
    {"progressivity", "type Form4.PDko \"-1\"", {"fpow"}, "Form4", "PDko"},
    {"first part", "type Form4.Limz1 \"1.01\"", {"fpow"}, "Form4", "Limz1"},
    {"all burns in the first part", "type Form4.Limz1 \"1\"", {}, "", ""},
    {"density", "type Form4.Pdens \"0\"", {"fpow"}, "Form4", "Pdens"},
    {"no charge", "type Form4.MPgn \"0\"", {"fpow"}, "Form4", "MPgn"},
    {"charge larger than the case", "type Form4.MPgm \"6\"", {"msg182"}, "Form4", "MPgn"},
    {"start pressure", "type Form4.ini_press1 \"900\"", {"msg144"}, "Form4", "ini_press1"},
    {"model without a solution", "type Form4.Ba1 \"0\"", {"msg102"}, "", "failed"},
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

std::vector<std::string> first_keys(const Json& boxes) {
  std::vector<std::string> keys;
  for (const Json& box : boxes["boxes"]) keys.push_back(box["message"].empty() ? "" : box["message"][0]);
  return keys;
}

TEST(InputCheck, RefusesAndWarnsInPlace) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    std::string script = replaced(std::string(kBegin) + c.script + kEnd, "%LOAD%", load);
    script = replaced(replaced(script, "%NONAME%", "- no data -"), "%NOBULLET%", "No bullet of this calibre");
    const Played played = play(scratch, script);
    ASSERT_EQ(played.exit, 0) << played.err;
    const std::size_t n = played.lines.size();
    EXPECT_EQ(first_keys(played.lines[n - 3]), c.told);
    const std::string velocity = played.last()["fields"]["Vnull"]["text"];
    if (std::string_view(c.field) == "failed") {
      EXPECT_TRUE(played.last()["fields"]["Vnull"]["stale"].get<bool>());
      continue;
    }
    EXPECT_EQ(played.lines[n - 2]["screen"], c.screen);
    EXPECT_EQ(played.lines[n - 2]["field"], c.field);
    EXPECT_EQ(velocity.empty(), c.field[0] != '\0') << velocity;
  }
}

// A bore area of nothing is filled from the calibre, the tail that is impossible goes silently.
TEST(InputCheck, CorrectsWhatItCan) {
  const Scratch scratch;
  const Played played = play(scratch, "open load \"" + load_file("308_winchester_168") + "\"\n" +
                                          "type Form3.qfqi \"0\"\nmenu rech\nmenu rech\nshow Form3\nboxes\n");
  ASSERT_EQ(played.exit, 0) << played.err;
  const Json& fields = played.lines[played.lines.size() - 2]["fields"];
  EXPECT_EQ(fields["qfqm"]["text"], "47.347");  // 0.985 of a circle of 7.8232 mm
  EXPECT_EQ(fields["qfqi"]["text"], ".073388");
  EXPECT_TRUE(fields["TAIL"]["checked"].get<bool>());
  EXPECT_TRUE(played.last()["boxes"].size() == 1);  // the file dialog of the load
}

// What is entered with a comma, or with signs that no number has, and what lies out of range.
TEST(InputCheck, EntryOfNumbers) {
  const Scratch scratch;
  const Played played = play(scratch, "open load \"" + load_file("308_winchester_168") +
                                          "\"\ntype Form3.Llenz \"2x6,5.\"\ntype Form3.Bwgm \"9999999\"\n"
                                          "show Form3\n");
  ASSERT_EQ(played.exit, 0) << played.err;
  const Json& fields = played.last()["fields"];
  EXPECT_EQ(fields["Llenz"]["text"], "26.5");
  EXPECT_EQ(fields["Llenm"]["text"], "673.1");
  EXPECT_EQ(fields["Bwgm"]["ink"], "red");
  EXPECT_FALSE(fields["Bwgm"]["reason"].get<std::string>().empty()) << "a colour is never the only sign";
}

}  // namespace
}  // namespace tv::test
