// What a person can do on a screen, each one function: focus, type, leave, press, pick, toggle, choose. After
// it the view is drawn anew from the record. So every screen works, and is tested, without a window.
#pragma once

#include <string_view>

#include "session/session.h"

namespace tv {

// All give false if there is no such control on the screen, or it cannot be used now.

// The field takes the focus: its limits come into force, its text is checked and selected.
bool focus_field(Session& s, std::string_view screen, std::string_view name);
// The user has edited the text of the field that has the focus; it stands in the record and its partner
// follows.
bool edit_field(Session& s, std::string_view screen, std::string_view name, std::string_view text);
// The field loses the focus: it takes its own format, an out-of-range value beeps and hints.
bool leave_field(Session& s, std::string_view screen, std::string_view name);
// Escape in a number field: the text and the values it had when it got the focus. False: nothing to restore.
bool restore_field(Session& s);
// Focus, select all, the text key by key (as the key filter lets it pass), leave.
bool type_text(Session& s, std::string_view screen, std::string_view name, std::string_view text);

bool press(Session& s, std::string_view screen, std::string_view button);
bool pick(Session& s, std::string_view screen, std::string_view list,
          int index);  // index into the list's items
bool toggle(Session& s, std::string_view screen, std::string_view box);
bool choose(Session& s, std::string_view screen, std::string_view group, int n);  // option n of a group
bool key(Session& s, std::string_view screen, std::string_view key);  // "Shift+Up", "F5", "Escape"

// A scroll bar that stands for a number field: its range, and where it stands by the stored value.
struct BarPlace {
  int least = 0, most = 0, position = 0;
};
BarPlace bar_place(Session& s, std::string_view screen, std::string_view bar);
// The bar was moved; a position beyond its range is brought back. Bars that belong together do not cross:
// one pulls the other along.
bool move_bar(Session& s, std::string_view screen, std::string_view bar, int position);

bool open_screen(Session& s, std::string_view screen);   // fills its fields and shows it
bool close_screen(Session& s, std::string_view screen);  // as its close button or Escape does
// At a user's very first start the quick start stands open on a delivered load, an example to try out.
void open_first_example(Session& s);

// What the key filter of number fields lets stand: at most 18 characters, digits, one leading "-", one point
// (a comma must have been turned into one), and a number that does not overflow. The empty text may stand.
bool number_text_ok(std::string_view would_be);

// A typed character that the code page of the files does not have is dropped at entry.
std::string drop_foreign(const Session& s, std::string_view text);

}  // namespace tv
