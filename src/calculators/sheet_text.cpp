#include <algorithm>
#include <array>

#include "calculators/sheet.h"
#include "text/codepage.h"

namespace tv {
namespace {

constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
const std::string kBlank;

void put_character(std::string& out, char32_t c) {
  const auto byte = [&](char32_t bits) { out += static_cast<char>(bits); };
  if (c < 0x80) return byte(c);
  if (c < 0x800) {
    byte(0xC0 | (c >> 6));
  } else if (c < 0x10000) {
    byte(0xE0 | (c >> 12));
    byte(0x80 | ((c >> 6) & 0x3F));
  } else {
    byte(0xF0 | (c >> 18));
    byte(0x80 | ((c >> 12) & 0x3F));
    byte(0x80 | ((c >> 6) & 0x3F));
  }
  byte(0x80 | (c & 0x3F));
}

std::string from_utf16(std::string_view bytes, bool little) {
  std::string out;
  char32_t high = 0;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto first = static_cast<unsigned char>(bytes[i]),
               second = static_cast<unsigned char>(bytes[i + 1]);
    const auto unit = static_cast<char32_t>(little ? first | second << 8 : second | first << 8);
    if (unit >= 0xD800 && unit < 0xDC00) {
      high = unit;
    } else if (unit >= 0xDC00 && unit < 0xE000) {
      put_character(out, 0x10000 + ((high & 0x3FF) << 10) + (unit & 0x3FF));
    } else if (unit != 0xFEFF) {
      put_character(out, unit);
    }
  }
  return out;
}

bool is_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t more = lead < 0x80                   ? 0
                             : lead >= 0xC2 && lead < 0xE0 ? 1
                             : lead >= 0xE0 && lead < 0xF0 ? 2
                             : lead >= 0xF0 && lead < 0xF5 ? 3
                                                           : text.size();
    if (i + more >= text.size()) return false;
    for (std::size_t k = 1; k <= more; ++k)
      if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
    i += more + 1;
  }
  return true;
}

std::string decoded(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return from_utf16(bytes, true);
  if (bytes.starts_with("\xFE\xFF")) return from_utf16(bytes, false);
  // Without a mark every other byte of plain letters is 0.
  if (bytes.size() >= 4 && bytes[1] == 0 && bytes[3] == 0) return from_utf16(bytes, true);
  if (bytes.size() >= 4 && bytes[0] == 0 && bytes[2] == 0) return from_utf16(bytes, false);
  if (bytes.starts_with(kMark8)) bytes.remove_prefix(kMark8.size());
  return is_utf8(bytes) ? std::string(bytes) : to_utf8(bytes, CodePage::cp1252);
}

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

int line_at(std::string_view text, std::size_t at) {
  return 1 + static_cast<int>(std::ranges::count(text.substr(0, at), '\n'));
}

// CR LF, LF and CR are all a line's end.
std::string plain_ends(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    out += text[i] == '\r' ? '\n' : text[i];
  }
  return out;
}

// Lines that hold the separator outside of quotes.
int lines_with(std::string_view text, char separator) {
  int lines = 0;
  bool quoted = false, seen = false;
  for (const char c : text) {
    if (c == '"') quoted = !quoted;
    if (c == separator && !quoted) seen = true;
    if (c == '\n') {
      lines += seen;
      seen = false;
    }
  }
  return lines + seen;
}

bool digits_only(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// "812,3" on every line that has a comma: one column with decimal commas, unless the left parts count the
// shots or the right ones are too long for decimals.
bool commas_are_decimal(std::string_view text) {
  int number = 0, counting = 0, lines = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trim(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos) continue;
    const std::string_view left = line.substr(0, comma), right = line.substr(comma + 1);
    if (!digits_only(left) || !digits_only(right) || right.size() > 2) return false;
    ++lines;
    counting += std::to_string(++number) == left;
  }
  return lines > 0 && counting < lines;
}

// 0 for a single column. A line "sep=;" says it; else tab and semicolon go before the comma, which may be a
// decimal one.
char separator_of(std::string_view text) {
  if (text.starts_with("sep=") && text.size() > 4) return text[4];
  constexpr std::array<char, 3> kSeparators{'\t', ';', ','};
  int most = 0;
  for (const char c : kSeparators) most = std::max(most, lines_with(text, c));
  for (const char c : kSeparators)
    if (most > 0 && 2 * lines_with(text, c) >= most) return c == ',' && commas_are_decimal(text) ? '\0' : c;
  return '\0';
}

// Cells off a text, quotes undone; a quoted cell may hold separators, doubled quotes and line ends.
class Splitter {
public:
  Splitter(std::string_view text, char separator) : text_(text), separator_(separator) {}

  SheetsRead split() {
    SheetsRead read;
    Sheet sheet;
    while (at_ < text_.size()) {
      SheetRow row{line_, {}};
      if (!take_row(row)) return {{}, Unread::open_quote, row.line};
      cells_ += row.cells.size();
      if (cells_ > kMostCells) return {{}, Unread::too_large, row.line};
      sheet.rows.push_back(std::move(row));
    }
    read.sheets.push_back(std::move(sheet));
    return read;
  }

private:
  bool ends() const { return at_ >= text_.size() || text_[at_] == '\n'; }

  bool take_row(SheetRow& row) {
    for (;;) {
      std::string cell;
      if (!take_cell(cell)) return false;
      row.cells.push_back(left(trim(cell), kMostCharacters));
      if (ends()) break;
      ++at_;  // the separator
    }
    ++at_;
    ++line_;
    return true;
  }

  bool take_cell(std::string& cell) {
    while (!ends() && text_[at_] == ' ') ++at_;
    if (!ends() && text_[at_] == '"' && !take_quoted(cell)) return false;
    while (!ends() && (separator_ == '\0' || text_[at_] != separator_)) cell += text_[at_++];
    return true;
  }

  bool take_quoted(std::string& cell) {
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] == '"') {
        ++at_;
        if (at_ >= text_.size() || text_[at_] != '"') return true;
      }
      line_ += text_[at_] == '\n';
      cell += text_[at_] == '\n' ? ' ' : text_[at_];
    }
    return false;
  }

  std::string_view text_;
  char separator_;
  std::size_t at_ = 0, cells_ = 0;
  int line_ = 1;
};

}  // namespace

const std::string& SheetRow::cell(std::size_t column) const {
  return column < cells.size() ? cells[column] : kBlank;
}

bool SheetRow::blank() const {
  return std::ranges::all_of(cells, [](const std::string& cell) { return cell.empty(); });
}

SheetsRead read_text_sheet(std::string_view bytes) {
  const std::string text = plain_ends(decoded(bytes));
  const auto control = std::ranges::find_if(text, is_control);
  if (control != text.end())
    return {{}, Unread::not_text, line_at(text, static_cast<std::size_t>(control - text.begin()))};
  const char separator = separator_of(text);
  SheetsRead read = Splitter(text, separator).split();
  if (text.starts_with("sep=") && !read.sheets.empty() && !read.sheets[0].rows.empty())
    read.sheets[0].rows.front().cells.clear();
  return read;
}

SheetsRead read_sheets(std::string_view bytes) {
  if (bytes.size() > kMostSheetBytes) return {{}, Unread::too_large, 1};
  return bytes.starts_with("PK\x03\x04") ? read_workbook(bytes) : read_text_sheet(bytes);
}

}  // namespace tv
