// One row of a view: as columns of a fixed width, or as tab-separated text for copying.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "tables/table_text.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {

class TableWriter {
public:
  enum class Form { columns, tabs };
  explicit TableWriter(Form form) : form_(form) {}

  // A whole line, of the view only.
  void line(std::string_view text = {}) {
    if (form_ == Form::columns) text_.append(text).append("\r\n");
  }
  // Lines with their ends, of the view only.
  void block(std::string_view lines) {
    if (form_ == Form::columns) text_.append(lines);
  }
  // A line above the columns, of the view only.
  void column_head(std::string_view text) {
    if (head_lines_++ == 0) head_line_ = static_cast<int>(std::ranges::count(text_, '\n'));
    line(text);
  }
  // Heads of the copy only.
  void head(std::string_view text) {
    if (form_ == Form::tabs) tabbed(text);
  }
  void end_heads() {
    if (form_ == Form::tabs) end_row();
  }

  void left(std::string_view text, std::size_t width) {
    form_ == Form::columns ? void(text_ += fit(text, width)) : tabbed(text);
  }
  void right(std::string_view text, std::size_t width) {
    form_ == Form::columns ? void(text_ += pad_left(text, width)) : tabbed(text);
  }
  void number(double x, std::string_view pattern, std::size_t width) {
    right(format_pattern(x, pattern), width);
  }
  // A text with its own blanks: behind the columns, or a cell.
  void plain(std::string_view text) { form_ == Form::columns ? void(text_ += text) : tabbed(text); }
  void end_row() {
    text_ += "\r\n";
    first_ = true;
  }

  const std::string& text() const { return text_; }
  void give(TableText& view) const {
    view.text = text_;
    view.head_line = head_line_;
    view.head_lines = head_lines_;
  }

private:
  void tabbed(std::string_view text) {
    if (!first_) text_ += '\t';
    first_ = false;
    for (const char c : trim(text)) text_ += c == '\t' ? ' ' : c;
  }

  Form form_;
  bool first_ = true;
  std::string text_;
  int head_line_ = 0, head_lines_ = 0;
};

// A line of units with its words of mass and energy in the language; the right edge of each stays, as its
// column does.
inline std::string unit_words(std::string line, const Language& language) {
  constexpr std::pair<std::string_view, std::string_view> kWords[] = {
      {"Grains", "fgrains"}, {"Gramm", "fgramm"}, {"Joule", "fjoule"}};
  for (const auto& [built_in, key] : kWords) {
    const std::string word = language.fastmsg(key);
    if (word.empty()) continue;
    const std::size_t width = std::max(length(word), built_in.size());
    for (std::size_t at = line.find(built_in); at != std::string::npos; at = line.find(built_in, at)) {
      const std::size_t end = at + built_in.size(), begin = end - std::min(width, end);
      const std::string aligned = pad_left(word, end - begin);
      line.replace(begin, end - begin, aligned);
      at = begin + aligned.size();
    }
  }
  return line;
}

// Burnt fraction in percent, cut (not rounded) to two places.
inline double burnt_percent(double fraction) { return int_of(fraction * 10000) / 100; }

}  // namespace tv
