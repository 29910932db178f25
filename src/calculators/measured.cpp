#include "calculators/measured.h"

#include <algorithm>
#include <cmath>

namespace tv {
namespace {

constexpr double kLevel = 0.95;
constexpr int kMostFreedom = 1000;  // beyond it t and normal differ by less than 0.2 %

std::vector<double> counted(const MeasuredSeries& series, double MeasuredShot::*value) {
  std::vector<double> values;
  for (const MeasuredShot& shot : series.shots)
    if (!shot.excluded && shot.*value > 0) values.push_back(shot.*value);
  return values;
}

// The share of Student's t within -t to t: for whole degrees of freedom a finite sum over powers of the
// cosine of atan(t / sqrt(n)) (Fisher 1925).
double share_within(double t, int freedom) {
  const double angle = std::atan(t / std::sqrt(freedom));
  const double sine = std::sin(angle), square = std::cos(angle) * std::cos(angle);
  const bool odd = freedom % 2 != 0;
  double term = odd ? std::cos(angle) : 1, sum = 0;
  for (int k = odd ? 1 : 0; k <= freedom - 2; k += 2) {
    sum += term;
    term *= square * (k + 1) / (k + 2);
  }
  return odd ? 2 / M_PI * (angle + sine * sum) : sine * sum;
}

}  // namespace

double student_t(double level, int freedom) {
  freedom = std::clamp(freedom, 1, kMostFreedom);
  double low = 0, high = 1;
  while (high < 1e6 && share_within(high, freedom) < level) high *= 2;
  for (int n = 0; n < 60; ++n) {
    const double mid = (low + high) / 2;
    (share_within(mid, freedom) < level ? low : high) = mid;
  }
  return (low + high) / 2;
}

SampleFigures sample_figures(std::span<const double> values) {
  SampleFigures f;
  f.count = static_cast<int>(values.size());
  if (values.empty()) return f;
  for (const double x : values) f.mean += x / f.count;
  f.low = f.high = f.mean;
  if (!f.has_spread()) return f;
  double squares = 0;
  for (const double x : values) squares += (x - f.mean) * (x - f.mean);
  f.sd = std::sqrt(squares / (f.count - 1));
  const auto [least, most] = std::ranges::minmax(values);
  f.es = most - least;
  const double half = student_t(kLevel, f.count - 1) * f.sd / std::sqrt(f.count);
  f.low = f.mean - half;
  f.high = f.mean + half;
  return f;
}

std::vector<double> counted_velocities(const MeasuredSeries& series) {
  return counted(series, &MeasuredShot::velocity);
}

std::vector<double> counted_pressures(const MeasuredSeries& series) {
  return counted(series, &MeasuredShot::pressure);
}

SampleFigures velocity_figures(const MeasuredSeries& series) {
  return sample_figures(counted_velocities(series));
}

}  // namespace tv
