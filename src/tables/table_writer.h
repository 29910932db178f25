// The plain text of a view: lines, then rows of columns of a fixed width.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tables/table_data.h"
#include "tables/table_text.h"

namespace tv {

class TableWriter {
public:
  void line(std::string_view text = {}) { text_.append(text).append("\r\n"); }
  void block(std::string_view lines) { text_.append(lines); }  // lines with their ends
  void column_head(std::string_view text);                     // a line above the columns

  void left(std::string_view text, std::size_t width);
  void right(std::string_view text, std::size_t width);
  void plain(std::string_view text) { text_ += text; }
  // The columns of a row, or those that lead it when it has no figures.
  void figures(const std::vector<TableColumn>& columns, const TableRow& row);
  void mark(Mark mark, const Language& language);
  void end_row() { text_ += "\r\n"; }

  const std::string& text() const { return text_; }
  TableText table_text(std::string caption) const {
    return {std::move(caption), text_, head_line_, head_lines_};
  }

private:
  std::string text_;
  int head_line_ = 0, head_lines_ = 0;
};

// A line of units with its words of mass and energy in the language; the right edge of each stays, as its
// column does.
std::string unit_words(std::string line, const Language& language);

}  // namespace tv
