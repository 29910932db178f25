// How sure the prediction of a load is: its range by the spread of the inputs, and its arithmetic beside an
// integration.
#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/measure.h"
#include "session/prediction.h"
#include "session/run.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

struct BandArgs {
  LoadArgs load;
  std::vector<std::string> spreads;  // "KEY=PERCENT"
  double draws = 2000;
  std::uint64_t seed = 1;
};
struct CrossCheckArgs {
  LoadArgs load;
};

std::size_t input_of(std::string_view key, const std::string& spread) {
  const auto inputs = band_inputs();
  const auto at = std::ranges::find_if(inputs, [&](const BandInput& input) {
    return same_fold(key, input.key) || same_fold(key, input.field);
  });
  if (at != inputs.end()) return static_cast<std::size_t>(at - inputs.begin());
  std::string keys;
  for (const BandInput& input : inputs) keys += std::string(" ") + input.key;
  throw Stop{kWrongUsage, "--spread: no such input: " + spread + "; there are" + keys};
}

void take_spread(Session& s, const std::string& spread) {
  const auto equals = spread.find('=');
  if (equals == std::string::npos) throw Stop{kWrongUsage, "--spread: not KEY=PERCENT: " + spread};
  const std::size_t input = input_of(spread.substr(0, equals), spread);
  const NumberRead percent = read_number_checked(spread.substr(equals + 1));
  if (!percent.whole || percent.value < 0 || percent.value > 50)
    throw Stop{kWrongUsage, "--spread: 0 to 50 percent: " + spread};
  spread_of(s.options, input) = percent.value * band_percent(s.shown.state, input);
}

Json figure_json(const BandFigure& figure) {
  Json quantiles = Json::object();
  for (std::size_t i = 0; i < kBandShares.size(); ++i)
    quantiles[format_number(kBandShares[i], "0.#")] = figure.q[i];
  return {{"value", figure.value}, {"q", std::move(quantiles)}};
}

// The spread in percent of the load's value, as --spread takes it.
Json effect_json(const Session& s, const BandEffect& effect) {
  const double percent = band_percent(s.shown.state, effect.input);
  const BandInput& input = band_inputs()[effect.input];
  return {{"key", input.key},        {"spread", percent > 0 ? Json(effect.spread / percent) : Json()},
          {"amount", effect.spread}, {"unit", input.unit},
          {"pMax", effect.pMax},     {"vMuzzle", effect.vMuzzle}};
}

Json band_json(const Session& s, const Band& band) {
  Json effects = Json::array();
  for (const BandEffect& effect : band.effects) effects.push_back(effect_json(s, effect));
  return {{"pMax", figure_json(band.pMax)},
          {"vMuzzle", figure_json(band.vMuzzle)},
          {"over_limit", band.over_limit ? Json(*band.over_limit) : Json()},
          {"effects", std::move(effects)},
          {"draws", band.draws},
          {"failed", band.failed}};
}

std::string band_text(const Session& s, const Band& band) {
  const auto word = [&](const char* key) { return s.language.text("frmBand", key); };
  std::string text = word("band_pmax") + ": " + pressure_range_text(s, band.pMax) + "\n" + word("band_v") +
                     ": " + velocity_range_text(s, band.vMuzzle) + "\n" + word("band_over") + ": " +
                     over_limit_text(s, band) + "\n\n" + word("band_plot") + "\n";
  for (const BandEffect& effect : band.effects) {
    const BandInput& input = band_inputs()[effect.input];
    text += "  " + pad_right(word(input.field) + ", " + general(effect.spread) + " " + input.unit, 44) +
            pressure_text(s, effect.pMax) + ", " + velocity_text(s, effect.vMuzzle, 1) + "\n";
  }
  return text + "\n" + word("band_note") + "\n";
}

Json figures_json(const PeakAndMuzzle& f) { return {{"pMax", f.pMax}, {"vMuzzle", f.vMuzzle}}; }

std::string crosscheck_text(const Session& s, const CrossCheck& check) {
  const auto line = [&](const PeakAndMuzzle& f) {
    return pad_left(pressure_text(s, f.pMax), 12) + pad_left(velocity_text(s, f.vMuzzle, 1), 14) + "\n";
  };
  const auto word = [&](const char* key) { return pad_right(s.language.text("frmBand", key), 30); };
  return word("cross_closed") + line(check.closed) + word("cross_integrated") + line(check.integrated) +
         word("cross_diff") + cross_check_text(check) + "\n";
}

int band_command(Session& s, CliUser& user, const Console& console, const BandArgs& args) {
  run_load(s, user, console, args.load);
  for (const std::string& spread : args.spreads) take_spread(s, spread);
  const Band band = band_of_run(s, {static_cast<int>(args.draws), args.seed});
  deliver(console, args.load.output,
          args.load.format == "json" ? json_text(band_json(s, band)) : band_text(s, band));
  return kDone;
}

int crosscheck_command(Session& s, CliUser& user, const Console& console, const CrossCheckArgs& args) {
  run_load(s, user, console, args.load);
  const auto check = cross_check_of_run(s);
  if (!check) throw refused_by(s, 475, "crosscheck");
  deliver(console, args.load.output,
          args.load.format == "json" ? json_text({{"closed", figures_json(check->closed)},
                                                  {"integrated", figures_json(check->integrated)},
                                                  {"percent", figures_json(check->percent)}})
                                     : crosscheck_text(s, *check));
  return kDone;
}

}  // namespace

void run_load(Session& s, CliUser& user, const Console& console, const LoadArgs& args) {
  take_load(s, user, console, args);
  SetDisplayMode(s, 6);
  if (recalculate(s) == 0) throw refusal_of(s, user);
  save_load(s, args);
}

Refusal refused_by(const Session& s, int message, const std::string& stage) {
  return {std::to_string(message) + "msg", s.language.msg(message), stage, {}, {}};
}

CliCommand bind_band(CLI::App& program) {
  CLI::App* command = program.add_subcommand("band", "the range of a prediction by the spread of its inputs");
  auto args = std::make_shared<BandArgs>();
  add_load_options(*command, args->load, {"text", "json"});
  command->add_option("--spread", args->spreads, "KEY=PERCENT: one standard deviation of an input")
      ->allow_extra_args(false);
  add_number(*command, "--draws", args->draws, 10, 1000000, "number of shots, 2000 unless told");
  command->add_option("--seed", args->seed, "of the random numbers")->capture_default_str();
  return {command, telling(args, band_command)};
}

CliCommand bind_crosscheck(CLI::App& program) {
  CLI::App* command = program.add_subcommand("crosscheck", "a shot beside an integration of its equations");
  auto args = std::make_shared<CrossCheckArgs>();
  add_load_options(*command, args->load, {"text", "json"});
  return {command, telling(args, crosscheck_command)};
}

}  // namespace tv
