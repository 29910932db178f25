// A table of records: 21 text fields a row, and the comment lines of its file. All component data has this
// shape; numbers stay text and are read leniently only when a record is used.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace tv {

inline constexpr int kRecordFields = 21;
using Record = std::array<std::string, kRecordFields>;

struct RecordTable {
  std::vector<Record> rows;  // row 0 and up

  int last() const { return static_cast<int>(rows.size()) - 1; }  // -1 when empty
  // Row -1, and any row that does not exist, reads as blank fields: no selection never fails.
  const std::string& cell(int row, int field) const;
  double number(int row, int field) const;  // lenient reading of the cell
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
// By the extension of a file, backups included; nothing for another extension. nameprim.txt is the primer
// list.
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

// One piece of a cartridge's field 19, by position from 0: ZD_in, ZB_in, FD_in, FB_in, ZZ_no, Polyg.
std::string bore_piece(std::string_view field, int piece);

// The shell sort of record tables (see sort_records).
// A column sorted as text goes by the encoded bytes, case as stored; a numeric one by the lenient reading.
struct SortKey {
  int field;
  bool ascending = true;
  bool numeric = false;
};
// Step one sorts the whole table on key1; step two walks the rows and sorts each run whose first `prefix`
// characters of key1's field agree (upper case; as numbers if key1 is numeric) on key2.
void sort_records(RecordTable& table, SortKey key1, int prefix, SortKey key2);
void sort_runs(RecordTable& table, SortKey key1, int prefix, SortKey key2);  // step two alone

// The order of a kind as after reading; cartridges by groove diameter or, with by_name, by the name's number.
void sort_kind(RecordTable& table, RecordKind kind, bool cartridges_by_name);

// The mean burn rate of a powder, as the text of five characters that stands in field 20; " 0" if it cannot
// be computed.
std::string mean_burn_rate(double Ba0, double PDko, double Limz1, double Ba1);

// Comment text of a dialog, cut into comment lines, and back.
std::vector<std::string> wrap_comment(std::string_view text);
std::string join_comments(const std::vector<std::string>& comments);

}  // namespace tv
