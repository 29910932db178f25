#include <algorithm>
#include <cmath>
#include <limits>

#include "output/diagram_canvas.h"
#include "output/diagram_scale.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kSnapDistance = 14;  // from a curve, in units of the surface
constexpr double kMarkRadius = 4;

using ValueOf = double (*)(const DiagramRun&, const DiagramOptions&, int);

ValueOf quantity_of(int type, int curve) {
  return curve == 1 && shows_pressure(type) ? pressure_of : velocity_of;
}

// A thousandth of the range shows; more digits would pretend what a pixel cannot tell.
std::string read_out_text(double value, double range, const std::string& unit) {
  const double scale = range > 0 && std::isfinite(range) ? std::floor(std::log10(range)) : 0;
  const int decimals = std::clamp(3 - static_cast<int>(std::clamp(scale, -9.0, 9.0)), 0, 6);
  const std::string zeros(static_cast<std::size_t>(decimals), '0');
  return format_pattern(value, decimals == 0 ? "0" : "0." + zeros) + " " + unit;
}

// The value of a curve at x, linear between its logged points; not finite outside.
double value_at(const DiagramRun& run, const DiagramOptions& options, double x, ValueOf value_of) {
  for (int i = 1; i <= last_index(run); ++i) {
    const double a = x_of(run, options, i - 1), b = x_of(run, options, i);
    if (!(a <= x && x <= b)) continue;
    const double from = value_of(run, options, i - 1), to = value_of(run, options, i);
    return b > a ? from + (to - from) * (x - a) / (b - a) : to;
  }
  return std::nan("");
}

struct CurvePlace {
  double x = 0;  // in shown units
  double distance = 0;
};

// The place of a curve nearest to a point, both on the surface; far away if there is none.
CurvePlace nearest_on_curve(const DiagramFrame& frame, const DiagramRun& run, const DiagramOptions& options,
                            int curve, Point at) {
  CurvePlace best{0, std::numeric_limits<double>::infinity()};
  const ValueOf value_of = quantity_of(options.type, curve);
  for (int i = 1; i <= last_index(run); ++i) {
    const double x0 = x_of(run, options, i - 1), x1 = x_of(run, options, i);
    const Point a = projected(frame, x0, value_of(run, options, i - 1), curve == 2);
    const Point b = projected(frame, x1, value_of(run, options, i), curve == 2);
    const double length2 = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
    const double along =
        length2 > 0
            ? std::clamp(((at.x - a.x) * (b.x - a.x) + (at.y - a.y) * (b.y - a.y)) / length2, 0.0, 1.0)
            : 0;
    const double distance = std::hypot(a.x + along * (b.x - a.x) - at.x, a.y + along * (b.y - a.y) - at.y);
    if (distance < best.distance) best = {x0 + along * (x1 - x0), distance};
  }
  return best;
}

bool is_visible(const DiagramFrame& frame, const DiagramOptions& options, int curve) {
  return (curve == 1 || (curve == 2 && frame.has_right)) && !options.hidden[curve == 1 ? 0 : 1];
}

// The x whose values a read-out at the point tells: of the followed curve, else of one close by.
std::optional<double> snapped_x(const DiagramFrame& frame, const DiagramRun& run,
                                const DiagramOptions& options, Point at) {
  if (is_visible(frame, options, options.followed)) return x_value(frame, at.x);
  CurvePlace best{0, kSnapDistance};
  for (const int curve : {1, 2}) {
    if (!is_visible(frame, options, curve)) continue;
    const CurvePlace place = nearest_on_curve(frame, run, options, curve, at);
    if (place.distance < best.distance) best = place;
  }
  return best.distance < kSnapDistance ? std::optional(best.x) : std::nullopt;
}

enum class Zone { elsewhere, left, right, below };

Zone zone_of(const DiagramFrame& f, Point at) {
  if (!(f.right > f.left && f.bottom > f.top)) return Zone::elsewhere;
  if (at.y >= f.top && at.y <= f.bottom) {
    if (at.x < f.left) return Zone::left;
    if (at.x > f.right) return Zone::right;
  }
  const bool over_legend = f.label_bottom <= f.bottom || at.y <= f.label_bottom;
  if (at.x >= f.left && at.x <= f.right && at.y > f.bottom && over_legend) return Zone::below;
  return Zone::elsewhere;
}

FitClick scale_click(const DiagramFrame& frame, int type, Zone zone, double y) {
  if (!shows_pressure(type)) return {y1_value(frame, y), 1};
  if (zone == Zone::right && shows_both(type)) return {y2_value(frame, y), 1};
  return {y1_value(frame, y), 0};
}

