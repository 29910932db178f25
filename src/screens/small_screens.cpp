// Safety notice, bore friction, quick start and the criteria of the powder table.
#include <algorithm>
#include <array>
#include <cmath>

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "screens/entry.h"
#include "screens/output_window.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "session/files.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

// --- safety notice

void open_notice(Session& s) {
  field(s, "Form2", "acceptiert").checked = false;
  field(s, "Form2", "weiter").enabled = false;
  set_text(s, "Form2", "version_line", std::string(kProgramName) + " " + kVersion);
}
void toggle_agree(Session& s) {
  field(s, "Form2", "weiter").enabled = field(s, "Form2", "acceptiert").checked;
}
void press_weiter(Session& s) {
  s.options.accept = field(s, "Form2", "Check2").checked;
  write_option(s, "accept");
  s.notice_agreed = true;
  close_screen(s, "Form2");
}
void press_schluss(Session& s) {
  s.end_requested = true;
  close_screen(s, "Form2");
}
void press_wechsel(Session& s) {
  static constexpr std::array kLanguages{"english", "german", "french", "russian"};
  std::size_t next = 0;
  for (std::size_t i = 0; i < kLanguages.size(); ++i)
    if (s.language.name() == kLanguages[i]) next = (i + 1) % kLanguages.size();
  language_switch(s, kLanguages[next]);
}

// --- bore friction

void open_friction(Session& s) {
  write_pair(s, "FormBorefrict", "sugg_P0");
  field(s, "FormBorefrict", "frictiononoff").checked = s.state.frictionOn;
}
void toggle_friction(Session& s) {
  s.state.frictionOn = field(s, "FormBorefrict", "frictiononoff").checked;
  setResultsValid(s, false);
}
// Friction always runs with the fine step.
void close_friction(Session& s) {
  if (!(s.state.frictionPress >= 0 && s.state.frictionPress <= 30000000)) {
    s.user->focus("FormBorefrict", "sugg_P0");
    return;
  }
  if (s.state.frictionOn) setStep(s, 1);
  s.screens.find("FormBorefrict")->second.visible = false;
  s.user->hide("FormBorefrict");
}

// --- quick start

constexpr const char* kFirstExample = "data/loads/308_winchester_168.dat";

struct QuickField {
  const char* field;
  const char* screen;        // where the value goes
  const char* metric_field;  // the pair there
  const char* metric_pattern;
  const char* imperial_pattern;
};
constexpr QuickField kQuick[] = {
    {"MPgn", "Form4", "MPgm", "####0.00#", "0.0#"},
    {"Llenz", "Form3", "Llenm", "####0.0#", "##0.0##"},
    {"Plenz", "Form3", "Plenm", "###0.00", "#0.000"},
    {"Glenz", "Form3", "Glenm", "##0.00", "#0.000"},
};

bool quick_metric(const Session& s) { return field(s, "frmFast", "met_eng").checked; }

std::string quick_text(const Session& s, const QuickField& q, bool metric, double stored) {
  const NumberPair& pair = *find_pair(q.screen, q.metric_field).pair;
  const NumberSide& side = metric ? pair.metric : pair.imperial;
  return format_number(shown_value(side.unit, stored, s), metric ? q.metric_pattern : q.imperial_pattern);
}

// The stored value that a field of the quick start stands for. One that was not touched is the load's own,
// which its text rounds.
double quick_value(Session& s, const QuickField& q, bool metric) {
  const NumberPair& pair = *find_pair(q.screen, q.metric_field).pair;
  const std::string& text = field(s, "frmFast", q.field).text;
  if (text == quick_text(s, q, metric, pair.value(s))) return pair.value(s);
  return stored_value(metric ? pair.metric.unit : pair.imperial.unit, read_number(text), s);
}

void mirror_main(Session& s) {
  copy_list(s, "Form3", "HVolDat", "frmFast", "HVolDat");
  copy_list(s, "Form3", "Bnam", "frmFast", "Bnam");
  copy_list(s, "Form4", "PulvDat", "frmFast", "PulvDat");
  set_text(s, "frmFast", "HVolDat", field(s, "Form3", "HVolDat").text);
  set_text(s, "frmFast", "Bnam", field(s, "Form3", "Bnam").text);
  set_text(s, "frmFast", "PulvDat", field(s, "Form4", "PulvDat").text);
  field(s, "frmFast", "TAIL").checked = field(s, "Form3", "TAIL").checked;
  for (const QuickField& q : kQuick) {
    const NumberPair& pair = *find_pair(q.screen, q.metric_field).pair;
    set_text(s, "frmFast", q.field, quick_text(s, q, quick_metric(s), pair.value(s)));
  }
}

// The box has changed already: what was entered in the former units is told in the new ones.
void flip_quick_units(Session& s) {
  const bool metric = quick_metric(s);
  for (const QuickField& q : kQuick)
    set_text(s, "frmFast", q.field, quick_text(s, q, metric, quick_value(s, q, !metric)));
}

