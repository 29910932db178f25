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

TEST_F(Commands, MarksFollowTheSettings) {
  const auto checked = [&](const char* name) { return command_checked(s, *find_command(name)); };
  // Each of a group, when run, is the only one that is marked.
  const auto run_each = [&](std::initializer_list<const char*> group,
                            std::initializer_list<const char*> run) {
    for (const char* which : run) {
      run_command(s, which);
      for (const char* name : group)
        EXPECT_EQ(checked(name), std::string_view(name) == which) << name << " with " << which;
    }
  };
  s.firstRun = true;
  user.inputs = {"2.5", "0.05"};
  run_each({"schriwh", "schriwg", "schriwn"}, {"schriwh", "schriwg", "schriwn"});
  const auto steps = {"oneproz", "twoproz", "threeproz", "inpercent", "inweight"};
  run_each(steps, steps);
  const auto tolerances = {"ldba3", "ldba5", "ldba10", "ldba15"};
  run_each(tolerances, tolerances);
  EXPECT_EQ(s.options.batols, 15);
  s.options.batols = 7;
  EXPECT_TRUE(checked("ldba5"));
  run_each({"pp_tab", "ld_tab", "nodia", "weg_press", "Zeit_press_vel"}, {"pp_tab", "Zeit_press_vel"});
  EXPECT_FALSE(command_enabled(s, *find_command("ppsort")));
  run_each({"mpas", "bars"}, {"bars", "mpas"});
  run_each({"metric", "imperial"}, {"metric", "imperial"});
  EXPECT_TRUE(checked("toggleunits")) << "the output window starts from it";
  for (const bool open : {true, false}) {
    run_command(s, "qstart");
    EXPECT_EQ(checked("qstart"), open);
  }
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
      keys.emplace_back(control.place ? control.place->control : control.name);  // of a grid its head
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
