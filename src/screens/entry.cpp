#include "screens/entry.h"

#include <array>
#include <charconv>
#include <cmath>

#include "geometry/dimensions.h"
#include "screens/commands.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "session/used_records.h"
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

// A limit as a person wrote it: 609.6, which as a double would be 609.5999755859375.
std::string limit_text(float limit) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), limit, std::chars_format::fixed);
  return {text.data(), end.ptr};
}

void show_limits(Session& s, std::string_view screen, std::string_view name) {
  screen_of(s, screen).hint = "Max:" + limit_text(s.field_max) + "\nMin:" + limit_text(s.field_min);
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
    f.reason = good ? std::string() : limit_text(s.field_min) + " ... " + limit_text(s.field_max);
  }
  s.field_rejected = !good;
  if (good) {
    if (side.pair->on_change == OnChange::band_seating) mark_band_seating(s);
    hide_hint(s, screen);
  }
}

// The field is left, or entered again, with a value out of range: that beeps, hints and selects all of it.
void check_range(Session& s, std::string_view screen, const PairSide& side) {
  colour_by_range(s, screen, side);
  if (!s.field_rejected) return;
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

// What is told when a field gets the focus, and put back by Escape.
void hold(Session& s, const PairSide& side) {
  s.held = s.state;
  s.held_marks = {s.load,         field(s, "Form4", "PulvDat").text, field(s, "Form5", "ladich").text,
                  s.resultsValid, s.load_table.table_valid,          s.powder_table.table_valid,
                  s.askCharge,    field(s, "Form3", "Veffm").stale};
  if (!side.pair) return;
  if (side.pair->value) s.focus.value_on_focus = side.pair->value(s);
  if (side.partner().field) s.focus.partner_on_focus = field(s, s.focus.screen, side.partner().field).text;
}

void put_back(Session& s, const PairSide& side) {
  restore_dimensions(s, side);
  s.state = s.held;
  if (side.pair->value) side.pair->value(s) = s.focus.value_on_focus;
  set_text(s, s.focus.screen, s.focus.field, s.focus.text_on_focus);
  if (side.partner().field) set_text(s, s.focus.screen, side.partner().field, s.focus.partner_on_focus);
  refresh_fill(s);
  const HeldMarks& marks = s.held_marks;
  s.load = marks.load;
  set_text(s, "Form4", "PulvDat", marks.powder);
  set_text(s, "Form5", "ladich", marks.ladich);
  mark_volumes_stale(s, marks.volumes_stale);
  s.askCharge = marks.ask_charge;
  setResultsValid(s, marks.results_valid);
  s.load_table.table_valid = marks.load_table_valid;
  s.powder_table.table_valid = marks.powder_table_valid;
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

void leave_focus(Session& s) {
  if (!s.focus.field.empty()) leave_field(s, s.focus.screen, s.focus.field);
}

// The quick start mirrors what has changed on the main screens.
void mirrored(Session& s, std::string_view screen) {
  if (screen == "Form3" || screen == "Form4") refresh_quick_start(s);
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
  if (!has_focus(s, screen, name)) leave_focus(s);
  const Field& f = field(s, screen, name);
  s.focus = {std::string(screen), std::string(name), 0, length(f.text), f.text, false, {}, 0};
  const PairSide side = find_pair(screen, name);
  hold(s, side);
  if (!side.pair || side.pair->read_only) return true;
  take_limits(s, side);
  if (!holds_number(f)) return true;
  if (f.ink == Ink::red)
    check_range(s, screen, side);
  else
    colour_by_range(s, screen, side);
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
  if (edited) mirrored(s, screen);
  return true;
}

bool restore_field(Session& s) {
  const PairSide side = find_pair(s.focus.screen, s.focus.field);
  if (!side.pair || !s.focus.edited) return false;
  put_back(s, side);
  hide_hint(s, s.focus.screen);
  if (holds_number(field(s, s.focus.screen, s.focus.field))) colour_by_range(s, s.focus.screen, side);
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
  leave_focus(s);
  run_action(s, screen, button);
  mirrored(s, screen);
  return true;
}

bool pick(Session& s, std::string_view screen, std::string_view list, int index) {
  if (!is_kind(screen, list, {ControlKind::list, ControlKind::combo}) || !usable(s, screen, list))
    return false;
  Field& f = field(s, screen, list);
  if (index < 0 || index >= static_cast<int>(f.items.size())) return false;
  leave_focus(s);
  f.selected = index;
  f.text = f.items[static_cast<std::size_t>(index)].text;
  note_used(s, list, f.text);
  const bool used = run_action(s, screen, std::string(list) + "#");
  mirrored(s, screen);
  return used;
}

bool toggle(Session& s, std::string_view screen, std::string_view box) {
  if (!is_kind(screen, box, {ControlKind::check}) || !usable(s, screen, box)) return false;
  leave_focus(s);
  Field& f = field(s, screen, box);
  f.checked = !f.checked;
  run_action(s, screen, box);
  mirrored(s, screen);
  return true;
}

bool choose(Session& s, std::string_view screen, std::string_view group, int n) {
  const std::string name = std::string(group) + std::to_string(n);
  if (!is_kind(screen, name, {ControlKind::option}) || !usable(s, screen, name)) return false;
  leave_focus(s);
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
  if (name == "Escape") return (s.focus.screen == screen && restore_field(s)) || close_screen(s, screen);
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
