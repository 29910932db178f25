#include "session/results_panel.h"

namespace tv {

void clear_panel(Session& s) {
  s.shown.panel.clear();
  s.shown.notes.clear();
  s.shown.notes_red = false;
}

void show_panel(Session& s) {
  ShownRun& run = s.shown;
  if (run.outcome.end ==
      ShotEnd::too_many_steps) {  // a walk that did not end has no figures, only the note of it
    clear_panel(s);
    run.notes_red = true;
    run.notes = s.language.fastmsg("fwarn5") + run_notes_text(s.result.runNotes, s.language) + "\n" +
                s.language.notice();
    return;
  }
  run.panel = showResults(run.state, s.curve, s.result, run.charge_g, run.Veff_cm3);
  run.notes_red = run.outcome.end == ShotEnd::stuck || status_line_red(run.state, s.result);
  // A stuck bullet: no words of one that leaves the barrel.
  run.notes = run.outcome.end == ShotEnd::stuck
                  ? s.language.fastmsg("fehlEG")
                  : status_line(run.state, s.curve, s.result, s.language) + s.language.notice();
}

}  // namespace tv
