#include "screens/entry.h"

#include <cmath>

#include "geometry/dimensions.h"
#include "screens/commands.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kMaxText = 18;

bool is_kind(std::string_view screen, std::string_view name, std::initializer_list<ControlKind> kinds) {
  const Control* control = control_info(screen, name);
  if (!control) return false;
  for (const ControlKind kind : kinds)
    if (control->kind == kind) return true;
  return false;
}

bool usable(const Session& s, std::string_view screen, std::string_view name) {
  const Field& f = field(s, screen, name);
  return f.visible && f.enabled;
}

bool run_action(Session& s, std::string_view screen, std::string_view control) {
  for (const auto table : {main_actions(), small_actions()})
    for (const ControlAction& row : table)
      if (screen == row.screen && control == row.control) {
        row.action(s);
        return true;
      }
  return false;
}

const ScreenBehaviour* behaviour(std::string_view screen) {
  for (const ScreenBehaviour& b : screen_behaviours())
    if (screen == b.screen) return &b;
  return nullptr;
}

Screen& screen_of(Session& s, std::string_view screen) { return s.screens.find(screen)->second; }

void hide_hint(Session& s, std::string_view screen) {
  screen_of(s, screen).hint.clear();
  screen_of(s, screen).hint_field.clear();
}

void show_limits(Session& s, std::string_view screen, std::string_view name) {
  screen_of(s, screen).hint = "Max:" + general(static_cast<double>(s.field_max)) +
                              "\nMin:" + general(static_cast<double>(s.field_min));
  screen_of(s, screen).hint_field = name;
}

bool in_range(const Session& s, double value) {
  const auto single =
      static_cast<float>(value);  // as the limits are held, else 609.6 would be out of its range
  return !(single < s.field_min || single > s.field_max);
}

// While typing only the colour changes.
void colour_by_range(Session& s, std::string_view screen, const PairSide& side) {
  const bool good = in_range(s, field_number(s, screen, side.own().field));
  for (const NumberSide* number : {&side.own(), &side.partner()}) {
    if (!number->field) continue;
    Field& f = field(s, screen, number->field);
    f.ink = good ? Ink::black : Ink::red;
    f.reason = good ? std::string()
                    : general(static_cast<double>(s.field_min)) + " ... " +
                          general(static_cast<double>(s.field_max));
  }
  if (good) {
    s.field_rejected = false;
    hide_hint(s, screen);
  }
}

// The field is left or entered with what it holds: a value out of range beeps, hints and is selected.
void check_range(Session& s, std::string_view screen, const PairSide& side) {
  colour_by_range(s, screen, side);
  if (in_range(s, field_number(s, screen, side.own().field))) return;
  s.field_rejected = true;
  beep(s);
  show_limits(s, screen, side.own().field);
  s.focus.select_from = 0;
  s.focus.select_length = length(field(s, screen, side.own().field).text);
}

void take_limits(Session& s, const PairSide& side) {
  const Limits limits = field_limits(s, side);
  s.field_min = static_cast<float>(limits.min);
  s.field_max = static_cast<float>(limits.max);
}

bool has_focus(const Session& s, std::string_view screen, std::string_view name) {
  return s.focus.screen == screen && s.focus.field == name;
}

// "?" and the empty text are marks of an unknown value, not of a wrong one.
bool holds_number(const Field& f) {
  const auto text = trim(f.text);
  return !text.empty() && text != "?";
}

void number_edited(Session& s, std::string_view screen, const PairSide& side) {
  colour_by_range(s, screen, side);
  const double stored = stored_value(side.own().unit, field_number(s, screen, side.own().field), s);
  if (!std::isfinite(stored)) return;
  if (const NumberSide& partner = side.partner(); partner.field)
    set_text(s, screen, partner.field,
             format_number(shown_value(partner.unit, stored, s), partner.as_partner));
  number_changed(s, side, stored);
}

void own_format(Session& s, std::string_view screen, const PairSide& side) {
  Field& f = field(s, screen, side.own().field);
  const char* pattern = side.own().on_leave;
  if (side.own().unit == Unit::mode_of_Pa) pattern = s.unit_mode == UnitMode::imperial ? "0" : "0.0";
  if (pattern && holds_number(f)) f.text = format_number(read_number(f.text), pattern);
}

}  // namespace

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

std::string drop_foreign(const Session& s, std::string_view text) {
  std::string kept;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t next = i + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80) ++next;
    const std::string_view one = text.substr(i, next - i);
    if (to_utf8(from_utf8(one, s.language.page()), s.language.page()) == one) kept += one;
    i = next;
  }
  return kept;
}

bool focus_field(Session& s, std::string_view screen, std::string_view name) {
  if (!control_info(screen, name) || !usable(s, screen, name)) return false;
  if (!s.focus.field.empty() && !has_focus(s, screen, name)) leave_field(s, s.focus.screen, s.focus.field);
  const Field& f = field(s, screen, name);
  s.focus = {std::string(screen), std::string(name), 0, length(f.text), f.text, false};
  s.held = s.state;
  const PairSide side = find_pair(screen, name);
  if (!side.pair || side.pair->read_only) return true;
  take_limits(s, side);
  if (holds_number(f)) check_range(s, screen, side);
  return true;
}

