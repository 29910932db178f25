// frmMeas: what was measured with a load, in strings by charge, beside what is predicted.
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "screens/all.h"
#include "screens/measure_screens.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/measured_read.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/prediction.h"
#include "session/units.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmMeas";
constexpr std::size_t kRows = 30;
constexpr int kDeep = 15;
constexpr double kLeastVelocity = 10, kMostVelocity = 3000;  // m/s
constexpr double kLeastPressure = 1, kMostPressure = 2000;   // MPa
constexpr double kMostCharge = 1543230;                      // grains

// What the grid shows of the string at hand; it follows the load, and writes into it.
struct State {
  std::size_t series = 0, first = 0;  // the string, and its shot in the first row
  std::optional<UnitMode> units;      // of the program, when they were followed last
  bool fps = false;
  double charge_gr = 0;
  std::array<double, kRows> v{}, p{};  // m/s, Pa; 0: none
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }

std::vector<MeasuredSeries>& strings(Session& s) { return s.load.measured; }
MeasuredSeries* chosen(Session& s) {
  return state(s).series < strings(s).size() ? &strings(s)[state(s).series] : nullptr;
}
const MeasuredSeries* chosen(const Session& s) {
  return state(s).series < s.load.measured.size() ? &s.load.measured[state(s).series] : nullptr;
}

// --- strings and shots

MeasuredSeries new_series(const Session& s) {
  MeasuredSeries series;
  series.name = std::to_string(s.load.measured.size() + 1);
  series.charge_gr = s.state.chargeGr;
  return series;
}

MeasuredSeries& begun_series(Session& s) {
  if (!chosen(s)) {
    strings(s).push_back(new_series(s));
    state(s).series = strings(s).size() - 1;
  }
  return *chosen(s);
}

bool empty_shot(const MeasuredShot& shot) { return shot == MeasuredShot{}; }

// The shot of a row, made if it is not there yet; rows between stay empty.
MeasuredShot& shot_of(Session& s, int row) {
  std::vector<MeasuredShot>& shots = begun_series(s).shots;
  const std::size_t at = state(s).first + static_cast<std::size_t>(row - 1);
  if (shots.size() <= at) shots.resize(at + 1);
  return shots[at];
}

void trim_shots(Session& s) {
  std::vector<MeasuredShot>& shots = begun_series(s).shots;
  while (!shots.empty() && empty_shot(shots.back())) shots.pop_back();
  outputs_changed(s);
}

const MeasuredShot* shown_shot(const Session& s, std::size_t row) {
  const MeasuredSeries* series = chosen(s);
  const std::size_t at = state(s).first + row;
  return series && at < series->shots.size() ? &series->shots[at] : nullptr;
}

// --- numbers

double shown_velocity(double v, const Session& s) { return state(s).fps ? v * kFeetPerMetre : v; }
double stored_velocity(double v, const Session& s) { return state(s).fps ? v / kFeetPerMetre : v; }
Limits velocity_limits(Limits l, const Session& s) {
  return {std::round(shown_velocity(l.least, s)), std::round(shown_velocity(l.most, s))};
}
const Unit kVelocity{nullptr, shown_velocity, stored_velocity, nullptr, velocity_limits};

std::size_t row_of(int i) { return static_cast<std::size_t>(i - 1); }
double& velocity(Session& s, int i) { return state(s).v[row_of(i)]; }
double& pressure(Session& s, int i) { return state(s).p[row_of(i)]; }
double& charge(Session& s, int) { return state(s).charge_gr; }

bool is_velocity(double v) { return v >= kLeastVelocity && v <= kMostVelocity; }
bool is_pressure(double p) { return p >= 1e6 * kLeastPressure && p <= 1e6 * kMostPressure; }

void velocity_changed(Session& s, int i, bool) {
  shot_of(s, i).velocity = is_velocity(velocity(s, i)) ? velocity(s, i) : 0;
  trim_shots(s);
}
void pressure_changed(Session& s, int i, bool) {
  shot_of(s, i).pressure = is_pressure(pressure(s, i)) ? pressure(s, i) : 0;
  trim_shots(s);
}
void charge_changed(Session& s, int, bool) {
  begun_series(s).charge_gr = charge(s, 0);
  outputs_changed(s);
}

