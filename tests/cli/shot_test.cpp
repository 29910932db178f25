#include <gtest/gtest.h>

#include <cmath>

#include "cli_run.h"

namespace tv::test {
namespace {

struct Expected {
  const char* load;
  double peak_MPa, velocity, muzzle_MPa;
};

// From an integration of the model's four equations in time (Runge-Kutta, steps of 2e-8 s), done outside this
// program from the lengths and weights of the files.
constexpr Expected kIntegrated[] = {
    {"308_winchester_168", 343.907, 775.525, 46.221},  {"300_win_mag_190", 349.840, 898.467, 95.179},
    {"9mm_luger_124", 190.210, 345.242, 27.459},       {"44_magnum_240", 204.630, 419.982, 39.866},
    {"45-70_405", 149.694, 461.435, 19.049},           {"223_remington_55_slow", 187.939, 719.744, 71.877},
    {"8x57_is_196_friction", 289.828, 726.74, 52.702}, {"6_5x55_140", 319.780, 820.454, 86.835},
    {"worked_load", 365.212, 903.242, 105.264},
};

TEST(Shot, ExampleLoadsAgreeWithAnIntegration) {
  const Scratch scratch;
  for (const Expected& e : kIntegrated) {
    SCOPED_TRACE(e.load);
    const CliAnswer answer = cli_in(scratch, {"shot", load_file(e.load), "--format", "json", "--curve"});
    ASSERT_EQ(answer.exit, 0) << answer.err;
    const Json json = answer.json();
    EXPECT_NEAR(json["result"]["pMax"].get<double>() / 1e6, e.peak_MPa, 0.01 * e.peak_MPa);
    EXPECT_NEAR(json["result"]["vMuzzle"].get<double>(), e.velocity, 0.02 * e.velocity);
    EXPECT_NEAR(json["curve"]["p"].back().get<double>() / 1e6, e.muzzle_MPa, 0.012 * e.muzzle_MPa);
    EXPECT_TRUE(json["warnings"].empty()) << json["warnings"];
  }
  EXPECT_TRUE(std::filesystem::is_empty(scratch.root())) << "a shot writes nothing";
}

// Each form of the answer is the same shot, and every number reads back to the same double.
TEST(Shot, FormsAgreeAndNumbersReadBack) {
  const Scratch scratch;
  const std::string load = load_file("worked_load");
  const Json json = cli_in(scratch, {"shot", load, "--format", "json", "--curve"}).json();
  EXPECT_NEAR(json["result"]["pMax"].get<double>(), 366.49e6, 0.05e6);
  EXPECT_NEAR(json["result"]["vMuzzle"].get<double>(), 899.32, 0.02);
  EXPECT_EQ(json["panel"]["Vnull"], "899");
  EXPECT_EQ(json["load"]["powwht"], "73");
  EXPECT_EQ(json["notes"], Json({"fwarn2", "fwarn8", "fwarn11"}));
  EXPECT_EQ(Json::parse(json.dump()), json);

  std::istringstream csv(cli_in(scratch, {"shot", load, "--format", "csv"}).out);
  std::string line;
  std::getline(csv, line);
  EXPECT_EQ(line, "x,v,p,z,sigma,w,t,pB");
  std::size_t row = 0;
  for (; std::getline(csv, line); ++row) {
    std::istringstream cells(line);
    for (const char* name : {"x", "v", "p", "z", "sigma", "w", "t", "pB"}) {
      std::string cell;
      std::getline(cells, cell, ',');
      ASSERT_EQ(std::stod(cell), json["curve"][name][row].get<double>()) << name << " " << row;
    }
  }
  EXPECT_EQ(row, json["result"]["lastIdx"].get<std::size_t>() + 1);

  const std::string text = cli_in(scratch, {"shot", load, "--pressure", "bar"}).out;
  EXPECT_NE(text.find("3665 bar"), std::string::npos) << text;
  EXPECT_NE(text.find("IMPORTANT"), std::string::npos) << "the standing notice closes the text";

  const std::string file = scratch.path() + "answer.json";
  EXPECT_EQ(cli_in(scratch, {"shot", load, "--format", "json", "--curve", "--output", file}).out, "");
  EXPECT_EQ(Json::parse(read_bytes(file)), json);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// A key that is set is what a file with that value gives; a length moves what hangs on it.
TEST(Shot, SetsAreTheFileWithThatValue) {
  const Scratch scratch;
  const std::string bytes = read_bytes(load_file("308_winchester_168"));
  struct Case {
    const char *set, *from, *to;
  };
  for (const Case& c :
       {Case{"powwht=37.5", "powwht= 38.7", "powwht= 37.5"}, Case{"laflen=20", "laflen= 24", "laflen= 20"},
        Case{"anfdru=0", "anfdru= 25000000", "anfdru= 0"},
        Case{"tailon=0", "ausinn= 2", "ausinn= 2\ntailon=0"}, Case{"ausinn=0", "ausinn= 2", "ausinn= 0"},
        Case{"bulgew=150,5", "bulgew= 168", "bulgew= 150.5"},
        Case{"WIRKQU=47", "wirkqu= 47.541", "wirkqu= 47"}}) {
    SCOPED_TRACE(c.set);
    const std::string changed = scratch.write("changed.dat", replaced(bytes, c.from, c.to));
    const CliAnswer by_file = cli_in(scratch, {"shot", changed, "--format", "json"});
    const CliAnswer by_set =
        cli_in(scratch, {"shot", load_file("308_winchester_168"), "--set", c.set, "--format", "json"});
    ASSERT_EQ(by_set.exit, 0) << by_set.err;
    EXPECT_EQ(by_set.json()["result"], by_file.json()["result"]);
  }
  // Seated deeper by a tenth of an inch: shorter overall, less room, more pressure.
  const auto shot = [&](std::vector<std::string> sets) {
    std::vector<std::string> arguments{"shot", load_file("308_winchester_168"), "--format", "json"};
    for (const std::string& set : sets) arguments.insert(arguments.end(), {"--set", set});
    return cli_in(scratch, arguments).json();
  };
  const Json before = shot({}), deeper = shot({"sdepth=0.53"}), shorter = shot({"patlan=2.7"});
  EXPECT_NEAR(std::stod(deeper["load"]["patlan"].get<std::string>()), 2.7, 1e-12);
  EXPECT_NEAR(std::stod(shorter["load"]["sdepth"].get<std::string>()), 0.53, 1e-12);
  EXPECT_GT(deeper["result"]["pMax"].get<double>(), 1.02 * before["result"]["pMax"].get<double>());
  EXPECT_NEAR(deeper["result"]["pMax"].get<double>(), shorter["result"]["pMax"].get<double>(), 1);
}

TEST(Shot, TellsWrongUsageRefusalsAndFilesApart) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const std::string rubbish = scratch.write("rubbish.dat", "not a load\n");
  struct Case {
    std::vector<std::string> arguments;
    int exit;
    const char* told;
  };
  const std::vector<Case> cases = {
      {{}, 2, "subcommand"},
      {{"shot"}, 2, "LOAD"},
      {{"shot", load, "--step", "huge"}, 2, "--step"},
      {{"shot", load, "--set", "nokey=1"}, 2, "nokey"},
      {{"shot", load, "--set", "powwht"}, 2, "powwht"},
      {{"shot", load, "--set", "powwht=much"}, 1, "much"},
      {{"shot", load, "--set", "powwht=nan"}, 1, "nan"},
      {{"shot", load, "--set", "powwht=1e999"}, 1, "1e999"},
      {{"shot", load, "--set", "lod2nd=x"}, 1, "lod2nd"},
      {{"shot", load, "--set", "powwht=0"}, 1, "powwht"},
      {{"shot", scratch.path() + "none.dat"}, 3, "none.dat"},
      {{"shot", scratch.path()}, 3, scratch.path().c_str()},
      {{"shot", rubbish}, 3, "rubbish.dat"},
      {{"shot", scratch.root() + "/ternofw.set"}, 3, "ternofw.set"},
      {{"shot", load, "--output", scratch.path() + "no/folder.txt"}, 3, "no/folder.txt"},
      {{"load-table", load, "--format", "xlsx"}, 2, "--output"},
      {{"load-table", load, "--step-percent", "1", "--step-grains", "1"}, 2, "step"},
      {{"powder-table", load, "--strategy", "0"}, 2, "--powders"},
      {{"records", load}, 2, "extension"},
      {{"records", scratch.path() + "none.bul"}, 3, "none.bul"},
      {{"play", scratch.path() + "none.play"}, 3, "none.play"},
  };
  for (const Case& c : cases) {
    const CliAnswer answer = cli_in(scratch, c.arguments);
    SCOPED_TRACE(answer.err);
    EXPECT_EQ(answer.exit, c.exit);
    EXPECT_NE(answer.err.find(c.told), std::string::npos) << c.told;
    EXPECT_EQ(answer.out, "");
  }
  EXPECT_EQ(cli({"--help"}).exit, 0);
}

TEST(Shot, RefusalsNameMessageStageAndField) {
  const Scratch scratch;
  struct Case {
    const char *set, *in_file, *message, *stage, *field;  // a value as typed, or the line of the load for it
  };
  for (const Case& c : {Case{"powwht=90", nullptr, "msg182", "prepareShot", "MPgn"},
                        Case{"kappax=2", nullptr, "428msg", "set", "kappax"},
                        Case{"kappax=2", "kappax=", "fpow", "prepareShot", "Kap"},
                        Case{"laflen=0", "laflen=", "428msg", "transferInputs", "Llenm"},
                        Case{"bulgew=0", "bulgew=", "428msg", "transferInputs", "Bwgm"},
                        Case{"pulver=none such", nullptr, "480msg", "set", "pulver"},
                        Case{"bultyp=", "bultyp=", "484msg", "transferInputs", "Bnam"},
                        Case{"anfdru=2e9", "anfdru=", "msg144", "checkStartPressure", "ini_press1"},
                        Case{"abkof1=0", nullptr, "msg102", "Ca_Knst_n_Z1", ""},
                        Case{"kalzug=0.31", nullptr, "msg161", "transferInputs", "qfqi"}}) {
    SCOPED_TRACE(c.set);
    const std::string bytes = read_bytes(load_file("308_winchester_168"));
    std::vector<std::string> arguments{"shot", load_file("308_winchester_168"), "--set", c.set};
    if (c.in_file) {
      const auto at = bytes.find(c.in_file);
      arguments = {
          "shot", scratch.write("changed.dat",
                                std::string(bytes).replace(at, bytes.find_first_of("\r\n", at) - at, c.set))};
    }
    arguments.insert(arguments.end(), {"--format", "json"});
    const CliAnswer answer = cli_in(scratch, arguments);
    EXPECT_EQ(answer.exit, 1);
    const Json error = answer.json()["error"];
    EXPECT_EQ(error["message"], c.message);
    EXPECT_EQ(error["stage"], c.stage);
    EXPECT_EQ(error["field"], c.field);
    EXPECT_GT(error["text"].get<std::string>().size(), 12U);
    EXPECT_NE(answer.err.find(error["text"].get<std::string>()), std::string::npos);
  }
  // The question about the bore area is answered by the option; another language tells the same keys.
  const std::vector<std::string> stale{
      "shot", load_file("308_winchester_168"), "--set", "kalzug=0.31", "--format", "json"};
  std::vector<std::string> agreed = stale;
  agreed.insert(agreed.begin(), "--yes");
  EXPECT_EQ(cli_in(scratch, agreed).exit, 0);
  const CliAnswer german = cli({"--root", scratch.root(), "--language", "german", "shot",
                                load_file("308_winchester_168"), "--set", "powwht=90"});
  EXPECT_NE(german.err.find("Ladung"), std::string::npos) << german.err;
}

}  // namespace
}  // namespace tv::test
