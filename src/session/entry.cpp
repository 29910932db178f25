#include "session/entry.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kMaxText = 18;

const ScreenSpec* spec_of(const Session& s, std::string_view screen) {
  const auto at = s.screens.find(screen);
  return at == s.screens.end() ? nullptr : at->second.spec;
}

Screen& screen_at(Session& s, std::string_view screen) { return s.screens.find(screen)->second; }

bool is_kind(const Session& s, std::string_view screen, std::string_view name,
             std::initializer_list<ControlKind> kinds) {
  const ScreenSpec* spec = spec_of(s, screen);
  const auto kind = spec ? control_kind(*spec, name) : std::nullopt;
  return kind && std::ranges::find(kinds, *kind) != kinds.end();
}

bool typable(const Session& s, std::string_view screen, std::string_view name) {
  return is_kind(s, screen, name,
                 {ControlKind::number, ControlKind::text, ControlKind::combo, ControlKind::memo});
}

bool usable(const Session& s, std::string_view screen, std::string_view name) {
  const Field& f = field(s, screen, name);
  return f.visible && f.enabled;
}

// The action of a control; for one of an array its index is split off: "vividx3".
struct FoundAction {
  const ControlAction* action = nullptr;
  int i = 0;
};
FoundAction find_action(const Session& s, std::string_view screen, std::string_view control) {
  const std::size_t end = control.find_last_not_of("0123456789") + 1;
  for (const ControlAction& action : spec_of(s, screen)->actions) {
    if (control == action.control) return {&action, 0};
    if (end < control.size() && control.substr(0, end) == action.control)
      return {&action, to_int(read_number(control.substr(end)))};
  }
  return {};
}

bool run_action(Session& s, std::string_view screen, std::string_view control,
                std::optional<int> i = std::nullopt) {
  const FoundAction found = find_action(s, screen, control);
  if (!found.action || !found.action->run) return false;
  found.action->run(s, i.value_or(found.i));
  return true;
}

void hide_hint(Session& s, std::string_view screen) {
  screen_at(s, screen).hint.clear();
  screen_at(s, screen).hint_field.clear();
}

// "?" and the empty text are marks of an unknown value, not of a wrong one.
bool holds_number(const Field& f) {
  const auto text = trim(f.text);
  return !text.empty() && text != "?";
}

double typed_number(const Session& s, const NumberPlace& at) {
  return read_number(field(s, at.screen, field_of(at, at.side)).text);
}

bool good_number(const Session& s, const NumberPlace& at) {
  if ((at.number->empty_allowed || at.number->zero_empty) &&
      !holds_number(field(s, at.screen, field_of(at, at.side))))
    return true;
  return in_limits(typed_number(s, at), limits_of(s, at));
}

// While typing only the colour changes.
bool colour_by_range(Session& s, const NumberPlace& at) {
  const bool good = good_number(s, at);
  NumberPlace side = at;
  for (side.side = 0; side.side < at.number->sides.size(); ++side.side) {
    if (!side.own().field) continue;
    const Limits limits = limits_of(s, side);
    Field& f = field(s, at.screen, field_of(side, side.side));
    f.ink = good ? Ink::black : Ink::red;
    f.reason = good ? std::string() : limit_text(limits.least) + " ... " + limit_text(limits.most);
  }
  if (good) hide_hint(s, at.screen);
  return good;
}

// The field is left, or entered again, with a value out of range: that beeps, hints and selects all of it.
void check_range(Session& s, const NumberPlace& at) {
  if (colour_by_range(s, at)) return;
  beep(s);
  const Limits limits = limits_of(s, at);
  Screen& screen = screen_at(s, at.screen);
  screen.hint = "Max:" + limit_text(limits.most) + "\nMin:" + limit_text(limits.least);
  screen.hint_field = field_of(at, at.side);
  s.focus.select_from = 0;
  s.focus.select_length = length(field(s, at.screen, screen.hint_field).text);
}

struct StepKey {
  std::string_view key;
  double steps;
};
constexpr StepKey kSteps[] = {{"Up", 1}, {"Down", -1}, {"Ctrl+Up", 10}, {"Ctrl+Down", -10}};

