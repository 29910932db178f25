#include "tables/table_text.h"
#include "tables/table_writer.h"

namespace tv {
namespace {

struct View {
  const LoadTable& table;
  const Language& language;
  const ViewUnits& units;
  bool ratio() const { return table.inputs.fill > 0; }
  bool times() const { return table.inputs.schrit < 2; }
};

std::string units_line(const View& v) {
  std::string line = v.ratio() ? " %       %    " : " %       ";
  if (v.units.imperial) {
    line += "Grains   fps   ft.lbs    psi    psi      %";
  } else {
    const std::string unit = pressure_unit_name(v.units);
    line += "Gramm    m/s   Joule     " + unit + "    " + unit + "      %";
  }
  return v.times() ? line + "        ms" : line;
}

void heads(const View& v, TableWriter& out) {
  const LoadTable& t = v.table;
  const auto say = [&v](int n) { return v.language.fastmsg("fcrgvar", n); };
  out.line();
  out.block(CartridgeDataBlock(t.inputs.block, BlockKind::load_table, v.language));
  out.line(say(0));
  out.line(say(1) + format_pattern(t.step, "0.0##") + say(2));
  out.line(say(3));
  if (!(t.inputs.zul_P > 0)) out.line(v.language.fastmsg("fwarn3"));
  out.line();
  out.column_head(say(v.ratio() ? 4 : 5) + (v.times() ? " " + v.language.fastmsg("fbtim") : ""));
  out.column_head(unit_words(units_line(v), v.language));
  out.line();

  const std::string unit = pressure_unit_name(v.units);
  const bool imperial = v.units.imperial;
  out.head("%");
  if (v.ratio()) out.head("fill (%)");
  out.head(imperial ? "mc (gr.)" : "mc (g)");
  out.head(imperial ? "V0 (fps)" : "V0 (m/s)");
  out.head(imperial ? "E0 (ft.lbs.)" : "E0 (J)");
  out.head("Pmax (" + unit + ")");
  out.head("Pmzz (" + unit + ")");
  out.head("Z (%)");
  if (v.times()) out.head("t (ms)");
  out.end_heads();
}

void label(const View& v, std::size_t i, TableWriter& out) {
  const auto say = [&v](int n) { return v.language.fastmsg("fcrgvar", n); };
  const std::string tolerance = format_pattern(v.table.batols, "0");
  if (i < LoadTable::kLadder) {
    out.plain(format_pattern((static_cast<double>(i) - 10) * v.table.step, "+00.0;-00.0"));
  } else if (i == LoadTable::kLadder) {
    out.line();
    out.line(say(7) + tolerance + say(8));
    out.line(say(9) + tolerance + say(10));
    out.plain("+Ba  ");
  } else {
    out.line(say(11) + tolerance + say(10));
    out.plain("-Ba  ");
  }
}

void figures(const View& v, std::size_t i, TableWriter& out) {
  const LoadTable& t = v.table;
  const double velocity = t.velocity[i];
  const double energy = velocity * velocity * t.inputs.bulletGr;  // the divisors are not quite the exact ones
  if (v.units.imperial) {
    out.number(t.charge[i], "0.00", 9);
    out.number(velocity * kFeetPerMetre, "0", 7);
    out.number(energy / 41840.0, "0", 8);
    out.number(t.pmax[i] / kPaPerPsi, "0", 8);
    out.number(t.pmuzzle[i] / kPaPerPsi, "0", 7);
  } else {
    out.number(t.charge[i] / kGrainsPerGram, "0.000", 9);
    out.number(velocity, "0", 7);
    out.number(energy / 30860.0, "0", 8);
    out.number(t.pmax[i] * v.units.pressure_unit_factor / 1e6, "0", 8);
    out.number(t.pmuzzle[i] * v.units.pressure_unit_factor / 1e6, "0", 7);
  }
  out.number(burnt_percent(t.burnt[i]), "0.0", 9);
  if (v.times()) out.number(t.barrel_time[i] * 1000, "#0.000", 9);
}

void row(const View& v, std::size_t i, TableWriter& out) {
  const LoadTable& t = v.table;
  label(v, i, out);
  if (v.ratio())
    out.number(100 * (t.charge[i] / kGrainsPerGram) / (t.inputs.bulkdn * t.inputs.Veffm), "0", 5);
  if (t.velocity[i] == 0) {
    out.plain("  " + v.language.fastmsg("fldat11") + (v.units.imperial ? "" : " "));
  } else {
    figures(v, i, out);
    const std::string mark = mark_text(pressure_mark(t.pmax[i] / 1e6, t.inputs.zul_P), v.language);
    if (!mark.empty()) out.plain("  " + mark);
  }
  out.end_row();
}

TableWriter draw(const View& v, TableWriter::Form form) {
  TableWriter out(form);
  heads(v, out);
  for (std::size_t i = 0; i <= static_cast<std::size_t>(v.table.row_count); ++i) row(v, i, out);
  return out;
}

}  // namespace

Mark pressure_mark(double peak, double zul_P) {
  if (!(zul_P > 0)) return Mark::none;
  if (peak > zul_P - 5) return Mark::over_limit;
  return peak > 0.85 * zul_P ? Mark::near_limit : Mark::none;
}

std::string mark_text(Mark mark, const Language& language) {
  if (mark == Mark::none) return {};
  return language.fastmsg("fcrgvar", mark == Mark::over_limit ? 13 : 14);
}

TableText DrawLoadTableText(const LoadTable& table, const Language& language, const ViewUnits& units) {
  TableText view{language.fastmsg("fcrgvar", 12) + " Ternovale", {}};
  if (table.row_count == 0)
    view.text = language.fastmsg("fcrgvar", 6) + " ";
  else
    draw({table, language, units}, TableWriter::Form::columns).give(view);
  return view;
}

std::string load_table_tsv(const LoadTable& table, const Language& language, const ViewUnits& units) {
  return table.row_count == 0 ? "" : draw({table, language, units}, TableWriter::Form::tabs).text();
}

}  // namespace tv
