// The records picked last: which entries stand above a list, whatever has become of the list since.
#include "session/used_records.h"

#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class UsedRecords : public Started {
protected:
  // The names above a list, by way of the entries that they stand for.
  std::vector<std::string> above(const char* screen, const char* list) {
    const auto& items = field(s, screen, list).items;
    std::vector<std::string> names;
    for (const int entry : used_entries(s, list, items))
      names.push_back(items.at(static_cast<std::size_t>(entry)).text);
    return names;
  }
  std::string powder(int i) {
    return field(s, "Form4", "PulvDat").items.at(static_cast<std::size_t>(i)).text;
  }
};

TEST_F(UsedRecords, TheLastPickStandsFirstOnceAndSixAreKept) {
  EXPECT_TRUE(above("Form4", "PulvDat").empty());
  for (const int i : {7, 3, 9, 3, 0, 5, 1, 2}) {
    ASSERT_TRUE(tv::pick(s, "Form4", "PulvDat", i));
    EXPECT_EQ(field(s, "Form4", "PulvDat").selected, i) << "the entry keeps its number";
    EXPECT_EQ(s.load.pulver, powder(i));
  }
  EXPECT_EQ(above("Form4", "PulvDat"),
            (std::vector{powder(2), powder(1), powder(5), powder(0), powder(3), powder(9)}));
  // The quick start has the same lists; a refused or foreign pick leaves no trace.
  open_screen(s, "frmFast");
  EXPECT_EQ(above("frmFast", "PulvDat"), above("Form4", "PulvDat"));
  EXPECT_FALSE(tv::pick(s, "Form4", "PulvDat", -1));
  note_used(s, "Zkalm", "7.82");
  EXPECT_TRUE(tv::pick(s, "frmFast", "PulvDat", 8));
  EXPECT_EQ(above("Form4", "PulvDat").front(), powder(8));
  EXPECT_TRUE(above("Form3", "Bnam").empty()) << "each kind has its own";
}

TEST_F(UsedRecords, OutlastsSortingFilteringAndARestart) {
  const std::string small = ".223 Remington", large = ".308 Winchester";
  pick("Form3", "HVolDat", small);
  pick("Form3", "HVolDat", large);
  sort_cartridges(s, !s.options.sortvol);
  EXPECT_EQ(above("Form3", "HVolDat"), (std::vector{large, small})) << "by name, not by number";

  auto& rows = s.set(RecordKind::cartridges).file.table.rows;
  const auto all = rows;
  std::erase_if(rows, [](const Record& record) { return record[0].starts_with(".308 Win"); });
  fill_lists(s, RecordKind::cartridges);
  EXPECT_EQ(above("Form3", "HVolDat"), std::vector{small}) << "what the list does not hold cannot be picked";
  rows.resize(kUsedKept);
  fill_lists(s, RecordKind::cartridges);
  EXPECT_TRUE(above("Form3", "HVolDat").empty()) << "a short list is seen whole";
  rows = all;

  save_and_exit(s);
  RecordingUser later;
  Session again{later};
  ASSERT_TRUE(start(again, {.program_folder = root.path(),
                            .documents = {},
                            .shared_data = {},
                            .build_share = TV_SHARE_DIR,
                            .root = root.path()}));
  const auto& items = field(again, "Form3", "HVolDat").items;
  const auto used = used_entries(again, "HVolDat", items);
  ASSERT_EQ(used.size(), 2u);
  EXPECT_EQ(items[static_cast<std::size_t>(used[0])].text, large);
  EXPECT_EQ(items[static_cast<std::size_t>(used[1])].text, small);
}

}  // namespace
}  // namespace tv_test
