#include "engine/burn_model.h"

#include "engine/checked.h"

namespace tv {
namespace {

// From this start pressure on, Pa, the burn begins under it; a lower one only enters the base pressure.
constexpr double kLeastStartPressure = 1000000;
// Tolerance of the bisection for the peak, in s.
constexpr double kPeakTolerance = 0.000002;

double squared(double x) { return x * x; }

double pressure(const BurnModel& c, double x, double v, double z) {
  return checked_div((c.kappa - 1) * (c.w0 * c.Q * z - c.m * v * v / 2), x * c.A + c.V0);
}

double log_root(double S) { return checked_log(std::fabs(checked_div(S - 1, S + 1))); }

// s(z) without its upper limit.
double expansion_unlimited(const BurnModel& c, double z) {
  if (c.b == 0) return finite((z - c.z0 - c.z0 * checked_log(checked_div(z, c.z0))) * c.cBurn);
  const double S = checked_sqrt(c.b * z + 1);
  return finite((checked_log(z) - c.lnZ0 - (log_root(S) - c.lnRoot0) * c.s0Root) * c.cScale);
}

void plain_phase1(BurnModel& c) {
  c.sPeak = checked_div(c.kEff - 1, 2 * c.kEff);
  c.sBurn = checked_div(c.kvBurn, c.vScale * c.kBurn);
  const double sZ1 = checked_div(c.kvZ1, c.vScale * c.kBurn);
  if (!(std::fabs(c.sBurn) < std::fabs(c.sPeak)) && c.sPeak > 0 && c.sBurn < 0) c.sPeak = c.sBurn;
  if (!(std::fabs(c.sPeak) < std::fabs(c.sBurn))) c.sPeak = c.sBurn;
  const double inverse = checked_div(1, c.g);
  c.sigmaPeak = checked_pow(checked_div(1, 1 - c.sPeak), inverse) - 1;
  c.sigmaZ1 = sZ1 < 1 ? checked_pow(checked_div(1, 1 - sZ1), inverse) - 1 : c.sigmaEnd;
}

// s at the z where the pressure peaks: there s(z) meets the falling h(z).
double peakSolve(const BurnModel& c) {
  double lo = 0, hi = 1.1, mid = 0.55, s = 0;
  for (int round = 1;; ++round) {
    double h = 0;
    if (c.b == 0) {
      h = 1 - (mid - c.z0) * c.kRatio * c.cBurn;
    } else {
      const double S = checked_sqrt(c.b * mid + 1);
      h = 1 - checked_div(c.cScale * c.kRatio * (S - c.s0Root), S);
    }
    s = expansion_unlimited(c, mid);
    if (std::fabs(finite(s - h)) < kPeakTolerance || !(mid < 1) || round > 1000) return s;
    if (!(s - h > 0)) {
      lo = mid;
      mid = (hi + mid) / 2;
    } else {
      hi = mid;
      mid = (lo + mid) / 2;
    }
    if (mid > 1) mid = 1;
  }
}

double sigma_of(double s, double power) { return checked_div(1, checked_pow(1 - s, power)) - 1; }

void start_pressure_phase1(BurnModel& c) {
  c.kRatio = checked_div(c.kappa + 1, c.kappa - 1);
  c.cBurn = checked_div(squared(checked_div(1, c.kBurn)) * c.m, 2 * c.w0 * c.Q);
  c.s0Root = checked_sqrt(c.b * c.z0 + 1);
  if (c.b != 0) {
    c.lnZ0 = checked_log(c.z0);
    c.lnRoot0 = log_root(c.s0Root);
    c.cScale = checked_div(2 * c.cBurn, c.b);
  }
  const double power = checked_div(2, c.kappa - 1);
  double z = c.z1;
  c.sigmaZ1 = sigma_of(expansionOfBurn(c, z), power);
  if (c.sigmaZ1 > c.sigmaEnd) c.sigmaZ1 = c.sigmaEnd;
  z = 1;
  const double sigmaBurn = sigma_of(expansionOfBurn(c, z), power);
  c.sBurn = 1 - checked_div(1, checked_pow(sigmaBurn + 1, c.g));
  const double xPeakEstimate = checked_div(c.V0, c.A) * sigma_of(peakSolve(c), power);
  c.sigmaPeak = finite(checked_div(c.A, c.V0) * xPeakEstimate);
  c.sPeak = 1 - checked_div(1, checked_pow(c.sigmaPeak + 1, c.g));
  if (!(std::fabs(c.sPeak) < std::fabs(c.sBurn))) c.sPeak = c.sBurn;
}

}  // namespace

BurnModel burn_inputs(const CalcState& s) {
  BurnModel c;
  c.a = finite(s.Ba0);
  c.b = finite(s.PDko);
  c.f = finite(s.Ba1);
  c.z1 = finite(s.Limz1);
  c.kappa = finite(s.Kap);
  c.Q = finite(s.ExwJ);
  c.w0 = finite(s.chargeKg);
  c.m = finite(s.effMass);
  c.A = finite(s.boreM2);
  c.V0 = finite(s.freeVol);
  c.sigmaEnd = finite(s.sigmaEnd);
  c.hasStartPress = finite(s.start_pressure) >= kLeastStartPressure;
  c.z0 = checked_div(s.start_pressure * c.V0, (c.kappa - 1) * c.w0 * c.Q);
  return c;
}

bool phase1_constants(BurnModel& c) {
  c.kEff =
      finite(c.kappa - (c.kappa - 1) * squared(checked_div(c.a, c.P0 * c.A)) * (c.b / 2) * c.m * c.w0 * c.Q);
  if (c.kEff == 1) return false;
  if (c.b == 0) {
    c.kvBurn = 1;  // the burn integral of b = 0 is z itself
    c.kvZ1 = c.z1;
  } else {
    c.kvZ1 = finite(checked_div(2, c.b) * (checked_sqrt(c.b * c.z1 + 1) - 1));
    c.kvBurn = finite(checked_div(2, c.b) * (checked_sqrt(c.b + 1) - 1));
  }
  c.kBurn = checked_div(c.a * c.m, c.P0 * c.A);
  c.g = (c.kEff - 1) / 2;
  c.vScale = checked_div((c.kappa - 1) * 2 * c.a * c.w0 * c.Q, (c.kEff - 1) * c.P0 * c.A);
  if (c.hasStartPress) {
    start_pressure_phase1(c);
  } else {
    plain_phase1(c);
  }
  return true;
}

namespace {

// s = 1 - (1 + sigma)^-g of the plain solution.
double plain_expansion(const BurnModel& c, double sigma) {
  return 1 - checked_div(1, checked_pow(sigma + 1, c.g));
}

// Whether plain_expansion is sure not to fail, without computing its power.
bool tame(const BurnModel& c, double sigma) { return std::fabs(c.g) < 100 && sigma >= 0 && sigma < 1000; }

}  // namespace

BurnPoint stepPhase1(const BurnModel& c, BurnSolver& solver, double sigma, bool first) {
  BurnPoint point;
  point.sigma = sigma;
  point.x = c.V0 * sigma / c.A;  // A is not 0, or there would be no constants
  if (c.hasStartPress) {
    if (!tame(c, sigma))
      plain_expansion(c, sigma);  // not read here, but it fails the run where it has no value
    point.z = first ? c.z0 : burnSolve(c, solver, point.x);
    point.v = checked_div(velocityOfBurn(c, point.z), c.kBurn);
    if (c.b != 0 && !(c.b * point.z > -1)) point.z = -0.999 / c.b;  // the correction of expansionOfBurn
  } else {
    point.v = std::fabs(plain_expansion(c, sigma) * c.vScale);
    const double y = point.v * c.kBurn;
    point.z = y * (1 + (c.b / 4) * y);
  }
  point.p = pressure(c, point.x, point.v, point.z);
  return point;
}

double velocityOfBurn(const BurnModel& c, double z) {
  if (c.b == 0) return z - c.z0;
  return checked_div(2, c.b) * (checked_sqrt(z * c.b + 1) - c.s0Root);
}

double expansionOfBurn(const BurnModel& c, double& z) {
  if (c.b != 0 && !(c.b * z > -1)) z = -0.999 / c.b;
  const double s = expansion_unlimited(c, z);
  return s >= 1 ? 0.999999 : s;
}

void phase2_constants(BurnModel& c) {
  c.dRoot =
      finite(c.b == 0 ? checked_sqrt(1 - c.z1) + c.z1 * c.f / 2
                      : checked_sqrt(1 - c.z1) + checked_div((checked_sqrt(c.b * c.z1 + 1) - 1) * c.f, c.b));
  c.eConst = finite(1 - squared(c.dRoot));
  c.fConst = finite(c.f * c.dRoot);
  c.h = checked_div(-c.fConst, c.eConst);
  c.iConst =
      finite(squared(checked_div(c.a, c.P0 * c.A)) * squared(c.f) * (c.kappa - 1) * c.m * c.w0 * c.Q * 0.25 +
             (c.kappa - 1) / 2);
  c.jConst =
      checked_div(-(squared(checked_div(c.P0 * c.A, c.a)) * squared(checked_div(1, c.fConst))) * c.eConst,
                  (c.kappa - 1) * c.m * c.w0 * c.Q);
  const double radicand = checked_sqrt(1 - 4 * c.iConst * c.jConst);
  c.rootHi = checked_div(1 + radicand, 2 * c.iConst * c.jConst);
  c.rootLo = checked_div(1 - radicand, 2 * c.iConst * c.jConst);
  c.eScale = checked_div(1, (c.rootHi - c.rootLo) * c.iConst);
  if (c.hasStartPress) {
    c.wZ1 = finite(velocityOfBurn(c, c.z1) * c.h);
    c.vZ1 = checked_div(c.wZ1, c.kBurn * c.h);
    c.wEnd = finite(c.wZ1 + checked_div(checked_sqrt(1 - c.z1) * 2 * c.h, c.f));
  } else {
    c.wZ1 = finite(c.b == 0 ? c.h * c.z1 : checked_div(2 * c.h, c.b) * (checked_sqrt(c.b * c.z1 + 1) - 1));
    c.wEnd = checked_div(2 * c.h * c.dRoot, c.f);
  }
  c.fromLo = finite(c.wZ1 - c.rootLo);
  c.fromHi = finite(c.wZ1 - c.rootHi);
  c.powerLo = finite(c.eScale * c.rootLo);
  c.powerHi = finite(c.eScale * c.rootHi);
  c.wOverV = finite(c.kBurn * c.h);
  c.rootZ1 = checked_sqrt(1 - c.z1);
}

BurnPoint stepPhase2(const BurnModel& c, double w) {
  const double lo = w - c.rootLo, hi = w - c.rootHi;
  // The second form is the solution and the first its reciprocal; this test decides, not the sign of eConst.
  const bool reciprocal = !(c.fromLo > 0);
  const double R = reciprocal ? checked_pow(checked_div(c.fromLo, lo), c.powerLo) *
                                    checked_pow(checked_div(hi, c.fromHi), c.powerHi)
                              : checked_pow(checked_div(lo, c.fromLo), c.powerLo) *
                                    checked_pow(checked_div(c.fromHi, hi), c.powerHi);
  BurnPoint point;
  point.sigma = finite(R * (c.sigmaZ1 + 1) - 1);
  point.x = c.V0 * point.sigma / c.A;
  point.v = checked_div(w, c.wOverV);
  if (c.hasStartPress) {
    point.z = 1 - squared(c.rootZ1 - (point.v - c.vZ1) * (c.f / 2) * c.kBurn);
  } else {
    point.z = c.fConst * w / c.h + c.eConst - squared(point.v * c.a * c.m * c.f / (2 * c.P0 * c.A));
  }
  point.p = pressure(c, point.x, point.v, point.z);
  return point;
}

namespace {

// keFrac: share of the energy of the charge that the bullet has at burnout.
void phase3_constants(BurnModel& c, const BurnPoint& burnout, double keFrac) {
  c.adiaConst = finite((1 - keFrac) * checked_pow(burnout.sigma + 1, c.kappa - 1));
  c.volBurn = burnout.x * c.A + c.V0;
  c.vBurn = burnout.v;
  c.pBurn = burnout.p;
}

}  // namespace

void phase3_from_phase2(BurnModel& c, const BurnPoint& burnout) {
  const double keFrac =
      checked_div(squared(checked_div(c.P0 * c.wEnd * c.A, c.a * c.h)), 2 * c.m * c.w0 * c.Q);
  phase3_constants(c, burnout, keFrac);
}

void phase3_from_phase1(BurnModel& c, const BurnPoint& burnout) {
  const double s = plain_expansion(c, burnout.sigma);
  phase3_constants(c, burnout, checked_div(s * c.kvBurn * (c.kappa - 1), c.kEff - 1));
}

BurnPoint stepPhase3(const BurnModel& c, double sigma) {
  BurnPoint point;
  point.sigma = sigma;
  point.x = c.V0 * sigma / c.A;
  point.z = 1;
  if (c.hasStartPress) {
    const double V = point.x * c.A + c.V0;
    const double ratio = checked_div(c.volBurn, V);
    point.p = c.pBurn * checked_pow(ratio, c.kappa);
    const double gained =
        checked_div(c.pBurn * c.volBurn, c.kappa - 1) * (1 - checked_pow(ratio, c.kappa - 1));
    point.v = checked_sqrt(checked_div(2 * (c.m * squared(c.vBurn) / 2 + gained), c.m));
  } else {
    // The absolute value keeps the root valid when adiaConst lies above the expansion at burnout.
    const double left = 1 - checked_div(c.adiaConst, checked_pow(sigma + 1, c.kappa - 1));
    point.v = checked_sqrt(std::fabs(checked_div(2 * left * c.w0 * c.Q, c.m)));
    point.p = pressure(c, point.x, point.v, 1);
  }
  return point;
}

}  // namespace tv
