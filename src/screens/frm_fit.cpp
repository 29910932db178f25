// frmFit: the powder of the load fitted to its measured strings, what that is worth, and what it cannot know.
#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

#include "calculators/powder_fit.h"
#include "screens/all.h"
#include "screens/measure_screens.h"
#include "session/clipboard.h"
#include "session/data_sets.h"
#include "session/entry.h"
#include "session/fitted_powder.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/prediction.h"
#include "session/run.h"
#include "session/take_records.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmFit";

struct State {
  int numbers = 2;  // fit_n: one, two, automatic
  std::vector<FitPoint> points;
  CalcState of;        // the load that was fitted
  std::string powder;  // its name
  PowderFit fit;
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }

bool has_values(const PowderFit& fit) { return fit.verdict != FitVerdict::undetermined; }

// --- form

constexpr Row kNumbersFitted[] = {
    {RowShape::bare, "fit_n", {option("fit_n0"), option("fit_n1"), option("fit_n2")}},
    note_row("@fit_verdict"),
};
constexpr Row kValues[] = {
    {RowShape::pair, "fit_Ba0", {display("fit_Ba0"), display("fit_Ba0_err")}},
};
constexpr Row kSecond[] = {
    {RowShape::pair, "@second_name", {display("fit_second"), display("fit_second_err")}},
    display_row("fit_corr", nullptr),
};
bool has_second(const Session& s) { return has_values(state(s).fit) && state(s).fit.fitted.size() > 1; }
constexpr Row kFigures[] = {
    {RowShape::pair, "fit_v", {display("fit_v0"), display("fit_v1")}},
    {RowShape::pair, "fit_p", {display("fit_p0"), display("fit_p1")}},
};
constexpr Row kNote[] = {{RowShape::block, nullptr, {Place{"fit_note", ControlKind::view}}}};
constexpr Row kPlot[] = {{RowShape::block, nullptr, {surface("fit_plot")}}};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("copy"), button("fit_save"), button("cancel"), button("fit_take")}}};
constexpr Group kForm[] = {
    {nullptr, 0, kNumbersFitted}, {"grp_values", 0, kValues}, {"grp_second", 0, kSecond, has_second},
    {"grp_figures", 0, kFigures}, {nullptr, 1, kPlot},        {"fit_note_head", -1, kNote},
    {nullptr, -1, kButtons}};

// --- actions

constexpr FitNumbers kHowMany[] = {FitNumbers::one, FitNumbers::two, FitNumbers::automatic};

void fit(Session& s) {
  State& st = state(s);
  const Waiting waiting(*s.user);
  st.fit = fit_powder(st.of, st.points, kHowMany[st.numbers]);
}

void choose_numbers(Session& s, int i) {
  state(s).numbers = i;
  fit(s);
}

std::string today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 16> day{};
  std::strftime(day.data(), day.size(), "%Y-%m-%d", &local);
  return day.data();
}

// The load is still the one that was fitted.
bool is_current(const Session& s) { return s.valid.results && s.shown.state == state(s).of; }

void take(Session& s, int) {
  if (!is_current(s) || !has_values(state(s).fit)) return warn(s, MessageText(s).msg(435));
  take_fitted_powder(s, state(s).fit.state, today());
  hide_screen(s, kName);
}

// The record of the powder that was fitted, with the fitted numbers; a start pressure is none of its fields.
Record fitted_record(Session& s, const std::string& name) {
  const RecordTable& table = s.set(RecordKind::powders).file.table;
  std::string_view former = trim(state(s).powder);
  if (former.ends_with(" ?")) former.remove_suffix(2);
  const int row = table.find(trim(former));
  Record record = row >= 0 ? table.record(row) : Record{};
  const CalcState& c = state(s).fit.state;
  record[powder_field::name] = name;
  const std::pair<int, double> values[] = {{powder_field::Exw, c.Exw},     {powder_field::Kap, c.Kap},
                                           {powder_field::Pdens, c.Pdens}, {powder_field::Ba0, c.Ba0},
                                           {powder_field::PDko, c.PDko},   {powder_field::Limz1, c.Limz1},
                                           {powder_field::Ba1, c.Ba1},     {powder_field::bulkdn, c.bulkdn}};
  for (const auto& [field_number, value] : values)
    record[static_cast<std::size_t>(field_number)] = general(value);
  record[powder_field::mean_burn_rate] = mean_burn_rate(c.Ba0, c.PDko, c.Limz1, c.Ba1);
  return record;
}

