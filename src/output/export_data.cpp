#include "output/export_data.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tables/table_text.h"
#include "tables/table_writer.h"

namespace tv {
namespace {

ExportCell number(double x) {
  if (!std::isfinite(x)) return {};
  return x;
}

std::string whole(double x) { return format_pattern(x, "0"); }

double pressure(double pascal, const ViewUnits& units) {
  return units.imperial ? pascal / kPaPerPsi : pascal * units.pressure_unit_factor / 1e6;
}
double velocity(double v, bool imperial) { return imperial ? v * kFeetPerMetre : v; }
double distance(double metres, bool imperial) {
  return imperial ? metres * kFeetPerMetre * 12 : metres * 1000;
}

std::vector<ExportCell> blank_row(const ExportData& data, ExportCell first) {
  std::vector<ExportCell> row(data.headers.size());
  row.front() = std::move(first);
  return row;
}

std::vector<std::string> powder_headers(const PowderTable& t, bool imperial) {
  const bool i = imperial;
  const auto level = [&](const char* nr, double p) {
    return std::string(nr) +
           (i ? ".mc(gr)[" + whole(whole_psi(p)) + " psi]" : ".mc(g)[" + whole(int_of(p)) + " MPa]");
  };
  const std::string type = i ? "Type" : "Typ";
  if (t.criteria.strategy == 3)
    return {type, level("1", t.p), i ? "1.vel(fps)" : "1.vel(m/s)", level("2", t.p * t.criteria.lod2nd),
            i ? "2.vel(fps)" : "2.vel(m/s)"};
  std::vector<std::string> heads{type,
                                 i ? "mc (gr)" : "mc (g)",
                                 "fill (%)",
                                 i ? "vel (fps)" : "vel (m/s)",
                                 i ? "Pmax (psi)" : "Pmax (MPa)",
                                 "Z (%)",
                                 "t (ms)"};
  if (t.criteria.strategy == 8) {
    heads.push_back(i ? "CCap (grH2O)" : "CCap (ccm)");
    heads.push_back(i ? "Blen (in.)" : "Blen (mm)");
  }
  heads.push_back(i ? "Pmuz (psi)" : "Pmuz (MPa)");
  return heads;
}

double charge(double kg, bool imperial) { return imperial ? kg * 1000 * kGrainsPerGram : kg * 1000; }

std::vector<ExportCell> powder_cells(const PowderTable& t, const PowderRow& row, bool i) {
  const ViewUnits units{i, 1};  // MPa whatever the pressure unit
  if (t.criteria.strategy == 3)
    return {row.name, number(charge(row.cell(2), i)), number(velocity(row.cell(1), i)),
            number(charge(row.cell(6), i)), number(velocity(row.cell(8), i))};
  std::vector<ExportCell> cells{row.name,
                                number(charge(row.cell(2), i)),
                                row.cell(5) > 0 ? number(row.cell(5)) : ExportCell{},
                                number(velocity(row.cell(1), i)),
                                number(pressure(row.cell(3), units)),
                                number(burnt_percent(row.cell(4))),
                                t.inputs.schrit < 2 ? number(row.cell(6) * 1000) : ExportCell{}};
  if (t.criteria.strategy == 8) {
    const double cm3 = row.cell(10) * 1e6, mm = row.cell(11) * 1000;
    cells.push_back(number(i ? cm3 * kGrainsPerGram * dicht_H2 : cm3));
    cells.push_back(number(i ? mm / kMmPerInch : mm));
  }
  cells.push_back(number(pressure(row.cell(12), units)));
  return cells;
}

}  // namespace

bool ExportData::text_first() const {
  return std::any_of(data.begin(), data.end(),
                     [](const auto& row) { return std::holds_alternative<std::string>(row.front()); });
}

ExportData export_load_table(const LoadTable& table, const ViewUnits& units) {
  const bool i = units.imperial;
  const std::string unit = pressure_unit_name(units);
  ExportData out;
  out.x_title = i ? "Charge (gr.)" : "Charge (g)";
  out.headers = {i ? "mc (gr.)" : "mc (g)",
                 i ? "V0 (fps)" : "V0 (m/s)",
                 i ? "E0 (ft.lbs.)" : "E0 (J)",
                 "Pmax (" + unit + ")",
                 "Pmzz (" + unit + ")",
                 "Z (%)",
                 "t (ms)"};
  if (table.row_count == 0) return out;
  for (std::size_t r = 0; r < LoadTable::kLadder; ++r) {
    const double v = table.velocity[r];
    const ExportCell mc = number(i ? table.charge[r] : table.charge[r] / kGrainsPerGram);
    if (v == 0) {
      out.data.push_back(blank_row(out, mc));
      continue;
    }
    const double energy = v * v * table.inputs.bulletGr / (i ? 41840.0 : 30860.0);
    out.data.push_back({mc, number(velocity(v, i)), number(energy), number(pressure(table.pmax[r], units)),
                        number(pressure(table.pmuzzle[r], units)), number(burnt_percent(table.burnt[r])),
                        table.inputs.schrit < 2 ? number(table.barrel_time[r] * 1000) : ExportCell{}});
  }
  return out;
}

ExportData export_powder_table(const PowderTable& table, bool imperial) {
  ExportData out;
  out.headers = powder_headers(table, imperial);
  for (const PowderRow& row : table.rows)
    out.data.push_back(shows_figures(table, row) ? powder_cells(table, row, imperial)
                                                 : blank_row(out, row.name));
  return out;
}

ExportData export_series(const std::vector<ExportSeries>& series) {
  ExportData out;
  for (const ExportSeries& s : series) out.headers.push_back(s.header);
  if (series.empty()) return out;
  out.x_title = series.front().header;
  for (std::size_t i = 0; i < series.front().values.size(); ++i) {
    auto& row = out.data.emplace_back();
    for (const ExportSeries& s : series)
      row.push_back(i < s.values.size() ? number(s.values[i]) : ExportCell{});
  }
  return out;
}

namespace {

template <class Value>
ExportSeries logged(std::string header, int lastIdx, Value value) {
  ExportSeries s{std::move(header), {}};
  for (std::size_t i = 0; i <= static_cast<std::size_t>(lastIdx); ++i) s.values.push_back(value(i));
  return s;
}

struct LoggedSeries {
  ExportSeries x, time, z, v, p;
};
LoggedSeries logged_series(const ShotCurve& c, int lastIdx, const ViewUnits& units) {
  const bool i = units.imperial;
  return {
      logged(i ? "X (in.)" : "X (mm)", lastIdx, [&](std::size_t k) { return distance(c.x[k], i); }),
      logged("t(ms)", lastIdx, [&](std::size_t k) { return (c.t[k] - c.t[0]) * 1000; }),
      logged("Z (%)", lastIdx, [&](std::size_t k) { return burnt_percent(c.z[k]); }),
      logged(i ? "V (fps)" : "V (m/s)", lastIdx, [&](std::size_t k) { return velocity(c.v[k], i); }),
      logged(std::string("p (") + pressure_unit_name(units) + ")", lastIdx,
             [&](std::size_t k) { return pressure(c.p[k], units); }),
  };
}

}  // namespace

ExportData export_point_list(const PointListRun& run, const ViewUnits& units) {
  LoggedSeries s = logged_series(run.curve, run.lastIdx, units);
  std::vector<ExportSeries> columns{std::move(s.x), std::move(s.z), std::move(s.v), std::move(s.p)};
  if (run.schrit < 2) columns.push_back(std::move(s.time));
  return export_series(columns);
}

ExportData export_diagram(int type, const ShotCurve& curve, int lastIdx, const ViewUnits& units) {
  LoggedSeries s = logged_series(curve, lastIdx, units);
  std::vector<ExportSeries> columns{type > 3 ? std::move(s.time) : std::move(s.x)};
  const int shown = (type - 1) % 3;  // 0 pressure, 1 velocity, 2 both
  if (shown != 1) columns.push_back(std::move(s.p));
  if (shown != 0) columns.push_back(std::move(s.v));
  return export_series(columns);
}

}  // namespace tv
