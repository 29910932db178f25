// What a person can do on a screen, each one function: focus, type, leave, press, pick, toggle, choose, move
// a bar or the pointer. After the outermost of them every screen writes its fields anew. So every screen
// works, and is tested, without a window.
#pragma once

#include <string_view>

#include "session/session.h"

namespace tv {

// What follows a whole action: the calculation that an accepted entry asks for, if the user wants that; then every
// screen is refreshed.
void end_action(Session& s);

// Something a person does, however far it reaches: the screens are refreshed once, when the outermost ends.
class Action {
public:
  explicit Action(Session& s) : s_(s) { ++s_.action_depth; }
  Action(const Action&) = delete;
  Action& operator=(const Action&) = delete;
  ~Action() {
    if (--s_.action_depth == 0) end_action(s_);
  }

private:
  Session& s_;
};

// All give false if there is no such control on the screen, or it cannot be used now.

// The field takes the focus: its limits come into force, its text is checked and selected.
bool focus_field(Session& s, std::string_view screen, std::string_view name);
// The user has edited the text of the field that has the focus; it stands in the record and its partners
// follow.
bool edit_field(Session& s, std::string_view screen, std::string_view name, std::string_view text);
// The field loses the focus: it takes its own format, an out-of-range value beeps and hints.
bool leave_field(Session& s, std::string_view screen, std::string_view name);
void leave_focus(Session& s);  // whatever field is in use
// Up and Down in a number field that has steps: so many of them, as one command of the user's. False: it has
// none.
bool step_field(Session& s, std::string_view screen, double steps);
// Escape in a number field: the texts and the values it had when it got the focus. False: nothing to restore.
bool restore_field(Session& s);
// Focus, select all, the text key by key (as the key filter lets it pass), leave.
bool type_text(Session& s, std::string_view screen, std::string_view name, std::string_view text);

bool press(Session& s, std::string_view screen, std::string_view button);
// A double click on a number field that stands for a calculation of its own.
bool double_click(Session& s, std::string_view screen, std::string_view name);
bool pick(Session& s, std::string_view screen, std::string_view list,
          int index);  // index into the list's items
// A box, or the row of a number field that can be marked.
bool toggle(Session& s, std::string_view screen, std::string_view box);
bool can_mark(const Session& s, std::string_view screen, std::string_view name);
bool choose(Session& s, std::string_view screen, std::string_view group, int n);  // option n of a group
// "Shift+Up", "F5", "Escape"; the last closes dialogs, but never takes a child of the frame away.
bool key(Session& s, std::string_view screen, std::string_view key);

BarPlace bar_place(const Session& s, std::string_view screen, std::string_view bar);
bool move_bar(Session& s, std::string_view screen, std::string_view bar, int position);

// What the pointer does on a drawing surface of that size.
bool point_at(Session& s, std::string_view screen, std::string_view surface, const Pointer& pointer,
              const Extent& extent);
const Surface* find_surface(const Session& s, std::string_view screen, std::string_view surface);

bool open_screen(Session& s, std::string_view screen);   // fills its fields and shows it
bool close_screen(Session& s, std::string_view screen);  // as its close button or Escape does
void hide_screen(Session& s, std::string_view screen);   // nothing but that

// A text that a screen shows; the user's own typing stands as long as he is at it.
void show_text(Session& s, std::string_view screen, std::string_view name, std::string_view text);

// What the key filter of number fields lets stand: at most 18 characters, digits, one leading "-", one point
// (a comma must have been turned into one), and a number that does not overflow. The empty text may stand.
bool number_text_ok(std::string_view would_be);

}  // namespace tv
