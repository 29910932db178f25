// The load table and the powder table from the command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include <fmt/format.h>

#include "cli/load.h"
#include "data/record_file.h"
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

struct LoadTableArgs {
  LoadArgs load;
  double step_percent = 0, step_grains = 0;  // 0: as in the settings
  double ba_tolerance = 0;
};

struct PowderTableArgs {
  LoadArgs load;
  std::string powders, sort, strategy;
  bool descending = false;
};

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

// A workbook is written as a file; for standard output by way of one that is gone at once.
void deliver_workbook(const Session& s, const Console& console, const ExportData& data,
                      const std::string& output) {
  const bool stream = output == "-";
  std::string file = output;
  if (stream) {
    std::string folder = (std::filesystem::temp_directory_path() / "ternovale-XXXXXX").string();
    if (!mkdtemp(folder.data())) throw Stop{kFileTrouble, folder + ": could not be made"};
    file = folder + "/table.xlsx";
  }
  const int failure = write_xlsx(data, file);
  const FileRead read = stream ? read_file(file) : FileRead{};
  if (stream) std::filesystem::remove_all(file_folder(file));
  if (failure) throw Stop{kFileTrouble, file + ": " + s.language.failure(failure)};
  if (stream) deliver(console, output, read.bytes);
}

void deliver_table(Session& s, const Console& console, const LoadArgs& args,
                   Json (*json)(const Session&, const CliUser&), const CliUser& user) {
  const auto data = output_export(s);
  if (args.format == "json") return deliver(console, args.output, json_text(json(s, user)));
  if (args.format == "text") return deliver(console, args.output, output_text(s));
  if (!data) throw Stop{kRefused, "the table has no rows to export"};
  if (args.format == "csv") return deliver(console, args.output, csv_text(*data));
  deliver_workbook(s, console, *data, args.output);
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
  if (args.ba_tolerance > 0) SetBaTolerance(s, static_cast<int>(args.ba_tolerance));
}

// By the name of its sort entry, or by its number.
int sort_column(const std::string& text) {
  for (const SortKeyEntry& entry : sort_keys())
    if (text == entry.name || text == std::to_string(entry.column)) return entry.column;
  std::string names;
  for (const SortKeyEntry& entry : sort_keys()) names += fmt::format(" {}={}", entry.name, entry.column);
  throw Stop{kWrongUsage, "--sort: no such column: " + text + "; there are" + names};
}

// What is fitted, by the name that --help prints or by its number.
constexpr const char* kStrategyNames[] = {"pressure",      "loading-ratio", "both",
                                          "two-pressures", "velocity",      "barrel-time",
                                          "rise-time",     "case-fill",     "chamber"};
static_assert(std::size(kStrategyNames) == kStrategies);

std::string strategy_help() {
  std::string text = "what is fitted:";
  for (int i = 0; i < kStrategies; ++i)
    text += fmt::format("{} {}={}", i > 0 ? "," : "", i, kStrategyNames[static_cast<std::size_t>(i)]);
  return text;
}

int strategy_number(const std::string& text) {
  for (int i = 0; i < kStrategies; ++i)
    if (text == std::to_string(i) || text == kStrategyNames[static_cast<std::size_t>(i)]) return i;
  throw Stop{kWrongUsage, "--strategy: " + text + " is none; " + strategy_help()};
}

// By its extension and by the tag of its head, where it has one.
void refuse_other_kind(const std::string& file) {
  const RecordKindInfo* kind = record_kind_of_file(file);
  const FileRead read = read_file(file);
  const std::string head = lower(read.bytes.substr(0, 4096));
  const RecordKindInfo& powders = record_kind(RecordKind::powders);
  for (int i = 0; i < kRecordKinds; ++i) {
    const RecordKindInfo& other = record_kind(static_cast<RecordKind>(i));
    if (other.kind != powders.kind && other.search_tag[0] != '\0' &&
        head.find(lower(other.search_tag)) != std::string::npos &&
        head.find(lower(powders.search_tag)) == std::string::npos)
      kind = &other;
  }
  if (!kind || kind->kind != RecordKind::powders)
    throw Stop{kFileTrouble,
               file + ": is no record file of powders" + (kind ? std::string(" but ") + kind->tag : "")};
}

// --- the two commands

int run_load_table(Session& s, CliUser& user, const Console& console, const LoadTableArgs& args) {
  need_a_file(args.load);
  take_load(s, user, console, args.load);
  set_steps(s, args);
  SetDisplayMode(s, -1);
  if (recalculate(s) == 0) throw refusal_of(s, user);
  save_load(s, args.load);
  deliver_table(s, console, args.load, load_table_json, user);
  return kDone;
}

int run_powder_table(Session& s, CliUser& user, const Console& console, const PowderTableArgs& args) {
  need_a_file(args.load);
  s.tables.strategy = strategy_number(args.strategy);
  if (!args.sort.empty()) s.tables.sort.column = sort_column(args.sort);
  if (!args.sort.empty() || args.descending) s.tables.sort.ascending = !args.descending;
  keep_inputs(s, args.load.output, {args.powders});
  take_load(s, user, console, args.load);
  if (file_exists(args.powders)) refuse_other_kind(args.powders);
  if (!read_data_set(s, RecordKind::powders, args.powders, true))
    throw Stop{kFileTrouble, args.powders + ": could not be read"};
  // The criteria's own button checks them and calculates.
  press(s, "FormPsel", "okproptab");
  if (!s.tables.powder.finished) throw refusal_of(s, user);
  save_load(s, args.load);
  deliver_table(s, console, args.load, powder_table_json, user);
  return kDone;
}

}  // namespace

CliCommand bind_load_table(CLI::App& program) {
  CLI::App* command = program.add_subcommand("load-table", "the load with less and more powder");
  auto args = std::make_shared<LoadTableArgs>();
  add_load_options(*command, args->load, {"text", "json", "csv", "xlsx"});
  add_number(*command, "--step-percent", args->step_percent, 0.1, 9, "of the charge, 0.1 to 9");
  add_number(*command, "--step-grains", args->step_grains, 0.1, 5, "0.1 to 5");
  command->get_option("--step-grains")->excludes(command->get_option("--step-percent"));
  add_number(*command, "--ba-tolerance", args->ba_tolerance, 1, 99, "of the burn rate, percent");
  return {command, telling(args, run_load_table)};
}

CliCommand bind_powder_table(CLI::App& program) {
  CLI::App* command =
      program.add_subcommand("powder-table", "the powders of a file, each fitted to a target");
  auto args = std::make_shared<PowderTableArgs>();
  add_load_options(*command, args->load, {"text", "json", "csv", "xlsx"});
  command->add_option("--powders", args->powders, "record file")->required();
  command->add_option("--strategy", args->strategy, strategy_help())->required();
  command->add_option("--sort", args->sort, "column, by name or number");
  command->add_flag("--descending", args->descending);
  return {command, telling(args, run_powder_table)};
}

}  // namespace tv
