// FormMOA: what one click of the sight moves, in minutes, inches and centimetres.
#include "calculators/sight_clicks.h"
#include "screens/all.h"
#include "screens/editors.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "FormMOA";

// The fields show one value, the inches; the one typed last keeps its own figure.
struct State {
  double inch = 0, moa = 0, cm = 0;
  ClickDistance at = ClickDistance::m100;
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }

double moa_shown(double inch, const Session& s) { return click_of_inch(inch, state(s).at).moa; }
double moa_stored(double moa, const Session& s) { return click_of_moa(moa, state(s).at).inch; }
double cm_shown(double inch, const Session& s) { return click_of_inch(inch, state(s).at).cm; }
double cm_stored(double cm, const Session& s) { return click_of_cm(cm, state(s).at).inch; }
const Unit kMinutes{"unit_moa", moa_shown, moa_stored};
const Unit kCentimetres{"unit_cm", cm_shown, cm_stored};

double& inches(Session& s, int) { return state(s).inch; }

void set(State& st, const Click& click) {
  st.inch = click.inch;
  st.moa = click.moa;
  st.cm = click.cm;
}

void changed(Session& s, int, bool) {
  State& st = state(s);
  const double typed = read_number(field(s, kName, s.focus.field).text);
  if (s.focus.field == "klick_moa")
    set(st, click_of_moa(typed, st.at));
  else if (s.focus.field == "klick_cm")
    set(st, click_of_cm(typed, st.at));
  else
    set(st, click_of_inch(st.inch, st.at));
  setResultsValid(s, false);
}

const NumberField kNumbers[] = {
    {.sides = {{{"klick_moa", &kMinutes, {0, 3.76}, "#0.000#", "#0.000#"},
                {"klick_in", &units::inch, {0, 4}, "#0.00##", "#0.00##"},
                {"klick_cm", &kCentimetres, {0, 10}, "#0.00#", "#0.00#"}}},
     .value = inches,
     .changed = changed},
};

constexpr Row kRows[] = {
    note_row("click_head"),
    {RowShape::bare, nullptr, {option("moa_dist0"), option("moa_dist1")}},
    number_row("klick_moa"),
    number_row("klick_in"),
    number_row("klick_cm"),
    display_row("klick_mrad", "unit_mrad"),
    {RowShape::buttons, nullptr, {button("cancel"), button("konusok")}},
};
constexpr Group kForm[] = {{nullptr, 0, kRows}};

// The inches stand, the minutes follow.
void choose_distance(Session& s, int i) {
  State& st = state(s);
  st.at = i == 1 ? ClickDistance::yd100 : ClickDistance::m100;
  set(st, click_of_inch(st.inch, st.at));
  write_number(s, st.inch);
  setResultsValid(s, false);
}

void accept(Session& s, int) {
  const State& st = state(s);
  if (!(st.moa > kLeastClick)) {
    warn(s, MessageText(s).msg(418));
    return s.user->focus(kName, "klick_moa");
  }
  edited_gun(s).gmoacli = st.moa;
  edited_gun(s).gclidst = static_cast<int>(st.at);
  edited_gun_changed(s);
  hide_screen(s, kName);
}
void cancel(Session& s, int) { hide_screen(s, kName); }
constexpr ControlAction kActions[] = {{"moa_dist", choose_distance}, {"konusok", accept}, {"cancel", cancel}};

void open(Session& s) {
  State& st = state(s);
  st.at = edited_gun(s).gclidst == 1 ? ClickDistance::yd100 : ClickDistance::m100;
  set(st, click_of_moa(edited_gun(s).gmoacli, st.at));
}

void refresh(Session& s) {
  const State& st = state(s);
  field(s, kName, "moa_dist0").checked = st.at == ClickDistance::m100;
  field(s, kName, "moa_dist1").checked = st.at == ClickDistance::yd100;
  set_text(s, kName, "klick_mrad", format_number(mrad_of_inch(st.inch, st.at), "#0.000#"));
}

}  // namespace

extern const ScreenSpec kFormMOA{.name = kName,
                                 .section = "FormMOA",
                                 .form = kForm,
                                 .default_button = "konusok",
                                 .numbers = kNumbers,
                                 .actions = kActions,
                                 .open = open,
                                 .refresh = refresh};

}  // namespace tv
