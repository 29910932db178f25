#include "tables/sort_table.h"

#include <algorithm>
#include <utility>

namespace tv {
namespace {

constexpr SortKeyEntry kKeys[] = {
    {"ppname", 0}, {"velocity", 1}, {"chrgwht", 2},   {"ppress", 3},    {"pburntsort", 4}, {"ldratio", 5},
    {"bartim", 6}, {"burnrat", 9},  {"hvolsort", 10}, {"blensort", 11}, {"pmuzzsort", 12},
};

// Rounded to the nearest integer, halves to even: 3 gives 2, 1 gives 0.
int half(int n) { return n / 2 + (n % 4 == 3 ? 1 : 0); }

int compare(const PowderRow& a, const PowderRow& b, int column, CodePage page) {
  if (column == 0) return compare_bytes(a.name, b.name, page);
  const double x = a.cell(column), y = b.cell(column);
  return x < y ? -1 : x > y ? 1 : 0;
}

}  // namespace

std::span<const SortKeyEntry> sort_keys() { return kKeys; }

void SortTable(std::vector<PowderRow>& rows, int low, int high, int column, bool ascending, CodePage page) {
  if (high < 1) return;
  const auto row = [&rows](int i) -> PowderRow& { return rows[static_cast<std::size_t>(i)]; };
  for (int gap = std::max(half(high), 1); gap != 0; gap = half(gap)) {
    int last = high - gap;
    int swapped_at;
    do {
      swapped_at = 0;
      for (int j = low + 1; j <= last + 1; ++j) {
        const int order = compare(row(j - 1), row(j - 1 + gap), column, page);
        if (ascending ? order > 0 : order < 0) {
          std::swap(row(j - 1), row(j - 1 + gap));
          swapped_at = j;
        }
      }
      last = swapped_at - gap;
    } while (swapped_at != 0);
  }
}

void sort_powder_table(PowderTable& table, const SortState& sort) {
  SortTable(table.rows, 0, table.row_index(), sort.column, sort.ascending, sort.page);
}

}  // namespace tv
