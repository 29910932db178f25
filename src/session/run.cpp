#include "session/run.h"

#include <array>
#include <ctime>

#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/findings.h"
#include "session/input_check.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/prediction.h"
#include "session/results_panel.h"
#include "session/tables.h"
#include "text/number.h"

namespace tv {
namespace {

void note_inputs_of_run(Session& s, const ShotOutcome& outcome) {
  static constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 16> clock{};
  std::strftime(clock.data(), clock.size(), "%H:%M:%S", &local);
  s.shown.any = true;
  s.shown.band.reset();
  s.shown.state = s.state;
  s.shown.load = s.load;
  s.shown.outcome = outcome;
  s.shown.unusual = unusual_values(s);
  s.shown.block = data_block(s);
  s.shown.charge_g = shown_number(s, s.state.chargeGr);
  s.shown.Veff_cm3 = shown_number(s, s.state.dim.Veff);
  s.shown.date = std::to_string(local.tm_mday) + "-" + kMonths[static_cast<std::size_t>(local.tm_mon)] + "-" +
                 std::to_string(1900 + local.tm_year);
  s.shown.time = clock.data();
}

// What the user is told of a run that did not finish.
void tell_end(Session& s, const ShotOutcome& outcome) {
  switch (outcome.end) {
    case ShotEnd::kEff_one:
      warn(s, MessageText(s).msg(150), false);
      bring_to_front(s, Role::powder);
      break;
    case ShotEnd::too_many_steps:
      warn(s, MessageText(s).msg(152), false, std::string(kProgramName) + " " + s.language.msg(75));
      break;
    case ShotEnd::stuck:
      warn(s, MessageText(s).msg(134).line().msg(135).line().msg(136).line().msg(137), true,
           std::string(kProgramName) + ": " + s.language.msg(75));
      break;
    case ShotEnd::failed: {
      MessageText text(s);
      text.msg(102).line().add(s.language.failure(outcome.failure)).line();
      const int first = 155;
      text.msg(first).line().msg(first + 1).line().msg(158);
      warn(s, text, false,
           std::string(kProgramName) + ": " + stage_name(outcome.stage) + " - Nr." +
               std::to_string(outcome.failure));
      break;
    }
    case ShotEnd::no_space:
    case ShotEnd::finished:
      break;
  }
}

void show_end(Session& s, const ShotOutcome& outcome) {
  if (outcome.end == ShotEnd::no_space) return;
  note_inputs_of_run(s, outcome);
  show_whole_diagram(s);
  show_panel(s);
  s.shown.failed = !outcome.ok();
  if (s.output.band && outcome.ok()) draw_band_of_run(s);
}

// One interactive shot with the panel live.
int run_single(Session& s) {
  s.valid.results = false;
  s.user->busy(true);
  s.shown.running = s.shown.failed = true;
  if (!s.options.atiles) bring_to_front(s, Role::results);
  ShotOutcome outcome = runShot(s.state, s.curve, s.result);
  s.shown.outcome = outcome;
  s.shown.running = false;
  s.user->busy(false);
  tell_end(s, outcome);
  show_end(s, outcome);
  s.valid.results = outcome.ok();
  return outcome.ok() ? -1 : 0;
}

void open_output(Session& s) { bring_to_front(s, Role::output); }

// A powder table that is on show has been made: the next run begins with a diagram again.
bool powder_table_waits(const Session& s) {
  return s.mode() == DisplayMode::powder_table && !s.tables.powder_shown;
}

bool start_pressure_refused(Session& s) {
  if (start_pressure_accepted(s)) {
    refresh_fill(s);
    return false;
  }
  return true;
}

// The powder table finds charges of its own: the present one may be missing, or impossible.
bool charge_does_not_matter(Session& s) {
  if (!powder_table_waits(s) || needs_present_charge(s.tables.strategy)) return false;
  CalcState trial = s.state;
  const SetUp refused = prepareShot(trial);
  return refused == SetUp::chargeGr || refused == SetUp::freeVol;
}

// Set-up and checks that both ways to a calculation share, before the run.
bool set_up_refused(Session& s) {
  if (charge_does_not_matter(s)) {
    refresh_fill(s);
    return false;
  }
  prepare_shot_checked(s);
  return !s.inputsOk || start_pressure_refused(s);
}

// On a tiled desk key figures are always in sight: only the first run brings its picture to the front.
void end_first_run(Session& s) {
  s.firstRun = false;
  hide_screen(s, Role::quick_start);
  if (s.options.atiles) open_output(s);
}

}  // namespace

namespace {

void mark_results(Session& s, bool valid) {
  s.valid.results = valid;
  if (!valid) s.valid.load_table = s.valid.powder_table = false;
  outputs_changed(s);
}

}  // namespace

// What was said of the former inputs ends with them.
void setResultsValid(Session& s, bool valid) {
  mark_results(s, valid);
  if (valid) return;
  s.refusal.reset();
  s.status.clear();
}

void setStep(Session& s, int step) {
  if (step == s.state.schrit) return;
  setResultsValid(s, false);
  s.state.schrit = s.options.schrit = step >= 0 && step <= 2 ? step : 0;
}

void begin_friction_step(Session& s) {
  if (s.state.schrit == 1) return;
  s.step_before_friction = s.state.schrit;
  setStep(s, 1);
}

void end_friction_step(Session& s) {
  if (s.step_before_friction && s.state.schrit == 1) setStep(s, *s.step_before_friction);
  s.step_before_friction.reset();
}

int recalculate(Session& s) {
  if (s.firstRun) end_first_run(s);
  transferInputs(s);
  if (!s.inputsOk) return 0;
  convertUnits(s.state);
  if (set_up_refused(s)) return 0;
  return runAndShow(s);
}

void Patdef(Session& s) {
  transferInputs(s);
  if (!s.inputsOk) return;
  convertUnits(s.state);
  if (s.firstRun) {
    end_first_run(s);
    if (!(s.state.chargeGr > 0)) return focus_number(s, s.state.chargeGr, 1);
  }
  if (set_up_refused(s)) return;
  if (powder_table_waits(s) || !s.valid.ask_charge) {
    runAndShow(s);
    if (!s.options.atiles) open_output(s);
    return;
  }
  s.valid.ask_charge = false;
  s.status = s.language.fastmsg("askcharge0");
  focus_number(s, s.state.chargeGr, 1);
}

namespace {

int run_shot(Session& s) {
  const int answer = run_single(s);
  if (answer) write_transfer_file(s);
  mark_results(s, answer != 0);
  return answer;
}

// Nobody is disturbed while it lives: no box, no beep, no moved focus.
class Silence {
public:
  explicit Silence(Session& s) : s_(s), silent_(s.silent), sound_(s.sound) {
    s.silent = true;
    s.sound = false;
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    s_.silent = silent_;
    s_.sound = sound_;
  }

private:
  Session& s_;
  bool silent_, sound_;
};

// A new cartridge's charge is looked at by the user first.
bool charge_unseen(Session& s) {
  if (!s.valid.ask_charge) return false;
  s.refusal = Finding{MessageText(s).fast("askcharge0"), place_of(s, s.state.chargeGr, 1)};
  return true;
}

int run_by_mode(Session& s) {
  if (s.mode() == DisplayMode::load_table) {
    run_load_table(s);
    return -1;
  }
  if (powder_table_waits(s)) {
    run_powder_table(s);
    return -1;
  }
  return run_shot(s);
}

}  // namespace

int runAndShow(Session& s) {
  s.status.clear();
  if (s.tables.powder_shown) SetDisplayMode(s, 3);
  save_current_load(s);
  if (!s.valid.results) s.valid.load_table = s.valid.powder_table = false;
  return run_by_mode(s);
}

void calculate_quietly(Session& s) {
  const Silence silence(s);
  transferInputs(s);
  if (!s.inputsOk || charge_unseen(s)) return;
  convertUnits(s.state);
  prepare_shot_checked(s);
  if (!s.inputsOk || start_pressure_refused(s)) return;
  s.firstRun = false;
  s.status.clear();
  save_current_load(s);
  run_shot(s);
}

bool run_shown_shot(Session& s) { return prepareShot(s.state) == SetUp::ok && run_single(s) != 0; }

DataBlock data_block(const Session& s) {
  return data_block_of(s.state, s.load.pattyp, s.load.bultyp, s.load.pulver, s.load.fproof);
}

void show_whole_diagram(Session& s) { s.output.view = {}; }

void SetDisplayMode(Session& s, int type) {
  s.output.as_text = false;
  constexpr int kFirst = static_cast<int>(DisplayMode::first_diagram);
  if (const int diagram = type >= kFirst ? type : s.options.grftyp; diagram >= kFirst)
    s.output.last_diagram = diagram;
  if (type != s.options.grftyp || s.output.optional) {
    s.output.hidden = {};
    show_whole_diagram(s);
  }
  s.options.grftyp = type;
  s.output.optional = false;
  s.tables.powder_shown = false;
  outputs_changed(s);
}

}  // namespace tv
