// The section of a diagram that is on show, whatever the diagram shows: shares of its whole axes.
#pragma once

namespace tv {

struct ViewRange {
  double from = 0, to = 1;  // 0 the lower end of the whole axis, 1 its upper end
  friend bool operator==(const ViewRange&, const ViewRange&) = default;
};

struct DiagramView {
  ViewRange x, y;  // both y scales move in step
  friend bool operator==(const DiagramView&, const DiagramView&) = default;
};

inline constexpr double kLeastSection = 1.0 / 200;  // of an axis: closer there are straight lines only
inline constexpr double kZoomStep = 0.8;            // what one step of the wheel or a key leaves of a section

bool is_whole(const DiagramView& view);

// The section made narrower (factor below 1) or wider; what stands at `at`, a share of the section, stays
// there as far as the ends of the axis allow.
ViewRange zoomed(const ViewRange& range, double at, double factor);
// Moved along by a share of the section, no further than the ends of the axis.
ViewRange moved(const ViewRange& range, double by);

}  // namespace tv
