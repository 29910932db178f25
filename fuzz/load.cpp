// Loads from any bytes: whatever reads as a load can be written into its own file, and reads back as the
// same load.
#include <cstdlib>
#include <string_view>

#include "data/load_keys.h"
#include "lines.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

struct Load {
  tv::CalcState state;
  tv::LoadData data;
};

// A lone carriage return inside a line is a line break once it was written.
std::string text_of(const Load& load) {
  std::string text;
  for (const tv::LoadKey& key : tv::load_keys()) {
    text += tv::breaks_to_marks(tv::load_value_text(key, load.state, load.data)) + '\n';
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  tv::SectionedFile file(std::string_view(reinterpret_cast<const char*>(data), size));
  tv::Options options;
  tv::read_options(file, options);
  tv::load_preview(file);
  Load load;
  tv::read_design_data(file, load.state, load.data);
  if (!tv::read_load_keys(file, load.state, load.data)) return 0;
  require(!load.data.coefficients.empty() && load.data.coefficients.size() <= 5);
  // Written once, the comment has its length.
  tv::write_load_keys(load.state, load.data, file);
  Load once;
  require(tv::read_load_keys(file, once.state, once.data).has_value());
  const std::string bytes = file.bytes();
  tv::write_load_keys(once.state, once.data, file);
  require(file.bytes() == bytes);
  Load again;
  require(tv::read_load_keys(file, again.state, again.data).has_value());
  require(text_of(again) == text_of(once));
  once.data.commen = load.data.commen;
  require(text_of(once) == text_of(load));
  return 0;
}
