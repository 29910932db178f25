#include <gtest/gtest.h>

#include <cmath>

#include "data/record_file.h"
#include "temp_folder.h"
#include "text/file.h"
#include "without_rights.h"

using namespace tv;
using tv_test::TempFolder;
using tv_test::WithoutRights;

namespace {

std::string quoted(const std::vector<std::string>& fields) {
  std::string line;
  for (int i = 0; i < kRecordFields; ++i) {
    const auto at = static_cast<std::size_t>(i);
    line += (i ? ",\"" : "\"") + (at < fields.size() ? fields[at] : "") + "\"";
  }
  return line;
}

std::string padded(std::string name) {
  name.resize(std::max<std::size_t>(name.size(), 40), ' ');
  return name;
}

RecordRead parse(const std::string& bytes, RecordKind kind = RecordKind::bullets) {
  return parse_records(bytes, kind, CodePage::cp1252);
}

}  // namespace

TEST(RecordFiles, StandByteForByteAsTold) {
  RecordFile file;
  file.comments = {";a first line", ";"};
  file.table.rows.resize(2);
  file.table.rows[0][0] = ".308 , 147 , FMJ BT";
  file.table.rows[0][1] = "  147";
  file.table.rows[0][2] = "\u00A6\u00AC\u20AC";
  file.table.rows[1][0] = std::string(41, 'n');
  EXPECT_EQ(record_file_bytes(file, RecordKind::bullets, CodePage::cp1252),
            ";a first line\r\n;\r\n\" 2 [bullet]\"\r\n" +
                quoted({padded(".308 , 147 , FMJ BT"), "147", "\xA6\xAC\x80"}) + "\r\n" +
                quoted({std::string(41, 'n')}) + "\r\n");
}

TEST(RecordFiles, SurviveReadingAndWritingUnchanged) {
  for (int kind = 0; kind < kRecordKinds; ++kind) {
    const auto of = static_cast<RecordKind>(kind);
    std::string every_byte;
    for (int c = 33; c < 256; ++c) {
      if (c != '"' && c != ';') every_byte += static_cast<char>(c);
    }
    const std::string bytes = "; \x81\x8D note\r\n\" 2 " + std::string(record_kind(of).tag) + "\"\r\n" +
                              quoted({padded("One"), "0.50", "", "a, b", every_byte}) + "\r\n" +
                              quoted({padded(std::string(30, '\xE4'))}) + "\r\n";
    const RecordRead read = parse(bytes, of);
    EXPECT_TRUE(read.findings.none());
    EXPECT_EQ(read.file.table.cell(0, 3), "a, b");
    EXPECT_EQ(record_file_bytes(read.file, of, CodePage::cp1252), bytes) << kind;
  }
}

// What is wrong with a file in one line: odd records as row:fields, with "!" if text was lost, then the rest.
std::string told(const RecordFindings& findings) {
  std::string text;
  for (const OddRecord& odd : findings.odd) {
    text += std::to_string(odd.row) + ':' + std::to_string(odd.fields) + (odd.text_lost ? "! " : " ");
  }
  if (findings.count_differs()) {
    text += std::to_string(findings.count_told) + "/" + std::to_string(findings.count_found) + " ";
  }
  if (findings.rows_beyond) text += "beyond " + std::to_string(findings.rows_beyond) + " ";
  if (findings.taken_for_head) text += "head " + std::to_string(findings.taken_for_head) + " ";
  return text + (findings.not_read_whole() ? "not whole" : "");
}

