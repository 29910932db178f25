// frmPrimer: notes of a load that do not enter the calculation, what was measured beside what is predicted.
#include <algorithm>
#include <array>

#include "calculators/load_notes.h"
#include "data/record_file.h"
#include "screens/commands.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/screen.h"
#include "session/settings.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmPrimer";

struct Note {
  const char* field;
  std::string LoadData::*text;
};
using D = LoadData;
constexpr std::array kNotes{Note{"cboPrimer", &D::primer},
                            Note{"t_primerlot", &D::PrimerLot},
                            Note{"t_powderlot", &D::PowderLot},
                            Note{"t_bullot", &D::BulletLot},
                            Note{"t_casemfg", &D::CaseMfg},
                            Note{"t_muzzlevel", &D::MuzzleVel_meas},
                            Note{"lb_muzzlevel", &D::MVel_meas_unit},
                            Note{"t_mv_stddev", &D::MVel_meas_std},
                            Note{"t_pressure", &D::Press_meas},
                            Note{"lb_pressure", &D::Press_meas_unit},
                            Note{"t_pres_stddev", &D::Press_meas_std}};
enum : std::size_t { kPrimer, kVelocity = 5, kVelocityUnit, kVelocitySd, kPressure, kPressureUnit };

constexpr std::array kVelocityUnits{"m/s", "fps"};
constexpr std::array kPressureUnits{"psi", "CUP", "MPa", "bar"};

// What the fields hold until the notes are stored.
struct State {
  std::array<std::string, kNotes.size()> texts;
  std::vector<std::string> primers;
  bool chronograph = false;  // its values have been taken over
};
State& notes(Session& s) { return own<State>(s, kName); }

// --- form

constexpr Place text(const char* control) { return {control, ControlKind::text}; }
constexpr Place combo(const char* control) { return {control, ControlKind::combo}; }
constexpr Row kComponents[] = {
    wide_row("cboPrimer", combo("cboPrimer")),    wide_row("t_primerlot", text("t_primerlot")),
    wide_row("t_powderlot", text("t_powderlot")), wide_row("t_bullot", text("t_bullot")),
    wide_row("t_casemfg", text("t_casemfg")),
};
constexpr Row compared_row(const char* predicted, const char* difference) {
  return {RowShape::pair, "predicted", {display(predicted), display(difference)}};
}
constexpr Row kMeasured[] = {
    {RowShape::pair, "t_muzzlevel", {text("t_muzzlevel"), combo("lb_muzzlevel")}},
    {RowShape::pair, "t_mv_stddev", {text("t_mv_stddev")}},
    compared_row("pred_v", "diff_v"),
    {RowShape::pair, "t_pressure", {text("t_pressure"), combo("lb_pressure")}},
    {RowShape::pair, "t_pres_stddev", {text("t_pres_stddev")}},
    compared_row("pred_p", "diff_p"),
    {RowShape::bare, nullptr, {check("c_muzzlevel")}},
};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("measured"), button("copy"), button("cmdPrimer")}}};
constexpr Group kForm[] = {
    {"grp_lots", 0, kComponents}, {"grp_measured", 1, kMeasured}, {nullptr, -1, kButtons}};

// --- actions

void open(Session& s) {
  State& state = notes(s);
  for (std::size_t k = 0; k < kNotes.size(); ++k) state.texts[k] = s.load.*kNotes[k].text;
  const bool imperial = s.unit_mode == UnitMode::imperial;
  if (state.texts[kVelocityUnit].empty()) state.texts[kVelocityUnit] = kVelocityUnits[imperial ? 1 : 0];
  if (state.texts[kPressureUnit].empty()) state.texts[kPressureUnit] = mode_pressure_unit(s);
  state.chronograph = false;
  state.primers.clear();
  // One list for all languages.
  const RecordTable table =
      read_records_plain(data_path(s, "nameprim.txt"), RecordKind::primers, s.language.page()).file.table;
  for (int row = 0; row <= table.last(); ++row) state.primers.emplace_back(trim(table.cell(row, 0)));
}

void edited(Session& s, int) {
  for (std::size_t k = 0; k < kNotes.size(); ++k) notes(s).texts[k] = field(s, kName, kNotes[k].field).text;
}

// A value of the chronograph, without the sign of its unit.
std::string chronograph_value(const Session& s, std::string_view key) {
  return without_unit_sign(settings_read("chronograph", key, s.settings_file, s.language.page()));
}

void take_chronograph(Session& s, int) {
  State& state = notes(s);
  state.chronograph = field(s, kName, "c_muzzlevel").checked;
  if (!state.chronograph) return;
  std::string velocity = chronograph_value(s, "Muzvel_mps");
  if (velocity.empty()) velocity = chronograph_value(s, "AvgVel_mps");
  if (velocity.empty()) return;
  state.texts[kVelocity] = velocity;
  state.texts[kVelocityUnit] = kVelocityUnits[0];
  state.texts[kVelocitySd] = chronograph_value(s, "StdDev_mps");
}

