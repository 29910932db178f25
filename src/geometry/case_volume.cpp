#include "geometry/case_volume.h"

#include <algorithm>
#include <cmath>

#include "engine/calc_state.h"
#include "engine/checked.h"

namespace tv {
namespace {

// The same in mm.
struct Millimetres {
  double L1, L2, L3, LR, R1, P1, P2, H1, H2;
};
Millimetres in_mm(const CaseBody& b, double Hlen) {
  const auto mm = [](double inch) { return inch * kMmPerInch; };
  return {mm(b.l1), mm(b.l2), mm(Hlen), mm(b.rim), mm(b.rim_dia), mm(b.P1), mm(b.P2), mm(b.H1), mm(b.H2)};
}

double cylinder(double h, double d) { return kPi * h * ((d / 2) * (d / 2)) / 1000; }

double frustum(double h, double a, double c) {
  return (h / 3) * kPi * ((a / 2) * (a / 2) + (c / 2) * (c / 2) + a * c / 4) / 1000;
}

bool measured(const Millimetres& m, CaseForm form) {
  if (!(std::min({m.LR, m.R1, m.P1, m.L1, m.P2}) > 0)) return false;
  return form != kBottleneck || std::min({m.L2, m.H1, m.L3, m.H2}) > 0;
}

double outside(const Millimetres& m, const CaseBody& b) {
  double V = cylinder(m.LR, m.R1) + frustum(m.L1 - m.LR, m.P1, m.P2);
  if (case_form(b.Shape) == kBottleneck)
    V = V + frustum(m.L2 - m.L1, m.P2, m.H1) + frustum(m.L3 - m.L2, m.H1, m.H2);
  return case_head(b.Shape) == kRimless ? V - extractor_groove(m.P1) : V;
}

}  // namespace

CaseForm case_form(int Shape) {
  const int form = Shape % 10;
  return form == kCone || form == kCylinder ? static_cast<CaseForm>(form) : kBottleneck;
}

CaseHead case_head(int Shape) {
  const int head = Shape / 10;
  return head == kRimmed || head == kBelted ? static_cast<CaseHead>(head) : kRimless;
}

double case_density(CaseMaterial material) {
  return material == kSteel ? dicht_fe : material == kAluminium ? dicht_al : dicht_ms;
}

double extractor_groove(double P1_mm) { return (P1_mm / 2) * (P1_mm / 2) * 0.0016; }

CaseVolume case_volume(const CaseBody& b, double Hlen, CaseMaterial material, double weight_g) {
  const Millimetres m = in_mm(b, Hlen);
  const CaseForm form = case_form(b.Shape);
  if (!(form == kBottleneck ? weight_g >= 1 : weight_g > 0)) return {CaseFinding::weight_missing};
  if (!measured(m, form)) return {};
  const double V = outside(m, b), C = V - weight_g / case_density(material);
  if (!(C >= 0) || !std::isfinite(C)) return {};
  return {CaseFinding::none, V, C, C * kGrainsPerGram * dicht_H2, C * dicht_H2};
}

std::optional<double> estimated_sebert(const CaseBody& b) try {
  const Millimetres m = in_mm(b, 0);
  const double d = (m.H2 > 0 ? m.H2 : m.P2) * 0.91;
  const double A = m.L1 > 0 ? checked_div(m.L1 * 0.096, d) : 0.96;
  const double B = checked_div(m.H2 * 0.69, m.P1 > 0 ? m.P1 : m.P2);
  const double C = m.P2 > 0 ? 1.15 * ((d / m.P2) * (d / m.P2)) : 1.15;
  const double E = checked_div(10.52, checked_pow(d, 1.5));
  return finite((2 * B + A + C + E) / 5);
} catch (const ArithmeticFailure&) {
  return {};
}

std::optional<double> neck_angle(const CaseBody& b) {
  const double dd = (b.P2 - b.H1) * kMmPerInch / 2, dl = (b.l2 - b.l1) * kMmPerInch;
  if (!(dl >= 0.005)) return {};
  if (dd == 0) return 0;
  return 90 - std::atan(dl / dd) * 180 / kPi;
}

}  // namespace tv
