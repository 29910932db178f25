// What starts a calculation, and in which order inputs, derived values, the run and the views are refreshed.
#include "session/driver.h"

#include <array>
#include <ctime>

#include "session/files.h"
#include "session/number_pairs.h"
#include "text/number.h"

namespace tv {
namespace {

// A run's own mark: the flag and what hangs on it, not the tables.
void set_run_valid(Session& s, bool valid) {
  s.resultsValid = valid;
  for (const auto& control : screen_info("Form5")->controls)
    field(s, "Form5", control.name).stale = !valid && s.shown.any;
}

void note_inputs_of_run(Session& s, const ShotOutcome& outcome) {
  static constexpr std::array kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 16> clock{};
  std::strftime(clock.data(), clock.size(), "%H:%M:%S", &local);
  s.shown.any = true;
  s.shown.state = s.state;
  s.shown.load = s.load;
  s.shown.outcome = outcome;
  s.shown.block = data_block(s);
  s.shown.charge_g = field_number(s, "Form4", "MPgm");
  s.shown.Veff_cm3 = field_number(s, "Form3", "Veffm");
  s.shown.date = std::to_string(local.tm_mday) + "-" + kMonths[static_cast<std::size_t>(local.tm_mon)] + "-" +
                 std::to_string(1900 + local.tm_year);
  s.shown.time = clock.data();
}

// What the user is told of a run that did not finish.
void tell_end(Session& s, const ShotOutcome& outcome) {
  switch (outcome.end) {
    case ShotEnd::kEff_one:
      warn(s, MessageText(s).msg(150), false);
      s.user->bring_to_front("Form4");
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
      const int first = s.state.tableMode ? 153 : 155;
      text.msg(first).line().msg(first + 1).line().msg(s.state.tableMode ? 157 : 158);
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
  if (outcome.ok()) s.screens.find("Form5")->second.paper = Paper::grey;
}

// One interactive shot with the panel live.
int run_single(Session& s) {
  if (s.resultsValid) set_run_valid(s, false);
  s.user->busy(true);
  Field& line = field(s, "Form5", "merker");
  if (line.ink != Ink::red) line.text = s.language.fastmsg("fwarn7");
  s.user->bring_to_front("Form5");
  s.screens.find("Form5")->second.paper = Paper::failed;
  ShotOutcome outcome = runShot(s.state, s.curve, s.result);
  s.shown.outcome = outcome;
  s.user->busy(false);
  tell_end(s, outcome);
  show_end(s, outcome);
  set_run_valid(s, outcome.ok());
  return outcome.ok() ? -1 : 0;
}

void note_densities(Session& s) {
  const double charge_g = field_number(s, "Form4", "MPgm"), Veffm = field_number(s, "Form3", "Veffm");
  if (!(Veffm > 0)) return;
  set_text(s, "Form5", "ladich", format_number(charge_g / Veffm, "##0.000"));
  set_text(s, "Form5", "endich", format_number(s.state.Exw * charge_g / Veffm, "0"));
}

void open_output(Session& s) { s.user->bring_to_front("Form7"); }

// The checks that both ways to a calculation share, between set-up and run.
bool start_pressure_refused(Session& s) {
  if (checkStartPressureAsked(s)) {
    refresh_fill(s);
    return false;
  }
  return true;
}

void end_first_run(Session& s) {
  s.firstRun = false;
  s.screens.find("frmFast")->second.visible = false;
  s.user->hide("frmFast");
}

}  // namespace

void setResultsValid(Session& s, bool valid) {
  set_run_valid(s, valid);
  if (!valid) s.load_table.table_valid = s.powder_table.table_valid = false;
  if (s.outputs_changed) s.outputs_changed(s);
}

void setStep(Session& s, int step) {
  if (step == s.state.schrit) return;
  setResultsValid(s, false);
  s.state.schrit = s.options.schrit = step >= 0 && step <= 2 ? step : 0;
}

int recalculate(Session& s) {
  if (s.firstRun) end_first_run(s);
  transferInputs(s);
  if (!s.inputsOk) return 0;
  convertUnits(s.state);
  prepareShotChecked(s);
  if (!s.inputsOk || start_pressure_refused(s)) return 0;
  return runAndShow(s);
}

void press_Patdef(Session& s) {
  transferInputs(s);
  if (!s.inputsOk) return;
  convertUnits(s.state);
  if (s.firstRun) {
    end_first_run(s);
    s.user->bring_to_front("Form4");
    s.user->focus("Form4", "MPgn");
    return;
  }
  prepareShotChecked(s);
  if (!s.inputsOk || start_pressure_refused(s)) return;
  if (s.state.tableKind == 1 || !s.askCharge) {
    runAndShow(s);
    return open_output(s);
  }
  s.askCharge = false;
  s.user->bring_to_front("Form4");
  s.user->focus("Form4", "MPgn");
}

namespace {

int run_by_mode(Session& s) {
  if (s.state.tableMode) {
    run_load_table(s);
    return -1;
  }
  if (s.state.tableKind == 1) {
    run_powder_table(s);
    return -1;
  }
  const int answer = run_single(s);
  if (answer) write_transfer_file(s);
  setResultsValid(s, answer != 0);
  return answer;
}

}  // namespace

int runAndShow(Session& s) {
  if (s.state.tableKind == 2) SetDisplayMode(s, 3);
  note_densities(s);
  save_current_load(s);
  if (!s.resultsValid) s.load_table.table_valid = s.powder_table.table_valid = false;
  const int answer = run_by_mode(s);
  if (s.options.atiles && s.window_command) s.window_command(s, "arrng_wins");
  return answer;
}

bool run_shown_shot(Session& s) {
  const int mode = s.state.tableMode, kind = s.state.tableKind;
  s.state.tableMode = s.state.tableKind = 0;
  const bool finished = prepareShot(s.state) == SetUp::ok && run_single(s) != 0;
  s.state.tableMode = mode;
  s.state.tableKind = kind;
  return finished;
}

DataBlock data_block(const Session& s) {
  const auto text = [&](const char* screen, const char* name) { return field(s, screen, name).text; };
  return {.cartridge = text("Form3", "HVolDat"),
          .bullet = text("Form3", "Bnam"),
          .powder = text("Form4", "PulvDat"),
          .coated = field(s, "Form3", "fproof").checked,
          .Veffz = text("Form3", "Veffz"),
          .Veffm = text("Form3", "Veffm"),
          .Plenz = text("Form3", "Plenz"),
          .Plenm = text("Form3", "Plenm"),
          .Llenz = text("Form3", "Llenz"),
          .Llenm = text("Form3", "Llenm"),
          .MPgn = text("Form4", "MPgn"),
          .MPgm = text("Form4", "MPgm")};
}

void set_unit_mode(Session& s, UnitMode mode) {
  take_shown_start_pressure(s);
  s.unit_mode = mode;
  s.imperial_view = mode == UnitMode::imperial;
  show_whole_diagram(s);
  s.options.metyes = mode == UnitMode::metric;
  write_option(s, "metyes");
  field(s, "frmFast", "met_eng").checked = s.options.metyes;
  refresh_pressure_fields(s);
  if (s.outputs_changed) s.outputs_changed(s);
}

void set_pressure_unit(Session& s, bool MPa) {
  take_shown_start_pressure(s);
  s.state.pressure_unit_factor = MPa ? 1 : 10;
  s.options.mpayes = MPa;
  show_whole_diagram(s);
  write_option(s, "mpayes");
  refresh_pressure_fields(s);
  if (s.shown.any) {
    s.shown.state.pressure_unit_factor = s.state.pressure_unit_factor;
    show_panel(s);
  }
  if (s.outputs_changed) s.outputs_changed(s);
}

void show_whole_diagram(Session& s) { s.diagram_view = {}; }

void SetDisplayMode(Session& s, int type) {
  s.output_as_text = false;
  if (type != s.options.grftyp) {
    s.hidden_curves = {};
    show_whole_diagram(s);
  }
  s.options.grftyp = type;
  s.state.tableKind = type == -2 ? 1 : 0;
  s.state.tableMode = type == -1 ? 1 : 0;
  if (s.outputs_changed) s.outputs_changed(s);
}

}  // namespace tv
