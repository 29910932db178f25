#include "session/results_panel.h"

#include "session/message.h"

namespace tv {

void clear_panel(Session& s) {
  s.shown.panel.clear();
  s.shown.notes.clear();
  s.shown.notes_red = false;
}

// " Outside its usual range: Barrel length 8 in. (10 ... 10160 mm)."
static std::string unusual_text(const Session& s) {
  std::string text;
  for (const FieldPlace& at : s.shown.unusual)
    text += (text.empty() ? " " : "; ") + field_caption(s, at) + " (" + field_range(s, at) + ")";
  return text.empty() ? text : s.language.fastmsg("fwarn18") + text + ".";
}

std::string run_line(const Session& s) {
  return status_line(s.shown.state, s.curve, s.result, s.language, unusual_text(s));
}

void show_panel(Session& s) {
  ShownRun& run = s.shown;
  if (run.outcome.end ==
      ShotEnd::too_many_steps) {  // a walk that did not end has no figures, only the note of it
    clear_panel(s);
    run.notes_red = true;
    run.notes = s.language.fastmsg("fwarn5") + run_notes_text(s.result.runNotes, s.language) +
                unusual_text(s) + "\n" + s.language.notice();
    return;
  }
  run.panel = showResults(run.state, s.curve, s.result, run.charge_g, run.Veff_cm3);
  run.notes_red = run.outcome.end == ShotEnd::stuck || status_line_red(run.state, s.result);
  // A stuck bullet: no words of one that leaves the barrel.
  run.notes =
      run.outcome.end == ShotEnd::stuck ? s.language.fastmsg("fehlEG") : run_line(s) + s.language.notice();
}

}  // namespace tv
