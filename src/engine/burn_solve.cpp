// Bisection for z at a travel, twice: literally, and with the signs at most midpoints known beforehand.
//
// The midpoints of a bisection follow from the signs at them, and s(z) rises from z0 on. A series about one
// evaluated point near the root, with a bound for what it leaves out, gives the sign at any midpoint near by
// and, as s rises, at all others. Only a midpoint whose difference lies closer to the tolerance than the
// bound is evaluated. Where a condition of this is not met the literal bisection does the work.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "engine/burn_model.h"
#include "engine/checked.h"

namespace tv {
namespace {

constexpr double kTolerance = 0.000002;  // of s, ends the bisection
constexpr double kHighest = 1.5;         // upper end of the search
constexpr double kEnough = 1.4;          // a midpoint from here on is the answer, whatever its difference
constexpr int kHalvings = 1000;
constexpr int kAnchorMoves = 6;

struct Bracket {
  double lo, hi, mid;
  explicit Bracket(double z0) : lo(z0), hi(kHighest), mid((z0 + kHighest) / 2) {}
  // Selects, no branches: nothing could foretell them.
  void halve(bool above) {
    hi = above ? mid : hi;
    lo = above ? lo : mid;
    mid = (lo + hi) / 2;
  }
};

double target(const BurnModel& c, double x) {
  return 1 - checked_pow(checked_div(c.V0, x * c.A + c.V0), (c.kappa - 1) / 2);
}

double evaluate(const BurnModel& c, BurnSolver& solver, double& z) {
  ++solver.evaluations;
  return expansionOfBurn(c, z);
}

double bisect(const BurnModel& c, BurnSolver& solver, double T) {
  Bracket at(c.z0);
  for (int halvings = 0;; ++halvings) {
    const double d = evaluate(c, solver, at.mid) - T;
    if (std::fabs(d) < kTolerance || at.mid >= kEnough || halvings == kHalvings) return at.mid;
    at.halve(d > 0);
  }
}

// Bound of the rounding error of a computed s(z) for z from z0 to 1.5, infinite where none is known. Each of
// the logarithms and roots is exact to an ulp or so; what S - 1 loses for small b z is worst at z0.
double noise_of(const BurnModel& c) {
  constexpr double kUnknown = INFINITY;
  constexpr double kRounding = 32 * 2.3e-16;
  // Above 1.5 b = -1 no midpoint meets the correction of z.
  if (!(c.cBurn > 0) || !(c.z0 > 0) || !(c.z0 < 1) || !(c.b > -0.66)) return kUnknown;
  const double lnZ0 = std::fabs(std::log(c.z0));
  if (c.b == 0) return kRounding * (2 + c.z0 * (1 + lnZ0)) * c.cBurn;
  const double lost = (1 + c.s0Root) / std::fabs(c.s0Root - 1);
  const double sum = 1 + lnZ0 + c.s0Root * (1 + std::fabs(c.lnRoot0) + lost);
  return kRounding * sum * std::fabs(c.cScale);
}

// A little below the cube root of x > 0: a third of its exponent and of its mantissa, taken on the bits, lies
// between the root and 1.059 of it.
double below_cube_root(double x) {
  constexpr std::uint64_t kTwoThirdsOfTheBias = std::uint64_t{682} << 52;
  return 0.94 * std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) / 3 + kTwoThirdsOfTheBias);
}

// Farther than where the series is good to a part of the tolerance it is of no use.
void cut_reach(BurnSolver::Anchor& a) {
  a.reach = std::min(a.reach, below_cube_root(0.5 * kTolerance / a.remainder));
}

