#include <gtest/gtest.h>

#include "cli_run.h"

namespace tv::test {
namespace {

const std::string kPowders = delivered("powders/ternofw.pro");

double number(const Json& json) { return json.get<double>(); }

TEST(LoadTable, ImpossibleRowsAreTold) {
  const Scratch scratch;
  const Json table = cli_in(scratch, {"load-table", load_file("9mm_luger_124"), "--set", "powwht=4",
                                      "--step-grains", "5", "--format", "json"})
                         .json();
  EXPECT_FALSE(table["rows"][0]["ok"].get<bool>());
  EXPECT_EQ(number(table["rows"][0]["velocity"]), 0);
  EXPECT_TRUE(table["rows"][10]["ok"].get<bool>());
}

TEST(PowderTable, RefusesCriteriaAndFilesThatAreNone) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const auto table = [&](std::vector<std::string> more) {
    std::vector<std::string> arguments{"powder-table", load};
    if (std::ranges::find(more, "--strategy") == more.end()) more.insert(more.end(), {"--strategy", "1"});
    arguments.insert(arguments.end(), more.begin(), more.end());
    return cli_in(scratch, arguments);
  };
  EXPECT_EQ(table({"--powders", kPowders, "--set", "lod2nd=0.2"}).exit, 1);
  EXPECT_EQ(table({"--powders", scratch.path() + "none.pro"}).exit, 3);
  EXPECT_EQ(table({"--powders", kPowders, "--sort", "colour"}).exit, 2);
  std::string bytes = read_bytes(load);
  const std::string charge = "powwht= 38.7";
  const std::string empty =
      scratch.write("empty.dat", bytes.replace(bytes.find(charge), charge.size(), "powwht=0"));
  const auto of_empty = [&](const char* strategy) {
    return cli_in(scratch, {"powder-table", empty, "--powders", kPowders, "--strategy", strategy}).exit;
  };
  EXPECT_EQ(of_empty("loading-ratio"), 0) << "finds charges of its own";
  EXPECT_EQ(of_empty("chamber"), 1);
  EXPECT_EQ(table({"--powders", delivered("bullets/ternofw.bul")}).exit, 3);
  EXPECT_EQ(
      table({"--powders", scratch.write("other.pro", read_bytes(delivered("bullets/ternofw.bul")))}).exit, 3);
  EXPECT_EQ(table({"--powders", kPowders, "--strategy", "9"}).exit, 2);
  const CliAnswer answer = table({"--powders", scratch.write("empty.pro", ""), "--format", "json"});
  EXPECT_EQ(answer.exit, 0) << answer.err;
  EXPECT_TRUE(answer.json()["rows"].empty());
}

TEST(Tables, ExportsHoldTheSameFigures) {
  const Scratch scratch;
  const std::string load = load_file("44_magnum_240"), file = scratch.path() + "table.xlsx";
  EXPECT_EQ(cli_in(scratch, {"load-table", load, "--format", "xlsx", "--output", file}).exit, 0);
  EXPECT_EQ(read_bytes(file).substr(0, 2), "PK");
  const std::string csv = cli_in(scratch, {"load-table", load, "--format", "csv", "--units", "imperial"}).out;
  const Json table = cli_in(scratch, {"load-table", load, "--format", "json"}).json();
  EXPECT_NE(csv.find("mc (gr.)"), std::string::npos) << csv;
  EXPECT_NE(csv.find(table["rows"][0]["charge"].dump() + ","), std::string::npos) << csv;
  const std::string text = cli_in(scratch, {"load-table", load, "--units", "imperial"}).out;
  EXPECT_NE(text.find("ft.lbs"), std::string::npos) << text;
}

TEST(Records, ReadsEveryKindAndTellsShortRecords) {
  const Scratch scratch;
  for (const char* name : {"bullets/ternofw.bul", "calibers/ternofw.vol", "powders/ternofw.pro",
                           "powders/ternofw.bpw", "weapons/ternofw.gun"}) {
    SCOPED_TRACE(name);
    const CliAnswer answer = cli_in(scratch, {"records", delivered(name), "--format", "json"});
    ASSERT_EQ(answer.exit, 0) << answer.err;
    const Json json = answer.json();
    EXPECT_GT(json["rows"].size(), 1U);
    EXPECT_FALSE(json["comments"].empty());
    EXPECT_EQ(json["rows"][0].size(), 21U);
  }
  // The first record lacks fields: it is told, and every row stands in the answer.
  const std::string file = scratch.write(
      "short.bul", "[bullet] 2\r\n\"one\",\"150\"\r\n\"two\"" + std::string(20 * 4, ' ') + "\r\n");
  const CliAnswer answer = cli_in(scratch, {"records", file, "--format", "json"});
  EXPECT_EQ(answer.exit, 1);
  EXPECT_NE(answer.err.find("one"), std::string::npos) << answer.err;
  EXPECT_EQ(answer.json()["rows"].size(), 2U);
}

}  // namespace
}  // namespace tv::test
