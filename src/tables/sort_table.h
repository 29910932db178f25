// The order of the powder table: eleven keys, both directions.
#pragma once

#include <span>
#include <vector>

#include "tables/powder_table.h"

namespace tv {

struct SortKeyEntry {
  const char* name;  // of the menu entry
  int column;
};
std::span<const SortKeyEntry> sort_keys();

// Sorts rows low to high on one column, names by their encoded bytes, numbers by value (empty cells are 0).
// An exchange sort with a shrinking gap, so equal keys need not keep their order.
void SortTable(std::vector<PowderRow>& rows, int low, int high, int column, bool ascending,
               CodePage page = CodePage::cp1252);
void sort_powder_table(PowderTable& table, const SortState& sort);

}  // namespace tv
