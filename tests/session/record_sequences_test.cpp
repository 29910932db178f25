// Long ways of adding, replacing and deleting: the file on disk is what was agreed to, after each step.
#include <random>

#include "session/files_fixture.h"
#include "without_rights.h"

using namespace tv;

namespace tv_test {
namespace {

class RecordSequence : public Home {
protected:
  using Rows = std::vector<std::pair<std::string, std::string>>;  // name and field 1

  void begin(unsigned seed) {
    home_name = "home" + std::to_string(seed) + "/";
    kind = std::array{RecordKind::bullets, RecordKind::cartridges, RecordKind::guns}[seed % 3];
    file = std::string("mine.") + record_kind(kind).extension;
    // Every fourth file is damaged: a record that ends early, a comment between records, a wrong count.
    const bool damaged = seed % 4 == 0;
    write(file, damaged ? std::string("\" 9 ") + record_kind(kind).tag + "\"\n\"one\",\"1\"\n;a note\n" +
                              full("two", "2")
                        : file_of(kind, {record("one", {{1, "1"}}), record("two", {{1, "2"}})}));
    random.seed(seed);
    p = start();
    p->user.files = {saved_as(at(file))};
    open_records(p->s, kind);
    p->user.forget();
    expected = on_disk();
    ASSERT_EQ(expected.size(), 2u);
  }
  static std::string full(const std::string& name, const std::string& value) {
    std::string line = "\"" + name + "\",\"" + value + "\"";
    for (int i = 2; i < kRecordFields; ++i) line += ",\"\"";
    return line + "\n";
  }

  Rows on_disk() const {
    Rows rows;
    for (const Record& r : parse_records(read(file), kind, CodePage::cp1252).file.table.rows)
      rows.emplace_back(trim(r[0]), r[1]);
    return rows;
  }
  Rows in_memory() {
    Rows rows;
    for (const Record& r : p->table(kind).rows) rows.emplace_back(trim(r[0]), r[1]);
    return rows;
  }
  int number(int below) { return std::uniform_int_distribution<int>(0, below - 1)(random); }

  // One thing a person does; gives whether it was to change the file.
  bool step(bool refused_by_system) {
    const std::string value = std::to_string(number(1000));
    const int row = expected.empty() ? -1 : number(static_cast<int>(expected.size()));
    const bool agreed = number(3) > 0, adds = number(2) == 0 || row < 0,
               replaces = row >= 0 && number(2) == 0;
    p->user.answers = {agreed ? Answer::yes : Answer::no};
    if (adds && !replaces) p->user.answers.clear();
    if (!adds) p->user.answers = {agreed ? Answer::ok : Answer::cancel};
    const std::string name =
        replaces ? expected[static_cast<std::size_t>(row)].first : "new " + std::to_string(++made);
    const bool wanted = !refused_by_system && (agreed || (adds && !replaces));
    const bool done =
        adds ? add_record(p->s, kind, record(name, {{1, value}})) : delete_record(p->s, kind, row, false);
    EXPECT_EQ(done, wanted);
    if (!wanted) return false;
    if (!adds)
      expected.erase(expected.begin() + row);
    else if (replaces)
      expected[static_cast<std::size_t>(row)].second = value;
    else
      expected.emplace_back(name, value);
    return true;
  }

  std::unique_ptr<Program> p;
  RecordKind kind = RecordKind::bullets;
  std::string file;
  Rows expected;
  std::mt19937 random;
  int made = 0;
};

TEST_F(RecordSequence, EndsWithTheFileThatWasAgreedTo) {
  std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    begin(seed);
    for (int i = 0; i < 14; ++i) {
      const std::string before = read(file);
      bool changed = false;
      if (seed % 5 == 0 && i % 3 == 1) {
        const WithoutRights nobody;  // the folder can be read, not written
        changed = step(true);
      } else {
        changed = step(false);
      }
      ASSERT_EQ(on_disk(), expected);
      ASSERT_EQ(in_memory(), expected) << "what is on show is what is stored";
      if (changed) {
        ASSERT_EQ(read(std::string("mine.") + record_kind(kind).backup_extension), before);
      } else {
        ASSERT_EQ(read(file), before);
      }
      p->user.forget();
    }
  }
}

}  // namespace
}  // namespace tv_test