// What is told when a field gets the focus, and put back by Escape.
void hold(Session& s, const NumberPlace& at) {
  hold_state(s, s.focus.screen);
  s.held.texts.clear();
  s.held.texts[s.focus.field] = field(s, s.focus.screen, s.focus.field).text;
  if (!at.number) return;
  s.held.value = at.value(s);
  for (std::size_t k = 0; k < at.number->sides.size(); ++k)
    if (at.number->sides[k].field) s.held.texts[field_of(at, k)] = field(s, at.screen, field_of(at, k)).text;
}

void put_back(Session& s, const NumberPlace& at) {
  put_back_state(s, at.screen, at.number);
  at.value(s) = s.held.value;
  for (const auto& [name, text] : s.held.texts) field(s, at.screen, name).text = text;
  s.valid = s.held.marks;
  outputs_changed(s);
}

void number_edited(Session& s, const NumberPlace& at) {
  colour_by_range(s, at);
  const double stored = at.own().unit->stored(typed_number(s, at), s);
  if (!std::isfinite(stored)) return;
  write_partners(s, at, stored);
  apply_number(s, at, stored);
}

void own_format(Session& s, const NumberPlace& at) {
  Field& f = field(s, at.screen, field_of(at, at.side));
  const Unit& unit = *at.own().unit;
  const char* pattern = unit.pattern ? unit.pattern(s) : at.own().on_leave;
  if (pattern && holds_number(f)) f.text = shown_as(unit, read_number(f.text), pattern);
  if ((at.number->zero_unknown || at.number->zero_empty) && !(at.value(s) > 0) && !(at.value(s) < 0))
    write_number(s, at.value(s));
}

std::size_t next_character(std::string_view text, std::size_t i) {
  do ++i;
  while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80);
  return i;
}

}  // namespace

void end_action(Session& s) {
  if (s.options.autocalc && s.autocalc_due && !s.valid.results) {
    ++s.action_depth;  // what it does is no action of its own
    calculate_quietly(s);
    --s.action_depth;
  }
  s.autocalc_due = false;
  tell_failed_writes(s);
  refresh_screens(s);
}

bool number_text_ok(std::string_view text) {
  if (text.size() > kMaxText) return false;
  std::size_t points = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '.')
      ++points;
    else if (c == '-' ? i != 0 : c < '0' || c > '9')
      return false;
  }
  return points <= 1 && !read_number_checked(text).overflow;
}

bool focus_field(Session& s, std::string_view screen, std::string_view name) {
  const ScreenSpec* spec = spec_of(s, screen);
  if (!spec || !control_kind(*spec, name) || !usable(s, screen, name)) return false;
  const Action action(s);
  if (!has_focus(s, screen, name)) leave_focus(s);
  const Field& f = field(s, screen, name);
  s.focus = {std::string(screen), std::string(name), 0, length(f.text), false};
  const NumberPlace at = find_number(s, spec->name, name);
  hold(s, at);
  if (!at.number || at.number->read_only || !holds_number(f)) return true;
  if (f.ink == Ink::red)
    check_range(s, at);
  else
    colour_by_range(s, at);
  return true;
}

bool edit_field(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  if (!typable(s, screen, name) || !usable(s, screen, name)) return false;
  const Action action(s);
  if (!has_focus(s, screen, name)) focus_field(s, screen, name);
  const NumberPlace at = find_number(s, spec_of(s, screen)->name, name);
  if (at.number && at.number->read_only) return false;
  Field& f = field(s, screen, name);
  f.text = at.number ? std::string(text) : drop_foreign(text, s.language.page());
  s.focus.edited = true;
  if (at.number) {
    number_edited(s, at);
  } else if (const FoundAction found = find_action(s, screen, name); found.action && found.action->edited) {
    found.action->edited(s, found.i);
  }
  return true;
}

bool leave_field(Session& s, std::string_view screen, std::string_view name) {
  if (!has_focus(s, screen, name)) return false;
  const Action action(s);
  const NumberPlace at = find_number(s, spec_of(s, screen)->name, name);
  hide_hint(s, screen);
  if (at.number && s.focus.edited) {
    if (holds_number(field(s, screen, name))) check_range(s, at);
    s.autocalc_due = s.autocalc_due || good_number(s, at);
    own_format(s, at);
    if (at.number->left) at.number->left(s, at.i);
  }
  s.focus = {};
  return true;
}

