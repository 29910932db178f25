#include "geometry/bore_area.h"

#include <cmath>

#include "engine/calc_state.h"
#include "engine/checked.h"

namespace tv {
namespace {

constexpr float kMostGrooves = 1000;  // of an outline

double lobe_angle(const Rifling& r) { return kPi / static_cast<double>(r.n); }

double circle(double diameter) { return kPi / 4 * diameter * diameter; }

bool all_above_zero(const Rifling& r) {
  const bool shape = r.polygon ? r.r1 > 0 && r.r2 > 0 : r.groove_width > 0 && r.land_width > 0;
  return r.Dz > 0 && r.Df > 0 && r.n >= 1 && shape;
}

double half_groove_angle(const Rifling& r) {
  const double Dz = r.Dz, Df = r.Df;
  return checked_asin(2 * static_cast<double>(r.groove_width) / (Dz + Df));
}

double land_and_groove_area(const Rifling& r) {
  const double Dz = r.Dz, Df = r.Df, n = r.n;
  return finite(kPi / 4 * (Df * Df) + n / 4 * (Dz * Dz - Df * Df) * half_groove_angle(r));
}

// The first groove's centre, and the angle over which the land's arc goes until they touch.
struct Lobe {
  double theta, x, y, land_angle;
};
Lobe lobe(const Rifling& r) {
  const double Dz = r.Dz, r1 = r.r1, r2 = r.r2, theta = lobe_angle(r);
  const double k = checked_div(Dz - 2 * r2, r1 - r2);
  const double v = r1 * k * 0.5 * std::sin(theta);
  return {theta, (Dz / 2 - r2) * std::cos(theta), (Dz / 2 - r2) * std::sin(theta), checked_asin(v / r1)};
}

double polygon_area(const Rifling& r) {
  const double Df = r.Df, r1 = r.r1, r2 = r.r2;
  const Lobe l = lobe(r);
  const double T1 = l.land_angle / 2 * (r1 * r1);
  const double T2 = (l.x + r1 - Df / 2) * l.y / 2;
  const double T3 = l.x * l.y / 2;
  const double T4 = (l.theta - l.land_angle) / 2 * (r2 * r2);
  return finite(2 * static_cast<double>(r.n) * (T1 - T2 + T3 + T4));
}

BoreFinding finding_before(const Rifling& r) {
  if (!all_above_zero(r)) return BoreFinding::value_missing;
  return r.Df < r.Dz ? BoreFinding::none : BoreFinding::land_not_below;
}

float radius(double N, double D) { return static_cast<float>(D == 0 ? kNoRadius : N / D); }

}  // namespace

BoreArea bore_area(const Rifling& r) try {
  BoreArea a;
  a.finding = finding_before(r);
  if (a.finding != BoreFinding::none) return a;
  a.radii_reversed = r.polygon && r.r1 < r.r2;
  a.mm2 = r.polygon ? polygon_area(r) : land_and_groove_area(r);
  a.outside = a.mm2 < circle(r.Df) || a.mm2 > circle(r.Dz);
  return a;
} catch (const ArithmeticFailure&) {
  return {BoreFinding::no_area, 0, r.polygon && r.r1 < r.r2, false};
}

float other_width(const Rifling& r, float entered) {
  if (!(r.Dz > 0 && r.Df > 0 && r.n > 0)) return 0;
  const double Dz = r.Dz, Df = r.Df, n = r.n;
  return static_cast<float>((Df + Dz) * kPi / (2 * n) - static_cast<double>(entered));
}

double mean_land_width(const Rifling& r) {
  if (r.polygon || bore_area(r).finding != BoreFinding::none) return 0;
  return (lobe_angle(r) - half_groove_angle(r)) * (static_cast<double>(r.Dz) + static_cast<double>(r.Df)) / 2;
}

float r1_of_r2(const Rifling& r) {
  const double Dz = r.Dz, Df = r.Df, r2 = r.r2, c = std::cos(lobe_angle(r));
  const double N = (Dz * Dz + Df * Df) / 4 + r2 * c * Df - Dz * c * Df / 2 - r2 * Dz;
  return radius(N, Df - (2 - 2 * c) * r2 - Dz * c);
}

float r2_of_r1(const Rifling& r) {
  const double Dz = r.Dz, Df = r.Df, r1 = r.r1, c = std::cos(lobe_angle(r));
  const double N = (Dz * Dz + Df * Df) / 4 + r1 * c * Dz - Dz * c * Df / 2 - r1 * Df;
  return radius(N, Dz - (2 - 2 * c) * r1 - Df * c);
}

std::vector<BoreArc> bore_outline(const Rifling& r) {
  const BoreArea area = bore_area(r);
  if (area.finding != BoreFinding::none || area.outside || r.n > kMostGrooves) return {};
  const double theta = lobe_angle(r), Rz = static_cast<double>(r.Dz) / 2, Rf = static_cast<double>(r.Df) / 2;
  const double r1 = r.polygon ? static_cast<double>(r.r1) : Rf,
               r2 = r.polygon ? static_cast<double>(r.r2) : Rz;
  const double land = r.polygon ? lobe(r).land_angle : theta - half_groove_angle(r);
  const double groove = theta - land;
  std::vector<BoreArc> arcs;
  for (int i = 0; i < static_cast<int>(r.n); ++i) {
    const double a = 2 * i * theta, b = a + theta;
    arcs.push_back({(Rf - r1) * std::cos(a), (Rf - r1) * std::sin(a), r1, a - land, a + land});
    arcs.push_back({(Rz - r2) * std::cos(b), (Rz - r2) * std::sin(b), r2, b - groove, b + groove});
  }
  return arcs;
}

}  // namespace tv
