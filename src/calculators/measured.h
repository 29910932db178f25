// What measured strings say: mean, spread and interval.
#pragma once

#include <span>
#include <vector>

#include "data/measured_strings.h"

namespace tv {

// The figures of a sample. sd is the sample's (n - 1); es the extreme spread; the interval of the mean holds
// it with 95 % by Student's t. Of one value only the mean is known, the others are 0 and the interval empty.
struct SampleFigures {
  int count = 0;
  double mean = 0, sd = 0, es = 0;
  double low = 0, high = 0;  // 95 % interval of the mean
  bool has_spread() const { return count >= 2; }
};
SampleFigures sample_figures(std::span<const double> values);

// Of the shots that count and have a value, in m/s and Pa.
std::vector<double> counted_velocities(const MeasuredSeries& series);
std::vector<double> counted_pressures(const MeasuredSeries& series);
SampleFigures velocity_figures(const MeasuredSeries& series);

// The quantile of Student's t that leaves (1 - level)/2 on either side: 4.303 for a level of 0.95 and two
// degrees of freedom. in: level 0 to below 1, degrees of freedom 1 or more; fewer count as 1
double student_t(double level, int freedom);

}  // namespace tv
