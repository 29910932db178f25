// From the units of the screens to the record that a shot runs on.
#include <algorithm>

#include "engine/checked.h"
#include "engine/shot.h"

namespace tv {
namespace {

constexpr double kGrainsPerKg = kGrainsPerGram * 1000;

bool within(double x, double low, double high) { return x >= low && x <= high; }

SetUp check_ranges(const CalcState& s) {
  if (!within(s.Exw, 1, 10000)) return SetUp::Exw;
  if (!within(s.Ba0, 0.001, 1000)) return SetUp::Ba0;
  if (!within(s.Kap, 1.001, 1.999)) return SetUp::Kap;
  if (!within(s.PDko, -0.99, 10000)) return SetUp::PDko;
  if (!within(s.Limz1, 0.01, 1)) return SetUp::Limz1;
  if (!within(s.Pdens, 0.001, 100)) return SetUp::Pdens;
  if (!(s.chargeGr > 0)) return SetUp::chargeGr;
  return SetUp::ok;
}

// Free volume, expansion and moving mass at the charge in chargeKg. False when there is no chamber left; the
// volume is tested before anything is divided by it.
bool set_charge(CalcState& s) {
  s.freeVol = finite(s.caseM3 - checked_div(s.chargeKg, s.Pdens * 1000));
  if (!(s.freeVol > kLeastFreeVol)) return false;
  s.sigmaEnd = finite(checked_div(s.boreM2, s.freeVol) * s.travelM);
  s.effMass = finite(s.dim.sebf * s.chargeKg + s.bulletKg);
  setBaseStep(s);
  return true;
}

}  // namespace

const char* set_up_field(SetUp refused) {
  switch (refused) {
    case SetUp::Exw:
      return "Exw";
    case SetUp::Ba0:
      return "Ba0";
    case SetUp::Kap:
      return "Kap";
    case SetUp::PDko:
      return "PDko";
    case SetUp::Limz1:
      return "Limz1";
    case SetUp::Pdens:
      return "Pdens";
    case SetUp::chargeGr:
    case SetUp::freeVol:
    case SetUp::failed:
      return "MPgn";
    case SetUp::ok:
      break;
  }
  return "";
}

void convertUnits(CalcState& s) {
  s.bulletKg = s.dim.Bwg / kGrainsPerKg;
  s.travelM = s.dim.Wob * 0.001;
  s.caseM3 = s.dim.Veff / dicht_H2 / (kGrainsPerGram * 1000000);
  s.boreM2 = s.dim.qfq / 1000000;
}

SetUp prepareShot(CalcState& s) {
  const SetUp refused = check_ranges(s);
  if (refused != SetUp::ok) return refused;
  s.ExwJ = s.Exw * 1000;
  s.chargeKg = s.chargeGr / kGrainsPerKg;
  try {
    return set_charge(s) ? SetUp::ok : SetUp::freeVol;
  } catch (const ArithmeticFailure&) {
    return SetUp::failed;
  }
}

void setBaseStep(CalcState& s) {
  const double c = s.schrit == 1 ? 0.0025 : s.schrit == 2 ? 0.05 : 0.005;
  s.baseStep = (s.boreM2 / s.freeVol) * c * std::max(s.travelM, 1.0);
}

double start_pressure_bound(const CalcState& s) {
  return (s.Kap - 1) * s.chargeKg * s.ExwJ * s.Limz1 / (1.5 * s.freeVol);
}

double loading_ratio(double charge_g, double bulk_density, double Veff_cm3) {
  if (!(bulk_density > 0) || !(Veff_cm3 > 0)) return 0;
  const double percent = 100 * charge_g / (bulk_density * Veff_cm3);
  return std::isfinite(percent) ? percent : 0;
}

bool quickShot(CalcState& s, ShotCurve& curve, ShotResult& result) {
  try {
    if (!(s.chargeKg > 0) || !set_charge(s)) return false;
  } catch (const ArithmeticFailure&) {
    return false;
  }
  return runShot(s, curve, result, ShotFor::row).ok();
}

}  // namespace tv
