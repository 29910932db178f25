// What follows from the finished curve: pressure at the bullet base, the time axis, and the times of the
// peak.
#include <algorithm>

#include "engine/burn_model.h"
#include "engine/checked.h"
#include "engine/results.h"

namespace tv {

// The gas between breech and base is accelerated too, so the base sees less than the mean pressure. The share
// of the charge that moves with the bullet counts in the measure of the velocity reached.
void baseCurve(const CalcState& s, ShotCurve& c, ShotResult& r) {
  const double moving = s.dim.sebf * s.chargeKg;
  const auto last = static_cast<std::size_t>(r.lastIdx);
  for (std::size_t i = last; i >= 2; --i) {
    const double part = checked_pow(checked_div(c.v[i], c.v[last]), 0.25);
    const double held = (1 - part) * s.start_pressure;
    c.pB[i] = held + checked_div((c.p[i] - held) * s.bulletKg, part * s.dim.sebf * s.chargeKg + s.bulletKg);
    finite(c.pB[i]);
  }
  r.pBasePeak = checked_div(1.05 * r.pMax, 1 + checked_div(moving, s.bulletKg));
}

namespace {

// Time back from the muzzle, each step at the mean of its two velocities, down to point 1.
void walk_back(ShotCurve& c, ShotResult& r) {
  const double tenth = r.pMax / 10;
  r.p10Idx = 1;
  for (auto i = static_cast<std::size_t>(r.lastIdx); i >= 2; --i) {
    c.dt[i - 1] = checked_div((c.x[i] - c.x[i - 1]) * 2, c.v[i - 1] + c.v[i]);
    c.t[i - 1] = finite(c.t[i] - c.dt[i - 1]);
    // The first crossing of a tenth of the peak from the muzzle side, on the rise.
    if (r.p10Idx == 1 && c.p[i - 1] <= tenth && c.x[i - 1] <= r.xPeak) {
      const bool lower = std::fabs(c.p[i] - tenth) > std::fabs(c.p[i - 1] - tenth);
      r.p10Idx = static_cast<int>(lower ? i - 1 : i);
    }
    r.tailIdx = static_cast<int>(i);
  }
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
  r.tailIdx = 0;
  walk_back(c, r);
  // 1.2 stands for the mean velocity over the first stretch.
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
