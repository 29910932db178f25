// Loads for the tests and benches of the engine: reasonable random ones and hostile ones.
#pragma once

#include <cmath>
#include <limits>
#include <random>

#include "engine/shot.h"
#include "example_loads.h"

namespace tv::test {

inline SetUp set_up(CalcState& s) {
  convertUnits(s);
  return prepareShot(s);
}

// A load set up and run, with what came of it. Large: make it static.
struct Shot {
  CalcState s = worked_load();
  ShotCurve c;
  ShotResult r;
  ShotOutcome outcome;

  bool run() {
    if (set_up(s) != SetUp::ok) return false;
    outcome = runShot(s, c, r);
    return outcome.ok();
  }
  std::size_t last() const { return static_cast<std::size_t>(r.lastIdx); }
};

// Factor after z1 at which the burn rate does not jump.
inline double continuous_factor(double b, double z1) { return std::sqrt(1 + b * z1) / std::sqrt(1 - z1); }

class LoadMaker {
public:
  explicit LoadMaker(unsigned seed) : engine_(seed) {}

  double between(double low, double high) {
    // Not uniform_real_distribution, whose values are the library's own affair.
    return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
  }
  bool chance(double p) { return between(0, 1) < p; }

  // Loads such as people shoot, from pistol to magnum, set up and ready to run.
  CalcState reasonable(bool start_pressure) {
    for (;;) {
      CalcState s;
      s.dim.qfq = between(22, 100);
      s.dim.Bwg = between(40, 300);
      s.dim.Veff = between(20, 110);
      s.dim.Wob = between(120, 750);
      s.dim.sebf = between(0.3, 0.6);
      s.Exw = between(3300, 4300);
      s.Kap = between(1.2, 1.27);
      s.Pdens = between(1.5, 1.68);
      s.Ba0 = between(0.25, 0.9);
      s.PDko = chance(0.05) ? 0 : between(-0.5, 3);
      s.Limz1 = chance(0.05) ? 1 : between(0.25, 0.9);
      s.Ba1 = s.Limz1 == 1 ? 1 : continuous_factor(s.PDko, s.Limz1) * between(0.85, 1.2);
      s.chargeGr = s.dim.Veff * between(0.6, 0.95);
      s.start_pressure = start_pressure ? between(5e6, 45e6) : 0;
      s.schrit = static_cast<int>(between(0, 2.999));
      if (set_up(s) != SetUp::ok) continue;
      // What a gun stands: the mean pressure to the muzzle stays well below a limit no steel meets.
      ShotResult r;
      if (runShot(s, scratch_, r).ok() && r.pMax < 700e6 && r.pMax > 60e6) return s;
    }
  }

  // The base with one to four inputs of the run itself replaced, and nothing checked.
  CalcState wild(const CalcState& base) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr double kWild[] = {0,      -0.0,  1,    -1,     1e-300,       -1e-300,     1e300,
                                -1e300, 1e-9,  1e9,  5e-324, kInf,         -kInf,       NAN,
                                1e15,   -1e15, 1e-5, 1e5,    1.0000000001, 0.9999999999};
    CalcState s = base;
    double* const inputs[] = {
        &s.Kap,      &s.Ba0,     &s.Ba1,      &s.PDko,     &s.Limz1,    &s.start_pressure,
        &s.bulletKg, &s.caseM3,  &s.boreM2,   &s.travelM,  &s.ExwJ,     &s.chargeKg,
        &s.freeVol,  &s.effMass, &s.sigmaEnd, &s.baseStep, &s.dim.sebf, &s.frictionPress};
    s.frictionOn = chance(0.2);
    for (int k = 1 + below(4); k > 0; --k) {
      double* const input = inputs[below(std::size(inputs))];
      const double value = kWild[below(std::size(kWild))];
      *input = chance(0.5) ? value : *input * std::exp(between(-12, 12));
    }
    return s;
  }

  // Anywhere within the ranges that the set-up accepts, often at their edges; set up and ready to run.
  CalcState edge() {
    for (;;) {
      CalcState s = edge_inputs();
      if (set_up(s) != SetUp::ok) continue;
      const double bound = start_pressure_bound(s);
      s.start_pressure = chance(0.3) ? 0 : chance(0.3) ? bound : bound * between(0, 1.2);
      s.frictionOn = chance(0.2);
      s.frictionPress = between(0, 30e6);
      return s;
    }
  }

private:
  int below(std::size_t n) { return static_cast<int>(between(0, static_cast<double>(n) - 0.001)); }
  double wide(double low, double high) {
    if (chance(0.15)) return low;
    if (chance(0.15)) return high;
    return std::exp(between(std::log(low), std::log(high)));
  }
  CalcState edge_inputs() {
    CalcState s;
    s.Exw = wide(1, 10000);
    s.Kap = 1 + wide(0.001, 0.999);
    s.Ba0 = wide(0.001, 1000);
    s.PDko = chance(0.3) ? 0 : chance(0.3) ? -between(0, 0.99) : wide(1e-9, 10000);
    if (chance(0.05)) s.PDko = -0.99;
    s.Limz1 = wide(0.01, 1);
    s.Ba1 = chance(0.5) ? wide(0.001, 1000) : continuous_factor(s.PDko, s.Limz1);
    s.Pdens = wide(0.5, 100);
    s.dim.Bwg = wide(0.1, 100000);
    s.dim.Veff = wide(0.1, 10000);
    s.dim.qfq = wide(0.1, 10000);
    s.dim.Wob = wide(0.01, 100000);
    s.dim.sebf = between(0, 12);
    s.chargeGr = s.dim.Veff * wide(1e-6, 1);
    s.schrit = below(3);
    // A chamber a hair above the least one.
    if (chance(0.1)) s.chargeGr = s.Pdens / dicht_H2 * s.dim.Veff * (1 - 1e-4 * between(0, 1));
    return s;
  }

  std::mt19937_64 engine_;
  ShotCurve scratch_;
};

}  // namespace tv::test
