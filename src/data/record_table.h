// A table of records: 21 text fields a row, and the comment lines of its file. All component data has this
// shape; numbers stay text and are read leniently only when a record is used.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "text/codepage.h"

namespace tv {

inline constexpr int kRecordFields = 21;
using Record = std::array<std::string, kRecordFields>;

struct RecordTable {
  std::vector<Record> rows;  // row 0 and up

  int last() const { return static_cast<int>(rows.size()) - 1; }  // -1 when empty
  // Row -1, and any row that does not exist, reads as blank fields: no selection never fails.
  const std::string& cell(int row, int field) const;
  double number(int row, int field) const;  // of the cell, as read_stored
  const Record& record(int row) const;      // whole; all blank where there is none
  int find(std::string_view name) const;    // row of the trimmed name (field 0), -1 if none
};

struct RecordFile {
  RecordTable table;
  std::vector<std::string> comments;  // whole lines, with their ";"
};

enum class RecordKind { powders, bullets, cartridges, guns, black_powders, primers, units };
inline constexpr int kRecordKinds = 7;

struct RecordKindInfo {
  RecordKind kind;
  const char* extension;         // "pro"
  const char* backup_extension;  // "pr$"; empty: no backup
  const char* tag;               // "[pulver]", as written in the header and searched in a line
  const char* search_tag;        // what a header line must hold
  const char* folder;            // "data/powders/"
  const char* settings_key;      // "profil"; empty if none
  int limit;                     // last row index that may be filled
};
const RecordKindInfo& record_kind(RecordKind kind);
// By the extension of a file in any case of letters, backups included; nothing for another extension. Of the
// text files only nameprim.txt is one, the primer list.
const RecordKindInfo* record_kind_of_file(std::string_view path);

// Field numbers by kind.
namespace powder_field {
enum : int { name, Exw, Kap, Pdens, Ba0, PDko, Limz1, Ba1, bulkdn, second_density, mean_burn_rate = 20 };
}
namespace bullet_field {
enum : int {
  name,
  Bwg,
  Glen,
  tail_dia_small,
  tail_dia_large,
  tail_len,
  gfunc,
  tail_type,
  buldin,
  c1icao,
  mulbc1,
  trvel1 = 15,
  start_pressure = 20
};
}
namespace cartridge_field {
enum : int {
  name,
  Volf,
  Hlen,
  Zkal,
  sebf,
  qfq,
  zul_P,
  method,
  Plen,
  l1_in,
  l2_in,
  Ri_in,
  R1_in,
  P1_in,
  P2_in,
  H1_in,
  H2_in,
  Shape,
  caswht,
  bore,
  picture
};
}
namespace gun_field {
enum : int {
  name,
  Llenm,
  vhmm,
  gun_weight_kg,
  CalDat,
  cartridge_copy,
  gclidst = 13,
  gmoacli,
  twlenmm,
  Text1 = 20
};
}
namespace black_powder_field {
enum : int { name, K1, K2, K3, k_fakt, flag };
}

// The field that tells the calibre of a bullet or a cartridge, inch; -1 for the other kinds.
int calibre_field(RecordKind kind);

// One piece of a cartridge's field 19, by position from 0: ZD_in, ZB_in, FD_in, FB_in, ZZ_no, Polyg. Empty if
// missing.
std::string bore_piece(std::string_view field, int piece);

// A column sorted as text goes by the bytes it has in the file, case as stored; a numeric one by the lenient
// reading.
struct SortKey {
  int field;
  bool ascending = true;
  bool numeric = false;
};
// Rows agree in it if the first `prefix` characters of the field do: in upper case, or as the numbers those
// characters give.
struct RunKey {
  int field;
  int prefix;
  bool numeric = false;
};
// Step one sorts the whole table on key1; step two walks the rows and sorts each run that agrees in the
// first `prefix` characters of key1's field on key2. The order of equal rows is that of the shell sort, and
// always the same for the same table.
void sort_records(RecordTable& table, SortKey key1, int prefix, SortKey key2,
                  CodePage page = CodePage::cp1252);
// Step two alone; a run is what agrees in every key of `runs`.
void sort_runs(RecordTable& table, const std::vector<RunKey>& runs, SortKey key2,
               CodePage page = CodePage::cp1252);

// The order of a kind as after reading; cartridges by groove diameter or, with by_name, by the name's number.
// Guns, black powders, primers and units stay as they are.
void sort_kind(RecordTable& table, RecordKind kind, bool cartridges_by_name,
               CodePage page = CodePage::cp1252);

// What a user types into a record: `"` becomes `'` and ";" becomes ",", either would destroy the record; line
// ends become blanks.
std::string clean_field(std::string_view text);

// Replaces the row of that trimmed name (field 0) or adds one at the end; fields are cleaned, the name is
// padded to 40 places. Gives the row, or -1 if the table is full for its kind, which changes nothing.
int put_record(RecordTable& table, const Record& record, RecordKind kind);
// The rows behind it move up. False, and nothing changes, if there is no such row.
bool erase_record(RecordTable& table, int row);
// Rows whose field, read as a number, lies not more than the tolerance from the value, in their order.
std::vector<int> rows_near(const RecordTable& table, int field, double value, double tolerance);
// Adds to `result` each row of `from` within the tolerance, unless its trimmed name stands there already or
// the table is full for its kind.
void collect_records(RecordTable& result, const RecordTable& from, RecordKind kind, double value,
                     double tolerance);

// The mean burn rate of a powder, as the text of five characters that stands in field 20; " 0" if it cannot
// be computed.
std::string mean_burn_rate(double Ba0, double PDko, double Limz1, double Ba1);

// Comment text of a dialog, cut into comment lines of at most 77 characters, and back. What would not survive
// in a record file is cleaned as in a field.
std::vector<std::string> wrap_comment(std::string_view text);
std::string join_comments(const std::vector<std::string>& comments);

}  // namespace tv
