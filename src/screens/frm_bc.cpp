// frmBC: up to five ballistic coefficients of a bullet, each down to a limit velocity.
#include "screens/all.h"
#include "screens/editors.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/units.h"

namespace tv {
namespace {

constexpr const char* kName = "frmBC";

struct State {
  CoefficientRows now, opened;
};
State& state(Session& s) { return own<State>(s, kName); }

double& coefficient(Session& s, int i) { return state(s).now.icao[static_cast<std::size_t>(i)]; }
double& limit(Session& s, int i) { return state(s).now.limit_ms[static_cast<std::size_t>(i)]; }

const NumberField kNumbers[] = {
    {.sides = {{{"BC_Icao1", &units::icao, {0, kMostCoefficient}, "0.000", "0.000"},
                {"BC_Metro1", &units::metro_of_icao, {0, kMostCoefficient}, "0.000", "0.000"}}},
     .value = coefficient,
     .count = kCoefficients,
     .zero_empty = true},
    {.sides = {{{"tvel_ms1", &units::mps, {0, 1300}, "0.0", "0.0"},
                {"tvel_fps1", &units::ft_of_m, {0, 4265.0918635}, "0.0", "0.0"}}},
     .value = limit,
     .count = kCoefficients - 1,
     .zero_empty = true},
};

constexpr Place limit_place(const char* name) {
  Place place = number(name);
  place.rows = kCoefficients - 1;
  return place;
}
constexpr Row kRows[] = {
    note_row("bc_rule"),
    {RowShape::grid,
     nullptr,
     {number("BC_Icao1"), number("BC_Metro1"), limit_place("tvel_ms1"), limit_place("tvel_fps1")},
     kCoefficients},
    {RowShape::buttons, nullptr, {button("clear_all"), button("cancelbc"), button("bcset")}},
};
constexpr Group kForm[] = {{nullptr, 0, kRows}};

void write_rows(Session& s) { write_numbers(s, *s.screens.find(kName)->second.spec); }

void accept(Session& s, int) {
  CoefficientRows& rows = state(s).now;
  const CoefficientCheck check = check_coefficients(rows);
  if (check.finding != CoefficientFinding::none) {
    const int message = check.finding == CoefficientFinding::not_valid     ? 130
                        : check.finding == CoefficientFinding::not_falling ? 127
                                                                           : 125;
    warn(s, MessageText(s).msg(message).add(" " + std::to_string(check.row)));
    const bool velocity = check.finding == CoefficientFinding::not_falling;
    return s.user->focus(kName, (velocity ? "tvel_ms1" : "BC_Icao1") + std::to_string(check.row));
  }
  for (std::size_t i = 1; i <= kCoefficients; ++i) rows.metro[i] = metro_of_icao(rows.icao[i]);
  edited_bullet(s).bc = rows;
  edited_bullet_changed(s);
  hide_screen(s, kName);
}

void clear(Session& s, int) {
  state(s).now = {};
  write_rows(s);
}
void reset(Session& s, int) {
  state(s).now = state(s).opened;
  write_rows(s);
}
constexpr ControlAction kActions[] = {{"bcset", accept}, {"clear_all", clear}, {"cancelbc", reset}};

void open(Session& s) { state(s).now = state(s).opened = edited_bullet(s).bc; }

}  // namespace

extern const ScreenSpec kFrmBC{.name = kName,
                               .section = "frmBC",
                               .form = kForm,
                               .default_button = "bcset",
                               .numbers = kNumbers,
                               .actions = kActions,
                               .open = open};

}  // namespace tv
