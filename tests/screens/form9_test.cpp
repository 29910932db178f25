// The window of the burn function: what scripts cannot tell about it.
#include <cmath>
#include <fstream>
#include <sstream>

#include "engine/shot.h"
#include "output/diagram.h"
#include "powder/powder_files.h"
#include "screens/commands.h"
#include "screens/output_window.h"
#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class Form9 : public Started {
protected:
  Form9() {
    load("308_winchester_168");
    open_screen(s, "Form9");
  }
  void answer_file(const std::string& file) { user.files.push_back(FileAnswer{file, ""}); }
  std::string bytes(const std::string& file) {
    std::ostringstream all;
    all << std::ifstream(file, std::ios::binary).rdbuf();
    return all.str();
  }
};

TEST_F(Form9, LookingChangesNothing) {
  const std::string name = s.load.pulver;
  const CalcState before = s.state;
  run_command(s, "rech");
  for (const int mode : {1, 2, 0}) {
    choose(s, "Form9", "Option1", mode);
    point_at(s, "Form9", "Pic1", {Pointer::What::move, {200, 200}}, {640, 480});
    point_at(s, "Form9", "Pic1", {Pointer::What::press, {200, 200}}, {640, 480});
    point_at(s, "Form9", "Pic1", {Pointer::What::release, {200, 200}}, {640, 480});
  }
  press(s, "Form9", "cal_man");
  focus_field(s, "Form9", "box_ba");
  leave_focus(s);
  EXPECT_EQ(s.load.pulver, name);
  EXPECT_EQ(s.state.Ba1, before.Ba1);
  EXPECT_EQ(s.state.Ba0, before.Ba0);
  EXPECT_TRUE(s.valid.results);
}

// Whatever is typed or shaped, the load has a powder that its check takes, and the joint holds.
TEST_F(Form9, WhatIsHandedOverPassesTheCheck) {
  const auto good = [&](const std::string& what) {
    CalcState trial = s.state;
    convertUnits(trial);
    EXPECT_EQ(prepareShot(trial), SetUp::ok) << what;
    EXPECT_NEAR(s.state.Ba1 * std::sqrt(1 - s.state.Limz1), std::sqrt(1 + s.state.PDko * s.state.Limz1), 4e-3)
        << what;
  };
  for (const char* field : {"box_ba", "boxa0", "boxzx"})
    for (const char* typed : {"0.001", "0", "-0.5", "-1.5", "-7", "99999", "0.0001", "0.3", "1001", ""}) {
      type("Form9", field, typed);
      good(std::string(field) + " " + typed);
    }
  for (const char* key : {"Shift+Down", "Ctrl+Down", "Ctrl+Left", "Shift+Up", "Ctrl+Up"})
    for (int i = 0; i < 120; ++i) {
      tv::key(s, "Form9", key);
      good(key);
    }
  for (const char* field : {"man_Qex", "cp_cv", "man_pd"})
    for (const char* typed : {"0", "0.05", "99999"}) {
      type("Form9", field, typed);
      good(std::string(field) + " " + typed);
    }
}

TEST_F(Form9, OneEntryIsOneStepOfUndo) {
  const double Ba0 = s.state.Ba0, Ba1 = s.state.Ba1;
  const std::string name = s.load.pulver;
  type("Form9", "box_ba", "0.7123");
  EXPECT_EQ(s.load.pulver, name + " ?");
  press(s, "Form9", "undo");
  EXPECT_EQ(s.state.Ba0, Ba0);
  EXPECT_EQ(s.state.Ba1, Ba1) << "to the last digit";
  EXPECT_EQ(s.load.pulver, name) << "the record's values have the record's name";
  refresh_screens(s);
  EXPECT_FALSE(field(s, "Form9", "undo").enabled);
}

TEST_F(Form9, AnIncompleteReferenceIsOffAndSaysWhy) {
  const std::string whole = std::string(TV_SHARE_DIR) + "/data/example.ref", part = root.path() + "part.ref";
  std::string text_of = bytes(whole);
  answer_file(whole);
  press(s, "Form9", "DZ_load");
  EXPECT_TRUE(run_command(s, "refdruck"));
  EXPECT_EQ(bytes(whole), text_of) << "reading never writes";
  text_of.erase(text_of.find("druck 4="), std::string("druck 4=231\r\n").size());
  std::ofstream(part, std::ios::binary) << text_of;
  answer_file(part);
  press(s, "Form9", "DZ_load");
  EXPECT_FALSE(s.output.reference.loaded || s.output.reference.shown);
  EXPECT_FALSE(run_command(s, "refdruck"));
  EXPECT_NE(text("Form9", "hilf").find("druck 4"), std::string::npos);
  EXPECT_EQ(text("Form9", "druck5"), "292") << "what was read stands in the table";
}

// Laid over the rise of the shot, the curve of the shot itself would lie on it: the reference is one at
// slightly less vivacity, so its peak lies below and later.
TEST_F(Form9, TheReferenceLiesOverThePressureDiagrams) {
  load("worked_load");
  answer_file(std::string(TV_SHARE_DIR) + "/data/example.ref");
  press(s, "Form9", "DZ_load");
  run_command(s, "rech");
  const auto drawn = [&](int type) {
    s.options.grftyp = type;
    const DiagramOptions options = diagram_options(s);
    return describe_diagram({&s.shown.state, &s.curve, &s.result}, options, s.language).series;
  };
  EXPECT_EQ(drawn(4).size(), 1U);
  run_command(s, "refdruck");
  EXPECT_EQ(drawn(2).size(), 1U) << "no pressure there";
  for (const int type : {1, 4, 6}) {
    const auto series = drawn(type);
    ASSERT_GE(series.size(), 2U);
    const auto& reference = series.back().points;
    double shot_peak = 0, reference_peak = 0;
    for (const Point& p : series.front().points) shot_peak = std::max(shot_peak, p.y);
    for (const Point& p : reference) reference_peak = std::max(reference_peak, p.y);
    EXPECT_EQ(reference_peak, 341) << type;
    EXPECT_NEAR(reference_peak / shot_peak, 0.93, 0.01) << type;
    EXPECT_GE(reference.front().x, 0) << "nothing before the shot";
  }
  const double shifted = drawn(4).back().points.at(1).x;
  run_command(s, "refasis");
  EXPECT_NE(drawn(4).back().points.at(1).x, shifted);
}

}  // namespace
}  // namespace tv_test
