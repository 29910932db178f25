#include "session/folds.h"

#include "session/numbers.h"
#include "session/settings.h"
#include "text/number.h"

namespace tv {
namespace {

std::string key_of(std::string_view screen, const Group& group) {
  return std::string(screen) + '.' + group.title + ';';
}

bool chosen_open(const Session& s, std::string_view screen, const Group& group) {
  return s.options.folds.find(key_of(screen, group)) != std::string::npos;
}

bool opened_itself(const Session& s, std::string_view screen, const Group& group) {
  return s.screens.find(screen)->second.opened.contains(group.title);
}

bool holds(const Group& group, std::string_view control) {
  for (const Row& row : group.rows)
    for (const Place& place : row.places)
      if (place.control && control == place.control) return true;
  return false;
}

bool to_be_looked_at(const Field& f) {
  if (!f.visible || !f.enabled) return false;
  const std::string text(trim(f.text));
  return f.ink == Ink::red || f.ink == Ink::magenta || (f.paper != Paper::white && f.paper != Paper::grey) ||
         text.empty() || text.starts_with('?');
}

void remember(Session& s, std::string_view screen, const Group& group, bool open) {
  const std::string key = key_of(screen, group);
  const std::size_t at = s.options.folds.find(key);
  if (open == (at != std::string::npos)) return;
  if (open)
    s.options.folds += key;
  else
    s.options.folds.erase(at, key.size());
  store_option(s, "folds");
}

template <class Do>
void each_fold(const ScreenSpec& spec, Do act) {
  for (const auto& groups : {spec.apart, spec.form})
    for (const Group& group : groups)
      if (group.summary) act(group);
}

}  // namespace

bool fold_open(const Session& s, std::string_view screen, const Group& group) {
  return chosen_open(s, screen, group) || opened_itself(s, screen, group);
}

bool fold_held_open(const Session& s, std::string_view screen, const Group& group) {
  for (const Row& row : group.rows)
    for (const Place& place : row.places) {
      if (!place.control) continue;
      if (place.kind != ControlKind::number && place.kind != ControlKind::display &&
          place.kind != ControlKind::text)
        continue;
      const NumberPlace number = find_number(s, screen, place.control);
      const Field& f = field(s, screen, place.control);
      if (number.number && number.number->zero_empty && f.text.empty()) continue;  // need not be there
      if (to_be_looked_at(f)) return true;
    }
  return false;
}

bool toggle_fold(Session& s, std::string_view screen, const Group& group) {
  const bool open = fold_open(s, screen, group);
  if (open && fold_held_open(s, screen, group)) return false;
  s.screens.find(screen)->second.opened.erase(group.title);
  remember(s, screen, group, !open);
  return true;
}

bool open_fold_of(Session& s, std::string_view screen, std::string_view name) {
  const auto at = s.screens.find(screen);
  if (at == s.screens.end()) return false;
  bool opened = false;
  each_fold(*at->second.spec, [&](const Group& group) {
    if (!holds(group, name) || fold_open(s, screen, group)) return;
    at->second.opened.insert(group.title);
    opened = true;
  });
  return opened;
}

void refresh_folds(Session& s) {
  for (auto& [name, screen] : s.screens)
    each_fold(*screen.spec, [&, &name = name, &screen = screen](const Group& group) {
      if (chosen_open(s, name, group)) return;
      const bool in_use = s.focus.screen == name && holds(group, s.focus.field);
      if (fold_held_open(s, name, group))
        screen.opened.insert(group.title);
      else if (!in_use)
        screen.opened.erase(group.title);
    });
}

}  // namespace tv
