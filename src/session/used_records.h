// The records picked last: they stand once more above their list, on every screen that has it. That is a
// matter of the view alone; the entries of a list keep their numbers. Kept in the settings, by name, so that
// they outlast a sorted, filtered or changed file.
#pragma once

#include <string_view>
#include <vector>

#include "session/session.h"

namespace tv {

inline constexpr std::size_t kUsedKept = 6;

// An entry of the list was picked. Nothing for a list that holds no records.
void note_used(Session& s, std::string_view list, std::string_view name);

// What stands above the list: indexes into its items, the last pick first. Names that the list does not hold
// now are passed over; a list no longer than what is kept needs none.
std::vector<int> used_entries(const Session& s, std::string_view list, const std::vector<ListItem>& items);

}  // namespace tv
