#include "session/session.h"

#include <algorithm>
#include <stdexcept>

#include "session/folds.h"

namespace tv {
namespace {

// A label or a unit that names a field of the screen: "@name".
void add_written(std::vector<Control>& controls, const char* key) {
  if (!key || key[0] != '@') return;
  const std::string name = key + 1;
  if (std::ranges::find(controls, name, &Control::name) == controls.end())
    controls.push_back({name, ControlKind::display});
}

void add_row(std::vector<Control>& controls, const Row& row) {
  add_written(controls, row.label);
  for (const Place& place : row.places) {
    if (!place.control) continue;
    for (int i = row.count > 0 ? 1 : 0; i <= grid_rows(row, place); ++i)
      controls.push_back({i > 0 ? place.control + std::to_string(i) : place.control, place.kind, &place});
    add_written(controls, place.unit);
  }
}

Screens make_screens(const Program& program) {
  Screens screens;
  for (const ScreenSpec* spec : program.screens) {
    Screen& screen = screens[spec->name];
    screen.spec = spec;
    for (const Control& control : controls_of(*spec)) screen.fields[control.name];
  }
  return screens;
}

}  // namespace

std::vector<Control> controls_of(const ScreenSpec& spec) {
  std::vector<Control> controls;
  for (const auto& groups : {spec.apart, spec.form})
    for (const Group& group : groups)
      for (const Row& row : group.rows) add_row(controls, row);
  if (!spec.numbers.empty()) controls.push_back({"grenzen", ControlKind::display});  // the hint box
  return controls;
}

std::optional<ControlKind> control_kind(const ScreenSpec& spec, std::string_view control) {
  for (const Control& known : controls_of(spec))
    if (known.name == control) return known.kind;
  return std::nullopt;
}

std::string control_name(std::string_view name) {
  std::string plain;
  for (const char c : name)
    if (c != '(' && c != ')') plain += c;
  return plain;
}

Session::Session(User& u, const Program& p) : user(&u), program(p), screens(make_screens(p)) {}

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

bool has_focus(const Session& s, std::string_view screen, std::string_view name) {
  return s.focus.screen == screen && s.focus.field == name;
}

Screen* screen_of(Session& s, Role role) {
  for (auto& [name, screen] : s.screens)
    if (screen.spec->role == role) return &screen;
  return nullptr;
}

std::string_view screen_name(const Session& s, Role role) {
  const Screen* screen = screen_of(const_cast<Session&>(s), role);
  return screen ? screen->spec->name : std::string_view();
}

bool is_visible(const Session& s, Role role) {
  const Screen* screen = screen_of(const_cast<Session&>(s), role);
  return screen && screen->visible;
}

void refresh_screens(Session& s) {
  for (const ScreenSpec* spec : s.program.screens)
    if (spec->refresh) spec->refresh(s);
  refresh_folds(s);
}

void outputs_changed(Session& s) { ++s.output.revision; }

std::string chosen_pressure_unit(const Session& s) {
  return s.state.pressure_unit_factor == 10 ? "bar" : "MPa";
}

std::string mode_pressure_unit(const Session& s) {
  return s.unit_mode == UnitMode::imperial ? "psi" : chosen_pressure_unit(s);
}

}  // namespace tv
