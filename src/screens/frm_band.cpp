// frmBand: how sure the prediction is: the spreads of the inputs, what each does, the range they give together,
// and how far the arithmetic is from an integration of the same equations.
#include <algorithm>
#include <array>
#include <cmath>

#include "screens/all.h"
#include "screens/measure_screens.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/prediction.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmBand";
constexpr double kLeastStartPressure = 1e6;  // Pa; a load with less has none

struct State {
  double draws = 2000, seed = 1;
  // What the results are of, and the results.
  CalcState of;
  BandSpreads spreads{};
  double drawn = 0, seeded = 0;
  Band band;
  std::optional<CrossCheck> check;
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }

bool of_this_run(const Session& s) { return s.valid.results && s.shown.state == state(s).of; }
bool is_current(const Session& s) {
  const State& st = state(s);
  return of_this_run(s) && st.spreads == kept_spreads(s.options) && st.drawn == st.draws &&
         st.seeded == st.seed;
}

// --- numbers

constexpr Limits kDrawsLimits{100, 100000}, kSeedLimits{0, 999999};

template <double Options::*Member>
NumberField spread(const char* name, const Unit* unit, double most) {
  return {.sides = {{{name, unit, {0, most}, nullptr, "0.0##"}}},
          .value = option<Member>,
          .left = [](Session& s, int) {
            for (const OptionKey& key : option_keys())
              if (key.real == Member) store_option(s, key.key);
          }};
}
template <double State::*Member>
double& entered(Session& s, int) {
  return state(s).*Member;
}
using O = Options;
const NumberField kNumbers[] = {
    spread<&O::spr_Ba0>("spr_Ba0", &units::percent, 50),
    spread<&O::spr_charge>("spr_charge", &units::grain, 1000),
    spread<&O::spr_volume>("spr_volume", &units::percent, 50),
    spread<&O::spr_bullet>("spr_bullet", &units::percent, 50),
    spread<&O::spr_seating>("spr_seating", &units::mm, 50),
    spread<&O::spr_barrel>("spr_barrel", &units::mm, 1000),
    spread<&O::spr_start>("spr_start", &units::percent, 50),
    one_side({"band_draws", &units::plain, kDrawsLimits, nullptr, "0"}, entered<&State::draws>),
    one_side({"band_seed", &units::plain, kSeedLimits, nullptr, "0"}, entered<&State::seed>),
};

// --- form

constexpr Row kSpreads[] = {number_row("spr_Ba0"),    number_row("spr_charge"),  number_row("spr_volume"),
                            number_row("spr_bullet"), number_row("spr_seating"), number_row("spr_barrel"),
                            number_row("spr_start")};
constexpr Row kDraws[] = {number_row("band_draws"), number_row("band_seed")};
constexpr Row two(const char* label, const char* first, const char* second) {
  return {RowShape::pair, label, {display(first), display(second)}};
}
constexpr Row kRange[] = {
    wide_row("band_pmax", display("band_pmax")), wide_row("band_v", display("band_v")),
    wide_row("band_68", display("band_68")),     wide_row("band_95", display("band_95")),
    display_row("band_over", nullptr),           note_row("@band_state")};
constexpr Row kCross[] = {two("cross_closed", "cross_p0", "cross_v0"),
                          two("cross_integrated", "cross_p1", "cross_v1"),
                          two("cross_diff", "cross_p2", "cross_v2"),
                          {RowShape::buttons, nullptr, {button("cross_calc")}}};
constexpr Row kPlot[] = {{RowShape::block, nullptr, {surface("band_plot")}},
                         {RowShape::bare, nullptr, {check("band_show")}}};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("copy"), button("close"), button("band_calc")}}};
constexpr Row kNote[] = {note_row("band_note")};
constexpr Group kForm[] = {{"grp_spread", 0, kSpreads}, {"grp_draws", 0, kDraws}, {"grp_band", 1, kRange},
                           {nullptr, 1, kPlot},         {"grp_cross", 0, kCross}, {nullptr, -1, kNote},
                           {nullptr, -1, kButtons}};

