#include "session/used_records.h"

#include <algorithm>

namespace tv {
namespace {

constexpr char kBetween = ';';  // no name of a record holds one

struct UsedList {
  std::string_view list;
  std::string Options::*names;
};
constexpr UsedList kLists[] = {
    {"HVolDat", &Options::volused}, {"Bnam", &Options::bulused}, {"PulvDat", &Options::proused}};

std::string Options::*used_names(std::string_view list) {
  const auto* at = std::ranges::find(kLists, list, &UsedList::list);
  return at == std::end(kLists) ? nullptr : at->names;
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

}  // namespace

void note_used(Session& s, std::string_view list, std::string_view name) {
  const auto names = used_names(list);
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

std::vector<int> used_entries(const Session& s, std::string_view list, const std::vector<ListItem>& items) {
  std::vector<int> entries;
  const auto names = used_names(list);
  if (!names || items.size() <= kUsedKept) return entries;
  for (const std::string_view name : split(s.options.*names)) {
    const auto at = std::ranges::find(items, name, &ListItem::text);
    if (at != items.end() && entries.size() < kUsedKept)
      entries.push_back(static_cast<int>(at - items.begin()));
  }
  return entries;
}

}  // namespace tv
