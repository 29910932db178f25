#include "output/diagram_view.h"

#include <algorithm>
#include <cmath>

namespace tv {
namespace {

ViewRange within_axis(double from, double span) {
  if (!(span < 1 - 1e-9)) return {};
  const double low = std::clamp(from, 0.0, 1 - span);
  return {low, low + span};
}

}  // namespace

bool is_whole(const DiagramView& view) { return view == DiagramView{}; }

ViewRange zoomed(const ViewRange& range, double at, double factor) {
  if (!std::isfinite(at) || !(factor > 0)) return range;
  const double span = range.to - range.from;
  const double wanted = std::clamp(span * factor, kLeastSection, 1.0);
  return within_axis(range.from + std::clamp(at, 0.0, 1.0) * (span - wanted), wanted);
}

ViewRange moved(const ViewRange& range, double by) {
  if (!std::isfinite(by)) return range;
  const double span = range.to - range.from;
  return within_axis(range.from + by * span, span);
}

}  // namespace tv
