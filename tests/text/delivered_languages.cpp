// The language files that are delivered: complete, alike, and readable in their code page.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "text/codepage.h"
#include "text/file.h"
#include "text/language.h"
#include "text/sectioned_file.h"

namespace tv {
namespace {

struct Delivered {
  std::string name;
  std::string bytes;
  SectionedFile file;
};

Delivered read_delivered(const std::string& name, const std::string& extension) {
  const FileRead read = read_file(std::string(TV_SHARE_DIR) + "/lan/tn_" + name + extension);
  EXPECT_EQ(read.failure, kNoFailure) << name << extension;
  const CodePage page = name == "russian" ? CodePage::cp1251 : CodePage::cp1252;
  return {name, read.bytes, SectionedFile(read.bytes, page)};
}

std::string lower_key(const std::string& section, const std::string& key) {
  return "[" + lower(section) + "] " + lower(key);
}

std::set<std::string> all_keys(const SectionedFile& file) {
  std::set<std::string> keys;
  for (const std::string& section : file.sections()) {
    for (const std::string& key : file.keys(section)) keys.insert(lower_key(section, key));
  }
  return keys;
}

std::string missing_from(const std::set<std::string>& wanted, const std::set<std::string>& present) {
  std::string list;
  for (const std::string& key : wanted) {
    if (!present.contains(key)) list += "\n  " + key;
  }
  return list;
}

// What the lenient reader would pass over in silence: lines of no form, names that stand twice, long values,
// LF alone, control characters. One line of text for each fault.
std::string faults_of(const Delivered& delivered) {
  std::string faults, section;
  std::set<std::string> seen;
  const std::string text = to_utf8(delivered.bytes, delivered.file.page());
  if (!text.ends_with("\r\n")) faults += "\n  no line end at the end";
  int number = 0;
  for (std::size_t at = 0, end; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    const std::string place = "\n  line " + std::to_string(++number) + ": ";
    if (!line.ends_with('\r')) faults += place + "no CR LF";
    while (line.ends_with('\r')) line.pop_back();
    if (std::any_of(line.begin(), line.end(), [](unsigned char c) { return c < ' '; })) {
      faults += place + "control character";
    }
    if (line.empty() || line.front() == ';') continue;
    const std::size_t equals = line.find('=');
    std::string name;
    if (line.front() == '[') {
      section = line;
      name = line;
    } else if (equals == std::string::npos) {
      faults += place + "neither section nor key";
      continue;
    } else {
      name = section + line.substr(0, equals);
      if (length(line.substr(equals + 1)) > SectionedFile::kMaxValue) faults += place + "too long: " + name;
      if (trim(line.substr(equals + 1)).empty()) faults += place + "empty: " + name;
    }
    if (!seen.insert(lower(name)).second) faults += place + "twice: " + name;
  }
  return faults;
}

// The controls that have a tip; how many pieces a tip needs is a matter of its language.
std::set<std::string> tip_keys(const Delivered& delivered) {
  EXPECT_EQ(delivered.file.sections(), std::vector<std::string>{delivered.name});
  std::set<std::string> keys = all_keys(delivered.file);
  for (const std::string& key : delivered.file.keys(delivered.name)) {
    std::string piece = key;
    for (int n = 1; delivered.file.get(delivered.name, piece).ends_with('_'); ++n) {
      piece = key + std::to_string(n);
      EXPECT_TRUE(delivered.file.has_key(delivered.name, piece)) << delivered.name << " " << piece;
      keys.erase(lower_key(delivered.name, piece));
    }
  }
  std::set<std::string> bare;
  for (const std::string& key : keys) bare.insert(key.substr(key.find(']') + 2));
  return bare;
}

TEST(DeliveredLanguages, HoldTheSameKeys) {
  for (const std::string extension : {".lan", ".tip"}) {
    const auto keys_of = [&](const std::string& name) {
      const Delivered delivered = read_delivered(name, extension);
      return extension == ".tip" ? tip_keys(delivered) : all_keys(delivered.file);
    };
    const std::set<std::string> english = keys_of("english");
    EXPECT_GT(english.size(), 100u) << extension;
    for (const std::string name : {"german", "french", "russian"}) {
      const std::set<std::string> keys = keys_of(name);
      EXPECT_EQ(missing_from(english, keys), "") << "missing from " << name << extension;
      EXPECT_EQ(missing_from(keys, english), "") << "only in " << name << extension;
    }
  }
}

TEST(DeliveredLanguages, HaveNoFaultyLines) {
  for (const char* extension : {".lan", ".tip"}) {
    for (const auto& [language_name, code] : delivered_languages()) {
      const std::string name(language_name);
      EXPECT_EQ(faults_of(read_delivered(name, extension)), "") << name << extension;
    }
  }
}

TEST(DeliveredLanguages, NameThemselvesAndTheirCodePage) {
  for (const auto& [name, code] : delivered_languages()) {
    Language language;
    ASSERT_EQ(language.read(std::string(TV_SHARE_DIR) + "/lan/" + language_file_name(name)),
              LanguageRead::good);
    EXPECT_EQ(language.name(), name);
    EXPECT_EQ(language.page(), name == "russian" ? CodePage::cp1251 : CodePage::cp1252);
    EXPECT_EQ(language.notice().find("\n\n"), std::string::npos);
    for (int failure : {5, 6, 11, 53, 57, 61, 70, 76}) {
      EXPECT_NE(language.text("failures", std::to_string(failure)), "") << name << " " << failure;
    }
  }
}

// Buttons of one window answer to letters of their own, except those of which only one is on show at a time.
TEST(DeliveredLanguages, KeepTheLettersOfAWindowApart) {
  const std::set<std::string> menus{"frmMAIN", "form7", "files", "messages", "fastmsg", "fileout"};
  const std::set<std::string> other_modes{"cal_man", "DZ_ok", "DZ_load", "text_auf", "text_ab"};
  for (const auto& [delivered, code] : delivered_languages()) {
    const std::string name(delivered);
    const SectionedFile file = read_delivered(name, ".lan").file;
    for (const std::string& section : file.sections()) {
      if (menus.contains(section)) continue;
      std::map<std::string, std::string> seen;
      for (const std::string& key : file.keys(section)) {
        const std::string caption = lower(file.get(section, key));
        const std::size_t at = caption.find('&');
        if (at == std::string::npos || at + 1 >= caption.size() || other_modes.contains(key)) continue;
        const std::string letter =
            caption.substr(at + 1, static_cast<unsigned char>(caption[at + 1]) < 0x80 ? 1 : 2);
        const auto [first, is_new] = seen.emplace(letter, key);
        EXPECT_TRUE(is_new) << name << " [" << section << "] " << first->second << " and " << key;
      }
    }
  }
}

// The "|" of the page texts sets off their place and colour; the program takes the text apart there.
TEST(DeliveredLanguages, HaveTheSameMarks) {
  const Delivered english = read_delivered("english", ".lan");
  for (const std::string name : {"german", "french", "russian"}) {
    const Delivered other = read_delivered(name, ".lan");
    std::string differing;
    for (const std::string& section : english.file.sections()) {
      for (const std::string& key : english.file.keys(section)) {
        const auto marks = [&](const SectionedFile& file) {
          const std::string value = file.get(section, key);
          return std::count(value.begin(), value.end(), '|');
        };
        if (marks(english.file) != marks(other.file)) differing += "\n  " + lower_key(section, key);
      }
    }
    EXPECT_EQ(differing, "") << name;
  }
}

}  // namespace
}  // namespace tv
