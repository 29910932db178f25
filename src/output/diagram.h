// The six standard diagrams of a shot: scales, zones, curves, marks, the section on show, and what a point on
// the surface means.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "engine/calc_state.h"
#include "output/diagram_view.h"
#include "output/draw_list.h"
#include "text/language.h"

namespace tv {

// Ten ticks or so of a 1-2-5 step for an axis that covers the range; single precision. Not finite: 1.
double NiceTick(double range);
// The value cut (not rounded) to three significant digits; 0 for a value not above 0.
double cut_three_digits(double value);

// Text and curves stand out against the paper, curves also against the bands, and the two curves differ for
// every kind of colour vision.
struct DiagramColours {
  Colour paper{255, 255, 255, 255}, ink{20, 20, 20, 255}, grid{215, 215, 215, 255};
  Colour pressure{176, 64, 0, 255}, velocity{0, 88, 168, 255};
  Colour over{255, 0, 0, 70}, near_limit{255, 0, 255, 60}, caution{255, 255, 0, 100};
  Colour stale{110, 110, 110, 255};
};
DiagramColours light_colours();
DiagramColours dark_colours();

// What a diagram is drawn from: a finished run's own copy, never the live inputs.
struct DiagramRun {
  const CalcState* state = nullptr;
  const ShotCurve* curve = nullptr;
  const ShotResult* result = nullptr;
  bool exits = true;  // the last point is the muzzle; false for a bullet that stuck and for a run that failed
};

struct DiagramOptions {
  int type = 6;  // grftyp 1 to 6
  bool imperial = false;
  double pressure_factor = 1e6;  // Pa per shown unit
  double velocity_factor = 1;    // m/s per shown unit
  double distance_factor = 1;    // mm per shown unit
  std::string pressure_unit = "MPa", velocity_unit = "m/s", distance_unit = "mm";
  bool zones = true, maximum = true, marks = true;  // pcolor, maxshw, actshw
  bool barrel_axis = false;                         // gbrlen
  double line_width = 2;
  bool stale = false;
  std::string font = "Arial";
  double text_size = 12;
  DiagramColours colours;
  int followed = 0;              // the curve that the read-out follows, drawn bold: 0 none, 1 first, 2 second
  std::array<bool, 2> hidden{};  // first and second curve: not drawn, grey in the legend
  DiagramView view;
};

// Axis ranges and the plot's rectangle: turns a point of the surface into values and back.
struct DiagramFrame {
  double left = 0, right = 0, top = 0, bottom = 0;
  double x_from = 0, x_to = 1, y1_from = 0, y1_to = 1, y2_from = 0, y2_to = 1;
  double x_label_offset = 0;  // barrel axis: added to the position
  bool has_right = false;
  double label_bottom = 0;  // lower edge of the x axis' labels; the legend begins under it
};

// A place of the legend: a click on the name picks the curve that the read-out follows, one on the sample of
// the line hides the curve and shows it again.
struct LegendEntry {
  double left = 0, top = 0, right = 0, bottom = 0;
  double sample_to = 0;  // right end of the sample
  int curve = 1;         // as DiagramOptions::followed
};

struct Diagram {
  DrawList list;
  DiagramFrame frame;
  std::vector<LegendEntry> legend;
};

// A type other than 1 to 6 draws type 3. Points that are not finite or beyond any gun are left out.
Diagram draw_diagram(const DiagramRun& run, const DiagramOptions& options, const Language& language,
                     double width, double height, TextWidth text_width);
// Before the first run: an empty frame with a text. Its DiagramFrame is empty, so the mouse finds nothing.
Diagram empty_diagram(const std::string& text, const DiagramOptions& options, double width, double height,
                      TextWidth text_width);

struct ReadOut {
  std::string x, y1, y2;        // y2 only with two curves
  std::vector<Point> on_curve;  // where the figures stand on the curves; empty for those of the bare point
};
// The values under the point, with their units; nothing when it lies outside the plot.
std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options, Point at);
// The same, but close to a curve the values of the curves themselves at the nearest place; a followed curve
// is always close, at the x of the point.
std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options,
                                const DiagramRun& run, Point at);
// The points that a read-out marks, to be drawn over the diagram; it has no background.
DrawList read_out_marks(const DiagramOptions& options, const ReadOut& read_out);

// A click beside an axis: the value and the mode of the fit; nothing inside the plot, on the legend, in the
// corners or above the frame.
struct FitClick {
  double value = 0;  // cut to three digits, in the units of the axis; 0 when there is nothing to fit: beep
  int mode = 0;      // 0 pressure, 1 velocity, 2 barrel time (ms), 3 travel, 4 barrel length
};
std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at);
bool inside_plot(const DiagramFrame& frame, Point at);
struct LegendHit {
  int curve = 0;  // 0: no entry there
  bool sample = false;
};
LegendHit legend_hit(const Diagram& diagram, Point at);

// The view after `steps` of the wheel at a point of the surface, inwards when above 0: in the plot both axes,
// beside an axis this one alone, elsewhere none.
DiagramView zoom_at(const DiagramFrame& frame, const DiagramView& view, Point at, double steps);
// The view when what stood at `from` has been dragged to `to`.
DiagramView drag_view(const DiagramFrame& frame, const DiagramView& view, Point from, Point to);

}  // namespace tv
