// The powder of a load fitted to measured velocities: the vivacity Ba0, and one more number where the data
// can tell it. Capacity, bullet and barrel stay as they are. Velocity alone says little of pressure: the fit
// moves the peak with the velocity as the model has it, and cannot know more.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "calculators/measured.h"
#include "engine/shot.h"

namespace tv {

struct FitPoint {
  double charge_gr = 0;  // grains
  double velocity = 0;   // mean, m/s
  double sd = 0;         // of the sample, m/s; 0 unknown
  int count = 0;         // shots; 0 unknown
};
// One point for each series whose charge is known and that has a velocity that counts.
std::vector<FitPoint> fit_points(std::span<const MeasuredSeries> series);

enum class FitNumbers { automatic, one, two };
enum class FitVerdict { determined, barely, undetermined };

struct FittedNumber {
  const char* key = "";      // of the load: abkof0, prodeg, anfdru
  double value = 0;          // in its unit
  double error = 0;          // standard error; 0 when nothing tells the scatter
  double low = 0, high = 0;  // 95 % interval
};

struct ShotFigures {
  double pMax = 0;     // Pa
  double vMuzzle = 0;  // m/s
};

// Of a load with another charge; nothing if the shot cannot be run.
std::optional<ShotFigures> shot_figures(CalcState s, double charge_gr);

struct PowderFit {
  FitVerdict verdict = FitVerdict::undetermined;
  std::vector<FittedNumber> fitted;  // Ba0 first; empty if no fit was possible
  double correlation = 0;            // of the two numbers
  std::vector<double> residuals;     // measured less calculated, m/s, one a point
  ShotFigures before, after;         // at the load's own charge; zeros for a shot that fails
  CalcState state;                   // the load with the fitted numbers; as it was when undetermined
};

// Least squares over the single shot, weight 1/s^2 with s the standard error of a point's mean; a point
// without spread or count takes the pooled spread, and without any all weigh the same.
// in:  s with all that a shot needs, in user units; charges above 0
// out: intervals by Student's t from the pooled spread, widened by the scatter about the fit where that is
//      greater. With PDko, Ba1 follows, so that the joint of the burn law keeps its jump. Two numbers need
//      three charges. automatic: two where the second one is determined, else one.
// why: the verdict is of the half interval. Ba0 is determined within 5 %, barely within 15 %; PDko within
//      0.25 and 0.75; the start pressure within 20 and 60 %. A fit that ends at the edge of what a number may
//      be, or one charge that is not met, is undetermined; no scatter known at all is barely at best.
PowderFit fit_powder(const CalcState& s, std::span<const FitPoint> points,
                     FitNumbers numbers = FitNumbers::automatic);

}  // namespace tv
