#include "cli/keys.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include <fmt/format.h>

#include "text/number.h"

namespace tv {
namespace {

// The targets of the powder table, which are options and no keys of the load.
constexpr std::string_view kCriteria[] = {"maxtab", "veltab", "lratio", "lv_min",
                                          "hratio", "lod2nd", "bamint", "bamaxt"};

struct UnitOfKeys {
  const char* unit;
  std::string_view keys;  // parted by blanks
};
constexpr UnitOfKeys kUnits[] = {
    {"in",
     " laflen patlan bullen hullen kalzug buldia sdepth l1_in l2_in Ri_in R1_in P1_in P2_in H1_in H2_in "
     "ZD_in ZB_in FD_in FB_in "},
    {"gr", " bulgew powwht caswht "},
    {"gr H2O", " volful brennr "},
    {"mm2", " wirkqu "},
    {"mm", " gesweg conlen condia condid "},
    {"Pa", " anfdru fripas "},
    {"MPa", " maxzul maxtab "},
    {"m/s", " trvel1 trvel2 trvel3 trvel4 veltab "},
    {"kJ/kg", " exwarm "},
    {"g/cm3", " powden bulkdn "},
    {"degC", " powtmp "},
    {"1/s", " abkof0 bamint bamaxt "},
    {"%", " lratio lv_min hratio anfpul "}};

// Keys that are typed on a screen with a copy of its own.
struct TypedElsewhere {
  std::string_view key;
  const char *screen, *field;
};
constexpr TypedElsewhere kElsewhere[] = {{"conlen", "FormTail", "cone_lenmm"},
                                         {"condid", "FormTail", "cone_dia_Dm"},
                                         {"condia", "FormTail", "cone_diam"},
                                         {"c1icao", "FormTail", "bicao"},
                                         {"mulbc1", "frmBC", "BC_Icao11"},
                                         {"mulbc2", "frmBC", "BC_Icao12"},
                                         {"mulbc3", "frmBC", "BC_Icao13"},
                                         {"mulbc4", "frmBC", "BC_Icao14"},
                                         {"mulbc5", "frmBC", "BC_Icao15"},
                                         {"trvel1", "frmBC", "tvel_ms11"},
                                         {"trvel2", "frmBC", "tvel_ms12"},
                                         {"trvel3", "frmBC", "tvel_ms13"},
                                         {"trvel4", "frmBC", "tvel_ms14"},
                                         {"l1_in", "Form12", "L1"},
                                         {"l2_in", "Form12", "L2"},
                                         {"R1_in", "Form12", "R1"},
                                         {"P1_in", "Form12", "P1"},
                                         {"P2_in", "Form12", "P2"},
                                         {"H1_in", "Form12", "H1"},
                                         {"H2_in", "Form12", "H2"},
                                         {"caswht", "Form12", "mssgn"},
                                         {"ZD_in", "Form11", "Zug_mm"},
                                         {"FD_in", "Form11", "feld_mm"},
                                         {"ZZ_no", "Form11", "zug_anz"},
                                         {"fripas", "FormBorefrict", "sugg_P0"}};

// Limits that no field shows.
struct OwnLimits {
  std::string_view key;
  Limits limits;
};
constexpr Limits kLength{0, 24};  // of a case, a bore
constexpr OwnLimits kOwnLimits[] = {
    {"ausinn", {0, 2}},    {"molyco", {0.4, 1}}, {"Shape", {0, 22}},   {"Polyg", {0, 1}},
    {"powtmp", {-60, 80}}, {"ZZ_no", {0, 150}},  {"l1_in", kLength},   {"l2_in", kLength},
    {"Ri_in", kLength},    {"R1_in", kLength},   {"P1_in", kLength},   {"P2_in", kLength},
    {"H1_in", kLength},    {"H2_in", kLength},   {"ZD_in", kLength},   {"ZB_in", kLength},
    {"FD_in", kLength},    {"FB_in", kLength},   {"bamint", {0, 320}}, {"bamaxt", {0, 320}}};

constexpr std::string_view kRecordKeys[] = {"pattyp", "bultyp", "pulver"};
// The travel and the effective volume follow from the lengths; the others are marks of the program's own.
constexpr std::string_view kDerived[] = {"gesweg", "brennr", "wirktr", "anfpul"};

bool one_of(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

const char* unit_of(std::string_view key) {
  const std::string word = " " + std::string(key) + " ";
  for (const UnitOfKeys& row : kUnits)
    if (row.keys.find(word) != std::string_view::npos) return row.unit;
  return "";
}

KeyKind kind_of(const LoadKey& key) {
  if (one_of(kDerived, key.key)) return KeyKind::derived;
  if (one_of(kRecordKeys, key.key)) return KeyKind::record;
  if (key.text) return KeyKind::text;
  if (key.dim_flag || key.state_flag || key.load_flag) return KeyKind::flag;
  return key.dim_int || key.state_int || key.load_int ? KeyKind::whole : KeyKind::number;
}

NumberPlace field_of_key(Session& s, std::string_view key, const double* value) {
  for (const TypedElsewhere& row : kElsewhere)
    if (row.key == key) return find_number(s, row.screen, row.field);
  return value ? find_number(s, *value) : NumberPlace{};
}

KeyInfo info_of(Session& s, const LoadKey& key) {
  const double* value = key.dim ? &(s.state.dim.*key.dim) : key.state ? &(s.state.*key.state) : nullptr;
  return {key.key, kind_of(key), unit_of(key.key), &key, nullptr, field_of_key(s, key.key, value)};
}
KeyInfo info_of(Session& s, const OptionKey& key) {
  return {key.key, KeyKind::number, unit_of(key.key), nullptr, &key, find_number(s, s.options.*key.real)};
}

const Limits* own_limits(std::string_view key) {
  for (const OwnLimits& row : kOwnLimits)
    if (row.key == key) return &row.limits;
  return nullptr;
}

// The side of its number that shows the value as it is stored: its limits are those of the key.
NumberPlace stored_side(const Session& s, NumberPlace at) {
  constexpr double probe = 1.25;
  for (std::size_t k = 0; k < at.number->sides.size(); ++k)
    if (const NumberSide& side = at.number->sides[k]; side.field && side.unit->shown(probe, s) == probe) {
      at.side = k;
      return at;
    }
  at.side = 0;
  return at;
}

const char* name_of(KeyKind kind) {
  static constexpr const char* kNames[] = {"number", "whole", "flag", "text", "record", "derived"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string caption_of(const Session& s, const KeyInfo& key) {
  return key.field.number ? control_caption(s, key.field.screen, field_of(key.field, 0)) : std::string();
}

Json key_json(const Session& s, const KeyInfo& key) {
  Json json{{"key", key.key},
            {"section", key.load ? key.load->section : std::string_view("metrics")},
            {"kind", name_of(key.kind)},
            {"unit", key.unit},
            {"range", nullptr},
            {"caption", caption_of(s, key)}};
  if (const auto limits = limits_of_key(s, key)) json["range"] = {limits->least, limits->most};
  return json;
}

std::string key_line(const Session& s, const KeyInfo& key) {
  const auto limits = limits_of_key(s, key);
  const std::string what = limits ? range_text(*limits) : name_of(key.kind);
  std::string line = fmt::format("{:<16}{:<8}{:<24}{}", key.key, key.unit, what, caption_of(s, key));
  return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

int keys_command(Session& s, const Console& console, const std::string& format) {
  Json rows = Json::array();
  std::string text;
  for (const KeyInfo& key : all_keys(s)) {
    rows.push_back(key_json(s, key));
    text += key_line(s, key);
  }
  deliver(console, "", format == "json" ? json_text({{"keys", std::move(rows)}}) : text);
  return kDone;
}

}  // namespace

std::vector<KeyInfo> all_keys(Session& s) {
  std::vector<KeyInfo> keys;
  for (const LoadKey& key : load_keys()) keys.push_back(info_of(s, key));
  for (const OptionKey& key : option_keys())
    if (one_of(kCriteria, key.key)) keys.push_back(info_of(s, key));
  return keys;
}

std::optional<KeyInfo> find_key(Session& s, std::string_view name) {
  if (const LoadKey* key = load_key(name)) return info_of(s, *key);
  for (const OptionKey& key : option_keys())
    if (one_of(kCriteria, key.key) && same_fold(key.key, name)) return info_of(s, key);
  return {};
}

std::optional<Limits> limits_of_key(const Session& s, const KeyInfo& key) {
  if (const Limits* own = own_limits(key.key)) return *own;
  if (!key.field.number || key.kind == KeyKind::derived) return {};
  const NumberPlace at = stored_side(s, key.field);
  const Limits shown = limits_of(s, at);
  const Unit& unit = *at.own().unit;
  const double a = unit.stored(shown.least, s), b = unit.stored(shown.most, s);
  return Limits{std::min(a, b), std::max(a, b)};
}

bool key_accepts(const Session& s, const KeyInfo& key, double value) {
  if (const Limits* own = own_limits(key.key)) return value >= own->least && value <= own->most;
  if (!key.field.number) return true;
  NumberPlace at = key.field;
  for (at.side = 0; at.side < at.number->sides.size(); ++at.side)
    if (at.own().field && in_limits(at.own().unit->shown(value, s), limits_of(s, at))) return true;
  return false;
}

std::string control_caption(const Session& s, std::string_view screen, std::string_view control) {
  const auto at = s.screens.find(screen);
  if (at == s.screens.end()) return {};
  std::string label(control);
  for (const Group& group : at->second.spec->form)
    for (const Row& row : group.rows)
      for (const Place& place : row.places)
        if (place.control && control == place.control && row.label && *row.label != '@') label = row.label;
  std::string text = s.language.text(at->second.spec->section, label);
  std::erase(text, '&');
  while (!text.empty() && (text.back() == ':' || text.back() == ' ')) text.pop_back();
  return text;
}

std::string range_text(const Limits& limits) {
  return limit_text(limits.least) + " ... " + limit_text(limits.most);
}

CliCommand bind_keys(CLI::App& program) {
  CLI::App* command = program.add_subcommand("keys", "the keys that --set knows, with unit and range");
  auto format = std::make_shared<std::string>("text");
  command->add_option("--format", *format)->check(CLI::IsMember({"text", "json"}))->capture_default_str();
  return {command, [format](Session& s, CliUser&, const Console& console) {
            return keys_command(s, console, *format);
          }};
}

}  // namespace tv
