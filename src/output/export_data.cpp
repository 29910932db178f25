#include "output/export_data.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tables/table_text.h"

namespace tv {
namespace {

ExportCell number(double x) {
  if (!std::isfinite(x)) return {};
  return x;
}

// The columns of a spreadsheet in their order, as indices of the view's columns.
std::vector<std::size_t> sheet_order(const TableData& view) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < view.columns.size(); ++i) {
    if (view.columns[i].sheet > 0) order.push_back(i);
  }
  std::ranges::sort(order, {}, [&view](std::size_t i) { return view.columns[i].sheet; });
  return order;
}

std::vector<std::size_t> columns_of(const TableData& view, const std::vector<std::string_view>& keys) {
  std::vector<std::size_t> order;
  for (const std::string_view key : keys) {
    const auto at = std::ranges::find(view.columns, key, &TableColumn::key);
    if (at != view.columns.end()) order.push_back(static_cast<std::size_t>(at - view.columns.begin()));
  }
  return order;
}

ExportData export_columns(const TableData& view, const std::vector<std::size_t>& order,
                          const Language& language) {
  ExportData out;
  out.x_title = view.sheet_x_title;
  if (view.names_in_sheet) out.headers.push_back(view.name_head);
  for (const std::size_t i : order) {
    const TableColumn& column = view.columns[i];
    out.headers.push_back(column.sheet_head.empty() ? column.head : column.sheet_head);
  }
  out.headers.emplace_back("mark");
  for (const TableRow& row : view.rows) {
    if (!row.in_sheet) continue;
    auto& cells = out.data.emplace_back();
    if (view.names_in_sheet) cells.emplace_back(row.name);
    for (const std::size_t i : order) {
      const bool known = row.has_figures() || !view.columns[i].leads;
      cells.push_back(known ? number(row.values[i]) : ExportCell{});
    }
    cells.push_back(row.mark == Mark::none ? ExportCell{} : mark_word(row.mark, language));
  }
  return out;
}

ExportData export_view(const TableData& view, const Language& language, std::string notes) {
  ExportData out = export_columns(view, sheet_order(view), language);
  out.notes = std::move(notes);
  return out;
}

std::string list_head(const PointListRun& run, const Language& language) {
  return CartridgeDataBlock(run.block, BlockKind::point_list, language);
}

}  // namespace

bool ExportData::text_first() const {
  return std::any_of(data.begin(), data.end(),
                     [](const auto& row) { return std::holds_alternative<std::string>(row.front()); });
}

ExportData export_load_table(const LoadTable& table, const Language& language, const ViewUnits& units) {
  return export_view(load_table_data(table, units), language, load_table_head(table, language));
}

ExportData export_powder_table(const PowderTable& table, const Language& language, bool imperial) {
  return export_view(powder_table_data(table, imperial), language, powder_table_head(table, language));
}

ExportData export_point_list(const PointListRun& run, const Language& language, const ViewUnits& units) {
  return export_view(point_list_data(run, units), language, list_head(run, language));
}

ExportData export_diagram(int type, const PointListRun& run, const Language& language,
                          const ViewUnits& units) {
  const TableData data = point_list_data(run, units);
  std::vector<std::string_view> keys{type > 3 ? "time" : "x"};
  const int shown = (type - 1) % 3;  // 0 pressure, 1 velocity, 2 both
  if (shown != 1) keys.push_back("pressure");
  if (shown != 0) keys.push_back("velocity");
  ExportData out = export_columns(data, columns_of(data, keys), language);
  out.x_title = out.headers.front();
  out.notes = list_head(run, language);
  return out;
}

ExportData export_optional(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  const Chart chart = describe_diagram(run, options, language);
  if (chart.series.empty()) return {};
  ExportData out;
  const std::string y_unit = " (" + options.optional_y_unit + ")";
  out.x_title = chart.x.title + " (" + options.optional_x_unit + ")";
  out.headers = {out.x_title};
  for (const ChartSeries& series : chart.series) out.headers.push_back(series.name + y_unit);
  out.headers.emplace_back("mark");
  for (std::size_t n = 0; n < chart.series.size(); ++n) {
    const DiagramRun& of = n == 0 ? run : *run.kept;
    const std::vector<Point>& points = chart.series[n].points;
    // A quantity may begin behind the first logged point.
    const std::size_t first = static_cast<std::size_t>(of.result->lastIdx) + 1 - points.size();
    for (std::size_t i = 0; i < points.size(); ++i) {
      auto& cells = out.data.emplace_back(out.headers.size());
      cells.front() = number(points[i].x + chart.x.offset);
      cells[n + 1] = number(points[i].y);
      const Mark mark = pressure_mark(of.curve->p[first + i] / 1e6, of.state->dim.zul_P);
      if (mark != Mark::none) cells.back() = mark_word(mark, language);
    }
  }
  if (run.block) out.notes = CartridgeDataBlock(*run.block, BlockKind::point_list, language);
  for (const std::string& line : chart.legend_lines) out.notes += line + "\r\n";
  return out;
}

}  // namespace tv
