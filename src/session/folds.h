// Groups of a form that fold: those with a summary. What a person has opened is an option and stands at the
// next start too. A group that holds a value to be looked at (red or marked, missing, unknown) opens by itself
// and cannot be folded; without such a value it folds again, unless the person is in it.
#pragma once

#include <string_view>

#include "session/session.h"

namespace tv {

bool fold_open(const Session& s, std::string_view screen, const Group& group);
// A value of the group is to be looked at.
bool fold_held_open(const Session& s, std::string_view screen, const Group& group);
bool toggle_fold(Session& s, std::string_view screen, const Group& group);  // false: it is held open
// A field is to be seen, because the focus goes there now. False: it is not folded.
bool open_fold_of(Session& s, std::string_view screen, std::string_view field);
void refresh_folds(Session& s);

}  // namespace tv
