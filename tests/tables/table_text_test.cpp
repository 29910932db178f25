// Whole views against files that a reviewer can read. TV_REWRITE_GOLDEN=1 writes them anew.
#include "tables/table_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tables/fixture.h"
#include "tables/point_list.h"
#include "text/file.h"

namespace tv {
namespace {

void expect_golden(const std::string& name, const std::string& text) {
  const std::string path = std::string(TV_SOURCE_DIR) + "/tests/tables/golden/" + name + ".txt";
  if (std::getenv("TV_REWRITE_GOLDEN")) {
    ASSERT_EQ(write_file(path, text), kNoFailure);
  }
  const FileRead golden = read_file(path);
  ASSERT_EQ(golden.failure, kNoFailure) << path;
  EXPECT_EQ(golden.bytes, text) << name;
}

LoadTable load_table(double bulkdn, double zul_P, int schrit) {
  test::Shot shot = test::rifle();
  shot.s.bulkdn = bulkdn;
  shot.s.fill = bulkdn > 0 ? 97.6 : 0;
  shot.s.dim.zul_P = zul_P;
  shot.s.schrit = schrit;
  LoadTableSettings settings{5, 0, false, false, 10};
  LoadTable table;
  RunLoadTable(shot.s, shot.curve, shot.result, settings, test::head(), table);
  table.velocity[0] = 0;  // a row that could not be calculated
  return table;
}

std::string in_both_units(const LoadTable& table, double pressure_unit_factor = 1) {
  const Language l = test::language();
  return DrawLoadTableText(table, l, {false, pressure_unit_factor}).text +
         DrawLoadTableText(table, l, {true, pressure_unit_factor}).text +
         load_table_tsv(table, l, {false, pressure_unit_factor});
}

TEST(TableText, LoadTable) {
  const Language l = test::language();
  expect_golden("load_bulk", in_both_units(load_table(0.92, 360, 0)));
  expect_golden("load_no_bulk", in_both_units(load_table(0, 0, 0), 10));
  expect_golden("load_coarse", in_both_units(load_table(0.92, 415, 2)));
  const TableText empty = DrawLoadTableText({}, l, {});
  EXPECT_EQ(empty.text, "No table calculated yet. ");
  EXPECT_EQ(empty.caption, "Load table Ternovale");
}

TEST(TableText, PowderTableOfEveryStrategy) {
  const Language l = test::language();
  for (int strategy = 0; strategy < kStrategies; ++strategy) {
    test::Shot shot = test::rifle();
    PowderCriteria c;
    c.strategy = strategy;
    c.maxtab = 390.7;
    c.veltab = 820.4;
    c.lv_min = 85.5;
    c.lod2nd = 0.9;
    const PowderTable table = test::run(shot, test::powders(), c);
    expect_golden("powder_" + std::to_string(strategy), DrawPowderTableText(table, l, false).text +
                                                            DrawPowderTableText(table, l, true).text +
                                                            powder_table_tsv(table, l, false));
  }
}

TEST(TableText, PowderTableCutShortCoarseAndWithoutLimit) {
  const Language l = test::language();
  test::Shot shot = test::rifle();
  shot.s.schrit = 2;
  shot.s.dim.zul_P = 0;
  int asked = 0;
  PowderRunHooks hooks;
  hooks.cancelled = [&asked] { return ++asked > 2; };
  PowderCriteria c;
  c.maxtab = 300;
  c.lv_min = 29;
  expect_golden("powder_cancelled",
                DrawPowderTableText(test::run(shot, test::powders(), c, hooks), l, false).text);
  EXPECT_EQ(DrawPowderTableText({}, l, false).text, "No table calculated yet. ");
  EXPECT_EQ(DrawPowderTableText(test::run(shot, {}, c), l, false).text, "No powder fits. ");
}

TEST(TableText, RowsOfPowdersThatAllFailSayNothingElse) {
  const Language l = test::language();
  RecordTable list;
  list.rows = {test::powder("no energy", 0.6, 0.92, 0), test::powder("lead", 0.6, 0),
               test::powder("air", 0.6)};
  list.rows[1][powder_field::Kap] = "abc";
  list.rows[2][powder_field::Pdens] = "0";
  for (int strategy = 0; strategy < kStrategies; ++strategy) {
    test::Shot shot = test::rifle();
    shot.s.dim.zul_P = 0;
    PowderCriteria c;
    c.strategy = strategy;
    const PowderTable table = test::run(shot, list, c);
    ASSERT_EQ(table.row_index(), 2);
    for (const bool imperial : {false, true}) {
      const std::string text = DrawPowderTableText(table, l, imperial).text;
      for (const PowderRow& row : table.rows) {
        std::string line = row.name;
        line.resize(35, ' ');
        EXPECT_NE(text.find("\r\n" + line + "  ???  not calculated \r\n"), std::string::npos) << text;
      }
      EXPECT_NE(text.find(l.fastmsg("fwarn3")), std::string::npos);
    }
  }
}

TEST(TableText, PointList) {
  const Language l = test::language();
  test::Shot shot = test::rifle();
  ASSERT_TRUE(shot.run());
  const TableHead head = test::head();
  const PointListRun run{head.block, shot.curve, shot.result.lastIdx, 0};
  const TableText metric = DrawPointList(run, l, {false, 10}), imperial = DrawPointList(run, l, {true, 1});
  expect_golden("points", metric.text.substr(0, 1200) + imperial.text.substr(0, 1200));
  EXPECT_EQ(metric.text.substr(metric.text.size() - 9), " Muzzle\r\n");
  const auto lines = std::count(metric.text.begin(), metric.text.end(), '\n');
  EXPECT_EQ(lines, 7 + 2 + shot.result.lastIdx + 1);
  EXPECT_EQ(DrawPointList({head.block, shot.curve, 5, 2}, l, {}).text.find("ms)"), std::string::npos);
}

TEST(TableText, MarksAtTheirLimits) {
  EXPECT_EQ(pressure_mark(395.01, 400), Mark::over_limit);
  EXPECT_EQ(pressure_mark(395, 400), Mark::near_limit);
  EXPECT_EQ(pressure_mark(340.01, 400), Mark::near_limit);
  EXPECT_EQ(pressure_mark(340, 400), Mark::none);
  EXPECT_EQ(pressure_mark(900, 0), Mark::unknown);
}

TEST(TableText, ARatioThatCannotBeComputedIsAQuestionMark) {
  LoadTable table = load_table(0.92, 415, 0);
  table.inputs.Veffm = 0;
  const std::string text = DrawLoadTableText(table, test::language(), {}).text;
  EXPECT_NE(text.find("-45.0    ?"), std::string::npos) << text;
}

// The cells of the view stay in their columns up to the largest figures of a load.
TEST(TableText, ColumnsEndWhereTheHeadsExpectThem) {
  const std::string text = DrawLoadTableText(load_table(0.92, 0, 0), test::language(), {}).text;
  const std::size_t row = text.find("\r\n+00.0") + 2;
  const std::string line = text.substr(row, text.find("\r\n", row) - row);
  EXPECT_EQ(line.size(), 67u);
  for (const std::size_t edge : {10, 19, 26, 34, 42, 49, 58}) EXPECT_EQ(line[edge], ' ') << line;
}

// Words of the language stand at the right edges of their columns, however long they are.
TEST(TableText, UnitWordsFollowTheLanguage) {
  for (const std::string name : {"english", "german", "french", "russian"}) {
    Language l;
    ASSERT_EQ(l.read(std::string(TV_SHARE_DIR) + "/lan/tn_" + name + ".lan"), LanguageRead::good);
    const std::string text = DrawLoadTableText(load_table(0.92, 0, 0), l, {}).text;
    const std::size_t end = text.find("    MPa    MPa      %");
    ASSERT_NE(end, std::string::npos) << name;
    const std::string line = text.substr(text.rfind('\n', end) + 1, end - text.rfind('\n', end) - 1);
    EXPECT_EQ(line, " %       %" + pad_left(l.fastmsg("fgramm"), 9) + "    m/s" +
                        pad_left(l.fastmsg("fjoule"), 8) + " ")
        << name;
  }
}

}  // namespace
}  // namespace tv
