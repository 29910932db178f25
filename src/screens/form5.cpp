// Form5: the results of the last run, coloured by the pressure limit.
#include "engine/results.h"
#include "output/limit_bar.h"
#include "screens/all.h"
#include "session/numbers.h"
#include "session/prediction.h"
#include "session/units.h"
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
constexpr Row kMeasured[] = {
    {RowShape::pair, "mes_v", {display("mes_v"), display("mes_dv", "unit_percent")}},
    {RowShape::pair, "mes_p", {display("mes_p"), display("mes_dp", "unit_percent")}},
};
MeasuredFigures measured(const Session& s) { return measured_at(s.load, s.shown.state.chargeGr); }
bool any_measured(const Session& s) {
  const MeasuredFigures m = s.shown.any ? measured(s) : MeasuredFigures{};
  return m.velocity.count + m.pressure.count > 0;
}
constexpr Row kNotes[] = {{RowShape::block, "merker", {Place{"merker", ControlKind::view}}}};
// The key figures, each a column: what it is, the figure, what else belongs to it.
constexpr Row figure_row(const char* name, const char* unit) {
  return {RowShape::figure, name, {display(name, unit)}};
}
constexpr Row small_row(const char* name) { return {RowShape::line, nullptr, {display(name)}}; }
constexpr Row kKeyPeak[] = {figure_row("key_Mgas", "@key_Mgas_unit"),
                            small_row("key_Mgas_more"),
                            {RowShape::line, nullptr, {surface("key_bar")}},
                            small_row("key_share")};
constexpr Row kKeyVelocity[] = {figure_row("key_Vnull", "@key_Vnull_unit"), small_row("key_Vnull_more")};
constexpr Row kKeyEnergy[] = {figure_row("key_Ener", "@key_Ener_unit"), small_row("key_Ener_more")};
constexpr Row kKeyFill[] = {figure_row("key_fill", "unit_percent"), small_row("key_fill_more")};
constexpr Row kKeyBurnt[] = {figure_row("key_Vbrannt", "unit_percent"), small_row("key_Vbrannt_more")};
constexpr Row kKeyTime[] = {figure_row("key_Sdau", "unit_ms"), small_row("key_Sdau_more")};
constexpr Group kStrip[] = {{nullptr, 0, kKeyPeak}, {nullptr, 1, kKeyVelocity}, {nullptr, 2, kKeyEnergy},
                            {nullptr, 3, kKeyFill}, {nullptr, 4, kKeyBurnt},    {nullptr, 5, kKeyTime}};

constexpr Group kForm[] = {
    {"grp_pressure", 0, kPressure}, {"grp_muzzle", 0, kMuzzle}, {"grp_measured", 0, kMeasured, any_measured},
    {"grp_time", 1, kTimes},        {"grp_ratio", 0, kRatios},  {nullptr, 1, kNotes}};

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

// --- key figures

constexpr const char* kDash = "\u2013";

std::string figure(const Session& s, std::string_view name) {
  for (const PanelField& figure : s.shown.panel)
    if (name == figure.name) return std::string(trim(figure.text));
  return kDash;
}

// There are figures, and they are those of a run that ended well.
bool has_figures(const Session& s) { return !s.shown.panel.empty() && !s.shown.failed && !s.shown.running; }

// A figure of two units: the one on show large, the other below it.
void show_pair(Session& s, const std::string& key, std::array<std::string_view, 2> names,
               std::array<std::string, 2> units) {
  const std::size_t first = s.unit_mode == UnitMode::imperial ? 1 : 0, second = 1 - first;
  set_text(s, kName, key, figure(s, names[first]));
  set_text(s, kName, key + "_unit", units[first]);
  set_text(s, kName, key + "_more", figure(s, names[second]) + ' ' + units[second]);
}

std::string key_text(const Session& s, const char* key) { return s.language.text("form5", key); }
std::string unit_text(const Session& s, const char* unit) { return s.language.text("units", unit); }

std::string burnt_when(const Session& s) {
  const std::string travel = s.unit_mode == UnitMode::imperial
                                 ? figure(s, "xbrsin") + ' ' + unit_text(s, "unit_in")
                                 : figure(s, "xbrsmm") + ' ' + unit_text(s, "unit_mm");
  if (burn_caption(s.result) != BurnCaption::burnout || s.shown.state.schrit == 2) return {};
  return key_text(s, "key_at") + ' ' + figure(s, "tbrs") + ' ' + unit_text(s, "unit_ms") + ", " + travel;
}

PressureState limit_state(const Session& s) { return pressure_state(s.result.pMax, s.shown.state.dim.zul_P); }
double limit_share(const Session& s) { return s.result.pMax / (s.shown.state.dim.zul_P * 1e6); }

// "82 % of 415 MPa", and in words what its colour says.
std::string share_text(const Session& s) {
  const PressureState state = limit_state(s);
  if (state == PressureState::unknown) return key_text(s, "key_unknown");
  const double percent = 100 * limit_share(s), limit = s.shown.state.dim.zul_P;
  // Close to the limit a rounded share would not tell on which side of it.
  const bool close = percent > 99 && percent < 101;
  std::string text =
      format_number(percent, close ? "0.0" : "0") + key_text(s, "key_of") +
      (s.unit_mode == UnitMode::imperial
           ? format_number(units::psi_of_MPa.shown(limit, s), "0") + ' ' + unit_text(s, "unit_psi")
           : format_number(units::chosen_of_MPa.shown(limit, s), "0.#") + ' ' + chosen_pressure_unit(s));
  if (state == PressureState::near_limit) text += ", " + key_text(s, "key_near");
  if (state == PressureState::over_limit) text += ", " + key_text(s, "key_over");
  return text;
}

