// What the drawing steps of a chart share: the list under way, its colours, sizes and frame.
#pragma once

#include <string>
#include <vector>

#include "output/chart.h"
#include "output/chart_axis.h"
#include "output/chart_labels.h"

namespace tv {

struct Canvas {
  DrawList list;
  ChartFrame frame;
  ChartColours colours;  // all grey when stale
  bool stale = false;
  double size = 12;  // of the text, cut down to what the surface bears
  double row = 15;   // height of a text row
  double line_width = 2;
  TextWidth text_width = estimated_text_width;

  double measure(const std::string& text, bool italic = false, bool bold = false) const {
    return text_width(text, size, bold, italic, list.font);
  }
  Colour line_colour(const Colour& wanted) const { return stale ? colours.stale : wanted; }
  Colour axis_colour(const std::optional<Colour>& wanted) const {
    return line_colour(wanted.value_or(colours.ink));
  }
};

// A canvas of that size with text and lines that it can bear. Anything that is no size becomes one.
Canvas make_canvas(const ChartLook& look, double width, double height, TextWidth text_width);

// The axes with what of them is on show.
struct AxesOnShow {
  ChartAxis x, left, right;
  bool has_right = false;
};

// The largest size up to the canvas' own at which the text is no wider than that.
double fitting_size(const Canvas& canvas, const std::string& text, double width, bool bold = false);

// A value's place on the surface; what lies beyond the frame stands at its edge.
Point on_surface(const ChartFrame& frame, double x, double y, bool right_scale);
LabelBox plot_box(const ChartFrame& frame);
inline constexpr double kTextMiddle = 0.36;  // from the middle of a letter down to its baseline, of the size
inline constexpr double kCanvasEdge = 4;     // nothing is drawn nearer to the border

// The steps, each one onto the canvas' list.
void draw_frame(Canvas& canvas);
void draw_axes(Canvas& canvas, const AxesOnShow& axes);
// Tells in the emptiest corner of the plot that it shows a section.
void draw_corner_note(Canvas& canvas, LabelPlacer& placer, const std::string& text);
// A line of text in the middle of the canvas over everything else, in as many rows as it needs.
void draw_banner(Canvas& canvas, const std::string& text, Colour colour);

// A series on the surface.
struct TracedSeries {
  const ChartSeries* series = nullptr;
  Colour colour;
  double width = 2;                        // of its line
  std::vector<std::vector<Point>> pieces;  // a gap wherever a point cannot be drawn
};
TracedSeries trace(const Canvas& canvas, const Chart& chart, const ChartSeries& series);
void draw_series(Canvas& canvas, const TracedSeries& traced);
void draw_areas(Canvas& canvas, const std::vector<ChartArea>& areas);
void draw_bands(Canvas& canvas, const std::vector<ChartBand>& bands);
void draw_band_words(Canvas& canvas, LabelPlacer& placer, const std::vector<ChartBand>& bands);
// The place of a value, if it lies in the section on show.
std::optional<Point> point_on_show(const Canvas& canvas, const Chart& chart, Point value, bool right_scale);

// Marks stand where the values put them, so they choose the room for their labels before the limits, whose
// labels may slide along a line.
struct PlannedMark {
  const ChartMark* mark = nullptr;
  Point at;
  double radius = 0;
  std::optional<LabelBox> box;  // of the label
};
std::vector<PlannedMark> plan_marks(const Canvas& canvas, LabelPlacer& placer, const Chart& chart);
void draw_marks(Canvas& canvas, const std::vector<PlannedMark>& marks);
// The limits that the section on show reaches, as lines.
struct LimitLine {
  const ChartLimit* limit = nullptr;
  Point from, to;
};
std::vector<LimitLine> limits_on_show(const ChartFrame& frame, const std::vector<ChartLimit>& limits);
void draw_limits(Canvas& canvas, LabelPlacer& placer, const std::vector<LimitLine>& lines);

// Lower border: names of the series with samples, a note, the title of the x axis.
struct LegendPlan {
  struct Cell {
    double x = 0, width = 0, size = 12;
    int row = 0;
    const ChartSeries* series = nullptr;  // none: the note
    std::string text;
  };
  std::vector<Cell> cells;
  int rows = 1;
  double title_size = 12;
};
LegendPlan plan_legend(const Canvas& canvas, const Chart& chart);
std::vector<LegendEntry> draw_legend(Canvas& canvas, const LegendPlan& plan, const std::string& x_title);

}  // namespace tv
