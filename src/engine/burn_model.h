// The lumped burn model of one shot, solved in closed form: what each of the three phases needs once, and the
// functions that turn one value of the walking variable into one point. SI units throughout.
//
// Gas of the fraction z of the charge w0 drives the mass m down the bore A (docs/model.md has the whole
// model):
//   m dv/dt = A p                                     motion
//   p (V0 + A x) = (kappa - 1) (w0 Q z - m v^2 / 2)   energy
//   dz/dt = (a / P0) p sqrt(1 + b z)                  burn law up to z1
//   dz/dt = (a / P0) f p sqrt(1 - z)                  burn law after z1
// Elimination of t makes z a function of v in each phase, and the energy equation then has a closed solution
// over ln(1 + sigma). Every function here may throw ArithmeticFailure; runShot catches it.
#pragma once

#include "engine/calc_state.h"

namespace tv {

// One point of the curve: travel m, velocity m/s, mean pressure Pa, burnt fraction, relative expansion A x /
// V0.
struct BurnPoint {
  double x = 0, v = 0, p = 0, z = 0, sigma = 0;
};

// Inputs of the model and the constants derived from them, phase by phase. What has no unit here is a number.
struct BurnModel {
  double a = 0;                // vivacity: burnt fraction per second at the pressure P0
  double b = 0;                // progressivity up to z1
  double f = 0;                // factor of the burn law behind z1
  double z1 = 0;               // burnt fraction where the law changes
  double kappa = 0;            // ratio of specific heats
  double Q = 0;                // explosion heat, J/kg
  double w0 = 0;               // charge, kg
  double m = 0;                // bullet and the share of the charge that moves with it, kg
  double A = 0;                // bore, m2
  double V0 = 0;               // free volume, m3
  double P0 = norm_P0;         // pressure unit of a, Pa
  double sigmaEnd = 0;         // relative expansion at the muzzle
  bool hasStartPress = false;  // start-pressure variant, else the plain one
  double z0 = 0;               // fraction that gives the start pressure at constant volume

  // Phase 1, over s = 1 - (1 + sigma)^-g. K v is the burn integral: what z has come to by the first law.
  double kBurn = 0;      // K = a m / (P0 A), s/m
  double kvZ1 = 0;       // K v at z1
  double kvBurn = 0;     // K v at burnout
  double kEff = 0;       // exponent of the expansion while powder burns; 1 has no solution
  double g = 0;          // (kEff - 1) / 2
  double vScale = 0;     // v = |s vScale|, m/s
  double sPeak = 0;      // s at the peak, equal to sBurn where burning ends before it
  double sBurn = 0;      // s at burnout
  double sigmaPeak = 0;  // sigma at the peak
  double sigmaZ1 = 0;    // sigma at z1; from phase 2 on, where that phase began

  // Phase 1 with a start pressure: s = 1 - (1 + sigma)^(-(kappa - 1) / 2) is a function of z.
  double kRatio = 0;   // (kappa + 1) / (kappa - 1)
  double cBurn = 0;    // m / (2 K^2 w0 Q)
  double s0Root = 0;   // sqrt(1 + b z0)
  double cScale = 0;   // 2 cBurn / b
  double lnZ0 = 0;     // ln z0
  double lnRoot0 = 0;  // ln |(s0Root - 1) / (s0Root + 1)|

  // Phase 2, over w = K h v: sigma + 1 is a product of powers of the distances of w to two roots.
  double dRoot = 0;   // sqrt(1 - z) = dRoot - f K v / 2
  double eConst = 0;  // 1 - dRoot^2
  double fConst = 0;  // f dRoot
  double h = 0;       // -fConst / eConst
  double iConst = 0;  // of the quadratic in w, whose roots follow
  double jConst = 0;
  double rootHi = 0;
  double rootLo = 0;
  double eScale = 0;   // 1 / ((rootHi - rootLo) iConst)
  double powerLo = 0;  // exponents of the distances
  double powerHi = 0;
  double fromLo = 0;  // wZ1 less the roots
  double fromHi = 0;
  double wZ1 = 0;     // w at z1
  double wEnd = 0;    // w at burnout
  double vZ1 = 0;     // v at z1 with a start pressure, m/s
  double wOverV = 0;  // K h, s/m
  double rootZ1 = 0;  // sqrt(1 - z1)

  // Phase 3, the expansion from burnout on.
  double adiaConst = 0;  // heat left to the gas there, as a part of all, times (1 + sigma)^(kappa - 1)
  double volBurn = 0;    // gas volume there, m3
  double vBurn = 0;      // velocity there, m/s
  double pBurn = 0;      // pressure there, Pa
};

// The model with the inputs of s and z0; nothing else is set.
BurnModel burn_inputs(const CalcState& s);

// Constants of phase 1. False when kEff is exactly 1, where the model has no solution.
bool phase1_constants(BurnModel& model);

struct BurnSolver;
// The point at sigma. first: point 0, where with a start pressure z0 has burnt and the bullet is at rest.
BurnPoint stepPhase1(const BurnModel& model, BurnSolver& solver, double sigma, bool first);

void phase2_constants(BurnModel& model);
// The point at w; model.sigmaZ1 is the expansion at which phase 2 began.
BurnPoint stepPhase2(const BurnModel& model, double w);

// Constants of phase 3 from the last point of phase 2 or, where the law never changes, of phase 1.
void phase3_from_phase2(BurnModel& model, const BurnPoint& burnout);
void phase3_from_phase1(BurnModel& model, const BurnPoint& burnout);
BurnPoint stepPhase3(const BurnModel& model, double sigma);

// K v at z, with a start pressure.
double velocityOfBurn(const BurnModel& model, double z);

// s = 1 - (1 + sigma)^(-(kappa - 1) / 2) at z, with a start pressure. Neglects the difference between the
// gas energy and (1 - s) w0 Q z. A z with b z not above -1 is corrected in place; s is at most 0.999999.
double expansionOfBurn(const BurnModel& model, double& z);

// Bisection for z at the travel x, and its count of evaluations of expansionOfBurn. Both give the same
// value to the last bit: the first midpoint that hits the target within 0.000002.
struct BurnSolver {
  // A point of s(z) with its derivatives; the series about it gives the signs of midpoints near by.
  struct Anchor {
    double z = 0, s = 0, ds = 0, d2 = 0;
    double remainder = 0;  // s(z + u) is the series to u^2 within remainder |u|^3 ...
    double reach = 0;      // ... for |u| up to here
  };
  Anchor anchor;
  bool anchored = false;
  double noise = -1;  // bound of the rounding error of s; negative: not yet known
  long evaluations = 0;
};
double burnSolve(const BurnModel& model, BurnSolver& solver, double x);
double burnSolveLiteral(const BurnModel& model, BurnSolver& solver, double x);

// What follows from a finished walk; for runShot.
void baseCurve(const CalcState& s, ShotCurve& curve, ShotResult& result);
void integrateTime(ShotCurve& curve, ShotResult& result);
// Takes the energy of the bore friction from the velocities; vMuzzle becomes the highest one. False when the
// bullet stuck: lastIdx is then the last point it passed. A pressure not above 1 Pa changes nothing.
bool applyBoreFriction(const CalcState& s, ShotCurve& curve, ShotResult& result);

}  // namespace tv
