// Every text that the sources ask for stands in all four language files.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <regex>
#include <set>

#include "text/file.h"
#include "text/language.h"

namespace tv {
namespace {

using Key = std::pair<std::string, std::string>;  // section and key

struct Asking {
  const char* pattern;
  std::function<Key(const std::smatch&)> key;
};

Key message(const std::smatch& m) { return {"messages", m[1].str() + "msg"}; }
Key fast(const std::smatch& m) { return {"fastmsg", m[1].str() + m[2].str()}; }

const Asking kAskings[] = {{R"(\bmsg\((\d+)\))", message},
                           {R"(\bfileout\((\d+)\))",
                            [](const std::smatch& m) {
                              return Key{"fileout", m[1].str() + "txt"};
                            }},
                           {R"re(\bfast(?:msg)?\("(\w+)"()\))re", fast},
                           {R"re(\bfastmsg\("(\w+)", (\d+)\))re", fast},
                           {R"re(\b(?:text|caption)\("(\w+)", "(\w+)"\))re", [](const std::smatch& m) {
                              return Key{m[1], m[2]};
                            }}};

// text(screen, control) reads a field, not the language file.
bool is_screen(const std::string& section) {
  return section.starts_with("Form") && section != "FormGetInput";
}

std::set<Key> asked_keys() {
  std::set<Key> keys;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(TV_SOURCE_DIR "/src")) {
    if (!entry.is_regular_file()) continue;
    const std::string source = read_file(entry.path().string()).bytes;
    for (const Asking& asking : kAskings) {
      const std::regex pattern(asking.pattern);
      for (std::sregex_iterator at(source.begin(), source.end(), pattern), end; at != end; ++at) {
        const Key key = asking.key(*at);
        if (!is_screen(key.first)) keys.insert(key);
      }
    }
  }
  return keys;
}

TEST(AskedKeys, StandInEveryLanguageFile) {
  const auto keys = asked_keys();
  ASSERT_GT(keys.size(), 100U);
  for (const char* name : {"english", "german", "french", "russian"}) {
    const auto file =
        read_sectioned(std::string(TV_SHARE_DIR) + "/lan/tn_" + name + ".lan", CodePage::cp1252);
    for (const auto& [section, key] : keys)
      EXPECT_FALSE(file.get(section, key).empty()) << name << ": [" << section << "] " << key;
  }
}

}  // namespace
}  // namespace tv
