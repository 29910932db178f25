#include "tables/point_list.h"

#include "tables/table_writer.h"

namespace tv {
namespace {

void heads(const PointListRun& run, const Language& language, const ViewUnits& units, TableWriter& out) {
  const std::string unit = pressure_unit_name(units);
  const bool times = run.schrit < 2;
  out.block(CartridgeDataBlock(run.block, BlockKind::point_list, language));
  out.line(language.fastmsg("ftabpoc"));
  // The heads stand literally; they are not quite in line with the columns.
  out.column_head((units.imperial ? std::string("   NR.:   x(in.)     Z(%)    v(fps)   p(psi)")
                                  : "   NR.:   x(mm)      Z(%)    v(m/s)   p(" + unit + ")") +
                  (times ? "    t (ms)" : ""));
  out.head("NR.");
  out.head(units.imperial ? "X (in.)" : "X (mm)");
  out.head("Z (%)");
  out.head(units.imperial ? "V (fps)" : "V (m/s)");
  out.head("p (" + unit + ")");
  if (times) out.head("t(ms)");
  out.end_heads();
}

void point(const PointListRun& run, std::size_t i, const ViewUnits& units, TableWriter& out) {
  const ShotCurve& c = run.curve;
  out.number(static_cast<double>(i), "0", 6);
  if (units.imperial)
    out.number(c.x[i] * kFeetPerMetre * 12, "0.00000", 11);
  else
    out.number(c.x[i] * 1000, "0.000", 11);
  out.number(burnt_percent(c.z[i]), "0.00", 8);
  out.number(units.imperial ? c.v[i] * kFeetPerMetre : c.v[i], "0.0", 9);
  if (units.imperial)
    out.number(c.p[i] / kPaPerPsi, "0", 10);
  else
    out.number(c.p[i] * units.pressure_unit_factor / 1e6, "0.0", 10);
  if (run.schrit < 2) out.number((c.t[i] - c.t[0]) * 1000, "0.0000", 10);
}

TableWriter draw(const PointListRun& run, const Language& language, const ViewUnits& units,
                 TableWriter::Form form) {
  TableWriter out(form);
  heads(run, language, units, out);
  const auto last = static_cast<std::size_t>(run.lastIdx);
  for (std::size_t i = 0; i <= last; ++i) {
    if (out.text().size() > kMaxListText) {
      out.line("Too much text - Window overflow");
      break;
    }
    point(run, i, units, out);
    if (i == last && run.exits) out.plain(" Muzzle");
    out.end_row();
  }
  return out;
}

}  // namespace

TableText DrawPointList(const PointListRun& run, const Language& language, const ViewUnits& units) {
  TableText view{language.fastmsg("ftable") + " Ternovale", {}};
  draw(run, language, units, TableWriter::Form::columns).give(view);
  return view;
}

std::string point_list_tsv(const PointListRun& run, const Language& language, const ViewUnits& units) {
  return draw(run, language, units, TableWriter::Form::tabs).text();
}

}  // namespace tv
