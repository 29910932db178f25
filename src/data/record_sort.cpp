#include <algorithm>
#include <numeric>
#include <utility>

#include "data/record_table.h"
#include "text/number.h"

namespace tv {
namespace {

using Order = std::vector<std::size_t>;  // the row that stands at each place

// What the rows are compared by, made once: numbers, or the bytes that stand in the file.
class Column {
public:
  Column(const RecordTable& table, SortKey key, CodePage page) : ascending_(key.ascending) {
    for (int row = 0; row <= table.last(); ++row) {
      if (key.numeric) {
        numbers_.push_back(table.number(row, key.field));
      } else {
        texts_.push_back(from_utf8(table.cell(row, key.field), page));
      }
    }
  }
  bool wrong_order(std::size_t a, std::size_t b) const {
    if (!ascending_) std::swap(a, b);
    return numbers_.empty() ? texts_[a] > texts_[b] : numbers_[a] > numbers_[b];
  }

private:
  bool ascending_;
  std::vector<double> numbers_;
  std::vector<std::string> texts_;
};

// Shell sort with gap halving; a pass goes only as far as the last swap of the pass before. The gap is at
// least 1, or two rows would never be sorted.
void shell_sort(Order& order, std::size_t first, std::size_t last, const Column& column) {
  if (last <= first) return;
  for (std::size_t gap = std::max<std::size_t>(1, (last - first) / 2); gap > 0; gap /= 2) {
    std::size_t end = last - gap;
    for (bool swapped = true; swapped;) {
      swapped = false;
      std::size_t last_swap = first;
      for (std::size_t i = first; i <= end; ++i) {
        if (!column.wrong_order(order[i], order[i + gap])) continue;
        std::swap(order[i], order[i + gap]);
        last_swap = i;
        swapped = true;
      }
      end = last_swap;
    }
  }
}

// Which rows agree: the same text or number of the first characters of a field.
class RunColumn {
public:
  RunColumn(const RecordTable& table, RunKey key) {
    for (int row = 0; row <= table.last(); ++row) {
      const std::string start = left(table.cell(row, key.field), static_cast<std::size_t>(key.prefix));
      texts_.push_back(key.numeric ? general(read_stored(start).value) : upper(start));
    }
  }
  bool agree(std::size_t a, std::size_t b) const { return texts_[a] == texts_[b]; }

private:
  std::vector<std::string> texts_;
};

void sort_order_runs(const RecordTable& table, Order& order, const std::vector<RunKey>& runs, SortKey key2,
                     CodePage page) {
  const Column column(table, key2, page);
  std::vector<RunColumn> same;
  for (const RunKey& run : runs) same.emplace_back(table, run);
  for (std::size_t first = 0; first < order.size();) {
    std::size_t last = first;
    while (last + 1 < order.size() && std::all_of(same.begin(), same.end(), [&](const RunColumn& run) {
             return run.agree(order[last], order[last + 1]);
           })) {
      ++last;
    }
    shell_sort(order, first, last, column);
    first = last + 1;
  }
}

Order as_stored(const RecordTable& table) {
  Order order(table.rows.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  return order;
}

void rearrange(RecordTable& table, const Order& order) {
  std::vector<Record> rows;
  rows.reserve(order.size());
  for (const std::size_t row : order) rows.push_back(std::move(table.rows[row]));
  table.rows = std::move(rows);
}

}  // namespace

void sort_records(RecordTable& table, SortKey key1, int prefix, SortKey key2, CodePage page) {
  if (table.rows.empty()) return;
  Order order = as_stored(table);
  shell_sort(order, 0, order.size() - 1, Column(table, key1, page));
  sort_order_runs(table, order, {{key1.field, prefix, key1.numeric}}, key2, page);
  rearrange(table, order);
}

void sort_runs(RecordTable& table, const std::vector<RunKey>& runs, SortKey key2, CodePage page) {
  Order order = as_stored(table);
  sort_order_runs(table, order, runs, key2, page);
  rearrange(table, order);
}

void sort_kind(RecordTable& table, RecordKind kind, bool cartridges_by_name, CodePage page) {
  constexpr bool ascending = true, descending = false, text = false, numeric = true;
  switch (kind) {
    case RecordKind::powders:  // by maker, and within one by the mean burn rate
      sort_records(table, {powder_field::name, ascending, text}, 3,
                   {powder_field::mean_burn_rate, descending, text}, page);
      break;
    case RecordKind::bullets:  // by diameter, weight and name
      sort_records(table, {bullet_field::buldin, ascending, numeric}, 6,
                   {bullet_field::Bwg, ascending, numeric}, page);
      sort_runs(table, {{bullet_field::buldin, 6, numeric}, {bullet_field::Bwg, 6, numeric}},
                {bullet_field::name, ascending, text}, page);
      break;
    case RecordKind::cartridges:
      if (cartridges_by_name) {
        sort_records(table, {cartridge_field::name, ascending, numeric}, 6,
                     {cartridge_field::name, ascending, text}, page);
      } else {
        sort_records(table, {cartridge_field::Zkal, ascending, text}, 6,
                     {cartridge_field::name, ascending, text}, page);
      }
      break;
    default:
      break;
  }
}

}  // namespace tv
