// The lumped burn model of one shot, solved in closed form: what each of the three phases needs once, and the
// functions that turn one value of the walking variable into one point. SI units throughout.
//
// Gas of the fraction z of the charge w0 drives the mass m down the bore A (docs/model.md tells the model):
//   m dv/dt = A p                                     motion
//   p (V0 + A x) = (kappa - 1) (w0 Q z - m v^2 / 2)   energy
//   dz/dt = (a / P0) p sqrt(1 + b z)                  burn law up to z1
//   dz/dt = (a / P0) f p sqrt(1 - z)                  burn law after z1
// Elimination of t makes z a function of v in each phase, and the energy equation then has a closed solution
// over ln(1 + sigma). Every function here may throw ArithmeticFailure; runShot catches it.
#pragma once

#include "engine/calc_state.h"

namespace tv {

// One point of the curve.
struct BurnPoint {
  double x = 0, v = 0, p = 0, z = 0, sigma = 0;
};

// Inputs of the model and the constants derived from them, phase by phase.
struct BurnModel {
  double a = 0, b = 0, f = 0, z1 = 0;  // vivacity, progressivity, factor after z1, change of law
  double kappa = 0, Q = 0, w0 = 0;     // ratio of specific heats, J/kg, charge in kg
  double m = 0, A = 0, V0 = 0;         // effective mass kg, bore m2, free volume m3
  double P0 = norm_P0;                 // pressure unit of a, Pa
  double sigmaEnd = 0;                 // relative expansion at the muzzle
  bool hasStartPress = false;          // start-pressure variant, else the plain one
  double z0 = 0;                       // fraction that gives the start pressure at constant volume

  // Phase 1. K v is the burn integral: kvZ1 and kvBurn are its values at z1 and at burnout.
  double kEff = 0, kvZ1 = 0, kvBurn = 0;
  double kBurn = 0;  // K = a m / (P0 A)
  double g = 0, vScale = 0;
  double sPeak = 0, sBurn = 0, sigmaPeak = 0, sigmaZ1 = 0;  // s = 1 - (1 + sigma)^-g
  // Phase 1 with a start pressure.
  double cBurn = 0, s0Root = 0, kRatio = 0;
  double lnZ0 = 0, lnRoot0 = 0, cScale = 0;  // parts of expansionOfBurn that stay the same in a run

  // Phase 2, over w = K h v.
  double dRoot = 0, eConst = 0, fConst = 0, h = 0, iConst = 0, jConst = 0;
  double rootHi = 0, rootLo = 0, eScale = 0;
  double wZ1 = 0, wEnd = 0, vZ1 = 0;
  double fromLo = 0, fromHi = 0, powerLo = 0, powerHi = 0;  // wZ1 less the roots, and their exponents
  double wOverV = 0, rootZ1 = 0;                            // K h; sqrt(1 - z1)

  // Phase 3.
  double adiaConst = 0, volBurn = 0, vBurn = 0, pBurn = 0;
};

// The model with the inputs of s and z0; nothing else is set.
BurnModel burn_inputs(const CalcState& s);

// Constants of phase 1. False when kEff is exactly 1, where the model has no solution.
bool phase1_constants(BurnModel& model);

struct BurnSolver;
// The point at sigma. first: point 0, which with a start pressure stands at z0 with the bullet at rest.
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
  // A point of s(z) with its derivatives; the series about it tells the signs of midpoints near by.
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
