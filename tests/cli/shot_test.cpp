#include <gtest/gtest.h>

#include <cmath>

#include "cli_run.h"

namespace tv::test {
namespace {

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
      {{"shot", rubbish}, 3, "rubbish.dat"},
      {{"shot", load, "--output", scratch.path() + "no/folder.txt"}, 3, "no/folder.txt"},
      {{"load-table", load, "--format", "xlsx"}, 2, "--output"},
      {{"load-table", load, "--step-percent", "1", "--step-grains", "1"}, 2, "step"},
      {{"powder-table", load, "--strategy", "0"}, 2, "--powders"},
      {{"records", load}, 2, "extension"},
      {{"play", scratch.path() + "none.play"}, 3, "none.play"}};
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
                        Case{"bultyp=", "bultyp=", "msg305", "transferInputs", "Bnam"},
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
