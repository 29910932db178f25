// A load for one calculation: read from its file and changed as a person would, by typing.
#include <algorithm>

#include "cli/command.h"
#include "data/load_keys.h"
#include "data/settings_keys.h"
#include "session/dimensions.h"
#include "session/loads.h"
#include "session/numbers.h"
#include "session/run.h"

namespace tv {
namespace {

// The targets of the powder table, which are options and no keys of the load.
constexpr std::string_view kCriteria[] = {"maxtab", "veltab", "lratio", "lv_min",
                                          "hratio", "lod2nd", "bamint", "bamaxt"};

const OptionKey* criterion(std::string_view key) {
  if (std::ranges::find(kCriteria, key) == std::end(kCriteria)) return nullptr;
  const auto keys = option_keys();
  const auto at = std::ranges::find_if(keys, [&](const OptionKey& k) { return k.key == key; });
  return at == keys.end() ? nullptr : &*at;
}

// The number field behind the key; its number is null if the key has none that can be typed in.
NumberPlace field_of(Session& s, const LoadKey& key) {
  const double* value = key.dim ? &(s.state.dim.*key.dim) : key.state ? &(s.state.*key.state) : nullptr;
  return value ? find_number(s, *value) : NumberPlace{};
}

void set_criterion(Session& s, const OptionKey& key, const std::string& text, const std::string& set) {
  SectionedFile file;
  CalcState probe;
  LoadData none;
  // The same reading as for the keys of a load: a whole number, a comma taken as its point.
  if (!set_load_value(*load_key("powwht"), text, probe, none))
    throw Stop{kWrongUsage, "the value is no number: " + set};
  s.options.*key.real = probe.chargeGr;
}

void set_load_key(Session& s, const LoadKey& key, const std::string& text, const std::string& set) {
  const NumberPlace at = field_of(s, key);
  if (at.number) hold_state(s, at.screen);
  if (!set_load_value(key, text, s.state, s.load)) throw Stop{kWrongUsage, "the value is no number: " + set};
  if (at.number) apply_number(s, at, at.value(s));
  if (key.state_flag && s.state.frictionOn) setStep(s, 1);
  if (key.dim_int || key.dim_flag) recompute_dimensions(s, 0);
  refresh_all_fields(s);
}

void apply_set(Session& s, const std::string& set) {
  const auto equals = set.find('=');
  if (equals == std::string::npos || equals == 0) throw Stop{kWrongUsage, "not KEY=VALUE: " + set};
  const std::string key = set.substr(0, equals), text = set.substr(equals + 1);
  if (const LoadKey* load = load_key(key)) return set_load_key(s, *load, text, set);
  if (const OptionKey* option = criterion(key)) return set_criterion(s, *option, text, set);
  throw Stop{kWrongUsage, "no such key: " + key};
}

int step_number(const std::string& step) { return step == "fine" ? 1 : step == "coarse" ? 2 : 0; }

}  // namespace

void take_load(Session& s, const LoadArgs& args) {
  if (!load_read(s, args.load)) throw Stop{kFileTrouble, ""};
  for (const std::string& set : args.sets) apply_set(s, set);
  if (!args.step.empty()) setStep(s, step_number(args.step));
  if (!args.units.empty()) set_unit_mode(s, args.units == "imperial" ? UnitMode::imperial : UnitMode::metric);
  if (!args.pressure.empty()) set_pressure_unit(s, args.pressure == "mpa");
}

Json load_json(const Session& s) {
  Json json = Json::object();
  for (const LoadKey& key : load_keys()) json[key.key] = load_value_text(key, s.shown.state, s.shown.load);
  return json;
}

Json answer_head(const Session& s) {
  return {{"program", kProgramName}, {"version", kVersion}, {"load", load_json(s)}};
}

}  // namespace tv
