// No figure misleads: what stands on show, runs and is saved is one load.
#include <filesystem>
#include <utility>

#include "screens/output_window.h"
#include "session/load_steps.h"
#include "session/numbers.h"
#include "session/started.h"
#include "text/file.h"

namespace tv_test {
namespace {

using namespace tv;

class HonestFigures : public Started {
protected:
  HonestFigures() { load("308_winchester_168"); }
  std::string saved() {
    const std::string file = root.path() + "saved.dat";
    EXPECT_TRUE(load_write(s, file));
    return file;
  }
};

TEST_F(HonestFigures, ALoadThatIsOpenedEndsTheEntryOfTheFormerOne) {
  focus_field(s, "Form3", "Hlenz");
  edit_field(s, "Form3", "Hlenz", "2.1");
  ASSERT_TRUE(open_load(s, example("9mm_luger_124")));
  const CalcState opened = s.state;
  EXPECT_TRUE(s.focus.field.empty());
  EXPECT_FALSE(restore_field(s));
  focus_field(s, "Form3", "Hlenz");
  edit_field(s, "Form3", "Hlenz", text("Form3", "Hlenz"));
  restore_field(s);
  EXPECT_TRUE(s.state == opened) << "nothing of the rifle's load is left";
}

TEST_F(HonestFigures, ASavedLoadComesBackAsItRan) {
  load("44_magnum_240");
  type("Form4", "MPgn", "8");
  for (const char* depth : {"0.8", "0.5", "0.25"}) {
    type("Form3", "Bsdz", depth);
    ASSERT_EQ(recalculate(s), -1) << depth;
    const double peak = s.result.pMax;
    const CartridgeDimensions before = s.state.dim;
    ASSERT_TRUE(load_read(s, saved()));
    EXPECT_EQ(s.state.dim.Bsd, before.Bsd) << depth;
    EXPECT_EQ(s.state.dim.Plen, before.Plen) << depth;
    ASSERT_EQ(recalculate(s), -1);
    EXPECT_EQ(s.result.pMax, peak) << depth;
  }
}

TEST_F(HonestFigures, ABulletGivesTheSameFiguresWhateverWasPickedBefore) {
  const int boat_tail = row(RecordKind::bullets, ".308 , 168 , HPBT");
  double peak = 0;
  for (const char* before : {".308 , 150 , SP", ".308 , 168 , HPBT", ".308 , 147 , FMJ BT"}) {
    take_bullet(s, row(RecordKind::bullets, before));
    if (s.state.dim.TAIL) toggle(s, "Form3", "TAIL");
    take_bullet(s, boat_tail);
    EXPECT_TRUE(s.state.dim.TAIL) << before;
    ASSERT_EQ(recalculate(s), -1);
    if (peak == 0) peak = s.result.pMax;
    EXPECT_EQ(s.result.pMax, peak) << before;
  }
}

TEST_F(HonestFigures, ACoatedBulletLeavesNoFactorBehind) {
  for (int round = 0; round < 3; ++round) {
    pick("Form3", "HVolDat", ".308 Winchester");
    const double bare = s.state.start_pressure;
    user.inputs = {"0.66"};
    toggle(s, "Form3", "fproof");
    EXPECT_DOUBLE_EQ(s.state.start_pressure, 0.66 * bare);
    pick("Form3", "HVolDat", ".30-06 Springfield");
    EXPECT_FALSE(s.load.fproof);
    EXPECT_DOUBLE_EQ(s.state.start_pressure, bare) << round;
  }
}

TEST_F(HonestFigures, OddTextsOfALoadAreTold) {
  const std::string file = saved();
  std::string bytes = read_file(file).bytes;
  for (const auto& [was, is] : {std::pair<std::string, std::string>{"ausinn= 2", "ausinn=7"},
                                {"powwht= 38.7", "powwht=38,7"},
                                {"exwarm= 3770", "exwarm=38x"}}) {
    const auto at = bytes.find(was);
    ASSERT_NE(at, std::string::npos) << was;
    bytes.replace(at, was.size(), is);
  }
  ASSERT_EQ(write_file(file, bytes), 0);
  user.forget();
  ASSERT_TRUE(load_read(s, file));
  ASSERT_FALSE(user.boxes.empty());
  EXPECT_EQ(user.boxes[0].message.keys[0], "msg426");
  const std::string& told = user.boxes[0].message.text;
  EXPECT_NE(told.find("ausinn"), std::string::npos) << told;
  EXPECT_NE(told.find("exwarm"), std::string::npos) << told;
  EXPECT_EQ(told.find("powwht"), std::string::npos) << told;
  EXPECT_EQ(s.state.chargeGr, 38.7);
  EXPECT_EQ(s.state.dim.tail_type, kFlatBase);
}

TEST_F(HonestFigures, CalculatingLeavesTheFieldInUse) {
  focus_field(s, "Form4", "MPgn");
  edit_field(s, "Form4", "MPgn", "37");
  EXPECT_TRUE(key(s, "Form4", "F5"));
  EXPECT_TRUE(s.valid.results) << "also in a fresh program";
  EXPECT_EQ(s.focus.field, "MPgn");
  edit_field(s, "Form4", "MPgn", "38");
  EXPECT_EQ(s.state.chargeGr, 38);
  EXPECT_EQ(s.state.dim.Zkal, 0.308);
}

TEST_F(HonestFigures, AnEndThatCannotSaveAsks) {
  std::filesystem::remove(root.path() + "ternofw.set");
  std::filesystem::create_directories(root.path() + "ternofw.set/held");
  s.options.intro_off = true;
  user.answers = {Answer::no, Answer::yes};
  EXPECT_FALSE(ask_to_end(s));
  EXPECT_TRUE(ask_to_end(s));
  EXPECT_EQ(user.box_keys(), "msg420; msg429; msg420; msg429");
}

}  // namespace
}  // namespace tv_test
