#include "tables/table_text.h"
#include "tables/table_writer.h"

namespace tv {
namespace {

struct View {
  const LoadTable& table;
  const Language& language;
  ViewUnits units;
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

// What the table is of, and its step.
void head_lines(const View& v, TableWriter& out) {
  const LoadTable& t = v.table;
  const auto say = [&v](int n) { return v.language.fastmsg("fcrgvar", n); };
  out.block(CartridgeDataBlock(t.inputs.block, BlockKind::load_table, v.language));
  out.line(say(0));
  out.line(say(1) + format_pattern(t.step, "0.0##") + say(2));
  out.line(say(3));
  if (!(t.inputs.zul_P > 0)) out.line(v.language.fastmsg("fwarn3"));
}

void heads(const View& v, TableWriter& out) {
  const auto say = [&v](int n) { return v.language.fastmsg("fcrgvar", n); };
  out.line();
  head_lines(v, out);
  out.line();
  out.column_head(say(v.ratio() ? 4 : 5) + (v.times() ? " " + v.language.fastmsg("fbtim") : ""));
  out.column_head(unit_words(units_line(v), v.language));
  out.line();
}

// The lines above the rows of the burn rate.
void lines_above(const View& v, std::size_t i, TableWriter& out) {
  const auto say = [&v](int n) { return v.language.fastmsg("fcrgvar", n); };
  const std::string tolerance = format_pattern(v.table.batols, "0");
  if (i == LoadTable::kLadder) {
    out.line();
    out.line(say(7) + tolerance + say(8));
    out.line(say(9) + tolerance + say(10));
  } else if (i > LoadTable::kLadder) {
    out.line(say(11) + tolerance + say(10));
  }
}

TableWriter draw(const View& v) {
  const TableData view = load_table_data(v.table, v.units);
  TableWriter out;
  heads(v, out);
  for (std::size_t i = 0; i < view.rows.size(); ++i) {
    const TableRow& row = view.rows[i];
    lines_above(v, i, out);
    out.plain(row.name);
    out.figures(view.columns, row);
    if (!row.has_figures()) out.plain("  " + v.language.fastmsg(row.reason) + (v.units.imperial ? "" : " "));
    out.mark(row.mark, v.language);
    out.end_row();
  }
  return out;
}

}  // namespace

TableText DrawLoadTableText(const LoadTable& table, const Language& language, const ViewUnits& units) {
  const std::string caption = language.fastmsg("fcrgvar", 12) + " Ternovale";
  if (table.row_count == 0)
    return {caption, language.fastmsg("fcrgvar6") + "\r\n" + language.fastmsg("notable0") + "\r\n"};
  return draw({table, language, units}).table_text(caption);
}

std::string load_table_head(const LoadTable& table, const Language& language) {
  TableWriter out;
  head_lines({table, language, {}}, out);
  return out.text();
}

std::string load_table_tsv(const LoadTable& table, const Language& language, const ViewUnits& units) {
  return table_tsv(load_table_data(table, units), language);
}

}  // namespace tv
