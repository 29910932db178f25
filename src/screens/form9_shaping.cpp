// Form9: the law of the powder, shaped by entries and keys, and its way into the load.
#include <algorithm>

#include "screens/form9.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/findings.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"

namespace tv::form9 {
namespace {

constexpr std::string_view kEdited = " ?";  // behind the name of a powder that is not that of its record

std::string base_name(std::string name) {
  if (name.ends_with(kEdited)) name.resize(name.size() - kEdited.size());
  return name;
}

Powder powder_of(const CalcState& c) {
  return {{c.Ba0, c.PDko, c.Limz1, c.Ba1}, c.Exw, c.Kap, c.Pdens, c.bulkdn};
}

// What is being typed stays as it is typed.
void write_powder(Session& s, bool all = true) {
  const Powder& p = state(s).now;
  const NumberPlace typed = all || s.focus.screen != kName || !s.focus.edited
                                ? NumberPlace{}
                                : find_number(s, kName, s.focus.field);
  for (const double* value : {&p.law.Ba0, &p.law.PDko, &p.law.Limz1, &p.Exw, &p.Kap, &p.Pdens, &p.bulkdn})
    if (!typed.number || &typed.value(s) != value) write_number(s, *value);
}

void open_powder(Session& s) {
  State& st = state(s);
  st.opened = st.now;
  st.opened_name = s.load.pulver;
  begin_history(st.history, st.now.law);
  st.fit.reset();
  st.from_means = false;
  tell(s, {});
}

// The step that another window made takes the place of the one it made before: typing is one step.
void follow_step(State& st) {
  if (st.followed && st.history.at > 0) st.history.laws.resize(st.history.at--);
  add_step(st.history, st.now.law);
  st.followed = true;
}

// What the load may have of the powder on show.
Powder wanted_of_load(const Session& s) {
  const State& st = state(s);
  Powder wanted = st.now;
  const auto within = [](double value, double least, double most) { return value >= least && value <= most; };
  if (!within(wanted.Exw, 100, 10000)) wanted.Exw = s.state.Exw;
  if (!is_heat_ratio(wanted.Kap)) wanted.Kap = s.state.Kap;
  if (!within(wanted.Pdens, 0.1, 10)) wanted.Pdens = s.state.Pdens;
  if (!within(wanted.bulkdn, 0, 10)) wanted.bulkdn = s.state.bulkdn;
  return wanted;
}

// The name tells that the data are not those of the record, and no longer when they are again.
void name_powder(Session& s) {
  const State& st = state(s);
  if (st.loaded == st.opened)
    s.load.pulver = st.opened_name;
  else if (!s.load.pulver.empty() && s.load.pulver.find('?') == std::string::npos)
    s.load.pulver += kEdited;
}

std::optional<ShapingStep> step_of_key(std::string_view key) {
  static constexpr struct {
    std::string_view key;
    ShapingStep step;
  } kKeys[] = {{"Shift+Up", ShapingStep::more_vivacity}, {"Shift+Down", ShapingStep::less_vivacity},
               {"Ctrl+Up", ShapingStep::more_PDko},      {"Ctrl+Down", ShapingStep::less_PDko},
               {"Ctrl+Right", ShapingStep::later_limit}, {"Ctrl+Left", ShapingStep::earlier_limit}};
  const auto* at = std::ranges::find(kKeys, key, [](const auto& row) { return row.key; });
  return at == std::end(kKeys) ? std::nullopt : std::optional(at->step);
}

// A law that stood here before, with all its digits. One that came from elsewhere may be none a load can have.
void put_law(Session& s, const BurnLaw& law) {
  State& st = state(s);
  if (const BurnHint hint = law_hint(law); hint != kNoHint) {
    tell(s, {hint});
    return beep(s);
  }
  const HandOver over = handed_over(law);
  st.now.law = over.raised ? over.law : law;
  st.followed = st.from_means = false;
  st.fit.reset();
  hand_over(s);
  tell(s, {over.raised ? kHintCoefficient : kNoHint});
  compare(s);
}

bool in_list_or_comment(const Session& s) {
  return s.focus.screen == kName && (s.focus.field == "anzPnam" || s.focus.field == "lblRefKomment");
}

}  // namespace

void follow_load(Session& s) {
  State& st = state(s);
  const Powder load = powder_of(s.state);
  const bool same_place =
      st.load_file == s.options.labfil && base_name(st.opened_name) == base_name(s.load.pulver);
  st.load_file = s.options.labfil;
  if (st.written && st.loaded == load) {
    if (base_name(st.opened_name) != base_name(s.load.pulver)) open_powder(s);
    return;
  }
  const bool first = !st.written;
  st.written = true;
  st.now = st.loaded = load;
  write_powder(s);
  if (first || !same_place) return open_powder(s);
  follow_step(st);
  st.fit.reset();
  tell(s, {law_hint(st.now.law)});
}

void hand_over(Session& s) {
  State& st = state(s);
  const Powder load = wanted_of_load(s);
  CalcState& c = s.state;
  const struct {
    double& to;
    double value;
  } values[] = {{c.Limz1, load.law.Limz1}, {c.Ba1, load.law.Ba1},  {c.Ba0, load.law.Ba0},
                {c.PDko, load.law.PDko},   {c.Exw, load.Exw},      {c.Kap, load.Kap},
                {c.Pdens, load.Pdens},     {c.bulkdn, load.bulkdn}};
  for (const auto& each : values) {
    each.to = each.value;
    write_number(s, each.to);
  }
  c.ExwJ = 1000 * c.Exw;
  st.loaded = powder_of(c);
  name_powder(s);
  write_powder(s, false);
  refresh_fill(s);
  setResultsValid(s, false);
}

bool take_law(Session& s, const BurnLaw& wanted) {
  State& st = state(s);
  if (const BurnHint hint = law_hint(wanted); hint != kNoHint) {
    tell(s, {hint});
    return false;
  }
  const HandOver over = handed_over(wanted);
  st.now.law = over.law;
  st.followed = false;
  tell(s, {over.raised ? kHintCoefficient : kNoHint});
  hand_over(s);
  return true;
}

void keep_step(Session& s) { add_step(state(s).history, state(s).now.law); }

// Each key of an entry begins from the law that stood when the field got the focus, with what is typed in it.
void law_edited(Session& s, int, bool) {
  State& st = state(s);
  const BurnLaw typed = st.now.law;
  const BurnHint hint = law_hint(typed);
  st.fit.reset();
  st.from_means = false;
  st.refused = hint != kNoHint;
  if (st.refused) {
    st.now.law = st.loaded.law;
    return tell(s, {hint});
  }
  take_law(s, joined(typed));
  if (typed.PDko < st.now.law.PDko) tell(s, {kHintCoefficient});
  keep_step(s);
}

// A value that was refused stays red with its reason; one that was taken shows what was made of it.
void law_left(Session& s, int) {
  if (state(s).refused) return;
  write_powder(s);
  compare(s);
}

void value_edited(Session& s, int, bool) { hand_over(s); }

bool shape_by_key(Session& s, std::string_view key) {
  const auto step = step_of_key(key);
  if (!step || in_mode(s, Mode::reference) || in_list_or_comment(s)) return false;
  const Focus in_use = s.focus;
  leave_focus(s);
  State& st = state(s);
  const BurnLaw before = st.now.law;
  st.fit.reset();
  st.from_means = false;
  if (!take_law(s, shaped(before, *step))) {
    beep(s);
  } else {
    keep_step(s);
    if (*step == ShapingStep::less_PDko && st.now.law.PDko > before.PDko - 0.099) tell(s, {kHintCoefficient});
    compare(s);
  }
  if (!in_use.field.empty()) focus_field(s, in_use.screen, in_use.field);
  return true;
}

void undo(Session& s, int) {
  leave_focus(s);
  if (can_undo(state(s).history)) put_law(s, undo_step(state(s).history));
}
void redo(Session& s, int) {
  leave_focus(s);
  if (can_redo(state(s).history)) put_law(s, redo_step(state(s).history));
}

void restore(Session& s, int) {
  State& st = state(s);
  if (law_hint(st.opened.law) != kNoHint) return put_law(s, st.opened.law);
  st.now = st.opened;
  put_law(s, st.opened.law);
  keep_step(s);
  tell(s, {kHintRestored});
}

namespace {

// The shot with the law on show; what refuses it is told in the hint line.
bool shot_runs(Session& s) {
  s.refusal.reset();
  calculate_quietly(s);
  if (!s.refusal && s.valid.results) return true;
  std::string why = s.refusal ? s.refusal->message.text : std::string();
  std::ranges::replace(why, '\n', ' ');
  tell(s, {kHintRunRefused}, why);
  beep(s);
  return false;
}

}  // namespace

void compare(Session& s) {
  if (in_mode(s, Mode::manual) && s.output.reference.shown) shot_runs(s);
}

// One's own command leads to what keeps the shot from running.
void calculate(Session& s, int) {
  const BurnHint hint = law_hint(state(s).now.law);
  tell(s, {hint});
  if (hint != kNoHint) return beep(s);
  if (s.output.reference.shown && !shot_runs(s) && s.refusal) go_to(s, *s.refusal);
}

}  // namespace tv::form9
