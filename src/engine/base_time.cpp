// What follows from the finished curve: pressure at the bullet base, the time axis, and the times of the
// peak.
#include <algorithm>

#include "engine/burn_model.h"
#include "engine/checked.h"
#include "engine/results.h"

namespace tv {

namespace {

std::size_t last_of(const ShotResult& r) { return static_cast<std::size_t>(r.lastIdx); }

// The curves are computed in loops that a compiler can spread over the lanes of a processor. A failure
// anywhere leaves its mark in a value that is not finite; then the same is done again a point at a time, by
// checked operations in the order of the points, which names the failure.

// Pressure that the start pressure still holds at the base, Pa, and the mass that the gas moves, kg, where
// the fourth root of the velocity reached is part.
double held_at(const CalcState& s, double part) { return (1 - part) * s.start_pressure; }
double moved_at(const CalcState& s, double part) { return part * s.dim.sebf * s.chargeKg + s.bulletKg; }

void base_by_points(const CalcState& s, ShotCurve& c, std::size_t last) {
  c.pB.fill(0);
  for (std::size_t i = last; i >= 2; --i) {
    const double part = checked_pow(checked_div(c.v[i], c.v[last]), 0.25);
    const double held = held_at(s, part);
    c.pB[i] = finite(held + checked_div((c.p[i] - held) * s.bulletKg, moved_at(s, part)));
  }
}

}  // namespace

// The gas between breech and base is accelerated too, so the base sees less than the mean pressure. The share
// of the charge that moves with the bullet counts in the measure of the velocity reached.
void baseCurve(const CalcState& s, ShotCurve& c, ShotResult& r) {
  const std::size_t last = last_of(r);
  const double muzzle = c.v[last];
  for (std::size_t i = 2; i <= last; ++i) c.pB[i] = c.v[i] / muzzle;
  for (std::size_t i = 2; i <= last; ++i) c.pB[i] = std::pow(c.pB[i], 0.25);
  double gap = 0;  // 0 as long as all are finite
  for (std::size_t i = 2; i <= last; ++i) {
    const double part = c.pB[i], held = held_at(s, part);
    c.pB[i] = held + (c.p[i] - held) * s.bulletKg / moved_at(s, part);
    gap += c.pB[i] - c.pB[i];
  }
  if (gap != 0) base_by_points(s, c, last);
  r.pBasePeak = checked_div(1.05 * r.pMax, 1 + checked_div(s.dim.sebf * s.chargeKg, s.bulletKg));
}

namespace {

double step_time(const ShotCurve& c, std::size_t i) {
  return (c.x[i] - c.x[i - 1]) * 2 / (c.v[i - 1] + c.v[i]);
}

void time_by_points(ShotCurve& c, std::size_t last) {
  c.dt.fill(0);
  c.t.fill(0);
  for (std::size_t i = last; i >= 2; --i) {
    c.dt[i - 1] = checked_div((c.x[i] - c.x[i - 1]) * 2, c.v[i - 1] + c.v[i]);
    c.t[i - 1] = finite(c.t[i] - c.dt[i - 1]);
  }
}

// Time back from the muzzle, each step at the mean of its two velocities, down to point 1.
void walk_back(ShotCurve& c, std::size_t last) {
  for (std::size_t i = 2; i <= last; ++i) c.dt[i - 1] = step_time(c, i);
  for (std::size_t i = last; i >= 2; --i) c.t[i - 1] = c.t[i] - c.dt[i - 1];
  if (!std::isfinite(c.t[1])) time_by_points(c, last);
}

// The first crossing of a tenth of the peak from the muzzle side, on the rise.
int crossing_of_tenth(const ShotCurve& c, const ShotResult& r) {
  const double tenth = r.pMax / 10;
  for (std::size_t i = last_of(r); i >= 2; --i) {
    if (c.p[i - 1] > tenth || c.x[i - 1] > r.xPeak) continue;
    const bool lower = std::fabs(c.p[i] - tenth) > std::fabs(c.p[i - 1] - tenth);
    return static_cast<int>(lower ? i - 1 : i);
  }
  return 1;
}

double time_of_tenth(const ShotCurve& c, const ShotResult& r) {
  const double tenth = r.pMax / 10;
  const bool below = tenth <= c.p[static_cast<std::size_t>(r.p10Idx)];
  const int first = below ? r.p10Idx - 1 : r.p10Idx;
  const auto A = static_cast<std::size_t>(std::clamp(first, 0, r.lastIdx));
  const auto B = static_cast<std::size_t>(std::clamp(first + 1, 0, r.lastIdx));
  return finite(interpLinear(tenth, c.t[A], c.t[B], c.p[A], c.p[B]));
}

}  // namespace

void integrateTime(ShotCurve& c, ShotResult& r) {
  if (r.lastIdx < 1) fail_arithmetic(kDivisionByZero);
  walk_back(c, last_of(r));
  r.tailIdx = r.lastIdx >= 2 ? 2 : 0;
  r.p10Idx = crossing_of_tenth(c, r);
  // 1.2 for the mean velocity over the first stretch.
  c.t[0] = finite(c.t[1] - checked_div(c.x[1], c.v[1]) / 1.2);
  r.tStart = c.t[static_cast<std::size_t>(r.tailIdx)];
  r.t10 = time_of_tenth(c, r);
  r.ptime = std::fabs(r.t10) - std::fabs(c.t[static_cast<std::size_t>(r.peakIdx)]);
}

double interpLinear(double y, double tA, double tB, double pA, double pB) {
  if (pA == pB) return tA;
  return tB - (pB - y) * (tA - tB) / (pA - pB);
}

}  // namespace tv