// The value that stands in the field is accepted, and the new one too: Escape takes neither back.
bool step_field(Session& s, std::string_view screen, double steps) {
  if (s.focus.screen != screen || s.focus.field.empty()) return false;
  const NumberPlace at = find_number(s, spec_of(s, screen)->name, s.focus.field);
  if (!at.number || !at.number->step || at.number->read_only || !usable(s, screen, s.focus.field))
    return false;
  const Action action(s);
  const Unit& unit = *at.own().unit;
  const double shown = unit.shown(at.value(s), s) + steps * at.number->step(s, at.own());
  const double rounded = std::round(shown * 1e9) / 1e9;  // a hundred steps of 0.1 are 10
  if (!in_limits(rounded, limits_of(s, at))) {
    beep(s);
    return true;
  }
  hold(s, at);
  apply_number(s, at, unit.stored(rounded, s));
  write_number(s, at.value(s));
  hide_hint(s, screen);
  if (at.number->stepped) at.number->stepped(s);
  s.focus = {std::string(screen), s.focus.field, 0, length(field(s, screen, s.focus.field).text), false};
  hold(s, at);
  return true;
}

void leave_focus(Session& s) {
  if (s.focus.field.empty()) return;
  const Focus focus = s.focus;
  leave_field(s, focus.screen, focus.field);
}

bool restore_field(Session& s) {
  if (s.focus.field.empty() || !s.focus.edited) return false;
  const NumberPlace at = find_number(s, spec_of(s, s.focus.screen)->name, s.focus.field);
  if (!at.number) return false;
  const Action action(s);
  put_back(s, at);
  hide_hint(s, at.screen);
  if (holds_number(field(s, s.focus.screen, s.focus.field))) colour_by_range(s, at);
  s.focus.edited = false;
  return true;
}

bool type_text(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  if (!typable(s, screen, name)) return false;
  const Action action(s);
  if (!focus_field(s, screen, name)) return false;
  const bool number = find_number(s, screen, name).number != nullptr;
  std::string typed;
  if (number) edit_field(s, screen, name, "");  // everything was selected: the first key replaces it
  for (std::size_t i = 0, next = 0; i < text.size(); i = next) {
    next = next_character(text, i);
    std::string would_be = typed + std::string(text.substr(i, next - i));
    if (number) {
      if (would_be.back() == ',') would_be.back() = '.';
      if (!number_text_ok(would_be)) continue;
    }
    typed = would_be;
    edit_field(s, screen, name, typed);
  }
  if (text.empty()) edit_field(s, screen, name, "");
  // The field may have lost the focus to a question on the way.
  if (has_focus(s, screen, name)) leave_field(s, screen, name);
  return true;
}

bool press(Session& s, std::string_view screen, std::string_view button) {
  if (!is_kind(s, screen, button, {ControlKind::button}) || !usable(s, screen, button)) return false;
  const Action action(s);
  leave_focus(s);
  run_action(s, screen, button);
  return true;
}

bool double_click(Session& s, std::string_view screen, std::string_view name) {
  if (!is_kind(s, screen, name, {ControlKind::number}) || !usable(s, screen, name)) return false;
  const FoundAction found = find_action(s, screen, name);
  if (!found.action || !found.action->run) return false;
  const Action action(s);
  leave_focus(s);
  found.action->run(s, found.i);
  return true;
}

bool pick(Session& s, std::string_view screen, std::string_view list, int index) {
  if (!is_kind(s, screen, list, {ControlKind::list, ControlKind::combo}) || !usable(s, screen, list))
    return false;
  Field& f = field(s, screen, list);
  if (index < 0 || index >= static_cast<int>(f.items.size())) return false;
  const Action action(s);
  leave_focus(s);
  f.selected = index;
  f.text = f.items[static_cast<std::size_t>(index)].text;
  s.autocalc_due = true;
  for (const Control& control : controls_of(*spec_of(s, screen)))
    if (control.name == list && control.place->list == ListOf::load_records)
      note_used(s, control.place->records, f.text);
  return run_action(s, screen, list, index);
}

bool can_mark(const Session& s, std::string_view screen, std::string_view name) {
  if (!is_kind(s, screen, name, {ControlKind::number}) || !usable(s, screen, name)) return false;
  const FoundAction found = find_action(s, screen, name);
  return found.action && found.action->marked;
}

