// What a place on the surface of a chart means.
#include <algorithm>
#include <cmath>
#include <limits>

#include "output/chart.h"
#include "output/chart_axis.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kHandleReach = 5;  // beyond the ring, in units of the surface
constexpr double kPointReach = 8;   // of a read-out to a lone point

double share(double value, double from, double to) { return to == from ? 0 : (value - from) / (to - from); }

// The value of a series at x, linear between its points; not finite outside.
double value_along(const ChartSeries& series, double x) {
  for (std::size_t i = 1; i < series.points.size(); ++i) {
    const Point a = series.points[i - 1], b = series.points[i];
    if (!(a.x <= x && x <= b.x)) continue;
    return b.x > a.x ? a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x) : b.y;
  }
  return std::numeric_limits<double>::quiet_NaN();
}

// The point of a series nearest to a place across, as far as one is close.
std::optional<Point> point_near(const ChartSeries& series, const ChartFrame& frame, double across) {
  std::optional<Point> best;
  double nearest = kPointReach;
  for (const Point& value : series.points) {
    const double away = std::abs(projected(frame, value.x, value.y, series.right_scale).x - across);
    if (!(away < nearest)) continue;
    nearest = away;
    best = value;
  }
  return best;
}

std::optional<ChartReadOut::Entry> entry_of(const Chart& chart, const ChartFrame& frame,
                                            const ChartSeries& series, Point at) {
  const double x = x_value(frame, at.x);
  const std::optional<Point> value = series.reading == ChartReading::at_points
                                         ? point_near(series, frame, at.x)
                                         : std::optional(Point{x, value_along(series, x)});
  if (!value || !is_drawable(value->y)) return std::nullopt;
  const bool right = series.right_scale && chart.right;
  const std::string& unit = !series.unit.empty() ? series.unit : right ? chart.right->unit : chart.left.unit;
  const double range = right ? frame.y2_to - frame.y2_from : frame.y1_to - frame.y1_from;
  ChartReadOut::Entry entry{series.id, series.name,   read_out_text(value->y, range, unit),
                            value->y,  series.colour, std::nullopt};
  const Point place = projected(frame, value->x, value->y, right);
  if (inside_plot(frame, place)) entry.at = place;
  return entry;
}

}  // namespace

double x_value(const ChartFrame& f, double x) {
  return f.x_from + share(x, f.left, f.right) * (f.x_to - f.x_from);
}
double y1_value(const ChartFrame& f, double y) {
  return f.y1_from + share(y, f.bottom, f.top) * (f.y1_to - f.y1_from);
}
double y2_value(const ChartFrame& f, double y) {
  return f.y2_from + share(y, f.bottom, f.top) * (f.y2_to - f.y2_from);
}

Point projected(const ChartFrame& f, double x, double y, bool right_scale) {
  const double from = right_scale ? f.y2_from : f.y1_from, to = right_scale ? f.y2_to : f.y1_to;
  const double across = (x - f.x_from) / (f.x_to - f.x_from), up = (y - from) / (to - from);
  return {f.left + across * (f.right - f.left), f.bottom - up * (f.bottom - f.top)};
}

bool inside_plot(const ChartFrame& f, Point at) {
  return f.right > f.left && f.bottom > f.top && at.x >= f.left && at.x <= f.right && at.y >= f.top &&
         at.y <= f.bottom;
}

ChartZone zone_of(const ChartFrame& f, Point at) {
  if (!(f.right > f.left && f.bottom > f.top)) return ChartZone::elsewhere;
  if (inside_plot(f, at)) return ChartZone::plot;
  if (at.y >= f.top && at.y <= f.bottom) {
    if (at.x < f.left) return ChartZone::left;
    if (at.x > f.right) return ChartZone::right;
  }
  const bool over_legend = f.label_bottom <= f.bottom || at.y <= f.label_bottom;
  if (at.x >= f.left && at.x <= f.right && at.y > f.bottom && over_legend) return ChartZone::below;
  return ChartZone::elsewhere;
}

LegendHit legend_hit(const DrawnChart& drawn, Point at) {
  for (const LegendEntry& entry : drawn.legend) {
    if (at.x >= entry.left && at.x <= entry.right && at.y >= entry.top && at.y <= entry.bottom) {
      return {entry.curve, at.x <= entry.sample_to};
    }
  }
  return {};
}

int handle_hit(const DrawnChart& drawn, Point at) {
  int id = 0;
  double nearest = std::numeric_limits<double>::infinity();
  for (const HandlePlace& handle : drawn.handles) {
    const double away = std::hypot(handle.at.x - at.x, handle.at.y - at.y);
    if (away > handle.radius + kHandleReach || away >= nearest) continue;
    nearest = away;
    id = handle.id;
  }
  return id;
}

std::string read_out_text(double value, double range, const std::string& unit) {
  const double scale = range > 0 && std::isfinite(range) ? std::floor(std::log10(range)) : 0;
  const int decimals = std::clamp(3 - static_cast<int>(std::clamp(scale, -9.0, 9.0)), 0, 6);
  const std::string zeros(static_cast<std::size_t>(decimals), '0');
  const std::string figure = format_pattern(value, decimals == 0 ? "0" : "0." + zeros);
  return unit.empty() ? figure : figure + " " + unit;
}

std::optional<ChartReadOut> chart_read_out(const Chart& chart, const ChartFrame& frame, Point at) {
  if (!inside_plot(frame, at)) return std::nullopt;
  ChartReadOut out;
  out.number = x_value(frame, at.x);
  out.x = read_out_text(out.number + frame.x_label_offset, frame.x_to - frame.x_from, chart.x.unit);
  for (const ChartSeries& series : chart.series) {
    if (series.hidden || series.reading == ChartReading::none) continue;
    if (auto entry = entry_of(chart, frame, series, at)) out.entries.push_back(std::move(*entry));
  }
  return out;
}

DiagramView zoom_at(const ChartFrame& f, const DiagramView& view, Point at, double steps) {
  if (!std::isfinite(steps)) return view;
  const ChartZone zone = zone_of(f, at);
  const bool inside = zone == ChartZone::plot;
  const double factor = std::pow(kZoomStep, std::clamp(steps, -50.0, 50.0));
  DiagramView out = view;
  if (inside || zone == ChartZone::below) {
    out.x = zoomed(view.x, (at.x - f.left) / (f.right - f.left), factor);
  }
  if (inside || zone == ChartZone::left || zone == ChartZone::right) {
    out.y = zoomed(view.y, (f.bottom - at.y) / (f.bottom - f.top), factor);
  }
  return out;
}

DiagramView drag_view(const ChartFrame& f, const DiagramView& view, Point from, Point to) {
  if (!inside_plot(f, from)) return view;
  return {moved(view.x, (from.x - to.x) / (f.right - f.left)),
          moved(view.y, (to.y - from.y) / (f.bottom - f.top))};
}

}  // namespace tv
