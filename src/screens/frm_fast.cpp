// frmFast: a first load in a few entries.
#include <array>

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "screens/all.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmFast";
constexpr const char* kFirstExample = "data/loads/308_winchester_168.dat";
constexpr double kMost = 9999999;

// A field, the value of the load it stands for, and how it shows it in either system.
struct QuickNumber {
  const char* field;
  double& (*value)(Session&, int);
  const Unit* metric_unit;
  const Unit* imperial_unit;
  Patterns patterns;
};
using D = CartridgeDimensions;
constexpr std::array kQuick{
    QuickNumber{
        "MPgn", state<&CalcState::chargeGr>, &units::gram_of_grain, &units::grain, {"####0.00#", "0.0#"}},
    QuickNumber{"Plenz", dim<&D::Plen>, &units::mm_of_inch, &units::inch, {"###0.00", "#0.000"}},
    QuickNumber{"Glenz", dim<&D::Glen>, &units::mm_of_inch, &units::inch, {"##0.00", "#0.000"}},
    QuickNumber{"Llenz", dim<&D::Llen>, &units::mm_of_inch, &units::inch, {"####0.0#", "##0.0##"}},
};
constexpr std::size_t kBarrel = 3;

// What was typed stands until it is taken over or the screen is opened anew; the other fields follow the
// load.
struct State {
  bool metric = true;
  std::array<double, kQuick.size()> entered{};  // as the fields show it
  std::array<bool, kQuick.size()> typed{};
};
State& quick(Session& s) { return own<State>(s, kName); }

template <std::size_t K>
double& entered(Session& s, int) {
  return quick(s).entered[K];
}
template <std::size_t K>
void typed(Session& s, int, bool) {
  quick(s).typed[K] = true;
}
template <std::size_t K>
constexpr NumberField quick_number() {
  return one_side({kQuick[K].field, &units::plain, {0, kMost}}, entered<K>, typed<K>);
}
double step_of_charge(const Session& s, const NumberSide&) {
  return own<State>(s, kName).metric ? 0.01 : 0.1;
}
constexpr NumberField quick_charge() {
  NumberField charge = quick_number<0>();
  charge.step = step_of_charge;
  return charge;
}
constexpr NumberField kNumbers[] = {quick_charge(), quick_number<1>(), quick_number<2>(), quick_number<3>()};

bool imperial(const Session& s) { return !own<State>(s, kName).metric; }

const Unit& unit_of(const QuickNumber& q, bool metric) { return metric ? *q.metric_unit : *q.imperial_unit; }

std::string text_of(const Session& s, const QuickNumber& q, bool metric, double stored) {
  return format_number(unit_of(q, metric).shown(stored, s), metric ? q.patterns.metric : q.patterns.imperial);
}

// The value that a field stands for. One that was not touched is the load's own, which its text rounds.
double value_of(Session& s, std::size_t k) {
  const QuickNumber& q = kQuick[k];
  const State& state = quick(s);
  if (!state.typed[k]) return q.value(s, 0);
  return unit_of(q, state.metric).stored(read_number(field(s, kName, q.field).text), s);
}

// --- form

constexpr Row value_row(const char* label, const char* control, const char* unit) {
  return {RowShape::pair, label, {number(control, unit)}};
}
constexpr Row kRows[] = {
    wide_row("lblMunname", load_list("HVolDat", RecordKind::cartridges)),
    wide_row("Label11", load_list("Bnam", RecordKind::bullets)),
    wide_row("Label14", load_list("PulvDat", RecordKind::powders)),
    value_row("Label16", "MPgn", "%unit_g|unit_gr"),
    value_row("Label7", "Plenz", "%unit_mm|unit_in"),
    value_row("Label2", "Glenz", "%unit_mm|unit_in"),
    value_row("Label1", "Llenz", "%unit_mm|unit_in"),
    {RowShape::bare, nullptr, {check("TAIL"), check("met_eng")}},
};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("faste"), button("Proceed")}}};
constexpr Group kForm[] = {{"Frame1", 0, kRows}, {nullptr, -1, kButtons}};

// --- actions

void open(Session& s) { quick(s) = {.metric = s.unit_mode == UnitMode::metric}; }