TEST(RecordFiles, LinesAreReadWhateverSurroundsThem) {
  const std::string one = quoted({"one", " 1"}), two = quoted({"two"}), head = "\" 2 [bullet]\"";
  const struct {
    const char* what;
    std::string bytes;
    int last;
    std::size_t comments;
    const char* told;
  } cases[] = {
      {"nothing", "", -1, 0, ""},
      {"comments only", ";a\r\n;b", -1, 2, ""},
      {"plain line ends, the last missing", head + "\n" + one + "\n" + two, 1, 0, ""},
      {"carriage returns alone", ";c\r" + head + "\r" + one + "\r" + two + "\r", 1, 1, ""},
      {"no head", one + "\r\n" + two + "\r\n", 1, 0, ""},
      {"heads of two files joined", "\" 1 [bullet]\"\n" + one + "\n\" 1 [bullet]\"\n" + two, 1, 0, ""},
      {"wrong count", one + "\r\n\" 99 [bullet]\"\r\n" + two + "\r\n", 1, 0, "99/2 "},
      {"senseless count", "\" 9E99 [bullet]\"\n\" x [bullet]\"\n" + one, 0, 0, "1000000/1 "},
      {"tag in other letters is a record", one + "\n" + quoted({"[BULLET]"}), 1, 0, ""},
      {"tag in a record", head + "\n" + one + "\n" + quoted({"a [bullet]"}), 0, 0, "head 1 not whole"},
      {"blank lines", "\r\n" + one + "\r\n\r\n \t \r\n" + two + "\r\n\r\n", 1, 0, ""},
      {"a semicolon in a field", head + "\n" + quoted({"lost", "1;2"}) + "\n" + one, 0, 1, "2/1 "},
      {"more than 21 fields", one + ",\"22\"\n" + two, 1, 0, "1:21! not whole"},
      {"empty ones behind", one + ",\"\",\n" + two, 1, 0, ""},
      {"blanks around commas", "\"one\" , " + quoted({"1"}).substr(0, 60), 0, 0, ""},
      {"text outside quotes", "\"one\",1," + one.substr(6), 0, 0, "1:21! not whole"},
      {"short, its last quote missing", "\"one\",\" 1 \",\"3", 0, 0, "1:2! not whole"},
      {"short, nothing lost", "\"one\",\" 1 \"," + std::string("\n") + two, 1, 0, "1:2 "},
      {"no quotes at all", one + "\nno record\n", 1, 0, "2:0! not whole"}};
  for (const auto& c : cases) {
    const RecordRead read = parse(c.bytes);
    EXPECT_EQ(read.file.table.last(), c.last) << c.what;
    EXPECT_EQ(read.file.comments.size(), c.comments) << c.what;
    EXPECT_EQ(told(read.findings), c.told) << c.what;
    EXPECT_EQ(read.file.table.cell(0, 0), c.last < 0 ? "" : "one") << c.what;
  }
  // What a semicolon took out of the table stands at the head of the file that is written next.
  const RecordRead lost = parse(quoted({"lost", "1;2"}) + "\r\n");
  EXPECT_EQ(record_file_bytes(lost.file, RecordKind::bullets, CodePage::cp1252),
            quoted({"lost", "1;2"}) + "\r\n\" 0 [bullet]\"\r\n");
}

TEST(RecordFiles, ReadingEndsAtTheLimitOfTheKind) {
  for (const auto& [kind, rows] :
       {std::pair{RecordKind::powders, 2000}, {RecordKind::primers, 301}, {RecordKind::units, 101}}) {
    std::string bytes;
    for (int i = 0; i < rows + 3; ++i) bytes += quoted({"r" + std::to_string(i)}) + "\r\n";
    const RecordRead cut = parse(bytes + ";last", kind);
    EXPECT_EQ(cut.file.table.last(), rows - 1);
    EXPECT_EQ(cut.file.table.cell(rows - 1, 0), "r" + std::to_string(rows - 1));
    EXPECT_EQ(cut.file.comments.size(), 1u) << "comments behind it are not lost";
    EXPECT_EQ(told(cut.findings), "beyond 3 not whole");
  }
}

TEST(RecordFiles, PowdersGetTheirMeanBurnRateAndRange) {
  EXPECT_EQ(mean_burn_rate(0.735, 1.2, 0.405, 1.5803), " 0.83");
  // Flat up to the limit, so that each of the seven terms is Ba.
  EXPECT_EQ(mean_burn_rate(12.3456, 0, 1, 0), " 12.3");
  // No burn factor: the four points behind z1 (0.25 to 0.4) give nothing; 3 * 0.8 / 7 is 0.3428.
  EXPECT_EQ(mean_burn_rate(0.8, 0, 0.22, 0), " 0.34");
  // Ba*b exactly 1 puts the guard's values into both laws: sqrt(1-0.1) = 0.94868 for all seven points.
  double sum = 0;
  for (const double x : {0.1, 0.15, 0.2, 0.25, 0.3, 0.35, 0.4})
    sum += x < 0.22 ? 2 * std::sqrt(1 - x) : std::sqrt(1 - x);
  const std::string guarded = mean_burn_rate(2, 5, 0.22, 0.5);
  EXPECT_NEAR(std::stod(guarded), sum / 7, 0.01);
  for (const double bad : {-100.0, -1e308}) EXPECT_EQ(mean_burn_rate(0.7, bad, 0.4, 1.5), " 0");
  EXPECT_EQ(mean_burn_rate(1e308, 0, 1, 10), " 0");

  const TempFolder folder;
  const std::string path =
      folder.write("p.pro", quoted({"ABC slow", "", "", "", "0.3", "0", "1"}) + "\r\n" +
                                quoted({"abc bad", "", "", "", "900", "-99", "1"}) + "\r\n" +
                                quoted({"ABC fast", "", "", "", "0.5", "0", "1"}) + "\r\n");
  const RecordRead read = read_records(path, RecordKind::powders, CodePage::cp1252);
  ASSERT_TRUE(read.ok());
  EXPECT_EQ(read.Ba0_least, 0.3);
  EXPECT_EQ(read.Ba0_most, 320);
  EXPECT_EQ(read.file.table.cell(0, 0), "ABC fast");  // within a maker the largest first
  EXPECT_EQ(read.file.table.cell(0, 20), " 0.5");
  EXPECT_EQ(read.file.table.cell(2, 20), " 0");
  EXPECT_NE(record_file_bytes(read.file, RecordKind::powders, CodePage::cp1252).find(",\"0.5\"\r\n"),
            std::string::npos);
}

