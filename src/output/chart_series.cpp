// What stands inside the plot of a chart without labels: series, areas, bands.
#include <algorithm>
#include <cmath>
#include <utility>

#include "output/chart_canvas.h"

namespace tv {
namespace {

constexpr double kDotRadius = 3;

const ChartAxis& scale_of(const Chart& chart, bool right_scale) {
  return right_scale && chart.right ? *chart.right : chart.left;
}

// Where a value stands; beyond the whole axis at its end.
Point place_of(const Canvas& canvas, const Chart& chart, Point value, bool right_scale) {
  const ChartAxis& scale = scale_of(chart, right_scale);
  return projected(canvas.frame, std::clamp(value.x, chart.x.from, chart.x.to),
                   std::clamp(value.y, scale.from, scale.to), right_scale);
}

bool is_drawable(Point value) { return tv::is_drawable(value.x) && tv::is_drawable(value.y); }

// Cut at the frame where a section is on show.
void clip(std::vector<std::vector<Point>>& pieces, const ChartFrame& frame) {
  std::vector<std::vector<Point>> whole;
  whole.swap(pieces);
  for (const auto& piece : whole) {
    for (auto& part : clipped(plot_box(frame), piece)) pieces.push_back(std::move(part));
  }
}

void draw_lines(Canvas& canvas, const TracedSeries& traced) {
  for (const std::vector<Point>& piece : traced.pieces) {
    if (piece.size() > 1) {
      add_polyline(canvas.list, piece, {traced.colour, traced.width, traced.series->style});
    } else {
      add_circle(canvas.list, piece.front(), traced.width, traced.colour, true);
    }
  }
}

void draw_bar(Canvas& canvas, const TracedSeries& traced, Point value) {
  const ChartSeries& s = *traced.series;
  const ChartFrame& f = canvas.frame;
  const Point a = on_surface(f, value.x - s.bar_width / 2, value.y, s.right_scale);
  const Point b = on_surface(f, value.x + s.bar_width / 2, 0, s.right_scale);
  add_band(canvas.list, {a.x, std::min(a.y, b.y)}, {b.x, std::max(a.y, b.y)}, traced.colour);
}

// The bar that tells how far a point may be off.
void draw_spread(Canvas& canvas, const TracedSeries& traced, Point value, double half) {
  if (!tv::is_drawable(half) || !(half > 0)) return;
  const bool right = traced.series->right_scale;
  const Point low = on_surface(canvas.frame, value.x, value.y - half, right);
  const Point high = on_surface(canvas.frame, value.x, value.y + half, right);
  const Stroke stroke{traced.colour, 1};
  add_line(canvas.list, low, high, stroke);
  for (const Point end : {low, high}) {
    add_line(canvas.list, {end.x - kDotRadius, end.y}, {end.x + kDotRadius, end.y}, stroke);
  }
}

void draw_point(Canvas& canvas, const TracedSeries& traced, Point at) {
  if (traced.series->shape == ChartPoints::rings) {
    add_circle(canvas.list, at, kDotRadius + 1, canvas.colours.paper, true);
    add_circle(canvas.list, at, kDotRadius + 1, traced.colour, false, 1.5);
  } else {
    add_circle(canvas.list, at, kDotRadius, traced.colour, true);
  }
}

void draw_points(Canvas& canvas, const TracedSeries& traced) {
  const ChartSeries& s = *traced.series;
  for (std::size_t i = 0; i < s.points.size(); ++i) {
    if (!is_drawable(s.points[i])) continue;
    if (s.shape == ChartPoints::bars) {
      draw_bar(canvas, traced, s.points[i]);
      continue;
    }
    const Point at = projected(canvas.frame, s.points[i].x, s.points[i].y, s.right_scale);
    if (!inside_plot(canvas.frame, at)) continue;
    if (i < s.spread.size()) draw_spread(canvas, traced, s.points[i], s.spread[i]);
    draw_point(canvas, traced, at);
  }
}

// The part of a polygon on one side of an edge of the box.
template <class Inside, class Cut>
std::vector<Point> cut_polygon(const std::vector<Point>& polygon, Inside inside, Cut cut) {
  std::vector<Point> out;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point from = polygon[i], to = polygon[(i + 1) % polygon.size()];
    if (inside(from)) out.push_back(from);
    if (inside(from) != inside(to)) out.push_back(cut(from, to));
  }
  return out;
}

std::vector<Point> polygon_within(const LabelBox& box, std::vector<Point> polygon) {
  const auto at_x = [](double x) {
    return [x](Point a, Point b) { return Point{x, a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x)}; };
  };
  const auto at_y = [](double y) {
    return [y](Point a, Point b) { return Point{a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y), y}; };
  };
  polygon = cut_polygon(
      polygon, [&](Point p) { return p.x >= box.left; }, at_x(box.left));
  polygon = cut_polygon(
      polygon, [&](Point p) { return p.x <= box.right; }, at_x(box.right));
  polygon = cut_polygon(
      polygon, [&](Point p) { return p.y >= box.top; }, at_y(box.top));
  return cut_polygon(
      polygon, [&](Point p) { return p.y <= box.bottom; }, at_y(box.bottom));
}

