// What the mouse tells and asks for on a standard diagram.
#include <cmath>

#include "output/diagram.h"

namespace tv {
namespace {

std::string x_unit(const DiagramOptions& options) {
  if (options.optional) return options.optional_x_unit;
  return is_over_time(options.type) ? "ms" : options.distance_unit;
}
std::string left_unit(const DiagramOptions& options) {
  if (options.optional) return options.optional_y_unit;
  return shows_pressure(options.type) ? options.pressure_unit : options.velocity_unit;
}

FitClick scale_click(const DiagramFrame& frame, int type, ChartZone zone, double y) {
  if (!shows_pressure(type)) return {y1_value(frame, y), 1};
  if (zone == ChartZone::right && shows_both(type)) return {y2_value(frame, y), 1};
  return {y1_value(frame, y), 0};
}

FitClick position_click(const DiagramFrame& frame, const DiagramOptions& options, double x) {
  const double told = x_value(frame, x) + frame.x_label_offset;
  if (is_over_time(options.type)) return {told, 2};
  return {told, options.barrel_axis ? 4 : 3};
}

}  // namespace

double cut_three_digits(double value) {
  if (!(value > 0) || !std::isfinite(value)) return 0;
  const double digits = 2 - std::floor(std::log10(value));
  const double scale = std::pow(10, digits);
  const double cut = std::trunc(value * scale + 1e-9) / scale;
  return std::isfinite(cut) ? cut : 0;
}

std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options, Point at) {
  if (zone_of(frame, at) == ChartZone::elsewhere) return std::nullopt;
  ReadOut out;
  out.x =
      read_out_text(x_value(frame, at.x) + frame.x_label_offset, frame.x_to - frame.x_from, x_unit(options));
  out.y1 = read_out_text(y1_value(frame, at.y), frame.y1_to - frame.y1_from, left_unit(options));
  if (frame.has_right) {
    out.y2 = read_out_text(y2_value(frame, at.y), frame.y2_to - frame.y2_from, options.velocity_unit);
  }
  return out;
}

std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options,
                                const DiagramRun& run, Point at) {
  const auto told = chart_read_out(describe_diagram(run, options, Language{}), frame, at);
  if (!told) return read_out(frame, options, at);
  ReadOut out;
  out.x = told->x;
  for (const ChartReadOut::Entry& entry : told->entries) {
    if (entry.series == kLeftCurve) out.y1 = entry.value;
    if (entry.series == kRightCurve) out.y2 = entry.value;
    if (entry.at) out.on_curve.push_back(*entry.at);
  }
  return out;
}

std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at) {
  const ChartZone zone = zone_of(frame, at);
  if (options.optional || zone == ChartZone::elsewhere || zone == ChartZone::plot) return std::nullopt;
  FitClick click = zone == ChartZone::below ? position_click(frame, options, at.x)
                                            : scale_click(frame, options.type, zone, at.y);
  click.value = cut_three_digits(click.value);
  return click;
}

}  // namespace tv
