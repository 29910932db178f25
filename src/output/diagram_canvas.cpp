#include "output/diagram_canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tv {
namespace {

constexpr double kTickLength = 4;
constexpr double kLabelGap = 3;     // between a tick and its label
constexpr double kBaseline = 0.36;  // from the middle of a letter down to its baseline, shares of the size
constexpr double kEdge = 4;         // nothing is drawn nearer to the border

double sound_length(double value, double otherwise) {
  return std::isfinite(value) ? std::clamp(value, 60.0, 20000.0) : otherwise;
}

Colour thinner(Colour colour) {
  colour.a = static_cast<std::uint8_t>(colour.a / 2);
  return colour;
}

DiagramColours greyed(const DiagramColours& c) {
  DiagramColours grey = c;
  grey.ink = grey.pressure = grey.velocity = c.stale;
  for (Colour* band : {&grey.over, &grey.near_limit, &grey.caution}) {
    const std::uint8_t a = band->a;
    *band = c.stale;
    band->a = a;
    *band = thinner(*band);
  }
  return grey;
}

// How many ticks a label takes, so that labels of that length keep apart.
std::size_t label_stride(const Axis& axis, double length, double units_per_value) {
  const double spacing = axis.tick * units_per_value;
  for (const std::size_t stride : {1U, 2U, 5U, 10U}) {
    if (spacing * static_cast<double>(stride) >= length) return stride;
  }
  return 20;
}

// The ticks that show a label: the unit always, values where the stride says and the unit leaves room.
std::vector<Tick> labelled(const Axis& axis, double units_per_value, double length) {
  std::vector<Tick> out;
  const std::vector<Tick> ticks = ticks_of(axis);
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

Canvas make_canvas(const DiagramOptions& options, double width, double height, TextWidth text_width) {
  Canvas canvas;
  canvas.list.width = sound_length(width, 300);
  canvas.list.height = sound_length(height, 250);
  canvas.list.font = options.font;
  canvas.colours = options.stale ? greyed(options.colours) : options.colours;
  canvas.list.background = canvas.colours.paper;
  // A surface of 22 letters' width and 16 rows is the least that a diagram can be read on.
  const double bearable = std::min(canvas.list.width / 22, canvas.list.height / 16);
  const double wanted = std::isfinite(options.text_size) ? std::clamp(options.text_size, 6.0, 60.0) : 12;
  canvas.size = std::min(wanted, bearable);
  canvas.row = 1.25 * canvas.size;
  canvas.line_width = std::isfinite(options.line_width) ? std::clamp(options.line_width, 0.5, 10.0) : 2;
  if (text_width) canvas.text_width = text_width;
  return canvas;
}

double fitting_size(const Canvas& canvas, const std::string& text, double width, bool bold) {
  const double needed = canvas.measure(text, false, bold);
  return needed > width && needed > 0 ? canvas.size * std::max(width, 1.0) / needed : canvas.size;
}

std::vector<std::string> wrapped(const Canvas& canvas, const std::string& text, double width, double size,
                                 bool bold) {
  std::vector<std::string> lines(1);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t blank = std::min(text.find_first_of(" \n", at), text.size());
    const std::string word = text.substr(at, blank - at);
    const std::string longer = lines.back().empty() ? word : lines.back() + " " + word;
    if (!lines.back().empty() && canvas.text_width(longer, size, bold, false, canvas.list.font) > width) {
      lines.push_back(word);
    } else {
      lines.back() = longer;
    }
    at = blank + 1;
  }
  return lines;
}

Point projected(const DiagramFrame& f, double x, double y, bool right_scale) {
  const double from = right_scale ? f.y2_from : f.y1_from, to = right_scale ? f.y2_to : f.y1_to;
  const double across = (x - f.x_from) / (f.x_to - f.x_from), up = (y - from) / (to - from);
  return {f.left + across * (f.right - f.left), f.bottom - up * (f.bottom - f.top)};
}

Point on_surface(const DiagramFrame& f, double x, double y, bool right_scale) {
  const Point at = projected(f, x, y, right_scale);
  return {std::clamp(at.x, f.left, f.right), std::clamp(at.y, f.top, f.bottom)};
}

LabelBox plot_box(const DiagramFrame& f) { return {f.left, f.top, f.right, f.bottom}; }

void draw_frame(Canvas& canvas) {
  const DiagramFrame& f = canvas.frame;
  add_polyline(canvas.list,
               {{f.left, f.top}, {f.right, f.top}, {f.right, f.bottom}, {f.left, f.bottom}, {f.left, f.top}},
               {canvas.colours.ink, 2});
}

void draw_x_axis(Canvas& canvas, const Axis& axis) {
  const DiagramFrame& f = canvas.frame;
  double widest = 0;
  for (const Tick& tick : ticks_of(axis)) {
    const Point at{on_surface(f, tick.position, 0, false).x, f.bottom};
    add_line(canvas.list, at, {at.x, at.y + kTickLength}, {canvas.colours.ink});
    widest = std::max(widest, canvas.measure(tick.label, tick.is_unit));
  }
  const double per_value = (f.right - f.left) / (axis.to - axis.from);
  for (const Tick& tick : labelled(axis, per_value, widest + 0.6 * canvas.size)) {
    const double x = on_surface(f, tick.position, 0, false).x;
    add_text(canvas.list, {x, f.bottom + kTickLength + 0.95 * canvas.size}, tick.label,
             {canvas.colours.ink, canvas.size, Align::centre, false, tick.is_unit});
  }
}

void draw_y_axis(Canvas& canvas, const Axis& axis, bool right, Colour colour) {
  const DiagramFrame& f = canvas.frame;
  const double edge = right ? f.right : f.left, out = right ? 1 : -1;
  for (const Tick& tick : ticks_of(axis)) {
    const double y = on_surface(f, 0, tick.position, right).y;
    // Lines of two scales would not meet, so only the left one has them.
    if (!right && y > f.top + 1 && y < f.bottom - 1) {
      add_line(canvas.list, {f.left, y}, {f.right, y}, {canvas.colours.grid});
    }
    add_line(canvas.list, {edge, y}, {edge + out * kTickLength, y}, {canvas.colours.ink});
  }
  const double per_value = (f.bottom - f.top) / (axis.to - axis.from);
  for (const Tick& tick : labelled(axis, per_value, 1.1 * canvas.size)) {
    const double y = on_surface(f, 0, tick.position, right).y;
    add_text(canvas.list, {edge + out * (kTickLength + kLabelGap), y + kBaseline * canvas.size}, tick.label,
             {colour, canvas.size, right ? Align::left : Align::right, false, tick.is_unit});
  }
}

void draw_axis_titles(Canvas& canvas, const Axis& left, const Axis* right, Colour left_colour,
                      Colour right_colour) {
  const double room = canvas.list.width - 2 * kEdge;
  const double lower = canvas.frame.top - 0.65 * canvas.row, upper = lower - canvas.row;
  const double left_width = canvas.measure(left.title),
               right_width = right ? canvas.measure(right->title) : 0;
  const bool side_by_side = left_width + right_width + canvas.size <= canvas.frame.right - canvas.frame.left;
  const double left_from =
      std::max(kEdge, std::min(canvas.frame.left, canvas.list.width - kEdge - left_width));
  add_text(canvas.list, {left_from, side_by_side || !right ? lower : upper}, left.title,
           {left_colour, fitting_size(canvas, left.title, room)});
  if (!right) return;
  const double right_to =
      std::min(canvas.list.width - kEdge, std::max(canvas.frame.right, kEdge + right_width));
  add_text(canvas.list, {right_to, lower}, right->title,
           {right_colour, fitting_size(canvas, right->title, room), Align::right});
}

void draw_series(Canvas& canvas, const Series& series) {
  const double width = canvas.line_width * (series.bold ? 1.8 : 1);
  for (const std::vector<Point>& piece : series.pieces) {
    if (piece.size() > 1) {
      add_polyline(canvas.list, piece, {series.colour, width, series.style});
    } else {
      add_circle(canvas.list, piece.front(), width, series.colour, true);
    }
  }
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
  add_text(canvas.list, {(box.left + box.right) / 2, (box.top + box.bottom) / 2 + kBaseline * canvas.size},
           text, {canvas.colours.ink, fitting_size(canvas, text, width - 6), Align::centre, false, true});
}

void draw_banner(Canvas& canvas, const std::string& text, Colour colour) {
  const double plot = canvas.frame.right - canvas.frame.left - 3 * canvas.size;
  const double room = std::max(plot, std::min(12 * canvas.size, 0.9 * canvas.list.width));
  const double size = std::min(1.15 * canvas.size, canvas.list.height / 12);
  const std::vector<std::string> lines = wrapped(canvas, text, room, size, true);
  double widest = 0;
  for (const std::string& line : lines) {
    widest = std::max(widest, canvas.text_width(line, size, true, false, canvas.list.font));
  }
  const double shrink = std::min(1.0, room / std::max(widest, 1.0));
  const double row = 1.3 * size, half = 0.5 * row * static_cast<double>(lines.size()) + 0.4 * size;
  const double middle = canvas.list.width / 2, centre = (canvas.frame.top + canvas.frame.bottom) / 2;
  const double half_width = shrink * widest / 2 + size;
  Colour paper = canvas.colours.paper;
  paper.a = 235;
  add_band(canvas.list, {middle - half_width, centre - half}, {middle + half_width, centre + half}, paper);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double y = centre - half + 0.4 * size + (static_cast<double>(i) + 0.5) * row + kBaseline * size;
    add_text(canvas.list, {middle, y}, lines[i], {colour, size * shrink, Align::centre, true});
  }
}

