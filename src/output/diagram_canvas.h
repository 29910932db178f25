// What the drawing steps of a diagram share: the list under way, its colours, sizes and frame.
#pragma once

#include <string>
#include <vector>

#include "output/diagram.h"
#include "output/diagram_labels.h"
#include "output/diagram_scale.h"

namespace tv {

struct Series {
  int number = 1;  // in the legend, from 1
  std::string name;
  Colour colour;
  LineStyle style = LineStyle::solid;
  bool bold = false;
  bool hidden = false;
  bool right_scale = false;
  std::vector<std::vector<Point>> pieces;  // on the surface; a gap wherever a point cannot be drawn
};

struct Canvas {
  DrawList list;
  DiagramFrame frame;
  DiagramColours colours;  // all grey when stale
  double size = 12;        // of the text, cut down to what the surface bears
  double row = 15;         // height of a text row
  double line_width = 2;
  TextWidth text_width = estimated_text_width;

  double measure(const std::string& text, bool italic = false, bool bold = false) const {
    return text_width(text, size, bold, italic, list.font);
  }
};

// A canvas of that size with text and lines that it can bear. Anything that is no size becomes one.
Canvas make_canvas(const DiagramOptions& options, double width, double height, TextWidth text_width);

// The largest size up to the canvas' own at which the text is no wider than that.
double fitting_size(const Canvas& canvas, const std::string& text, double width, bool bold = false);
// Breaks a text at blanks into lines no wider than that at the size.
std::vector<std::string> wrapped(const Canvas& canvas, const std::string& text, double width, double size,
                                 bool bold);

// Where a value stands, also beyond the frame.
Point projected(const DiagramFrame& frame, double x, double y, bool right_scale);
// The same, but what lies beyond the frame stands at its edge.
Point on_surface(const DiagramFrame& frame, double x, double y, bool right_scale);
LabelBox plot_box(const DiagramFrame& frame);

// The steps, each one onto the canvas' list.
void draw_frame(Canvas& canvas);
void draw_x_axis(Canvas& canvas, const Axis& axis);
void draw_y_axis(Canvas& canvas, const Axis& axis, bool right, Colour colour);
void draw_axis_titles(Canvas& canvas, const Axis& left, const Axis* right, Colour left_colour,
                      Colour right_colour);
void draw_series(Canvas& canvas, const Series& series);
// Tells in the emptiest corner of the plot that it shows a section.
void draw_corner_note(Canvas& canvas, LabelPlacer& placer, const std::string& text);
// A line of text in the middle of the canvas over everything else, in as many rows as it needs.
void draw_banner(Canvas& canvas, const std::string& text, Colour colour);

// Lower border: names of the curves with samples, a note, the title of the x axis.
struct LegendPlan {
  struct Cell {
    double x = 0, width = 0, size = 12;
    int row = 0;
    const Series* series = nullptr;  // none: the note
    std::string text;
  };
  std::vector<Cell> cells;
  int rows = 1;
  double title_size = 12;
};
LegendPlan plan_legend(const Canvas& canvas, const std::vector<Series>& series, const std::string& note,
                       const std::string& x_title);
std::vector<LegendEntry> draw_legend(Canvas& canvas, const LegendPlan& plan, const std::string& x_title);

}  // namespace tv
