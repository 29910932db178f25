// Form9: the burn function of the load's powder, looked at, shaped, fitted, and held against a measured curve.
#include "screens/form9.h"

#include <utility>

#include "screens/all.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace form9 {

std::string text(const Session& s, std::string_view key) { return s.language.text(kSection, key); }

void tell(Session& s, std::vector<int> hints, const std::string& more) {
  std::erase_if(hints, [](int hint) { return hint < 0; });
  state(s).hints = {std::move(hints), more};
}

bool in_mode(const Session& s, Mode mode) { return state(s).mode == mode; }

}  // namespace form9

namespace {

using namespace form9;

constexpr double kMost = 100000;

// --- numbers

template <double BurnLaw::*Member>
double& law(Session& s, int) {
  return form9::state(s).now.law.*Member;
}
template <double Powder::*Member>
double& powder(Session& s, int) {
  return form9::state(s).now.*Member;
}
template <double State::*Member>
double& own_value(Session& s, int) {
  return form9::state(s).*Member;
}
std::size_t index(int i) { return static_cast<std::size_t>(i - 1); }
double& ratio(Session& s, int i) { return form9::state(s).table.rows[index(i)].x; }
double& measured(Session& s, int i) { return form9::state(s).table.rows[index(i)].f; }
double& time_of(Session& s, int i) { return form9::state(s).reference.rows[index(i)].ms; }
double& pressure_of(Session& s, int i) { return form9::state(s).reference.rows[index(i)].MPa; }

// Only the first time may be 0.
Limits time_limits(const Session&, const NumberSide& side, int i) {
  return i == 1 ? Limits{0, side.limits.most} : side.limits;
}
// In the unit on show, whichever that is.
Limits as_told(const Session&, const NumberSide& side, int) { return side.limits; }

constexpr NumberField shaped_by(NumberSide side, double& (*value)(Session&, int)) {
  return {.sides = {{side}}, .value = value, .changed = law_edited, .left = law_left};
}
constexpr NumberField kept(NumberSide side, double& (*value)(Session&, int), int count = 0,
                           void (*changed)(Session&, int, bool) = nullptr,
                           Limits (*limits)(const Session&, const NumberSide&, int) = nullptr) {
  return {.sides = {{side}},
          .value = value,
          .count = count,
          .changed = changed,
          .limits = limits,
          .zero_empty = true};
}

const NumberField kNumbers[] = {
    shaped_by({"box_ba", &units::plain, {0.001, 1000}, nullptr, "0.0000"}, law<&BurnLaw::Ba0>),
    shaped_by({"boxa0", &units::plain, {-0.99, 10000}, nullptr, "0.0000"}, law<&BurnLaw::PDko>),
    shaped_by({"boxzx", &units::plain, {0.01, 1}, nullptr, "0.000"}, law<&BurnLaw::Limz1>),
    one_side({"man_Qex", &units::kJ_per_kg, {100, 10000}, nullptr, "####0"}, powder<&Powder::Exw>,
             value_edited),
    one_side({"cp_cv", &units::plain, {0.1, 10}, nullptr, "0.0000"}, powder<&Powder::Kap>, value_edited),
    one_side({"man_pd", &units::g_per_cm3, {0.1, 10}, nullptr, "0.000"}, powder<&Powder::Pdens>,
             value_edited),
    one_side({"man_bdens", &units::g_per_cm3, {0, 10}, nullptr, "0.000"}, powder<&Powder::bulkdn>,
             value_edited),
    kept({"man_Pmax", &units::mode_of_MPa, {1, 1000}}, own_value<&State::p_MPa>),
    kept({"man_gew", &units::plain, {0.1, 1000}}, own_value<&State::charge_g>),
    kept({"man_vol", &units::plain, {1, 1000}}, own_value<&State::vessel_cm3>),
    kept({"vividx", &units::plain, {0.01, 0.99}}, ratio, kVivacityRows, table_edited),
    kept({"vivsoll", &units::plain, {0.0001, 1000}}, measured, kVivacityRows, table_edited),
    kept({"vivsoll37", &units::plain, {0.0001, 1000}}, own_value<&State::mean37>, 0, table_edited),
    kept({"vivsoll38", &units::plain, {0.0001, 1000}}, own_value<&State::mean38>, 0, table_edited),
    kept({"zeit", &units::plain, {0.000001, 100}, nullptr, "#.000##"}, time_of, kReferenceRows, nullptr,
         time_limits),
    kept({"druck", &units::mode_of_MPa, {1, kMost}}, pressure_of, kReferenceRows, nullptr, as_told),
};

// --- form

// Below each other: the column must leave room for the picture in a tab.
constexpr Row kModes[] = {{RowShape::bare, nullptr, {option("Option10")}},
                          {RowShape::bare, nullptr, {option("Option11")}},
                          {RowShape::bare, nullptr, {option("Option12")}}};
constexpr Row kPowderRows[] = {
    wide_row("anzPnam", load_list("anzPnam", RecordKind::powders)),
    source_row("anzPnam"),
    number_row("box_ba"),
    number_row("boxa0"),
    number_row("boxzx"),
    display_row("box_fakB", nullptr),
};
constexpr Row kTable[] = {
    {RowShape::grid,
     nullptr,
     {check("vivmark"), number("vividx"), number("vivsoll"), display("vivist")},
     kVivacityRows},
    {RowShape::pair, "vivist_at0", {display("vivist0")}},
    {RowShape::pair, "vivist_at1", {display("vivist10")}},
    number_row("vivsoll37"),
    {RowShape::pair, "vivist", {display("vivist37")}},
    number_row("vivsoll38"),
    {RowShape::pair, "vivist", {display("vivist38")}},
    {RowShape::buttons, nullptr, {button("L_bomb"), button("SV_bomb")}},
    {RowShape::buttons, nullptr, {button("vivplot"), button("cal_tab")}},
};
constexpr Row kFiring[] = {
    number_row("man_Qex"),
    number_row("man_pd"),
    number_row("man_bdens"),
    number_row("man_Pmax"),
    {RowShape::pair, "man_gew", {number("man_gew", "unit_g")}},
    {RowShape::pair, "man_vol", {number("man_vol", "unit_ccm")}},
    {RowShape::pair, "cp_cv", {number("cp_cv"), button("calc_exw")}},
};
constexpr Row kManual[] = {
    paragraph_row("hint8"),
    paragraph_row("hint11"),
    paragraph_row("hint12"),
    {RowShape::buttons, nullptr, {button("cal_man")}},
};
constexpr Row kReference[] = {
    {RowShape::grid, nullptr, {number("zeit"), number("druck")}, kReferenceRows},
    note_row("@druck_unit"),
    {RowShape::block, "lblRefKomment", {Place{"lblRefKomment", ControlKind::memo}}},
    {RowShape::buttons, nullptr, {button("DZ_load"), button("DZ_ok")}},
};
constexpr Row kPaste[] = {{RowShape::buttons, nullptr, {button("paste")}}};
constexpr Row kPlot[] = {{RowShape::block, nullptr, {surface("Pic1")}},
                         wide_row("readout", display("readout")),
                         paragraph_row("@hilf")};
constexpr Row kButtons[] = {
    {RowShape::buttons,
     nullptr,
     {button("undo"), button("redo"), button("restore"), button("save"), button("vivabb")}}};

bool table_mode(const Session& s) { return in_mode(s, Mode::table); }
bool manual_mode(const Session& s) { return in_mode(s, Mode::manual); }
bool reference_mode(const Session& s) { return in_mode(s, Mode::reference); }
bool law_mode(const Session& s) { return !reference_mode(s); }
bool paste_mode(const Session& s) { return !manual_mode(s); }
std::string firing_summary(const Session& s) {
  const Powder& p = form9::state(s).now;
  const auto unit = [&s](const char* key) { return " " + s.language.text("units", key); };
  return format_number(p.Exw, "0") + unit("unit_kJkg") + " \u00B7 " + format_number(p.Kap, "0.0000") +
         " \u00B7 " + format_number(p.Pdens, "0.000") + unit("unit_gccm");
}

constexpr Group kForm[] = {
    {nullptr, 0, kModes},
    {"frm_coef", 0, kPowderRows, law_mode},
    {"frm_tab", 0, kTable, table_mode},
    {"frm_man", 0, kManual, manual_mode},
    {"frm_manbomb", 0, kFiring, law_mode, firing_summary},
    {"frm_ref", 0, kReference, reference_mode},
    {nullptr, 0, kPaste, paste_mode},
    {nullptr, 1, kPlot},
    {nullptr, -1, kButtons},
};

// --- actions

void choose_mode(Session& s, int i) {
  State& st = form9::state(s);
  st.mode = static_cast<Mode>(i);
  st.pointer.reset();
  st.told.clear();
  constexpr int kMeaning = 20;  // of the first mode, in the hint line
  tell(s, {kMeaning + i});
}
void pick_powder(Session& s, int) { take_powder(s, picked_row(field(s, kName, "anzPnam"))); }
void paste_rows(Session& s, int) { reference_mode(s) ? paste_reference(s) : paste_table(s); }
void open_record(Session& s, int) { open_screen(s, "Form10"); }
// As a tab it stays where it is, behind the pictures of the shot.
void press_close(Session& s, int) {
  if (s.options.atiles)
    bring_to_front(s, Role::output);
  else
    hide_screen(s, kName);
}

constexpr ControlAction kActions[] = {
    {"Option1", choose_mode},
    {"anzPnam", pick_powder},
    {"vivmark", toggle_row},
    {"vividx", nullptr, nullptr, toggle_row},
    {"cal_tab", fit},
    {"vivplot", show_misses},
    {"L_bomb", load_table},
    {"SV_bomb", save_table},
    {"calc_exw", ratio_from_firing},
    {"cal_man", form9::calculate},
    {"lblRefKomment", nullptr, comment_edited},
    {"DZ_ok", accept_reference},
    {"DZ_load", load_reference},
    {"paste", paste_rows},
    {"undo", form9::undo},
    {"redo", form9::redo},
    {"restore", form9::restore},
    {"save", open_record},
    {"vivabb", press_close},
};

constexpr Surface kSurfaces[] = {{"Pic1", form9::draw, form9::pointer, 640, 480}};

void follow(Session& s) {
  if (!form9::state(s).written) write_numbers(s, *s.screens.find(kName)->second.spec);
  follow_load(s);
}

// The last files are read once, when the program shows its windows.
void open(Session& s) {
  if (!std::exchange(form9::state(s).started, true)) {
    read_last_table(s);
    read_last_reference(s);
  }
  follow(s);
}

// --- keys

// From a field of the table to the next, row by row.
bool next_cell(Session& s) {
  if (!table_mode(s) || s.focus.screen != kName) return false;
  const NumberPlace at = find_number(s, kName, s.focus.field);
  const std::string_view name = at.number ? at.own().field : "";
  if (name == "vividx")
    s.user->focus(kName, "vivsoll" + std::to_string(at.i));
  else if (name == "vivsoll")
    s.user->focus(kName, "vividx" + std::to_string(at.i % kVivacityRows + 1));
  else
    s.user->focus(kName, "vividx1");
  return true;
}

// More than one cell goes into the table, one alone into its field.
bool paste_key(Session& s) {
  if (manual_mode(s) || !find_number(s, kName, s.focus.field).number) return false;
  const std::string cells = pasted_text(s).value_or("");
  if (cells.find_first_of("\t\n\r;") == std::string::npos) return false;
  leave_focus(s);
  paste_rows(s, 0);
  return true;
}

constexpr const char* kOwnKeys[] = {"Ctrl+Z", "Ctrl+Shift+Z", "Ctrl+Tab"};

bool key(Session& s, std::string_view name) {
  if (name == "Ctrl+Z")
    form9::undo(s, 0);
  else if (name == "Ctrl+Shift+Z")
    form9::redo(s, 0);
  else if (name == "Ctrl+Tab")
    return next_cell(s);
  else if (name == "Ctrl+V")
    return paste_key(s);
  else
    return shape_by_key(s, name);
  return true;
}

// --- what is on show

void show_hints(Session& s) {
  const Hints& hints = form9::state(s).hints;
  std::string line;
  for (const int n : hints.numbers)
    line += std::string(trim(form9::text(s, "hint" + std::to_string(n)))) + " ";
  set_text(s, kName, "hilf", trim(line + hints.more));
}

// The pressures follow the unit in which they are shown.
void follow_units(Session& s) {
  State& st = form9::state(s);
  const int unit = s.unit_mode == UnitMode::imperial ? 0 : to_int(s.state.pressure_unit_factor);
  if (std::exchange(st.pressure_unit, unit) == unit) return;
  write_number(s, st.p_MPa);
  for (const ReferencePoint& row : st.reference.rows) write_number(s, row.MPa);
}

void refresh(Session& s) {
  if (!s.screens.find(kName)->second.visible) return;  // it follows when it is shown
  State& st = form9::state(s);
  follow(s);
  follow_units(s);
  for (int i = 0; i < 3; ++i)
    field(s, kName, "Option1" + std::to_string(i)).checked = static_cast<int>(st.mode) == i;
  show_text(s, kName, "anzPnam", s.load.pulver);
  set_text(s, kName, "box_fakB", format_number(st.now.law.Ba1, "0.0000"));
  set_text(s, kName, "readout", st.told);
  field(s, kName, "undo").enabled = can_undo(st.history);
  field(s, kName, "redo").enabled = can_redo(st.history);
  show_vessel(s);
  show_reference(s);
  show_hints(s);
}

}  // namespace

extern const ScreenSpec kForm9{.name = form9::kName,
                               .section = form9::kSection,
                               .shape = ScreenShape::child,
                               .role = Role::burn_function,
                               .form = kForm,
                               .scrolling_column = 0,
                               .numbers = kNumbers,
                               .actions = kActions,
                               .surfaces = kSurfaces,
                               .open = open,
                               .refresh = refresh,
                               .key = key,
                               .own_keys = kOwnKeys};

}  // namespace tv
