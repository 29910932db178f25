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
  if (s.silent) return;
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
  if (const auto name = screen_name(s, role); !name.empty()) s.user->bring_to_front(name);
}

void hide_screen(Session& s, Role role) {
  Screen* screen = screen_of(s, role);
  if (!screen) return;
  screen->visible = false;
  s.user->hide(screen->spec->name);
}

void focus_number(Session& s, const double& value, std::size_t side) {
  const NumberPlace at = find_number(s, value);
  if (!at.number) return;
  s.user->bring_to_front(at.screen);
  s.user->focus(at.screen, field_of(at, at.number->sides[side].field ? side : 0));
}

void focus_list(Session& s, RecordKind kind) {
  for (const ScreenSpec* spec : s.program.screens)
    for (const Control& control : controls_of(*spec))
      if (control.place && control.place->list == ListOf::load_records && control.place->records == kind) {
        s.user->bring_to_front(spec->name);
        return s.user->focus(spec->name, control.name);
      }
}

}  // namespace tv
