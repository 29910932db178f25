// FormPsel: what the powders of the powder table must meet.
#include <algorithm>
#include <array>
#include <cmath>

#include "screens/all.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "FormPsel";
using O = Options;
constexpr double kPsi1500MPa = 217557, kPsi10MPa = 1450;

// --- numbers

// The burn rates of the open powder file; 0 to 320 where it holds none.
Limits powder_rates(const Session& s) {
  Limits found{320, 0};
  const RecordTable& table = s.set(RecordKind::powders).file.table;
  for (int row = 0; row <= table.last(); ++row) {
    const double Ba0 = table.number(row, powder_field::Ba0);
    found = {std::min(found.least, Ba0), std::max(found.most, Ba0)};
  }
  found.most = std::min(found.most, 320.0);
  // As the bar beside it starts.
  return found.least <= found.most ? Limits{int_of(found.least * 100) / 100, found.most} : Limits{0, 320};
}
Limits rate_limits(const Session& s, const NumberSide&, int) { return powder_rates(s); }
Limits ratio_limits(const Session& s, const NumberSide& side, int) {
  return {s.options.lv_min, side.limits.most};
}
Limits least_ratio_limits(const Session& s, const NumberSide& side, int) {
  return {side.limits.least, s.options.lratio};
}
// The smallest loading ratio stays below the target.
void least_ratio_left(Session& s, int) {
  if (!(s.options.lv_min > s.options.lratio)) return;
  set_text(s, kName, "lminratio", format_number(s.options.lratio - 1, "0.0"));
  s.options.lv_min = s.options.lratio;
}

constexpr NumberField kNumbers[] = {
    pair_of({"sugg_P0", &units::chosen_of_MPa, {10, 1500}, "0.0", "0.0"},
            {"sugg_P1", &units::psi_of_MPa, {kPsi10MPa, kPsi1500MPa}, "0", "0"}, option<&O::maxtab>),
    pair_of({"sugg_V0", &units::mps, {10, 3000}, "0.0", "0.0"},
            {"sugg_V1", &units::fps_of_mps, {32, 9843}, "0", "0"}, option<&O::veltab>),
    {.sides = {{{"lratio", &units::percent, {30, 140}, nullptr, "0.0"}}},
     .value = option<&O::lratio>,
     .limits = ratio_limits},
    {.sides = {{{"lminratio", &units::percent, {29, 140}, nullptr, "0.0"}}},
     .value = option<&O::lv_min>,
     .limits = least_ratio_limits,
     .left = least_ratio_left},
    one_side({"hfill", &units::percent, {30, 140}, nullptr, "0.0"}, option<&O::hratio>),
    one_side({"lowpress", &units::reduction, {5, 50}, nullptr, "0.0"}, option<&O::lod2nd>),
    {.sides = {{{"tbamin", &units::plain, {0, 320}, nullptr, "0.00##"}}},
     .value = option<&O::bamint>,
     .limits = rate_limits},
    {.sides = {{{"tbamax", &units::plain, {0, 320}, nullptr, "0.00##"}}},
     .value = option<&O::bamaxt>,
     .limits = rate_limits},
};

// --- form

constexpr Row option_row(const char* name) { return {RowShape::bare, nullptr, {option(name)}}; }
constexpr Row bar_row(const char* label, const char* bar) {
  return {RowShape::slider, label, {Place{bar, ControlKind::bar}}};
}
constexpr Row kSearch[] = {
    option_row("searchwhat0"), option_row("searchwhat1"), option_row("searchwhat2"),
    option_row("searchwhat3"), option_row("searchwhat4"), option_row("searchwhat5"),
    option_row("searchwhat6"), option_row("searchwhat7"), option_row("searchwhat8"),
};
constexpr Row kTargets[] = {
    {RowShape::pair, "sugg_P0", {number("sugg_P0", "@zulp_nam"), number("sugg_P1")}},
    number_row("sugg_V0", "sugg_V1"),
    number_row("lratio"),
    number_row("lminratio"),
    number_row("hfill"),
    number_row("lowpress"),
    number_row("tbamin"),
    bar_row("tbamin", "scrminba"),
    number_row("tbamax"),
    bar_row("tbamax", "scrmaxba"),
};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("cancel"), button("okproptab")}}};
constexpr Group kForm[] = {{"searchwhat", 0, kSearch}, {nullptr, 1, kTargets}, {nullptr, -1, kButtons}};

// --- strategies

