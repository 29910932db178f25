// How long a shot takes, for each variant and step setting, and four ratios measured in the same run:
//   /own    to the engine's own functions of its points, in a loop over the values where the shot read them:
//           constants, points, base pressure and time, but no walk that searches these values
//   /bare   to the same formulas written out without checks, and with the z of a start pressure known
//   /calls  to the calls of pow and log that these formulas make, alone
//   /integr to an integration that yields the peak pressure and the muzzle velocity and nothing else: the
//           classical Runge-Kutta method over the velocity, z taken from its solution z(v), steps ending
//           where the burn law changes and at burnout, the peak from a cubic between two steps, with the
//           least number of steps that gives both figures to 1e-4 for every load of the ladder
// The number of steps to the limit of the velocity is in the last column. Processor time, best of several.
#include "engine/shot.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <vector>

#include "engine/burn_model.h"
#include "engine/crosscheck.h"
#include "example_loads.h"

namespace {

using namespace tv;

constexpr int kBatches = 15;
constexpr double kBatchSeconds = 0.02;
constexpr double kFigures = 1e-4;  // what the integration must reach

// Processor time, best of several batches: a busy machine is only ever slower than it could be.
template <typename Work>
double seconds_of(Work work) {
  double best = 1e9;
  for (int batch = 0; batch < kBatches; ++batch) {
    const std::clock_t start = std::clock();
    int rounds = 0;
    double took = 0;
    do {
      work();
      ++rounds;
      took = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    } while (took < kBatchSeconds);
    best = std::min(best, took / rounds);
  }
  return best;
}

// A ladder of charges, as a table runs it; long, so that a processor does not learn its branches by heart.
std::vector<CalcState> ladder(double start_pressure, int schrit) {
  std::vector<CalcState> loads;
  for (int n = 0; n < 128; ++n) {
    CalcState s = test::worked_load();
    s.chargeGr = 64 + 0.075 * n;
    s.Ba0 = 0.45;
    s.start_pressure = start_pressure;
    s.schrit = schrit;
    convertUnits(s);
    prepareShot(s);
    loads.push_back(s);
  }
  return loads;
}

// --- The bare formulas

// What one shot evaluated: its logged points, and for points that were gone back over as many of them again.
struct Evaluated {
  BurnModel m;
  BurnPoint burnout;
  double bullet = 0, moving = 0, start = 0;    // of the base pressure
  std::vector<double> sigma1, z1, w2, sigma3;  // z1: with a start pressure, the z found for sigma1
  std::vector<double> solved;                  // z of the evaluations on the way there
  std::vector<double> x, v, p;
};

Evaluated evaluated(const CalcState& s, const ShotCurve& c, const ShotResult& r, const ShotOutcome& outcome) {
  Evaluated e;
  e.m = burn_inputs(s);
  e.bullet = s.bulletKg, e.moving = s.dim.sebf * s.chargeKg, e.start = s.start_pressure;
  phase1_constants(e.m);
  if (r.z1Idx >= 0) {
    phase2_constants(e.m);
    e.m.sigmaZ1 = c.sigma[static_cast<std::size_t>(r.z1Idx)];
  }
  const auto logged = static_cast<std::size_t>(r.lastIdx) + 1;
  const int burnt = r.burnIdx >= 0 ? r.burnIdx : r.lastIdx;
  const auto end = static_cast<std::size_t>(burnt);
  e.burnout = {c.x[end], c.v[end], c.p[end], 1, c.sigma[end]};
  if (r.burnIdx >= 0) phase3_from_phase2(e.m, e.burnout);
  for (std::size_t n = 0; n < static_cast<std::size_t>(outcome.points); ++n) {
    const std::size_t i = n % logged;
    if (static_cast<int>(i) > burnt) {
      e.sigma3.push_back(c.sigma[i]);
    } else if (r.z1Idx >= 0 && static_cast<int>(i) > r.z1Idx) {
      e.w2.push_back(c.w[i]);
    } else {
      e.sigma1.push_back(c.sigma[i]);
      e.z1.push_back(c.z[i]);
    }
  }
  for (long n = 0; n < outcome.expansions; ++n)
    e.solved.push_back(e.z1[static_cast<std::size_t>(n) % e.z1.size()]);
  e.x.assign(c.x.begin(), c.x.begin() + static_cast<std::ptrdiff_t>(logged));
  e.v.assign(c.v.begin(), c.v.begin() + static_cast<std::ptrdiff_t>(logged));
  e.p.assign(c.p.begin(), c.p.begin() + static_cast<std::ptrdiff_t>(logged));
  return e;
}

double squared(double x) { return x * x; }
double pressure(const BurnModel& m, double x, double v, double z) {
  return (m.kappa - 1) * (m.w0 * m.Q * z - m.m * v * v / 2) / (x * m.A + m.V0);
}

void own(const CalcState& s, const Evaluated& e, ShotCurve& out, ShotResult& r) {
  BurnModel m = burn_inputs(s);
  BurnSolver solver;
  phase1_constants(m);
  const auto keep = [&](std::size_t i, const BurnPoint& point) {
    out.x[i] = point.x, out.v[i] = point.v, out.p[i] = point.p, out.z[i] = point.z,
    out.sigma[i] = point.sigma;
  };
  for (std::size_t i = 0; i < e.sigma1.size(); ++i) keep(i, stepPhase1(m, solver, e.sigma1[i], i == 0));
  if (!e.w2.empty()) phase2_constants(m);
  m.sigmaZ1 = e.m.sigmaZ1;
  for (std::size_t i = 0; i < e.w2.size(); ++i) keep(i, stepPhase2(m, e.w2[i]));
  if (!e.sigma3.empty()) phase3_from_phase2(m, e.burnout);
  for (std::size_t i = 0; i < e.sigma3.size(); ++i) keep(i, stepPhase3(m, e.sigma3[i]));
  std::copy(e.x.begin(), e.x.end(), out.x.begin());
  std::copy(e.v.begin(), e.v.end(), out.v.begin());
  std::copy(e.p.begin(), e.p.end(), out.p.begin());
  baseCurve(s, out, r);
  integrateTime(out, r);
}

void bare_phase1(const Evaluated& e, ShotCurve& out) {
  const BurnModel& m = e.m;
  for (const double z : e.solved) {
    const double S = std::sqrt(m.b * z + 1);
    out.t[0] +=
        (std::log(z) - m.lnZ0 - (std::log(std::fabs((S - 1) / (S + 1))) - m.lnRoot0) * m.s0Root) * m.cScale;
  }
  for (std::size_t i = 0; i < e.sigma1.size(); ++i) {
    out.sigma[i] = e.sigma1[i];
    out.x[i] = m.V0 * e.sigma1[i] / m.A;
    if (m.hasStartPress) {
      out.w[i] = 1 - std::pow(m.V0 / (out.x[i] * m.A + m.V0), (m.kappa - 1) / 2);
      out.z[i] = e.z1[i];
      out.v[i] = 2 / m.b * (std::sqrt(out.z[i] * m.b + 1) - m.s0Root) / m.kBurn;
    } else {
      out.v[i] = std::fabs((1 - 1 / std::pow(e.sigma1[i] + 1, m.g)) * m.vScale);
      const double y = out.v[i] * m.kBurn;
      out.z[i] = y * (1 + m.b / 4 * y);
    }
    out.p[i] = pressure(m, out.x[i], out.v[i], out.z[i]);
  }
}

void bare_phase2(const Evaluated& e, ShotCurve& out) {
  const BurnModel& m = e.m;
  for (std::size_t i = 0; i < e.w2.size(); ++i) {
    const double w = e.w2[i];
    const double R =
        std::pow((w - m.rootLo) / m.fromLo, m.powerLo) * std::pow(m.fromHi / (w - m.rootHi), m.powerHi);
    out.w[i] = w;
    out.sigma[i] = R * (m.sigmaZ1 + 1) - 1;
    out.x[i] = m.V0 * out.sigma[i] / m.A;
    out.v[i] = w / m.wOverV;
    out.z[i] = m.hasStartPress
                   ? 1 - squared(m.rootZ1 - (out.v[i] - m.vZ1) * (m.f / 2) * m.kBurn)
                   : m.fConst * w / m.h + m.eConst - squared(out.v[i] * m.a * m.m * m.f / (2 * m.P0 * m.A));
    out.p[i] = pressure(m, out.x[i], out.v[i], out.z[i]);
  }
}

void bare_phase3(const Evaluated& e, ShotCurve& out) {
  const BurnModel& m = e.m;
  for (std::size_t i = 0; i < e.sigma3.size(); ++i) {
    out.sigma[i] = e.sigma3[i];
    out.x[i] = m.V0 * e.sigma3[i] / m.A;
    out.z[i] = 1;
    if (m.hasStartPress) {
      const double ratio = m.volBurn / (out.x[i] * m.A + m.V0);
      out.p[i] = m.pBurn * std::pow(ratio, m.kappa);
      const double gained = m.pBurn * m.volBurn / (m.kappa - 1) * (1 - std::pow(ratio, m.kappa - 1));
      out.v[i] = std::sqrt(2 * (m.m * squared(m.vBurn) / 2 + gained) / m.m);
    } else {
      const double left = 1 - m.adiaConst / std::pow(e.sigma3[i] + 1, m.kappa - 1);
      out.v[i] = std::sqrt(std::fabs(2 * left * m.w0 * m.Q / m.m));
      out.p[i] = pressure(m, out.x[i], out.v[i], 1);
    }
  }
}

void bare_base_and_time(const Evaluated& e, ShotCurve& out) {
  for (std::size_t i = e.v.size() - 1; i >= 2; --i) {
    const double part = std::pow(e.v[i] / e.v.back(), 0.25);
    const double held = (1 - part) * e.start;
    out.pB[i] = held + (e.p[i] - held) * e.bullet / (part * e.moving + e.bullet);
    out.dt[i - 1] = (e.x[i] - e.x[i - 1]) * 2 / (e.v[i - 1] + e.v[i]);
    out.t[i - 1] = out.t[i] - out.dt[i - 1];
  }
}

void bare(const Evaluated& e, ShotCurve& out) {
  bare_phase1(e, out);
  bare_phase2(e, out);
  bare_phase3(e, out);
  bare_base_and_time(e, out);
}

// --- The calls alone

struct Calls {
  std::vector<std::array<double, 2>> powers;
  std::vector<double> logs;
};

void add_calls(Calls& calls, const Evaluated& e) {
  const BurnModel& m = e.m;
  for (const double s : e.sigma1) calls.powers.push_back({s + 1, m.hasStartPress ? (1 - m.kappa) / 2 : m.g});
  for (const double w : e.w2) {
    calls.powers.push_back({(w - m.rootLo) / m.fromLo, m.powerLo});
    calls.powers.push_back({m.fromHi / (w - m.rootHi), m.powerHi});
  }
  for (const double s : e.sigma3) {
    calls.powers.push_back({s + 1, m.kappa - 1});
    if (m.hasStartPress) calls.powers.push_back({s + 1, -m.kappa});
  }
  for (std::size_t i = 2; i < e.v.size(); ++i) calls.powers.push_back({e.v[i] / e.v.back(), 0.25});
  for (const double z : e.solved) {
    calls.logs.push_back(z);
    calls.logs.push_back(z / 10);
  }
}

double call_all(const Calls& calls) {
  double sum = 0;
  for (const auto& call : calls.powers) sum += std::pow(call[0], call[1]);
  for (const double x : calls.logs) sum += std::log(x);
  return sum;
}

// --- The integration for peak and muzzle

// dx/dv = m v (V0 + A x) / (A (kappa - 1) (w0 Q z - m v^2 / 2)); z is a quadratic in v by each law.
struct Motion {
  double m, A, V0, kappaLess1, heat;
  double z0, z1, z2;  // z = z0 + v (z1 + v z2)
  double gas(double v) const { return heat * (z0 + v * (z1 + v * z2)) - m * v * v / 2; }
  double slope(double v, double x) const {
    // At rest without a start pressure v and the energy of the gas vanish together.
    const double perEnergy = v == 0 && z0 == 0 ? 1 / (heat * z1) : v / gas(v);
    return m * perEnergy * (V0 + A * x) / (A * kappaLess1);
  }
  double pressure(double v, double x) const { return kappaLess1 * gas(v) / (V0 + A * x); }
  double pressure_slope(double v, double x, double dx) const {
    return (kappaLess1 * (heat * (z1 + 2 * v * z2) - m * v) - pressure(v, x) * A * dx) / (V0 + A * x);
  }
};

double highest_between(double h, double pa, double da, double pb, double db) {
  if (!(da > 0 && db < 0)) return std::max(pa, pb);
  const double c2 = 3 * (pb - pa) - h * (2 * da + db), c3 = 2 * (pa - pb) + h * (da + db);
  const double u = h * da / (std::sqrt(c2 * c2 - 3 * c3 * h * da) - c2);
  return std::max({pa, pb, pa + u * (h * da + u * (c2 + u * c3))});
}

struct Stretch {
  double v, x, highest;
};

// Over one law up to the velocity `to`, or to the travel L. True at L. The steps grow from rest on, where the
// pressure rises steeply.
bool run_law(const Motion& e, Stretch& at, double to, double step, double L) {
  const int steps = static_cast<int>(std::ceil((to - at.v) / step));
  const double from = at.v;
  double k1 = e.slope(at.v, at.x), p = e.pressure(at.v, at.x), dp = e.pressure_slope(at.v, at.x, k1);
  for (int n = 0; n < steps; ++n) {
    const double part = static_cast<double>(n + 1) / steps;
    const double end = from + (to - from) * (from == 0 ? part * part : part);
    const double h = end - at.v, middle = at.v + h / 2;
    const double k2 = e.slope(middle, at.x + h / 2 * k1);
    const double k3 = e.slope(middle, at.x + h / 2 * k2);
    const double k4 = e.slope(end, at.x + h * k3);
    const double x = at.x + h / 6 * (k1 + 2 * k2 + 2 * k3 + k4);
    const double slope = e.slope(end, x), pressure = e.pressure(end, x);
    const double dpressure = e.pressure_slope(end, x, slope);
    if (x >= L || !(slope > 0)) {
      // The velocity at L on the cubic of v over x through both ends.
      const double u = (L - at.x) / (x - at.x), d = (x - at.x) / h, a = d / k1 - 1, b = 1 - d / slope;
      at.v += h * (u + u * (1 - u) * (a * (1 - u) + b * u));
      at.highest = std::max(at.highest, dp > 0 ? e.pressure(at.v, L) : p);
      return true;
    }
    at = {end, x, std::max(at.highest, highest_between(h, p, dp, pressure, dpressure))};
    k1 = slope, p = pressure, dp = dpressure;
  }
  return false;
}

// Peak pressure and muzzle velocity, with so many steps to the highest velocity that the charge could give.
PeakAndMuzzle integrate(const CalcState& s, int steps) {
  const double heat = s.chargeKg * s.ExwJ, K = s.Ba0 * s.effMass / (norm_P0 * s.boreM2);
  const double start = s.start_pressure >= 1e6 ? s.start_pressure * s.freeVol / ((s.Kap - 1) * heat) : 0;
  const double S0 = std::sqrt(1 + s.PDko * start), step = std::sqrt(2 * heat / s.effMass) / steps;
  Motion e{s.effMass, s.boreM2, s.freeVol, s.Kap - 1, heat, start, S0 * K, s.PDko * K * K / 4};
  Stretch at{0, 0, 0};
  const double change = 2 / s.PDko * (std::sqrt(1 + s.PDko * s.Limz1) - S0) / K;
  if (run_law(e, at, change, step, s.travelM)) return {at.highest, at.v};
  const double root = std::sqrt(1 - s.Limz1), fall = s.Ba1 / 2 * K, whole = root + fall * change;
  e.z0 = 1 - whole * whole, e.z1 = 2 * whole * fall, e.z2 = -fall * fall;
  if (run_law(e, at, change + root / fall, step, s.travelM)) return {at.highest, at.v};
  e.z0 = 1, e.z1 = 0, e.z2 = 0;
  run_law(e, at, step * steps, step, s.travelM);
  return {at.highest, at.v};
}

// The least number of steps that gives both figures for all loads.
int steps_needed(const std::vector<CalcState>& loads) {
  for (int steps = 8;; ++steps) {
    double worst = 0;
    for (const CalcState& s : loads) {
      const PeakAndMuzzle exact = integrate_shot(s, 1e-12).figures, got = integrate(s, steps);
      worst =
          std::max({worst, std::fabs(got.pMax / exact.pMax - 1), std::fabs(got.vMuzzle / exact.vMuzzle - 1)});
    }
    if (worst <= kFigures || steps == 1000) return steps;
  }
}

void measure(const char* variant, double start_pressure, int schrit, const char* step) {
  const std::vector<CalcState> loads = ladder(start_pressure, schrit);
  static ShotCurve curve, out;
  ShotResult result;
  Calls calls;
  std::vector<Evaluated> runs;
  std::vector<ShotResult> results;
  double points = 0, expansions = 0;
  for (const CalcState& s : loads) {
    const ShotOutcome outcome = runShot(s, curve, result);
    runs.push_back(evaluated(s, curve, result, outcome));
    results.push_back(result);
    add_calls(calls, runs.back());
    points += outcome.points;
    expansions += static_cast<double>(outcome.expansions);
  }
  const int steps = steps_needed(loads);
  volatile double sink = 0;
  const double shot = seconds_of([&] {
    for (const CalcState& s : loads) runShot(s, curve, result);
  });
  const double functions = seconds_of([&] {
    for (std::size_t i = 0; i < runs.size(); ++i) own(loads[i], runs[i], out, results[i]);
  });
  const double formulas = seconds_of([&] {
    for (const Evaluated& e : runs) bare(e, out);
  });
  const double alone = seconds_of([&] { sink = call_all(calls); });
  const double integration = seconds_of([&] {
    for (const CalcState& s : loads) sink = integrate(s, steps).vMuzzle;
  });
  const auto n = static_cast<double>(loads.size());
  fmt::print("{:<15} {:<7} {:>8.0f} {:>8.2f} {:>7.1f} {:>11.1f} {:>6.2f} {:>6.2f} {:>6.2f} {:>8.1f} {:>6}\n",
             variant, step, n / shot, 1e6 * shot / n, points / n, expansions / n, shot / functions,
             shot / formulas, shot / alone, shot / integration, steps);
}

}  // namespace

int main() {
  fmt::print("{:<15} {:<7} {:>8} {:>8} {:>7} {:>11} {:>6} {:>6} {:>6} {:>8} {:>6}\n", "variant", "step",
             "shots/s", "us/shot", "points", "expansions", "/own", "/bare", "/calls", "/integr", "steps");
  constexpr std::array<const char*, 3> kSteps{"normal", "fine", "coarse"};
  for (const double start : {0.0, 25e6}) {
    for (const int schrit : {2, 0, 1}) {
      measure(start > 0 ? "start pressure" : "plain", start, schrit,
              kSteps[static_cast<std::size_t>(schrit)]);
    }
  }
}
