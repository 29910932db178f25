#include "tables/load_table.h"

#include <cmath>
#include <utility>

#include "tables/guarded.h"

namespace tv {
namespace {

double to_kg(double grains) { return grains / (kGrainsPerGram * 1000); }

void run_row(CalcState& s, ShotCurve& curve, ShotResult& result, std::size_t row, LoadTable& table) {
  assign(s.chargeKg, [&] { return to_kg(table.charge[row]); });
  const bool ok = quickShot(s, curve, result);
  const auto last = static_cast<std::size_t>(result.lastIdx);
  table.pmax[row] = result.pMax;
  table.pmuzzle[row] = curve.p[last];
  table.burnt[row] = curve.z[last];
  table.barrel_time[row] = std::abs(result.t10);
  table.velocity[row] = ok && curve.z[last] <= 1.0 ? curve.v[last] : 0;
}

}  // namespace

void RunLoadTable(CalcState& s, ShotCurve& curve, ShotResult& result, LoadTableSettings& settings,
                  const TableHead& head, LoadTable& table) {
  const CalcState before = s;
  const double m0 = s.chargeGr;
  table.row_count = 17;
  // A step by weight stays the same weight when the charge changes.
  if (settings.inweight) assign(settings.ldstep, [&] { return checked_div(100 * settings.weight_step, m0); });
  const double step = settings.ldstep;
  table.inputs = note_inputs(s, head);
  table.step = step;
  table.batols = settings.batols;

  for (std::size_t i = 0; i < LoadTable::kLadder; ++i)
    assign(table.charge[i],
           [&] { return (10 - step) / 10 * m0 + (step * 0.15 / 15) * static_cast<double>(i) * m0; });
  for (std::size_t i = 0; i < LoadTable::kLadder; ++i) run_row(s, curve, result, i, table);

  const double tolerance = settings.batols / 100.0;
  for (const auto& [row, factor] : {std::pair{16, 1.0 + tolerance}, std::pair{17, 1.0 - tolerance}}) {
    assign(s.Ba0, [&, change = factor] { return before.Ba0 * change; });
    table.charge[static_cast<std::size_t>(row)] = m0;
    run_row(s, curve, result, static_cast<std::size_t>(row), table);
  }
  s = before;
  table.table_valid = true;
}

}  // namespace tv
