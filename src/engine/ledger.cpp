#include "engine/ledger.h"

#include <algorithm>
#include <cmath>

namespace tv {
namespace {

// Each a part of what it is compared with.
constexpr double kAboveAllHeat = 0.01;     // of the heat; the bisection may leave z a little above 1
constexpr double kEnergyKnownOff = 0.001;  // of the heat; found up to 0.00023
constexpr double kWorkKnownOff = 0.5;      // of the energy of the moving mass; found up to 0.36
constexpr double kBaseKnownOff = 1e-9;     // of the mean pressure; rounding

double gas_energy(const CalcState& s, const ShotCurve& c, std::size_t i) {
  return c.p[i] * (s.freeVol + s.boreM2 * c.x[i]) / (s.Kap - 1);
}
double moving_energy(const CalcState& s, const ShotCurve& c, std::size_t i) {
  return s.effMass * c.v[i] * c.v[i] / 2;
}

Ledger energy_at(const CalcState& s, const ShotCurve& c, int n) {
  const auto i = static_cast<std::size_t>(n);
  const double heat = s.chargeKg * s.ExwJ, gas = gas_energy(s, c, i), moving = moving_energy(s, c, i);
  if (!(std::max(moving, gas + moving) <= (1 + kAboveAllHeat) * heat)) return Ledger::broken;
  const bool near = std::fabs(gas + moving - c.z[i] * heat) <= kEnergyKnownOff * heat;
  return near && c.p[i] >= 0 ? Ledger::balanced : Ledger::off;
}

// Gas that flows freely turns all its heat into velocity at 2 c / (kappa - 1), c its velocity of sound.
bool slower_than_gas(const CalcState& s, double v) {
  return v <= 2 * std::sqrt(s.Kap * s.ExwJ / (s.Kap - 1));
}

// Work of the gas up to burnout, behind which the expansion is exact, by trapezoids.
bool work_drives_bullet(const CalcState& s, const ShotCurve& c, int end) {
  double work = 0;
  const auto last = static_cast<std::size_t>(end);
  for (std::size_t i = 1; i <= last; ++i) work += (c.p[i] + c.p[i - 1]) * (c.x[i] - c.x[i - 1]);
  const double moving = moving_energy(s, c, last);
  return std::fabs(work * s.boreM2 / 2 - moving) <= kWorkKnownOff * moving;
}

bool base_below_mean(const ShotCurve& c, int n) {
  const auto i = static_cast<std::size_t>(n);
  return c.pB[i] >= 0 && c.pB[i] <= (1 + kBaseKnownOff) * c.p[i];
}

}  // namespace

Ledger energy_ledger(const CalcState& s, const ShotCurve& c, const ShotResult& r) {
  const Ledger marks = std::max(energy_at(s, c, r.peakIdx), energy_at(s, c, r.lastIdx));
  if (marks != Ledger::balanced) return marks;
  if (!slower_than_gas(s, r.vMuzzle)) return Ledger::off;
  const bool started = c.z[0] > 0;  // the plain solution does the work exactly
  const int end = r.burnIdx >= 0 ? r.burnIdx : r.lastIdx;
  return !started || work_drives_bullet(s, c, end) ? Ledger::balanced : Ledger::off;
}

Ledger order_ledger(const ShotCurve& c, const ShotResult& r, double unhindered) {
  const auto at = [&](int n) { return c.t[static_cast<std::size_t>(n)]; };
  const double burnout = r.burnIdx >= 0 ? at(r.burnIdx) : 0;
  const bool rises = at(0) <= at(r.peakIdx) && at(r.peakIdx) <= 0 && at(0) <= burnout && burnout <= 0;
  if (!rises || !(c.v[static_cast<std::size_t>(r.lastIdx)] <= unhindered)) return Ledger::broken;
  return base_below_mean(c, r.peakIdx) && base_below_mean(c, r.lastIdx) ? Ledger::balanced : Ledger::off;
}

}  // namespace tv