namespace {

double sample_length(const Canvas& canvas) { return std::max(2.2 * canvas.size, 7 * canvas.line_width); }

// Fills rows from `start` on. The title of the axis stands at the right of the first row; what does not fit
// beside it goes below.
LegendPlan flow_legend(const Canvas& canvas, const std::vector<Series>& series, const std::string& note,
                       const std::string& x_title, double start) {
  LegendPlan plan;
  const double end = canvas.list.width - kEdge, gap = 1.2 * canvas.size;
  plan.title_size = fitting_size(canvas, x_title, end - kEdge);
  const double title_from = canvas.frame.right - std::min(end - kEdge, canvas.measure(x_title)) - gap;
  double x = start;
  const auto place = [&](const std::string& text, const Series* curve) {
    const double sample = curve ? sample_length(canvas) + 0.4 * canvas.size : 0;
    const bool bold = curve && curve->bold;
    const double room = end - start - sample;
    const double width = sample + std::min(room, canvas.measure(text, !curve, bold));
    if (x + width > (plan.rows == 1 ? title_from : end) && (plan.rows == 1 || x > start)) {
      ++plan.rows;
      x = start;
    }
    plan.cells.push_back({x, width, fitting_size(canvas, text, room, bold), plan.rows - 1, curve, text});
    x += width + gap;
  };
  for (const Series& each : series) place(each.name, &each);
  if (!note.empty()) place(note, nullptr);
  return plan;
}

}  // namespace

