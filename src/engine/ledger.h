// What physics allows of a finished walk whatever the load: a few comparisons after each run, against bounds
// that are wider than what the closed forms are known to be off (docs/model.md says how they were chosen).
#pragma once

#include "engine/calc_state.h"

namespace tv {

enum class Ledger {
  balanced,
  off,    // by more than the closed forms are known to be: the note fwarn19
  broken  // no gun could do that: the run fails
};

// Energy of bullet and gas against the heat of the charge at the peak and at the muzzle, the velocity against
// that of the gas, and with a start pressure the work of the gas against the energy of the moving mass.
//
// in:  a walked curve before bore friction; r with its peak, marks and vMuzzle
Ledger energy_ledger(const CalcState& s, const ShotCurve& c, const ShotResult& r);

// Pressure at the base against the mean, the order in time of start, peak, burnout and muzzle, and friction,
// which may only slow the bullet.
//
// in:  a curve with its times, and base pressures where there are any; unhindered [m/s], the muzzle velocity
//      before bore friction
Ledger order_ledger(const ShotCurve& c, const ShotResult& r, double unhindered);

}  // namespace tv
