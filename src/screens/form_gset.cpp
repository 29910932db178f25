// FormGset: which quantity of the shot the output window draws over which.
#include "output/quantities.h"
#include "screens/all.h"
#include "screens/output_window.h"
#include "session/entry.h"
#include "session/message.h"

namespace tv {
namespace {

constexpr const char* kName = "FormGset";

struct State {
  int graf_x = 0, graf_y = 3;
};

constexpr Row option_row(const char* name) { return {RowShape::bare, nullptr, {option(name)}}; }
constexpr Row kOverX[] = {option_row("OptionX0"), option_row("OptionX1"), option_row("OptionX2"),
                          option_row("OptionX3"), option_row("OptionX4"), option_row("OptionX5")};
constexpr Row kShotY[] = {option_row("OptionY0"),  option_row("OptionY1"),  option_row("OptionY2"),
                          option_row("OptionY8"),  option_row("OptionY3"),  option_row("OptionY7"),
                          option_row("OptionY14"), option_row("OptionY15"), option_row("OptionY4")};
constexpr Row kOtherY[] = {option_row("OptionY5"),  option_row("OptionY6"),  option_row("OptionY9"),
                           option_row("OptionY10"), option_row("OptionY11"), option_row("OptionY12"),
                           option_row("OptionY13")};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("cancel"), button("newcurve")}}};
constexpr Group kForm[] = {
    {"OptionX", 0, kOverX}, {"OptionY", 1, kShotY}, {nullptr, 2, kOtherY}, {nullptr, -1, kButtons}};

void open(Session& s) {
  own<State>(s, kName) = {sound_graf_x(s.options.graf_x), sound_graf_y(s.options.graf_y)};
}
void choose_x(Session& s, int n) { own<State>(s, kName).graf_x = n; }
void choose_y(Session& s, int n) { own<State>(s, kName).graf_y = n; }

void draw_it(Session& s, int) {
  const State& state = own<State>(s, kName);
  if (!show_optional(s, state.graf_x, state.graf_y)) return warn(s, MessageText(s).msg(470));
  hide_screen(s, kName);
  bring_to_front(s, Role::output);
}
void press_cancel(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {
    {"OptionX", choose_x}, {"OptionY", choose_y}, {"newcurve", draw_it}, {"cancel", press_cancel}};

void refresh(Session& s) {
  const State& state = own<State>(s, kName);
  for (int n = 0; n < kXQuantities; ++n)
    field(s, kName, "OptionX" + std::to_string(n)).checked = n == state.graf_x;
  for (int n = 0; n < kYQuantities; ++n)
    field(s, kName, "OptionY" + std::to_string(n)).checked = n == state.graf_y;
}

}  // namespace

extern const ScreenSpec kFormGset{.name = kName,
                                  .section = "frmgset",
                                  .form = kForm,
                                  .default_button = "newcurve",
                                  .actions = kActions,
                                  .open = open,
                                  .refresh = refresh};

}  // namespace tv
