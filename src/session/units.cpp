#include "session/units.h"

#include <cmath>

#include "geometry/coefficients.h"
#include "session/session.h"

namespace tv::units {
namespace {

using S = const Session&;

constexpr double kPoundsPerKilogram = 2.2046;

double same(double v, S) { return v; }
double times_mm(double v, S) { return v * kMmPerInch; }
double by_mm(double v, S) { return v / kMmPerInch; }
double gram(double v, S) { return v / kGrainsPerGram; }
double grains(double v, S) { return v * kGrainsPerGram; }
double sqin(double v, S) { return v / kMm2PerSqIn; }
double sqmm(double v, S) { return v * kMm2PerSqIn; }
double cm3(double v, S) { return v / dicht_H2 / kGrainsPerGram; }
double grains_h2o(double v, S) { return v * kGrainsPerGram * dicht_H2; }
double chosen_MPa(double v, S s) { return v * s.state.pressure_unit_factor; }
double MPa_chosen(double v, S s) { return v / s.state.pressure_unit_factor; }
double psi_MPa(double v, S) { return 1000000 * v / kPaPerPsi; }
double MPa_psi(double v, S) { return v * kPaPerPsi / 1000000; }
double chosen_Pa(double v, S s) { return v * s.state.pressure_unit_factor / 1000000; }
double Pa_chosen(double v, S s) { return v * 1000000 / s.state.pressure_unit_factor; }
double psi_Pa(double v, S) { return v / kPaPerPsi; }
double Pa_psi(double v, S) { return v * kPaPerPsi; }

bool in_psi(S s) { return s.unit_mode == UnitMode::imperial; }
double mode_MPa(double v, S s) { return in_psi(s) ? psi_MPa(v, s) : chosen_MPa(v, s); }
double MPa_mode(double v, S s) { return in_psi(s) ? MPa_psi(v, s) : MPa_chosen(v, s); }
const char* whole_pattern(S) { return "0"; }
double mode_Pa(double v, S s) { return in_psi(s) ? psi_Pa(v, s) : chosen_Pa(v, s); }
double Pa_mode(double v, S s) { return in_psi(s) ? Pa_psi(v, s) : Pa_chosen(v, s); }
const char* mode_pattern(S s) { return in_psi(s) ? "0" : "0.0"; }

// A hundredth more, so that a whole number of feet does not show one too few.
double fps(double v, S) { return v * kFeetPerMetre + 0.01; }
double mps_fps(double v, S) { return v / kFeetPerMetre; }
double feet(double v, S) { return v * kFeetPerMetre; }
double pounds(double v, S) { return v * kPoundsPerKilogram; }
double kilograms(double v, S) { return v / kPoundsPerKilogram; }
double metro(double v, S) { return static_cast<double>(static_cast<float>(tv::metro_of_icao(v))); }
double by_metro(double v, S) { return icao_of_metro(v); }
double below_one(double v, S) { return (1 - v) * 100; }
double share(double v, S) { return 1 - v / 100; }

Limits by_factor(Limits l, S s) {
  return {l.least * s.state.pressure_unit_factor, l.most * s.state.pressure_unit_factor};
}
Limits by_mode(Limits l, S s) {
  if (!in_psi(s)) return by_factor(l, s);
  return {std::round(1e6 * l.least / kPaPerPsi), std::round(1e6 * l.most / kPaPerPsi)};
}

}  // namespace

const Unit plain{nullptr, same, same};
const Unit inch{"unit_in", same, same};
const Unit grain{"unit_gr", same, same};
const Unit grain_h2o{"unit_grh2o", same, same};
const Unit mm{"unit_mm", same, same};
const Unit mm2{"unit_mm2", same, same};
const Unit percent{"unit_percent", same, same};
const Unit kJ_per_kg{"unit_kJkg", same, same};
const Unit g_per_cm3{"unit_gccm", same, same};
const Unit mps{"unit_mps", same, same};
const Unit kg{"unit_kg", same, same};
const Unit minute{"unit_moa", same, same};
const Unit icao{nullptr, same, same, nullptr, nullptr, true};
const Unit metro_of_icao{nullptr, metro, by_metro, nullptr, nullptr, true};
const Unit mm_of_inch{"unit_mm", times_mm, by_mm};
const Unit inch_of_mm{"unit_in", by_mm, times_mm};
const Unit gram_of_grain{"unit_g", gram, grains};
const Unit sqin_of_mm2{"unit_sqin", sqin, sqmm};
const Unit cm3_of_grain{"unit_ccm", cm3, grains_h2o};
const Unit chosen_of_MPa{"*", chosen_MPa, MPa_chosen, nullptr, by_factor};
const Unit psi_of_MPa{"unit_psi", psi_MPa, MPa_psi};
const Unit chosen_of_Pa{"*", chosen_Pa, Pa_chosen, nullptr, by_factor};
const Unit psi_of_Pa{"unit_psi", psi_Pa, Pa_psi};
const Unit mode_of_Pa{"**", mode_Pa, Pa_mode, mode_pattern, by_mode};
const Unit mode_of_MPa{"**", mode_MPa, MPa_mode, whole_pattern, by_mode};
const Unit fps_of_mps{"unit_fps", fps, mps_fps};
const Unit ft_of_m{"unit_fps", feet, mps_fps};
const Unit lb_of_kg{"unit_lb", pounds, kilograms};
const Unit reduction{"unit_percent", below_one, share};

}  // namespace tv::units
