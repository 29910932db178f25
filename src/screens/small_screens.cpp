// Safety notice, bore friction, quick start and the criteria of the powder table.
#include <array>
#include <cmath>

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "screens/entry.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "session/files.h"
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

const NumberSide& quick_side(const Session& s, const QuickField& q) {
  const NumberPair& pair = *find_pair(q.screen, q.metric_field).pair;
  return quick_metric(s) ? pair.metric : pair.imperial;
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
    const double value = shown_value(quick_side(s, q).unit, pair.value(s), s);
    set_text(s, "frmFast", q.field,
             format_number(value, quick_metric(s) ? q.metric_pattern : q.imperial_pattern));
  }
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
  const double entered = read_number(field(s, "frmFast", q.field).text);
  pair.value(s) = stored_value(quick_side(s, q).unit, entered, s);
  if (entered > 0) return write_pair(s, q.screen, q.metric_field, q.metric_pattern, q.imperial_pattern);
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
  s.screens.find("FormPsel")->second.visible = false;
  s.user->hide("FormPsel");
}
void refuse_criterion(Session& s, const char* name) {
  beep(s);
  s.user->focus("FormPsel", name);
}
void press_okproptab(Session& s) {
  Options& o = s.options;
  if (o.bamaxt < o.bamint) std::swap(o.bamaxt, o.bamint);
  if (!(o.lod2nd >= 0.5 && o.lod2nd <= 0.95)) return refuse_criterion(s, "lowpress");
  if (!(o.maxtab >= 10 && o.maxtab <= 1500)) return refuse_criterion(s, "sugg_P0");
  if (!(o.lratio >= 30 && o.lratio <= 140)) return refuse_criterion(s, "lratio");
  s.screens.find("FormPsel")->second.visible = false;
  s.user->hide("FormPsel");
  SetDisplayMode(s, -2);
  s.user->bring_to_front("Form7");
  press(s, "Form4", "CalcAll");
}

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
    {"frmFast", "met_eng", mirror_main},
    {"frmFast", "faste", quick_close},
    {"frmFast", "Proceed", press_Proceed},
    {"FormPsel", "searchwhat", choose_strategy},
    {"FormPsel", "okproptab", press_okproptab},
    {"FormPsel", "cancel", cancel_criteria},
};

constexpr ScreenBehaviour kBehaviours[] = {
    {"Form2", open_notice, nullptr, nullptr},
    {"FormBorefrict", open_friction, close_friction, nullptr},
    {"frmFast", open_quick, nullptr, nullptr},
    {"FormPsel", open_criteria, cancel_criteria, nullptr},
};

}  // namespace

std::span<const ControlAction> small_actions() { return kActions; }
std::span<const ScreenBehaviour> screen_behaviours() { return kBehaviours; }

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
