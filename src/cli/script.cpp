#include "cli/script.h"

#include <algorithm>

#include "session/fields.h"

namespace tv {
namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool is_number_mark(std::string_view line, std::size_t at) {
  return at + 1 < line.size() && line[at + 1] >= '0' && line[at + 1] <= '9';
}

// Reads behind the opening quote; false if it is not closed.
bool quoted_word(std::string_view line, std::size_t& at, std::string& text) {
  for (++at; at < line.size(); ++at) {
    char c = line[at];
    if (c == '"') {
      ++at;
      return true;
    }
    if (c == '\\' && at + 1 < line.size()) {
      c = line[++at];
      if (c == 'n') c = '\n';
    }
    text += c;
  }
  return false;
}

}  // namespace

std::optional<std::vector<Word>> split_line(std::string_view line) {
  std::vector<Word> words;
  for (std::size_t at = 0; at < line.size();) {
    if (blank(line[at])) {
      ++at;
      continue;
    }
    if (line[at] == '#' && !(words.size() > 1 && is_number_mark(line, at))) break;
    Word word;
    if (line[at] == '"') {
      word.quoted = true;
      if (!quoted_word(line, at, word.text)) return std::nullopt;
    } else {
      while (at < line.size() && !blank(line[at])) word.text += line[at++];
    }
    words.push_back(std::move(word));
  }
  return words;
}

ControlPlace control_place(std::string_view text) {
  const auto point = text.find('.');
  if (point == std::string_view::npos) return {};
  return {std::string(text.substr(0, point)), control_name(text.substr(point + 1))};
}

}  // namespace tv
