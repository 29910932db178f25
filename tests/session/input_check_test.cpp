// Every refusal and every warning of the check before a calculation: what is told, and where the focus goes.
#include "session/started.h"
#include "text/number.h"

namespace tv_test {
namespace {

using namespace tv;

class InputCheck : public Started {
protected:
  InputCheck() { EXPECT_TRUE(load_read(s, example("308_winchester_168"))); }
  void again() {
    EXPECT_TRUE(load_read(s, example("308_winchester_168")));
    user.forget();
  }
};

struct Refusal {
  const char* what;
  void (*spoil)(Session&);
  const char* boxes;
  const char* focus;
};

void empty(Session& s, const char* name) { set_text(s, "Form3", name, ""); }

// In the order of the check.
const Refusal kRefusals[] = {
    {"no case", [](Session& s) { s.load.pattyp = "  "; }, "", "Form3.HVolDat"},
    {"case without data", [](Session& s) { s.load.pattyp = s.language.fastmsg("noname"); }, "",
     "Form3.HVolDat"},
    {"no bullet", [](Session& s) { s.load.bultyp.clear(); }, "", "Form3.Bnam"},
    {"no bullet of the calibre", [](Session& s) { s.load.bultyp = s.language.msg(193); }, "", "Form3.Bnam"},
    {"no weight", [](Session& s) { s.state.dim.Bwg = 0; }, "", "Form3.Bwgm"},
    {"Sebert above 12", [](Session& s) { s.state.dim.sebf = 12.01; }, "", "Form3.sebf"},
    {"Sebert below 0", [](Session& s) { s.state.dim.sebf = -0.01; }, "", "Form3.sebf"},
    {"barrel", [](Session& s) { empty(s, "Llenm"); }, "", "Form3.Llenm"},
    {"overall length", [](Session& s) { set_text(s, "Form3", "Plenm", "?"); }, "", "Form3.Plenm"},
    {"bullet length", [](Session& s) { empty(s, "Glenm"); }, "", "Form3.Glenm"},
    {"case length", [](Session& s) { empty(s, "Hlenm"); }, "", "Form3.Hlenm"},
    {"calibre", [](Session& s) { s.state.dim.Zkal = 0, set_text(s, "Form3", "Zkalm", "0"); }, "",
     "Form3.Zkalm"},
    {"capacity", [](Session& s) { empty(s, "Volfgn"); }, "", "Form3.Volfgn"},
    {"barrel too short", [](Session& s) { s.state.dim.Llen = 1.5; }, "msg178 msg179", "Form3.Llenz"},
    {"bullet fills the case", [](Session& s) { s.state.dim.Volf = 2; }, "msg180", "Form3.Plenm"}};

TEST_F(InputCheck, RefusesInItsOrderWithOneBeepAndTheFocusInTheField) {
  for (const Refusal& r : kRefusals) {
    SCOPED_TRACE(r.what);
    again();
    ASSERT_EQ(recalculate(s), -1);
    user.forget();
    r.spoil(s);
    EXPECT_EQ(recalculate(s), 0);
    EXPECT_FALSE(s.inputsOk);
    EXPECT_EQ(user.box_keys(), r.boxes);
    EXPECT_EQ(user.last_focus(), r.focus);
    EXPECT_EQ(user.last_front(), "Form3");
    EXPECT_EQ(user.count("beep"), 1);
    EXPECT_TRUE(s.valid.results) << "the last results stand as they were";
  }
}

struct Warning {
  const char* what;
  void (*change)(Session&);
  const char* boxes;
  int beeps;
};
double circle(const Session& s) { return kPi / 4 * s.state.dim.Zkal * 25.4 * s.state.dim.Zkal * 25.4; }
const Warning kWarnings[] = {
    {"bore at 1.1 circles", [](Session& s) { s.state.dim.qfq = 1.0999 * circle(s); }, "", 0},
    {"bore above", [](Session& s) { s.state.dim.qfq = 1.1001 * circle(s); }, "msg163 msg164", 1},
    {"bore at 0.8 circles", [](Session& s) { s.state.dim.qfq = 0.8001 * circle(s); }, "", 0},
    {"bore below", [](Session& s) { s.state.dim.qfq = 0.7999 * circle(s); }, "msg165 msg166", 1},
    {"bullet 2 % small, which is 2.0000000000000018 in double",
     [](Session& s) { s.state.dim.Zkal = 0.5, s.state.dim.buldin = 0.49, s.state.dim.qfq = circle(s); }, "",
     0},
    {"bullet too small", [](Session& s) { s.state.dim.buldin = s.state.dim.Zkal * 0.9799; },
     "msg167 msg168 msg169 msg170", 0},
    {"bullet too large", [](Session& s) { s.state.dim.buldin = s.state.dim.Zkal * 1.0101; },
     "msg167 msg171 msg172 msg173", 0},
    {"bullet stands off", [](Session& s) { s.state.dim.TAIL = false, s.state.dim.Bsd = -0.01; },
     "msg174 msg175 msg176", 1},
    {"body stands off", [](Session& s) { s.state.dim.Bsd = 0.1; }, "msg177", 1},
    {"Sebert of 12", [](Session& s) { s.state.dim.sebf = 12; }, "", 0}};

TEST_F(InputCheck, WarnsAndGoesOn) {
  for (const Warning& w : kWarnings) {
    SCOPED_TRACE(w.what);
    again();
    w.change(s);
    transferInputs(s);
    EXPECT_TRUE(s.inputsOk);
    EXPECT_EQ(user.box_keys(), w.boxes);
    EXPECT_EQ(user.count("beep"), w.beeps);
    EXPECT_EQ(user.last_focus(), "");
  }
}

TEST_F(InputCheck, SaysHowFarTheBulletDiffersAndHowLongTheBarrelMustBe) {
  s.state.dim.Zkal = 0.5, s.state.dim.buldin = 0.48, s.state.dim.qfq = circle(s);
  transferInputs(s);
  EXPECT_NE(user.boxes.at(0).message.text.find(": 4\n"), std::string::npos) << user.boxes[0].message.text;
  again();
  s.state.dim.Llen = 1;
  transferInputs(s);
  EXPECT_NE(user.boxes.at(0).message.text.find("1.6 in."), std::string::npos) << "2.8 less 1.215";
}

TEST_F(InputCheck, AsksOnceAboutABoreAreaOlderThanTheCalibre) {
  type("Form3", "Zkalm", "7.82");
  ASSERT_TRUE(s.load.bore_area_stale);
  user.answers = {Answer::no};
  EXPECT_EQ(recalculate(s), 0);
  EXPECT_EQ(user.box_keys(), "msg161 msg162");
  EXPECT_EQ(user.last_focus(), "Form3.qfqi");
  EXPECT_FALSE(s.load.bore_area_stale);
  EXPECT_EQ(recalculate(s), -1) << "it has been told";
  type("Form3", "Zkalz", ".308");
  type("Form3", "qfqm", "47.541");
  EXPECT_FALSE(s.load.bore_area_stale) << "a key in the area answers the question";
  type("Form3", "Zkalz", ".308");
  user.answers = {Answer::yes};
  EXPECT_EQ(recalculate(s), -1);
  EXPECT_TRUE(user.answers.empty());
}

TEST_F(InputCheck, FillsAMissingBoreAreaAndDropsAnImpossibleTail) {
  s.state.dim.qfq = 0;
  s.state.dim.tail_dia_small = 9;
  transferInputs(s);
  EXPECT_TRUE(s.inputsOk);
  EXPECT_DOUBLE_EQ(s.state.dim.qfq, 0.985 * circle(s));
  EXPECT_EQ(text("Form3", "qfqm"), format_number(s.state.dim.qfq, "#.00#"));
  EXPECT_FALSE(shown(s, "Form3", "TAIL").checked);
  EXPECT_EQ(s.state.dim.tail_type, kFlatBase);
  EXPECT_EQ(s.state.dim.ssd, s.state.dim.Bsd);
  EXPECT_EQ(user.box_keys(), "");
}

TEST_F(InputCheck, RefusesAStartPressureThatTheBurntPowderDoesNotReach) {
  ASSERT_EQ(recalculate(s), -1);
  const double bound = start_pressure_bound(s.state);
  s.state.start_pressure = bound * 0.9999;
  EXPECT_NE(recalculate(s), 0);
  user.forget();
  s.state.start_pressure = bound * 1.0001;
  EXPECT_EQ(recalculate(s), 0);
  EXPECT_EQ(user.box_keys(), "msg144");
  EXPECT_EQ(user.last_focus(), "Form4.ini_press1");
  EXPECT_EQ(user.last_front(), "Form4");
}

}  // namespace
}  // namespace tv_test
