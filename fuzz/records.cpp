// Record files from any bytes, read as each kind: never more rows than the kind holds, and what was read and
// written reads and writes as the same bytes from then on.
#include <cstdlib>
#include <string_view>

#include "data/record_file.h"
#include "lines.h"

TV_STRUCTURED_MUTATOR

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (int i = 0; i < tv::kRecordKinds; ++i) {
    const auto kind = static_cast<tv::RecordKind>(i);
    const auto page = size % 2 ? tv::CodePage::cp1251 : tv::CodePage::cp1252;
    tv::RecordRead read = tv::parse_records(bytes, kind, page);
    require(read.file.table.last() <= tv::record_kind(kind).limit);
    const auto rows = static_cast<int>(read.file.table.rows.size());
    const tv::RecordFindings& found = read.findings;
    require(found.count_found == rows + found.rows_beyond + found.taken_for_head);
    for (const tv::OddRecord& odd : found.odd) require(odd.row <= rows && odd.fields <= tv::kRecordFields);
    require(found.none() == tv::finding_texts(found).empty());
    const std::string once = tv::record_file_bytes(read.file, kind, page);
    const tv::RecordRead again = tv::parse_records(once, kind, page);
    require(again.findings.none());
    require(again.file.table.rows.size() == read.file.table.rows.size());
    require(tv::record_file_bytes(again.file, kind, page) == once);
    tv::sort_kind(read.file.table, kind, size % 3 == 0, page);
    require(read.file.table.rows.size() == again.file.table.rows.size());
  }
  return 0;
}
