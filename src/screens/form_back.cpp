// FormBack: the recoil of the gun from the results of the last shot.
#include <algorithm>

#include "calculators/recoil.h"
#include "screens/all.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/numbers.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "FormBack";
constexpr double kLeastGun = 0.01, kMost = 1000;  // kg
constexpr double kLeastOfBullet = 0.98;           // a gun lighter than this share of its bullet is none

// What stands in the fields; only accepted values go into the options and the calculation.
struct State {
  bool imperial = false;
  double gun_kg = 0, scope_kg = 0, share = 0.5;
  double accepted_share = 0.5;
  std::vector<RecoilField> shown;  // of the last results that were current
};
const State& recoil_state(const Session& s) { return own<State>(s, kName); }

bool imperial(const Session& s) { return recoil_state(s).imperial; }

// --- numbers

double mass_factor(const Session& s) { return imperial(s) ? kPoundsPerKg : 1; }
double shown_mass(double kg, const Session& s) { return kg * mass_factor(s); }
double stored_mass(double shown, const Session& s) { return shown / mass_factor(s); }
const Unit kMass{nullptr, shown_mass, stored_mass};

Limits gun_limits(const Session& s, const NumberSide&, int) {
  const double least = std::max(kLeastGun, kLeastOfBullet * s.shown.state.bulletKg);
  return {shown_mass(least, s), shown_mass(kMost, s)};
}
Limits scope_limits(const Session& s, const NumberSide&, int) { return {0, shown_mass(kMost, s)}; }

template <double State::*Value>
double& entered(Session& s, int) {
  return own<State>(s, kName).*Value;
}

bool good(double value, double least, double most) { return value >= least && value <= most; }

void accept(Session& s, int, bool) {
  State& state = own<State>(s, kName);
  if (state.gun_kg > kLeastOfBullet * s.shown.state.bulletKg && good(state.gun_kg, kLeastGun, kMost))
    s.options.gunmas = state.gun_kg;
  if (good(state.scope_kg, 0, kMost)) s.options.scopew = state.scope_kg;
  if (good(state.share, 0, 1)) state.accepted_share = state.share;
}

// A value that was not accepted goes back to the last good one; the status line says what would be.
void put_back(Session& s, int) {
  State& state = own<State>(s, kName);
  const auto back = [&](double& value, double good_one) {
    if (value == good_one) return;
    const NumberPlace at = find_number(s, value);
    const Limits limits = limits_of(s, at);
    s.status = s.language.text("frmback", field_of(at, 0)) + ": " + format_number(limits.least, "0.0##") +
               " ... " + format_number(limits.most, "0.0##");
    value = good_one;
    write_number(s, value);
  };
  back(state.gun_kg, s.options.gunmas);
  back(state.scope_kg, s.options.scopew);
  back(state.share, state.accepted_share);
}

constexpr NumberField kNumbers[] = {
    {.sides = {{{"gun_weight", &kMass, {}, nullptr, "0.000"}}},
     .value = entered<&State::gun_kg>,
     .changed = accept,
     .limits = gun_limits,
     .left = put_back},
    {.sides = {{{"zf_mass", &kMass, {}, nullptr, "0.000"}}},
     .value = entered<&State::scope_kg>,
     .changed = accept,
     .limits = scope_limits,
     .left = put_back},
    {.sides = {{{"mit_lad", &units::plain, {0, 1}, nullptr, "0.0##"}}},
     .value = entered<&State::share>,
     .changed = accept,
     .left = put_back},
};

// --- form

constexpr const char *kForce = "%unit_kN|unit_lbf", *kImpulse = "%unit_Ns|unit_lbfts",
                     *kVelocity = "%unit_mps|unit_fps", *kLength = "%unit_mm|unit_in",
                     *kEnergy = "%unit_J|unit_ftlb";

constexpr Row mass_row(const char* control) {
  return {RowShape::pair, control, {number(control, "%unit_kg|unit_lb")}};
}
constexpr Row kInputs[] = {
    mass_row("gun_weight"), mass_row("zf_mass"),
    number_row("mit_lad"),  {RowShape::bare, nullptr, {check("xunits")}},
    note_row("@stale"),
};
constexpr Row kForces[] = {
    display_row("mx_r_kraft", kForce),
    display_row("mont_kraft", kForce),
    display_row("kraft_muend", kForce),
};
constexpr Row kExit[] = {
    display_row("gaus_imp", kImpulse),
    display_row("gaus_vel", kVelocity),
    display_row("gaus_weg", kLength),
    display_row("gaus_ener", kEnergy),
};
constexpr Row kGas[] = {
    display_row("ges_imp", kImpulse), display_row("nach_imp", kImpulse), display_row("ges_vel", kVelocity),
    display_row("ges_weg", kLength),  display_row("ges_ener", kEnergy),  display_row("gas_dau", "unit_ms"),
};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("copy"), button("close")}}};
constexpr Group kForm[] = {{nullptr, 0, kInputs},
                           {nullptr, 0, kForces},
                           {"grp_exit", 1, kExit},
                           {"grp_gas", 1, kGas},
                           {nullptr, -1, kButtons}};

// --- actions

void open(Session& s) {
  State& state = own<State>(s, kName);
  state.imperial = s.unit_mode == UnitMode::imperial;
  state.gun_kg = s.options.gunmas;
  state.scope_kg = s.options.scopew;
  state.share = state.accepted_share;
}

void toggle_units(Session& s, int) {
  own<State>(s, kName).imperial = field(s, kName, "xunits").checked;
  write_numbers(s, *s.screens.find(kName)->second.spec);
}

void copy(Session& s, int) { copy_results(s, kName); }
void close_it(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {{"xunits", toggle_units}, {"copy", copy}, {"close", close_it}};

// Nothing is computed while the last shot is not that of the inputs: the fields keep what they had, greyed.
void refresh(Session& s) {
  State& state = own<State>(s, kName);
  field(s, kName, "xunits").checked = state.imperial;
  if (s.valid.results) {
    const RecoilGun gun{s.options.gunmas, s.options.scopew, state.accepted_share};
    state.shown = recoil_fields(recoil(gun, recoil_shot(s.shown.state, s.curve, s.result)), state.imperial);
  }
  for (const RecoilField& figure : state.shown) {
    set_text(s, kName, figure.name, figure.text);
    field(s, kName, figure.name).stale = !s.valid.results;
  }
  set_text(s, kName, "stale", s.valid.results ? "" : s.language.text("frmback", "stale"));
}

}  // namespace

extern const ScreenSpec kFormBack{.name = kName,
                                  .section = "frmback",
                                  .form = kForm,
                                  .default_button = "close",
                                  .numbers = kNumbers,
                                  .actions = kActions,
                                  .open = open,
                                  .refresh = refresh,
                                  .imperial = imperial};

}  // namespace tv
