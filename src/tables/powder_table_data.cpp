// The columns of the powder table.
#include <algorithm>
#include <cmath>

#include "tables/table_data.h"
#include "tables/table_text.h"

namespace tv {
namespace {

constexpr double kEmpty = std::numeric_limits<double>::quiet_NaN();

struct Kind {
  const PowderTable& table;
  bool imperial;
  bool second_level() const { return table.criteria.strategy == 3; }
  bool chamber() const { return table.criteria.strategy == 8; }
  bool times() const { return table.inputs.schrit < 2; }
};

// "1.mc(g)[330 MPa]": the charge of a pressure level.
std::string level_head(const Kind& k, const char* number, double p) {
  const std::string whole = format_pattern(k.imperial ? whole_psi(p) : int_of(p), "0");
  return std::string(number) + (k.imperial ? ".mc(gr)[" + whole + " psi]" : ".mc(g)[" + whole + " MPa]");
}

void add_second_level(const Kind& k, std::vector<TableColumn>& out) {
  const bool i = k.imperial;
  const PowderTable& t = k.table;
  out.push_back({"charge2", "ftable16", i ? "gr." : "g", i ? "2.mc(gr)" : "2.mc(g)", i ? "0.0" : "0.00",
                 i ? 10U : 11U, 3, "?", false, level_head(k, "2", t.p * t.criteria.lod2nd)});
  out.push_back({"velocity2", "ftable17", i ? "fps" : "m/s", i ? "2.vel(fps)" : "2.vel(m/s)", "0", 8, 4});
}

void add_exit(const Kind& k, std::vector<TableColumn>& out) {
  const bool i = k.imperial;
  out.push_back({"pmuzzle", "ftable9", i ? "psi" : "MPa", i ? "Pmuz (psi)" : "Pmuz (MPa)", "#0", i ? 8U : 7U,
                 k.chamber() ? 9 : 7});
  if (k.chamber()) {
    out.push_back({"volume", "ftable13", i ? "gr. H2O" : "cm³", i ? "CCap (grH2O)" : "CCap (ccm)",
                   i ? "#0.0" : "#0.00", 8, 7});
    out.push_back({"barrel", "ftable15", i ? "in." : "mm", i ? "Blen (in.)" : "Blen (mm)", i ? "#0.0" : "#0",
                   i ? 7U : 8U, 8});
  }
  out.push_back({"barrel_time", "ftable11", "ms", "t (ms)", "0.000", !k.times() ? 0U : i ? 8U : 9U, 6});
}

// The charge stands in both units; the spreadsheet takes that of the view.
std::vector<TableColumn> columns(const Kind& k) {
  const bool i = k.imperial, two = k.second_level();
  const std::string velocity = i ? "vel (fps)" : "vel (m/s)";
  const std::string level = two ? level_head(k, "1", k.table.p) : std::string();
  std::vector<TableColumn> out;
  out.push_back({"fill", "ftable2", "%", "fill (%)", "0.0", 5, two ? 0 : 2, "???", true});
  out.push_back({"charge", "ftable3", "gr.", "mc (gr)", "0.0", 9, i ? 1 : 0, "?", false, level});
  out.push_back({"charge_g", "ftable3", "g", "mc (g)", "0.00", 9, i ? 0 : 1, "?", false, level});
  out.push_back({"velocity", "ftable4", i ? "fps" : "m/s", velocity, "0", 8, two ? 2 : 3, "?", false,
                 two ? i ? "1.vel(fps)" : "1.vel(m/s)" : ""});
  out.push_back({"burnt", "ftable10", "%", "Z (%)", "0.0", 8, two ? 0 : 5});
  out.push_back({"pmax", "ftable8", i ? "psi" : "MPa", i ? "Pmax (psi)" : "Pmax (MPa)", "#0", i ? 9U : 8U,
                 two ? 0 : 4});
  if (two)
    add_second_level(k, out);
  else
    add_exit(k, out);
  return out;
}

std::vector<double> values(const Kind& k, const PowderRow& row) {
  const ViewUnits units{k.imperial, 1};
  const auto charge = [](double kg, bool grains) { return grains ? kg * 1000 * kGrainsPerGram : kg * 1000; };
  std::vector<double> out = {
      row.cell(5) > 0 ? row.cell(5) : kEmpty, charge(row.cell(2), true),  charge(row.cell(2), false),
      shown_velocity(row.cell(1), units),     burnt_percent(row.cell(4)), shown_pressure(row.cell(3), units)};
  if (k.second_level()) {
    out.push_back(charge(row.cell(6), k.imperial));
    out.push_back(shown_velocity(row.cell(8), units));
    return out;
  }
  out.push_back(shown_pressure(row.cell(12), units));
  if (k.chamber()) {
    const double cm3 = row.cell(10) * 1e6, mm = row.cell(11) * 1000;
    out.push_back(k.imperial ? cm3 * kGrainsPerGram * dicht_H2 : cm3);
    out.push_back(k.imperial ? mm / kMmPerInch : mm);
  }
  out.push_back(k.times() ? row.cell(6) * 1000 : kEmpty);
  return out;
}

}  // namespace

bool shows_figures(const PowderTable& table, const PowderRow& row) {
  return !(row.cell(1) < 0.2 || (table.criteria.strategy == 3 && row.cell(8) < 0.2));
}

TableData powder_table_data(const PowderTable& table, bool imperial) {
  const Kind kind{table, imperial};
  TableData view{imperial ? "Type" : "Typ", "ftable12", true, "", columns(kind), {}};
  for (const PowderRow& each : table.rows) {
    TableRow& row = view.rows.emplace_back();
    row.name = each.name;
    row.values = values(kind, each);
    if (!shows_figures(table, each)) {
      std::fill(row.values.begin() + 1, row.values.end(), kEmpty);
      row.reason = each.status == RowStatus::not_converged ? "fproptab31" : "fldat11";
      continue;
    }
    row.mark = pressure_mark(each.cell(3) / 1e6, table.inputs.zul_P);
    if (table.inputs.zul_P > 0) row.share = each.cell(3) / 1e6 / table.inputs.zul_P;
  }
  return view;
}

}  // namespace tv
