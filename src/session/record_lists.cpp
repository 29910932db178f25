#include "session/record_lists.h"

#include <algorithm>
#include <numeric>

#include "text/number.h"

namespace tv {
namespace {

constexpr char kBetween = ';';  // no name of a record holds one

struct UsedNames {
  RecordKind kind;
  std::string Options::*names;
};
constexpr UsedNames kUsed[] = {{RecordKind::cartridges, &Options::volused},
                               {RecordKind::bullets, &Options::bulused},
                               {RecordKind::powders, &Options::proused}};

std::string Options::*used_names(RecordKind kind) {
  const auto* at = std::ranges::find(kUsed, kind, &UsedNames::kind);
  return at == std::end(kUsed) ? nullptr : at->names;
}

std::vector<std::string_view> split(std::string_view names) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < names.size();) {
    const std::size_t end = std::min(names.find(kBetween, at), names.size());
    if (end > at) parts.push_back(names.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

// Calls visit(list, of the load) for every list of the kind.
template <class Visit>
void each_list(Session& s, RecordKind kind, Visit visit) {
  for (const ScreenSpec* spec : s.program.screens)
    for (const Control& control : controls_of(*spec))
      if (control.place && control.place->list != ListOf::texts && control.place->records == kind)
        visit(field(s, spec->name, control.name), control.place->list == ListOf::load_records);
}

void select_in(Field& list, int row) {
  const auto at = std::ranges::find(list.items, row, &ListItem::row);
  list.selected = row < 0 || at == list.items.end() ? -1 : static_cast<int>(at - list.items.begin());
}

std::string_view name_of_load(const Session& s, RecordKind kind) {
  return kind == RecordKind::cartridges ? s.load.pattyp
         : kind == RecordKind::bullets  ? s.load.bultyp
                                        : s.load.pulver;
}

}  // namespace

std::vector<int> rows_on_show(const Session& s, RecordKind kind) {
  const DataSet& set = s.set(kind);
  if (set.filter) return *set.filter;
  std::vector<int> rows(set.file.table.rows.size());
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

void fill_lists(Session& s, RecordKind kind) {
  const RecordTable& table = s.set(kind).file.table;
  std::vector<ListItem> items;
  for (const int row : rows_on_show(s, kind)) items.push_back({std::string(trim(table.cell(row, 0))), row});
  each_list(s, kind, [&](Field& list, bool of_load) {
    list.items = items;
    list.top = 0;
    select_in(list, of_load ? table.find(name_of_load(s, kind)) : table.find(list.text));
  });
}

void select_row(Session& s, RecordKind kind, int row) {
  each_list(s, kind, [&](Field& list, bool of_load) {
    if (of_load) select_in(list, row);
  });
}

void select_by_name(Session& s, RecordKind kind, std::string_view name) {
  select_row(s, kind, s.set(kind).file.table.find(trim(name)));
}

void show_row(Session& s, RecordKind kind, int row) {
  each_list(s, kind, [&](Field& list, bool) {
    const auto at = std::ranges::find(list.items, row, &ListItem::row);
    if (at != list.items.end()) list.top = static_cast<int>(at - list.items.begin());
  });
}

int picked_row(const Field& list) {
  return list.selected < 0 ? -1 : list.items[static_cast<std::size_t>(list.selected)].row;
}

void note_used(Session& s, RecordKind kind, std::string_view name) {
  const auto names = used_names(kind);
  if (!names || name.empty() || name.find(kBetween) != std::string_view::npos) return;
  std::string kept(name);
  std::size_t count = 1;
  for (const std::string_view before : split(s.options.*names)) {
    if (before == name || count == kUsedKept) continue;
    kept += kBetween;
    kept += before;
    ++count;
  }
  s.options.*names = std::move(kept);
}

std::vector<int> used_entries(const Session& s, RecordKind kind, const std::vector<ListItem>& items) {
  std::vector<int> entries;
  const auto names = used_names(kind);
  if (!names || items.size() <= kUsedKept) return entries;
  for (const std::string_view name : split(s.options.*names)) {
    const auto at = std::ranges::find(items, name, &ListItem::text);
    if (at != items.end() && entries.size() < kUsedKept)
      entries.push_back(static_cast<int>(at - items.begin()));
  }
  return entries;
}

}  // namespace tv
