#include "powder/powder_files.h"

#include <algorithm>

#include "text/file.h"
#include "text/number.h"
#include "text/sectioned_file.h"

namespace tv {
namespace {

constexpr std::string_view kVivacity = "vivacity", kVivacityComment = "vivcommnt";
constexpr std::string_view kReference = "referenz", kReferenceComment = "Laborierung";

// "zeit 3"
std::string row_key(std::string_view name, std::size_t row) {
  return std::string(name) + str(static_cast<double>(row + 1));
}

// A comma is a point where there is none.
std::string with_point(std::string_view text) {
  std::string turned(text);
  if (turned.find('.') == std::string::npos && std::count(turned.begin(), turned.end(), ',') == 1)
    std::replace(turned.begin(), turned.end(), ',', '.');
  return turned;
}

std::string comment_of(const SectionedFile& file, std::string_view section, std::string_view key) {
  return marks_to_breaks(left(trim(file.get(section, key)), kPowderComment));
}

// Writes what differs. In a file that has the section a missing key stands for an empty value.
struct Writer {
  SectionedFile& file;
  std::string_view section;
  bool fresh = !file.has_section(section);

  // What is 0 and stands for no value is written empty.
  void number(std::string_view key, double value, bool empty) {
    const std::string old = with_point(file.get(section, key));
    if (!fresh && read_number(old) == value && old.empty() == empty) return;
    file.set(section, key, empty ? std::string() : general(value));
  }
  void comment(std::string_view key, std::string_view value) {
    const std::string cut = left(breaks_to_marks(value), kPowderComment);
    if (fresh || breaks_to_marks(comment_of(file, section, key)) != cut) file.set(section, key, cut);
  }
};

void put_cell(Writer& writer, std::string_view name, std::size_t row, double value) {
  writer.number(row_key(name, row), value, value == 0);
}

void put_vivacity(SectionedFile& file, const VivacityTable& table, std::string_view comment) {
  Writer writer{file, kVivacity};
  writer.comment(kVivacityComment, comment);
  for (std::size_t i = 0; i < table.rows.size(); ++i) put_cell(writer, "ppm", i, table.rows[i].x);
  for (std::size_t i = 0; i < table.rows.size(); ++i) put_cell(writer, "viv", i, table.rows[i].f);
}

void put_reference(SectionedFile& file, const ReferenceCurve& curve) {
  Writer writer{file, kReference};
  writer.comment(kReferenceComment, curve.comment);
  for (std::size_t i = 0; i < curve.rows.size(); ++i) {
    writer.number(row_key("zeit", i), curve.rows[i].ms, i > 0 && curve.rows[i].ms == 0);
    put_cell(writer, "druck", i, curve.rows[i].MPa);
  }
}

template <class Put>
std::string changed_bytes(std::string_view old_bytes, CodePage page, Put put) {
  SectionedFile file(old_bytes, page);
  put(file);
  return file.bytes();
}

bool is_separator(char c, bool tabs, bool semicolons) {
  if (tabs || semicolons) return c == (tabs ? '\t' : ';');
  return c == ' ';
}

// The cells of a line, trimmed; without tab, semicolon or blank within it by commas, if it has points too.
std::vector<std::string> cells_of(std::string_view line) {
  std::string text(trim(line));
  const bool tabs = text.find('\t') != std::string::npos, semicolons = text.find(';') != std::string::npos;
  const bool points = text.find('.') != std::string::npos, commas = text.find(',') != std::string::npos;
  if (!tabs && !semicolons && points && commas) std::replace(text.begin(), text.end(), ',', ' ');
  std::vector<std::string> cells(1);
  for (const char c : text) {
    if (!is_separator(c, tabs, semicolons)) {
      cells.back() += c;
    } else if (tabs || semicolons || !cells.back().empty()) {
      cells.emplace_back();
    }
  }
  for (std::string& cell : cells) cell = with_point(trim(cell));
  return cells;
}

bool is_number(std::string_view cell) {
  const bool plain = cell.find_first_not_of("0123456789.-+eE") == std::string_view::npos;
  return plain && cell.find_first_of("0123456789") != std::string_view::npos &&
         std::count(cell.begin(), cell.end(), '.') <= 1;
}

}  // namespace

VivacityFile parse_vivacity(std::string_view bytes, CodePage page) {
  const SectionedFile file(bytes, page);
  VivacityFile read;
  read.foreign = !file.has_section(kVivacity);
  read.comment = comment_of(file, kVivacity, kVivacityComment);
  for (std::size_t i = 0; i < read.table.rows.size(); ++i)
    read.table.rows[i] = {read_number(with_point(file.get(kVivacity, row_key("ppm", i)))),
                          read_number(with_point(file.get(kVivacity, row_key("viv", i))))};
  return read;
}

VivacityFile read_vivacity(const std::string& path, CodePage page) {
  const FileRead read = read_file(path);
  VivacityFile file = parse_vivacity(read.bytes, page);
  file.failure = read.failure;
  return file;
}

std::string vivacity_bytes(std::string_view old_bytes, const VivacityTable& table, std::string_view comment,
                           CodePage page) {
  return changed_bytes(old_bytes, page, [&](SectionedFile& file) { put_vivacity(file, table, comment); });
}

int write_vivacity(const std::string& path, const VivacityTable& table, std::string_view comment,
                   CodePage page) {
  return settings_change(path, page, [&](SectionedFile& file) { put_vivacity(file, table, comment); });
}

ReferenceFile parse_reference(std::string_view bytes, CodePage page) {
  const SectionedFile file(bytes, page);
  ReferenceFile read;
  read.curve.comment = comment_of(file, kReference, kReferenceComment);
  const auto take = [&](const std::string& key, double& value) {
    const std::string text = with_point(file.get(kReference, key));
    if (text.find_first_of("0123456789") == std::string::npos) {
      read.missing.push_back(key);
    } else {
      value = read_number(text);
    }
  };
  for (std::size_t i = 0; i < read.curve.rows.size(); ++i) {
    take(row_key("zeit", i), read.curve.rows[i].ms);
    take(row_key("druck", i), read.curve.rows[i].MPa);
  }
  return read;
}

ReferenceFile read_reference(const std::string& path, CodePage page) {
  const FileRead read = read_file(path);
  ReferenceFile file = parse_reference(read.bytes, page);
  file.failure = read.failure;
  return file;
}

std::string reference_bytes(std::string_view old_bytes, const ReferenceCurve& curve, CodePage page) {
  return changed_bytes(old_bytes, page, [&](SectionedFile& file) { put_reference(file, curve); });
}

int write_reference(const std::string& path, const ReferenceCurve& curve, CodePage page) {
  return settings_change(path, page, [&](SectionedFile& file) { put_reference(file, curve); });
}

PastedColumns pasted_columns(std::string_view text, int most_rows) {
  PastedColumns pasted;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::vector<std::string> cells = cells_of(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (std::none_of(cells.begin(), cells.end(), is_number)) continue;
    const bool good = cells.size() <= 2 && std::all_of(cells.begin(), cells.end(), is_number);
    if (good && static_cast<int>(pasted.rows.size()) < most_rows) {
      pasted.rows.push_back(cells.size() == 1 ? PastedRow{"", cells[0]} : PastedRow{cells[0], cells[1]});
    } else {
      ++pasted.left_out;
    }
  }
  return pasted;
}

}  // namespace tv