// s(z) at z with its first two derivatives, a bound for the third within the reach, and that reach:
// s' = k/z (1 - q), q = s0Root/S, k = 2 cBurn/b, and so on. Within an eighth of z and of S^2/|b| on either
// side, powers of 1/z and 1/S change by less than the factor 1.6, q by less than 0.07 q.
void set_anchor(const BurnModel& c, BurnSolver& solver, double z, double s) {
  BurnSolver::Anchor& a = solver.anchor;
  a.z = z;
  a.s = s;
  a.reach = z / 8;
  if (c.b == 0) {
    a.ds = c.cBurn * (1 - c.z0 / z);
    a.d2 = c.cBurn * c.z0 / (z * z);
    a.remainder = 1.6 * 2 * a.d2 / z / 6;
    cut_reach(a);
    return;
  }
  const double S2 = c.b * z + 1;
  const double q = c.s0Root / std::sqrt(S2);
  const double bend = c.b / S2;
  a.ds = c.cScale / z * (1 - q);
  a.d2 = c.cScale / z * ((q - 1) / z + q * bend / 2);
  const double steep =
      (2 / z * (std::fabs(1 - q) + 0.07 * q) + q * std::fabs(bend)) / z + 0.75 * q * bend * bend;
  a.remainder = std::fabs(c.cScale) / z * 1.6 * steep / 6;
  a.reach = std::min(a.reach, 1 / std::fabs(bend) / 8);
  cut_reach(a);
}

// The root of the series about the anchor, or where its straight part has it.
double series_root(const BurnSolver::Anchor& a, double T) {
  const double r = a.s - T;
  const double radicand = a.ds * a.ds - 2 * a.d2 * r;
  return radicand >= 0 ? a.z - 2 * r / (a.ds + std::sqrt(radicand)) : a.z - r / a.ds;
}

// Differences s(z) - T by the series, and how far they can be from the computed ones.
struct Signs {
  double z, d, ds, d2, remainder, reach, noise;
  double difference(double u) const { return d + u * (ds + u * d2 / 2); }
  double error(double u) const { return remainder * std::fabs(u * u * u) + noise; }
  // True when every midpoint out of reach is known to lie off the root on its own side.
  bool enclose(double z0) const {
    return difference(reach) - error(reach) > kTolerance &&
           (z - reach < z0 || difference(-reach) + error(reach) < -kTolerance);
  }
};

double bisect_by_signs(const BurnModel& c, BurnSolver& solver, const Signs& signs, double T) {
  Bracket at(c.z0);
  for (int halvings = 0;; ++halvings) {
    const double u = at.mid - signs.z;
    double d = u;
    if (std::fabs(u) <= signs.reach) {
      d = signs.difference(u);
      if (std::fabs(std::fabs(d) - kTolerance) <= signs.error(u)) d = evaluate(c, solver, at.mid) - T;
      if (std::fabs(d) < kTolerance) return at.mid;
    }
    if (at.mid >= kEnough || halvings == kHalvings) return at.mid;
    at.halve(d > 0);
  }
}

// Near z0, where s is flat, s is about cBurn / (2 z0 s0Root^2) (z - z0)^2.
double first_estimate(const BurnModel& c, double T) {
  return c.z0 + std::sqrt(2 * T * c.z0 * (c.b == 0 ? 1 : c.s0Root * c.s0Root) / c.cBurn);
}

}  // namespace

double burnSolveLiteral(const BurnModel& c, BurnSolver& solver, double x) {
  return bisect(c, solver, target(c, x));
}

double burnSolve(const BurnModel& c, BurnSolver& solver, double x) {
  const double T = target(c, x);
  if (solver.noise < 0) solver.noise = noise_of(c);
  if (!(solver.noise < 0.02 * kTolerance) || !(T >= 0) || !(T < 0.99)) return bisect(c, solver, T);
  for (int move = 0; move < kAnchorMoves; ++move) {
    double z = 0;
    if (solver.anchored) {
      const BurnSolver::Anchor& a = solver.anchor;
      const Signs signs{a.z, a.s - T, a.ds, a.d2, a.remainder, a.reach, solver.noise};
      if (signs.enclose(c.z0)) return bisect_by_signs(c, solver, signs, T);
      z = series_root(solver.anchor, T);
    } else {
      z = first_estimate(c, T);
    }
    if (!(z >= c.z0)) z = c.z0 + std::fabs(solver.anchor.z - c.z0) / 2;
    if (!(z < kEnough)) z = kEnough;
    const double s = evaluate(c, solver, z);
    solver.anchored = s < 0.999;  // beyond that s is cut, and its derivatives are not those of the cut value
    if (!solver.anchored) break;
    set_anchor(c, solver, z, s);
  }
  return bisect(c, solver, T);
}

}  // namespace tv
