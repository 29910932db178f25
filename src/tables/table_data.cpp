#include "tables/table_data.h"

#include <cmath>

#include "text/codepage.h"

namespace tv {

Mark pressure_mark(double peak, double zul_P) {
  if (!(zul_P > 0)) return Mark::unknown;
  if (peak > zul_P - 5) return Mark::over_limit;
  return peak > 0.85 * zul_P ? Mark::near_limit : Mark::none;
}

std::string mark_text(Mark mark, const Language& language) {
  if (mark == Mark::none || mark == Mark::unknown) return {};
  return language.fastmsg("fcrgvar", mark == Mark::over_limit ? 13 : 14);
}

std::string mark_word(Mark mark, const Language& language) {
  constexpr const char* kKeys[] = {"", "fmark1", "fmark0", "fmark2"};
  return mark == Mark::none ? std::string() : language.fastmsg(kKeys[static_cast<int>(mark)]);
}

const char* mark_key(Mark mark) {
  constexpr const char* kKeys[] = {"", "near", "over", "unknown"};
  return kKeys[static_cast<int>(mark)];
}

std::string cell_text(const TableColumn& column, double value) {
  if (!std::isfinite(value)) return column.missing;
  return std::string(trim(format_pattern(value, column.pattern)));
}

std::string table_tsv(const TableData& view, const Language& language) {
  if (view.rows.empty()) return {};
  std::string text;
  const auto cell = [&text](std::string_view content, bool first = false) {
    if (!first) text += '\t';
    for (const char c : trim(content)) text += c == '\t' ? ' ' : c;
  };
  cell(view.name_head, true);
  for (const TableColumn& column : view.columns) {
    if (column.width > 0) cell(column.head);
  }
  text += "\r\n";
  for (const TableRow& row : view.rows) {
    cell(row.name, true);
    for (std::size_t i = 0; i < view.columns.size(); ++i) {
      const TableColumn& column = view.columns[i];
      if (column.width > 0 && (row.has_figures() || column.leads)) cell(cell_text(column, row.values[i]));
    }
    if (!row.has_figures()) cell(language.fastmsg(row.reason));
    if (const std::string mark = mark_text(row.mark, language); !mark.empty()) cell(mark);
    text += "\r\n";
  }
  return text;
}

double whole_psi(double p_MPa) { return int_of(p_MPa / (kPaPerPsi * 1e-6)); }

}  // namespace tv
