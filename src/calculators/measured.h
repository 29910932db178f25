// Measured strings: shots of one charge with their velocities, and what they say.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace tv {

struct MeasuredShot {
  double velocity = 0;  // m/s; 0 not measured
  double pressure = 0;  // Pa; 0 not measured
  bool excluded = false;
  std::string reason;  // of the exclusion: "sighter"; may be empty

  bool operator==(const MeasuredShot&) const = default;
};

struct MeasuredSeries {
  std::string name;
  double charge_gr = 0;     // grains; 0 unknown
  std::string temperature;  // degrees C as noted; empty unknown
  std::vector<MeasuredShot> shots;

  bool operator==(const MeasuredSeries&) const = default;
};

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
