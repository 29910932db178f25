// Record files: reading with its findings, and writing in one atomic step with the former version as backup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/record_table.h"
#include "text/codepage.h"

namespace tv {

// A record line with fewer than 21 fields: the missing ones are empty, the row is kept.
struct ShortRecord {
  int row;           // from 0
  std::string name;  // field 0, trimmed
  int field;         // the first field that is missing, counted from 1
};

struct RecordRead {
  RecordFile file;
  std::vector<ShortRecord> short_records;
  int failure = 0;  // FailureNumber of an I/O failure; what was read so far stands in file
  double Ba0_least = 320, Ba0_most = 0;  // powders: the range of Ba0, the most capped at 320
  bool ok() const { return failure == 0; }
};

// Reads, computes the powder's field 20 and sorts as the kind asks for.
RecordRead read_records(const std::string& path, RecordKind kind, CodePage page,
                        bool cartridges_by_name = false);
// The lines alone: no comments, no computed field, no sort.
RecordRead read_records_plain(const std::string& path, RecordKind kind, CodePage page);
// From bytes at hand: lines, comments and short records, nothing computed and nothing sorted. Never fails.
RecordRead parse_records(std::string_view bytes, RecordKind kind, CodePage page);

// The bytes of a file of that kind; the header tells the number of rows. A character that would destroy a
// record is replaced (clean_field).
std::string record_file_bytes(const RecordFile& file, RecordKind kind, CodePage page);
// Failure number of the write. The former file becomes the backup beside it, under the kind's backup
// extension; a backup that was opened as a data file itself is replaced without one.
int write_records(const std::string& path, const RecordFile& file, RecordKind kind, CodePage page);

// The comment of a record file, joined for a preview; empty if none or unreadable.
std::string read_comment(const std::string& path, CodePage page);

}  // namespace tv
