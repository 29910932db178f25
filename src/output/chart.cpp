#include "output/chart.h"

#include <algorithm>
#include <utility>

#include "output/chart_canvas.h"

namespace tv {
namespace {

constexpr double kTopRows = 2.6, kBottomRows = 2.8;  // text rows above and below the frame
constexpr const char* kReferenceLabel = "00000";     // gives the least inset at left and right

Chart with_sound_axes(Chart chart) {
  chart.x = sound_axis(chart.x);
  chart.left = sound_axis(chart.left);
  if (chart.right) chart.right = sound_axis(*chart.right);
  return chart;
}

AxesOnShow axes_on_show(const Chart& chart) {
  AxesOnShow axes;
  axes.x = section_of(chart.x, chart.view.x);
  axes.left = section_of(chart.left, chart.view.y);
  axes.has_right = chart.right.has_value();
  if (chart.right) axes.right = section_of(*chart.right, chart.view.y);
  return axes;
}

double widest_label(const Canvas& canvas, const ChartAxis& axis) {
  double widest = 0;
  for (const ChartTick& tick : ticks_of(axis)) {
    widest = std::max(widest, canvas.measure(tick.label, tick.is_unit));
  }
  return widest;
}

// Left and right edge and the scales; the legend needs the width before the height is known.
void set_width(Canvas& canvas, const AxesOnShow& axes) {
  double label = std::max(canvas.measure(kReferenceLabel), widest_label(canvas, axes.left));
  if (axes.has_right) label = std::max(label, widest_label(canvas, axes.right));
  const double inset = std::min(label + 11, 0.3 * canvas.list.width);
  ChartFrame& f = canvas.frame;
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
  ChartFrame& f = canvas.frame;
  f.top = kTopRows * canvas.row;
  f.bottom = canvas.list.height - (kBottomRows + legend_rows - 1) * canvas.row;
  f.label_bottom = canvas.list.height - (legend_rows + 0.3) * canvas.row;
}

std::vector<TracedSeries> trace_all(const Canvas& canvas, const Chart& chart) {
  std::vector<TracedSeries> traced;
  for (const ChartSeries& each : chart.series) traced.push_back(trace(canvas, chart, each));
  return traced;
}

LabelPlacer make_placer(const Canvas& canvas, const std::vector<TracedSeries>& series,
                        const std::vector<LimitLine>& limits) {
  LabelPlacer placer;
  const ChartFrame& f = canvas.frame;
  placer.bounds = {f.left + 2, f.top + 2, f.right - 2, f.bottom - 2};
  for (const TracedSeries& each : series) {
    placer.lines.insert(placer.lines.end(), each.pieces.begin(), each.pieces.end());
  }
  for (const LimitLine& line : limits) placer.lines.push_back({line.from, line.to});
  return placer;
}

// A section could be taken for the whole.
std::string section_note(const Canvas& canvas, const Chart& chart) {
  if (is_whole(chart.view)) return {};
  const bool gone = chart.key && is_drawable(chart.key->x) && is_drawable(chart.key->y) &&
                    !point_on_show(canvas, chart, *chart.key, false);
  return gone ? chart.gone_note : chart.section_note;
}

std::vector<HandlePlace> handles_of(const std::vector<PlannedMark>& marks) {
  std::vector<HandlePlace> handles;
  for (const PlannedMark& each : marks) {
    if (each.mark->id != 0) handles.push_back({each.mark->id, each.at, each.radius});
  }
  return handles;
}

}  // namespace

DrawnChart draw_chart(const Chart& wanted, double width, double height, TextWidth text_width) {
  const Chart chart = with_sound_axes(wanted);
  const AxesOnShow axes = axes_on_show(chart);
  Canvas canvas = make_canvas(chart.look, width, height, text_width);
  set_width(canvas, axes);
  const LegendPlan plan = plan_legend(canvas, chart);
  set_height(canvas, plan.rows);
  const std::vector<TracedSeries> series = trace_all(canvas, chart);
  const std::vector<LimitLine> limits = limits_on_show(canvas.frame, chart.limits);
  LabelPlacer placer = make_placer(canvas, series, limits);
  const std::vector<PlannedMark> marks = plan_marks(canvas, placer, chart);

  draw_frame(canvas);
  draw_axes(canvas, axes);
  draw_bands(canvas, chart.bands);
  draw_areas(canvas, chart.areas);
  draw_limits(canvas, placer, limits);
  draw_band_words(canvas, placer, chart.bands);
  for (const TracedSeries& each : series) draw_series(canvas, each);
  draw_marks(canvas, marks);
  if (const std::string note = section_note(canvas, chart); !note.empty()) {
    draw_corner_note(canvas, placer, note);
  }
  DrawnChart drawn;
  drawn.legend = draw_legend(canvas, plan, chart.x.title);
  if (!chart.banner.empty()) draw_banner(canvas, chart.banner, chart.look.colours.ink);
  drawn.handles = handles_of(marks);
  drawn.list = std::move(canvas.list);
  drawn.frame = canvas.frame;
  return drawn;
}

DrawnChart empty_chart(const std::string& text, const ChartLook& look, double width, double height,
                       TextWidth text_width) {
  Canvas canvas = make_canvas(look, width, height, text_width);
  const double inset = canvas.measure(kReferenceLabel) + 11;
  canvas.frame.left = inset;
  canvas.frame.right = canvas.list.width - inset;
  set_height(canvas, 1);
  draw_frame(canvas);
  if (!text.empty()) draw_banner(canvas, text, look.colours.ink);
  return {std::move(canvas.list), {}, {}, {}};
}

}  // namespace tv
