#include "session/numbers.h"

#include <algorithm>
#include <charconv>

#include "session/session.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

// Calls visit(place of its first side) for every number of a screen, arrays one by one.
template <class Visit>
void each_number(const ScreenSpec& spec, Visit visit) {
  for (const NumberField& number : spec.numbers)
    for (int i = number.count > 0 ? 1 : 0; i <= number.count; ++i)
      visit(NumberPlace{spec.name, &number, 0, i});
}

// The same for every place that shows the value.
template <class Visit>
void each_place(Session& s, const double& value, Visit visit) {
  for (const ScreenSpec* spec : s.program.screens)
    each_number(*spec, [&](const NumberPlace& at) {
      if (&at.value(s) == &value) visit(at);
    });
}

// The first place of the value that has that side; its number is null if there is none.
NumberPlace first_place(const Session& s, const double& value, std::size_t side) {
  auto& session = const_cast<Session&>(s);  // only looked at
  for (const ScreenSpec* spec : s.program.screens)
    for (const NumberField& number : spec->numbers)
      for (int i = number.count > 0 ? 1 : 0; i <= number.count; ++i)
        if (number.sides[side].field && &number.value(session, i) == &value)
          return {spec->name, &number, side, i};
  return {};
}

// What stands for a value that is not there.
std::optional<std::string> unknown_text(const NumberField& number, double value) {
  if (number.zero_empty && value == 0) return "";
  if (number.zero_unknown && !(value > 0)) return "?";
  return {};
}

void write_text(Session& s, const NumberPlace& at, std::size_t side, std::string_view text) {
  Field& f = field(s, at.screen, field_of(at, side));
  f.text = text;
  f.ink = Ink::black;
  f.stale = false;
  f.reason.clear();
}

void write_place(Session& s, const NumberPlace& at, Patterns patterns) {
  const char* const given[] = {patterns.metric, patterns.imperial, nullptr};
  const double value = at.value(s);
  for (std::size_t k = 0; k < at.number->sides.size(); ++k)
    if (const NumberSide& side = at.number->sides[k]; side.field)
      write_text(s, at, k, unknown_text(*at.number, value).value_or(number_text(s, side, value, given[k])));
}

const char* own_pattern(const Session& s, const NumberSide& side) {
  if (side.unit->pattern) return side.unit->pattern(s);
  return side.on_leave ? side.on_leave : side.as_partner;
}

std::vector<double> all_values(Session& s) {
  std::vector<double> values;
  for (const ScreenSpec* spec : s.program.screens)
    each_number(*spec, [&](const NumberPlace& at) { values.push_back(at.value(s)); });
  return values;
}

}  // namespace

std::string shown_as(const Unit& unit, double shown, const char* pattern) {
  if (!pattern) return general(shown);
  return unit.all_digits ? format_pattern(shown, pattern) : format_number(shown, pattern);
}

std::string number_text(const Session& s, const NumberSide& side, double stored, const char* pattern) {
  if (!pattern) pattern = own_pattern(s, side);
  return shown_as(*side.unit, side.unit->shown(stored, s), pattern);
}

std::string field_of(const NumberPlace& at, std::size_t side) {
  const std::string name = at.number->sides[side].field;
  return at.i > 0 ? name + std::to_string(at.i) : name;
}

void write_number(Session& s, const double& value, Patterns patterns) {
  each_place(s, value, [&](const NumberPlace& at) { write_place(s, at, patterns); });
}

void write_texts(Session& s, const double& value, std::string_view first, std::string_view second) {
  each_place(s, value, [&](const NumberPlace& at) {
    for (std::size_t k = 0; k < at.number->sides.size(); ++k)
      if (at.number->sides[k].field) write_text(s, at, k, k == 0 ? first : second);
  });
}

