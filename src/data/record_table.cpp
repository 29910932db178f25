#include "data/record_table.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "engine/checked.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr RecordKindInfo kKinds[kRecordKinds] = {
    {RecordKind::powders, "pro", "pr$", "[pulver]", "[pulver]", "data/powders/", "profil", 1999},
    {RecordKind::bullets, "bul", "bu$", "[bullet]", "[bullet]", "data/bullets/", "ibulfil", 1999},
    {RecordKind::cartridges, "vol", "vo$", "[patronen]", "[patronen]", "data/calibers/", "volfil", 1999},
    {RecordKind::guns, "gun", "gu$", "[weapons]", "[weapons]", "data/weapons/", "gunfil", 1999},
    {RecordKind::black_powders, "bpw", "", "[gunpowder]", "[gunpowder]", "data/powders/", "bpwfil", 1999},
    {RecordKind::primers, "txt", "tx$", "[primertypes]", "primertype", "", "", 300},
    {RecordKind::units, "cnv", "", "lines", "lines", "lan/", "", 100},
};
constexpr const char* kBlackPowderBackup = "BP$";  // never written, but readable
constexpr std::size_t kNameWidth = 40;
constexpr std::size_t kCommentWidth = 75;

bool is_full(const RecordTable& table, RecordKind kind) { return table.last() >= record_kind(kind).limit; }

}  // namespace

const std::string& RecordTable::cell(int row, int field) const {
  static const std::string blank;
  if (row < 0 || row > last() || field < 0 || field >= kRecordFields) return blank;
  return rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(field)];
}

const Record& RecordTable::record(int row) const {
  static const Record blank;
  return row < 0 || row > last() ? blank : rows[static_cast<std::size_t>(row)];
}

double RecordTable::number(int row, int field) const { return read_stored(cell(row, field)).value; }

int RecordTable::find(std::string_view name) const {
  const std::string_view wanted = trim(name);
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const Record& r) { return trim(r[0]) == wanted; });
  return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

const RecordKindInfo& record_kind(RecordKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

const RecordKindInfo* record_kind_of_file(std::string_view path) {
  const std::string extension = file_extension(path);
  for (const RecordKindInfo& info : kKinds) {
    const bool own = extension == upper(info.extension);
    const bool backup = info.backup_extension[0] != '\0'
                            ? extension == upper(info.backup_extension)
                            : info.kind == RecordKind::black_powders && extension == kBlackPowderBackup;
    if (!own && !backup) continue;
    if (info.kind == RecordKind::primers && !same_fold(file_stem(path), "nameprim")) return nullptr;
    return &info;
  }
  return nullptr;
}

int calibre_field(RecordKind kind) {
  if (kind == RecordKind::bullets) return bullet_field::buldin;
  return kind == RecordKind::cartridges ? static_cast<int>(cartridge_field::Zkal) : -1;
}

std::string bore_piece(std::string_view field, int piece) {
  for (int i = 0; i < piece; ++i) {
    const std::size_t mark = field.find(kPieceMark);
    if (mark == std::string_view::npos) return {};
    field.remove_prefix(mark + kPieceMark.size());
  }
  const std::string_view text = trim_left(field.substr(0, field.find(kPieceMark)));
  return std::string(text.substr(0, text.find('\0')));
}

std::string clean_field(std::string_view text) {
  std::string clean(text);
  for (char& c : clean) {
    if (c == '"') c = '\'';
    if (c == ';') c = ',';
    if (c == '\r' || c == '\n') c = ' ';
  }
  return clean;
}

int put_record(RecordTable& table, const Record& record, RecordKind kind) {
  Record row;
  std::transform(record.begin(), record.end(), row.begin(), clean_field);
  row[0] = pad_right(trim(row[0]), kNameWidth);
  int at = table.find(row[0]);
  if (at < 0) {
    if (is_full(table, kind)) return -1;
    table.rows.emplace_back();
    at = table.last();
  }
  table.rows[static_cast<std::size_t>(at)] = std::move(row);
  return at;
}

bool erase_record(RecordTable& table, int row) {
  if (row < 0 || row > table.last()) return false;
  table.rows.erase(table.rows.begin() + row);
  return true;
}

std::vector<int> rows_near(const RecordTable& table, int field, double value, double tolerance) {
  std::vector<int> rows;
  for (int row = 0; row <= table.last(); ++row) {
    if (std::abs(table.number(row, field) - value) <= tolerance) rows.push_back(row);
  }
  return rows;
}

void collect_records(RecordTable& result, const RecordTable& from, RecordKind kind, double value,
                     double tolerance) {
  for (const int row : rows_near(from, calibre_field(kind), value, tolerance)) {
    if (is_full(result, kind)) return;
    if (result.find(from.cell(row, 0)) < 0) result.rows.push_back(from.rows[static_cast<std::size_t>(row)]);
  }
}

std::string mean_burn_rate(double Ba0, double PDko, double Limz1, double Ba1) {
  try {
    double a0 = PDko;
    double c = finite(Ba0 * Ba1);
    if (c == 1) {  // odd, and meant so: the figures of existing files are made with it
      a0 = -0.99999;
      c = 1.0001;
    }
    double sum = 0;
    int points = 0;
    for (double x = 0.1; x <= 0.4; x += 0.05) {  // seven points: the last lies just below 0.4
      const double term = x <= Limz1 ? Ba0 * checked_sqrt(1 + a0 * x) : c * checked_sqrt(1 - x);
      sum = finite(sum + term);
      ++points;
    }
    return left(str(sum / points), 5);
  } catch (const ArithmeticFailure&) {
    return " 0";
  }
}

std::vector<std::string> wrap_comment(std::string_view text) {
  std::string rest = clean_field(breaks_to_marks(text));
  std::vector<std::string> lines;
  while (!rest.empty()) {
    std::string piece = left(rest, kCommentWidth);
    const std::string longer = left(rest, kCommentWidth + 1);
    if (longer.size() == piece.size() + 1 && longer.back() == ' ') piece = longer;
    rest.erase(0, piece.size());
    lines.push_back(";" + piece);
  }
  return lines;
}

std::string join_comments(const std::vector<std::string>& comments) {
  std::string joined;
  for (const std::string& line : comments) joined += line;
  std::erase(joined, ';');
  return marks_to_breaks(joined);
}

}  // namespace tv
