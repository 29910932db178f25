// The results panel: figures, colours and the status line of the last run.
#include "session/driver.h"

namespace tv {
namespace {

struct LimitLook {
  Paper paper;
  Ink ink;
  const char* reason;  // key of fastmsg
};

// By PressureState; the text says what the colour says.
constexpr LimitLook kLooks[] = {
    {Paper::white, Ink::black, nullptr},     // fine
    {Paper::yellow, Ink::black, "fwarn2"},   // above 75 %
    {Paper::magenta, Ink::black, "fwarn2"},  // above 85 %
    {Paper::red, Ink::black, "fwarn1"},      // above the limit
    {Paper::white, Ink::red, "fwarn3"},      // limit unknown
};

std::string burn_caption_text(const Session& s) {
  return s.language.fastmsg(burn_caption(s.result) == BurnCaption::at95 ? "fburn95" : "fburn100");
}

// A walk that did not end has no figures, only the note of it.
void show_no_figures(Session& s) {
  clear_panel(s);
  Field& line = field(s, "Form5", "merker");
  line.ink = Ink::red;
  line.text = s.language.fastmsg("fwarn5") + run_notes_text(s.result.runNotes, s.language) + "\n" +
              s.language.notice();
}

}  // namespace

void clear_panel(Session& s) {
  for (const Control& control : screen_info("Form5")->controls) {
    if (std::string_view(control.name) == "zulp_nam") continue;
    Field& f = field(s, "Form5", control.name);
    f.text.clear();
    f.reason.clear();
    f.ink = Ink::black;
    f.paper = Paper::white;
  }
}

void show_panel(Session& s) {
  const ShownRun& run = s.shown;
  if (run.outcome.end == ShotEnd::too_many_steps) return show_no_figures(s);
  for (const PanelField& f : showResults(run.state, s.curve, s.result, run.charge_g, run.Veff_cm3))
    set_text(s, "Form5", f.name, f.text);
  const LimitLook& look =
      kLooks[static_cast<std::size_t>(pressure_state(s.result.pMax, run.state.dim.zul_P))];
  for (const char* name : {"Mgas", "Mgaspsi"}) {
    Field& f = field(s, "Form5", name);
    f.paper = look.paper;
    f.ink = look.ink;
    f.reason = look.reason ? std::string(trim(s.language.fastmsg(look.reason))) : std::string();
  }
  set_text(s, "Form5", "Labelaburn", burn_caption_text(s));
  Field& line = field(s, "Form5", "merker");
  if (run.outcome.end == ShotEnd::stuck) {  // no words of a bullet that leaves the barrel
    line.text = s.language.fastmsg("fehlEG");
    line.ink = Ink::red;
    return;
  }
  line.ink = status_line_red(run.state, s.result) ? Ink::red : Ink::black;
  line.text = status_line(run.state, s.curve, s.result, s.language) + s.language.notice();
}

}  // namespace tv
