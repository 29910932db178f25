// Units of a view; they may change without a new run.
#pragma once

#include "engine/calc_state.h"
#include "text/number.h"

namespace tv {

struct ViewUnits {
  bool imperial = false;
  double pressure_unit_factor = 1;  // 1 shows MPa, 10 shows bar; metric views only
};

inline const char* pressure_unit_name(const ViewUnits& units) {
  if (units.imperial) return "psi";
  return units.pressure_unit_factor == 10 ? "bar" : "MPa";
}
inline double shown_pressure(double pascal, const ViewUnits& units) {
  return units.imperial ? pascal / kPaPerPsi : pascal * units.pressure_unit_factor / 1e6;
}
// fps or m/s
inline double shown_velocity(double v, const ViewUnits& units) {
  return units.imperial ? v * kFeetPerMetre : v;
}
// inch or mm
inline double shown_travel(double metres, const ViewUnits& units) {
  return units.imperial ? metres * kFeetPerMetre * 12 : metres * 1000;
}
// Muzzle energy of a bullet of so many grains, ft.lbs. or J.
inline double shown_energy(double v, double bulletGr, const ViewUnits& units) {
  return v * v * bulletGr / (units.imperial ? kEnergyFootPound : kEnergyJoule);
}
// Burnt fraction in percent, cut (not rounded) to two places.
inline double burnt_percent(double fraction) { return int_of(fraction * 10000) / 100; }

}  // namespace tv
