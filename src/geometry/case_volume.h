// What a case holds, estimated from the outside of its drawing and its weight: a stack of cylinder and
// truncated cones, less the metal. With it a first guess of Sebert's factor, and the angle of the shoulder.
#pragma once

#include <optional>

namespace tv {

enum CaseForm : int { kBottleneck = 0, kCone = 1, kCylinder = 2 };
enum CaseHead : int { kRimless = 0, kRimmed = 1, kBelted = 2 };
enum CaseMaterial : int { kBrass = 0, kSteel = 1, kAluminium = 2 };

// The outside of the case, inch; zeros where it was not measured. Lengths are from the head.
struct CaseBody {
  double l1 = 0, l2 = 0;        // to where the shoulder and the neck begin
  double rim = 0, rim_dia = 0;  // head or rim: its length and diameter
  double P1 = 0, P2 = 0;        // diameter of the body at the head and at the shoulder
  double H1 = 0, H2 = 0;        // diameter of the neck at the shoulder and at the mouth
  int Shape = 0;                // CaseForm + 10 * CaseHead
  bool operator==(const CaseBody&) const = default;
};
// Bottleneck and rimless for a number that says neither.
CaseForm case_form(int Shape);
CaseHead case_head(int Shape);

// Density of the material, g/cm3.
double case_density(CaseMaterial material);

enum class CaseFinding {
  none,
  weight_missing,  // below 1 g for a bottleneck, not above 0 for the others
  no_capacity,     // a dimension is not above zero, or the metal takes more than there is
};
struct CaseVolume {
  CaseFinding finding = CaseFinding::no_capacity;
  double outside_cm3 = 0;  // all of them 0 with any finding
  double inside_cm3 = 0;
  double water_gr = 0;  // at dicht_H2
  double water_g = 0;
};
// in:  Hlen length of the case [inch], weight_g its weight [g]
// why: a rimless case loses its extractor groove, which grows with the square of the body
CaseVolume case_volume(const CaseBody& b, double Hlen, CaseMaterial material, double weight_g);

// What the extractor groove of a rimless case takes from its outside, cm3; in mm.
double extractor_groove(double P1_mm);

// A first guess of Sebert's factor from the slimness of the case, its neck and the bore, which is taken as
// 0.91 of the mouth (of P2 where the mouth was not measured). Nothing where that is not known either.
std::optional<double> estimated_sebert(const CaseBody& b);

// Half the angle of the shoulder, degrees. Nothing where shoulder and neck begin at one place (less than
// 0.005 mm apart); 0 without a step.
std::optional<double> neck_angle(const CaseBody& b);

}  // namespace tv
