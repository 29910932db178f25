// The general chart: a picture of curves over two or three axes, told as plain records and drawn as a draw
// list. It knows nothing of shots. Values are in the units on show; a value that is not finite, or beyond
// 1e9, is left out and leaves a gap. Nothing here fails: what makes no sense (an axis of no length, a size
// that is none) is replaced by something that can be drawn.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "output/diagram_view.h"
#include "output/draw_list.h"

namespace tv {

// One palette for all charts. Text and curves stand out against the paper, curves also against the bands, and
// the curves differ for every kind of colour vision.
struct ChartColours {
  Colour paper{255, 255, 255, 255}, ink{20, 20, 20, 255}, grid{215, 215, 215, 255};
  Colour pressure{176, 64, 0, 255}, velocity{0, 88, 168, 255}, reference{0, 110, 60, 255};
  Colour over{222, 60, 56, 72}, near_limit{230, 116, 56, 56}, caution{236, 160, 52, 48};
  Colour stale{110, 110, 110, 255};  // of everything that is out of date, hidden or only for comparison
};
ChartColours light_colours();
ChartColours dark_colours();

struct ChartTick {
  double position = 0;
  std::string label = {};
  bool is_unit = false;  // the last one names the unit instead of its value
};

// A whole axis; what of it is on show tells the view.
struct ChartAxis {
  std::string title = {}, unit = {};  // without a unit the last tick shows its value like the others
  double from = 0, to = 1;            // values beyond stand at the ends
  double offset = 0;                  // added to a position where it is told
  double tick = 0;                    // not above 0: a nice one for the length
  std::string pattern = {};           // of the tick labels; empty: as the tick needs
  std::vector<ChartTick> ticks = {};  // these instead of regular ones, e.g. names below bars
  std::optional<Colour> title_colour = {}, label_colour = {};  // else ink
};

// From `from` to its exact end; ticks as fit a length of `span`.
ChartAxis exact_axis(double from, double to, double span, double offset, const std::string& unit);
// From 0 to the smallest multiple of its tick that is neither below 1.02 times the largest value nor below
// `reach`.
ChartAxis value_axis(double largest, double reach, const std::string& unit);
// Whole ticks around the lowest and the highest value, of either sign.
ChartAxis spread_axis(double lowest, double highest, const std::string& unit);

// What the read-out tells of a series: its value at any x, linear between points; that of a point close by;
// nothing.
enum class ChartReading : std::uint8_t { along, at_points, none };
enum class ChartPoints : std::uint8_t { none, dots, rings, bars };

struct ChartSeries {
  int id = 1;                       // by which legend, marks and read-out name it
  std::string name = {};            // in legend and read-out; empty: no entry in the legend
  std::string unit = {};            // in the read-out; empty: that of its axis
  std::vector<Point> points = {};   // x rising
  std::vector<double> spread = {};  // as many as points or none: half the length of a bar across each point
  Colour colour = {};
  LineStyle style = LineStyle::solid;
  double weight = 1;  // times the chart's line width; 0: no line
  ChartPoints shape = ChartPoints::none;
  double bar_width = 0;  // of bars, in units of x
  bool right_scale = false, bold = false, hidden = false;
  bool in_legend = true;
  ChartReading reading = ChartReading::along;
};

// A strip across the plot between two values of the left axis, or of the x axis if vertical.
struct ChartBand {
  double from = 0, to = 0;
  Colour colour = {};
  bool vertical = false;
  std::string label = {};  // at its right end, where it finds room
};
// What lies between two lines over the same axes, e.g. the spread of a curve.
struct ChartArea {
  std::vector<Point> lower = {}, upper = {};
  Colour colour = {};
  bool right_scale = false;
};
// A line across the plot at a value of the left axis, or of the x axis if vertical.
struct ChartLimit {
  double level = 0;
  std::string label = {};
  LineStyle style = LineStyle::solid;
  bool label_below = true;  // may be; below its line a label could be taken for the next line's
  bool vertical = false;
};
// A ring with a label. One with an id is a handle: larger, and found by handle_hit().
struct ChartMark {
  std::string label = {};
  Point at = {};
  bool right_scale = false;
  int series = 0;  // goes with this series when that is hidden
  int id = 0;
  std::optional<Colour> colour = {};  // else ink
};

struct ChartLook {
  ChartColours colours;
  std::string font = "Arial";
  double text_size = 12;
  double line_width = 2;
  bool stale = false;  // all grey
};

struct Chart {
  ChartAxis x, left;
  std::optional<ChartAxis> right;
  std::vector<ChartSeries> series;
  std::vector<ChartBand> bands;
  std::vector<ChartArea> areas;
  std::vector<ChartLimit> limits;
  std::vector<ChartMark> marks;
  std::string legend_note;                // behind the names of the series
  std::vector<std::string> legend_lines;  // below them, each from a row of its own
  std::string banner;                     // across the picture
  std::string section_note;               // in a corner while a section is on show
  std::string gone_note;                  // the same when that section does not hold `key`
  std::optional<Point> key;               // of the left scale: what must not be missed
  DiagramView view;
  ChartLook look;
};

// Turns a place of the surface into values and back.
struct ChartFrame {
  double left = 0, right = 0, top = 0, bottom = 0;  // the plot; nothing in it when empty
  double x_from = 0, x_to = 1, y1_from = 0, y1_to = 1, y2_from = 0, y2_to = 1;
  double x_label_offset = 0;  // added to x where it is told
  bool has_right = false;
  double label_bottom = 0;  // lower edge of the x axis' labels; the legend begins under it
};
double x_value(const ChartFrame& frame, double x);   // as drawn, without the offset
double y1_value(const ChartFrame& frame, double y);  // left scale
double y2_value(const ChartFrame& frame, double y);  // right scale
// Where a value stands, also beyond the plot.
Point projected(const ChartFrame& frame, double x, double y, bool right_scale);
bool inside_plot(const ChartFrame& frame, Point at);

enum class ChartZone : std::uint8_t { elsewhere, plot, left, right, below };
ChartZone zone_of(const ChartFrame& frame, Point at);

// A place of the legend: a click on the name picks the curve, one on the sample of the line hides it and
// shows it again.
struct LegendEntry {
  double left = 0, top = 0, right = 0, bottom = 0;
  double sample_to = 0;  // right end of the sample
  int curve = 1;         // id of the series
};
struct HandlePlace {
  int id = 0;
  Point at = {};
  double radius = 0;
};

struct DrawnChart {
  DrawList list;
  ChartFrame frame;
  std::vector<LegendEntry> legend;
  std::vector<HandlePlace> handles;
};

DrawnChart draw_chart(const Chart& chart, double width, double height, TextWidth text_width);
// An empty frame with a text across it. Its ChartFrame is empty, so a pointer finds nothing.
DrawnChart empty_chart(const std::string& text, const ChartLook& look, double width, double height,
                       TextWidth text_width);

struct LegendHit {
  int curve = 0;  // 0: no entry there
  bool sample = false;
};
LegendHit legend_hit(const DrawnChart& drawn, Point at);
// The id of the handle at a place, 0 if there is none. While it is dragged, x_value() and y1_value() of the
// pointer's place are the value it is dragged to.
int handle_hit(const DrawnChart& drawn, Point at);

// What stands at the pointer's x: inside the plot every series there, whatever the height of the pointer.
struct ChartReadOut {
  struct Entry {
    int series = 0;
    std::string name, value;  // the value with its unit
    double number = 0;        // the value, in the units on show
    Colour colour;
    std::optional<Point> at;  // on the surface; none outside the plot
  };
  std::string x;      // with its unit
  double number = 0;  // x without the offset
  std::vector<Entry> entries;
};
std::optional<ChartReadOut> chart_read_out(const Chart& chart, const ChartFrame& frame, Point at);
// What is drawn over the chart while the pointer stands there: a line at its x, a point on each curve and a
// box with the figures; beside an axis a dashed line at the value it points to, with a box for the hint. No
// background.
DrawList pointer_overlay(const Chart& chart, const ChartFrame& frame, Point at, TextWidth text_width,
                         const std::string& hint = {});
// A value with its unit, to a thousandth of the range: more digits would pretend what a pixel cannot tell.
std::string read_out_text(double value, double range, const std::string& unit);

// The view after `steps` of the wheel at a place, inwards when above 0: in the plot both axes, beside an axis
// this one alone, elsewhere none.
DiagramView zoom_at(const ChartFrame& frame, const DiagramView& view, Point at, double steps);
// The view when what stood at `from` has been dragged to `to`.
DiagramView drag_view(const ChartFrame& frame, const DiagramView& view, Point from, Point to);

}  // namespace tv
