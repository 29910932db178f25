#include "text/codepage.h"

#include <algorithm>
#include <array>

namespace tv {
namespace {

using Table = std::array<char16_t, 128>;  // characters of the bytes 128 to 255

constexpr Table make_1252() {
  constexpr std::array<char16_t, 32> first = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
      0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  Table table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = i < first.size() ? first[i] : static_cast<char16_t>(128 + i);
  }
  return table;
}

constexpr Table k1252 = make_1252();
constexpr Table k1251 = {0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021,  //
                         0x20AC, 0x2030, 0x0409, 0x2039, 0x040A, 0x040C, 0x040B, 0x040F,  //
                         0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
                         0x0098, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F,  //
                         0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7,  //
                         0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,  //
                         0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7,  //
                         0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457,  //
                         0x0410, 0x0411, 0x0412, 0x0413, 0x0414, 0x0415, 0x0416, 0x0417,  //
                         0x0418, 0x0419, 0x041A, 0x041B, 0x041C, 0x041D, 0x041E, 0x041F,  //
                         0x0420, 0x0421, 0x0422, 0x0423, 0x0424, 0x0425, 0x0426, 0x0427,  //
                         0x0428, 0x0429, 0x042A, 0x042B, 0x042C, 0x042D, 0x042E, 0x042F,  //
                         0x0430, 0x0431, 0x0432, 0x0433, 0x0434, 0x0435, 0x0436, 0x0437,  //
                         0x0438, 0x0439, 0x043A, 0x043B, 0x043C, 0x043D, 0x043E, 0x043F,  //
                         0x0440, 0x0441, 0x0442, 0x0443, 0x0444, 0x0445, 0x0446, 0x0447,  //
                         0x0448, 0x0449, 0x044A, 0x044B, 0x044C, 0x044D, 0x044E, 0x044F};

const Table& table_of(CodePage page) { return page == CodePage::cp1251 ? k1251 : k1252; }

unsigned byte_at(std::string_view text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

struct Character {
  char32_t code = 0;
  std::size_t size = 1;  // bytes in the text
  bool valid = true;     // false: a byte that is not UTF-8, code is that byte
};

// The character at the front of a text that is not empty. Overlong forms, surrogates and codes beyond
// U+10FFFF are no UTF-8.
Character front(std::string_view text) {
  const unsigned lead = byte_at(text, 0);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return {lead, 1, false};
  char32_t code = lead & (0xFFu >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    const unsigned next = byte_at(text, i);
    if ((next & 0xC0) != 0x80) return {lead, 1, false};
    code = code << 6 | (next & 0x3F);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  if (overlong || (code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) return {lead, 1, false};
  return {code, size, true};
}

Character take(std::string_view& text) {
  const Character c = front(text);
  text.remove_prefix(c.size);
  return c;
}

// All characters that a page or a case pair can give lie in the first plane.
void append(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | code >> 6);
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | code >> 12);
    out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// The byte of a character, or -1.
int find_byte(char32_t code, CodePage page) {
  if (code < 0x80) return static_cast<int>(code);
  const Table& table = table_of(page);
  const auto found = std::find(table.begin(), table.end(), code);
  return found == table.end() ? -1 : 128 + static_cast<int>(found - table.begin());
}

int byte_of(const Character& c, CodePage page) {
  return c.valid ? find_byte(c.code, page) : static_cast<int>(c.code);
}

struct CaseRange {
  char32_t first, last;  // lower case letters
  char32_t distance;     // less this is the upper case
};

constexpr CaseRange kCases[] = {
    {0xE0, 0xF6, 32},
    {0xF8, 0xFE, 32},  // Latin-1 but for the division sign
    {0x0430, 0x044F, 32},
    {0x0450, 0x045F, 80},
    {0x0491, 0x0491, 1}  // Cyrillic
};

// Nearly all text that the program handles is.
bool is_ascii(std::string_view text) {
  unsigned all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

char32_t upper_of(char32_t code) {
  if (code < 0x80) return code >= 'a' && code <= 'z' ? code - 32 : code;
  for (const CaseRange& range : kCases) {
    if (code >= range.first && code <= range.last) return code - range.distance;
  }
  return code;
}

char32_t lower_of(char32_t code) {
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? code + 32 : code;
  for (const CaseRange& range : kCases) {
    if (code + range.distance >= range.first && code + range.distance <= range.last) {
      return code + range.distance;
    }
  }
  return code;
}

template <class Change>
std::string each_letter(std::string_view text, Change change) {
  std::string out;
  if (is_ascii(text)) {
    out.resize(text.size());
    std::transform(text.begin(), text.end(), out.begin(),
                   [&](char c) { return static_cast<char>(change(static_cast<unsigned char>(c))); });
    return out;
  }
  out.reserve(text.size());
  while (!text.empty()) {
    const Character c = front(text);
    const char32_t changed = c.valid ? change(c.code) : c.code;
    if (changed == c.code) {
      out += text.substr(0, c.size);
    } else {
      append(out, changed);
    }
    text.remove_prefix(c.size);
  }
  return out;
}

bool is_blank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

CodePage code_page_named(std::string_view number) {
  return trim(number) == "1251" ? CodePage::cp1251 : CodePage::cp1252;
}

std::string to_utf8(std::string_view bytes, CodePage page) {
  if (is_ascii(bytes)) return std::string(bytes);
  const Table& table = table_of(page);
  std::string out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned byte = byte_at(bytes, i);
    append(out, byte < 128 ? byte : table[byte - 128]);
  }
  return out;
}

std::string from_utf8(std::string_view text, CodePage page) {
  if (is_ascii(text)) return std::string(text);
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    if (const int byte = byte_of(take(text), page); byte >= 0) out += static_cast<char>(byte);
  }
  return out;
}

std::string drop_foreign(std::string_view text, CodePage page) { return reread(text, page, page); }

std::string reread(std::string_view text, CodePage old_page, CodePage new_page) {
  if (is_ascii(text)) return std::string(text);
  return to_utf8(from_utf8(text, old_page), new_page);
}

std::size_t length(std::string_view text) {
  if (is_ascii(text)) return text.size();
  std::size_t n = 0;
  for (; !text.empty(); ++n) take(text);
  return n;
}

std::string left(std::string_view text, std::size_t characters) {
  std::string_view rest = text;
  for (; characters > 0 && !rest.empty(); --characters) take(rest);
  return std::string(text.substr(0, text.size() - rest.size()));
}

std::string pad_right(std::string_view text, std::size_t width) {
  std::string out(text);
  out.append(width - std::min(width, length(text)), ' ');
  return out;
}

std::string pad_left(std::string_view text, std::size_t width) {
  std::string out(width - std::min(width, length(text)), ' ');
  return out += text;
}

std::string fit(std::string_view text, std::size_t width) { return pad_right(left(text, width), width); }

std::string_view trim(std::string_view text) { return trim_left(trim_right(text)); }

std::string_view trim_left(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view trim_right(std::string_view text) {
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string upper(std::string_view text) {
  return each_letter(text, [](char32_t code) { return upper_of(code); });
}

std::string lower(std::string_view text) {
  return each_letter(text, [](char32_t code) { return lower_of(code); });
}

bool same_fold(std::string_view a, std::string_view b) {
  // Both cases of a letter have the same number of bytes in UTF-8.
  return a.size() == b.size() && lower(a) == lower(b);
}

int compare_bytes(std::string_view a, std::string_view b, CodePage page) {
  const int order = from_utf8(a, page).compare(from_utf8(b, page));
  return order < 0 ? -1 : order > 0;
}

std::string marks_to_breaks(std::string_view text) {
  std::string out;
  for (std::size_t mark; (mark = text.find(kBreakMark)) != std::string_view::npos;) {
    out += text.substr(0, mark);
    out += '\n';
    text.remove_prefix(mark + kBreakMark.size());
  }
  return out += text;
}

std::string breaks_to_marks(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (pair) ++i;
    if (text[i] == '\r' || text[i] == '\n') {
      out += kBreakMark;
    } else {
      out += text[i];
    }
  }
  return out;
}

}  // namespace tv