LegendPlan plan_legend(const Canvas& canvas, const std::vector<Series>& series, const std::string& note,
                       const std::string& x_title) {
  const double start = std::min(canvas.frame.left, kEdge + 3 * canvas.size);
  LegendPlan plan = flow_legend(canvas, series, note, x_title, start);
  return plan.rows == 1 ? plan : flow_legend(canvas, series, note, x_title, kEdge);
}

// Stands for the line of a hidden curve.
static void draw_empty_sample(Canvas& canvas, double x, double middle, double length) {
  const double half = 0.3 * canvas.size;
  add_polyline(canvas.list,
               {{x, middle - half},
                {x + length, middle - half},
                {x + length, middle + half},
                {x, middle + half},
                {x, middle - half}},
               {canvas.colours.stale});
}

std::vector<LegendEntry> draw_legend(Canvas& canvas, const LegendPlan& plan, const std::string& x_title) {
  const DiagramFrame& f = canvas.frame;
  std::vector<LegendEntry> entries;
  const auto top_of = [&](int row) { return f.label_bottom + row * canvas.row; };
  const auto baseline_of = [&](int row) { return top_of(row) + 0.5 * canvas.row + kBaseline * canvas.size; };
  const double title_to =
      std::max(f.right, kEdge + std::min(canvas.measure(x_title), canvas.list.width - 2 * kEdge));
  add_text(canvas.list, {title_to, baseline_of(0)}, x_title,
           {canvas.colours.ink, plan.title_size, Align::right});
  for (const LegendPlan::Cell& cell : plan.cells) {
    const double y = baseline_of(cell.row);
    if (!cell.series) {
      add_text(canvas.list, {cell.x, y}, cell.text,
               {canvas.colours.ink, cell.size, Align::left, false, true});
      continue;
    }
    const Series& series = *cell.series;
    const double sample = sample_length(canvas), middle = y - kBaseline * canvas.size;
    if (series.hidden) {
      draw_empty_sample(canvas, cell.x, middle, sample);
    } else {
      add_line(canvas.list, {cell.x, middle}, {cell.x + sample, middle},
               {series.colour, canvas.line_width * (series.bold ? 1.8 : 1), series.style});
    }
    const double text_from = cell.x + sample + 0.4 * canvas.size, top = top_of(cell.row);
    add_text(
        canvas.list, {text_from, y}, cell.text,
        {series.hidden ? canvas.colours.stale : canvas.colours.ink, cell.size, Align::left, series.bold});
    entries.push_back({cell.x, top, cell.x + cell.width, top + canvas.row, cell.x + sample, series.number});
  }
  return entries;
}

}  // namespace tv