void open_quick(Session& s) {
  field(s, "frmFast", "met_eng").checked = s.unit_mode == UnitMode::metric;
  mirror_main(s);
}
int quick_row(const Session& s, const char* list) {
  const Field& f = field(s, "frmFast", list);
  return f.selected < 0 ? -1 : f.items[static_cast<std::size_t>(f.selected)].row;
}
void quick_cartridge(Session& s) {
  take_cartridge(s, quick_row(s, "HVolDat"));
  mirror_main(s);
}
void quick_bullet(Session& s) {
  take_bullet(s, quick_row(s, "Bnam"));
  mirror_main(s);
}
void quick_powder(Session& s) {
  take_powder(s, quick_row(s, "PulvDat"));
  mirror_main(s);
}
void quick_tail(Session& s) {
  toggle(s, "Form3", "TAIL");
  field(s, "frmFast", "TAIL").checked = field(s, "Form3", "TAIL").checked;
}
void quick_close(Session& s) { close_screen(s, "frmFast"); }

// One value into the main screens; "?" where it is not above zero, but a barrel then takes its usual length.
void take_quick_value(Session& s, const QuickField& q) {
  const NumberPair& pair = *find_pair(q.screen, q.metric_field).pair;
  pair.value(s) = quick_value(s, q, quick_metric(s));
  if (pair.value(s) > 0) return write_pair(s, q.screen, q.metric_field, q.metric_pattern, q.imperial_pattern);
  if (std::string_view(q.field) == "Llenz") {
    pair.value(s) = 24.0;
    return write_pair(s, q.screen, q.metric_field, q.metric_pattern, q.imperial_pattern);
  }
  pair.value(s) = 0;
  set_text(s, q.screen, pair.metric.field, "?");
  set_text(s, q.screen, pair.imperial.field, "?");
}

bool charge_fits(const Session& s) {
  const double caseM3 = s.state.dim.Veff / dicht_H2 / (kGrainsPerGram * 1000000);
  const double chargeKg = s.state.chargeGr / (kGrainsPerGram * 1000);
  if (!(field_number(s, "Form3", "Veffm") > 0)) return false;
  return !(s.state.Pdens > 0) || caseM3 - chargeKg / (s.state.Pdens * 1000) > kLeastFreeVol;
}

void press_Proceed(Session& s) {
  s.update_suspended = true;
  s.field_min = -2000000;
  s.field_max = 2000000;
  for (const QuickField& q : kQuick) take_quick_value(s, q);
  recompute_dimensions(s, kOverallLength);
  if (s.state.chargeGr > 0) s.askCharge = false;
  setResultsValid(s, false);
  if (!charge_fits(s)) return warn(s, MessageText(s).msg(413).line().msg(414));
  close_screen(s, "frmFast");
  recalculate(s);
}

// --- criteria of the powder table

// Which fields a strategy looks at.
struct StrategyFields {
  const char* field;
  const char* strategies;  // digits of those that use it
};
constexpr StrategyFields kStrategyFields[] = {{"sugg_P0", "0238"}, {"sugg_P1", "0238"}, {"sugg_V0", "48"},
                                              {"sugg_V1", "48"},   {"lratio", "12"},    {"lowpress", "3"},
                                              {"hfill", "7"}};

void enable_criteria(Session& s) {
  for (const StrategyFields& f : kStrategyFields)
    field(s, "FormPsel", f.field).enabled =
        std::string_view(f.strategies).find(static_cast<char>('0' + s.strategy)) != std::string_view::npos;
}
void open_criteria(Session& s) {
  s.options_held = s.options;
  s.strategy_held = s.strategy;
  refresh_criteria(s);
}
void choose_strategy(Session& s) {
  for (int n = 0; n <= 8; ++n)
    if (field(s, "FormPsel", "searchwhat" + std::to_string(n)).checked) s.strategy = n;
  enable_criteria(s);
}
void cancel_criteria(Session& s) {
  s.options.maxtab = s.options_held.maxtab;
  s.options.veltab = s.options_held.veltab;
  s.options.lratio = s.options_held.lratio;
  s.options.lv_min = s.options_held.lv_min;
  s.options.hratio = s.options_held.hratio;
  s.options.lod2nd = s.options_held.lod2nd;
  s.options.bamint = s.options_held.bamint;
  s.options.bamaxt = s.options_held.bamaxt;
  s.strategy = s.strategy_held;
  refresh_criteria(s);
  s.screens.find("FormPsel")->second.visible = false;
  s.user->hide("FormPsel");
}
void refuse_criterion(Session& s, const char* name) {
  beep(s);
  field(s, "FormPsel", name).enabled = true;  // also one that the strategy does not look at
  s.user->focus("FormPsel", name);
}
void press_okproptab(Session& s) {
  Options& o = s.options;
  if (o.bamaxt < o.bamint) {
    std::swap(o.bamaxt, o.bamint);
    write_pair(s, "FormPsel", "tbamin");
    write_pair(s, "FormPsel", "tbamax");
  }
  if (!(o.lod2nd >= 0.5 && o.lod2nd <= 0.95)) return refuse_criterion(s, "lowpress");
  if (!(o.maxtab >= 10 && o.maxtab <= 1500)) return refuse_criterion(s, "sugg_P0");
  if (!(o.lratio >= 30 && o.lratio <= 140)) return refuse_criterion(s, "lratio");
  s.screens.find("FormPsel")->second.visible = false;
  s.user->hide("FormPsel");
  SetDisplayMode(s, -2);
  s.user->bring_to_front("Form7");
  press(s, "Form4", "CalcAll");
}

