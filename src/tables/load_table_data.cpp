// The columns of the load table.
#include <cmath>

#include "tables/table_data.h"

namespace tv {
namespace {

constexpr double kEmpty = std::numeric_limits<double>::quiet_NaN();

std::vector<TableColumn> columns(const LoadTable& t, const ViewUnits& units) {
  const bool i = units.imperial, times = t.inputs.schrit < 2;
  const std::string p = pressure_unit_name(units);
  std::vector<TableColumn> out;
  if (t.inputs.fill > 0) out.push_back({"fill", "ftable2", "%", "fill (%)", "0", 5, 0, "?", true});
  out.push_back(
      {"charge", "ftable3", i ? "gr." : "g", i ? "mc (gr.)" : "mc (g)", i ? "0.00" : "0.000", 9, 1});
  out.push_back({"velocity", "ftable4", i ? "fps" : "m/s", i ? "V0 (fps)" : "V0 (m/s)", "0", 7, 2});
  out.push_back({"energy", "ftable5", i ? "ft.lbs." : "J", i ? "E0 (ft.lbs.)" : "E0 (J)", "0", 8, 3});
  out.push_back({"pmax", "ftable8", p, "Pmax (" + p + ")", "0", 8, 4});
  out.push_back({"pmuzzle", "ftable9", p, "Pmzz (" + p + ")", "0", 7, 5});
  out.push_back({"burnt", "ftable10", "%", "Z (%)", "0.0", 9, 6});
  out.push_back({"barrel_time", "ftable11", "ms", "t (ms)", "#0.000", times ? 9U : 0U, 7});
  return out;
}

std::string label(const LoadTable& t, std::size_t i) {
  if (i == LoadTable::kLadder) return "+Ba  ";
  if (i > LoadTable::kLadder) return "-Ba  ";
  return format_pattern((static_cast<double>(i) - LoadTable::kNominal) * t.step, "+00.0;-00.0");
}

std::vector<double> values(const LoadTable& t, std::size_t i, const ViewUnits& units) {
  const bool failed = t.velocity[i] == 0;
  const auto figure = [failed](double x) { return failed ? kEmpty : x; };
  std::vector<double> out;
  if (t.inputs.fill > 0)
    out.push_back(100 * (t.charge[i] / kGrainsPerGram) / (t.inputs.bulkdn * t.inputs.Veffm));
  out.push_back(units.imperial ? t.charge[i] : t.charge[i] / kGrainsPerGram);
  out.push_back(figure(shown_velocity(t.velocity[i], units)));
  out.push_back(figure(shown_energy(t.velocity[i], t.inputs.bulletGr, units)));
  out.push_back(figure(shown_pressure(t.pmax[i], units)));
  out.push_back(figure(shown_pressure(t.pmuzzle[i], units)));
  out.push_back(figure(burnt_percent(t.burnt[i])));
  out.push_back(t.inputs.schrit < 2 ? figure(t.barrel_time[i] * 1000) : kEmpty);
  return out;
}

}  // namespace

TableData load_table_data(const LoadTable& t, const ViewUnits& units) {
  TableData view{"%", "ftable1", false, units.imperial ? "Charge (gr.)" : "Charge (g)", columns(t, units),
                 {}};
  if (t.row_count == 0) return view;
  for (std::size_t i = 0; i <= static_cast<std::size_t>(t.row_count); ++i) {
    TableRow& row = view.rows.emplace_back();
    row.name = label(t, i);
    row.values = values(t, i, units);
    row.in_sheet = i < LoadTable::kLadder;
    if (t.velocity[i] == 0) {
      row.reason = "fldat11";
      continue;
    }
    row.mark = pressure_mark(t.pmax[i] / 1e6, t.inputs.zul_P);
    if (t.inputs.zul_P > 0) row.share = t.pmax[i] / 1e6 / t.inputs.zul_P;
  }
  return view;
}

}  // namespace tv
