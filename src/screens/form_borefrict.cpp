// FormBorefrict: the friction of the bullet in the bore.
#include "screens/all.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/units.h"

namespace tv {
namespace {

constexpr const char* kName = "FormBorefrict";
constexpr double kPsi30MPa = 4351;  // rounded to the nearest whole number

void friction_changed(Session& s, int, bool) { setResultsValid(s, false); }

constexpr NumberField kNumbers[] = {
    pair_of({"sugg_P0", &units::chosen_of_Pa, {0, 30}, "0.0##", "0.0##"},
            {"sugg_P1", &units::psi_of_Pa, {0, kPsi30MPa}, "0", "0"}, state<&CalcState::frictionPress>,
            friction_changed),
};

constexpr Row kRows[] = {
    note_row("friclab1"),
    {RowShape::bare, nullptr, {check("frictiononoff")}},
    {RowShape::pair, "sugg_P0", {number("sugg_P0", "@zulp_nam"), number("sugg_P1")}},
    note_row("friclab2"),
    {RowShape::buttons, nullptr, {button("okfriction")}},
};
constexpr Group kForm[] = {{nullptr, 0, kRows}};

void toggle_friction(Session& s, int) {
  s.state.frictionOn = field(s, kName, "frictiononoff").checked;
  setResultsValid(s, false);
}

// Friction always runs with the fine step.
void close(Session& s) {
  if (!(s.state.frictionPress >= 0 && s.state.frictionPress <= 30000000)) {
    warn(s, MessageText(s).msg(428).line().add(s.language.text("frmboref", "sugg_P0") + " 0 ... 30 MPa"));
    return s.user->focus(kName, "sugg_P0");
  }
  if (s.state.frictionOn) begin_friction_step(s);
  if (!s.state.frictionOn) end_friction_step(s);
  hide_screen(s, kName);
}
void press_ok(Session& s, int) { close(s); }

constexpr ControlAction kActions[] = {{"frictiononoff", toggle_friction}, {"okfriction", press_ok}};

void refresh(Session& s) {
  field(s, kName, "frictiononoff").checked = s.state.frictionOn;
  set_text(s, kName, "zulp_nam", chosen_pressure_unit(s));
}

}  // namespace

extern const ScreenSpec kFormBorefrict{.name = kName,
                                       .section = "frmboref",
                                       .form = kForm,
                                       .default_button = "okfriction",
                                       .numbers = kNumbers,
                                       .actions = kActions,
                                       .close = close,
                                       .refresh = refresh};

}  // namespace tv