struct Bar {
  const char* name;
  const char* field;
  double Options::*value;
};
constexpr Bar kLowestBar{"scrminba", "tbamin", &Options::bamint};
constexpr Bar kHighestBar{"scrmaxba", "tbamax", &Options::bamaxt};

const Bar* find_bar(std::string_view screen, std::string_view name) {
  for (const Bar* bar : {&kLowestBar, &kHighestBar})
    if (screen == "FormPsel" && name == bar->name) return bar;
  return nullptr;
}

int bar_step(double Ba0) { return static_cast<int>(int_of(std::clamp(Ba0, 0.0, 320.0) * 100 + 0.0001)); }

constexpr ControlAction kActions[] = {
    {"Form2", "acceptiert", toggle_agree},
    {"Form2", "weiter", press_weiter},
    {"Form2", "schluss", press_schluss},
    {"Form2", "wechsel", press_wechsel},
    {"FormBorefrict", "frictiononoff", toggle_friction},
    {"FormBorefrict", "okfriction", close_friction},
    {"frmFast", "HVolDat#", quick_cartridge},
    {"frmFast", "Bnam#", quick_bullet},
    {"frmFast", "PulvDat#", quick_powder},
    {"frmFast", "TAIL", quick_tail},
    {"frmFast", "met_eng", flip_quick_units},
    {"frmFast", "faste", quick_close},
    {"frmFast", "Proceed", press_Proceed},
    {"FormPsel", "searchwhat", choose_strategy},
    {"FormPsel", "okproptab", press_okproptab},
    {"FormPsel", "cancel", cancel_criteria},
};

constexpr ScreenBehaviour kBehaviours[] = {
    {"Form2", open_notice, nullptr, nullptr},  {"FormBorefrict", open_friction, close_friction, nullptr},
    {"frmFast", open_quick, nullptr, nullptr}, {"FormPsel", open_criteria, cancel_criteria, nullptr},
    {"Form7", nullptr, nullptr, output_key},
};

}  // namespace

std::span<const ControlAction> small_actions() { return kActions; }
std::span<const ScreenBehaviour> screen_behaviours() { return kBehaviours; }

BarPlace bar_place(Session& s, std::string_view screen, std::string_view bar) {
  const Bar* at = find_bar(screen, bar);
  if (!at) return {};
  const Limits limits = field_limits(s, find_pair(screen, at->field));
  return {bar_step(limits.min), bar_step(limits.max), bar_step(s.options.*at->value)};
}

bool move_bar(Session& s, std::string_view screen, std::string_view bar, int position) {
  const Bar* moved = find_bar(screen, bar);
  if (!moved || !field(s, screen, bar).enabled) return false;
  if (!s.focus.field.empty()) leave_field(s, s.focus.screen, s.focus.field);
  const BarPlace place = bar_place(s, screen, bar);
  const double value = std::clamp(position, place.least, place.most) / 100.0;
  s.options.*moved->value = value;
  double& other = moved == &kLowestBar ? s.options.bamaxt : s.options.bamint;
  if (moved == &kLowestBar ? other < value : other > value) other = value;
  for (const Bar* b : {&kLowestBar, &kHighestBar}) write_pair(s, screen, b->field);
  return true;
}

void open_first_example(Session& s) {
  if (!s.first_start) return;
  s.first_start = false;
  const std::string file = data_path(s, kFirstExample);
  // Read, not opened: it gets no place among the user's own loads, and its first save asks for a name.
  if (!file_exists(file) || !load_read(s, file)) return;
  open_screen(s, "frmFast");
  set_text(s, "frmMAIN", "status_line", s.language.text("frmfast", "first_example"));
}

void refresh_quick_start(Session& s) {
  if (s.screens.find("frmFast")->second.visible) mirror_main(s);
}

void refresh_criteria(Session& s) {
  for (const char* name :
       {"sugg_P0", "sugg_V0", "lratio", "lminratio", "hfill", "lowpress", "tbamin", "tbamax"})
    write_pair(s, "FormPsel", name);
  for (int n = 0; n <= 8; ++n)
    field(s, "FormPsel", "searchwhat" + std::to_string(n)).checked = n == s.strategy;
  enable_criteria(s);
}

}  // namespace tv
