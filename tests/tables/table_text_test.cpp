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
  EXPECT_EQ(DrawLoadTableText({}, l, {}).text, "No table calculated yet.\r\nPress Calculate.\r\n");
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
  EXPECT_EQ(DrawPowderTableText({}, l, false).text, "No table calculated yet.\r\nPress Calculate.\r\n");
}

// Where nothing fits, the view says what was asked for and which test left out how many.
TEST(TableText, AnEmptyTableTellsWhy) {
  const Language l = test::language();
  const struct {
    int strategy;
    double lv_min, bamint, veltab;
    const char* told;
  } cases[] = {{0, 139, 0.5, 0,
                "\r\nPowders that meet:\r\nPeak pressure  43511 psi =  300 MPa\r\n\r\n"
                " 1 powders left out, loading ratio not above  139 %\r\n 1 outside the band\r\n"},
               {1, 29, 0.5, 0, " 1 outside the band\r\n 1 without bulk density\r\n"},
               {4, 29, 0.5, 3000, " 1 outside the band\r\n 1 did not converge\r\n"}};
  for (const auto& c : cases) {
    test::Shot shot = test::rifle();
    PowderCriteria criteria;
    criteria.strategy = c.strategy;
    criteria.maxtab = 300;
    criteria.lv_min = c.lv_min;
    criteria.bamint = c.bamint;
    criteria.veltab = c.veltab;
    RecordTable list;
    list.rows = {test::powder("one", 0.6, c.strategy == 1 ? 0 : 0.92), test::powder("slow", 0.4)};
    const std::string text = DrawPowderTableText(test::run(shot, list, criteria), l, false).text;
    EXPECT_NE(text.find(c.told), std::string::npos) << text;
    EXPECT_EQ(text.find("No powder fits.\r\n") == 0, c.strategy == 0);
    EXPECT_EQ(text.find("did not converge \r\n") != std::string::npos, c.strategy == 4) << "in its row";
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

// The figures of the load's own row against the shot, in every unit, by conversions told here anew.
TEST(TableData, FiguresInEveryUnitAndTheShareOfTheLimit) {
  const LoadTable t = load_table(0.92, 415, 0);
  const struct {
    ViewUnits units;
    double charge, velocity, energy, pressure;  // of 42 grains, m/s, J and Pa
  } cases[] = {{{false, 1}, 0.06479891, 1, 1, 1e-6},
               {{false, 10}, 0.06479891, 1, 1, 1e-5},
               {{true, 1}, 1, 1 / 0.3048, 0.7375621, 1 / 6894.757}};
  for (const auto& c : cases) {
    const TableData data = load_table_data(t, c.units);
    const TableRow& row = data.rows[LoadTable::kNominal];
    const auto value = [&](std::string_view key) {
      return row.values[static_cast<std::size_t>(std::ranges::find(data.columns, key, &TableColumn::key) -
                                                 data.columns.begin())];
    };
    const double joule = 0.5 * 150 * 0.06479891e-3 * t.velocity[10] * t.velocity[10];
    EXPECT_NEAR(value("charge"), 42 * c.charge, 1e-5);
    EXPECT_NEAR(value("velocity"), t.velocity[10] * c.velocity, 1e-3);
    EXPECT_NEAR(value("energy"), joule * c.energy, 2e-4 * joule);
    EXPECT_NEAR(value("pmax"), t.pmax[10] * c.pressure, 1e-6 * value("pmax"));
    EXPECT_NEAR(value("pmuzzle"), t.pmuzzle[10] * c.pressure, 1e-6 * value("pmuzzle"));
    EXPECT_NEAR(row.share, t.pmax[10] / 415e6, 1e-12);
  }
  EXPECT_FALSE(load_table_data(t, {}).rows[0].has_figures());
}

TEST(DataBlock, TellsTheValuesThatRan) {
  CalcState s = test::rifle().s;
  s.dim.Plen = 2.953;
  const DataBlock b = data_block_of(s, "C", "B", "P", true);
  EXPECT_EQ(b.Plenz + " " + b.Plenm + " " + b.Llenz + " " + b.Llenm, "2.953 75.01 24 609.6");
  EXPECT_EQ(b.Veffz + " " + b.Veffm + " " + b.MPgn + " " + b.MPgm, "48.500 3.149 42 2.722");
}

}  // namespace
}  // namespace tv
