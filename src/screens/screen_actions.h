// What each control of a screen does, as table rows; and what a screen does when it opens, closes or gets a
// key.
#pragma once

#include <span>
#include <string_view>

#include "session/number_pairs.h"
#include "session/session.h"

namespace tv {

// A button was pressed, a box toggled, an option chosen, an entry picked, a text edited or left.
struct ControlAction {
  const char* screen;
  const char* control;
  void (*action)(Session&);
};

struct ScreenBehaviour {
  const char* screen;
  void (*open)(Session&);                       // fills its fields; null: nothing to fill
  void (*close)(Session&);                      // what its close button does; null: it is only hidden
  bool (*key)(Session&, std::string_view key);  // true: the key was used; null: none
};

std::span<const ControlAction> main_actions();   // dimensions, powder
std::span<const ControlAction> small_actions();  // friction, quick start, powder table criteria
std::span<const ScreenBehaviour> screen_behaviours();

// Stores a number that the user has entered and does what hangs on it.
void number_changed(Session& s, const PairSide& side, double stored);
// A number field is left: checks beyond its limits, as the smallest loading ratio against the target.
void number_left(Session& s, const PairSide& side);

// The dimensions go back to what was held when the field in use got the focus; the fields of those that
// differ are written anew, but not the pair being typed in.
void restore_dimensions(Session& s, const PairSide& but);

// The limits of a field now: those of its row, scaled by the pressure unit or bound to other values.
Limits field_limits(const Session& s, const PairSide& side);

// Renews what the quick start mirrors from the main screens.
void refresh_quick_start(Session& s);
// Fields of the powder table's criteria from the options.
void refresh_criteria(Session& s);

}  // namespace tv
