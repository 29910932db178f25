// What a cell of a chronograph's export says: a number with its unit, or a word that names a column. Exports
// speak English, German, French or Russian.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tv {

enum class CellUnit { none, mps, fps, grain, gram, MPa, psi, bar };
double to_si(CellUnit unit);  // factor to m/s, grains and Pa; 1 for none

struct CellNumber {
  double value = 0;
  CellUnit unit = CellUnit::none;  // as written behind the number
};

// A number as a whole, with a unit behind it or not; point or comma, signs of thousands (blank, apostrophe,
// the other of the two). "2,712" has a thousands sign: as decimals no velocity is that low.
std::optional<CellNumber> cell_number(std::string_view cell);

// The first unit that stands in a text as a word: "Speed (FPS)".
CellUnit unit_in(std::string_view text);

enum class ColumnRole { none, shot, velocity, pressure, charge, series, excluded };
// What a heading names; none for statistics, energies, times and what is unknown.
ColumnRole role_of(std::string_view heading);
bool is_statistic(std::string_view label);     // "Average", "Std. dev.", "Spread"
bool is_other_figure(std::string_view label);  // energies, times, notes
bool is_no_reading(std::string_view cell);     // "---", "Err", "n/a": a shot that was not seen
bool asks_for_units(std::string_view label);   // "Units", "Velocity in": the cell beside it has the unit

// The number behind the name of a velocity by distance: 10 of "V10 [m/s]"; nothing for another heading.
std::optional<int> velocity_distance(std::string_view heading);
// The number at the end of a heading that counts series or shots: 3 of "Series 3", "Shot 3", "3".
std::optional<int> number_of(std::string_view heading);

}  // namespace tv
