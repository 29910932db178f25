// A chronograph's export as the program reads it.
#include <algorithm>

#include <CLI/CLI.hpp>

#include "cli/measure.h"
#include "session/measured_read.h"
#include "session/prediction.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kRoles[] = {"none",   "shot",   "velocity", "pressure",
                                  "charge", "series", "excluded"};  // by ColumnRole

Json unit_json(CellUnit unit) {
  if (unit == CellUnit::none) return nullptr;
  return unit == CellUnit::fps ? "fps" : "mps";
}

Json series_json(const MeasuredSeries& series) {
  Json velocities = Json::array(), excluded = Json::array();
  for (std::size_t i = 0; i < series.shots.size(); ++i) {
    velocities.push_back(series.shots[i].velocity);
    if (series.shots[i].excluded) excluded.push_back(i);
  }
  const SampleFigures f = velocity_figures(series);
  const bool some = f.count > 0, spread = f.has_spread();
  return {{"name", series.name},
          {"charge_grains", series.charge_gr > 0 ? Json(series.charge_gr) : Json()},
          {"velocity", std::move(velocities)},
          {"excluded", std::move(excluded)},
          {"count", f.count},
          {"mean", some ? Json(f.mean) : Json()},
          {"sd", spread ? Json(f.sd) : Json()},
          {"es", spread ? Json(f.es) : Json()},
          {"ci95", spread ? Json({f.low, f.high}) : Json()}};
}

Json strings_json(const ChronographRead& read) {
  Json series = Json::array(), columns = Json::array();
  for (const MeasuredSeries& one : read.series) series.push_back(series_json(one));
  for (const ColumnFound& column : read.columns)
    columns.push_back({{"heading", column.heading}, {"role", kRoles[static_cast<std::size_t>(column.role)]}});
  return {{"series", std::move(series)},
          {"unit_read", unit_json(read.unit_read)},
          {"columns", std::move(columns)},
          {"in_doubt", read.in_doubt}};
}

std::string strings_text(const Session& s, const ChronographRead& read) {
  std::string text;
  const auto line = [&](const char* key, const std::string& value) {
    text += "  " + pad_right(s.language.text("frmMeas", key), 40) + value + "\n";
  };
  for (const MeasuredSeries& series : read.series) {
    text += series.name;
    if (series.charge_gr > 0) text += ", " + format_number(series.charge_gr, "0.0##") + " gr";
    text += "\n";
    const SampleFigures f = velocity_figures(series);
    line("mes_n", std::to_string(f.count));
    if (f.count > 0) line("mes_mean", velocity_text(s, f.mean, 1));
    if (!f.has_spread()) continue;
    line("mes_sd", velocity_text(s, f.sd, 1));
    line("mes_es", velocity_text(s, f.es, 1));
    line("mes_ci", velocity_text(s, f.low, 1) + " ... " + velocity_text(s, f.high, 1));
  }
  return text;
}

// The column that the user names takes the place of those that were found.
std::vector<ColumnRole> told_roles(const std::string& bytes, const StringsArgs& args) {
  if (!(args.column >= 1)) return {};
  std::vector<ColumnRole> roles;
  for (const ColumnFound& column : read_chronograph(bytes).columns)
    roles.push_back(column.role == ColumnRole::velocity ? ColumnRole::none : column.role);
  const auto at = static_cast<std::size_t>(args.column);
  roles.resize(std::max(roles.size(), at), ColumnRole::none);
  roles[at - 1] = ColumnRole::velocity;
  return roles;
}

struct MeasuredArgs {
  StringsArgs strings;
  std::string format = "text", output;
};

int measured_command(const Session& s, const Console& console, const MeasuredArgs& args) {
  keep_inputs(s, args.output, {args.strings.file});
  const ChronographRead read = read_strings(s, console, args.strings);
  deliver(console, args.output,
          args.format == "json" ? json_text(strings_json(read)) : strings_text(s, read));
  return kDone;
}

}  // namespace

void add_strings_options(CLI::App& command, StringsArgs& args) {
  command.add_option("--unit", args.unit, "of the velocities, whatever the file says")
      ->check(CLI::IsMember({"mps", "fps"}));
  add_number(command, "--column", args.column, 1, 1000, "of the velocities, counted from 1");
}

ChronographRead read_strings(const Session& s, const Console& console, const StringsArgs& args) {
  const FileRead file = read_input(console, args.file);
  if (file.failure) throw Stop{kFileTrouble, args.file + ": " + s.language.failure(file.failure)};
  const CellUnit unit = args.unit.empty()    ? CellUnit::none
                        : args.unit == "fps" ? CellUnit::fps
                                             : CellUnit::mps;
  ChronographRead read = read_chronograph(file.bytes, {unit, told_roles(file.bytes, args)});
  if (read.error != Unread::none)
    throw Stop{kFileTrouble, args.file + ": " + unread_text(s, read.error, read.line)};
  return read;
}

CliCommand bind_measured(CLI::App& program) {
  CLI::App* command = program.add_subcommand("measured", "read a chronograph's export");
  auto args = std::make_shared<MeasuredArgs>();
  command->add_option("FILE", args->strings.file, "text or .xlsx; - for standard input")->required();
  add_strings_options(*command, args->strings);
  command->add_option("--format", args->format, "of the answer")
      ->check(CLI::IsMember({"text", "json"}))
      ->capture_default_str();
  command->add_option("--output", args->output, "write the answer into this FILE; - for standard output");
  return {command, [args](Session& s, CliUser&, const Console& console) {
            return measured_command(s, console, *args);
          }};
}

}  // namespace tv
