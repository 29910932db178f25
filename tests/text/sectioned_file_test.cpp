#include "text/sectioned_file.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "temp_folder.h"
#include "text/file.h"

namespace tv {
namespace {

using tv_test::TempFolder;

TEST(SectionedFile, ReadsByTheRules) {
  const SectionedFile file(
      "\xEF\xBB\xBFstray=0\r\n[ Startup ] rest\r\n;lanfile=comment\r\n"
      "  LanFile \t=  lan\\tn_english.lan \t\r\nlanfile=second\r\nquoted=\"  kept  \"\r\n"
      "twice=\"\"x\"\"\none=\"\nhalf=\"abc\nequals=a=b;c\nempty=\n=nokey\nunknown line\n[broken=1\n"
      "umlaut\xE4=Gr\xF6\xDF\n[metrics]\na=1\n[STARTUP]\nlate=never seen\n[last]\r\nnoend=here");
  const struct {
    const char *section, *key, *value;
  } cases[] = {{"startup", "lanfile", "lan\\tn_english.lan"},
               {"STARTUP", "QUOTED", "  kept  "},
               {"startup", "twice", "\"x\""},
               {"startup", "one", "\""},
               {"startup", "half", "\"abc"},
               {"startup", "equals", "a=b;c"},
               {"startup", "empty", ""},
               {"startup", "umlautÄ", "Größ"},
               {"startup", "late", ""},
               {"startup", "stray", ""},
               {"startup", ";lanfile", ""},
               {"startup", "[broken", ""},
               {"metrics", "a", "1"},
               {"last", "noend", "here"},
               {"none", "a", ""}};
  for (const auto& c : cases) EXPECT_EQ(file.get(c.section, c.key), c.value) << c.key;
  EXPECT_EQ(file.get2("none", "metrics", "a"), "1");
  EXPECT_EQ(file.get2("startup", "metrics", "empty"), "");
  EXPECT_TRUE(file.has_key("startup", "empty") && !file.has_key("startup", "late") &&
              file.has_section("LAST"));
  EXPECT_EQ(file.sections(), (std::vector<std::string>{"Startup", "metrics", "last"}));
  EXPECT_EQ(file.keys("metrics"), std::vector<std::string>{"a"});
  EXPECT_EQ(SectionedFile(std::string("[s]\nnul=ab\0cd\n", 14)).get("s", "nul"), "ab");
}

TEST(SectionedFile, CutsAValueAt512Characters) {
  SectionedFile file("[s]\r\nlong=\"" + std::string(600, '\xE4') + "\"\r\n");
  EXPECT_EQ(file.get_bytes("s", "long"), std::string(512, '\xE4'));
  EXPECT_EQ(length(file.get("s", "long")), 512u);
}

TEST(SectionedFile, ChangesOnlyWhatIsSet) {
  const struct {
    const char *before, *section, *key, *value, *after;
  } cases[] = {{"", "s", "k", "v", "[s]\r\nk=v\r\n"},
               {"\xEF\xBB\xBF", "s", "k", "v", "\xEF\xBB\xBF[s]\r\nk=v\r\n"},
               {"[s]\nK  =  old  \n", "S", "k", "new", "[s]\nK  =  new\n"},
               {"[s]\nk=\"v\"  \n", "s", "k", "v", "[s]\nk=\"v\"  \n"},
               {"[s]\r\nk=old\r\nk=second\r\n", "s", "k", "n", "[s]\r\nk=n\r\nk=second\r\n"},
               {"[s]\na=1\n;note\n\n\n[t]\nb=2\n", "s", "k", "v", "[s]\na=1\n;note\nk=v\n\n\n[t]\nb=2\n"},
               {"[s]\r\na=1", "s", "k", "v", "[s]\r\na=1\r\nk=v\r\n"},
               {"[s]\na=1", "t", "k", "v", "[s]\na=1\n[t]\nk=v\n"},
               {"rubbish", "s", "k", "v", "rubbish\r\n[s]\r\nk=v\r\n"},
               {"[s]", "s", "k", "v", "[s]\r\nk=v\r\n"},
               {"[s]\na=1\n[t]\n[s]\nk=old\n", "s", "k", "v", "[s]\na=1\nk=v\n[t]\n[s]\nk=old\n"},
               {"[s]\nk=v", "s", "k", "", "[s]\nk="},
               {"[s]\nk=1\n", "s", "k", " 7 ", "[s]\nk=\" 7 \"\n"},
               {"[s]\nk=1\n", "s", "k", "\"7\"", "[s]\nk=\"\"7\"\"\n"},
               {"[s]\nk=1\n", "s", "k", "a\r\nb\n[t]\rc",
                "[s]\nk=a\xAC"
                "b\xAC[t]\xAC"
                "c\n"},
               {"[s]\nk=1\n", "s", "k", "GrößeЖ",
                "[s]\nk=Gr\xF6\xDF"
                "e\n"},
               {"[s]\nk=1\n", "s", "Ж", "v", "[s]\nk=1\n"},
               {"[s]\nk=1\n", "s", "a=b", "v", "[s]\nk=1\n"},
               {"[s]\nk=1\n", "s", "", "v", "[s]\nk=1\n"},
               {"[s]\nk=1\n", "s]", "k", "v", "[s]\nk=1\n"},
               {"[s]\nk=1\n", "s", ";k", "v", "[s]\nk=1\n"}};
  for (const auto& c : cases) {
    SectionedFile file(c.before);
    file.set(c.section, c.key, c.value);
    EXPECT_EQ(file.bytes(), c.after) << c.before;
  }
}

TEST(SectionedFile, PathsStayTheBytesTheyAre) {
  SectionedFile file("", CodePage::cp1251);
  file.set_bytes("startup", "labfil", "/home/jörg/\xFFÄ\xAC/Пример");
  EXPECT_EQ(file.get_bytes("startup", "labfil"), "/home/jörg/\xFFÄ\xAC/Пример");
}

// Lines as they come from people, editors and accidents.
std::string random_bytes(std::mt19937& random, int lines) {
  const std::string pieces[] = {"[a]",  "[B]",  "[",    "]",    "k1",  "K1",          "k2",
                                "=",    "==",   " ",    "\t",   ";",   "\"",          "\r",
                                "\x81", "\xE4", "text", "\xAC", "1.5", "\xEF\xBB\xBF"};
  const std::string ends[] = {"\n", "\r\n", "\r\n", "\r", "\n\n", ""};
  std::string bytes;
  for (int line = 0; line < lines; ++line) {
    const auto n = random() % 6;
    for (unsigned i = 0; i < n; ++i) bytes += pieces[random() % std::size(pieces)];
    bytes += ends[random() % std::size(ends)];
  }
  return bytes;
}

void change(SectionedFile& file, unsigned which, unsigned value) {
  const std::string sections[] = {"a", "b", "new", "\u0416"}, keys[] = {"k1", "k2", "text", "\u0416"};
  const std::string values[] = {"", " new \x81 value ", "\"q\"", "v", "\ta\r\nb", "Ж"};
  const std::string &section = sections[which % 4], &key = keys[which / 4 % 4];
  if (value % 8 < 6) {
    file.set(section, key, values[value % 8]);
  } else {
    file.set_number(section, key, value % 2 ? 2 : -1.5);
  }
}

// Changes kept beside the bytes that were read give what they would if the file were read anew for each.
TEST(SectionedFile, ChangesOneByOneGiveTheSameBytes) {
  std::mt19937 random(4711);
  for (int round = 0; round < 3000; ++round) {
    SectionedFile file(random_bytes(random, 12));
    std::string bytes = file.bytes();
    std::map<std::string, std::string> values;
    for (const auto& s : file.sections())
      for (const auto& k : file.keys(s)) values[lower(s + "=" + k)] = file.get_bytes(s, k);
    for (unsigned i = 0; i < 6; ++i) {
      const unsigned which = random() % 16, value = random() % 64;
      SectionedFile anew(bytes);
      change(file, which, value);
      change(anew, which, value);
      ASSERT_EQ(file.bytes(), anew.bytes()) << bytes;
      bytes = anew.bytes();
      const SectionedFile read(bytes);
      ASSERT_EQ(file.sections(), read.sections());
      int changed = 0;
      for (const auto& s : read.sections()) {
        ASSERT_EQ(file.keys(s), read.keys(s));
        for (const auto& k : read.keys(s)) {
          ASSERT_EQ(file.get_bytes(s, k), read.get_bytes(s, k)) << s << " " << k;
          std::string& held = values[lower(s + "=" + k)];
          changed += std::exchange(held, read.get_bytes(s, k)) != held;
        }
      }
      ASSERT_LE(changed, 1) << "every other value stays";
    }
  }
}

}  // namespace
}  // namespace tv
