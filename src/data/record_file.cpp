#include "data/record_file.h"

#include <algorithm>

#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kNameWidth = 40;
constexpr double kBa0Bound = 320;
constexpr double kMostTold = 1e6;  // a count above it is wrong anyway

// Takes the next line off the text; its end, CR LF, LF or CR, is dropped.
std::string_view take_line(std::string_view& text) {
  const auto at = std::find_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
  const auto end = static_cast<std::size_t>(at - text.begin());
  const std::string_view line = text.substr(0, end);
  const bool pair = text.substr(end).starts_with("\r\n");
  text.remove_prefix(std::min(end + (pair ? 2 : 1), text.size()));
  return line;
}

bool is_comment(std::string_view line) { return line.find(';') != std::string_view::npos; }

// More than quotes, commas and blanks.
bool holds_text(std::string_view text) { return text.find_first_not_of("\", \t") != std::string_view::npos; }

bool ends_field(std::string_view behind) {
  behind = trim_left(behind);
  return behind.empty() || behind.front() == ',';
}

// The place of the quote that ends the field which opens there; npos if none does.
std::size_t closing_quote(std::string_view text, std::size_t open) {
  std::size_t close = open;
  do {
    close = text.find('"', close + 1);
  } while (close != std::string_view::npos && !ends_field(text.substr(close + 1)));
  return close;
}

// Takes the next quoted field off the line. False if there is none.
bool take_field(std::string_view& rest, std::string& field, bool& text_lost) {
  const std::size_t open = rest.find('"');
  const std::size_t close = open == std::string_view::npos ? open : closing_quote(rest, open);
  if (close == std::string_view::npos) return false;
  text_lost = text_lost || holds_text(rest.substr(0, open));
  field = trim(rest.substr(open + 1, close - open - 1));
  rest = trim_left(rest.substr(close + 1));
  if (!rest.empty()) rest.remove_prefix(1);  // the comma
  return true;
}

void parse_record(std::string_view line, Record& record, OddRecord& odd) {
  for (std::string& field : record) {
    if (!take_field(line, field, odd.text_lost)) break;
    ++odd.fields;
  }
  odd.text_lost = odd.text_lost || holds_text(line);
}

void note_head(std::string_view line, RecordFindings& findings) {
  std::string_view text = trim(line);
  if (std::count(text.begin(), text.end(), ',') > 0 && std::count(text.begin(), text.end(), '"') > 2) {
    ++findings.taken_for_head;
    ++findings.count_found;
    return;
  }
  if (text.starts_with('"')) text.remove_prefix(1);
  text = trim_left(text);
  if (text.empty() || text.front() < '0' || text.front() > '9') return;
  const double told = std::max(findings.count_told, 0) + read_number(text);
  findings.count_told = static_cast<int>(std::min(told, kMostTold));
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
    const bool unsafe = record[i].find_first_of("\";\r\n") != std::string::npos;
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

constexpr std::size_t kOddTold = 10;

void add_odd_records(const std::vector<OddRecord>& odd, std::vector<FindingText>& texts) {
  bool short_ones = false;
  for (std::size_t i = 0; i < std::min(odd.size(), kOddTold); ++i) {
    const OddRecord& record = odd[i];
    const bool is_short = record.fields < kRecordFields;
    texts.push_back({record.text_lost ? 442 : 186, std::to_string(record.row) + ", "});
    texts.push_back({187, record.name + (is_short ? ", " : "\n")});
    if (is_short) texts.push_back({188, std::to_string(record.fields + 1) + "\n"});
    short_ones = short_ones || is_short;
  }
  if (odd.size() > kOddTold) texts.back().behind += "...\n";
  if (short_ones) texts.push_back({189, "\n"});
}

}  // namespace

bool RecordFindings::none() const { return odd.empty() && !count_differs() && !not_read_whole(); }

bool RecordFindings::not_read_whole() const {
  return rows_beyond > 0 || taken_for_head > 0 ||
         std::any_of(odd.begin(), odd.end(), [](const OddRecord& record) { return record.text_lost; });
}

std::vector<FindingText> finding_texts(const RecordFindings& findings) {
  std::vector<FindingText> texts;
  const auto tell = [&](int message, int number, const char* behind) {
    texts.push_back({message, std::to_string(number) + behind});
  };
  if (findings.not_read_whole()) texts.push_back({427, "\n"});
  if (findings.rows_beyond > 0) tell(443, findings.rows_beyond, "\n");
  if (findings.taken_for_head > 0) tell(444, findings.taken_for_head, "\n");
  if (findings.count_differs()) {
    tell(445, findings.count_told, ", ");
    tell(446, findings.count_found, "\n");
  }
  add_odd_records(findings.odd, texts);
  if (!texts.empty()) texts.back().behind.pop_back();  // nothing follows the last line
  return texts;
}

RecordRead parse_records(std::string_view bytes, RecordKind kind, CodePage page) {
  const RecordKindInfo& info = record_kind(kind);
  const std::string text = to_utf8(bytes, page);
  std::string_view rest = text;
  RecordRead read;
  RecordTable& table = read.file.table;
  RecordFindings& findings = read.findings;
  while (!rest.empty()) {
    const std::string_view line = take_line(rest);
    if (is_comment(line)) {
      read.file.comments.emplace_back(line);
    } else if (line.find(info.search_tag) != std::string_view::npos) {
      note_head(line, findings);
    } else if (!trim(line).empty()) {
      ++findings.count_found;
      if (table.last() >= info.limit) {
        ++findings.rows_beyond;
        continue;
      }
      Record& record = table.rows.emplace_back();
      OddRecord odd{table.last() + 1, {}, 0, false};
      parse_record(line, record, odd);
      odd.name = record[0];
      if (odd.fields < kRecordFields || odd.text_lost) findings.odd.push_back(std::move(odd));
    }
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