bool toggle(Session& s, std::string_view screen, std::string_view box) {
  if (can_mark(s, screen, box)) {
    const Action action(s);
    const FoundAction found = find_action(s, screen, box);
    found.action->marked(s, found.i);
    if (s.focus.screen == screen) hold_state(s, screen);  // typing on does not take it back
    return true;
  }
  if (!is_kind(s, screen, box, {ControlKind::check}) || !usable(s, screen, box)) return false;
  const Action action(s);
  leave_focus(s);
  Field& f = field(s, screen, box);
  f.checked = !f.checked;
  s.autocalc_due = true;
  run_action(s, screen, box);
  return true;
}

bool choose(Session& s, std::string_view screen, std::string_view group, int n) {
  const std::string name = std::string(group) + std::to_string(n);
  if (!is_kind(s, screen, name, {ControlKind::option}) || !usable(s, screen, name)) return false;
  const Action action(s);
  leave_focus(s);
  for (const Control& control : controls_of(*spec_of(s, screen)))
    if (control.kind == ControlKind::option && control.name.starts_with(group))
      field(s, screen, control.name).checked = control.name == name;
  run_action(s, screen, group, n);
  return true;
}

bool key(Session& s, std::string_view screen, std::string_view name) {
  const Action action(s);
  const ScreenSpec* spec = spec_of(s, screen);
  if (spec && spec->key && spec->key(s, name)) return true;
  for (const auto& [pressed, steps] : kSteps)
    if (name == pressed && step_field(s, screen, steps)) return true;
  if (name == "Escape") {
    if (s.focus.screen == screen && restore_field(s)) return true;
    return spec && spec->shape != ScreenShape::child && close_screen(s, screen);
  }
  return s.program.shortcut && s.program.shortcut(s, name);
}

BarPlace bar_place(const Session& s, std::string_view screen, std::string_view bar) {
  for (const Bar& b : spec_of(s, screen)->bars)
    if (bar == b.control) return b.place(s);
  return {};
}

bool move_bar(Session& s, std::string_view screen, std::string_view bar, int position) {
  if (!spec_of(s, screen) || !is_kind(s, screen, bar, {ControlKind::bar}) || !usable(s, screen, bar))
    return false;
  const Action action(s);
  leave_focus(s);
  const BarPlace place = bar_place(s, screen, bar);
  for (const Bar& b : spec_of(s, screen)->bars)
    if (bar == b.control) b.moved(s, std::clamp(position, place.least, place.most));
  return true;
}

const Surface* find_surface(const Session& s, std::string_view screen, std::string_view surface) {
  const ScreenSpec* spec = spec_of(s, screen);
  if (!spec) return nullptr;
  const auto at = std::ranges::find(spec->surfaces, surface, &Surface::control);
  return at == spec->surfaces.end() ? nullptr : &*at;
}

bool point_at(Session& s, std::string_view screen, std::string_view name, const Pointer& pointer,
              const Extent& extent) {
  const Surface* surface = find_surface(s, screen, name);
  if (!surface || !surface->pointer) return false;
  const Action action(s);
  surface->pointer(s, pointer, extent);
  return true;
}

bool open_screen(Session& s, std::string_view screen) {
  const ScreenSpec* spec = spec_of(s, screen);
  if (!spec) return false;
  const Action action(s);
  if (spec->open) spec->open(s);
  if (spec->shape != ScreenShape::child) write_numbers(s, *spec);
  screen_at(s, screen).visible = true;
  if (spec->shape == ScreenShape::dialog) {
    refresh_screens(s);
    const int depth = std::exchange(s.action_depth, 0);  // what is done in it ends before it does
    s.user->run_dialog(screen);
    s.action_depth = depth;
  } else {
    s.user->bring_to_front(screen);
  }
  return true;
}

bool close_screen(Session& s, std::string_view screen) {
  const ScreenSpec* spec = spec_of(s, screen);
  if (!spec) return false;
  const Action action(s);
  if (s.focus.screen == screen) leave_focus(s);
  if (spec->close)
    spec->close(s);
  else
    hide_screen(s, screen);
  return true;
}

void hide_screen(Session& s, std::string_view screen) {
  screen_at(s, screen).visible = false;
  s.user->hide(screen);
}

void show_text(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  if (!(has_focus(s, screen, name) && s.focus.edited)) field(s, screen, name).text = text;
}

}  // namespace tv
