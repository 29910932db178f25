// The menus, and that every control and command has its words in all languages.
#include <set>

#include "screens/commands.h"
#include "session/numbers.h"
#include "session/started.h"
#include "session/units.h"

namespace tv_test {
namespace {

using namespace tv;

class Commands : public Started {};

TEST_F(Commands, EveryEntryRunsOnAFreshSession) {
  user.gives_up = true;
  for (const Command& command : commands()) {
    if (!command.action || !command_enabled(s, command)) continue;
    SCOPED_TRACE(command.name);
    const bool ends = std::string_view(command.name) == "Ende";
    EXPECT_TRUE(run_command(s, command.name));
    EXPECT_FALSE(s.end_requested) << "the question was cancelled" << ends;
    EXPECT_EQ(user.waiting, 0);
  }
}

TEST_F(Commands, TableIsWhole) {
  std::set<std::string> names, shortcuts;
  std::set<int> buttons;
  for (const Command& c : commands()) {
    EXPECT_TRUE(names.insert(c.name).second) << c.name;
    if (c.shortcut) {
      EXPECT_TRUE(shortcuts.insert(c.shortcut).second) << c.shortcut;
    }
    if (c.toolbar >= 0) {
      EXPECT_TRUE(buttons.insert(c.toolbar).second) << c.name;
    }
    if (c.parent) {
      const Command* parent = find_command(c.parent);
      ASSERT_NE(parent, nullptr) << c.name;
      EXPECT_EQ(parent->action, nullptr) << "a menu: " << c.parent;
      EXPECT_STREQ(parent->section, c.section);
    }
  }
  EXPECT_FALSE(run_command(s, "useproz")) << "a heading";
  EXPECT_FALSE(run_command(s, "no such entry"));
}

TEST_F(Commands, MarksFollowTheSettings) {
  const auto checked = [&](const char* name) { return command_checked(s, *find_command(name)); };
  const auto only = [&](std::initializer_list<const char*> group, const char* which) {
    for (const char* name : group)
      EXPECT_EQ(checked(name), std::string_view(name) == which) << name << " with " << which;
  };
  s.firstRun = true;
  for (const char* step : {"schriwh", "schriwg", "schriwn"}) {
    run_command(s, step);
    only({"schriwh", "schriwg", "schriwn"}, step);
  }
  const auto steps = {"oneproz", "twoproz", "threeproz", "inpercent", "inweight"};
  for (const char* step : {"oneproz", "twoproz", "threeproz"}) {
    run_command(s, step);
    only(steps, step);
  }
  user.inputs = {"2.5", "0.05"};
  run_command(s, "inpercent");
  only(steps, "inpercent");
  run_command(s, "inweight");
  only(steps, "inweight");
  for (const int tolerance : {3, 5, 10, 15}) {
    run_command(s, "ldba" + std::to_string(tolerance));
    EXPECT_EQ(s.options.batols, tolerance);
    only({"ldba3", "ldba5", "ldba10", "ldba15"}, ("ldba" + std::to_string(tolerance)).c_str());
  }
  s.options.batols = 7;
  only({"ldba3", "ldba5", "ldba10", "ldba15"}, "ldba5");
  run_command(s, "pp_tab");
  only({"pp_tab", "ld_tab", "nodia", "weg_press", "Zeit_press_vel"}, "pp_tab");
  EXPECT_TRUE(command_enabled(s, *find_command("ppsort")));
  run_command(s, "Zeit_press_vel");
  EXPECT_FALSE(command_enabled(s, *find_command("ppsort")));
  run_command(s, "bars");
  only({"mpas", "bars"}, "bars");
  run_command(s, "imperial");
  only({"metric", "imperial"}, "imperial");
  EXPECT_TRUE(checked("toggleunits")) << "the output window starts from it";
  run_command(s, "qstart");
  EXPECT_TRUE(checked("qstart"));
  run_command(s, "qstart");
  EXPECT_FALSE(checked("qstart"));
  run_command(s, "sysding");
  EXPECT_TRUE(checked("sysding") && !s.sound);
}

TEST_F(Commands, StepEntryCalculatesAgainOnceSomethingWasCalculated) {
  load("308_winchester_168");
  EXPECT_TRUE(run_command(s, "schriwg"));
  EXPECT_FALSE(s.shown.any);
  EXPECT_TRUE(run_command(s, "rech"));
  ASSERT_TRUE(s.valid.results);
  for (const char* step : {"schriwg", "schriwn"}) {  // the one in force too
    s.shown.any = false;
    run_command(s, step);
    EXPECT_TRUE(s.valid.results && s.shown.any) << step;
  }
}

TEST_F(Commands, EntriesOfResultsFollowThem) {
  load("308_winchester_168");
  const auto enabled = [&](const char* name) { return command_enabled(s, *find_command(name)); };
  EXPECT_FALSE(enabled("filewrite") || enabled("toexcel") || enabled("undo_fit"));
  s.firstRun = false;
  run_command(s, "rech");
  EXPECT_TRUE(enabled("filewrite") && enabled("toexcel"));
  FitChargeToTarget(s, 330, 0);
  EXPECT_TRUE(enabled("undo_fit"));
  run_command(s, "undo_fit");
  EXPECT_FALSE(enabled("filewrite") || enabled("toexcel") || enabled("undo_fit"));
  EXPECT_EQ(s.state.chargeGr, 38.7);

  SetDisplayMode(s, -1);
  run_command(s, "rech");
  EXPECT_TRUE(enabled("toexcel"));
  SetDisplayMode(s, 3);
  type("Form4", "MPgn", "38");
  run_command(s, "rech");
  EXPECT_TRUE(enabled("toexcel"));
  SetDisplayMode(s, -1);
  EXPECT_FALSE(enabled("toexcel")) << "the table is of another charge than the valid results";
}

TEST_F(Commands, KeysReachScreensAndMenus) {
  load("308_winchester_168");
  s.firstRun = false;
  EXPECT_TRUE(key(s, "Form3", "F5"));
  EXPECT_TRUE(s.valid.results);
  open_screen(s, "frmFast");
  EXPECT_TRUE(key(s, "frmFast", "Escape"));
  EXPECT_FALSE(s.screens["frmFast"].visible);
  EXPECT_FALSE(key(s, "Form3", "F12"));
}

// What a form captions: frames, labels, boxes, options and buttons.
std::vector<std::string> caption_keys(const ScreenSpec& spec) {
  std::vector<std::string> keys;
  for (const Group& group : spec.form) {
    if (group.title) keys.emplace_back(group.title);
    for (const Row& row : group.rows)
      if (row.label && row.label[0] != '@') keys.emplace_back(row.label);
  }
  for (const Control& control : controls_of(spec))
    if (control.kind == ControlKind::check || control.kind == ControlKind::option ||
        control.kind == ControlKind::button)
      keys.push_back(control.name);
  return keys;
}

TEST_F(Commands, EveryControlAndEntryHasItsWordsInFourLanguages) {
  for (const char* language : {"english", "german", "french", "russian"}) {
    SCOPED_TRACE(language);
    language_switch(s, language);
    for (const ScreenSpec* spec : s.program.screens)
      for (const std::string& key : caption_keys(*spec)) {
        EXPECT_FALSE(s.language.text(spec->section, key).empty()) << spec->section << "." << key;
      }
    for (const Command& command : commands())
      if (!command.literal) {
        EXPECT_FALSE(s.language.text(command.section, command.name).empty())
            << command.section << "." << command.name;
      }
  }
}

}  // namespace
}  // namespace tv_test
