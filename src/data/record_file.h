// Record files: reading with its findings, and writing in one atomic step with the former version as backup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/record_table.h"
#include "text/codepage.h"

namespace tv {

// A record line that is not its 21 fields and nothing else. Row and fields count from 1, as a user counts.
struct OddRecord {
  int row = 0;             // in the order of the file
  std::string name;        // field 0, trimmed
  int fields = 0;          // found, at most 21; the missing ones are empty
  bool text_lost = false;  // text outside its fields, or behind the last one, was dropped
};

// What was found wrong with a file while it was read.
struct RecordFindings {
  std::vector<OddRecord> odd;  // kept all the same
  int rows_beyond = 0;         // records behind the last row that the kind holds: dropped
  int taken_for_head = 0;      // records that hold the tag of the head: dropped
  int count_told = -1;         // by the heads, together; -1 if none tells a number
  int count_found = 0;         // records in the file, the dropped ones too

  bool none() const;
  bool count_differs() const { return count_told >= 0 && count_told != count_found; }
  // Written back under its own name the file would lose what was not read.
  bool not_read_whole() const;
};

// A piece of the box that tells them: the number of a message, and what stands behind its text.
struct FindingText {
  int message;
  std::string behind;
};
// In their order, "\n" between the lines; of many odd records the first ones. Empty if there is nothing.
std::vector<FindingText> finding_texts(const RecordFindings& findings);

struct RecordRead {
  RecordFile file;
  RecordFindings findings;
  int failure = 0;                       // FailureNumber of an I/O failure; the table is then empty
  double Ba0_least = 320, Ba0_most = 0;  // powders: the range of Ba0, the most capped at 320
  bool ok() const { return failure == 0; }
};

// Reads, computes the powder's field 20 and sorts as the kind asks for.
RecordRead read_records(const std::string& path, RecordKind kind, CodePage page,
                        bool cartridges_by_name = false);
// The lines alone: no comments, no computed field, no sort.
RecordRead read_records_plain(const std::string& path, RecordKind kind, CodePage page);
// From bytes at hand: lines, comments and findings, nothing computed and nothing sorted. Never fails. A line
// ends at CR LF, LF or CR; a quote ends its field where a comma or the line's end follows.
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
