#include <algorithm>
#include <cmath>

#include "output/diagram_scale.h"
#include "text/number.h"

namespace tv {
namespace {

// A thousandth of the range shows; more digits would pretend what a pixel cannot tell.
std::string read_out_text(double value, double range, const std::string& unit) {
  const double scale = range > 0 && std::isfinite(range) ? std::floor(std::log10(range)) : 0;
  const int decimals = std::clamp(3 - static_cast<int>(std::clamp(scale, -9.0, 9.0)), 0, 6);
  const std::string zeros(static_cast<std::size_t>(decimals), '0');
  return format_pattern(value, decimals == 0 ? "0" : "0." + zeros) + " " + unit;
}

// The value of a curve at x, linear between its logged points; not finite outside.
template <class ValueOf>
double value_at(const DiagramRun& run, const DiagramOptions& options, double x, ValueOf value_of) {
  for (int i = 1; i <= last_index(run); ++i) {
    const double a = x_of(run, options, i - 1), b = x_of(run, options, i);
    if (!(a <= x && x <= b)) continue;
    const double from = value_of(run, options, i - 1), to = value_of(run, options, i);
    return b > a ? from + (to - from) * (x - a) / (b - a) : to;
  }
  return std::nan("");
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
  out.y1 = read_out_text(y1_value(frame, at.y), frame.y1_to,
                         pressure ? options.pressure_unit : options.velocity_unit);
  if (frame.has_right) out.y2 = read_out_text(y2_value(frame, at.y), frame.y2_to, options.velocity_unit);
  return out;
}

std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options,
                                const DiagramRun& run, Point at) {
  auto out = read_out(frame, options, at);
  if (!out || options.followed < 1 || !run.curve || !run.result) return out;
  const double x = x_value(frame, at.x);
  if (options.followed == 1) {
    const bool pressure = shows_pressure(options.type);
    const double y = value_at(run, options, x, pressure ? pressure_of : velocity_of);
    if (is_drawable(y)) {
      out->y1 = read_out_text(y, frame.y1_to, pressure ? options.pressure_unit : options.velocity_unit);
    }
  } else if (frame.has_right) {
    const double y = value_at(run, options, x, velocity_of);
    if (is_drawable(y)) out->y2 = read_out_text(y, frame.y2_to, options.velocity_unit);
  }
  return out;
}

std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at) {
  const Zone zone = zone_of(frame, at);
  if (zone == Zone::elsewhere) return std::nullopt;
  FitClick click = zone == Zone::below ? position_click(frame, options, at.x)
                                       : scale_click(frame, options.type, zone, at.y);
  click.value = cut_three_digits(click.value);
  return click;
}

int legend_curve(const Diagram& diagram, Point at) {
  for (const LegendEntry& entry : diagram.legend) {
    if (at.x >= entry.left && at.x <= entry.right && at.y >= entry.top && at.y <= entry.bottom) {
      return entry.curve;
    }
  }
  return 0;
}

}  // namespace tv
