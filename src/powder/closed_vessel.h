// Vivacities measured in a closed vessel, and the burn function fitted to them: through two chosen rows of a
// table, or from two mean values alone. Also the ratio of specific heats from one firing.
#pragma once

#include <array>
#include <optional>

#include "powder/burn_function.h"

namespace tv {

inline constexpr int kVivacityRows = 9;

// A row: P/Pm, 0.01 to 0.99, and the vivacity Ba0 f(z) measured there, 1/(bar s), 0.0001 to 1000. 0: none.
struct VivacityPoint {
  double x = 0, f = 0;

  bool operator==(const VivacityPoint&) const = default;
};
// The ratios of an empty table are 0.1 to 0.9.
struct VivacityTable {
  std::array<VivacityPoint, kVivacityRows> rows;

  VivacityTable();
  bool operator==(const VivacityTable&) const = default;
};

// The rows chosen for a fit, from 0, -1 for none. With two of them the first has the lower index.
struct RowMarks {
  int first = -1, second = -1;

  int count() const { return (first >= 0) + (second >= 0); }
  bool has(int row) const { return row >= 0 && (row == first || row == second); }
  bool operator==(const RowMarks&) const = default;
};
// Marks a row or takes its mark off; a third mark has no effect.
void toggle_mark(RowMarks& marks, int row);

// Rows by their ratio, rising; rows of one ratio keep their order. The marks go with their rows.
void sort_rows(VivacityTable& table, RowMarks& marks);

// The law whose first part passes through both points, with its joint at Limz1; nothing if there is none, or
// its Ba0 is none a load may have. PDko follows from the squared quotient q of the values at the points:
//   q (1 + PDko x2) = 1 + PDko x1
// With a Limz1 of 1 one point is enough: the function then falls to 0 at z = 1.
std::optional<BurnLaw> fit_through(VivacityPoint a, VivacityPoint b, double Limz1);

// The value at 0.8 that two means hold: the six values from 0.3 to 0.8 less the five from 0.3 to 0.7.
double value_at_80(double mean37, double mean38);
// The law with a flat first part whose second part passes through the value v at 0.8. A Limz1 of 0.8 or more
// leaves no second part to do so and becomes 0.5. Nothing where v is not above 0 or the law would be none.
// It takes one value of the means only: a place to start from, its own means may be far off.
std::optional<BurnLaw> law_from_means(double v, double Limz1);

// The function at 0, 0.1 .. 1, and its means over 0.3 to 0.7 and 0.3 to 0.8.
struct VivacityMeans {
  std::array<double, 11> value{};
  double mean37 = 0, mean38 = 0;
};
VivacityMeans means_of(const BurnCurve& curve);
// More than 1 percent from a mean entered; false for one not above 0.
bool is_off(double mean, double entered);

// What a fit is made from.
enum class FitKind { rows, too_few_rows, rows_missing, means };
// Rows if all values and two marks are there; with a value missing both means do.
FitKind fit_kind(const VivacityTable& table, const RowMarks& marks, double mean37, double mean38);

// A fit of the two chosen rows: their points in the order of x, and the law if there is one. The table is
// sorted.
struct RowFit {
  VivacityPoint a, b;
  std::optional<BurnLaw> law;
  bool beyond_limit = false;  // a chosen row lies beyond Limz1, where the fitted part does not hold
};
RowFit fit_rows(VivacityTable& table, RowMarks& marks, double Limz1);

// The row that the function misses by most, and by how much of its value; -1 with no row filled.
struct RowMiss {
  int row = -1;
  double percent = 0;
};
RowMiss largest_miss(const VivacityTable& table, const BurnLaw& law);

// Ratio of specific heats from one firing in a closed vessel: p V = (kappa - 1) Q m with the volume that the
// solid powder leaves.
// in:  Q [kJ/kg], p_MPa, charge_g, chamber_cm3, solid density rho [g/cm3]
// out: nothing if one of them is 0 or the result is not finite
std::optional<double> heat_ratio(double Q, double p_MPa, double charge_g, double chamber_cm3, double rho);
// What a load may have: 1.001 to 1.999.
bool is_heat_ratio(double cp_cv);

}  // namespace tv
