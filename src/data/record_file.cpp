#include "data/record_file.h"

#include <algorithm>

#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kNameWidth = 40;
constexpr double kBa0Bound = 320;

// Takes the next line off the text; its end, CR LF or LF, is dropped.
std::string_view take_line(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool is_comment(std::string_view line) { return line.find(';') != std::string_view::npos; }

// Takes the next quoted field off the line. False if there is none.
bool take_field(std::string_view& rest, std::string& field) {
  const std::size_t open = rest.find('"');
  if (open != std::string_view::npos) rest.remove_prefix(open + 1);
  const std::size_t close = rest.find('"');
  if (close == std::string_view::npos) return false;
  field = trim(rest.substr(0, close));
  rest.remove_prefix(close + 1);
  const std::size_t comma = rest.find(',');
  if (comma < rest.find('"')) rest.remove_prefix(comma + 1);
  return true;
}

// The number of fields found; the others stay empty.
int parse_record(std::string_view line, Record& record) {
  int fields = 0;
  for (std::string& field : record) {
    if (!take_field(line, field)) break;
    ++fields;
  }
  return fields;
}

void compute_mean_burn_rates(RecordRead& read) {
  RecordTable& table = read.file.table;
  for (int row = 0; row <= table.last(); ++row) {
    const double Ba0 = table.number(row, powder_field::Ba0);
    read.Ba0_least = std::min(read.Ba0_least, Ba0);
    read.Ba0_most = std::max(read.Ba0_most, Ba0);
    table.rows[static_cast<std::size_t>(row)][powder_field::mean_burn_rate] =
        mean_burn_rate(Ba0, table.number(row, powder_field::PDko), table.number(row, powder_field::Limz1),
                       table.number(row, powder_field::Ba1));
  }
  read.Ba0_most = std::min(read.Ba0_most, kBa0Bound);
}

std::string record_line(const Record& record, const char* tag) {
  std::string line;
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (i > 0) line += ',';
    const bool unsafe = record[i].find_first_of("\";\n") != std::string::npos;
    const std::string field = unsafe ? clean_field(record[i]) : record[i];
    line += '"';
    line += i == 0 ? pad_right(field, kNameWidth) : std::string(trim_left(field));
    line += '"';
  }
  // A record that holds the tag would be taken for the header.
  for (std::size_t at = line.find(tag); at != std::string::npos && tag[0] == '['; at = line.find(tag)) {
    line[at] = '(';
  }
  return line;
}

}  // namespace

RecordRead parse_records(std::string_view bytes, RecordKind kind, CodePage page) {
  const RecordKindInfo& info = record_kind(kind);
  const std::string text = to_utf8(bytes, page);
  std::string_view rest = text;
  RecordRead read;
  RecordTable& table = read.file.table;
  while (!rest.empty() && table.last() < info.limit) {
    const std::string_view line = take_line(rest);
    if (is_comment(line)) {
      read.file.comments.emplace_back(line);
      continue;
    }
    if (trim(line).empty() || line.find(info.search_tag) != std::string_view::npos) continue;
    Record& record = table.rows.emplace_back();
    const int fields = parse_record(line, record);
    if (fields < kRecordFields) read.short_records.push_back({table.last(), record[0], fields + 1});
  }
  return read;
}

RecordRead read_records(const std::string& path, RecordKind kind, CodePage page, bool cartridges_by_name) {
  const FileRead file = read_file(path);
  RecordRead read = parse_records(file.bytes, kind, page);
  read.failure = file.failure;
  if (kind == RecordKind::powders) compute_mean_burn_rates(read);
  sort_kind(read.file.table, kind, cartridges_by_name, page);
  return read;
}

RecordRead read_records_plain(const std::string& path, RecordKind kind, CodePage page) {
  const FileRead file = read_file(path);
  RecordRead read = parse_records(file.bytes, kind, page);
  read.failure = file.failure;
  read.file.comments.clear();
  return read;
}

std::string record_file_bytes(const RecordFile& file, RecordKind kind, CodePage page) {
  constexpr const char* line_end = "\r\n";
  const RecordKindInfo& info = record_kind(kind);
  std::string text;
  for (const std::string& comment : file.comments) text += comment + line_end;
  text += '"' + str(file.table.last() + 1) + ' ' + info.tag + '"' + line_end;
  for (const Record& record : file.table.rows) text += record_line(record, info.search_tag) + line_end;
  return from_utf8(text, page);
}

int write_records(const std::string& path, const RecordFile& file, RecordKind kind, CodePage page) {
  const RecordKindInfo& info = record_kind(kind);
  std::string backup;
  if (info.backup_extension[0] != '\0' && path.size() > 3) {
    backup = path.substr(0, path.size() - 3) + info.backup_extension;
  }
  if (same_fold(backup, path)) backup.clear();
  return write_file(path, record_file_bytes(file, kind, page), backup);
}

std::string read_comment(const std::string& path, CodePage page) {
  const std::string text = to_utf8(read_file(path).bytes, page);
  std::string_view rest = text;
  std::vector<std::string> comments;
  while (!rest.empty()) {
    const std::string_view line = take_line(rest);
    if (is_comment(line)) comments.emplace_back(line);
  }
  return join_comments(comments);
}

}  // namespace tv
