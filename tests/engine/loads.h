// Loads for the tests of the engine: one real one, reasonable random ones and hostile ones.
#pragma once

#include <cmath>
#include <random>

#include "engine/shot.h"
#include "example_loads.h"

namespace tv::test {

inline SetUp set_up(CalcState& s) {
  convertUnits(s);
  return prepareShot(s);
}

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

private:
  std::mt19937_64 engine_;
  ShotCurve scratch_;
};

}  // namespace tv::test
