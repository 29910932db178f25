// What stands inside the plot of a chart with labels: limits and marks.
#include <algorithm>
#include <cmath>

#include "output/chart_canvas.h"

namespace tv {
namespace {

// A box for a text whose baseline starts there.
LabelBox text_box(const Canvas& canvas, double x, double baseline, double width) {
  return {x - 2, baseline - 0.85 * canvas.size, x + width + 2, baseline + 0.25 * canvas.size};
}

Point text_anchor(const Canvas& canvas, const LabelBox& box) {
  return {box.left + 2, box.bottom - 0.25 * canvas.size};
}

// At the right of the line, else further left; above it, else below.
std::vector<LabelBox> limit_candidates(const Canvas& canvas, const ChartLimit& limit, double y) {
  const double width = canvas.measure(limit.label);
  std::vector<LabelBox> out;
  const double room = canvas.frame.right - canvas.frame.left - width;
  for (const double baseline : {y - 0.35 * canvas.size, y + 1.1 * canvas.size}) {
    if (baseline > y && !limit.label_below) break;
    for (int step = 0; step <= 10; ++step) {
      const double x = canvas.frame.left + 4 + (room - 8) * (1 - step / 10.0);
      out.push_back(text_box(canvas, x, baseline, width));
    }
  }
  return out;
}

// Beside an upright line, from the top down, right of it or left.
std::vector<LabelBox> upright_candidates(const Canvas& canvas, const ChartLimit& limit, double x) {
  const double width = canvas.measure(limit.label);
  std::vector<LabelBox> out;
  for (int step = 0; step <= 10; ++step) {
    const double room = canvas.frame.bottom - canvas.frame.top - 2 * canvas.size;
    const double baseline = canvas.frame.top + 1.3 * canvas.size + room * step / 10.0;
    out.push_back(text_box(canvas, x + 4, baseline, width));
    out.push_back(text_box(canvas, x - 4 - width, baseline, width));
  }
  return out;
}

// Around a point in rings of growing distance, upper places first; on the left first when asked.
std::vector<LabelBox> mark_candidates(const Canvas& canvas, Point at, double radius, double width,
                                      bool left_first) {
  constexpr Point directions[] = {{0, -1}, {1, -1}, {-1, -1}, {1, 0}, {-1, 0}, {1, 1}, {-1, 1}, {0, 1}};
  std::vector<LabelBox> out;
  for (int ring = 0; ring < 12; ++ring) {
    const double gap = radius + 3 + ring * canvas.size;
    for (const Point& d : directions) {
      const double middle = at.x + (left_first ? -d.x : d.x) * (gap + width / 2 + 2);
      const double baseline = at.y + d.y * (gap + 0.55 * canvas.size) + 0.3 * canvas.size;
      out.push_back(text_box(canvas, middle - width / 2, baseline, width));
    }
  }
  return out;
}

// Joins a label that had to go far with its point.
void draw_leader(Canvas& canvas, Point at, double radius, const LabelBox& box) {
  const Point near{std::clamp(at.x, box.left, box.right), std::clamp(at.y, box.top, box.bottom)};
  const double away = std::hypot(near.x - at.x, near.y - at.y);
  if (away <= radius + canvas.size) return;
  const Point from{at.x + (near.x - at.x) * radius / away, at.y + (near.y - at.y) * radius / away};
  add_line(canvas.list, from, near, {canvas.colours.ink, 0.75});
}

double mark_radius(const Canvas& canvas, const ChartMark& mark) {
  const double radius = std::max(3.5, 1.2 * canvas.line_width + 1.5);
  return mark.id != 0 ? radius + 2.5 : radius;
}

bool is_hidden(const Chart& chart, int series) {
  return std::ranges::any_of(chart.series,
                             [series](const ChartSeries& each) { return each.id == series && each.hidden; });
}

std::vector<PlannedMark> marks_on_show(const Canvas& canvas, const Chart& chart) {
  std::vector<PlannedMark> marks;
  for (const ChartMark& mark : chart.marks) {
    const std::optional<Point> at = point_on_show(canvas, chart, mark.at, mark.right_scale);
    if (at && !is_hidden(chart, mark.series)) {
      marks.push_back({&mark, *at, mark_radius(canvas, mark), std::nullopt});
    }
  }
  return marks;
}

}  // namespace

std::vector<PlannedMark> plan_marks(const Canvas& canvas, LabelPlacer& placer, const Chart& chart) {
  std::vector<PlannedMark> marks = marks_on_show(canvas, chart);
  for (const PlannedMark& m : marks) {
    placer.taken.push_back({m.at.x - m.radius, m.at.y - m.radius, m.at.x + m.radius, m.at.y + m.radius});
  }
  for (PlannedMark& m : marks) {
    if (m.mark->label.empty()) continue;
    const double width = canvas.measure(m.mark->label, false, true);
    // A close neighbour on the right has its label there.
    const bool left_first = std::any_of(marks.begin(), marks.end(), [&](const PlannedMark& other) {
      return other.at.x > m.at.x && other.at.x < m.at.x + 3 * canvas.size;
    });
    m.box = placer.place(mark_candidates(canvas, m.at, m.radius, width, left_first));
  }
  return marks;
}

void draw_marks(Canvas& canvas, const std::vector<PlannedMark>& marks) {
  for (const PlannedMark& m : marks) {
    add_circle(canvas.list, m.at, m.radius, canvas.colours.paper, true);
    add_circle(canvas.list, m.at, m.radius, canvas.axis_colour(m.mark->colour), false,
               m.mark->id != 0 ? 2.5 : 1.5);
  }
  for (const PlannedMark& m : marks) {
    if (!m.box) continue;
    draw_leader(canvas, m.at, m.radius, *m.box);
    add_text(canvas.list, text_anchor(canvas, *m.box), m.mark->label,
             {canvas.colours.ink, canvas.size, Align::left, true});
  }
}

std::vector<LimitLine> limits_on_show(const ChartFrame& f, const std::vector<ChartLimit>& limits) {
  std::vector<LimitLine> lines;
  for (const ChartLimit& limit : limits) {
    const double from = limit.vertical ? f.x_from : f.y1_from, to = limit.vertical ? f.x_to : f.y1_to;
    if (!(limit.level >= from && limit.level <= to)) continue;
    if (limit.vertical) {
      const double x = on_surface(f, limit.level, 0, false).x;
      lines.push_back({&limit, {x, f.top}, {x, f.bottom}});
    } else {
      const double y = on_surface(f, 0, limit.level, false).y;
      lines.push_back({&limit, {f.left, y}, {f.right, y}});
    }
  }
  return lines;
}

void draw_limits(Canvas& canvas, LabelPlacer& placer, const std::vector<LimitLine>& lines) {
  for (const LimitLine& line : lines) {
    add_line(canvas.list, line.from, line.to, {canvas.colours.ink, 1.5, line.limit->style});
    // No limit strikes out another's label.
    const bool upright = line.limit->vertical;
    placer.taken.push_back({line.from.x - (upright ? 0.3 : 0), line.from.y - (upright ? 0 : 0.3),
                            line.to.x + (upright ? 0.3 : 0), line.to.y + (upright ? 0 : 0.3)});
  }
  for (const LimitLine& line : lines) {
    if (line.limit->label.empty()) continue;
    const auto box = placer.place(line.limit->vertical ? upright_candidates(canvas, *line.limit, line.from.x)
                                                       : limit_candidates(canvas, *line.limit, line.from.y));
    if (!box) continue;
    add_text(canvas.list, text_anchor(canvas, *box), line.limit->label, {canvas.colours.ink, canvas.size});
  }
}

}  // namespace tv