void pick_cartridge(Session& s, int) { pick_cartridge_of_load(s, picked_row(field(s, kName, "HVolDat"))); }
void pick_bullet(Session& s, int) { take_bullet(s, picked_row(field(s, kName, "Bnam"))); }
void pick_powder(Session& s, int) { take_powder(s, picked_row(field(s, kName, "PulvDat"))); }
void toggle_tail(Session& s, int) { toggle(s, screen_name(s, Role::dimensions), "TAIL"); }

// The box has changed already: what was entered in the former units is shown in the new ones.
void flip_units(Session& s, int) {
  std::array<double, kQuick.size()> values{};
  for (std::size_t k = 0; k < kQuick.size(); ++k) values[k] = value_of(s, k);
  quick(s).metric = field(s, kName, "met_eng").checked;
  for (std::size_t k = 0; k < kQuick.size(); ++k)
    if (quick(s).typed[k])
      set_text(s, kName, kQuick[k].field, text_of(s, kQuick[k], quick(s).metric, values[k]));
}

void units_chosen(Session& s) {
  field(s, kName, "met_eng").checked = s.unit_mode == UnitMode::metric;
  flip_units(s, 0);
}

void close_it(Session& s, int) { hide_screen(s, kName); }

// One value into the load; "?" where it is not above zero, but a barrel then takes its usual length.
void take_value(Session& s, std::size_t k) {
  const QuickNumber& q = kQuick[k];
  double& value = q.value(s, 0);
  value = value_of(s, k);
  if (!(value > 0) && k == kBarrel) value = 24.0;
  if (value > 0) return write_number(s, value, q.patterns);
  value = 0;
  write_texts(s, value, "?", "?");
}

bool charge_fits(const Session& s) {
  const double caseM3 = s.state.dim.Veff / dicht_H2 / (kGrainsPerGram * 1000000);
  const double chargeKg = s.state.chargeGr / (kGrainsPerGram * 1000);
  if (!(shown_number(s, s.state.dim.Veff) > 0)) return false;
  return !(s.state.Pdens > 0) || caseM3 - chargeKg / (s.state.Pdens * 1000) > kLeastFreeVol;
}

void proceed(Session& s, int) {
  for (std::size_t k = 0; k < kQuick.size(); ++k) take_value(s, k);
  quick(s).typed = {};
  recompute_dimensions(s, kOverallLength);
  if (s.state.chargeGr > 0) s.valid.ask_charge = false;
  setResultsValid(s, false);
  if (!charge_fits(s)) return warn(s, MessageText(s).msg(413).line().msg(414));
  hide_screen(s, kName);
  recalculate(s);
}

constexpr ControlAction kActions[] = {
    {"HVolDat", pick_cartridge}, {"Bnam", pick_bullet}, {"PulvDat", pick_powder}, {"TAIL", toggle_tail},
    {"met_eng", flip_units},     {"faste", close_it},   {"Proceed", proceed},
};

void refresh(Session& s) {
  show_text(s, kName, "HVolDat", s.load.pattyp);
  show_text(s, kName, "Bnam", s.load.bultyp);
  show_text(s, kName, "PulvDat", s.load.pulver);
  field(s, kName, "TAIL").checked = s.state.dim.TAIL;
  const State& state = quick(s);
  field(s, kName, "met_eng").checked = state.metric;
  for (std::size_t k = 0; k < kQuick.size(); ++k)
    if (!state.typed[k])
      show_text(s, kName, kQuick[k].field, text_of(s, kQuick[k], state.metric, kQuick[k].value(s, 0)));
}

}  // namespace

// At a user's very first start the quick start stands open on a delivered load, an example to try out.
void open_first_example(Session& s) {
  if (!s.first_start) return;
  s.first_start = false;
  const Action action(s);
  const std::string file = data_path(s, kFirstExample);
  // Read, not opened: it gets no place among the user's own loads, and its first save asks for a name.
  if (!file_exists(file) || !load_read(s, file)) return;
  open_screen(s, kName);
  s.status = s.language.text("frmfast", "first_example");
}

extern const ScreenSpec kFrmFast{.name = kName,
                                 .section = "frmfast",
                                 .shape = ScreenShape::floating,
                                 .role = Role::quick_start,
                                 .form = kForm,
                                 .default_button = "Proceed",
                                 .numbers = kNumbers,
                                 .actions = kActions,
                                 .open = open,
                                 .refresh = refresh,
                                 .imperial = imperial,
                                 .units_chosen = units_chosen};

}  // namespace tv