void clear_warning(Session& s, const double& value) {
  each_place(s, value, [&](const NumberPlace& at) {
    for (std::size_t k = 0; k < at.number->sides.size(); ++k)
      if (at.number->sides[k].field) {
        Field& f = field(s, at.screen, field_of(at, k));
        f.ink = Ink::black;
        f.reason.clear();
      }
  });
}

void write_numbers(Session& s, const ScreenSpec& spec) {
  each_number(spec, [&](const NumberPlace& at) { write_place(s, at, {}); });
}

std::string shown_text(const Session& s, const double& value, int side) {
  const auto k = static_cast<std::size_t>(side);
  const NumberPlace at = first_place(s, value, k);
  return at.number ? field(s, at.screen, field_of(at, k)).text : std::string();
}

std::string stored_text(const Session& s, const double& value, std::size_t side) {
  const NumberPlace at = first_place(s, value, side);
  return at.number ? number_text(s, at.number->sides[side], value, nullptr) : std::string();
}

double shown_number(const Session& s, const double& value, int side) {
  return read_number(shown_text(s, value, side));
}

std::string with_points(std::string text) {
  std::ranges::replace(text, ',', '.');
  return text;
}

NumberPlace find_number(const Session& s, std::string_view screen, std::string_view name) {
  NumberPlace found;
  const auto at = s.screens.find(screen);
  if (at == s.screens.end()) return found;
  each_number(*at->second.spec, [&](NumberPlace place) {
    for (place.side = 0; place.side < place.number->sides.size(); ++place.side)
      if (place.own().field && name.starts_with(place.own().field) && name == field_of(place, place.side))
        found = place;
  });
  return found;
}

NumberPlace find_number(Session& s, const double& value) {
  NumberPlace found;
  each_place(s, value, [&](const NumberPlace& at) {
    if (!found.number && !at.number->read_only) found = at;
  });
  return found;
}

Limits limits_of(const Session& s, const NumberPlace& at) {
  const NumberSide& side = at.own();
  if (at.number->limits) return at.number->limits(s, side, at.i);
  return side.unit->limits ? side.unit->limits(side.limits, s) : side.limits;
}

double charge_step(const Session&, const NumberSide& side) { return side.unit == &units::grain ? 0.1 : 0.01; }

bool in_limits(double shown, Limits limits) {
  const auto single = static_cast<float>(shown);
  return !(single < static_cast<float>(limits.least) || single > static_cast<float>(limits.most));
}

std::string limit_text(double limit) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), static_cast<float>(limit),
                                 std::chars_format::fixed);
  return {text.data(), end.ptr};
}

void write_partners(Session& s, const NumberPlace& at, double stored) {
  for (std::size_t k = 0; k < at.number->sides.size(); ++k) {
    const NumberSide& side = at.number->sides[k];
    if (k == at.side || !side.field) continue;
    field(s, at.screen, field_of(at, k)).text =
        unknown_text(*at.number, stored).value_or(number_text(s, side, stored, side.as_partner));
  }
}

void hold_state(Session& s, std::string_view screen) {
  s.held.state = s.state;
  s.held.load = s.load;
  s.held.marks = s.valid;
  s.held.own = s.screens.find(screen)->second.own;
}

void put_back_state(Session& s, std::string_view screen, const NumberField* but) {
  const std::vector<double> before = all_values(s);
  s.state = s.held.state;
  s.load = s.held.load;
  s.screens.find(screen)->second.own = s.held.own;
  std::size_t n = 0;
  for (const ScreenSpec* spec : s.program.screens)
    each_number(*spec, [&](const NumberPlace& at) {
      if (at.value(s) != before[n++] && at.number != but) write_place(s, at, {});
    });
}

void apply_number(Session& s, const NumberPlace& at, double stored) {
  put_back_state(s, at.screen, at.number);
  double& value = at.value(s);
  const bool differs = value != stored;
  value = stored;
  if (at.number->changed) at.number->changed(s, at.i, differs);
}

}  // namespace tv
