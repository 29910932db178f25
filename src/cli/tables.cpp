// The load table and the powder table from the command line.
#include <algorithm>

#include <fmt/format.h>

#include "cli/command.h"
#include "output/spreadsheet.h"
#include "screens/output_window.h"
#include "session/data_sets.h"
#include "session/entry.h"
#include "session/load_steps.h"
#include "session/run.h"
#include "tables/sort_table.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

std::string label(const LoadTable& table, int row) {
  if (row >= LoadTable::kLadder) return row == LoadTable::kLadder ? "+Ba" : "-Ba";
  return format_pattern((row - LoadTable::kNominal) * table.step, "+00.0;-00.0");
}

Json load_table_json(const Session& s, const CliUser& user) {
  const LoadTable& t = s.tables.load;
  const TableData data = load_table_data(t, {});
  Json rows = Json::array();
  for (int i = 0; i <= t.row_count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    rows.push_back({{"label", label(t, i)},
                    {"charge", t.charge[at]},
                    {"pmax", t.pmax[at]},
                    {"pmuzzle", t.pmuzzle[at]},
                    {"burnt", t.burnt[at]},
                    {"barrel_time", t.barrel_time[at]},
                    {"velocity", t.velocity[at]},
                    {"ok", t.velocity[at] != 0},
                    {"mark", mark_key(data.rows[at].mark)}});
  }
  Json json = answer_head(s);
  json["step"] = t.step;
  json["ba_tolerance"] = t.batols;
  json["rows"] = std::move(rows);
  json["warnings"] = user.warning_keys();
  return json;
}

Json powder_table_json(const Session& s, const CliUser& user) {
  const TableData data = powder_table_data(s.tables.powder, false);
  Json rows = Json::array();
  for (std::size_t i = 0; i < data.rows.size(); ++i) {
    const PowderRow& row = s.tables.powder.rows[i];
    Json cells = Json::array({row.name});
    for (int column = 1; column < 13; ++column) cells.push_back(row.cell(column));
    rows.push_back({{"cells", std::move(cells)},
                    {"status", status_name(row.status)},
                    {"mark", mark_key(data.rows[i].mark)}});
  }
  Json json = answer_head(s);
  json["strategy"] = s.tables.powder.criteria.strategy;
  json["rows"] = std::move(rows);
  json["rejected_count"] = s.tables.powder.rejected_count;
  json["warnings"] = user.warning_keys();
  return json;
}

void deliver_table(Session& s, const Console& console, const LoadArgs& args,
                   Json (*json)(const Session&, const CliUser&), const CliUser& user) {
  const auto data = output_export(s);
  if (args.format == "json") return deliver(console, args.output, json_text(json(s, user)));
  if (args.format == "text") return deliver(console, args.output, output_text(s));
  if (!data) throw Stop{kRefused, "the table has no rows to export"};
  if (args.format == "csv") return deliver(console, args.output, csv_text(*data));
  if (const int failure = write_xlsx(*data, args.output))
    throw Stop{kFileTrouble, args.output + ": " + s.language.failure(failure)};
}

void need_a_file(const LoadArgs& args) {
  if (args.format == "xlsx" && args.output.empty())
    throw Stop{kWrongUsage, "--format xlsx needs --output FILE"};
}

void set_steps(Session& s, const LoadTableArgs& args) {
  if (args.step_percent > 0) SetLoadTableStep(s, args.step_percent);
  if (args.step_grains > 0) {
    s.options.ldweight = true;
    s.options.ldperc = false;
    s.tables.weight_step = args.step_grains;
  }
  if (args.ba_tolerance > 0) SetBaTolerance(s, args.ba_tolerance);
}

// By the name of its sort entry, or by its number.
int sort_column(const std::string& text) {
  for (const SortKeyEntry& entry : sort_keys())
    if (text == entry.name || text == std::to_string(entry.column)) return entry.column;
  std::string names;
  for (const SortKeyEntry& entry : sort_keys()) names += fmt::format(" {}={}", entry.name, entry.column);
  throw Stop{kWrongUsage, "--sort: no such column: " + text + "; there are" + names};
}

}  // namespace

int load_table_command(Session& s, CliUser& user, const Console& console, const LoadTableArgs& args) {
  need_a_file(args.load);
  take_load(s, args.load);
  set_steps(s, args);
  SetDisplayMode(s, -1);
  if (recalculate(s) == 0) return tell_refusal(s, user, console, args.load);
  deliver_table(s, console, args.load, load_table_json, user);
  return kDone;
}

int powder_table_command(Session& s, CliUser& user, const Console& console, const PowderTableArgs& args) {
  need_a_file(args.load);
  if (!args.sort.empty()) s.tables.sort.column = sort_column(args.sort);
  if (!args.sort.empty() || args.descending) s.tables.sort.ascending = !args.descending;
  take_load(s, args.load);
  if (!read_data_set(s, RecordKind::powders, args.powders, true))
    throw Stop{kFileTrouble, args.powders + ": could not be read"};
  s.tables.strategy = args.strategy;
  // The criteria's own button checks them and calculates.
  press(s, "FormPsel", "okproptab");
  if (!s.tables.powder.finished) return tell_refusal(s, user, console, args.load);
  deliver_table(s, console, args.load, powder_table_json, user);
  return kDone;
}

}  // namespace tv
