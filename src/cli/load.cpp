#include "cli/load.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "cli/keys.h"
#include "data/record_file.h"
#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/input_check.h"
#include "session/loads.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "session/take_records.h"
#include "tables/fit.h"
#include "text/number.h"

namespace tv {
namespace {

// --- records

struct ListOfLoad {
  std::string_view key;
  RecordKind kind;
  void (*take)(Session&, int row);
};
constexpr ListOfLoad kLists[] = {{"pattyp", RecordKind::cartridges, take_cartridge},
                                 {"bultyp", RecordKind::bullets, take_bullet},
                                 {"pulver", RecordKind::powders, take_powder}};

void pick_record(Session& s, const ListOfLoad& list, const std::string& name) {
  const int row = s.set(list.kind).file.table.find(trim(name));
  if (row < 0) throw Refusal{"480msg", s.language.msg(480) + " " + name, "set", std::string(list.key), {}};
  list.take(s, row);
}

// Its records go before those of the list, so that a name that both have is that of the file.
void add_records(Session& s, const std::string& file) {
  const RecordKindInfo* kind = record_kind_of_file(file);
  if (!kind) throw Stop{kWrongUsage, "--records: " + file + ": not the extension of a record file"};
  RecordRead read = read_records(file, kind->kind, s.language.page(), s.options.sortvol);
  if (!read.ok()) throw Stop{kFileTrouble, file + ": " + s.language.failure(read.failure)};
  std::vector<Record>& rows = s.set(kind->kind).file.table.rows;
  rows.insert(rows.begin(), read.file.table.rows.begin(), read.file.table.rows.end());
  fill_lists(s, kind->kind);
}

// --- typed values

// A pressure that its field shows as 0 is one told in another unit.
constexpr double kLeastPascal = 1e4;
bool in_pascal(const KeyInfo& key) { return key.unit == std::string_view("Pa"); }
bool lost_in_pascal(const KeyInfo& key, double value) {
  return in_pascal(key) && value > 0 && value < kLeastPascal;
}
std::string typed_range(const KeyInfo& key, const Limits& range) {
  return in_pascal(key) ? "0, " + range_text({kLeastPascal, range.most}) : range_text(range);
}

[[noreturn]] void refuse_value(const Session& s, const KeyInfo& key, int message, const std::string& text) {
  const auto range = limits_of_key(s, key);
  const std::string told = range                          ? typed_range(key, *range)
                           : key.kind == KeyKind::flag    ? "0, 1"
                           : key.kind == KeyKind::derived ? ""
                                                          : "0 1 2 ...";
  throw Refusal{
      std::to_string(message) + "msg",
      fmt::format("{} {}={}{}{}", s.language.msg(message), key.key, text, told.empty() ? "" : "; ", told),
      "set", std::string(key.key), range};
}

constexpr int kOutside = 428, kDerivedKey = 481, kNoNumber = 482;

void set_flag(Session& s, const KeyInfo& key, const std::string& text) {
  static constexpr std::string_view kOn[] = {"1", "-1", "true"}, kOff[] = {"0", "false"};
  const std::string word = lower(trim(text));
  const bool on = std::ranges::find(kOn, word) != std::end(kOn);
  if (!on && std::ranges::find(kOff, word) == std::end(kOff)) refuse_value(s, key, kNoNumber, text);
  // The box of the coating changes the start pressure with it.
  if (key.load->load_flag == &LoadData::fproof) {
    if (s.load.fproof != on) toggle(s, "Form3", "fproof");
    if (s.load.fproof != on) refuse_value(s, key, kOutside, text);
    return;
  }
  set_load_value(*key.load, on ? "1" : "0", s.state, s.load);
  if (key.load->state_flag) on ? begin_friction_step(s) : end_friction_step(s);
  if (key.load->dim_flag) recompute_dimensions(s, kNothingMoved);
}

void set_number(Session& s, const KeyInfo& key, const std::string& text) {
  const NumberRead read = read_stored(trim(text));
  if (!read.whole) refuse_value(s, key, kNoNumber, text);
  if (key.kind == KeyKind::whole && read.value != std::floor(read.value))
    refuse_value(s, key, kNoNumber, text);
  if (!key_accepts(s, key, read.value) || lost_in_pascal(key, read.value))
    refuse_value(s, key, kOutside, text);
  if (key.criterion) {
    s.options.*key.criterion->real = read.value;
    return write_number(s, s.options.*key.criterion->real);
  }
  const bool typed = key.load->dim || (key.load->state && key.field.number);
  if (typed) hold_state(s, key.field.number ? key.field.screen : screen_name(s, Role::dimensions));
  set_load_value(*key.load, trim(text), s.state, s.load);
  // The number of a screen's own copy is not that of the load.
  if (typed && key.field.number &&
      find_number(s, key.load->dim ? s.state.dim.*key.load->dim : s.state.*key.load->state).number)
    apply_number(s, key.field, key.field.value(s));
  if (key.load->dim_int) recompute_dimensions(s, kNothingMoved);
}

void set_text(Session& s, const KeyInfo& key, const std::string& text) {
  set_load_value(*key.load, drop_foreign(text, s.language.page()), s.state, s.load);
}

// A tail that the bullet cannot have would count for nothing, without a word.
void refuse_impossible_tail(Session& s, const std::vector<std::string>& sets) {
  constexpr std::string_view kTail[] = {"ausinn", "tailon", "conlen", "condia", "condid"};
  if (!s.state.dim.TAIL || tail_is_possible(s.state.dim)) return;
  for (const std::string& set : sets) {
    const std::string key = lower(set.substr(0, set.find('=')));
    if (std::ranges::find(kTail, key) != std::end(kTail))
      refuse_value(s, *find_key(s, key), kOutside, set.substr(set.find('=') + 1));
  }
}

void apply_set(Session& s, const std::string& set) {
  const auto equals = set.find('=');
  if (equals == std::string::npos || equals == 0) throw Stop{kWrongUsage, "not KEY=VALUE: " + set};
  set_key(s, set.substr(0, equals), set.substr(equals + 1));
}

// --- the charge that meets a target

FitArgs fit_of(const std::string& text) {
  struct Name {
    std::string_view name;
    FitArgs::Meets meets;
  };
  static constexpr Name kNames[] = {{"charge:pmax=", FitArgs::Meets::pmax},
                                    {"charge:velocity=", FitArgs::Meets::velocity},
                                    {"charge:fill=", FitArgs::Meets::fill}};
  for (const Name& n : kNames)
    if (text.starts_with(n.name))
      if (const auto target = finite_number(std::string_view(text).substr(n.name.size()));
          target && *target > 0)
        return {n.meets, *target};
  return {};
}

Refusal no_fit(const Session& s, const std::string& fit) {
  return {"483msg", s.language.msg(483) + " " + fit, "fit", "powwht", {}};
}

// The charge that fills the space under the bullet to a share, grains; 0 where that is not known.
double charge_of_fill(const Session& s, double percent) {
  const double cm3 = shown_number(s, s.state.dim.Veff);
  return percent / 100 * s.state.bulkdn * cm3 * kGrainsPerGram;
}

// From the present charge or, where there is none that could be fired, from most of the space.
std::optional<double> fitted_charge(Session& s, const FitArgs& fit) {
  constexpr double usual_share = 0.7;  // g of powder to 1 cm3
  CalcState trial = s.state;
  if (!(trial.chargeGr > 0) || prepareShot(trial) != SetUp::ok)
    trial.chargeGr = usual_share * shown_number(s, s.state.dim.Veff) * kGrainsPerGram;
  if (prepareShot(trial) != SetUp::ok) return {};
  const bool pressure = fit.meets == FitArgs::Meets::pmax;
  const auto curve = std::make_unique<ShotCurve>();
  ShotResult result;
  if (!fit_charge(trial, *curve, result, pressure ? FitMode::peak_pressure : FitMode::velocity,
                  fit.target * (pressure ? 1e6 : 1)))
    return {};
  return trial.chargeGr;
}

int step_number(const std::string& step) { return step == "fine" ? 1 : step == "coarse" ? 2 : 0; }

}  // namespace

std::optional<double> finite_number(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return {};
  return value;
}

void set_key(Session& s, const std::string& name, const std::string& text) {
  const auto key = find_key(s, name);
  if (!key) throw Stop{kWrongUsage, "no such key: " + name + "; `ternovale-cli keys` lists them"};
  const LoadNumbers before(s);
  switch (key->kind) {
    case KeyKind::derived:
      refuse_value(s, *key, kDerivedKey, text);
    case KeyKind::record:
      return pick_record(s, *std::ranges::find(kLists, key->key, &ListOfLoad::key), text);
    case KeyKind::flag:
      set_flag(s, *key, text);
      break;
    case KeyKind::text:
      set_text(s, *key, text);
      break;
    case KeyKind::number:
    case KeyKind::whole:
      set_number(s, *key, text);
      break;
  }
  before.refresh(s);
}

void add_number(CLI::App& command, const std::string& name, double& value, double least, double most,
                const std::string& what) {
  command
      .add_option_function<std::string>(
          name, [&value](const std::string& text) { value = *finite_number(text); }, what)
      ->check([least, most](const std::string& text) {
        const auto number = finite_number(text);
        if (number && *number >= least && *number <= most) return std::string();
        return fmt::format("{} is no number from {} to {}", text, least, most);
      });
}

void add_load_options(CLI::App& command, LoadArgs& args, const std::vector<std::string>& formats,
                      bool several) {
  auto* load = command.add_option("LOAD", args.loads, "load file, or a settings file; - for standard input");
  several ? load->allow_extra_args() : load->required()->expected(1);
  command.add_option("--set", args.sets, "KEY=VALUE: change a key of the load, as if it was typed")
      ->allow_extra_args(false);
  command.add_option("--cartridge", args.cartridge, "NAME of a record, picked from its list");
  command.add_option("--bullet", args.bullet, "NAME of a record, picked from its list");
  command.add_option("--powder", args.powder, "NAME of a record, picked from its list");
  command.add_option("--records", args.records, "FILE whose records join their list")
      ->allow_extra_args(false);
  command.add_option("--fit", args.fit, "charge:pmax=MPA|velocity=MPS|fill=PERCENT: find the charge")
      ->check([](const std::string& text) {
        const bool good = fit_of(text).meets != FitArgs::Meets::nothing;
        return good ? std::string()
                    : text + " is not charge:pmax=MPA, charge:velocity=MPS or charge:fill=PERCENT";
      });
  command.add_option("--save", args.save, "FILE: store the load as changed");
  command.add_option("--step", args.step, "step of the calculation")
      ->check(CLI::IsMember({"normal", "fine", "coarse"}));
  command.add_option("--units", args.units, "of the text")->check(CLI::IsMember({"metric", "imperial"}));
  command.add_option("--pressure", args.pressure, "unit of pressures")->check(CLI::IsMember({"mpa", "bar"}));
  command.add_option("--format", args.format, "of the answer")
      ->check(CLI::IsMember(formats))
      ->capture_default_str();
  command.add_option("--output", args.output, "write the answer into this FILE; - for standard output");
}

void prepare_session(Session& s, const LoadArgs& args, std::vector<std::string> read) {
  read.insert(read.end(), args.loads.begin(), args.loads.end());
  read.insert(read.end(), args.records.begin(), args.records.end());
  keep_inputs(s, args.output, read);
  for (const std::string& file : args.records) add_records(s, file);
  if (!args.units.empty()) set_unit_mode(s, args.units == "imperial" ? UnitMode::imperial : UnitMode::metric);
  if (!args.pressure.empty()) set_pressure_unit(s, args.pressure == "mpa");
}

bool read_load(Session& s, const Console& console, const std::string& file) {
  return load_take(s, file.empty() ? "\"\"" : file, read_input(console, file));
}

void change_load(Session& s, const LoadArgs& args) {
  const Action whole(s);
  const std::string* const names[] = {&args.cartridge, &args.bullet, &args.powder};
  for (std::size_t i = 0; i < std::size(kLists); ++i)
    if (!names[i]->empty()) pick_record(s, kLists[i], *names[i]);
  for (const std::string& set : args.sets) apply_set(s, set);
  refuse_impossible_tail(s, args.sets);
  if (!args.step.empty()) setStep(s, step_number(args.step));
}

void fit_load(Session& s, CliUser& user, const LoadArgs& args) {
  if (args.fit.empty()) return;
  const FitArgs fit = fit_of(args.fit);
  transferInputs(s);
  if (!s.inputsOk) throw refusal_of(s, user);
  convertUnits(s.state);
  const auto charge =
      fit.meets == FitArgs::Meets::fill ? charge_of_fill(s, fit.target) : fitted_charge(s, fit);
  if (!charge || !(*charge > 0)) throw no_fit(s, args.fit);
  set_key(s, "powwht", general(*charge));
}

void take_load(Session& s, CliUser& user, const Console& console, const LoadArgs& args) {
  prepare_session(s, args);
  if (!read_load(s, console, args.loads.front())) throw Stop{kFileTrouble, ""};
  change_load(s, args);
  fit_load(s, user, args);
}

void save_load(Session& s, const LoadArgs& args) {
  if (args.save.empty()) return;
  if (same_fold(file_name_only(args.save), "ternofw.set"))
    throw Stop{kWrongUsage, "--save: " + args.save + ": the settings are no load"};
  if (!load_write(s, args.save)) throw Stop{kFileTrouble, ""};
}

Json load_json(const Session& s) {
  Json::object_t json;  // the keys differ: none need be looked for
  json.reserve(load_keys().size());
  for (const LoadKey& key : load_keys())
    json.push_back({std::string(key.key), load_value_text(key, s.shown.state, s.shown.load)});
  return json;
}

Json answer_head(const Session& s) {
  return {{"program", kProgramName}, {"version", kVersion}, {"load", load_json(s)}};
}

}  // namespace tv