// --- actions

void calculate(Session& s, int) {
  if (!run_is_current(s)) return;
  State& st = state(s);
  if (!in_limits(st.draws, kDrawsLimits)) return s.user->focus(kName, "band_draws");
  const Waiting waiting(*s.user);
  st.of = s.shown.state;
  st.spreads = kept_spreads(s.options);
  st.drawn = st.draws;
  st.seeded = st.seed;
  st.check.reset();
  st.band =
      band_of_run(s, {static_cast<int>(st.draws),
                      static_cast<std::uint64_t>(std::clamp(st.seed, kSeedLimits.least, kSeedLimits.most))});
  if (!st.band.ok) warn(s, MessageText(s).msg(476));
  if (s.output.band) draw_band_of_run(s);
}

void cross_check_it(Session& s, int) {
  if (!of_this_run(s)) calculate(s, 0);
  if (!of_this_run(s)) return;
  state(s).check = cross_check_of_run(s);
  if (!state(s).check) warn(s, MessageText(s).msg(475));
}

void show_in_diagram(Session& s, int) {
  s.output.band = field(s, kName, "band_show").checked;
  if (s.output.band && s.shown.any && s.valid.results) draw_band_of_run(s);
  outputs_changed(s);
}

void copy(Session& s, int) { copy_results(s, kName); }
void close_it(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {{"band_calc", calculate},
                                      {"cross_calc", cross_check_it},
                                      {"band_show", show_in_diagram},
                                      {"copy", copy},
                                      {"close", close_it}};

// --- what is on show

std::string between(std::string from, const std::string& to) {
  return from.substr(0, from.rfind(' ')) + " ... " + to;  // the unit once
}
std::string ranges_text(const Session& s, const Band& band, std::size_t low, std::size_t high) {
  return between(pressure_text(s, band.pMax.q[low]), pressure_text(s, band.pMax.q[high])) + ",  " +
         between(velocity_text(s, band.vMuzzle.q[low]), velocity_text(s, band.vMuzzle.q[high]));
}
std::string exact_velocity(const Session& s, double mps) { return velocity_text(s, mps, 1); }

void show_range(Session& s) {
  const Band& band = state(s).band;
  const auto put = [&](const char* name, const std::string& text) {
    set_text(s, kName, name, band.ok ? text : "");
    field(s, kName, name).stale = !is_current(s);
  };
  put("band_pmax", pressure_range_text(s, band.pMax));
  put("band_v", velocity_range_text(s, band.vMuzzle));
  put("band_68", ranges_text(s, band, 1, 3));
  put("band_95", ranges_text(s, band, 0, 4));
  put("band_over", over_limit_text(s, band));
  set_text(
      s, kName, "band_state",
      !band.ok || is_current(s) ? "" : s.language.fastmsg("fobsol0") + " " + s.language.fastmsg("fobsol1"));
}

void show_check(Session& s) {
  const auto& check = state(s).check;
  const auto put = [&](const char* name, const std::string& text) {
    set_text(s, kName, name, check ? text : "");
    field(s, kName, name).stale = !of_this_run(s);
  };
  const CrossCheck c = check.value_or(CrossCheck{});
  const auto percent = [](double p) { return format_pattern(p, "+0.00;-0.00;0.00") + " %"; };
  put("cross_p0", pressure_text(s, c.closed.pMax));
  put("cross_v0", exact_velocity(s, c.closed.vMuzzle));
  put("cross_p1", pressure_text(s, c.integrated.pMax));
  put("cross_v1", exact_velocity(s, c.integrated.vMuzzle));
  put("cross_p2", percent(c.percent.pMax));
  put("cross_v2", percent(c.percent.vMuzzle));
}

void refresh(Session& s) {
  if (!s.screens.find(kName)->second.visible) return;
  show_range(s);
  show_check(s);
  field(s, kName, "band_show").checked = s.output.band;
  field(s, kName, "spr_start").enabled = s.state.start_pressure >= kLeastStartPressure;
}

// --- plot: a pair of bars for each input, the largest effect on top

struct Bars {
  DrawList& list;
  const Extent& e;
  double left, right;  // of the room for bars
  double size;         // of the text
};

void draw_bar(Bars& bars, double top, double height, double share, Colour colour, const std::string& text,
              Colour ink) {
  const double end = bars.left + std::fabs(share) * (bars.right - bars.left);
  add_band(bars.list, {bars.left, top}, {std::max(end, bars.left + 1), top + height}, colour);
  add_text(bars.list, {std::max(end, bars.left + 1) + 5, top + height - (height - 0.72 * bars.size) / 2},
           text, {ink, bars.size});
}

DrawList draw(const Session& s, const Extent& e) {
  const ChartLook look = chart_look(s, e.dark);
  const ChartColours& colours = look.colours;
  DrawList list{e.width, e.height, colours.paper, look.font, {}};
  const State& st = state(s);
  if (!st.band.ok) return list;
  constexpr double kEdge = 10, kText = 12;
  const bool stale = !is_current(s);
  const auto word = [&](const char* key) { return s.language.text("frmBand", key); };
  const auto width_of = [&](const std::string& text) {
    return e.text_width(text, kText, false, false, look.font);
  };
  double names = 0, figures = 0, p = 0, v = 0;
  for (const BandEffect& effect : st.band.effects) {
    names = std::max(names, width_of(word(band_inputs()[effect.input].field)));
    figures = std::max(
        {figures, width_of(pressure_text(s, effect.pMax)), width_of(exact_velocity(s, effect.vMuzzle))});
    p = std::max(p, std::fabs(effect.pMax));
    v = std::max(v, std::fabs(effect.vMuzzle));
  }
  const double head = kEdge + 2 * kText, row = (e.height - head - kEdge) / double(kBandInputs);
  Bars bars{list, e, 2 * kEdge + names, std::max(3 * kEdge + names, e.width - 2 * kEdge - figures), kText};
  const Colour ink = stale ? colours.stale : colours.ink;
  const Colour first = stale ? colours.stale : colours.pressure,
               second = stale ? colours.stale : colours.velocity;
  const double title = e.text_width(word("band_plot"), kText, true, false, look.font);
  if (title + width_of(word("band_pmax")) + width_of(word("band_v")) + 5 * kEdge <
      e.width)  // else in the way
    add_text(list, {kEdge, kEdge + kText}, word("band_plot"), {ink, kText, Align::left, true});
  add_text(list, {e.width - kEdge - width_of(word("band_v")) - 2 * kEdge, kEdge + kText}, word("band_pmax"),
           {first, kText, Align::right});
  add_text(list, {e.width - kEdge, kEdge + kText}, word("band_v"), {second, kText, Align::right});
  double top = head;
  for (const BandEffect& effect : st.band.effects) {
    const double height = std::min(row * 0.4, 1.5 * kText);
    add_text(list, {kEdge, top + height + 0.36 * kText}, word(band_inputs()[effect.input].field),
             {ink, kText});
    draw_bar(bars, top, height, p > 0 ? effect.pMax / p : 0, first, pressure_text(s, effect.pMax), ink);
    draw_bar(bars, top + height, height, v > 0 ? effect.vMuzzle / v : 0, second,
             exact_velocity(s, effect.vMuzzle), ink);
    top += row;
  }
  return list;
}
constexpr Surface kSurfaces[] = {{"band_plot", draw, nullptr, 520, 320}};

}  // namespace

void open_band(Session& s, bool with_cross_check) {
  if (!run_is_current(s)) return;
  if (!is_current(s)) calculate(s, 0);
  if (with_cross_check) cross_check_it(s, 0);
  open_screen(s, kName);
}

extern const ScreenSpec kFrmBand{.name = kName,
                                 .section = "frmBand",
                                 .form = kForm,
                                 .default_button = "band_calc",
                                 .numbers = kNumbers,
                                 .actions = kActions,
                                 .surfaces = kSurfaces,
                                 .refresh = refresh};

}  // namespace tv
