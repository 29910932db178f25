// What is drawn over a chart while the pointer is on it.
#include <algorithm>

#include "output/chart.h"

namespace tv {
namespace {

constexpr double kPointRadius = 4;

struct Row {
  std::string text;
  Colour colour;
};

std::vector<Row> rows_of(const Chart& chart, const ChartReadOut& told) {
  std::vector<Row> rows = {{told.x, chart.look.colours.ink}};
  for (const ChartReadOut::Entry& entry : told.entries) {
    rows.push_back({entry.name.empty() ? entry.value : entry.name + " " + entry.value, entry.colour});
  }
  return rows;
}

double widest_of(const std::vector<Row>& rows, const DrawList& list, double size, TextWidth text_width) {
  double widest = 0;
  for (const Row& row : rows) widest = std::max(widest, text_width(row.text, size, false, false, list.font));
  return widest;
}

// Below and right of the pointer, on the other side where that would leave the plot.
void draw_box(DrawList& list, const Chart& chart, const ChartFrame& f, Point at, const std::vector<Row>& rows,
              TextWidth text_width) {
  const ChartLook& look = chart.look;
  const double size = std::clamp(look.text_size, 6.0, 60.0), row = 1.3 * size;
  const double width = widest_of(rows, list, size, text_width) + size;
  const double height = row * static_cast<double>(rows.size()) + 0.5 * size, gap = 12;
  const double left = at.x + gap + width <= f.right ? at.x + gap : std::max(f.left, at.x - gap - width);
  const double top = at.y + gap + height <= f.bottom ? at.y + gap : std::max(f.top, at.y - gap - height);
  Colour paper = look.colours.paper;
  paper.a = 235;
  add_band(list, {left, top}, {left + width, top + height}, paper);
  add_polyline(
      list,
      {{left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}, {left, top}},
      {look.colours.stale});
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double baseline = top + 0.25 * size + (static_cast<double>(i) + 0.75) * row;
    add_text(list, {left + 0.5 * size, baseline}, rows[i].text, {rows[i].colour, size});
  }
}

void draw_target(DrawList& list, const ChartFrame& f, Point at, const Stroke& stroke) {
  switch (zone_of(f, at)) {
    case ChartZone::left:
    case ChartZone::right:
      return add_line(list, {f.left, at.y}, {f.right, at.y}, stroke);
    case ChartZone::below:
      return add_line(list, {at.x, f.top}, {at.x, f.bottom}, stroke);
    default:
      return;
  }
}

}  // namespace

DrawList pointer_overlay(const Chart& chart, const ChartFrame& frame, Point at, TextWidth text_width,
                         const std::string& hint) {
  DrawList list;
  list.background.a = 0;
  list.font = chart.look.font;
  const ChartColours& colours = chart.look.colours;
  if (!text_width) text_width = estimated_text_width;
  const auto told = chart_read_out(chart, frame, at);
  if (!told) {
    draw_target(list, frame, at, {colours.ink, 1, LineStyle::dash});
    if (!hint.empty()) {
      const Point inside{std::clamp(at.x, frame.left, frame.right),
                         std::clamp(at.y, frame.top, frame.bottom)};
      draw_box(list, chart, frame, inside, {{hint, colours.ink}}, text_width);
    }
    return list;
  }
  add_line(list, {at.x, frame.top}, {at.x, frame.bottom}, {colours.ink, 1, LineStyle::dot});
  for (const ChartReadOut::Entry& entry : told->entries) {
    if (!entry.at) continue;
    add_circle(list, *entry.at, kPointRadius + 1.5, colours.paper, true);
    add_circle(list, *entry.at, kPointRadius, entry.colour, true);
  }
  draw_box(list, chart, frame, at, rows_of(chart, *told), text_width);
  return list;
}

}  // namespace tv