const NumberField kNumbers[] = {
    {.sides = {{{"mes_chgm", &units::gram_of_grain, {0, 100000}, "##0.00#", "##0.00#"},
                {"mes_chgn", &units::grain, {0, kMostCharge}, "##0.0#", "##0.0#"}}},
     .value = charge,
     .changed = charge_changed,
     .zero_empty = true},
    {.sides = {{{"mes_v", &kVelocity, {kLeastVelocity, kMostVelocity}, nullptr, "0.0"}}},
     .value = velocity,
     .count = kRows,
     .changed = velocity_changed,
     .zero_empty = true},
    {.sides = {{{"mes_p", &units::mode_of_Pa, {kLeastPressure, kMostPressure}}}},
     .value = pressure,
     .count = kRows,
     .changed = pressure_changed,
     .zero_empty = true},
};

// --- form

constexpr Place text(const char* control) { return {control, ControlKind::text}; }
constexpr const char* kSpeed = "%unit_mps|unit_fps";
constexpr Row kSets[] = {
    {RowShape::block, nullptr, {Place{"mes_sets", ControlKind::list}}},
    {RowShape::buttons, nullptr, {button("mes_add"), button("mes_del")}},
    wide_row("mes_series", text("mes_series")),
    number_row("mes_chgm", "mes_chgn"),
    {RowShape::pair, "mes_temp", {Place{"mes_temp", ControlKind::text, "unit_C"}}},
    wide_row("mes_unit", {"mes_unit", ControlKind::combo}),
    {RowShape::buttons, nullptr, {button("mes_read"), button("mes_paste")}},
};
constexpr Row kStatistics[] = {
    display_row("mes_n", nullptr),
    display_row("mes_mean", kSpeed),
    display_row("mes_sd", kSpeed),
    display_row("mes_es", kSpeed),
    {RowShape::pair, "mes_ci", {display("mes_ci", kSpeed)}},
    display_row("mes_diff", "unit_percent"),
};
constexpr Row kShots[] = {{RowShape::grid,
                           nullptr,
                           {number("mes_v"), number("mes_p"), check("mes_ex"), text("mes_reason")},
                           kRows,
                           kDeep}};
constexpr Row kPages[] = {
    {RowShape::bare, nullptr, {button("mes_up"), display("mes_page"), button("mes_down")}}};
constexpr Row kPlot[] = {{RowShape::block, nullptr, {surface("mes_plot")}}};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("copy"), button("mes_fit"), button("close")}}};
bool more_rows(const Session& s) {
  const MeasuredSeries* series = chosen(s);
  return series && (series->shots.size() >= kRows || state(s).first > 0);
}
constexpr Group kForm[] = {{"grp_sets", 0, kSets},   {"grp_stat", 0, kStatistics},
                           {"grp_shots", 1, kShots}, {nullptr, 1, kPages, more_rows},
                           {nullptr, 1, kPlot},      {nullptr, -1, kButtons}};
bool imperial(const Session& s) { return state(s).fps; }

// --- actions

// Another piece of the strings comes on show.
void turn_to(Session& s, std::size_t series, std::size_t first) {
  State& st = state(s);
  st.series = series;
  st.first = first;
  st.v = st.p = {};
}
void choose(Session& s, std::size_t series) { turn_to(s, series, 0); }
void pick_string(Session& s, int i) { choose(s, static_cast<std::size_t>(i)); }

void add_string(Session& s, int) {
  strings(s).push_back(new_series(s));
  choose(s, strings(s).size() - 1);
}

void delete_string(Session& s, int) {
  if (!chosen(s) || !ask_ok_cancel(s, MessageText(s).msg(437))) return;
  strings(s).erase(strings(s).begin() + static_cast<std::ptrdiff_t>(state(s).series));
  choose(s, std::min(state(s).series, strings(s).empty() ? 0 : strings(s).size() - 1));
  outputs_changed(s);
}

void type_name(Session& s, int) { begun_series(s).name = field(s, kName, "mes_series").text; }
void type_temperature(Session& s, int) { begun_series(s).temperature = field(s, kName, "mes_temp").text; }
void leave_out(Session& s, int i) {
  MeasuredShot& shot = shot_of(s, i);
  shot.excluded = field(s, kName, "mes_ex" + std::to_string(i)).checked;
  if (!shot.excluded) shot.reason.clear();
  trim_shots(s);
}
void type_reason(Session& s, int i) {
  shot_of(s, i).reason = field(s, kName, "mes_reason" + std::to_string(i)).text;
}

void choose_unit(Session& s, int i) {
  state(s).fps = i == 1;
  write_numbers(s, *s.screens.find(kName)->second.spec);
}

void page_up(Session& s, int) {
  turn_to(s, state(s).series, state(s).first - std::min(state(s).first, kRows));
}
void page_down(Session& s, int) { turn_to(s, state(s).series, state(s).first + kRows); }

CellUnit grid_unit(const Session& s) { return state(s).fps ? CellUnit::fps : CellUnit::mps; }

