// Settings from any bytes: options that make sense are taken, written they read back the same, and a second
// writing changes nothing.
#include <cmath>
#include <cstdlib>

#include "data/settings_keys.h"
#include "lines.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void check_ranges(const tv::Options& options) {
  for (const tv::OptionKey& key : tv::option_keys()) {
    if (key.real) require(options.*key.real >= key.least && options.*key.real <= key.most);
    if (key.whole) require(options.*key.whole >= key.least && options.*key.whole <= key.most);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  tv::SectionedFile file(std::string_view(reinterpret_cast<const char*>(data), size));
  tv::Options options;
  tv::read_options(file, options);
  check_ranges(options);
  tv::write_options(options, file);
  const std::string once = file.bytes();
  tv::Options again;
  tv::read_options(tv::SectionedFile(once), again);
  tv::write_options(again, file);
  require(file.bytes() == once);
  return 0;
}
