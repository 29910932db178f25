// Closed-vessel tables from any bytes: what was read is written with no change, and a second reading gives the
// same table.
#include <cstdlib>

#include "lines.h"
#include "powder/powder_files.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto page = size % 2 ? tv::CodePage::cp1251 : tv::CodePage::cp1252;
  const tv::VivacityFile read = tv::parse_vivacity(bytes, page);
  const std::string once = tv::vivacity_bytes(bytes, read.table, read.comment, page);
  const tv::VivacityFile again = tv::parse_vivacity(once, page);
  require(again.table == read.table);
  require(tv::vivacity_bytes(once, again.table, again.comment, page) == once);
  tv::pasted_columns(bytes, static_cast<int>(size % 40));
  return 0;
}