void store(Session& s, int) {
  State& state = notes(s);
  // A unit without a value is no note.
  if (trim(state.texts[kVelocity]).empty()) state.texts[kVelocityUnit].clear();
  if (trim(state.texts[kPressure]).empty()) state.texts[kPressureUnit].clear();
  for (std::size_t k = 0; k < kNotes.size(); ++k) s.load.*kNotes[k].text = trim(state.texts[k]);
  const auto chosen = std::ranges::find(state.primers, s.load.primer);
  if (chosen != state.primers.end()) {
    s.options.primertype = static_cast<int>(chosen - state.primers.begin());
    store_option(s, "primertype");
  }
  hide_screen(s, kName);
}

void measured(Session& s, int) { open_screen(s, "frmMeas"); }
void copy(Session& s, int) { copy_results(s, kName); }

constexpr ControlAction kActions[] = {
    {"cboPrimer", edited, edited},
    {"t_primerlot", nullptr, edited},
    {"t_powderlot", nullptr, edited},
    {"t_bullot", nullptr, edited},
    {"t_casemfg", nullptr, edited},
    {"t_muzzlevel", nullptr, edited},
    {"lb_muzzlevel", edited, edited},
    {"t_mv_stddev", nullptr, edited},
    {"t_pressure", nullptr, edited},
    {"lb_pressure", edited, edited},
    {"t_pres_stddev", nullptr, edited},
    {"c_muzzlevel", take_chronograph},
    {"measured", measured},
    {"copy", copy},
    {"cmdPrimer", store},
};

// --- views

template <class Texts>
void fill_list(Session& s, const char* list, const Texts& texts, int top = 0) {
  Field& f = field(s, kName, list);
  f.items.clear();
  for (const auto& entry : texts) f.items.push_back({std::string(entry), -1});
  const auto at = std::ranges::find(f.items, f.text, &ListItem::text);
  f.selected = at == f.items.end() ? -1 : static_cast<int>(at - f.items.begin());
  f.top = f.selected >= 0 ? f.selected : top;
}

std::string percent(double share) { return format_pattern(100 * share, "+0.0;-0.0;0.0") + " %"; }

// The prediction in the unit of what was measured, and how far that is from it.
void show_compared(Session& s, const char* predicted, const char* difference, const std::string& shown,
                   const std::string& measured, std::optional<double> share) {
  const bool valid = s.valid.results;
  set_text(s, kName, predicted, valid ? shown : "");
  const bool nothing = !valid || trim(measured).empty();
  set_text(s, kName, difference,
           nothing ? ""
           : share ? percent(*share)
                   : s.language.text("frmPrimer", "not_comparable"));
}

void show_velocity(Session& s) {
  const auto& texts = notes(s).texts;
  const bool fps = texts[kVelocityUnit] == kVelocityUnits[1];
  const double v = s.result.vMuzzle;
  show_compared(s, "pred_v", "diff_v",
                format_number(v * (fps ? kFeetPerMetre : 1), "0") + (fps ? " fps" : " m/s"), texts[kVelocity],
                velocity_difference(texts[kVelocity], texts[kVelocityUnit], v));
}

void show_pressure(Session& s) {
  const auto& texts = notes(s).texts;
  const double p = s.result.pMax;
  const std::string& unit = texts[kPressureUnit];
  const std::string shown = unit == "psi"   ? format_number(p / kPaPerPsi, "0") + " psi"
                            : unit == "bar" ? format_number(p / 1e5, "0") + " bar"
                                            : format_number(p / 1e6, "0.0") + " MPa";
  show_compared(s, "pred_p", "diff_p", shown, texts[kPressure],
                pressure_difference(texts[kPressure], unit, p));
}

void refresh(Session& s) {
  const State& state = notes(s);
  for (std::size_t k = 0; k < kNotes.size(); ++k) show_text(s, kName, kNotes[k].field, state.texts[k]);
  const int primers = static_cast<int>(state.primers.size());
  fill_list(s, "cboPrimer", state.primers, s.options.primertype < primers ? s.options.primertype : 0);
  fill_list(s, "lb_muzzlevel", kVelocityUnits);
  fill_list(s, "lb_pressure", kPressureUnits);
  field(s, kName, "c_muzzlevel").checked = state.chronograph;
  show_velocity(s);
  show_pressure(s);
}

}  // namespace

void ask_notes(Session& s) {
  if (s.options.primeryes) open_screen(s, kName);
}

extern const ScreenSpec kFrmPrimer{.name = kName,
                                   .section = "frmPrimer",
                                   .form = kForm,
                                   .default_button = "cmdPrimer",
                                   .actions = kActions,
                                   .open = open,
                                   .refresh = refresh};

}  // namespace tv
