// Measured pressure curves from any bytes: written and read again they miss the same keys, and a second writing
// changes nothing.
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
  const tv::ReferenceFile read = tv::parse_reference(bytes, page);
  tv::reference_fault(read.curve);
  const std::string once = tv::reference_bytes(bytes, read.curve, page);
  const tv::ReferenceFile again = tv::parse_reference(once, page);
  require(again.failure == 0);
  require(tv::reference_bytes(once, again.curve, page) == once);
  return 0;
}
