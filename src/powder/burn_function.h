// The burn function of a powder: how fast the burnt fraction z grows at a given pressure. Four coefficients
// give two parts that meet at the limit z1; the engine burns by the same two laws (engine/burn_model.h), and
// here they are looked at and shaped.
//
// Ba0, Ba0 f(z) are in 1/s per 98066.5 Pa (shown as 1/(bar s)); z, Limz1 are fractions; PDko, Ba1 are bare.
#pragma once

#include <array>
#include <optional>
#include <vector>

namespace tv {

struct BurnLaw {
  double Ba0 = 0;    // vivacity: the value at z = 0; 0.001 to 1000
  double PDko = 0;   // progressive above 0, degressive below; -0.99 to 10000
  double Limz1 = 1;  // end of the first part; 0.01 to 1
  double Ba1 = 0;    // factor of the second part

  bool operator==(const BurnLaw&) const = default;
};

// Ba0 sqrt(1 + PDko z) below Limz1, from there on Ba1 Ba0 sqrt(1 - z). A Limz1 of 1 or more has no second
// part, at z = 1 neither. Not a number where the first root is negative.
double burn_rate(const BurnLaw& law, double z);

// The same law with the Ba1 that lets both parts meet at Limz1: 0 where there is no second part. A PDko not
// above -1 becomes -0.99 with a Ba1 of 1.001.
BurnLaw joined(BurnLaw law);

// Texts "hint<n>" of the burn function's section that tell what is wrong with a value, or how a fit went.
enum BurnHint : int {
  kNoHint = -1,
  kHintVivacity = 0,
  kHintCoefficient = 1,
  kHintLimit = 2,
  kHintRange = 3,
  kHintFewRows = 5,
  kHintRowsMissing = 6,
  kHintMeansMissing = 7,
  kHintTimes = 9,
  kHintPressures = 10,
  kHintNoFunction = 14,
  kHintFitted = 15,
  kHintBeyondLimit = 16,
  kHintStartOnly = 17,
  kHintLateRows = 18,
  kHintBlackPowder = 29,
};

// What keeps these coefficients from being taken: Ba0 not above 0, PDko below -2 or too low for the first
// root, Limz1 outside 0 to 1, or a value that no load may have (Ba0, the upper end of PDko, the lower end of
// Limz1). A PDko from -2 on passes, since joined() and handed_over() raise it.
BurnHint law_hint(const BurnLaw& law);

// One press of a shaping key.
enum class ShapingStep { more_vivacity, less_vivacity, more_PDko, less_PDko, later_limit, earlier_limit };
// The law after it: Ba0 and Limz1 by 0.01, PDko by 0.1; Limz1 stays within 0.01 and 1; Ba1 from the joint.
// Sums are cut to nine decimals, else a limit stepped up to 1 would miss it by a rounding error.
BurnLaw shaped(BurnLaw law, ShapingStep step);

// As a load takes it over: with the decimals on show (0.000 for Limz1, 0.0000 for the others), so that what
// is seen, run and saved is one, and a PDko that no load may have raised to -0.99, Ba1 then from the joint.
struct HandOver {
  BurnLaw law;
  bool raised = false;
};
HandOver handed_over(BurnLaw law);

// The drawn function.
struct BurnCurve {
  static constexpr int kSlots = 41;
  std::array<double, kSlots> slot{};  // at z = 0.025 i
  std::optional<double> joint;        // the value at Limz1, if there is a second part
  double top = 0;                     // 1.3 times the largest slot: the top of the axis
  BurnLaw law;                        // as drawn
};
// A Ba1 of exactly 1 is drawn as PDko -0.99999 and Ba1 1.0001, else both parts would be one root of 1 - z.
BurnCurve burn_curve(BurnLaw law);

// Grid step of an axis from 0 to top.
double burn_axis_step(double top);

// The steps of shaping, to be walked back and forth. It begins with the law found.
struct ShapingHistory {
  std::vector<BurnLaw> laws;
  std::size_t at = 0;
};
void begin_history(ShapingHistory& history, const BurnLaw& law);
// A new step drops what was undone before; the law at hand adds none.
void add_step(ShapingHistory& history, const BurnLaw& law);
bool can_undo(const ShapingHistory& history);
bool can_redo(const ShapingHistory& history);
// The law one step back or on; the present one at the end.
BurnLaw undo_step(ShapingHistory& history);
BurnLaw redo_step(ShapingHistory& history);

}  // namespace tv