TEST(RecordFiles, CommentsAreCutAndJoined) {
  const std::string at_blank = std::string(75, 'a') + " " + std::string(74, 'b') + "cd";
  const auto lines = wrap_comment(at_blank);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], ";" + std::string(75, 'a') + " ");
  EXPECT_EQ(lines[1], ";" + std::string(74, 'b') + "c");
  EXPECT_EQ(lines[2], ";d");
  EXPECT_EQ(join_comments(lines), at_blank);

  EXPECT_TRUE(wrap_comment("").empty());
  EXPECT_EQ(wrap_comment("a\r\nb\nc"), (std::vector<std::string>{";a\u00ACb\u00ACc"}));
  EXPECT_EQ(wrap_comment("a;\"b\""), (std::vector<std::string>{";a,'b'"}));
  const std::string umlauts = [] {
    std::string text;
    for (int i = 0; i < 80; ++i) text += "\u00E4";
    return text;
  }();
  EXPECT_EQ(wrap_comment(umlauts)[0].size(), 1u + 2 * 75);  // characters, not bytes
  for (const std::string& text :
       {at_blank, umlauts, std::string("one\ntwo\n\nfour "), std::string(300, ' ')}) {
    EXPECT_EQ(join_comments(wrap_comment(text)), text);
  }
  const TempFolder folder;
  EXPECT_EQ(read_comment(folder.write("c.bul",
                                      ";one\xAC"
                                      "two\r\n" +
                                          quoted({"r"}) + "\r\n; [bullet]\r\n"),
                         CodePage::cp1252),
            "one\ntwo [bullet]");
  EXPECT_EQ(read_comment(folder.path() + "none.bul", CodePage::cp1252), "");
}

TEST(RecordFiles, WritingKeepsTheFormerFileAsBackup) {
  const TempFolder folder;
  const std::string old = "old file\r\n";
  const std::string path = folder.write("My.BUL", old);
  RecordFile file;
  file.table.rows.resize(1);
  file.table.rows[0][0] = "new";
  ASSERT_EQ(write_records(path, file, RecordKind::bullets, CodePage::cp1252), kNoFailure);
  const std::string bytes = record_file_bytes(file, RecordKind::bullets, CodePage::cp1252);
  EXPECT_EQ(folder.read("My.BUL"), bytes);
  EXPECT_EQ(folder.read("My.bu$"), old);
  // A backup that was opened as the data file does not become its own backup.
  file.comments = {";again"};
  ASSERT_EQ(write_records(folder.path() + "My.bu$", file, RecordKind::bullets, CodePage::cp1252), kNoFailure);
  EXPECT_EQ(folder.read("My.bu$"), ";again\r\n" + bytes);
  // No backup of black powders.
  folder.write("b.bpw", old);
  ASSERT_EQ(write_records(folder.path() + "b.bpw", file, RecordKind::black_powders, CodePage::cp1252), 0);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 3);
}

TEST(RecordTables, RecordsArePutErasedAndFound) {
  RecordTable table;
  Record record;
  record[0] = "  a;\"b\" ";
  record[1] = "1\r\n2";
  EXPECT_EQ(put_record(table, record, RecordKind::units), 0);
  EXPECT_EQ(table.cell(0, 0), padded("a,'b'"));
  EXPECT_EQ(table.cell(0, 1), "1  2");
  record[2] = "two";
  EXPECT_EQ(put_record(table, record, RecordKind::units), 0);  // the same name: replaced
  EXPECT_EQ(table.last(), 0);
  for (int i = 1; i <= 100; ++i) {
    record[0] = "n" + std::to_string(i);
    EXPECT_EQ(put_record(table, record, RecordKind::units), i);
  }
  record[0] = "one too many";
  EXPECT_EQ(put_record(table, record, RecordKind::units), -1);
  EXPECT_EQ(table.last(), 100);
  EXPECT_EQ(table.find(" n7"), 7);
  EXPECT_TRUE(erase_record(table, 7));
  EXPECT_EQ(table.find("n7"), -1);
  EXPECT_EQ(table.find("n8"), 7);
  for (const int none : {-1, 100}) EXPECT_FALSE(erase_record(table, none));
  EXPECT_EQ(table.last(), 99);
  // A record whose text is the header's tag is still a record when it is read again.
  RecordFile file;
  file.table.rows.resize(1);
  file.table.rows[0][0] = "my [bullet]";
  EXPECT_EQ(parse(record_file_bytes(file, RecordKind::bullets, CodePage::cp1252)).file.table.cell(0, 0),
            "my (bullet]");
}

TEST(RecordTables, PiecesOfTheBoreField) {
  const std::string field = ".308\u00A6 .300\u00A6\u00A64 x\u00A6";
  const char* pieces[] = {".308", ".300", "", "4 x", "", ""};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(bore_piece(field, i), pieces[i]);
  EXPECT_EQ(bore_piece(std::string("a\0b\u00A6c", 6), 0), "a");
  EXPECT_EQ(bore_piece("", 0), "");
}
