#include "session/session.h"

#include <stdexcept>

#include "text/number.h"

namespace tv {

Field& field(Session& s, std::string_view screen, std::string_view name) {
  const auto at = s.screens.find(screen);
  if (at == s.screens.end()) throw std::logic_error("no screen " + std::string(screen));
  const auto f = at->second.fields.find(name);
  if (f == at->second.fields.end())
    throw std::logic_error("no field " + std::string(screen) + "." + std::string(name));
  return f->second;
}

const Field& field(const Session& s, std::string_view screen, std::string_view name) {
  return field(const_cast<Session&>(s), screen, name);
}

void set_text(Session& s, std::string_view screen, std::string_view name, std::string_view text) {
  field(s, screen, name).text = text;
}

double field_number(const Session& s, std::string_view screen, std::string_view name) {
  return read_number(field(s, screen, name).text);
}

void fill_list(Session& s, std::string_view screen, std::string_view name, const RecordTable& table) {
  Field& list = field(s, screen, name);
  list.items.clear();
  list.selected = -1;
  list.top = 0;
  for (int row = 0; row <= table.last(); ++row)
    list.items.push_back({std::string(trim(table.cell(row, 0))), row});
}

std::string chosen_pressure_unit(const Session& s) {
  return s.state.pressure_unit_factor == 10 ? "bar" : "MPa";
}

std::string mode_pressure_unit(const Session& s) {
  return s.unit_mode == UnitMode::imperial ? "psi" : chosen_pressure_unit(s);
}

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

}  // namespace tv
