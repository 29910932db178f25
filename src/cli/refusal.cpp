// Why a calculation was refused or failed, in words and keys.
#include <algorithm>
#include <ostream>

#include <fmt/format.h>

#include "cli/keys.h"

namespace tv {
namespace {

// Where a calculation stopped, by the field that the user was sent to.
std::string stage_of(const Session& s, const CliUser& user) {
  if (user.focus_screen == screen_name(s, Role::dimensions)) return "transferInputs";
  if (user.focus_screen == screen_name(s, Role::powder))
    return user.focus_field == "ini_press1" ? "checkStartPressure" : "prepareShot";
  if (!user.focus_screen.empty()) return user.focus_screen;
  const std::string stage = stage_name(s.shown.outcome.stage);
  return stage.empty() ? "runShot" : stage;
}

std::string unit_text(const Session& s, const NumberPlace& at) {
  if (!at.own().unit->caption) return {};
  const std::string text = s.language.text("units", at.own().unit->caption);
  if (!text.empty()) return " " + text;
  return " " + (at.screen == screen_name(s, Role::powder) ? mode_pressure_unit(s) : chosen_pressure_unit(s));
}

// A refusal that sent the user to a field and said no more.
Refusal refusal_of_field(const Session& s, const NumberPlace& at) {
  const Limits range = limits_of(s, at);
  const std::string caption = control_caption(s, at.screen, field_of(at, at.side));
  return {"428msg",
          s.language.msg(428) + " " + caption + " " + range_text(range) + unit_text(s, at),
          {},
          {},
          range};
}

// Findings that let a calculation go on are no reason why it stopped.
bool only_warns(const ShownBox& box) {
  static constexpr std::string_view kWarnings[] = {"msg61",  "msg62",  "msg163", "msg165", "msg167",
                                                   "msg174", "msg177", "msg426", "msg43"};
  return box.keys.empty() || std::ranges::find(kWarnings, box.keys.front()) != std::end(kWarnings);
}

// "428msg" and "msg182": a text that is the program's own is told by its key in the language file.
std::string message_key(const std::string& key) { return key == "msg428" ? "428msg" : key; }

std::string one_line(std::string text) {
  std::erase(text, '\r');
  for (char& c : text)
    if (c == '\n') c = ' ';
  return std::string(trim(text));
}

}  // namespace

Refusal refusal_of(const Session& s, const CliUser& user) {
  const bool told = !user.shown.empty() && !only_warns(user.shown.back());
  const NumberPlace at = find_number(s, user.focus_screen, user.focus_field);
  Refusal why{"fwarn14", s.language.fastmsg("fwarn14"), {}, {}, {}};
  if (s.refusal && !s.refusal->message.keys.empty()) {
    why.message = message_key(s.refusal->message.keys.front());
    why.text = one_line(s.refusal->message.text);
  } else if (told) {
    why.message = message_key(user.shown.back().keys.front());
    why.text = one_line(user.shown.back().text);
  } else if (at.number) {
    why = refusal_of_field(s, at);
  }
  why.stage = stage_of(s, user);
  why.field = user.focus_field;
  if (at.number && why.message == "428msg") why.range = limits_of(s, at);
  return why;
}

Json error_json(const Refusal& why) {
  Json error{{"message", why.message}, {"text", why.text}, {"stage", why.stage}, {"field", why.field}};
  if (why.range) error["range"] = {why.range->least, why.range->most};
  return error;
}

int refuse(const Console& console, const std::string& format, const std::string& output, const Refusal& why) {
  console.err << "ternovale-cli: " << (why.field.empty() ? "failed in " : "refused in ") << why.stage
              << (why.field.empty() ? "" : ", field " + why.field) << ": " << why.text << "\n";
  if (format == "json" || format == "jsonl")
    deliver(console, output, json_text({{"error", error_json(why)}}, format == "json" ? 2 : -1));
  return kRefused;
}

}  // namespace tv
