#include "session/message.h"

#include "session/numbers.h"

namespace tv {

MessageText& MessageText::msg(int n) {
  message_.text += s_.language.msg(n);
  message_.keys.push_back("msg" + std::to_string(n));
  return *this;
}

MessageText& MessageText::fast(std::string_view key) {
  message_.text += s_.language.fastmsg(key);
  message_.keys.emplace_back(key);
  return *this;
}

MessageText& MessageText::caption(std::string_view section, std::string_view key) {
  message_.text += s_.language.text(section, key);
  message_.keys.emplace_back(key);
  return *this;
}

MessageText& MessageText::add(std::string_view text) {
  message_.text += text;
  return *this;
}

MessageText& MessageText::line() {
  message_.text += '\n';
  return *this;
}

void beep(Session& s) {
  if (s.sound) s.user->beep();
}

void warn(Session& s, const Message& message, bool with_beep, std::string title) {
  if (s.silent) {
    s.refusal = Finding{message, {}};
    return;
  }
  if (with_beep) beep(s);
  s.user->box({BoxKind::warning, Buttons::ok, title.empty() ? kProgramName : std::move(title), message});
}

bool ask_yes_no(Session& s, const Message& message) {
  return s.user->box({BoxKind::question, Buttons::yes_no, kProgramName, message}) == Answer::yes;
}

bool ask_ok_cancel(Session& s, const Message& message) {
  return s.user->box({BoxKind::question, Buttons::ok_cancel, kProgramName, message}) == Answer::ok;
}

void bring_to_front(Session& s, Role role) {
  if (s.silent) return;
  if (const auto name = screen_name(s, role); !name.empty()) s.user->bring_to_front(name);
}

void hide_screen(Session& s, Role role) {
  Screen* screen = screen_of(s, role);
  if (!screen) return;
  screen->visible = false;
  s.user->hide(screen->spec->name);
}

namespace {

// The row of a form that holds the control.
const Row* row_of(const ScreenSpec& spec, std::string_view control) {
  for (const auto groups : {spec.form, spec.apart})
    for (const Group& group : groups)
      for (const Row& row : group.rows)
        for (const Place& place : row.places)
          if (place.control && control == place.control) return &row;
  return nullptr;
}

const ScreenSpec& spec_of(const Session& s, const FieldPlace& at) {
  return *s.screens.find(at.screen)->second.spec;
}

std::string unit_caption(const Session& s, const FieldPlace& at, const NumberPlace& number) {
  const char* unit = number.own().unit->caption;
  for (const Control& control : controls_of(spec_of(s, at)))
    if (control.name == at.field && control.place && control.place->unit) unit = control.place->unit;
  if (!unit) return {};
  if (unit[0] == '@') return field(s, at.screen, unit + 1).text;
  if (unit[0] == '*') return unit[1] == '*' ? mode_pressure_unit(s) : chosen_pressure_unit(s);
  return unit[0] == '%' ? std::string() : s.language.text("units", unit);
}

// A user is sent there; in silence only the place is kept.
void lead_to(Session& s, const FieldPlace& at) {
  if (at.screen.empty()) return;
  if (s.silent) {
    if (s.refusal) s.refusal->at = at;
    return;
  }
  s.user->bring_to_front(at.screen);
  s.user->focus(at.screen, at.field);
}

}  // namespace

FieldPlace place_of(const Session& s, const double& value, std::size_t side) {
  const NumberPlace at = find_number(const_cast<Session&>(s), value);
  if (!at.number) return {};
  return {std::string(at.screen), field_of(at, at.number->sides[side].field ? side : 0)};
}

FieldPlace place_of_list(const Session& s, RecordKind kind) {
  for (const ScreenSpec* spec : s.program.screens)
    for (const Control& control : controls_of(*spec))
      if (control.place && control.place->list == ListOf::load_records && control.place->records == kind)
        return {spec->name, control.name};
  return {};
}

std::string field_caption(const Session& s, const FieldPlace& at) {
  if (at.screen.empty()) return {};
  const ScreenSpec& spec = spec_of(s, at);
  const Row* row = row_of(spec, at.field);
  std::string text;
  if (row && row->label && row->label[0] != '@') text = s.language.text(spec.section, row->label);
  if (text.empty()) text = s.language.text(spec.section, at.field);
  std::erase(text, '&');
  while (text.ends_with(':') || text.ends_with(' ')) text.pop_back();
  return text;
}

std::string field_range(const Session& s, const FieldPlace& at) {
  const NumberPlace number = find_number(s, at.screen, at.field);
  if (!number.number) return {};
  const Limits limits = limits_of(s, number);
  const std::string unit = unit_caption(s, at, number);
  return limit_text(limits.least) + " ... " + limit_text(limits.most) + (unit.empty() ? "" : " " + unit);
}

void focus_number(Session& s, const double& value, std::size_t side) { lead_to(s, place_of(s, value, side)); }
void focus_list(Session& s, RecordKind kind) { lead_to(s, place_of_list(s, kind)); }

}  // namespace tv
