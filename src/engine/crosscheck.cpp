#include "engine/crosscheck.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/shot.h"

namespace tv {
namespace {

constexpr double kPressureUnit = 98066.5;           // Pa; the vivacity counts in it
constexpr double kStartPressureCounts = 1000000.0;  // Pa; a lower one is none
constexpr int kMostSteps = 5000;

enum class Law { first, second, burnt };

// y is the burnt fraction z by the first law and sqrt(1 - z) by the second, whose slope is constant: the end
// of burning stays regular.
struct Unknowns {
  double y = 0, x = 0;
};

struct Equations {
  double b = 0, f = 0, z1 = 0;        // burn laws
  double perVelocity = 0;             // K = a m / (P0 A), s/m
  double heat = 0, kappaLess1 = 0;    // w0 Q, J; kappa - 1
  double mass = 0, bore = 0, V0 = 0;  // kg, m2, m3
  Law law = Law::first;

  double burnt(double y) const { return law == Law::first ? y : law == Law::second ? 1 - y * y : 1; }
  double volume(double x) const { return V0 + bore * x; }
  double pressure(double v, Unknowns at) const {
    return kappaLess1 * (heat * burnt(at.y) - mass * v * v / 2) / volume(at.x);
  }
  // dy/dv and dx/dv. Where the pressure is not above 0 there is no way on, and x comes out infinite.
  Unknowns slope(double v, Unknowns at) const {
    Unknowns d;
    if (law == Law::first) d.y = perVelocity * std::sqrt(1 + b * at.y);
    if (law == Law::second) d.y = -perVelocity * f / 2;
    const double p = pressure(v, at);
    if (p > 0) {
      d.x = mass * v / (bore * p);
    } else if (v == 0 && at.y == 0) {
      d.x = mass * V0 / (bore * kappaLess1 * heat * perVelocity);  // both vanish, their ratio does not
    } else {
      d.x = INFINITY;
    }
    return d;
  }
  double pressure_slope(double v, Unknowns at, Unknowns d) const {
    const double dz = law == Law::first ? d.y : law == Law::second ? -2 * at.y * d.y : 0;
    const double gained = kappaLess1 * (heat * dz - mass * v);
    return (gained - pressure(v, at) * bore * d.x) / volume(at.x);
  }
};

Equations equations_of(const CalcState& s) {
  Equations e;
  e.b = s.PDko;
  e.f = s.Ba1;
  e.z1 = s.Limz1;
  e.perVelocity = s.Ba0 * s.effMass / (kPressureUnit * s.boreM2);
  e.heat = s.chargeKg * s.ExwJ;
  e.kappaLess1 = s.Kap - 1;
  e.mass = s.effMass;
  e.bore = s.boreM2;
  e.V0 = s.freeVol;
  return e;
}

struct Place {
  double v = 0;
  Unknowns at, slope;
};

struct Step {
  Place to;
  double error = INFINITY;  // the larger of both, over the scales of Motion
};

// One step of the pair: seven slopes, the last of which is the first of the next step.
Step step_from(const Equations& e, const Place& from, double h) {
  static constexpr double kTimes[7] = {0, 1.0 / 5, 3.0 / 10, 4.0 / 5, 8.0 / 9, 1, 1};
  static constexpr double kParts[7][6] = {
      {},
      {1.0 / 5},
      {3.0 / 40, 9.0 / 40},
      {44.0 / 45, -56.0 / 15, 32.0 / 9},
      {19372.0 / 6561, -25360.0 / 2187, 64448.0 / 6561, -212.0 / 729},
      {9017.0 / 3168, -355.0 / 33, 46732.0 / 5247, 49.0 / 176, -5103.0 / 18656},
      {35.0 / 384, 0, 500.0 / 1113, 125.0 / 192, -2187.0 / 6784, 11.0 / 84}};
  // Of order 5 less order 4.
  static constexpr double kErrors[7] = {71.0 / 57600,      0,          -71.0 / 16695, 71.0 / 1920,
                                        -17253.0 / 339200, 22.0 / 525, -1.0 / 40};
  std::array<Unknowns, 7> k;
  k[0] = from.slope;
  Step step;
  for (std::size_t n = 1; n < 7; ++n) {
    Unknowns at = from.at;
    for (std::size_t m = 0; m < n; ++m) {
      at.y += h * kParts[n][m] * k[m].y;
      at.x += h * kParts[n][m] * k[m].x;
    }
    const double v = from.v + kTimes[n] * h;
    k[n] = e.slope(v, at);
    step.to = {v, at, k[n]};
  }
  Unknowns error;
  for (std::size_t n = 0; n < 7; ++n) {
    error.y += h * kErrors[n] * k[n].y;
    error.x += h * kErrors[n] * k[n].x;
  }
  step.error = std::max(std::fabs(error.y), std::fabs(error.x) * e.bore / e.volume(step.to.at.x));
  return step;
}

// The step that brings a value onto its goal, where the full step h has passed it: Newton's steps, kept
// inside.
template <typename Value>
Step landed(const Equations& e, const Place& from, double h, const Step& full, double goal, Value value) {
  double low = 0, high = h, at = h;
  Step step = full;
  for (int round = 0; round < 60; ++round) {
    const auto [passed, slope] = value(step.to);
    (std::fabs(passed - value(from).first) < std::fabs(goal - value(from).first) ? low : high) = at;
    double next = at - (passed - goal) / slope;
    if (!(next > low && next < high)) next = (low + high) / 2;
    if (std::fabs(next - at) <= 1e-14 * h) break;
    at = next;
    step = step_from(e, from, at);
  }
  return step;
}

std::pair<double, double> burn_of(const Place& at) { return {at.at.y, at.slope.y}; }
std::pair<double, double> travel_of(const Place& at) { return {at.at.x, at.slope.x}; }

// Highest pressure between two places: at one of them, or on the cubic through both and their slopes.
double highest_between(const Equations& e, const Place& a, const Place& b) {
  const double pa = e.pressure(a.v, a.at), pb = e.pressure(b.v, b.at), h = b.v - a.v;
  const double ends = std::max(pa, pb);
  const double da = h * e.pressure_slope(a.v, a.at, a.slope), db = h * e.pressure_slope(b.v, b.at, b.slope);
  if (!(da > 0 && db < 0)) return ends;
  // p = pa + u (da + u (c2 + u c3)) over u from 0 to 1.
  const double c2 = 3 * (pb - pa) - 2 * da - db, c3 = 2 * (pa - pb) + da + db;
  const double root = std::sqrt(c2 * c2 - 3 * c3 * da);
  const double u = da / (root - c2);  // where the slope vanishes from above
  return std::max(ends, pa + u * (da + u * (c2 + u * c3)));
}

// The state of an integration on its way.
struct Way {
  Equations e;
  Place at;
  double h = 0;
  double highest = 0;
};

Way start(const CalcState& s) {
  Way way{equations_of(s), {}, 0, 0};
  Equations& e = way.e;
  if (s.start_pressure >= kStartPressureCounts) {
    way.at.at.y = s.start_pressure * e.V0 / (e.kappaLess1 * e.heat);
    if (way.at.at.y >= e.z1) {
      e.law = Law::second;
      way.at.at.y = std::sqrt(1 - way.at.at.y);
    }
  }
  way.at.slope = e.slope(0, way.at.at);
  way.h = 1e-3 * std::sqrt(2 * e.heat / e.mass);
  return way;
}

void next_law(Equations& e, Place& at) {
  e.law = e.law == Law::first && e.z1 < 1 ? Law::second : Law::burnt;
  at.at.y = e.law == Law::second ? std::sqrt(1 - e.z1) : 0;
  at.slope = e.slope(at.v, at.at);
}

// One step on, or none where it was too wide. True at the muzzle.
bool advance(Way& way, double travel, double tolerance) {
  const Equations& e = way.e;
  Step step = step_from(e, way.at, way.h);
  const double part = step.error / tolerance;
  const double factor = std::clamp(0.9 * std::pow(part, -0.2), 0.2, 5.0);
  if (!(part <= 1)) {
    way.h *= factor <= 1 ? factor : 0.2;
    return false;
  }
  const double y = step.to.at.y;
  const bool changes = (e.law == Law::first && y > e.z1) || (e.law == Law::second && y < 0);
  if (changes) step = landed(e, way.at, way.h, step, e.law == Law::first ? e.z1 : 0, burn_of);
  const bool muzzle = step.to.at.x >= travel;
  if (muzzle) step = landed(e, way.at, step.to.v - way.at.v, step, travel, travel_of);
  way.highest = std::max(way.highest, highest_between(e, way.at, step.to));
  way.at = step.to;
  if (muzzle) return true;
  if (changes) next_law(way.e, way.at);
  way.h *= factor;
  return false;
}

double percent(double closed, double integrated) { return 100 * (closed / integrated - 1); }

}  // namespace

IntegratedShot integrate_shot(const CalcState& s, double tolerance) {
  Way way = start(s);
  IntegratedShot shot;
  while (shot.steps < kMostSteps) {
    ++shot.steps;
    const bool muzzle = advance(way, s.travelM, tolerance);
    if (muzzle) {
      shot.figures = {way.highest, way.at.v};
      shot.ok = std::isfinite(way.highest) && std::isfinite(way.at.v);
      break;
    }
    if (!(way.at.v + way.h > way.at.v)) break;  // no step is small enough any more
  }
  return shot;
}

CrossCheck cross_check(const CalcState& s, ShotCurve& curve) {
  CalcState bare = s;
  bare.frictionOn = false;
  ShotResult result;
  CrossCheck check;
  if (!runShot(bare, curve, result).ok()) return check;
  const IntegratedShot shot = integrate_shot(bare);
  check.ok = shot.ok;
  check.closed = {result.pMax, result.vMuzzle};
  check.integrated = shot.figures;
  if (check.ok) {
    check.percent = {percent(result.pMax, shot.figures.pMax), percent(result.vMuzzle, shot.figures.vMuzzle)};
  }
  return check;
}

}  // namespace tv
