// The lower border of a chart.
#include <algorithm>

#include "output/chart_canvas.h"
#include "text/wrap.h"

namespace tv {
namespace {

double bold_factor(const ChartSeries& series) { return series.bold && !series.hidden ? 1.8 : 1; }

double sample_length(const Canvas& canvas) { return std::max(2.2 * canvas.size, 7 * canvas.line_width); }

// Lines of their own below the names, broken where they are too long; they leave the plot half the height.
void add_lines(LegendPlan& plan, const Canvas& canvas, const Chart& chart, double start) {
  const double room = canvas.list.width - kCanvasEdge - start;
  const int most = static_cast<int>(0.35 * canvas.list.height / canvas.row);
  for (const std::string& line : chart.legend_lines) {
    const auto fits = [&](const std::string& text) { return canvas.measure(text, true) <= room; };
    for (const std::string& text : wrap_words(line, fits)) {
      if (plan.rows >= most) {
        if (!plan.cells.empty() && !plan.cells.back().series) plan.cells.back().text += " ...";
        return;
      }
      ++plan.rows;
      plan.cells.push_back({start, room, fitting_size(canvas, text, room), plan.rows - 1, nullptr, text});
    }
  }
}

// Fills rows from `start` on. The title of the axis stands at the right of the first row; what does not fit
// beside it goes below.
LegendPlan flow_legend(const Canvas& canvas, const Chart& chart, double start) {
  LegendPlan plan;
  const std::string& x_title = chart.x.title;
  const double end = canvas.list.width - kCanvasEdge, gap = 1.2 * canvas.size;
  plan.title_size = fitting_size(canvas, x_title, end - kCanvasEdge);
  const double title_from = canvas.frame.right - std::min(end - kCanvasEdge, canvas.measure(x_title)) - gap;
  double x = start;
  const auto place = [&](const std::string& text, const ChartSeries* series) {
    const double sample = series ? sample_length(canvas) + 0.4 * canvas.size : 0;
    const bool bold = series && bold_factor(*series) > 1;
    const double room = end - start - sample;
    const double width = sample + std::min(room, canvas.measure(text, !series, bold));
    if (x + width > (plan.rows == 1 ? title_from : end) && (plan.rows == 1 || x > start)) {
      ++plan.rows;
      x = start;
    }
    plan.cells.push_back({x, width, fitting_size(canvas, text, room, bold), plan.rows - 1, series, text});
    x += width + gap;
  };
  for (const ChartSeries& each : chart.series) {
    if (each.in_legend && !each.name.empty()) place(each.name, &each);
  }
  if (!chart.legend_note.empty()) place(chart.legend_note, nullptr);
  add_lines(plan, canvas, chart, start);
  return plan;
}

// Stands for the line of a hidden series.
void draw_empty_sample(Canvas& canvas, double x, double middle, double length) {
  const double half = 0.3 * canvas.size;
  add_polyline(canvas.list,
               {{x, middle - half},
                {x + length, middle - half},
                {x + length, middle + half},
                {x, middle + half},
                {x, middle - half}},
               {canvas.colours.stale});
}

void draw_sample(Canvas& canvas, const ChartSeries& series, double x, double middle) {
  const double length = sample_length(canvas);
  if (series.hidden) return draw_empty_sample(canvas, x, middle, length);
  const Colour colour = canvas.line_colour(series.colour);
  if (series.weight > 0) {
    add_line(canvas.list, {x, middle}, {x + length, middle},
             {colour, canvas.line_width * series.weight * bold_factor(series), series.style});
  }
  if (series.shape == ChartPoints::bars) {
    add_band(canvas.list, {x, middle - 0.3 * canvas.size}, {x + length, middle + 0.3 * canvas.size}, colour);
  } else if (series.shape != ChartPoints::none) {
    add_circle(canvas.list, {x + length / 2, middle}, 3, colour, series.shape == ChartPoints::dots, 1.5);
  }
}

}  // namespace

LegendPlan plan_legend(const Canvas& canvas, const Chart& chart) {
  const double start = std::min(canvas.frame.left, kCanvasEdge + 3 * canvas.size);
  LegendPlan plan = flow_legend(canvas, chart, start);
  return plan.rows == 1 ? plan : flow_legend(canvas, chart, kCanvasEdge);
}

std::vector<LegendEntry> draw_legend(Canvas& canvas, const LegendPlan& plan, const std::string& x_title) {
  const ChartFrame& f = canvas.frame;
  std::vector<LegendEntry> entries;
  const auto top_of = [&](int row) { return f.label_bottom + row * canvas.row; };
  const auto baseline_of = [&](int row) {
    return top_of(row) + 0.5 * canvas.row + kTextMiddle * canvas.size;
  };
  const double title_to =
      std::max(f.right, kCanvasEdge + std::min(canvas.measure(x_title), canvas.list.width - 2 * kCanvasEdge));
  add_text(canvas.list, {title_to, baseline_of(0)}, x_title,
           {canvas.colours.ink, plan.title_size, Align::right});
  for (const LegendPlan::Cell& cell : plan.cells) {
    const double y = baseline_of(cell.row);
    if (!cell.series) {
      add_text(canvas.list, {cell.x, y}, cell.text,
               {canvas.colours.ink, cell.size, Align::left, false, true});
      continue;
    }
    const ChartSeries& series = *cell.series;
    const double sample = sample_length(canvas);
    draw_sample(canvas, series, cell.x, y - kTextMiddle * canvas.size);
    const double text_from = cell.x + sample + 0.4 * canvas.size, top = top_of(cell.row);
    add_text(canvas.list, {text_from, y}, cell.text,
             {series.hidden ? canvas.colours.stale : canvas.colours.ink, cell.size, Align::left,
              bold_factor(series) > 1});
    entries.push_back({cell.x, top, cell.x + cell.width, top + canvas.row, cell.x + sample, series.id});
  }
  return entries;
}

}  // namespace tv
