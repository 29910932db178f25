#include "session/clipboard.h"

#include <algorithm>

#include "text/codepage.h"

namespace tv {
namespace {

std::string plain(std::string caption) {
  std::erase(caption, '&');
  return caption;
}

// As the window shows it behind the control.
std::string unit_text(const Session& s, const ScreenSpec& spec, const Place& place) {
  std::string_view unit = place.unit ? place.unit : "";
  for (const NumberField& number : spec.numbers)
    for (const NumberSide& side : number.sides)
      if (!place.unit && side.field && side.unit->caption && std::string_view(side.field) == place.control)
        unit = side.unit->caption;
  if (unit.starts_with('@')) return field(s, spec.name, unit.substr(1)).text;
  if (unit.starts_with('*')) return unit == "**" ? mode_pressure_unit(s) : chosen_pressure_unit(s);
  if (unit.starts_with('%')) {
    const std::size_t bar = unit.find('|');
    unit = spec.imperial && spec.imperial(s) ? unit.substr(bar + 1) : unit.substr(1, bar - 1);
  }
  return unit.empty() ? std::string() : s.language.text("units", unit);
}

bool shows_text(const Place& place) {
  using enum ControlKind;
  return place.control &&
         (place.kind == display || place.kind == number || place.kind == text || place.kind == combo);
}

std::string row_text(const Session& s, const ScreenSpec& spec, const Row& row) {
  std::string values;
  for (const Place& place : row.places) {
    if (!shows_text(place)) continue;
    const Field& shown = field(s, spec.name, place.control);
    if (!shown.visible || trim(shown.text).empty()) continue;
    const std::string unit = unit_text(s, spec, place);
    values += "\t" + std::string(trim(shown.text)) + (unit.empty() ? "" : "\t" + unit);
  }
  if (values.empty() || !row.label) return values.empty() ? values : values.substr(1);
  const std::string label = row.label;
  return plain(label[0] == '@' ? field(s, spec.name, label.substr(1)).text
                               : s.language.text(spec.section, label)) +
         values;
}

}  // namespace

std::string results_text(const Session& s, std::string_view screen) {
  const ScreenSpec& spec = *s.screens.find(screen)->second.spec;
  std::string text;
  for (const Group& group : spec.form)
    for (const Row& row : group.rows) {
      if (row.shape == RowShape::grid) continue;  // its fields have an index
      const std::string line = row_text(s, spec, row);
      if (!line.empty()) text += line + "\n";
    }
  return text;
}

void copy_results(Session& s, std::string_view screen) {
  refresh_screens(s);
  if (s.hooks.copy_text) s.hooks.copy_text(results_text(s, screen));
}

std::optional<std::string> pasted_text(Session& s) {
  return s.hooks.paste_text ? s.hooks.paste_text() : std::nullopt;
}

}  // namespace tv