// What a file or the clipboard holds; where it leaves a doubt the person says which column is which.
void take_bytes(Session& s, const std::string& bytes, CellUnit unit) {
  const ChronographRead read = read_chronograph(bytes, {unit, {}});
  if (read.in_doubt || (read.error == Unread::no_velocity && !read.preview.empty()))
    return ask_columns(s, bytes, unit);
  if (read.error != Unread::none) {
    Message message;
    message.text = unread_text(s, read.error, read.line);
    message.keys = {"msg433"};
    return warn(s, message);
  }
  take_strings(s, read.series);
}

void read_strings(Session& s, int) {
  std::string title = s.language.text("frmMeas", "mes_read");
  std::erase(title, '&');
  const auto answer = ask_file(s,
                               {FileMode::open, DialogKind::text, title, load_folder(s), "",
                                s.language.text("frmMeas", "mes_types"), ""},
                               {"csv", "txt", "tsv", "xlsx"});
  if (!answer) return;
  const FileRead file = read_file(answer->file);
  if (file.failure)
    return warn(s, MessageText(s).msg(185).add(answer->file).line().add(s.language.failure(file.failure)));
  take_bytes(s, file.bytes, CellUnit::none);
}

// Bare numbers are in the unit of the grid.
void paste_strings(Session& s, int) {
  const auto pasted = pasted_text(s);
  if (!pasted || pasted->find_first_of("0123456789") == std::string::npos)
    return warn(s, MessageText(s).msg(436));
  const bool told = read_pasted(*pasted).unit_read != CellUnit::none;
  take_bytes(s, *pasted, told ? CellUnit::none : grid_unit(s));
}

