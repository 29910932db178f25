// A table of unit pairs from any bytes: whatever a row holds, a conversion gives a text, and one there and back
// is as near as single precision is.
#include <cmath>
#include <cstdlib>

#include "calculators/units.h"
#include "data/record_file.h"
#include "lines.h"
#include "text/number.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void check(const tv::UnitPair& pair) {
  require(std::isfinite(pair.factor) && std::isfinite(pair.offset));
  tv::unit_pair_name(pair);
  for (const char* typed : {"", "0", "1", "-40", "1e30", "7.62x"}) {
    require(!tv::to_second(pair, typed).empty());
    tv::to_first(pair, typed);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const tv::RecordRead read = tv::parse_records(bytes, tv::RecordKind::units, tv::CodePage::cp1252);
  int rows = 0;
  for (const tv::Record& row : read.file.table.rows)
    if (++rows <= 20) check(tv::unit_pair(row[0], row[1], row[2], row[3]));
  return 0;
}