// Which fields a strategy looks at.
struct StrategyField {
  const char* field;
  std::string_view strategies;  // digits of those that use it
};
constexpr StrategyField kStrategyFields[] = {{"sugg_P0", "0238"}, {"sugg_P1", "0238"}, {"sugg_V0", "48"},
                                             {"sugg_V1", "48"},   {"lratio", "12"},    {"lowpress", "3"},
                                             {"hfill", "7"}};

void choose_strategy(Session& s, int n) { s.tables.strategy = n; }

// --- what cancel puts back

constexpr double O::*kCriteria[] = {&O::maxtab, &O::veltab, &O::lratio, &O::lv_min,
                                    &O::hratio, &O::lod2nd, &O::bamint, &O::bamaxt};
struct Held {
  std::array<double, std::size(kCriteria)> criteria{};
  int strategy = 0;
  std::string_view refused;  // field that the strategy does not look at, but was to blame
};

void open(Session& s) {
  Held& held = own<Held>(s, kName);
  held.refused = {};
  for (std::size_t i = 0; i < std::size(kCriteria); ++i) held.criteria[i] = s.options.*kCriteria[i];
  held.strategy = s.tables.strategy;
}

void close(Session& s) {
  const Held& held = own<Held>(s, kName);
  for (std::size_t i = 0; i < std::size(kCriteria); ++i) s.options.*kCriteria[i] = held.criteria[i];
  s.tables.strategy = held.strategy;
  write_numbers(s, *s.screens.find(kName)->second.spec);
  hide_screen(s, kName);
}
void press_cancel(Session& s, int) { close(s); }

void refuse(Session& s, const char* name) {
  beep(s);
  own<Held>(s, kName).refused = name;
  refresh_screens(s);
  s.user->focus(kName, name);
}

void press_ok(Session& s, int) {
  O& o = s.options;
  if (o.bamaxt < o.bamint) {
    std::swap(o.bamaxt, o.bamint);
    write_number(s, o.bamint);
    write_number(s, o.bamaxt);
  }
  if (!(o.lod2nd >= 0.5 && o.lod2nd <= 0.95)) return refuse(s, "lowpress");
  if (!(o.maxtab >= 10 && o.maxtab <= 1500)) return refuse(s, "sugg_P0");
  if (!(o.lratio >= 30 && o.lratio <= 140)) return refuse(s, "lratio");
  hide_screen(s, kName);
  SetDisplayMode(s, -2);
  bring_to_front(s, Role::output);
  recalculate(s);
}

constexpr ControlAction kActions[] = {
    {"searchwhat", choose_strategy}, {"okproptab", press_ok}, {"cancel", press_cancel}};

// --- bars

int bar_step(double Ba0) { return static_cast<int>(int_of(std::clamp(Ba0, 0.0, 320.0) * 100 + 0.0001)); }

template <double O::*Value>
BarPlace bar_place_of(const Session& s) {
  const Limits limits = powder_rates(s);
  return {bar_step(limits.least), bar_step(limits.most), bar_step(s.options.*Value)};
}
// Bars that belong together do not cross: one pulls the other along.
template <double O::*Value, double O::*Other, bool Lowest>
void bar_moved(Session& s, int position) {
  const double value = position / 100.0;
  double& other = s.options.*Other;
  s.options.*Value = value;
  if (Lowest ? other < value : other > value) other = value;
  write_number(s, s.options.bamint);
  write_number(s, s.options.bamaxt);
}
constexpr Bar kBars[] = {{"scrminba", bar_place_of<&O::bamint>, bar_moved<&O::bamint, &O::bamaxt, true>},
                         {"scrmaxba", bar_place_of<&O::bamaxt>, bar_moved<&O::bamaxt, &O::bamint, false>}};

void refresh(Session& s) {
  const char strategy = static_cast<char>('0' + s.tables.strategy);
  for (int n = 0; n <= 8; ++n)
    field(s, kName, "searchwhat" + std::to_string(n)).checked = n == s.tables.strategy;
  for (const StrategyField& f : kStrategyFields)
    field(s, kName, f.field).enabled =
        f.strategies.find(strategy) != std::string_view::npos || own<Held>(s, kName).refused == f.field;
  set_text(s, kName, "zulp_nam", chosen_pressure_unit(s));
}

}  // namespace

extern const ScreenSpec kFormPsel{.name = kName,
                                  .section = "frmpsel",
                                  .form = kForm,
                                  .default_button = "okproptab",
                                  .numbers = kNumbers,
                                  .actions = kActions,
                                  .bars = kBars,
                                  .open = open,
                                  .close = close,
                                  .refresh = refresh};

}  // namespace tv
