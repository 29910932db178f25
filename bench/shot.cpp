// How fast a shot is: shots a second for each variant and step setting, what a shot evaluates, and two ratios
// measured in the same run: to the time of the calls of pow and log that the shot makes, made alone (the
// floor), and to an integration of the model's differential equations by a controlled Dormand-Prince stepper
// at the loosest tolerance that gives the peak pressure to 1e-4.
#include "engine/shot.h"
#include "example_loads.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <boost/numeric/odeint.hpp>
#include <cmath>
#include <ctime>
#include <vector>

#include "engine/burn_model.h"

namespace {

using namespace tv;

constexpr int kBatches = 9;
constexpr double kBatchSeconds = 0.03;

// Processor time, best of several batches: a busy machine is only ever slower than it could be.
template <typename Work>
double seconds_of(Work work) {
  double best = 1e9;
  for (int batch = 0; batch < kBatches; ++batch) {
    const std::clock_t start = std::clock();
    int rounds = 0;
    double took = 0;
    do {
      for (int n = 0; n < 10; ++n) work();
      rounds += 10;
      took = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    } while (took < kBatchSeconds);
    best = std::min(best, took / rounds);
  }
  return best;
}

// A ladder of charges, as a table runs it.
std::vector<CalcState> ladder(double start_pressure, int schrit) {
  std::vector<CalcState> loads;
  for (int n = 0; n < 16; ++n) {
    CalcState s = test::worked_load();
    s.chargeGr = 64 + 0.6 * n;
    s.Ba0 = 0.45;
    s.start_pressure = start_pressure;
    s.schrit = schrit;
    convertUnits(s);
    prepareShot(s);
    loads.push_back(s);
  }
  return loads;
}

// --- The floor

struct Calls {
  std::vector<std::array<double, 2>> powers;
  std::vector<double> logs;
};

void add_phase2(Calls& calls, const BurnModel& m, double w) {
  calls.powers.push_back({(w - m.rootLo) / m.fromLo, m.powerLo});
  calls.powers.push_back({m.fromHi / (w - m.rootHi), m.powerHi});
}

// Calls that the logged points of one shot make; points that were gone back over repeat the last of them.
void add_calls(Calls& calls, const CalcState& s, const ShotCurve& c, const ShotResult& r,
               const ShotOutcome& outcome) {
  BurnModel m = burn_inputs(s);
  phase1_constants(m);
  if (r.z1Idx >= 0) phase2_constants(m);
  const int burnt = r.burnIdx >= 0 ? r.burnIdx : r.lastIdx;
  const int changed = r.z1Idx >= 0 ? r.z1Idx : burnt;
  const auto point = [&](std::size_t n) {
    const int i = static_cast<int>(n);
    const std::array<double, 2> expansion{c.sigma[n] + 1, i <= changed ? m.g : m.kappa - 1};
    if (i > changed && i <= burnt) return add_phase2(calls, m, c.w[n]);
    calls.powers.push_back(expansion);
    if (m.hasStartPress) calls.powers.push_back(expansion);
  };
  const auto logged = static_cast<std::size_t>(r.lastIdx) + 1;
  for (std::size_t n = 0; n < logged; ++n) point(n);
  for (int n = r.lastIdx + 1; n < outcome.points; ++n) point(static_cast<std::size_t>(n) % logged);
  for (std::size_t n = 2; n < logged; ++n) calls.powers.push_back({c.v[n] / r.vMuzzle, 0.25});
  for (long n = 0; n < 2 * outcome.expansions; ++n) {
    calls.logs.push_back(c.z[static_cast<std::size_t>(n) % logged] + 1e-3);
  }
}

double floor_of(const Calls& calls) {
  volatile double sink = 0;
  return seconds_of([&] {
    double sum = 0;
    for (const auto& call : calls.powers) sum += std::pow(call[0], call[1]);
    for (const double x : calls.logs) sum += std::log(x);
    sink = sum;
  });
}

// --- The integration

using State = std::array<double, 3>;  // v, x, z

struct Equations {
  const CalcState& s;
  double pressure(const State& at) const {
    const double energy = s.chargeKg * s.ExwJ * at[2] - s.effMass * at[0] * at[0] / 2;
    return (s.Kap - 1) * energy / (s.freeVol + s.boreM2 * at[1]);
  }
  void operator()(const State& at, State& slope, double) const {
    const double p = pressure(at), z = at[2];
    const double form = z < s.Limz1 ? std::sqrt(1 + s.PDko * z) : s.Ba1 * std::sqrt(std::max(0.0, 1 - z));
    slope = {s.boreM2 * p / s.effMass, at[0], s.Ba0 / norm_P0 * p * form};
  }
};

// How an integration reads its peak: as the highest of its own points, as the walk does, or more cleverly by
// a parabola over the three highest, which lets it take wider steps.
enum class Peak { highest, parabola };

// Peak pressure of an integration from ignition to the muzzle.
double integrate(const CalcState& s, double tolerance, Peak reading) {
  namespace odeint = boost::numeric::odeint;
  const Equations equations{s};
  auto stepper = odeint::make_controlled(tolerance, tolerance, odeint::runge_kutta_dopri5<State>());
  // Without a start pressure a trace of powder must burn already, or nothing would ever start.
  const double z0 =
      s.start_pressure >= 1e6 ? s.start_pressure * s.freeVol / ((s.Kap - 1) * s.chargeKg * s.ExwJ) : 1e-4;
  State at{0, 0, z0};
  double t = 0, dt = 1e-6;
  std::array<std::array<double, 2>, 3> last{};  // t, p
  double peak = 0;
  while (at[1] < s.travelM && t < 1) {
    if (stepper.try_step(equations, at, t, dt) != odeint::success) continue;
    last = {last[1], last[2], {t, equations.pressure(at)}};
    peak = std::max(peak, last[2][1]);
    if (reading == Peak::parabola && last[0][1] > 0 && last[1][1] >= last[0][1] && last[1][1] > last[2][1]) {
      const double h1 = last[1][0] - last[0][0], h2 = last[2][0] - last[1][0];
      const double d1 = (last[1][1] - last[0][1]) / h1, d2 = (last[2][1] - last[1][1]) / h2;
      const double bend = (d2 - d1) / (h1 + h2), slope = (d1 * h2 + d2 * h1) / (h1 + h2);
      peak = std::max(peak, last[1][1] - slope * slope / (4 * bend));
    }
  }
  return peak;
}

double worst_peak(const std::vector<CalcState>& loads, double tolerance, Peak reading) {
  double worst = 0;
  for (const CalcState& s : loads) {
    const double exact = integrate(s, 1e-12, Peak::parabola);
    worst = std::max(worst, std::fabs(integrate(s, tolerance, reading) / exact - 1));
  }
  return worst;
}

// Time of the integrations at the loosest tolerance that serves.
double integration_time(const std::vector<CalcState>& loads, Peak reading) {
  double tolerance = 1e-1;
  while (tolerance > 1e-14 && worst_peak(loads, tolerance, reading) > 1e-4) tolerance /= 10;
  volatile double sink = 0;
  return seconds_of([&] {
    for (const CalcState& s : loads) sink = integrate(s, tolerance, reading);
  });
}

void measure(const char* variant, double start_pressure, int schrit, const char* step) {
  const std::vector<CalcState> loads = ladder(start_pressure, schrit);
  static ShotCurve curve;
  ShotResult result;
  Calls calls;
  double points = 0, expansions = 0;
  for (const CalcState& s : loads) {
    const ShotOutcome outcome = runShot(s, curve, result);
    add_calls(calls, s, curve, result, outcome);
    points += outcome.points;
    expansions += static_cast<double>(outcome.expansions);
  }
  const auto n = static_cast<double>(loads.size());
  const double shot = seconds_of([&] {
    for (const CalcState& s : loads) runShot(s, curve, result);
  });
  const double alone = floor_of(calls);
  const double like = integration_time(loads, Peak::highest);
  const double clever = integration_time(loads, Peak::parabola);
  fmt::print("{:<15} {:<7} {:>9.0f} {:>8.1f} {:>8.1f} {:>11.1f} {:>7.2f} {:>13.1f} {:>9.1f}\n", variant, step,
             n / shot, 1e6 * shot / n, points / n, expansions / n, shot / alone, like / shot, clever / shot);
}

}  // namespace

int main() {
  fmt::print("{:<15} {:<7} {:>9} {:>8} {:>8} {:>11} {:>7} {:>13} {:>9}\n", "variant", "step", "shots/s",
             "us/shot", "points", "expansions", "/floor", "integr./shot", "parabola");
  constexpr std::array<const char*, 3> kSteps{"normal", "fine", "coarse"};
  for (const double start : {0.0, 25e6}) {
    for (const int schrit : {2, 0, 1}) {
      measure(start > 0 ? "start pressure" : "plain", start, schrit,
              kSteps[static_cast<std::size_t>(schrit)]);
    }
  }
}
