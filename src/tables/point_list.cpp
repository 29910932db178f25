#include "tables/point_list.h"

#include "tables/table_writer.h"

namespace tv {
namespace {

std::vector<TableColumn> columns(bool times, const ViewUnits& units) {
  const bool i = units.imperial;
  const std::string p = pressure_unit_name(units);
  return {
      {"x", "fbultrv", i ? "in." : "mm", i ? "X (in.)" : "X (mm)", i ? "0.00000" : "0.000", 11, 1},
      {"burnt", "fcharge11", "%", "Z (%)", "0.00", 8, 2},
      {"velocity", "fvel", i ? "fps" : "m/s", i ? "V (fps)" : "V (m/s)", "0.0", 9, 3},
      {"pressure", "fchp", p, "p (" + p + ")", i ? "0" : "0.0", 10, 4},
      {"time", "ftime", "ms", "t(ms)", "0.0000", times ? 10U : 0U, times ? 5 : 0},
  };
}

// The heads stand literally; they are not quite in line with the columns.
std::string heads(const PointListRun& run, const ViewUnits& units) {
  return (units.imperial
              ? std::string("   NR.:   x(in.)     Z(%)    v(fps)   p(psi)")
              : std::string("   NR.:   x(mm)      Z(%)    v(m/s)   p(") + pressure_unit_name(units) + ")") +
         (run.schrit < 2 ? "    t (ms)" : "");
}

constexpr const char* kMuzzle = " Muzzle";

}  // namespace

TableData point_list_data(const PointListRun& run, const ViewUnits& units) {
  TableData view{"NR.", "", false, units.imperial ? "X (in.)" : "X (mm)", columns(run.schrit < 2, units), {}};
  const ShotCurve& c = run.curve;
  for (std::size_t i = 0; i <= static_cast<std::size_t>(run.lastIdx); ++i) {
    TableRow& row = view.rows.emplace_back();
    row.name = format_pattern(static_cast<double>(i), "0");
    row.values = {shown_travel(c.x[i], units), burnt_percent(c.z[i]), shown_velocity(c.v[i], units),
                  shown_pressure(c.p[i], units), (c.t[i] - c.t[0]) * 1000};
    row.mark = pressure_mark(c.p[i] / 1e6, run.zul_P);
  }
  return view;
}

TableText DrawPointList(const PointListRun& run, const Language& language, const ViewUnits& units) {
  const TableData view = point_list_data(run, units);
  TableWriter out;
  out.block(CartridgeDataBlock(run.block, BlockKind::point_list, language));
  out.line(language.fastmsg("ftabpoc"));
  out.column_head(heads(run, units));
  for (const TableRow& row : view.rows) {
    if (out.text().size() > kMaxListText) {
      out.line("Too much text - Window overflow");
      break;
    }
    out.right(row.name, 6);
    out.figures(view.columns, row);
    if (&row == &view.rows.back() && run.exits) out.plain(kMuzzle);
    out.end_row();
  }
  return out.table_text(language.fastmsg("ftable") + " Ternovale");
}

std::string point_list_tsv(const PointListRun& run, const Language& language, const ViewUnits& units) {
  TableData view = point_list_data(run, units);
  for (TableRow& row : view.rows) row.mark = Mark::none;  // of the list only the spreadsheet has marks
  std::string text = table_tsv(view, language);
  if (run.exits) text.insert(text.size() - 2, std::string("\t") + (kMuzzle + 1));
  return text;
}

}  // namespace tv
