// The lists of component records on all screens, and the records that a person picked last.
#pragma once

#include <string_view>
#include <vector>

#include "session/session.h"

namespace tv {

// Every list of the kind on every screen, with the rows on show; those of the load select what the load
// holds.
void fill_lists(Session& s, RecordKind kind);
// The row is selected in every list of the load; -1 clears.
void select_row(Session& s, RecordKind kind, int row);
void select_by_name(Session& s, RecordKind kind, std::string_view name);
// The row stands first in every list of the kind, as far as that can scroll.
void show_row(Session& s, RecordKind kind, int row);
// The rows on show: all, or those of a filter.
std::vector<int> rows_on_show(const Session& s, RecordKind kind);
// The row of the record table behind the entry that a list has selected, -1 if none.
int picked_row(const Field& list);

// --- the records picked last: they stand once more above their list, on every screen that has it. That is a
// matter of the view alone; the entries of a list keep their numbers. Kept in the settings, by name, so that
// they outlast a sorted, filtered or changed file.

inline constexpr std::size_t kUsedKept = 6;

void note_used(Session& s, RecordKind kind, std::string_view name);
// What stands above the list: indexes into its items, the last pick first. Names that the list does not hold
// now are passed over; a list no longer than what is kept needs none.
std::vector<int> used_entries(const Session& s, RecordKind kind, const std::vector<ListItem>& items);

}  // namespace tv