bool edit_field(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  if (!is_kind(screen, name, {ControlKind::number, ControlKind::text, ControlKind::combo, ControlKind::memo}))
    return false;
  if (!usable(s, screen, name)) return false;
  if (!has_focus(s, screen, name)) focus_field(s, screen, name);
  const PairSide side = find_pair(screen, name);
  if (side.pair && side.pair->read_only) return false;
  Field& f = field(s, screen, name);
  f.text = side.pair ? std::string(text) : drop_foreign(s, text);
  s.focus.edited = true;
  if (side.pair)
    number_edited(s, screen, side);
  else
    run_action(s, screen, name);
  return true;
}

bool leave_field(Session& s, std::string_view screen, std::string_view name) {
  if (!has_focus(s, screen, name)) return false;
  const bool edited = s.focus.edited;
  const PairSide side = find_pair(screen, name);
  hide_hint(s, screen);
  if (side.pair && edited) {
    if (holds_number(field(s, screen, name))) check_range(s, screen, side);
    own_format(s, screen, side);
    number_left(s, side);
  }
  s.focus = {};
  return true;
}

bool restore_field(Session& s) {
  const PairSide side = find_pair(s.focus.screen, s.focus.field);
  if (!side.pair || !s.focus.edited) return false;
  s.state = s.held;
  refresh_dimension_fields(s, side);
  if (side.pair->value) write_pair(s, side.pair->screen, side.pair->metric.field);
  set_text(s, s.focus.screen, s.focus.field, s.focus.text_on_focus);
  recompute_dimensions(s, kNothingMoved);
  hide_hint(s, s.focus.screen);
  s.focus.edited = false;
  return true;
}

bool type_text(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  if (!is_kind(screen, name, {ControlKind::number, ControlKind::text, ControlKind::combo, ControlKind::memo}))
    return false;
  if (!focus_field(s, screen, name)) return false;
  const bool number = find_pair(screen, name).pair != nullptr;
  std::string typed;
  if (number) edit_field(s, screen, name, "");  // everything was selected: the first key replaces it
  for (std::size_t i = 0; i < text.size();) {
    std::size_t next = i + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0) == 0x80) ++next;
    std::string would_be = typed + std::string(text.substr(i, next - i));
    i = next;
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
  if (!is_kind(screen, button, {ControlKind::button}) || !usable(s, screen, button)) return false;
  if (!s.focus.field.empty()) leave_field(s, s.focus.screen, s.focus.field);
  run_action(s, screen, button);
  return true;
}

bool pick(Session& s, std::string_view screen, std::string_view list, int index) {
  if (!is_kind(screen, list, {ControlKind::list, ControlKind::combo}) || !usable(s, screen, list))
    return false;
  Field& f = field(s, screen, list);
  if (index < 0 || index >= static_cast<int>(f.items.size())) return false;
  if (!s.focus.field.empty()) leave_field(s, s.focus.screen, s.focus.field);
  f.selected = index;
  f.text = f.items[static_cast<std::size_t>(index)].text;
  return run_action(s, screen, std::string(list) + "#");
}

bool toggle(Session& s, std::string_view screen, std::string_view box) {
  if (!is_kind(screen, box, {ControlKind::check}) || !usable(s, screen, box)) return false;
  Field& f = field(s, screen, box);
  f.checked = !f.checked;
  run_action(s, screen, box);
  return true;
}

bool choose(Session& s, std::string_view screen, std::string_view group, int n) {
  const std::string name = std::string(group) + std::to_string(n);
  if (!is_kind(screen, name, {ControlKind::option}) || !usable(s, screen, name)) return false;
  for (const Control& control : screen_info(screen)->controls) {
    const std::string_view other = control.name;
    if (control.kind == ControlKind::option && other.starts_with(group))
      field(s, screen, other).checked = other == name;
  }
  run_action(s, screen, group);
  return true;
}

bool key(Session& s, std::string_view screen, std::string_view name) {
  const ScreenBehaviour* b = behaviour(screen);
  if (b && b->key && b->key(s, name)) return true;
  if (name == "Escape") return restore_field(s) || close_screen(s, screen);
  for (const Command& command : commands())
    if (command.shortcut && name == command.shortcut) return run_command(s, command.name);
  return false;
}

bool open_screen(Session& s, std::string_view screen) {
  const ScreenInfo* info = screen_info(screen);
  if (!info) return false;
  const ScreenBehaviour* b = behaviour(screen);
  if (b && b->open) b->open(s);
  screen_of(s, screen).visible = true;
  if (info->shape == ScreenShape::dialog)
    s.user->run_dialog(screen);
  else
    s.user->bring_to_front(screen);
  return true;
}

bool close_screen(Session& s, std::string_view screen) {
  if (!screen_info(screen)) return false;
  if (s.focus.screen == screen) leave_field(s, s.focus.screen, s.focus.field);
  const ScreenBehaviour* b = behaviour(screen);
  if (b && b->close) {
    b->close(s);
    return true;
  }
  screen_of(s, screen).visible = false;
  s.user->hide(screen);
  return true;
}

}  // namespace tv
