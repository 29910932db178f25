#include "output/chart_canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/wrap.h"

namespace tv {
namespace {

constexpr double kTickLength = 4;
constexpr double kLabelGap = 3;  // between a tick and its label

double sound_length(double value, double otherwise) {
  return std::isfinite(value) ? std::clamp(value, 60.0, 20000.0) : otherwise;
}

// How many ticks a label takes, so that labels of that length keep apart.
std::size_t label_stride(const ChartAxis& axis, double length, double units_per_value) {
  const double spacing = axis.tick * units_per_value;
  for (const std::size_t stride : {1U, 2U, 5U, 10U}) {
    if (spacing * static_cast<double>(stride) >= length) return stride;
  }
  return 20;
}

// The ticks that show a label: the unit always, values where the stride says and the unit leaves room.
std::vector<ChartTick> labelled(const ChartAxis& axis, double units_per_value, double length) {
  std::vector<ChartTick> out;
  const std::vector<ChartTick> ticks = ticks_of(axis);
  if (ticks.empty()) return out;
  const std::size_t stride = label_stride(axis, length, units_per_value);
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const double to_unit = (ticks.back().position - ticks[i].position) * units_per_value;
    const bool clear = i % stride == 0 && (!ticks.back().is_unit || to_unit >= length);
    if (clear || ticks[i].is_unit) out.push_back(ticks[i]);
  }
  return out;
}

}  // namespace

Canvas make_canvas(const ChartLook& look, double width, double height, TextWidth text_width) {
  Canvas canvas;
  canvas.list.width = sound_length(width, 300);
  canvas.list.height = sound_length(height, 250);
  canvas.list.font = look.font;
  canvas.colours = look.colours;
  canvas.stale = look.stale;
  if (look.stale) canvas.colours.ink = look.colours.stale;
  canvas.list.background = canvas.colours.paper;
  // A surface of 22 letters' width and 16 rows is the least that a diagram can be read on.
  const double bearable = std::min(canvas.list.width / 22, canvas.list.height / 16);
  const double wanted = std::isfinite(look.text_size) ? std::clamp(look.text_size, 6.0, 60.0) : 12;
  canvas.size = std::min(wanted, bearable);
  canvas.row = 1.25 * canvas.size;
  canvas.line_width = std::isfinite(look.line_width) ? std::clamp(look.line_width, 0.5, 10.0) : 2;
  if (text_width) canvas.text_width = text_width;
  return canvas;
}

double fitting_size(const Canvas& canvas, const std::string& text, double width, bool bold) {
  const double needed = canvas.measure(text, false, bold);
  return needed > width && needed > 0 ? canvas.size * std::max(width, 1.0) / needed : canvas.size;
}

Point on_surface(const ChartFrame& f, double x, double y, bool right_scale) {
  const Point at = projected(f, x, y, right_scale);
  return {std::clamp(at.x, f.left, f.right), std::clamp(at.y, f.top, f.bottom)};
}

LabelBox plot_box(const ChartFrame& f) { return {f.left, f.top, f.right, f.bottom}; }

void draw_frame(Canvas& canvas) {
  const ChartFrame& f = canvas.frame;
  add_polyline(canvas.list,
               {{f.left, f.top}, {f.right, f.top}, {f.right, f.bottom}, {f.left, f.bottom}, {f.left, f.top}},
               {canvas.colours.ink, 2});
}

