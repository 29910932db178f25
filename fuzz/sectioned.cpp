// Any bytes read as a sectioned file, in both code pages; values written as they were change nothing, and a
// new value is read back while every other one stays.
#include "text/sectioned_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

struct Held {
  std::string section, key, bytes;
};

std::vector<Held> values_of(const tv::SectionedFile& file) {
  std::vector<Held> values;
  for (const std::string& section : file.sections()) {
    for (const std::string& key : file.keys(section)) {
      values.push_back({section, key, file.get_bytes(section, key)});
    }
  }
  return values;
}

void check(std::string_view bytes, std::string_view value, tv::CodePage page) {
  tv::SectionedFile file(bytes, page);
  const std::vector<Held> values = values_of(file);
  for (const Held& held : values) {
    require(file.has_key(held.section, held.key));
    file.set_bytes(held.section, held.key, held.bytes);
    file.set(held.section, held.key, tv::to_utf8(held.bytes, page));
  }
  require(file.bytes() == bytes);

  file.set("fuzz", "new key", value);
  const std::string expected = tv::breaks_to_marks(value.substr(0, value.find('\0')));
  const std::string read = file.get("fuzz", "new key");
  require(tv::from_utf8(read, page) == tv::from_utf8(expected, page).substr(0, tv::SectionedFile::kMaxValue));
  file.set_number("fuzz", "number", 1.5);
  require(file.get("fuzz", "number") == "1.5");
  for (const Held& held : values) {
    if (tv::same_fold(held.section, "fuzz")) continue;
    require(file.get_bytes(held.section, held.key) == held.bytes);
  }
  const tv::SectionedFile again(file.bytes(), page);
  require(again.get("fuzz", "new key") == read);
}

}  // namespace

// The last line of the input is the value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.rfind('\n');
  const std::string_view value = end == input.npos ? input : input.substr(end + 1);
  check(input.substr(0, end), value, tv::CodePage::cp1252);
  check(input.substr(0, end), value, tv::CodePage::cp1251);
  return 0;
}
