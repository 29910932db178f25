#include <algorithm>
#include <utility>

#include "tables/table_text.h"
#include "tables/table_writer.h"

namespace tv {
namespace {

constexpr const char* kRule = "---------------------------------  ";  // under the names

struct View {
  const PowderTable& table;
  const Language& language;
  bool imperial;
  int strategy() const { return table.criteria.strategy; }
  bool times() const { return table.inputs.schrit < 2; }
  std::string say(int n) const { return language.fastmsg("fproptab", n); }
  std::string word(const char* key) const { return language.fastmsg(key); }
};

// "<psi> psi = <MPa>", whole numbers with a leading blank, the words between from the language.
std::string both_pressures(const View& v, double p) {
  return str(whole_psi(p)) + v.word("ftable24") + str(int_of(p));
}

std::string fps(double velocity) { return format_pattern(velocity * kFeetPerMetre, "0"); }

void second_level_lines(const View& v, TableWriter& out) {
  const double share = v.table.criteria.lod2nd;
  const std::string unit = " " + v.word("fmpa") + ".";
  out.line(v.say(5));
  out.line(str(int_of((1 - share) * 100.01)) + v.say(6) + both_pressures(v, v.table.p * share) + unit);
  out.line(v.say(7) + both_pressures(v, v.table.p) + unit);
}

void chamber_lines(const View& v, TableWriter& out) {
  const double velocity = v.table.criteria.veltab;
  out.line(v.say(11));
  out.line(v.say(12));
  out.line(v.say(13) + both_pressures(v, v.table.p) + v.word("ftable23") + fps(velocity) + " " +
           v.word("ffps") + " " + v.word("ftable7") + str(int_of(velocity)) + " " + v.word("fmps") +
           v.word("ftable30"));
  for (const int n : {15, 16, 17}) out.line(v.say(n));
}

void criterion_lines(const View& v, TableWriter& out) {
  const PowderCriteria& c = v.table.criteria;
  if (v.strategy() == 8) return chamber_lines(v, out);
  out.line(v.say(1));
  const auto percent = [](double x) { return str(int_of(x)) + " %"; };
  const auto time = [&](int n) {
    out.line(v.say(n) + " " + format_pattern(v.table.target_time * 1000, "0.000") + v.word("ftable18"));
  };
  switch (v.strategy()) {
    case 1:
      out.line(v.say(3) + percent(c.lratio));
      break;
    case 3:
      second_level_lines(v, out);
      break;
    case 4:
      out.line(v.say(8) + " " + fps(c.veltab) + v.word("ftable14") + str(int_of(c.veltab)) + " m/s");
      break;
    case 5:
      time(9);
      break;
    case 6:
      time(10);
      break;
    case 7:
      out.line(v.say(4) + percent(c.hratio));
      break;
    default:
      out.line(v.say(2) + both_pressures(v, v.table.p) + " MPa");
      if (v.strategy() == 2) out.line(v.word("ftable6") + percent(c.lratio));
  }
}

// What to think of the charges below.
void caution_lines(const View& v, TableWriter& out) {
  for (int n = 18; n <= 23 && v.strategy() != 8; ++n) out.line(v.say(n));
  out.line();
}

// How many powders are not there, and which test left them out. A table with figures tells only of the
// loading ratio; where nothing fits, each reason counts.
void left_out_lines(const View& v, TableWriter& out) {
  const PowderTable& t = v.table;
  if (t.rejected_count > 0)
    out.line(str(t.rejected_count) + " " + v.say(24) + " " + str(t.criteria.lv_min) + v.say(25));
  if (std::ranges::any_of(t.rows, [&t](const PowderRow& row) { return shows_figures(t, row); })) return;
  const auto rows_of = [&t](RowStatus status) {
    return static_cast<int>(std::ranges::count(t.rows, status, &PowderRow::status));
  };
  const std::pair<int, int> others[] = {
      {32, t.outside_band}, {33, rows_of(RowStatus::no_density)}, {34, rows_of(RowStatus::not_converged)}};
  for (const auto& [text, count] : others) {
    if (count > 0) out.line(str(count) + " " + v.say(text));
  }
}

struct Heads {
  int titles;  // number of the line of column titles
  const char *imperial, *metric;
  const char* rule;
  bool times;
};
constexpr Heads kSecondLevel{
    26,
    "                                      %     Grains    Gramm    fps     %       psi      Grains    fps",
    "                                      %     Grains    Gramm    m/s     %       MPa      Gramm     m/s",
    "---------------------------------------    -------------------------", false};
constexpr Heads kChamber{27,
                         "                                      %     Grains    Gramm   fps     %       psi  "
                         "   psi   gr.H2O    in.    ",
                         "                                      %     Grains    Gramm   m/s     %       MPa  "
                         "  MPa     ccm      mm     ",
                         "-----------------------------------------------------------------------", true};
constexpr Heads kOthers{
    28, "                                      %     Grains    Gramm   fps     %       psi     psi   ",
    "                                      %     Grains    Gramm   m/s     %       MPa     MPa   ",
    "---------------------------------------------------------", true};

void column_heads(const View& v, TableWriter& out) {
  const Heads& heads = v.strategy() == 3 ? kSecondLevel : v.strategy() == 8 ? kChamber : kOthers;
  const bool times = heads.times && v.times();
  out.column_head(v.say(heads.titles) + (times ? "  " + v.word("fbtim") : ""));
  out.column_head(unit_words(v.imperial ? heads.imperial : heads.metric, v.language) + (times ? " ms" : ""));
  out.column_head(std::string(kRule) + heads.rule + (times ? "--------" : ""));
}

// What the table is of, what was asked for and what left powders out.
void head_lines(const View& v, TableWriter& out) {
  const PowderTable& t = v.table;
  out.block(CartridgeDataBlock(t.inputs.block, BlockKind::powder_table, v.language));
  out.line();
  criterion_lines(v, out);
  caution_lines(v, out);
  left_out_lines(v, out);
  if (t.cancelled) out.line(v.say(14));
  if (!(t.inputs.zul_P > 0)) out.line(v.word("fwarn3"));
}

TableWriter draw(const View& v) {
  const TableData view = powder_table_data(v.table, v.imperial);
  TableWriter out;
  head_lines(v, out);
  column_heads(v, out);
  for (const TableRow& row : view.rows) {
    out.left(row.name, 35);
    out.figures(view.columns, row);
    if (!row.has_figures()) out.plain("  " + v.language.fastmsg(row.reason) + " ");
    out.mark(row.mark, v.language);
    out.end_row();
  }
  return out;
}

TableWriter draw_none(const View& v) {
  TableWriter out;
  if (v.table.cancelled) {
    out.line(v.say(14));
  } else if (v.table.finished) {
    out.line(v.say(29));
    out.line();
    criterion_lines(v, out);
    out.line();
    left_out_lines(v, out);
  } else {
    out.line(v.word("fcrgvar6"));
    out.line(v.word("notable0"));
  }
  return out;
}

}  // namespace

TableText DrawPowderTableText(const PowderTable& table, const Language& language, bool imperial) {
  const std::string caption = language.fastmsg("fproptab", 0) + " Ternovale";
  const View view{table, language, imperial};
  return (table.rows.empty() ? draw_none(view) : draw(view)).table_text(caption);
}

std::string powder_table_head(const PowderTable& table, const Language& language) {
  TableWriter out;
  head_lines({table, language, false}, out);
  return out.text();
}

std::string powder_table_tsv(const PowderTable& table, const Language& language, bool imperial) {
  return table_tsv(powder_table_data(table, imperial), language);
}

}  // namespace tv