void show_key_figures(Session& s) {
  show_pair(s, "key_Mgas", {"Mgas", "Mgaspsi"}, {chosen_pressure_unit(s), unit_text(s, "unit_psi")});
  show_pair(s, "key_Vnull", {"Vnull", "Vnullfps"}, {unit_text(s, "unit_mps"), unit_text(s, "unit_fps")});
  show_pair(s, "key_Ener", {"Ener", "Enerfp"}, {unit_text(s, "unit_J"), unit_text(s, "unit_ftlb")});
  const CalcState& run = s.shown.state;
  set_text(s, kName, "key_fill", run.bulkdn > 0 && run.dim.Veff > 0 ? format_number(run.fill, "0.0") : "?");
  set_text(s, kName, "key_fill_more", figure(s, "ladich") + ' ' + unit_text(s, "unit_gccm"));
  set_text(s, kName, "key_Vbrannt", figure(s, "Vbrannt"));
  set_text(s, kName, "key_Vbrannt_more", burnt_when(s));
  set_text(s, kName, "key_Sdau", figure(s, "Sdau"));
  set_text(s, kName, "key_Sdau_more",
           key_text(s, "key_ptime") + ' ' + figure(s, "ptime") + ' ' + unit_text(s, "unit_ms"));
  Field& share = field(s, kName, "key_share");
  share.text = s.valid.results ? share_text(s) : key_text(s, "key_stale");
  const PressureState state = limit_state(s);
  share.ink = state == PressureState::over_limit || state == PressureState::unknown ? Ink::red : Ink::black;
}

// Before the first run, and after one that failed: no figures, and why.
void show_no_figures(Session& s) {
  for (const char* name : {"key_Mgas", "key_Vnull", "key_Ener", "key_fill", "key_Vbrannt", "key_Sdau"})
    set_text(s, kName, name, kDash);
  Field& share = field(s, kName, "key_share");
  share.ink = s.shown.failed && s.shown.any ? Ink::red : Ink::black;
  share.text = s.shown.running                 ? s.language.fastmsg("fwarn7")
               : s.shown.failed && s.shown.any ? s.language.fastmsg("fwarn14")
                                               : key_text(s, "key_none");
}

DrawList draw_bar(const Session& s, const Extent& e) {
  if (has_figures(s) && s.valid.results && limit_state(s) != PressureState::unknown)
    return limit_bar(limit_share(s), e.width, e.height, e.dark);
  DrawList nothing;  // no bar where it would not be true
  nothing.width = e.width;
  nothing.height = e.height;
  nothing.background = e.paper;
  return nothing;
}

constexpr Surface kSurfaces[] = {{"key_bar", draw_bar, nullptr, 300, 8}};

// The mean with half of its interval, and how far it is from the prediction, percent.
void show_beside(Session& s, const char* mean, const char* difference, const SampleFigures& f,
                 double predicted, std::string (*text)(const Session&, double)) {
  if (f.count == 0) return;
  set_text(s, kName, mean, text(s, f.mean) + (f.has_spread() ? " ± " + text(s, f.high - f.mean) : ""));
  if (predicted > 0 && !s.shown.failed)
    set_text(s, kName, difference, format_pattern(100 * (f.mean / predicted - 1), "+0.0;-0.0;0.0"));
}

void show_measured(Session& s) {
  if (!s.shown.any) return;
  const MeasuredFigures m = measured(s);
  show_beside(s, "mes_v", "mes_dv", m.velocity, s.result.vMuzzle,
              [](const Session& of, double v) { return velocity_text(of, v, 1); });
  show_beside(s, "mes_p", "mes_dp", m.pressure, s.result.pMax, pressure_text);
}

void refresh(Session& s) {
  Screen& screen = s.screens.find(kName)->second;
  screen.paper = s.shown.failed ? Paper::failed : Paper::grey;
  for (auto& [name, f] : screen.fields) {
    f.text.clear();
    f.stale = !s.valid.results && s.shown.any;
  }
  has_figures(s) ? show_key_figures(s) : show_no_figures(s);
  for (const PanelField& figure : s.shown.panel) set_text(s, kName, figure.name, figure.text);
  show_loading_density(s);
  show_notes(s);
  show_measured(s);
  set_text(s, kName, "zulp_nam", chosen_pressure_unit(s));
  if (s.shown.panel.empty()) return mark_peak(s, kLooks[0]);
  set_text(s, kName, "Labelaburn",
           s.language.fastmsg(burn_caption(s.result) == BurnCaption::at95 ? "fburn95" : "fburn100"));
  mark_peak(s, kLooks[static_cast<std::size_t>(limit_state(s))]);
}

}  // namespace

extern const ScreenSpec kForm5{.name = kName,
                               .section = "form5",
                               .shape = ScreenShape::child,
                               .role = Role::results,
                               .form = kForm,
                               .apart = kStrip,
                               .surfaces = kSurfaces,
                               .refresh = refresh};

}  // namespace tv
