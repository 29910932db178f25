// Form5: the results of the last run, coloured by the pressure limit.
#include "engine/results.h"
#include "screens/all.h"
#include "session/numbers.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form5";

constexpr Row kPressure[] = {
    display_row("Mgas", "@zulp_nam", "Mgaspsi", "unit_psi"),
    display_row("Xpm", "unit_mm", "Xpmzoll", "unit_in"),
};
constexpr Row kMuzzle[] = {
    display_row("Vnull", "unit_mps", "Vnullfps", "unit_fps"),
    display_row("Ener", "unit_J", "Enerfp", "unit_ftlb"),
    display_row("Maxpe", "*", "Maxpepsi", "unit_psi"),
};
constexpr Row kTimes[] = {
    display_row("Sdau", "unit_ms"),
    display_row("ptime", "unit_ms"),
    note_row("@Labelaburn"),
    display_row("tbrs", "unit_ms"),
    display_row("xbrsmm", "unit_mm", "xbrsin", "unit_in"),
    display_row("Vbrannt", "unit_percent"),
    display_row("wgrad", "unit_percent"),
};
constexpr Row kRatios[] = {
    display_row("cmratio", nullptr),
    display_row("exprat", nullptr),
    display_row("ladich", "unit_gccm"),
    display_row("endich", "unit_Jccm"),
};
constexpr Row kNotes[] = {{RowShape::block, "merker", {Place{"merker", ControlKind::view}}}};
constexpr Group kForm[] = {{"grp_pressure", 0, kPressure},
                           {"grp_muzzle", 0, kMuzzle},
                           {"grp_time", 1, kTimes},
                           {"grp_ratio", 0, kRatios},
                           {nullptr, 1, kNotes}};

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

void mark_peak(Session& s, const LimitLook& look) {
  for (const char* name : {"Mgas", "Mgaspsi"}) {
    Field& f = field(s, kName, name);
    f.paper = look.paper;
    f.ink = look.ink;
    f.reason = look.reason ? std::string(trim(s.language.fastmsg(look.reason))) : std::string();
  }
}

// Charge over the effective volume, before and after a run.
void show_loading_density(Session& s) {
  const double Veffm = shown_number(s, s.state.dim.Veff);
  set_text(s, kName, "ladich",
           Veffm > 0 ? format_number(shown_number(s, s.state.chargeGr) / Veffm, "0.000") : std::string());
}

void show_notes(Session& s) {
  Field& line = field(s, kName, "merker");
  line.ink = s.shown.notes_red ? Ink::red : Ink::black;
  line.text = s.shown.running && !s.shown.notes_red ? s.language.fastmsg("fwarn7") : s.shown.notes;
}

void refresh(Session& s) {
  Screen& screen = s.screens.find(kName)->second;
  screen.paper = s.shown.failed ? Paper::failed : Paper::grey;
  for (auto& [name, f] : screen.fields) {
    f.text.clear();
    f.stale = !s.valid.results && s.shown.any;
  }
  for (const PanelField& figure : s.shown.panel) set_text(s, kName, figure.name, figure.text);
  show_loading_density(s);
  show_notes(s);
  set_text(s, kName, "zulp_nam", chosen_pressure_unit(s));
  if (s.shown.panel.empty()) return mark_peak(s, kLooks[0]);
  set_text(s, kName, "Labelaburn",
           s.language.fastmsg(burn_caption(s.result) == BurnCaption::at95 ? "fburn95" : "fburn100"));
  mark_peak(s, kLooks[static_cast<std::size_t>(pressure_state(s.result.pMax, s.shown.state.dim.zul_P))]);
}

}  // namespace

extern const ScreenSpec kForm5{.name = kName,
                               .section = "form5",
                               .shape = ScreenShape::child,
                               .role = Role::results,
                               .form = kForm,
                               .refresh = refresh};

}  // namespace tv
