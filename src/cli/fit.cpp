// The powder of a load fitted to what was measured. Nothing is stored.
#include <memory>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "calculators/powder_fit.h"
#include "cli/measure.h"
#include "session/prediction.h"
#include "session/run.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

struct FitCommandArgs {
  LoadArgs load;
  std::vector<std::string> points;  // "CHARGE=VELOCITY[,SD][mps|fps]", charge in grains
  StringsArgs strings;
  double charge_gr = 0;  // of strings that tell none; 0: they do not count
  std::string numbers = "auto";
};

double point_number(std::string_view text, const std::string& point) {
  const NumberRead read = read_number_checked(std::string(trim(text)));
  if (!read.whole || !(read.value > 0)) throw Stop{kWrongUsage, "--point: no number above 0: " + point};
  return read.value;
}

// "41.5=2650,12fps"
FitPoint point_of(const std::string& point) {
  const auto equals = point.find('=');
  if (equals == std::string::npos) throw Stop{kWrongUsage, "--point: not CHARGE=VELOCITY: " + point};
  std::string_view rest = std::string_view(point).substr(equals + 1);
  double unit = 1;
  if (rest.ends_with("fps")) unit = 1 / kFeetPerMetre;
  if (rest.ends_with("fps") || rest.ends_with("mps")) rest.remove_suffix(3);
  const auto comma = rest.find(',');
  FitPoint p{point_number(point.substr(0, equals), point), unit * point_number(rest.substr(0, comma), point)};
  if (comma != std::string_view::npos) p.sd = unit * point_number(rest.substr(comma + 1), point);
  return p;
}

std::vector<FitPoint> points_of(const Session& s, const Console& console, const FitCommandArgs& args) {
  std::vector<FitPoint> points;
  for (const std::string& point : args.points) points.push_back(point_of(point));
  if (!points.empty()) return points;
  std::vector<MeasuredSeries> strings = s.load.measured;
  if (!args.strings.file.empty()) strings = read_strings(s, console, args.strings).series;
  for (MeasuredSeries& series : strings)
    if (!(series.charge_gr > 0)) series.charge_gr = args.charge_gr;
  return fit_points(strings);
}

FitNumbers numbers_of(const std::string& word) {
  return word == "1" ? FitNumbers::one : word == "2" ? FitNumbers::two : FitNumbers::automatic;
}

constexpr const char* kVerdicts[] = {"determined", "barely", "undetermined"};  // by FitVerdict
constexpr const char* kVerdictTexts[] = {"fit_determined", "fit_barely", "fit_undetermined"};

std::string verdict_text(const Session& s, const PowderFit& fit) {
  return s.language.text("frmFit", kVerdictTexts[static_cast<std::size_t>(fit.verdict)]);
}

bool has_values(const PowderFit& fit) { return fit.verdict != FitVerdict::undetermined; }

// The load of the run with the fitted numbers.
Json fitted_load(const Session& s, const PowderFit& fit) {
  Json load = load_json(s);
  for (const FittedNumber& number : fit.fitted)
    load[number.key] = load_value_text(*load_key(number.key), fit.state, s.shown.load);
  if (has_values(fit)) load["abkof1"] = load_value_text(*load_key("abkof1"), fit.state, s.shown.load);
  return load;
}

Json figures_json(const ShotFigures& figures) {
  return {{"pMax", figures.pMax}, {"vMuzzle", figures.vMuzzle}};
}

Json fit_json(const Session& s, const PowderFit& fit) {
  Json fitted = Json::array();
  for (const FittedNumber& n : fit.fitted)
    fitted.push_back({{"key", n.key}, {"value", n.value}, {"stderr", n.error}, {"ci95", {n.low, n.high}}});
  return {{"fitted", std::move(fitted)},
          {"correlation", fit.fitted.size() > 1 ? Json(fit.correlation) : Json()},
          {"verdict", kVerdicts[static_cast<std::size_t>(fit.verdict)]},
          {"text", verdict_text(s, fit)},
          {"note", s.language.text("frmFit", "fit_pressure")},
          {"residuals", fit.residuals},
          {"before", figures_json(fit.before)},
          {"after", has_values(fit) ? figures_json(fit.after) : Json()},
          {"load", fitted_load(s, fit)}};
}

std::string fit_text(const Session& s, const PowderFit& fit, std::span<const FitPoint> points) {
  std::string text = verdict_text(s, fit) + "\n\n";
  for (const FittedNumber& n : fit.fitted)
    text += fmt::format("{:<8}{:>10.5g}  \u00B1 {:.2g}  ({:.5g} ... {:.5g})\n", n.key, n.value, n.error,
                        n.low, n.high);
  if (fit.fitted.size() > 1)
    text += s.language.text("frmFit", "fit_corr") + ": " + format_number(fit.correlation, "0.00") + "\n";
  for (std::size_t i = 0; i < fit.residuals.size(); ++i)
    text += format_number(points[i].charge_gr, "0.0##") + " gr: " + velocity_text(s, points[i].velocity, 1) +
            ", " + format_pattern(fit.residuals[i], "+0.0;-0.0;0.0") + " m/s\n";
  if (!has_values(fit)) return text;
  return text + "\n" + pressure_text(s, fit.before.pMax) + " -> " + pressure_text(s, fit.after.pMax) + ", " +
         velocity_text(s, fit.before.vMuzzle) + " -> " + velocity_text(s, fit.after.vMuzzle) + "\n" +
         s.language.text("frmFit", "fit_pressure") + "\n";
}

// Of the load's own strings if neither points nor a file are given.
int fit_command(Session& s, CliUser& user, const Console& console, const FitCommandArgs& args) {
  run_load(s, user, console, args.load);
  if (!args.strings.file.empty()) keep_inputs(s, args.load.output, {args.strings.file});
  const std::vector<FitPoint> points = points_of(s, console, args);
  if (points.empty()) throw refused_by(s, 434, "fit");
  PowderFit fit = fit_powder(s.shown.state, points, numbers_of(args.numbers));
  if (!has_values(fit)) fit.fitted.clear();
  deliver(console, args.load.output,
          args.load.format == "json" ? json_text(fit_json(s, fit)) : fit_text(s, fit, points));
  return kDone;
}

}  // namespace

CliCommand bind_fit(CLI::App& program) {
  CLI::App* command = program.add_subcommand("fit", "fit the powder of a load to measured velocities");
  auto args = std::make_shared<FitCommandArgs>();
  add_load_options(*command, args->load, {"text", "json"});
  auto* points =
      command->add_option("--point", args->points, "CHARGE=VELOCITY[,SD][mps|fps], the charge in grains")
          ->allow_extra_args(false);
  command->add_option("--measured", args->strings.file, "chronograph's export")->excludes(points);
  add_strings_options(*command, args->strings);
  add_number(*command, "--charge", args->charge_gr, 0.1, 1543230, "grains, of strings that tell none");
  command->add_option("--numbers", args->numbers, "how many are fitted")
      ->check(CLI::IsMember({"1", "2", "auto"}))
      ->capture_default_str();
  return {command, telling(args, fit_command)};
}

}  // namespace tv
