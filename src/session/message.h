// What is said to the user: messages put together from texts of the language, and the boxes that show them.
#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

// Puts a message together and remembers the keys it is made of.
class MessageText {
public:
  explicit MessageText(const Session& s) : s_(s) {}
  MessageText& msg(int n);
  MessageText& fast(std::string_view key);
  MessageText& caption(std::string_view section, std::string_view key);
  MessageText& add(std::string_view text);
  MessageText& line();                           // line end
  operator Message() const { return message_; }  // NOLINT: a builder

private:
  const Session& s_;
  Message message_;
};

// A warning box titled with the program's name; beeps first if asked to and the sound is on. Nothing while
// the session is silent: then it is kept as the reason of the refusal.
void warn(Session& s, const Message& message, bool beep = true, std::string title = {});
bool ask_yes_no(Session& s, const Message& message);
bool ask_ok_cancel(Session& s, const Message& message);
void beep(Session& s);

// Where a value (its side: 0 metric, 1 imperial) or the load's list of a kind is entered; empty if nowhere.
FieldPlace place_of(const Session& s, const double& value, std::size_t side = 0);
FieldPlace place_of_list(const Session& s, RecordKind kind);
// The caption of a field as its screen shows it, without mnemonic and colon; its limits with their unit.
std::string field_caption(const Session& s, const FieldPlace& at);
std::string field_range(const Session& s, const FieldPlace& at);

// A screen by its role: brought to front, hidden.
void bring_to_front(Session& s, Role role);
void hide_screen(Session& s, Role role);
// The focus into the field of a value (its side: 0 metric, 1 imperial) or into a list of the load; while the
// session is silent the refusal only notes the place.
void focus_number(Session& s, const double& value, std::size_t side = 0);
void focus_list(Session& s, RecordKind kind);

}  // namespace tv
