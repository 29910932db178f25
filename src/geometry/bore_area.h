// The cross-section of a rifled bore: what the gas pushes on, more than the land circle and less than the
// groove circle. Two profiles: lands and grooves with edges, and the polygon, a ring of arcs that run into
// each other. Lengths in mm, areas in mm2; entries are kept as float and calculated in double.
#pragma once

#include <vector>

namespace tv {

struct Rifling {
  bool polygon = false;
  float Dz = 0;            // groove diameter, entered from 1 to 609.6
  float Df = 0;            // land diameter, below Dz
  float n = 0;             // number of grooves, entered from 2 to 150
  float groove_width = 0;  // lands and grooves, entered from 0 to 1947
  float land_width = 0;    //
  float r1 = 0;            // polygon: radius of the lands
  float r2 = 0;            // polygon: radius of the grooves, not above r1
  bool operator==(const Rifling&) const = default;
};

// What stands for a radius that no tangent circle can have.
inline constexpr double kNoRadius = 2000;

enum class BoreFinding {
  none,
  value_missing,   // a value not above zero, or fewer than one groove
  land_not_below,  // Df is not below Dz
  no_area,         // the groove is wider than the bore, or both radii are the same: an earlier area stands
};

struct BoreArea {
  BoreFinding finding = BoreFinding::value_missing;
  double mm2 = 0;               // 0 with any finding
  bool radii_reversed = false;  // r1 below r2: calculated all the same, the result may be wrong
  bool outside = false;         // not between the land and the groove circle: no bore has this area
};
// Lands and grooves: the land circle and n ring pieces whose width is a chord at the mean diameter.
// Polygon: 2n pairs of sectors of the two arcs, with the triangles between their centres and the axis.
BoreArea bore_area(const Rifling& r);

// The width that the other one leaves: both share the circumference of the mean diameter (an arc, while the
// area takes the width for a chord). 0 unless Dz, Df and n are above zero; below zero when too wide.
float other_width(const Rifling& r, float entered);
// The mean width of a land as drawn, an arc at the mean diameter. 0 where there is no area.
double mean_land_width(const Rifling& r);

// The radius with which the arcs of land and groove touch without a bend; kNoRadius where the two diameters
// allow none.
float r1_of_r2(const Rifling& r);
float r2_of_r1(const Rifling& r);

// A piece of the outline, counter-clockwise: directions are those from its centre, radians.
struct BoreArc {
  double x = 0, y = 0, radius = 0, from = 0, to = 0;
};
// Once round, from the land on the x axis; land and groove in turn. Edges between them are straight. Empty
// where there is no area, or one that no bore has.
std::vector<BoreArc> bore_outline(const Rifling& r);

}  // namespace tv