void fit_strings(Session& s, int) { open_fit(s); }
void copy(Session& s, int) { copy_results(s, kName); }
void close_it(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {{"mes_sets", pick_string},
                                      {"mes_series", nullptr, type_name},
                                      {"mes_temp", nullptr, type_temperature},
                                      {"mes_unit", choose_unit},
                                      {"mes_ex", leave_out},
                                      {"mes_reason", nullptr, type_reason},
                                      {"mes_add", add_string},
                                      {"mes_del", delete_string},
                                      {"mes_up", page_up},
                                      {"mes_down", page_down},
                                      {"mes_read", read_strings},
                                      {"mes_paste", paste_strings},
                                      {"mes_fit", fit_strings},
                                      {"copy", copy},
                                      {"close", close_it}};

// Enter goes to the field below, as in a spreadsheet.
bool use_key(Session& s, std::string_view key) {
  if ((key != "Return" && key != "Enter") || s.focus.screen != kName) return false;
  const NumberPlace at = find_number(s, kName, s.focus.field);
  if (!at.number || at.i < 1 || at.i >= static_cast<int>(kRows)) return false;
  const std::string next = at.own().field + std::to_string(at.i + 1);
  s.user->focus(kName, next);
  return true;
}

// The grid keeps the unit that was chosen for it, until that of the program is chosen anew.
void open(Session& s) {
  State& st = state(s);
  if (st.units != s.unit_mode) st.fps = s.unit_mode == UnitMode::imperial;
  st.units = s.unit_mode;
}

// --- what is on show

// The grid follows the load, whoever has changed it.
void follow_load(Session& s) {
  State& st = state(s);
  if (st.series >= strings(s).size()) choose(s, strings(s).empty() ? 0 : strings(s).size() - 1);
  State now = st;
  now.charge_gr = chosen(s) ? chosen(s)->charge_gr : 0;
  for (std::size_t i = 0; i < kRows; ++i) {
    const MeasuredShot* shot = shown_shot(s, i);
    // A value out of range counts for nothing, but stands red as it was typed.
    if (st.v[i] == 0 || is_velocity(st.v[i])) now.v[i] = shot ? shot->velocity : 0;
    if (st.p[i] == 0 || is_pressure(st.p[i])) now.p[i] = shot ? shot->pressure : 0;
  }
  if (now.charge_gr == st.charge_gr && now.v == st.v && now.p == st.p) return;
  st = now;
  write_numbers(s, *s.screens.find(kName)->second.spec);
}

std::string speed(const Session& s, double mps) { return format_pattern(shown_velocity(mps, s), "0.0"); }

std::string entry_of(const Session& s, const MeasuredSeries& series) {
  const SampleFigures f = velocity_figures(series);
  std::string line = series.charge_gr > 0 ? format_number(series.charge_gr, "0.0##") + " gr" : "? gr";
  line += "   n " + std::to_string(f.count);
  if (f.count > 0) line += "   " + speed(s, f.mean) + (state(s).fps ? " fps" : " m/s");
  return line + "   " + series.name;
}

void show_strings(Session& s) {
  Field& list = field(s, kName, "mes_sets");
  list.items.clear();
  for (const MeasuredSeries& series : strings(s)) list.items.push_back({entry_of(s, series), -1});
  list.selected = chosen(s) ? static_cast<int>(state(s).series) : -1;
  list.text = chosen(s) ? list.items[state(s).series].text : "";
  const MeasuredSeries series = chosen(s) ? *chosen(s) : MeasuredSeries{};
  show_text(s, kName, "mes_series", series.name);
  show_text(s, kName, "mes_temp", series.temperature);
  Field& unit = field(s, kName, "mes_unit");
  unit.items = {{"m/s", -1}, {"fps", -1}};
  unit.selected = state(s).fps ? 1 : 0;
  unit.text = unit.items[static_cast<std::size_t>(unit.selected)].text;
}

void show_shots(Session& s) {
  for (std::size_t i = 0; i < kRows; ++i) {
    const std::string row = std::to_string(i + 1);
    const MeasuredShot* shot = shown_shot(s, i);
    const bool out = shot && shot->excluded;
    field(s, kName, "mes_ex" + row).checked = out;
    field(s, kName, "mes_ex" + row).enabled = shot && (shot->velocity > 0 || out);
    field(s, kName, "mes_reason" + row).enabled = out;
    show_text(s, kName, "mes_reason" + row, shot ? shot->reason : "");
    for (const char* name : {"mes_v", "mes_p"}) field(s, kName, name + row).stale = out;
  }
  const std::size_t first = state(s).first, count = chosen(s) ? chosen(s)->shots.size() : 0;
  set_text(
      s, kName, "mes_page",
      std::to_string(first + 1) + " ... " + std::to_string(first + kRows) + " / " + std::to_string(count));
  field(s, kName, "mes_up").enabled = first > 0;
  field(s, kName, "mes_down").enabled = count >= first + kRows;
}

void show_figures(Session& s) {
  const SampleFigures f = chosen(s) ? velocity_figures(*chosen(s)) : SampleFigures{};
  const auto put = [&](const char* name, bool known, const std::string& shown) {
    set_text(s, kName, name, known ? shown : std::string());
  };
  const bool spread = f.has_spread();
  put("mes_n", chosen(s) != nullptr, std::to_string(f.count));
  put("mes_mean", f.count > 0, speed(s, f.mean));
  put("mes_sd", spread, speed(s, f.sd));
  put("mes_es", spread, speed(s, f.es));
  put("mes_ci", spread, speed(s, f.low) + " ... " + speed(s, f.high));
  const auto predicted =
      f.count > 0 && chosen(s)->charge_gr > 0 ? predicted_at(s, chosen(s)->charge_gr) : std::nullopt;
  put("mes_diff", predicted.has_value(),
      predicted ? format_pattern(100 * (f.mean / predicted->vMuzzle - 1), "+0.0;-0.0;0.0") : "");
}

void refresh(Session& s) {
  if (!s.screens.find(kName)->second.visible) return;
  follow_load(s);
  show_strings(s);
  show_shots(s);
  show_figures(s);
  const bool some = chosen(s) != nullptr;
  for (const char* name : {"mes_del", "mes_fit"}) field(s, kName, name).enabled = some;
}

DrawList draw(const Session& s, const Extent& e) { return measured_plot(s, e, state(s).fps); }
constexpr Surface kSurfaces[] = {{"mes_plot", draw, nullptr, 620, 260}};

}  // namespace

void take_strings(Session& s, std::vector<MeasuredSeries> read) {
  if (read.empty()) return;
  MeasuredSeries* empty = chosen(s) && chosen(s)->shots.empty() ? chosen(s) : nullptr;
  std::size_t shown = strings(s).size();
  if (empty) {  // begun by the person: it keeps what was said of it where the file says nothing
    if (!(read.front().charge_gr > 0)) read.front().charge_gr = empty->charge_gr;
    if (read.front().temperature.empty()) read.front().temperature = empty->temperature;
    shown = state(s).series;
    *empty = std::move(read.front());
    read.erase(read.begin());
  }
  std::ranges::move(read, std::back_inserter(strings(s)));
  choose(s, shown);
  outputs_changed(s);
}

extern const ScreenSpec kFrmMeas{.name = kName,
                                 .section = "frmMeas",
                                 .form = kForm,
                                 .numbers = kNumbers,
                                 .actions = kActions,
                                 .surfaces = kSurfaces,
                                 .open = open,
                                 .refresh = refresh,
                                 .key = use_key,
                                 .imperial = imperial};

}  // namespace tv
