#include "tables/table_writer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "text/codepage.h"

namespace tv {

void TableWriter::column_head(std::string_view text) {
  if (head_lines_++ == 0) head_line_ = static_cast<int>(std::ranges::count(text_, '\n'));
  line(text);
}

void TableWriter::left(std::string_view text, std::size_t width) { text_ += fit(text, width); }
void TableWriter::right(std::string_view text, std::size_t width) { text_ += pad_left(text, width); }

void TableWriter::figures(const std::vector<TableColumn>& columns, const TableRow& row) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const TableColumn& column = columns[i];
    if (column.width > 0 && (row.has_figures() || column.leads))
      right(cell_text(column, row.values[i]), column.width);
  }
}

void TableWriter::mark(Mark mark, const Language& language) {
  if (const std::string text = mark_text(mark, language); !text.empty()) plain("  " + text);
}

std::string unit_words(std::string line, const Language& language) {
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

}  // namespace tv
