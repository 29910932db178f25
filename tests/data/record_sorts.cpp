// The orders are held to their meaning, worked out here with std::stable_sort and no part of the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "data/record_table.h"
#include "text/number.h"

using namespace tv;

namespace {

RecordTable random_table(std::mt19937& random, int rows, const std::vector<int>& fields,
                         const std::vector<std::string>& values) {
  RecordTable table;
  for (int i = 0; i < rows; ++i) {
    Record record;
    for (const int field : fields) record[static_cast<std::size_t>(field)] = values[random() % values.size()];
    record[19] = std::to_string(i);  // tells the rows apart
    table.rows.push_back(record);
  }
  return table;
}

// Sorts and gives what the order is made of, row by row; fails if a row was lost or torn apart.
template <class Make>
auto sorted(RecordTable table, RecordKind kind, bool by_name, Make make) {
  std::vector<Record> before = table.rows;
  sort_kind(table, kind, by_name);
  std::vector<decltype(make(before[0]))> order;
  for (const Record& row : table.rows) order.push_back(make(row));
  std::sort(before.begin(), before.end());
  std::sort(table.rows.begin(), table.rows.end());
  EXPECT_EQ(before, table.rows);
  return order;
}

template <class Make>
auto expected(const RecordTable& table, Make make) {
  std::vector<decltype(make(table.rows[0]))> order;
  for (const Record& row : table.rows) order.push_back(make(row));
  std::stable_sort(order.begin(), order.end());
  return order;
}

const int kSizes[] = {0, 1, 2, 3, 4, 5, 17, 100, 2000};

}  // namespace

TEST(RecordSorts, BulletsByDiameterWeightAndName) {
  const auto key = [](const Record& r) { return std::tuple(read_number(r[8]), read_number(r[1]), r[0]); };
  std::mt19937 random(1);
  for (const int size : kSizes) {
    const RecordTable table = random_table(
        random, size, {0, 1, 8}, {".308", "0.308", "9", "10", " 147.0", "-1", "", "b", "B", "0.224"});
    EXPECT_EQ(sorted(table, RecordKind::bullets, false, key), expected(table, key)) << size;
  }
}

TEST(RecordSorts, CartridgesByGrooveTextOrByTheNumberOfTheName) {
  const auto by_groove = [](const Record& r) { return std::tuple(r[3], r[0]); };
  const auto by_name = [](const Record& r) { return std::tuple(read_number(r[0]), r[0]); };
  std::mt19937 random(2);
  for (const int size : kSizes) {
    const RecordTable table = random_table(
        random, size, {0, 3}, {".308 W", ".308", "9 mm", "10 mm", ".30-06", "7x57", "7 mm", "", "x"});
    EXPECT_EQ(sorted(table, RecordKind::cartridges, false, by_groove), expected(table, by_groove)) << size;
    EXPECT_EQ(sorted(table, RecordKind::cartridges, true, by_name), expected(table, by_name)) << size;
  }
}

TEST(RecordSorts, PowdersByMakerAndFallingBurnRate) {
  std::mt19937 random(3);
  for (const int size : kSizes) {
    const RecordTable table = random_table(random, size, {0, 20},
                                           {"ABC 1", "ABC 2", "ABD", "XY", "X", "", " 0.83", " 0.9", " 1.2"});
    const auto maker = [](const Record& r) { return r[0].substr(0, 3); };
    const auto order = sorted(table, RecordKind::powders, false,
                              [&](const Record& r) { return std::pair(maker(r), r[20]); });
    for (std::size_t i = 1; i < order.size(); ++i) {
      EXPECT_LE(order[i - 1].first, order[i].first);
      EXPECT_TRUE(order[i - 1].first != order[i].first || order[i - 1].second >= order[i].second);
    }
  }
  // Makers that differ in case agree, but only where the order by name brings them together.
  RecordTable table;
  for (const auto& [name, rate] : {std::pair{"aBc 1", "1"}, {"aBC 2", "2"}, {"abd", "3"}, {"ABC", "4"}}) {
    Record record;
    record[0] = name;
    record[20] = rate;
    table.rows.push_back(record);
  }
  sort_kind(table, RecordKind::powders, false);
  std::string order;
  for (const Record& row : table.rows) order += row[20];
  EXPECT_EQ(order, "4213");
}

TEST(RecordSorts, EqualRowsStandWhereTheShellSortPutsThem) {
  // Traced by hand: gap 2 swaps rows 0-2, 1-3 and 2-4, gap 1 nothing; the equal rows a and b change places.
  RecordTable table;
  for (const char* cell : {"3a", "3b", "1c", "1d", "2e"}) {
    Record record;
    record[0] = cell;
    table.rows.push_back(record);
  }
  sort_records(table, {0, true, true}, 6, {1, true, false});
  std::string order;
  for (const Record& row : table.rows) order += row[0][1];
  EXPECT_EQ(order, "cdeba");
}