namespace {

void draw_x_axis(Canvas& canvas, const ChartAxis& axis) {
  const ChartFrame& f = canvas.frame;
  double widest = 0;
  for (const ChartTick& tick : ticks_of(axis)) {
    const Point at{on_surface(f, tick.position, 0, false).x, f.bottom};
    add_line(canvas.list, at, {at.x, at.y + kTickLength}, {canvas.colours.ink});
    widest = std::max(widest, canvas.measure(tick.label, tick.is_unit));
  }
  const double per_value = (f.right - f.left) / (axis.to - axis.from);
  for (const ChartTick& tick : labelled(axis, per_value, widest + 0.6 * canvas.size)) {
    const double x = on_surface(f, tick.position, 0, false).x;
    add_text(canvas.list, {x, f.bottom + kTickLength + 0.95 * canvas.size}, tick.label,
             {canvas.colours.ink, canvas.size, Align::centre, false, tick.is_unit});
  }
}

void draw_y_axis(Canvas& canvas, const ChartAxis& axis, bool right) {
  const ChartFrame& f = canvas.frame;
  const double edge = right ? f.right : f.left, out = right ? 1 : -1;
  for (const ChartTick& tick : ticks_of(axis)) {
    const double y = on_surface(f, 0, tick.position, right).y;
    // Lines of two scales would not meet, so only the left one has them.
    if (!right && y > f.top + 1 && y < f.bottom - 1) {
      add_line(canvas.list, {f.left, y}, {f.right, y}, {canvas.colours.grid});
    }
    add_line(canvas.list, {edge, y}, {edge + out * kTickLength, y}, {canvas.colours.ink});
  }
  const double per_value = (f.bottom - f.top) / (axis.to - axis.from);
  for (const ChartTick& tick : labelled(axis, per_value, 1.1 * canvas.size)) {
    const double y = on_surface(f, 0, tick.position, right).y;
    add_text(canvas.list, {edge + out * (kTickLength + kLabelGap), y + kTextMiddle * canvas.size}, tick.label,
             {canvas.axis_colour(axis.label_colour), canvas.size, right ? Align::left : Align::right, false,
              tick.is_unit});
  }
}

void draw_axis_titles(Canvas& canvas, const ChartAxis& left, const ChartAxis* right) {
  const Colour left_colour = canvas.axis_colour(left.title_colour);
  const double room = canvas.list.width - 2 * kCanvasEdge;
  const double lower = canvas.frame.top - 0.65 * canvas.row, upper = lower - canvas.row;
  const double left_width = canvas.measure(left.title),
               right_width = right ? canvas.measure(right->title) : 0;
  const bool side_by_side = left_width + right_width + canvas.size <= canvas.frame.right - canvas.frame.left;
  const double left_from =
      std::max(kCanvasEdge, std::min(canvas.frame.left, canvas.list.width - kCanvasEdge - left_width));
  add_text(canvas.list, {left_from, side_by_side || !right ? lower : upper}, left.title,
           {left_colour, fitting_size(canvas, left.title, room)});
  if (!right) return;
  const double right_to =
      std::min(canvas.list.width - kCanvasEdge, std::max(canvas.frame.right, kCanvasEdge + right_width));
  add_text(canvas.list, {right_to, lower}, right->title,
           {canvas.axis_colour(right->title_colour), fitting_size(canvas, right->title, room), Align::right});
}

}  // namespace

void draw_axes(Canvas& canvas, const AxesOnShow& axes) {
  draw_y_axis(canvas, axes.left, false);
  if (axes.has_right) draw_y_axis(canvas, axes.right, true);
  draw_x_axis(canvas, axes.x);
  draw_axis_titles(canvas, axes.left, axes.has_right ? &axes.right : nullptr);
}

void draw_corner_note(Canvas& canvas, LabelPlacer& placer, const std::string& text) {
  const LabelBox& bounds = placer.bounds;
  const double width = std::min(canvas.measure(text) + 8, bounds.right - bounds.left);
  const double height = std::min(1.5 * canvas.size, bounds.bottom - bounds.top);
  std::vector<LabelBox> corners;
  for (const double top : {bounds.top, bounds.bottom - height}) {
    for (const double left : {bounds.left, bounds.right - width}) {
      corners.push_back({left, top, left + width, top + height});
    }
  }
  const LabelBox box = placer.place(corners).value_or(corners.front());
  Colour paper = canvas.colours.paper;
  paper.a = 215;
  add_band(canvas.list, {box.left, box.top}, {box.right, box.bottom}, paper);
  add_text(canvas.list, {(box.left + box.right) / 2, (box.top + box.bottom) / 2 + kTextMiddle * canvas.size},
           text, {canvas.colours.ink, fitting_size(canvas, text, width - 6), Align::centre, false, true});
}

void draw_banner(Canvas& canvas, const std::string& text, Colour colour) {
  const double plot = canvas.frame.right - canvas.frame.left - 3 * canvas.size;
  const double room = std::max(plot, std::min(12 * canvas.size, 0.9 * canvas.list.width));
  const double size = std::min(1.15 * canvas.size, canvas.list.height / 12);
  const auto width_of = [&](const std::string& line) {
    return canvas.text_width(line, size, true, false, canvas.list.font);
  };
  const std::vector<std::string> lines =
      wrap_words(text, [&](const std::string& line) { return width_of(line) <= room; });
  double widest = 0;
  for (const std::string& line : lines) {
    widest = std::max(widest, width_of(line));
  }
  const double shrink = std::min(1.0, room / std::max(widest, 1.0));
  const double row = 1.3 * size, half = 0.5 * row * static_cast<double>(lines.size()) + 0.4 * size;
  const double middle = canvas.list.width / 2, centre = (canvas.frame.top + canvas.frame.bottom) / 2;
  const double half_width = shrink * widest / 2 + size;
  Colour paper = canvas.colours.paper;
  paper.a = 235;
  add_band(canvas.list, {middle - half_width, centre - half}, {middle + half_width, centre + half}, paper);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double y = centre - half + 0.4 * size + (static_cast<double>(i) + 0.5) * row + kTextMiddle * size;
    add_text(canvas.list, {middle, y}, lines[i], {colour, size * shrink, Align::centre, true});
  }
}

}  // namespace tv
