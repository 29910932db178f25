// What the standard diagrams and the optional one share. Only these include it.
#pragma once

#include <algorithm>
#include <cmath>

#include "output/diagram.h"

namespace tv {

inline double sound_factor(double factor) { return factor > 0 && std::isfinite(factor) ? factor : 1; }
inline int last_index(const DiagramRun& run) {
  return std::clamp(run.result->lastIdx, 0, ShotCurve::kPoints - 1);
}

// From the bolt face to the base of the seated bullet, mm: where the barrel begins before the travel does.
double bolt_space_mm(const DiagramRun& run);
// Length of an axis over barrel or travel that covers both runs, from the base of the present bullet, mm. The
// kept run stands by its bolt face on an axis over the barrel, else by the base of its bullet.
double axis_travel_mm(const DiagramRun& run, bool barrel);
double kept_shift_mm(const DiagramRun& run, bool barrel);

// The largest value of the series that can be drawn, at least 0.
double largest_of(const ChartSeries& present, const ChartSeries* kept);

// The kept run's curve beside the present one: the same colour and style, thin; names tell which is which.
ChartSeries kept_series(const ChartSeries& present, std::vector<Point> points, const Language& language);
inline constexpr double kPresentWeight = 1.4, kKeptWeight = 0.5;

// Lines and bands of the maximum pressure, in units of the left axis; none if it is not above 0.
void add_limits(Chart& chart, double limit, const DiagramOptions& options, const Language& language);
ChartLook look_of(const DiagramOptions& options);

// The legend's lines of both loads: powder and charge, and whatever else of the load differs between them.
std::vector<std::string> both_loads(const DiagramRun& present, const DiagramRun& kept,
                                    const DiagramOptions& options, const Language& language);

}  // namespace tv
