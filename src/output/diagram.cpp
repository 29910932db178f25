#include "output/diagram.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "output/diagram_canvas.h"

namespace tv {
namespace {

using ValueOf = double (*)(const DiagramRun&, const DiagramOptions&, int);

constexpr double kTopRows = 2.6, kBottomRows = 2.8;  // text rows above and below the frame
constexpr const char* kReferenceLabel = "00000";     // gives the left and right inset

// The largest value of a series that can be drawn.
double largest(const DiagramRun& run, const DiagramOptions& options, ValueOf value_of) {
  double top = 0;
  for (int i = 0; i <= last_index(run); ++i) {
    const double y = value_of(run, options, i);
    if (is_drawable(y)) top = std::max(top, y);
  }
  return top;
}

// The cartridge's maximum in shown units, 0 if unknown.
double maximum_pressure(const DiagramRun& run, const DiagramOptions& options) {
  const double limit = run.state->dim.zul_P * 1e6 / sound_factor(options.pressure_factor);
  return is_drawable(limit) ? std::max(limit, 0.0) : 0;
}

Axis x_axis(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  if (is_over_time(options.type)) {
    const double end = std::abs(run.curve->t[0]) * 1000;
    Axis axis = exact_axis(0, end, end, 0, "ms");
    axis.title = language.fastmsg("fbulttim");
    return axis;
  }
  const double factor = sound_factor(options.distance_factor);
  const CartridgeDimensions& dim = run.state->dim;
  const double travel = dim.Wob / factor;
  // From the bolt face to the base of the bullet; the axis of the barrel begins there.
  const double behind = options.barrel_axis ? dim.Llen * kMmPerInch / factor - travel : 0;
  const double offset = is_drawable(behind) ? std::max(behind, 0.0) : 0;
  Axis axis = exact_axis(-offset, travel, travel, offset, options.distance_unit);
  axis.title = language.fastmsg(options.barrel_axis ? "fcharge6" : "fptravel");
  return axis;
}

Axis pressure_axis(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  const double reach = options.maximum ? maximum_pressure(run, options) : 0;
  Axis axis = value_axis(largest(run, options, pressure_of), reach, options.pressure_unit);
  axis.title = language.fastmsg("fchp");
  return axis;
}

Axis velocity_axis(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  Axis axis = value_axis(largest(run, options, velocity_of), 0, options.velocity_unit);
  axis.title = language.fastmsg("fvel");
  return axis;
}

struct Axes {
  Axis x, left, right;
  bool has_right = false;
};

Axes make_axes(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  Axes axes;
  axes.x = x_axis(run, options, language);
  axes.left = shows_pressure(options.type) ? pressure_axis(run, options, language)
                                           : velocity_axis(run, options, language);
  axes.has_right = shows_both(options.type);
  if (axes.has_right) axes.right = velocity_axis(run, options, language);
  axes.x = section_of(axes.x, options.view.x);
  axes.left = section_of(axes.left, options.view.y);
  axes.right = section_of(axes.right, options.view.y);
  return axes;
}

// Left and right edge and the scales; the legend needs the width before the height is known.
void set_width(Canvas& canvas, const Axes& axes) {
  double label = canvas.measure(kReferenceLabel);
  for (const Tick& tick : ticks_of(axes.left))
    label = std::max(label, canvas.measure(tick.label, tick.is_unit));
  if (axes.has_right) {
    for (const Tick& tick : ticks_of(axes.right)) {
      label = std::max(label, canvas.measure(tick.label, tick.is_unit));
    }
  }
  const double inset = std::min(label + 11, 0.3 * canvas.list.width);
  DiagramFrame& f = canvas.frame;
  f.left = inset;
  f.right = canvas.list.width - inset;
  f.x_from = axes.x.from;
  f.x_to = axes.x.to;
  f.x_label_offset = axes.x.offset;
  f.y1_from = axes.left.from;
  f.y1_to = axes.left.to;
  f.y2_from = axes.has_right ? axes.right.from : 0;
  f.y2_to = axes.has_right ? axes.right.to : 1;
  f.has_right = axes.has_right;
}

void set_height(Canvas& canvas, int legend_rows) {
  DiagramFrame& f = canvas.frame;
  f.top = kTopRows * canvas.row;
  f.bottom = canvas.list.height - (kBottomRows + legend_rows - 1) * canvas.row;
  f.label_bottom = canvas.list.height - (legend_rows + 0.3) * canvas.row;
}

std::vector<Series> make_series(const Canvas& canvas, const DiagramOptions& options, const Axes& axes) {
  std::vector<Series> series(axes.has_right ? 2 : 1);
  const bool pressure = shows_pressure(options.type);
  series[0].name = axes.left.title;
  series[0].colour = pressure ? canvas.colours.pressure : canvas.colours.velocity;
  // A velocity looks the same in every diagram.
  series[0].style = pressure ? LineStyle::solid : LineStyle::dash;
  if (axes.has_right) {
    series[1].number = 2;
    series[1].name = axes.right.title;
    series[1].colour = canvas.colours.velocity;
    series[1].style = LineStyle::dash;
    series[1].right_scale = true;
  }
  for (Series& each : series) {
    each.hidden = options.hidden[static_cast<std::size_t>(each.number - 1)];
    each.bold = each.number == options.followed && !each.hidden;
  }
  return series;
}

// Cut at the frame where a section is on show.
void clip(Series& series, const DiagramFrame& frame) {
  std::vector<std::vector<Point>> whole;
  whole.swap(series.pieces);
  for (const auto& piece : whole) {
    for (auto& part : clipped(plot_box(frame), piece)) series.pieces.push_back(std::move(part));
  }
}

void trace(Series& series, const DiagramFrame& frame, const Axes& axes, const DiagramRun& run,
           const DiagramOptions& options) {
  if (series.hidden) return;
  const ValueOf value_of = !series.right_scale && shows_pressure(options.type) ? pressure_of : velocity_of;
  const Axis& scale = series.right_scale ? axes.right : axes.left;
  bool open = false;
  for (int i = 0; i <= last_index(run); ++i) {
    const double x = x_of(run, options, i), y = value_of(run, options, i);
    if (!is_drawable(x) || !is_drawable(y)) {
      open = false;
      continue;
    }
    if (!open) series.pieces.emplace_back();
    open = true;
    series.pieces.back().push_back(projected(frame, std::clamp(x, axes.x.low, axes.x.high),
                                             std::clamp(y, scale.low, scale.high), series.right_scale));
  }
  if (!is_whole(options.view)) clip(series, frame);
}

void draw_zones(Canvas& canvas, double limit) {
  const DiagramFrame& f = canvas.frame;
  struct Zone {
    double from, to;
    Colour colour;
  };
  const double whole_top = std::max(limit, f.y1_to);
  const double near_limit = limit - 0.147 * limit, caution = near_limit - 0.097 * limit;
  for (const Zone& zone :
       {Zone{limit, whole_top, canvas.colours.over}, Zone{near_limit, limit, canvas.colours.near_limit},
        Zone{caution, near_limit, canvas.colours.caution}}) {
    if (zone.from >= f.y1_to || zone.to <= f.y1_from || zone.from >= zone.to) continue;
    add_band(canvas.list, on_surface(f, f.x_from, zone.to, false), on_surface(f, f.x_to, zone.from, false),
             zone.colour);
  }
}

// A box for a text whose baseline starts there.
LabelBox text_box(const Canvas& canvas, double x, double baseline, double width) {
  return {x - 2, baseline - 0.85 * canvas.size, x + width + 2, baseline + 0.25 * canvas.size};
}

Point text_anchor(const Canvas& canvas, const LabelBox& box) {
  return {box.left + 2, box.bottom - 0.25 * canvas.size};
}

struct LimitLine {
  double level;
  std::string label;
  LineStyle style;
  bool label_below;  // may be; below its line a label could be taken for the next line's
};

// At the right of the line, else further left; above it, else below.
std::vector<LabelBox> limit_candidates(const Canvas& canvas, const LimitLine& line, double y) {
  const double width = canvas.measure(line.label);
  std::vector<LabelBox> out;
  const double room = canvas.frame.right - canvas.frame.left - width;
  for (const double baseline : {y - 0.35 * canvas.size, y + 1.1 * canvas.size}) {
    if (baseline > y && !line.label_below) break;
    for (int step = 0; step <= 10; ++step) {
      const double x = canvas.frame.left + 4 + (room - 8) * (1 - step / 10.0);
      out.push_back(text_box(canvas, x, baseline, width));
    }
  }
  return out;
}

// Those that the section on show reaches.
std::vector<LimitLine> limit_lines(const DiagramFrame& f, double limit, const Language& language) {
  const std::string below = language.fastmsg("pmin");
  std::vector<LimitLine> lines = {{limit, language.fastmsg("pzul"), LineStyle::solid, true},
                                  {0.85 * limit, below + "-15% ", LineStyle::dash_dot, false},
                                  {0.75 * limit, below + "-25% ", LineStyle::dot, true}};
  std::erase_if(lines,
                [&f](const LimitLine& line) { return line.level < f.y1_from || line.level > f.y1_to; });
  return lines;
}

void draw_limits(Canvas& canvas, LabelPlacer& placer, const std::vector<LimitLine>& lines) {
  const DiagramFrame& f = canvas.frame;
  for (const LimitLine& line : lines) {
    const double y = on_surface(f, 0, line.level, false).y;
    add_line(canvas.list, {f.left, y}, {f.right, y}, {canvas.colours.ink, 1.5, line.style});
    placer.taken.push_back({f.left, y - 0.3, f.right, y + 0.3});  // no limit strikes out another's label
  }
  for (const LimitLine& line : lines) {
    const double y = on_surface(f, 0, line.level, false).y;
    const auto box = placer.place(limit_candidates(canvas, line, y));
    if (!box) continue;
    add_text(canvas.list, text_anchor(canvas, *box), line.label, {canvas.colours.ink, canvas.size});
  }
}

// Around a point in rings of growing distance, upper places first; on the left first when asked.
std::vector<LabelBox> mark_candidates(const Canvas& canvas, Point at, double radius, double width,
                                      bool left_first) {
  struct Direction {
    double x, y;
  };
  constexpr Direction directions[] = {{0, -1}, {1, -1}, {-1, -1}, {1, 0}, {-1, 0}, {1, 1}, {-1, 1}, {0, 1}};
  std::vector<LabelBox> out;
  for (int ring = 0; ring < 12; ++ring) {
    const double gap = radius + 3 + ring * canvas.size;
    for (const Direction& d : directions) {
      const double middle = at.x + (left_first ? -d.x : d.x) * (gap + width / 2 + 2);
      const double baseline = at.y + d.y * (gap + 0.55 * canvas.size) + 0.3 * canvas.size;
      out.push_back(text_box(canvas, middle - width / 2, baseline, width));
    }
  }
  return out;
}

// The place of a logged point, if it lies in the section on show.
std::optional<Point> point_on_show(const DiagramFrame& f, const Axes& axes, double x, double y) {
  if (!is_drawable(x) || !is_drawable(y)) return std::nullopt;
  const Point at = projected(f, std::clamp(x, axes.x.low, axes.x.high),
                             std::clamp(y, axes.left.low, axes.left.high), false);
  constexpr double slack = 0.01;  // a point at an end of the axis may miss the frame by its last bit
  if (!contains({f.left - slack, f.top - slack, f.right + slack, f.bottom + slack}, at)) return std::nullopt;
  return Point{std::clamp(at.x, f.left, f.right), std::clamp(at.y, f.top, f.bottom)};
}

struct Mark {
  const char* label;
  Point at;
  std::optional<LabelBox> box;  // of the label
};

// Joins a label that had to go far with its point.
void draw_leader(Canvas& canvas, Point at, double radius, const LabelBox& box) {
  const Point near{std::clamp(at.x, box.left, box.right), std::clamp(at.y, box.top, box.bottom)};
  const double away = std::hypot(near.x - at.x, near.y - at.y);
  if (away <= radius + canvas.size) return;
  const Point from{at.x + (near.x - at.x) * radius / away, at.y + (near.y - at.y) * radius / away};
  add_line(canvas.list, from, near, {canvas.colours.ink, 0.75});
}

double mark_radius(const Canvas& canvas) { return std::max(3.5, 1.2 * canvas.line_width + 1.5); }

// The marks that are wanted and valid, each with room for its label where there is any. Marks stand where
// the shot puts them, so they choose before the labels that may slide along a line.
std::vector<Mark> plan_marks(const Canvas& canvas, LabelPlacer& placer, const Axes& axes,
                             const DiagramRun& run, const DiagramOptions& options) {
  struct Candidate {
    const char* label;
    int index;
    bool wanted;
  };
  const ShotResult& r = *run.result;
  const bool flew = last_index(run) > 0 && !options.hidden[0];  // they stand on the first curve
  const Candidate candidates[] = {{"Pmax", r.peakIdx, options.maximum},
                                  {"M", last_index(run), options.marks && run.exits},
                                  {"100%", r.burnIdx, options.marks},
                                  {"Z1", r.z1Idx, options.marks},
                                  {"95%", r.idx95, options.marks}};
  const ValueOf value_of = shows_pressure(options.type) ? pressure_of : velocity_of;
  const double radius = mark_radius(canvas);
  std::vector<Mark> marks;
  for (const Candidate& each : candidates) {
    const double x = x_of(run, options, each.index), y = value_of(run, options, each.index);
    const std::optional<Point> at = point_on_show(canvas.frame, axes, x, y);
    if (!flew || !each.wanted || !at) continue;
    marks.push_back({each.label, *at, std::nullopt});
    placer.taken.push_back({at->x - radius, at->y - radius, at->x + radius, at->y + radius});
  }
  for (Mark& mark : marks) {
    const double width = canvas.measure(mark.label, false, true);
    // A close neighbour on the right has its label there.
    const bool left_first = std::any_of(marks.begin(), marks.end(), [&](const Mark& other) {
      return other.at.x > mark.at.x && other.at.x < mark.at.x + 3 * canvas.size;
    });
    mark.box = placer.place(mark_candidates(canvas, mark.at, radius, width, left_first));
  }
  return marks;
}

void draw_marks(Canvas& canvas, const std::vector<Mark>& marks) {
  const double radius = mark_radius(canvas);
  for (const Mark& mark : marks) {
    add_circle(canvas.list, mark.at, radius, canvas.colours.paper, true);
    add_circle(canvas.list, mark.at, radius, canvas.colours.ink, false, 1.5);
  }
  for (const Mark& mark : marks) {
    if (!mark.box) continue;
    draw_leader(canvas, mark.at, radius, *mark.box);
    add_text(canvas.list, text_anchor(canvas, *mark.box), mark.label,
             {canvas.colours.ink, canvas.size, Align::left, true});
  }
}

LabelPlacer make_placer(const Canvas& canvas, const std::vector<Series>& series,
                        const std::vector<LimitLine>& limits) {
  LabelPlacer placer;
  const DiagramFrame& f = canvas.frame;
  placer.bounds = {f.left + 2, f.top + 2, f.right - 2, f.bottom - 2};
  for (const Series& each : series) {
    placer.lines.insert(placer.lines.end(), each.pieces.begin(), each.pieces.end());
  }
  for (const LimitLine& line : limits) {
    const double y = on_surface(f, 0, line.level, false).y;
    placer.lines.push_back({{f.left, y}, {f.right, y}});
  }
  return placer;
}

void draw_axes(Canvas& canvas, const Axes& axes, const std::vector<Series>& series) {
  const Colour left = series.front().colour, right = series.back().colour;
  draw_y_axis(canvas, axes.left, false, axes.has_right ? left : canvas.colours.ink);
  if (axes.has_right) draw_y_axis(canvas, axes.right, true, right);
  draw_x_axis(canvas, axes.x);
  draw_axis_titles(canvas, axes.left, axes.has_right ? &axes.right : nullptr, left, right);
}

// A section could be taken for the whole, and a pressure that leaves the frame for one without a peak.
std::string section_note(const DiagramFrame& frame, const Axes& axes, const DiagramRun& run,
                         const DiagramOptions& options, const Language& language) {
  if (is_whole(options.view)) return {};
  const int peak = run.result->peakIdx;
  const double x = x_of(run, options, peak), y = pressure_of(run, options, peak);
  const bool gone =
      shows_pressure(options.type) && is_drawable(x) && is_drawable(y) && !point_on_show(frame, axes, x, y);
  return language.fastmsg(gone ? "fsectpk" : "fsection");
}

DiagramOptions with_known_type(DiagramOptions options) {
  if (options.type < 1 || options.type > 6) options.type = 3;
  return options;
}

}  // namespace

Diagram draw_diagram(const DiagramRun& run, const DiagramOptions& asked, const Language& language,
                     double width, double height, TextWidth text_width) {
  const DiagramOptions options = with_known_type(asked);
  if (!run.state || !run.curve || !run.result) return empty_diagram("", options, width, height, text_width);
  const Axes axes = make_axes(run, options, language);
  Canvas canvas = make_canvas(options, width, height, text_width);
  set_width(canvas, axes);
  std::vector<Series> series = make_series(canvas, options, axes);
  const bool coarse = run.state->schrit == 2 && is_over_time(options.type);
  const LegendPlan plan =
      plan_legend(canvas, series, coarse ? language.fastmsg("fcoarse") : "", axes.x.title);
  set_height(canvas, plan.rows);
  for (Series& each : series) trace(each, canvas.frame, axes, run, options);
  const double limit = shows_pressure(options.type) ? maximum_pressure(run, options) : 0;
  const std::vector<LimitLine> limits =
      limit > 0 && options.maximum ? limit_lines(canvas.frame, limit, language) : std::vector<LimitLine>{};
  LabelPlacer placer = make_placer(canvas, series, limits);
  const std::vector<Mark> marks = plan_marks(canvas, placer, axes, run, options);
  const std::string section = section_note(canvas.frame, axes, run, options, language);

  draw_frame(canvas);
  draw_axes(canvas, axes, series);
  if (limit > 0 && options.zones) draw_zones(canvas, limit);
  draw_limits(canvas, placer, limits);
  for (const Series& each : series) draw_series(canvas, each);
  draw_marks(canvas, marks);
  if (!section.empty()) draw_corner_note(canvas, placer, section);
  Diagram diagram;
  diagram.legend = draw_legend(canvas, plan, axes.x.title);
  if (options.stale) {
    draw_banner(canvas, language.fastmsg("fobsol0") + " " + language.fastmsg("fobsol1"), options.colours.ink);
  }
  diagram.list = std::move(canvas.list);
  diagram.frame = canvas.frame;
  return diagram;
}

Diagram empty_diagram(const std::string& text, const DiagramOptions& options, double width, double height,
                      TextWidth text_width) {
  Canvas canvas = make_canvas(options, width, height, text_width);
  const double inset = canvas.measure(kReferenceLabel) + 11;
  canvas.frame.left = inset;
  canvas.frame.right = canvas.list.width - inset;
  set_height(canvas, 1);
  draw_frame(canvas);
  if (!text.empty()) draw_banner(canvas, text, options.colours.ink);
  return {std::move(canvas.list), {}, {}};
}

}  // namespace tv