Colour band_colour(const Canvas& canvas, const Colour& wanted) {
  if (!canvas.stale) return wanted;
  Colour grey = canvas.colours.stale;
  grey.a = static_cast<std::uint8_t>(wanted.a / 2);
  return grey;
}

}  // namespace

std::optional<Point> point_on_show(const Canvas& canvas, const Chart& chart, Point value, bool right_scale) {
  if (!is_drawable(value)) return std::nullopt;
  const ChartFrame& f = canvas.frame;
  const Point at = place_of(canvas, chart, value, right_scale);
  constexpr double slack = 0.01;  // a point at an end of the axis may miss the frame by its last bit
  if (!contains({f.left - slack, f.top - slack, f.right + slack, f.bottom + slack}, at)) return std::nullopt;
  return Point{std::clamp(at.x, f.left, f.right), std::clamp(at.y, f.top, f.bottom)};
}

TracedSeries trace(const Canvas& canvas, const Chart& chart, const ChartSeries& series) {
  TracedSeries traced{&series,
                      canvas.line_colour(series.colour),
                      canvas.line_width * series.weight * (series.bold ? 1.8 : 1),
                      {}};
  if (series.hidden || !(series.weight > 0)) return traced;
  bool open = false;
  for (const Point& value : series.points) {
    if (!is_drawable(value)) {
      open = false;
      continue;
    }
    if (!open) traced.pieces.emplace_back();
    open = true;
    traced.pieces.back().push_back(place_of(canvas, chart, value, series.right_scale));
  }
  if (!is_whole(chart.view)) clip(traced.pieces, canvas.frame);
  return traced;
}

void draw_series(Canvas& canvas, const TracedSeries& traced) {
  if (traced.series->hidden) return;
  draw_lines(canvas, traced);
  if (traced.series->shape != ChartPoints::none) draw_points(canvas, traced);
}

void draw_areas(Canvas& canvas, const std::vector<ChartArea>& areas) {
  for (const ChartArea& area : areas) {
    std::vector<Point> outline;
    const auto add = [&](Point value) {
      if (is_drawable(value)) {
        outline.push_back(projected(canvas.frame, value.x, value.y, area.right_scale));
      }
    };
    std::for_each(area.lower.begin(), area.lower.end(), add);
    std::for_each(area.upper.rbegin(), area.upper.rend(), add);
    outline = polygon_within(plot_box(canvas.frame), outline);
    if (outline.size() > 2) add_area(canvas.list, outline, band_colour(canvas, area.colour));
  }
}

void draw_bands(Canvas& canvas, const std::vector<ChartBand>& bands) {
  const ChartFrame& f = canvas.frame;
  for (const ChartBand& band : bands) {
    const double low = band.vertical ? f.x_from : f.y1_from, high = band.vertical ? f.x_to : f.y1_to;
    const double to = std::isfinite(band.to) ? band.to : std::max(band.from, high);
    if (!(band.from < high && to > low && band.from < to)) continue;
    const Point a =
        band.vertical ? on_surface(f, band.from, high, false) : on_surface(f, f.x_from, to, false);
    const Point b = band.vertical ? on_surface(f, to, low, false) : on_surface(f, f.x_to, band.from, false);
    add_band(canvas.list, a, b, band_colour(canvas, band.colour));
  }
}

// In the middle of its strip, at the right end or further left; none where the strip is too low for it.
void draw_band_words(Canvas& canvas, LabelPlacer& placer, const std::vector<ChartBand>& bands) {
  const ChartFrame& f = canvas.frame;
  for (const ChartBand& band : bands) {
    if (band.label.empty() || band.vertical) continue;
    const double top = std::max(f.top, on_surface(f, 0, std::isfinite(band.to) ? band.to : f.y1_to, false).y);
    const double bottom = std::min(f.bottom, on_surface(f, 0, band.from, false).y);
    if (bottom - top < 1.2 * canvas.size) continue;
    const double width = canvas.measure(band.label), baseline = (top + bottom) / 2 + 0.35 * canvas.size;
    std::vector<LabelBox> candidates;
    for (int step = 0; step <= 10; ++step) {
      const double x = f.left + 6 + (f.right - f.left - width - 12) * (1 - step / 10.0);
      candidates.push_back(
          {x - 2, baseline - 0.85 * canvas.size, x + width + 2, baseline + 0.25 * canvas.size});
    }
    if (const auto box = placer.place(candidates))
      add_text(canvas.list, {box->left + 2, baseline}, band.label, {canvas.colours.ink, canvas.size});
  }
}

}  // namespace tv
