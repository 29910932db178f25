#include <gtest/gtest.h>

#include "cli_run.h"

namespace tv::test {
namespace {

const std::string kPowders = delivered("powders/ternofw.pro");

double number(const Json& json) { return json.get<double>(); }

TEST(LoadTable, RowsAreShotsOfTheirOwn) {
  const Scratch scratch;
  const std::string load = load_file("300_win_mag_190");
  const Json table =
      cli_in(scratch, {"load-table", load, "--step-percent", "2", "--ba-tolerance", "10", "--format", "json"})
          .json();
  ASSERT_EQ(table["rows"].size(), 18U);
  EXPECT_EQ(table["rows"][0]["label"], "-20.0");
  EXPECT_EQ(table["rows"][10]["label"], "+00.0");
  EXPECT_EQ(table["rows"][17]["label"], "-Ba");
  const auto compare = [&](std::size_t row, const std::string& set) {
    SCOPED_TRACE(set);
    const Json shot = cli_in(scratch, {"shot", load, "--set", set, "--format", "json", "--curve"}).json();
    EXPECT_EQ(table["rows"][row]["pmax"], shot["result"]["pMax"]);
    EXPECT_EQ(table["rows"][row]["velocity"], shot["curve"]["v"].back());
    EXPECT_EQ(table["rows"][row]["pmuzzle"], shot["curve"]["p"].back());
    EXPECT_NEAR(number(table["rows"][row]["barrel_time"]), -number(shot["result"]["t10"]), 1e-12);
  };
  compare(10, "powwht=73.8");
  compare(0, "powwht=" + std::to_string(number(table["rows"][0]["charge"])));
  compare(16, "abkof0=" + Json(1.1 * std::stod(table["load"]["abkof0"].get<std::string>())).dump());

  const Json grains =
      cli_in(scratch, {"load-table", load, "--step-grains", "0.5", "--format", "json"}).json();
  EXPECT_NEAR(number(grains["rows"][11]["charge"]) - number(grains["rows"][10]["charge"]), 0.5, 1e-9);
  EXPECT_TRUE(std::filesystem::is_empty(scratch.root()));
}

TEST(LoadTable, ImpossibleRowsAreTold) {
  const Scratch scratch;
  const Json table = cli_in(scratch, {"load-table", load_file("9mm_luger_124"), "--set", "powwht=4",
                                      "--step-grains", "5", "--format", "json"})
                         .json();
  EXPECT_FALSE(table["rows"][0]["ok"].get<bool>());
  EXPECT_EQ(number(table["rows"][0]["velocity"]), 0);
  EXPECT_TRUE(table["rows"][10]["ok"].get<bool>());
}

TEST(PowderTable, ChargesMeetTheTargetInAShotOfTheirOwn) {
  const Scratch scratch;
  const std::string load = load_file("308_winchester_168");
  const CliAnswer answer =
      cli_in(scratch, {"powder-table", load, "--powders", kPowders, "--strategy", "0", "--set", "lv_min=40",
                       "--set", "maxtab=300", "--set", "bamint=0.6", "--set", "bamaxt=0.8", "--sort",
                       "chrgwht", "--format", "json"});
  ASSERT_EQ(answer.exit, 0) << answer.err;
  const Json table = answer.json();
  ASSERT_GE(table["rows"].size(), 2U);
  // Powders of the file as records, to set their values one by one in a shot.
  const Json records = cli_in(scratch, {"records", kPowders, "--format", "json"}).json();
  double charge_before = 0;
  for (const Json& row : table["rows"]) {
    SCOPED_TRACE(row.dump());
    ASSERT_EQ(row["status"], "ok");
    EXPECT_GE(number(row["cells"][2]), charge_before) << "sorted by the charge";
    charge_before = number(row["cells"][2]);
    for (const Json& record : records["rows"]) {
      if (record[0] != row["cells"][0]) continue;
      std::vector<std::string> arguments{
          "shot", load,    "--format",
          "json", "--set", "powwht=" + Json(number(row["cells"][2]) * 15432.358353).dump()};
      const char* const keys[] = {"exwarm", "kappax", "powden", "abkof0",
                                  "prodeg", "limiz1", "abkof1", "bulkdn"};
      for (std::size_t i = 0; i < std::size(keys); ++i)
        arguments.insert(arguments.end(),
                         {"--set", std::string(keys[i]) + "=" + record[i + 1].get<std::string>()});
      const CliAnswer shot = cli_in(scratch, arguments);
      ASSERT_EQ(shot.exit, 0) << shot.err;
      EXPECT_NEAR(number(shot.json()["result"]["pMax"]), 300e6, 0.2e6);
    }
  }
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

TEST(Tables, APowderTableInEveryFormat) {
  const Scratch scratch;
  const auto table = [&](std::vector<std::string> more) {
    std::vector<std::string> arguments{"powder-table", load_file("308_winchester_168"),
                                       "--powders",    kPowders,
                                       "--strategy",   "3",
                                       "--set",        "maxtab=300",
                                       "--set",        "lod2nd=0.9",
                                       "--set",        "lv_min=40",
                                       "--sort",       "ppname"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const CliAnswer answer = cli_in(scratch, arguments);
    EXPECT_EQ(answer.exit, 0) << answer.err;
    return answer;
  };
  const Json rows = table({"--format", "json"}).json()["rows"];
  const std::string csv = table({"--format", "csv"}).out, text = table({"--units", "imperial"}).out;
  EXPECT_NE(csv.find("Typ,1.mc(g)[300 MPa],1.vel(m/s),2.mc(g)[270 MPa],2.vel(m/s),mark\r\n"),
            std::string::npos);
  EXPECT_NE(text.find(" 39160 psi = 270 MPa."), std::string::npos) << text;
  std::size_t line = 0, row_in_text = 0;
  for (const Json& row : rows) {
    line = csv.find("\r\n", line) + 2;
    const std::string name = row["cells"][0].get<std::string>();
    const std::string head = (name.find(',') == std::string::npos ? name : '"' + name + '"') + ",";
    const std::string cells = csv.substr(line, csv.find("\r\n", line) - line);
    ASSERT_TRUE(cells.starts_with(head)) << cells;
    EXPECT_EQ(cells == head + ",,,,", row["status"] != "ok") << cells;
    EXPECT_TRUE(row["mark"] == "" || row["mark"] == "near");
    if (row["status"] == "ok") {
      EXPECT_NEAR(std::stod(cells.substr(head.size())), 1000 * number(row["cells"][2]), 1e-9);
    }
    row_in_text = text.find("\n" + name, row_in_text);
    ASSERT_NE(row_in_text, std::string::npos) << name;
  }
  table({"--format", "xlsx", "--output", scratch.path() + "powders.xlsx"});
  EXPECT_EQ(read_bytes(scratch.path() + "powders.xlsx").substr(0, 2), "PK");
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
