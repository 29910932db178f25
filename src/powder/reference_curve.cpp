#include "powder/reference_curve.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tv {
namespace {

std::size_t index_of(int i) { return static_cast<std::size_t>(i); }

// Where the reference rises through a tenth of its peak, ms; nothing if it begins above.
std::optional<double> rise_through_tenth(const ReferenceCurve& reference, int peak) {
  const auto& rows = reference.rows;
  const double tenth = rows[index_of(peak)].MPa / 10;
  for (int i = peak - 1; i >= 0; --i) {
    const ReferencePoint low = rows[index_of(i)], high = rows[index_of(i + 1)];
    if (low.MPa > tenth) continue;
    return low.ms + (high.ms - low.ms) * (tenth - low.MPa) / (high.MPa - low.MPa);
  }
  return {};
}

int peak_row(const ReferenceCurve& reference) {
  const auto lower = [](const ReferencePoint& a, const ReferencePoint& b) { return a.MPa < b.MPa; };
  const auto& rows = reference.rows;
  return static_cast<int>(std::max_element(rows.begin(), rows.end(), lower) - rows.begin());
}

// The shot as milliseconds from its first point, and the travel there.
struct ShotTimes {
  const ShotCurve& curve;
  int last;

  double ms(int i) const { return (curve.t[index_of(i)] - curve.t[0]) * 1000; }
  double end() const { return ms(last); }
  double travel(double at_ms) const {
    int i = 1;
    while (i < last && ms(i) < at_ms) ++i;
    const double from = ms(i - 1), to = ms(i);
    const double share = to > from ? (at_ms - from) / (to - from) : 0;
    const double x0 = curve.x[index_of(i - 1)], x1 = curve.x[index_of(i)];
    return x0 + (x1 - x0) * share;
  }
};

// The part of the line a to b that lies within 0 to end; false if there is none.
bool clip(ReferencePoint& a, ReferencePoint& b, double end) {
  if (!(a.ms <= b.ms) || b.ms < 0 || a.ms > end) return false;
  const ReferencePoint from = a, to = b;
  const auto at = [&](double ms) {
    return ReferencePoint{ms, from.MPa + (to.MPa - from.MPa) * (ms - from.ms) / (to.ms - from.ms)};
  };
  if (from.ms < 0) a = at(0);
  if (to.ms > end) b = at(end);
  return true;
}

}  // namespace

ReferenceFault reference_fault(const ReferenceCurve& curve) {
  for (int i = 0; i < kReferenceRows; ++i) {
    const ReferencePoint& row = curve.rows[index_of(i)];
    if (!(row.ms > 0) && !(i == 0 && row.ms == 0)) return {kHintTimes, i};
    if (!(row.MPa > 0)) return {kHintPressures, i};
  }
  return {};
}

void sort_reference(ReferenceCurve& curve) {
  std::stable_sort(curve.rows.begin(), curve.rows.begin() + 10,
                   [](const ReferencePoint& a, const ReferencePoint& b) { return a.ms < b.ms; });
}

bool last_rows_late(const ReferenceCurve& curve) {
  return curve.rows[10].ms < curve.rows[9].ms || curve.rows[11].ms < curve.rows[10].ms;
}

double alignment_ms(const ReferenceCurve& reference, const ShotCurve& curve, const ShotResult& result) {
  const int peak = peak_row(reference);
  const auto rise = rise_through_tenth(reference, peak);
  const double shot = rise ? result.t10 : curve.t[index_of(result.peakIdx)];
  return (shot - curve.t[0]) * 1000 - rise.value_or(reference.rows[index_of(peak)].ms);
}

std::vector<ReferencePoint> reference_over_time(const ReferenceCurve& reference, const ShotCurve& curve,
                                                const ShotResult& result, bool as_measured) {
  if (result.lastIdx < 1) return {};
  const double shift = as_measured ? 0 : alignment_ms(reference, curve, result);
  std::vector<ReferencePoint> points(reference.rows.begin(), reference.rows.end());
  for (ReferencePoint& point : points) point.ms += shift;
  return points;
}

std::vector<ReferencePoint> within_shot(const std::vector<ReferencePoint>& over_time, const ShotCurve& curve,
                                        const ShotResult& result) {
  const ShotTimes shot{curve, result.lastIdx};
  std::vector<ReferencePoint> points;
  for (std::size_t i = 1; i < over_time.size(); ++i) {
    ReferencePoint a = over_time[i - 1], b = over_time[i];
    if (!clip(a, b, shot.end())) continue;
    if (points.empty()) points.push_back(a);
    points.push_back(b);
  }
  return points;
}

std::vector<TravelPoint> reference_over_travel(const ReferenceCurve& reference, const ShotCurve& curve,
                                               const ShotResult& result, bool as_measured) {
  const auto over_time = reference_over_time(reference, curve, result, as_measured);
  const ShotTimes shot{curve, result.lastIdx};
  std::vector<TravelPoint> points;
  for (const ReferencePoint& point : within_shot(over_time, curve, result))
    points.push_back({shot.travel(point.ms), point.MPa});
  return points;
}

}  // namespace tv
