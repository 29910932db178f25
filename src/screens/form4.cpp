// Form4: the powder of the load and its charge.
#include "screens/all.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/findings.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form4";
using C = CalcState;
constexpr double kMost = 9999999;

// A powder with a value changed is not the one of that name any more.
void powder_changed(Session& s, int, bool) {
  if (!s.load.pulver.empty() && !s.load.pulver.ends_with(" ?")) s.load.pulver += " ?";
  refresh_fill(s);
  setResultsValid(s, false);
}

void charge_changed(Session& s, int, bool) {
  if (s.state.chargeGr > 0) s.valid.ask_charge = false;
  refresh_fill(s);
  setResultsValid(s, false);
}

void start_pressure_changed(Session& s, int, bool) {
  s.load.start_press_set = true;
  setResultsValid(s, false);
}

constexpr NumberField kNumbers[] = {
    one_side({"Exw", &units::kJ_per_kg, {1, 10000}, nullptr, "####0"}, state<&C::Exw>, powder_changed),
    one_side({"Kap", &units::plain, {1.001, 1.999}, nullptr, "0.0000"}, state<&C::Kap>, powder_changed),
    one_side({"Pdens", &units::g_per_cm3, {0.001, 100}, nullptr, "0.000"}, state<&C::Pdens>, powder_changed),
    one_side({"bulkdn", &units::g_per_cm3, {0, 100}, nullptr, "0.000"}, state<&C::bulkdn>, powder_changed),
    one_side({"Ba0", &units::plain, {0.001, 1000}, nullptr, "0.0000"}, state<&C::Ba0>, powder_changed),
    one_side({"PDko", &units::plain, {-0.99, 10000}, nullptr, "0.0000"}, state<&C::PDko>, powder_changed),
    one_side({"Limz1", &units::plain, {0.01, 1}, nullptr, "0.000"}, state<&C::Limz1>, powder_changed),
    one_side({"Ba1", &units::plain, {0, kMost}, nullptr, "0.0000"}, state<&C::Ba1>, powder_changed),
    {.sides = {{{"MPgm", &units::gram_of_grain, {0.0065, 100000}, "##0.00#", "##0.00#"},
                {"MPgn", &units::grain, {0.1, 1543230}, "##0.0#", "##0.0#"}}},
     .value = state<&C::chargeGr>,
     .changed = charge_changed,
     .step = charge_step,
     .stepped = calculate_quietly},
    one_side({"ini_press1", &units::mode_of_Pa, {0, 1000}}, state<&C::start_pressure>,
             start_pressure_changed),
};

constexpr Row kCharge[] = {
    wide_row("PulvDat", load_list("PulvDat", RecordKind::powders)),
    source_row("PulvDat"),
    number_row("MPgm", "MPgn"),
    display_row("fill", "unit_percent"),
    {RowShape::pair, "ini_press1", {number("ini_press1", "@zulp_nam"), button("CalcAll")}},
    {RowShape::block, nullptr, {Place{"findings", ControlKind::list, nullptr, ListOf::leads}}},
};
constexpr Row kPowder[] = {
    number_row("Exw"),    number_row("Kap"), number_row("Pdens"),
    number_row("bulkdn"), number_row("Ba0"), number_row("PDko"),
    number_row("Limz1"),  number_row("Ba1"), {RowShape::buttons, nullptr, {button("pow_dat")}},
};

std::string powder_in_short(const Session& s) {
  const auto text = [&s](const char* name) { return field(s, kName, name).text; };
  return "Ba " + text("Ba0") + " · a0 " + text("PDko") + " · z1 " + text("Limz1");
}

constexpr Group kAlways[] = {{nullptr, 0, kCharge}};
constexpr Group kForm[] = {{"fold_powder", 0, kPowder, nullptr, powder_in_short}};

void pick_powder(Session& s, int) { take_powder(s, picked_row(field(s, kName, "PulvDat"))); }

void type_powder(Session& s, int) {
  Field& f = field(s, kName, "PulvDat");
  f.selected = -1;
  s.load.pulver = f.text;
  setResultsValid(s, false);
}

void open_burn_function(Session& s, int) { open_screen(s, "Form9"); }
void press_CalcAll(Session& s, int) { recalculate(s); }

void go_to_finding(Session& s, int i) {
  const std::vector<Finding> found = findings(s);
  if (i >= 0 && i < static_cast<int>(found.size())) go_to(s, found[static_cast<std::size_t>(i)]);
}

constexpr ControlAction kActions[] = {{"PulvDat", pick_powder, type_powder},
                                      {"CalcAll", press_CalcAll},
                                      {"pow_dat", open_burn_function},
                                      {"findings", go_to_finding}};

// "163: its text", in one line. A finding without a number of its own is told by its words alone.
std::string finding_line(const Finding& finding) {
  std::string text = finding.message.text;
  while (text.ends_with('\n')) text.pop_back();
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;) text.replace(at, 1, " ");
  const auto& keys = finding.message.keys;
  const bool numbered = !keys.empty() && keys.front().starts_with("msg");
  return numbered ? keys.front().substr(3) + ": " + text : text;
}

void show_findings(Session& s) {
  Field& list = field(s, kName, "findings");
  list.items.clear();
  list.text.clear();
  for (const Finding& finding : findings(s)) {
    list.items.push_back({finding_line(finding)});
    list.text += list.items.back().text + "\n";
  }
  list.visible = !list.items.empty();
  list.selected = -1;
}

void refresh(Session& s) {
  show_text(s, kName, "PulvDat", s.load.pulver);
  set_text(s, kName, "zulp_nam", mode_pressure_unit(s));
  const bool known = s.state.bulkdn > 0 && shown_number(s, s.state.dim.Veff) > 0;
  set_text(s, kName, "fill", known ? format_number(s.state.fill, "0.0") : "?????");
  show_findings(s);
}

}  // namespace

extern const ScreenSpec kForm4{.name = kName,
                               .section = "form4",
                               .shape = ScreenShape::child,
                               .role = Role::powder,
                               .form = kForm,
                               .apart = kAlways,
                               .default_button = "CalcAll",
                               .numbers = kNumbers,
                               .actions = kActions,
                               .refresh = refresh};

}  // namespace tv