void save(Session& s, int) {
  const State& st = state(s);
  if (!has_values(st.fit)) return;
  const auto name = s.user->input(
      {s.language.text("frmFit", "frmFit"), MessageText(s).msg(477), fitted_name(st.powder, today())});
  if (!name || trim(*name).empty()) return;
  if (!add_record(s, RecordKind::powders, fitted_record(s, clean_field(*name)))) return;
  // A load that has these values has that powder now.
  const CalcState& fitted = st.fit.state;
  if (s.state.Ba0 == fitted.Ba0 && s.state.PDko == fitted.PDko && s.state.Ba1 == fitted.Ba1)
    s.load.pulver = clean_field(*name);
}

void copy(Session& s, int) { copy_results(s, kName); }
void cancel(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {
    {"fit_n", choose_numbers}, {"fit_take", take}, {"fit_save", save}, {"copy", copy}, {"cancel", cancel}};

// --- what is on show

constexpr const char* kVerdicts[] = {"fit_determined", "fit_barely", "fit_undetermined"};  // by FitVerdict

std::string error_text(const FittedNumber& n, const char* pattern, double size) {
  return n.error > 0 ? "\u00B1 " + format_number(n.error / size, pattern) : "\u00B1 ?";
}

void show_numbers(Session& s, const PowderFit& fit) {
  const auto put = [&](const char* name, const std::string& text) { set_text(s, kName, name, text); };
  for (const char* name : {"fit_Ba0", "fit_Ba0_err", "fit_second", "fit_second_err", "fit_corr"})
    put(name, "");
  put("second_name", s.language.text("frmFit", "fit_second"));
  if (!has_values(fit)) return;
  put("fit_Ba0", format_number(fit.fitted[0].value, "0.0000"));
  put("fit_Ba0_err", error_text(fit.fitted[0], "0.0000", 1));
  if (fit.fitted.size() < 2) return;
  const FittedNumber& second = fit.fitted[1];
  const bool start = std::string_view(second.key) == "anfdru";
  std::string caption = s.language.text("form4", start ? "ini_press1" : "PDko");
  std::erase(caption, '&');
  put("second_name", caption);
  put("fit_second", start ? pressure_text(s, second.value) : format_number(second.value, "0.000"));
  put("fit_second_err", start ? "\u00B1 " + pressure_text(s, second.error) : error_text(second, "0.000", 1));
  put("fit_corr", format_pattern(fit.correlation, "0.00;-0.00"));
}

void show_shots(Session& s, const PowderFit& fit) {
  const auto pair = [&](const char* before, const char* after, auto text, double ShotFigures::*figure) {
    set_text(s, kName, before, fit.before.*figure > 0 ? text(s, fit.before.*figure) : "");
    set_text(s, kName, after, has_values(fit) ? "\u2192 " + text(s, fit.after.*figure) : "");
  };
  pair(
      "fit_v0", "fit_v1", [](const Session& of, double v) { return velocity_text(of, v, 1); },
      &ShotFigures::vMuzzle);
  pair("fit_p0", "fit_p1", pressure_text, &ShotFigures::pMax);
}

void refresh(Session& s) {
  if (!s.screens.find(kName)->second.visible) return;
  const State& st = state(s);
  for (int i = 0; i < 3; ++i) field(s, kName, "fit_n" + std::to_string(i)).checked = i == st.numbers;
  const bool current = is_current(s);
  std::string verdict = s.language.text("frmFit", kVerdicts[static_cast<std::size_t>(st.fit.verdict)]);
  if (!current) verdict += " " + s.language.fastmsg("fobsol0") + " " + s.language.fastmsg("fobsol1");
  set_text(s, kName, "fit_verdict", verdict);
  show_numbers(s, st.fit);
  show_shots(s, st.fit);
  set_text(s, kName, "fit_note", s.language.text("frmFit", "fit_pressure"));
  for (const char* name : {"fit_Ba0", "fit_Ba0_err", "fit_second", "fit_second_err", "fit_corr", "fit_v0",
                           "fit_v1", "fit_p0", "fit_p1"})
    field(s, kName, name).stale = !current;
  field(s, kName, "fit_take").enabled = current && has_values(st.fit);
  field(s, kName, "fit_save").enabled = has_values(st.fit);
}

// --- plot: what is left, with the intervals of the means

DrawList draw(const Session& s, const Extent& e) {
  const State& st = state(s);
  Chart chart;
  chart.look = chart_look(s, e.dark);
  ChartSeries left;
  left.weight = 0;
  left.shape = ChartPoints::rings;
  left.reading = ChartReading::at_points;
  left.colour = chart.look.colours.pressure;
  const bool fps = s.unit_mode == UnitMode::imperial;
  const double size = fps ? kFeetPerMetre : 1;
  double least = 0, most = 0;
  for (std::size_t i = 0; i < st.fit.residuals.size(); ++i) {
    const FitPoint& p = st.points[i];
    const double y = size * st.fit.residuals[i];
    const double half =
        p.count >= 2 ? size * student_t(0.95, p.count - 1) * p.sd / std::sqrt(static_cast<double>(p.count))
                     : 0;
    left.points.push_back({p.charge_gr, y});
    left.spread.push_back(half);
    least = std::min(least, y - half);
    most = std::max(most, y + half);
  }
  if (left.points.empty())
    return empty_chart(s.language.text("frmFit", "fit_undetermined"), chart.look, e.width, e.height,
                       e.text_width)
        .list;
  const auto [low, high] = std::ranges::minmax(left.points, {}, &Point::x);
  const double margin = std::max(0.01 * high.x, 0.1 * (high.x - low.x));
  chart.x = exact_axis(low.x - margin, high.x + margin, high.x - low.x + 2 * margin, 0, "gr");
  chart.x.title = s.language.text("frmMeas", "mes_chgm");
  chart.left = spread_axis(least, most, fps ? "fps" : "m/s");
  chart.left.title = s.language.text("frmFit", "fit_plot");
  chart.limits = {{0, "", LineStyle::dash}};
  chart.series = {left};
  return draw_chart(chart, e.width, e.height, e.text_width).list;
}
constexpr Surface kSurfaces[] = {{"fit_plot", draw, nullptr, 520, 360}};

}  // namespace

bool run_is_current(Session& s) {
  if (s.valid.results) return true;
  if (s.options.grftyp < 1) SetDisplayMode(s, 6);
  return recalculate(s) != 0 && s.valid.results;
}

void open_fit(Session& s) {
  if (!run_is_current(s)) return;
  std::vector<FitPoint> points = fit_points(s.load.measured);
  if (points.empty()) return warn(s, MessageText(s).msg(434));
  std::ranges::sort(points, {}, &FitPoint::charge_gr);
  State& st = state(s);
  st.points = std::move(points);
  st.of = s.shown.state;
  st.powder = s.shown.load.pulver;
  fit(s);
  open_screen(s, kName);
}

extern const ScreenSpec kFrmFit{.name = kName,
                                .section = "frmFit",
                                .form = kForm,
                                .default_button = "fit_take",
                                .actions = kActions,
                                .surfaces = kSurfaces,
                                .refresh = refresh};

}  // namespace tv