FitClick position_click(const DiagramFrame& frame, const DiagramOptions& options, double x) {
  const double told = x_value(frame, x) + frame.x_label_offset;
  if (is_over_time(options.type)) return {told, 2};
  return {told, options.barrel_axis ? 4 : 3};
}

}  // namespace

bool inside_plot(const DiagramFrame& f, Point at) {
  return f.right > f.left && f.bottom > f.top && at.x >= f.left && at.x <= f.right && at.y >= f.top &&
         at.y <= f.bottom;
}

std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options, Point at) {
  if (!inside_plot(frame, at)) return std::nullopt;
  const bool pressure = shows_pressure(options.type);
  ReadOut out;
  out.x = read_out_text(x_value(frame, at.x) + frame.x_label_offset, frame.x_to - frame.x_from,
                        is_over_time(options.type) ? "ms" : options.distance_unit);
  out.y1 = read_out_text(y1_value(frame, at.y), frame.y1_to - frame.y1_from,
                         pressure ? options.pressure_unit : options.velocity_unit);
  if (frame.has_right) {
    out.y2 = read_out_text(y2_value(frame, at.y), frame.y2_to - frame.y2_from, options.velocity_unit);
  }
  return out;
}

std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options,
                                const DiagramRun& run, Point at) {
  auto out = read_out(frame, options, at);
  if (!out || !run.curve || !run.result) return out;
  const std::optional<double> x = snapped_x(frame, run, options, at);
  if (!x) return out;
  ReadOut told;
  told.x = read_out_text(*x + frame.x_label_offset, frame.x_to - frame.x_from,
                         is_over_time(options.type) ? "ms" : options.distance_unit);
  for (const int curve : {1, 2}) {
    if (!is_visible(frame, options, curve)) continue;
    const double y = value_at(run, options, *x, quantity_of(options.type, curve));
    if (!is_drawable(y)) continue;
    const double range = curve == 1 ? frame.y1_to - frame.y1_from : frame.y2_to - frame.y2_from;
    const bool pressure = curve == 1 && shows_pressure(options.type);
    (curve == 1 ? told.y1 : told.y2) =
        read_out_text(y, range, pressure ? options.pressure_unit : options.velocity_unit);
    const Point place = projected(frame, *x, y, curve == 2);
    if (inside_plot(frame, place)) told.on_curve.push_back(place);
  }
  return told.y1.empty() && told.y2.empty() ? out : told;
}

DrawList read_out_marks(const DiagramOptions& options, const ReadOut& read_out) {
  DrawList list;
  list.background.a = 0;
  for (const Point at : read_out.on_curve) {
    add_circle(list, at, kMarkRadius + 1.5, options.colours.paper, true);
    add_circle(list, at, kMarkRadius, options.colours.ink, true);
  }
  return list;
}

std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at) {
  const Zone zone = zone_of(frame, at);
  if (zone == Zone::elsewhere) return std::nullopt;
  FitClick click = zone == Zone::below ? position_click(frame, options, at.x)
                                       : scale_click(frame, options.type, zone, at.y);
  click.value = cut_three_digits(click.value);
  return click;
}

LegendHit legend_hit(const Diagram& diagram, Point at) {
  for (const LegendEntry& entry : diagram.legend) {
    if (at.x >= entry.left && at.x <= entry.right && at.y >= entry.top && at.y <= entry.bottom) {
      return {entry.curve, at.x <= entry.sample_to};
    }
  }
  return {};
}

DiagramView zoom_at(const DiagramFrame& f, const DiagramView& view, Point at, double steps) {
  if (!std::isfinite(steps)) return view;
  const Zone zone = zone_of(f, at);
  const bool inside = inside_plot(f, at);
  const double factor = std::pow(kZoomStep, std::clamp(steps, -50.0, 50.0));
  DiagramView out = view;
  if (inside || zone == Zone::below) out.x = zoomed(view.x, (at.x - f.left) / (f.right - f.left), factor);
  if (inside || zone == Zone::left || zone == Zone::right) {
    out.y = zoomed(view.y, (f.bottom - at.y) / (f.bottom - f.top), factor);
  }
  return out;
}

DiagramView drag_view(const DiagramFrame& f, const DiagramView& view, Point from, Point to) {
  if (!inside_plot(f, from)) return view;
  return {moved(view.x, (from.x - to.x) / (f.right - f.left)),
          moved(view.y, (to.y - from.y) / (f.bottom - f.top))};
}

}  // namespace tv
