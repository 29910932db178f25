// The screens driven by a script: one command a line, one JSON object a line as answer.
#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <istream>
#include <ostream>

#include "cli/script.h"
#include "cli/show.h"
#include "screens/commands.h"
#include "screens/reports.h"
#include "session/entry.h"
#include "session/load_files.h"

namespace tv {
namespace {

using Words = std::vector<Word>;

// Ends the script; the line is added where it is known.
struct ScriptError {
  std::string message;
};

struct Player {
  Session& s;
  CliUser& user;
  std::istream& lines;
  std::ostream& out;
  int line = 0;
  bool answered = false;  // the line at hand has been answered: a modal screen opened
  std::string clipboard = {};

  bool over() const { return s.end_requested; }
};

void answer(Player& p, const Json& json) {
  p.out << json_text(json, -1) << std::flush;
  if (!p.out) throw Stop{kFileTrouble, "standard output could not be written"};
  p.answered = true;
}

Screen& screen_of(Player& p, const std::string& name) {
  const auto at = p.s.screens.find(name);
  if (at == p.s.screens.end()) throw ScriptError{"no such screen: " + name};
  return at->second;
}

ControlPlace place_of(Player& p, const Word& word) {
  ControlPlace place = control_place(word.text);
  if (place.screen.empty()) throw ScriptError{"not SCREEN.CONTROL: " + word.text};
  if (!screen_of(p, place.screen).fields.contains(place.control))
    throw ScriptError{"no such control: " + word.text};
  return place;
}

void must(bool done, const Word& word) {
  if (!done) throw ScriptError{"cannot be used so now: " + word.text};
}

int whole_number(const std::string& text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    throw ScriptError{"not a whole number: " + text};
  return value;
}

double real_number(const std::string& text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) throw ScriptError{"not a number: " + text};
  return value;
}

Extent extent_of(const Surface& surface) { return {surface.width, surface.height}; }

// By "#N", or by its text, blanks at the ends aside.
int list_index(const Field& list, const Word& word) {
  if (!word.quoted && word.text.starts_with('#')) return whole_number(word.text.substr(1));
  for (std::size_t i = 0; i < list.items.size(); ++i)
    if (trim(list.items[i].text) == trim(word.text)) return static_cast<int>(i);
  throw ScriptError{"no such entry: " + word.text};
}

void load_entry(Player& p, const Words& w, const char* command) {
  if (w[1].text != "load") throw ScriptError{"only loads: " + w[1].text};
  p.user.answers.push_front({w[2].text, false});
  must(run_command(p.s, command), w[0]);
}
void do_open(Player& p, const Words& w) { load_entry(p, w, "lab_lod"); }
void do_save(Player& p, const Words& w) { load_entry(p, w, "lab_sav"); }

void do_type(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  must(type_text(p.s, at.screen, at.control, w[2].text), w[1]);
}

void do_pick(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  must(pick(p.s, at.screen, at.control, list_index(field(p.s, at.screen, at.control), w[2])), w[2]);
}

void do_press(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  must(press(p.s, at.screen, at.control), w[1]);
}

void do_toggle(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  must(toggle(p.s, at.screen, at.control), w[1]);
}

void do_choose(Player& p, const Words& w) {
  const ControlPlace at = control_place(w[1].text);
  screen_of(p, at.screen);
  must(choose(p.s, at.screen, at.control, whole_number(w[2].text)), w[1]);
}

void do_key(Player& p, const Words& w) {
  screen_of(p, w[1].text);
  must(key(p.s, w[1].text, w[2].text), w[2]);
}

// The list of recent loads stands in the menu as menrecfil_array(0) and on.
bool open_recent(Player& p, const std::string& name) {
  constexpr std::string_view stem = "menrecfil_array";
  if (!name.starts_with(stem)) return false;
  const int index = whole_number(name.substr(stem.size()));
  if (index < 0 || index >= static_cast<int>(p.s.recent.size())) throw ScriptError{"no recent load: " + name};
  recent_open(p.s, index);
  return true;
}

void do_menu(Player& p, const Words& w) {
  if (open_recent(p, control_name(w[1].text))) return;
  if (!find_command(w[1].text)) throw ScriptError{"no such command: " + w[1].text};
  must(run_command(p.s, w[1].text), w[1]);
}

void do_answer(Player& p, const Words& w) {
  for (std::size_t i = 1; i < w.size(); ++i) {
    static constexpr std::string_view kWords[] = {"yes", "no", "ok", "cancel", "retry"};
    const bool word = !w[i].quoted && std::ranges::find(kWords, w[i].text) != std::end(kWords);
    p.user.answers.push_back({w[i].text, word});
  }
}

void do_show(Player& p, const Words& w) {
  screen_of(p, w[1].text);
  refresh_screens(p.s);
  answer(p, screen_json(p.s, w[1].text));
}

void do_boxes(Player& p, const Words&) {
  answer(p, boxes_json(p.user.shown));
  p.user.shown.clear();
}

void do_focus(Player& p, const Words&) {
  answer(p, {{"screen", p.s.focus.screen}, {"field", p.s.focus.field}});
}

void do_draw(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  const Surface* surface = find_surface(p.s, at.screen, at.control);
  if (!surface) throw ScriptError{"no drawing surface: " + w[1].text};
  answer(p, draw_json(surface->draw(p.s, extent_of(*surface))));
}

// Press at the first point, move, release at the last; one point is a click.
void do_drag(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  const Surface* surface = find_surface(p.s, at.screen, at.control);
  if (!surface || !surface->pointer) throw ScriptError{"nothing to drag on: " + w[1].text};
  if (w.size() % 2 != 0) throw ScriptError{"a point has two coordinates: " + w.back().text};
  const auto send = [&](Pointer::What what, std::size_t i) {
    point_at(p.s, at.screen, at.control, {what, {real_number(w[i].text), real_number(w[i + 1].text)}},
             extent_of(*surface));
  };
  send(Pointer::What::move, 2);
  send(Pointer::What::press, 2);
  for (std::size_t i = 4; i < w.size(); i += 2) send(Pointer::What::drag, i);
  send(Pointer::What::release, w.size() - 2);
}

void do_text(Player& p, const Words& w) {
  const ControlPlace at = place_of(p, w[1]);
  answer(p, {{"text", bare_text(p.s, at.screen, at.control)}});
}

// What a print entry would put on paper.
void do_pages(Player& p, const Words& w) {
  const auto report = report_of(w[1].text);
  if (!report) throw ScriptError{"no such print entry: " + w[1].text};
  must(report_ready(p.s, *report), w[1]);
  Json pages = Json::array();
  for (const DrawList& page : report_pages(p.s, *report)) pages.push_back(draw_json(page));
  answer(p, {{"pages", std::move(pages)}});
}

// With a text: it lies on the clipboard; without: what lies there.
void do_clipboard(Player& p, const Words& w) {
  if (w.size() > 1)
    p.clipboard = w[1].text;
  else
    answer(p, {{"clipboard", p.clipboard}});
}

struct ScriptCommand {
  std::string_view name;
  std::size_t least, most;  // arguments
  void (*run)(Player&, const Words&);
};
constexpr ScriptCommand kCommands[] = {
    {"open", 2, 2, do_open},           {"save", 2, 2, do_save},
    {"type", 2, 2, do_type},           {"pick", 2, 2, do_pick},
    {"press", 1, 1, do_press},         {"toggle", 1, 1, do_toggle},
    {"choose", 2, 2, do_choose},       {"key", 2, 2, do_key},
    {"menu", 1, 1, do_menu},           {"answer", 1, 99, do_answer},
    {"show", 1, 1, do_show},           {"boxes", 0, 0, do_boxes},
    {"focus", 0, 0, do_focus},         {"draw", 1, 1, do_draw},
    {"text", 1, 1, do_text},           {"drag", 3, 200, do_drag},
    {"clipboard", 0, 1, do_clipboard}, {"pages", 1, 1, do_pages},
};

void run_line(Player& p, const std::string& line) {
  const auto words = split_line(line);
  if (!words) throw ScriptError{"a quote is not closed"};
  if (words->empty()) return;
  const auto* command =
      std::ranges::find_if(kCommands, [&](const ScriptCommand& c) { return c.name == words->front().text; });
  if (command == std::end(kCommands)) throw ScriptError{"no such command: " + words->front().text};
  const std::size_t arguments = words->size() - 1;
  if (arguments < command->least || arguments > command->most)
    throw ScriptError{"wrong number of arguments: " + words->front().text};
  const int number = p.line;
  p.answered = false;
  command->run(p, *words);
  if (!p.answered) answer(p, {{"ok", true}, {"line", number}});
  p.answered = true;
}

// False at the end. A line that does not end, as that of a device, ends the script.
bool read_line(Player& p, std::string& line) {
  constexpr std::size_t longest = 1U << 20U;
  char c = 0;
  while (p.lines.get(c)) {
    if (c == '\n') return true;
    if (line.size() >= longest || c == '\0') throw ScriptError{"the line is no line of a script"};
    line += c;
  }
  return !line.empty();
}

bool next_line(Player& p) {
  std::string line;
  if (p.over()) return false;
  ++p.line;
  if (!read_line(p, line)) return false;
  run_line(p, line);
  return true;
}

// The lines that follow act on the modal screen until it closes; the line that opened it is answered before.
void run_modal(Player& p, std::string_view name) {
  answer(p, {{"ok", true}, {"line", p.line}, {"dialog", name}});
  const Screen& screen = p.s.screens.find(name)->second;
  while (screen.visible && next_line(p)) {
  }
  p.answered = true;
}

// Showing a screen, and marks of the menu, are done without a window; anything else is not.
void window_command(std::string_view name) {
  static constexpr std::string_view kDone[] = {"metr",  "powd",     "result", "diagra", "abbrandfunktion",
                                               "ttips", "symbonoff"};
  if (std::ranges::find(kDone, name) == std::end(kDone))
    throw ScriptError{"only the window program can do this: " + std::string(name)};
}

void attach(Player& p) {
  p.s.hooks.window_command = [](Session&, std::string_view name) { window_command(name); };
  p.s.hooks.copy_text = [&p](const std::string& text) { p.clipboard = text; };
  p.s.hooks.paste_text = [&p] { return p.clipboard; };
  p.user.scripted = true;
  p.user.on_dialog = [&p](std::string_view screen) { run_modal(p, screen); };
  p.user.on_focus = [&p](std::string_view screen, std::string_view name) { focus_field(p.s, screen, name); };
  p.user.on_visible = [&p](std::string_view screen, bool visible) {
    if (const auto at = p.s.screens.find(screen); at != p.s.screens.end()) at->second.visible = visible;
  };
}

int fail(Player& p, const Console& console, const std::string& message) {
  console.err << "ternovale-cli: line " << p.line << ": " << message << "\n";
  answer(p, {{"error", message}, {"line", p.line}});
  return kRefused;
}

int play_command(Session& s, CliUser& user, const Console& console, const std::string& script) {
  std::ifstream file;
  if (script != "-") {
    file.open(script);
    if (!file || std::filesystem::is_directory(script))
      throw Stop{kFileTrouble, script + ": could not be read"};
  }
  Player p{s, user, script == "-" ? console.in : file, console.out};
  attach(p);
  for (const ScreenSpec* spec : s.program.screens)
    if (spec->shape == ScreenShape::child) open_screen(s, spec->name);
  try {
    while (next_line(p)) {
    }
  } catch (const ScriptError& error) {
    return fail(p, console, error.message);
  } catch (const NoAnswer& none) {
    return fail(p, console, none.message);
  }
  return kDone;
}

}  // namespace

CliCommand bind_play(CLI::App& program) {
  CLI::App* command = program.add_subcommand("play", "drive the screens by a script");
  auto script = std::make_shared<std::string>();
  command->add_option("SCRIPT", *script, "its file; - for standard input")->required();
  return {command,
          [script](Session& s, CliUser& user, const Console& console) {
            return play_command(s, user, console, *script);
          },
          true};
}

}  // namespace tv
