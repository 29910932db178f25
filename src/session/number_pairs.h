// The number fields of all screens, one row a pair: names, units, limits, formats and the value behind them.
// A field without a partner is a row with one side.
#pragma once

#include <span>
#include <string_view>

namespace tv {

struct Session;

// How a field shows its stored value. The first word is the unit shown, the second the unit stored.
enum class Unit {
  plain,
  mm_of_inch,     // x 25.4
  inch_of_mm,     // / 25.4
  gram_of_grain,  // / 15.432358353
  sqin_of_mm2,    // / 645.16
  cm3_of_grain,   // / dicht_H2 / 15.432358353
  chosen_of_MPa,  // x pressure_unit_factor (MPa or bar)
  psi_of_MPa,     // x 1000000 / 6894.76
  chosen_of_Pa,   // x pressure_unit_factor / 1000000
  psi_of_Pa,      // / 6894.76
  mode_of_Pa,     // psi in the imperial unit mode, else as chosen_of_Pa
  fps_of_mps,     // x 3.280839895
  reduction,      // percent below 1: (1 - x) * 100
};
double shown_value(Unit unit, double stored, const Session& s);
double stored_value(Unit unit, double shown, const Session& s);

struct Limits {
  double min, max;
};

struct NumberSide {
  const char* field = nullptr;
  Unit unit = Unit::plain;
  Limits limits{0, 0};
  const char* as_partner = nullptr;  // pattern when written because the other side changed
  const char* on_leave = nullptr;    // pattern of the field itself when it is left; none: stays as typed
};

// What a change of the value does beside storing it.
enum class OnChange {
  store,           // clears resultsValid
  groove,          // marks the bore area as stale
  bore_area,       // a keystroke clears the stale mark
  seating,         // Bsd, then ssd; recompute 0
  bullet_length,   // recompute 1
  overall_length,  // recompute 2
  case_length,     // recompute 3
  band_seating,    // ssd, then Bsd; recompute 4
  barrel_or_case,  // recompute 9
  powder,          // appends " ?" to the powder's name
  charge,          // renews fill, clears askCharge
  start_pressure,  // raises the flag of a set pressure
  friction,
  criteria,  // of the powder table: nothing but the value
  quick,     // of the quick start: nothing until Proceed
};

struct NumberPair {
  const char* screen;
  NumberSide metric;
  NumberSide imperial;
  double& (*value)(Session&);
  OnChange on_change;
  bool read_only = false;
};

std::span<const NumberPair> number_pairs();
// The pair a field belongs to, and which side; nothing if the field holds no number.
struct PairSide {
  const NumberPair* pair;
  bool metric;
  const NumberSide& own() const { return metric ? pair->metric : pair->imperial; }
  const NumberSide& partner() const { return metric ? pair->imperial : pair->metric; }
};
PairSide find_pair(std::string_view screen, std::string_view field);  // pair is null if there is none

// Writes both fields of a pair from a value, by the formats given or (null) each side's own: on_leave, else
// as_partner. Clears warning colours. Program writes: nobody reacts.
void write_pair(Session& s, std::string_view screen, std::string_view metric_field,
                const char* metric_pattern = nullptr, const char* imperial_pattern = nullptr);

}  // namespace tv
