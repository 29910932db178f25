// A pressure curve measured at a test firing: twelve pairs of time and pressure, held against the computed
// shot.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "engine/calc_state.h"
#include "powder/burn_function.h"

namespace tv {

inline constexpr int kReferenceRows = 12;

// 0: none, but for the time of the first row.
struct ReferencePoint {
  double ms = 0;
  double MPa = 0;
};
struct ReferenceCurve {
  std::array<ReferencePoint, kReferenceRows> rows;
  std::string comment;
};

// The first thing that keeps the table from being a curve, and its row from 0. All rows must be filled: times
// above 0, in the first row 0 as well, and pressures above 0.
struct ReferenceFault {
  BurnHint hint = kNoHint;  // kHintTimes or kHintPressures
  int row = -1;
};
ReferenceFault reference_fault(const ReferenceCurve& curve);

// Sorts rows 1 to 10 by time. The last two take no part: what is typed there stays there, and
// last_rows_late() tells when a time of theirs is below that of the row before.
void sort_reference(ReferenceCurve& curve);
bool last_rows_late(const ReferenceCurve& curve);

// A measured curve begins at any time. How much is added to its times so that its rise through a tenth of its
// peak (linear between rows) falls on that of the shot, or the peaks on each other if it begins above a
// tenth. out: ms on a time axis that is 0 at the shot's first point
double alignment_ms(const ReferenceCurve& reference, const ShotCurve& curve, const ShotResult& result);

// The reference over the time axis of the diagrams, 0 at the shot's first point; as_measured leaves its times
// alone. Empty if the shot has no points.
std::vector<ReferencePoint> reference_over_time(const ReferenceCurve& reference, const ShotCurve& curve,
                                                const ShotResult& result, bool as_measured);

// What of it lies within the shot; a line that crosses its begin or its end is cut there.
std::vector<ReferencePoint> within_shot(const std::vector<ReferencePoint>& over_time, const ShotCurve& curve,
                                        const ShotResult& result);

// The same over the bullet's travel, by the shot's own travel over time (linear between points), within the
// shot.
struct TravelPoint {
  double x_m = 0;
  double MPa = 0;
};
std::vector<TravelPoint> reference_over_travel(const ReferenceCurve& reference, const ShotCurve& curve,
                                               const ShotResult& result, bool as_measured);

}  // namespace tv
