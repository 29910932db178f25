// The six standard diagrams of a shot: scales, zones, curves, marks, and what a point on the surface means.
#pragma once

#include <optional>
#include <string>

#include "engine/calc_state.h"
#include "output/draw_list.h"
#include "text/language.h"

namespace tv {

// Ten ticks or so of a 1-2-5 step for an axis that covers the range; single precision. Not finite: 1.
double NiceTick(double range);
// The value cut (not rounded) to three significant digits; 0 for a value not above 0.
double cut_three_digits(double value);

struct DiagramColours {
  Colour paper{255, 255, 255, 255}, ink{0, 0, 0, 255}, grid{200, 200, 200, 255};
  Colour pressure{200, 0, 0, 255}, velocity{0, 70, 200, 255};
  Colour over{255, 0, 0, 90}, near_limit{255, 0, 255, 80}, caution{255, 255, 0, 90};
  Colour stale{128, 128, 128, 255};
};

// What a diagram is drawn from: a finished run's own copy, never the live inputs.
struct DiagramRun {
  const CalcState* state = nullptr;
  const ShotCurve* curve = nullptr;
  const ShotResult* result = nullptr;
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
  int followed = 0;  // the curve that the read-out follows: 0 all, 1 first, 2 second
};

// Axis ranges and the plot's rectangle: turns a point of the surface into values and back.
struct DiagramFrame {
  double left = 0, right = 0, top = 0, bottom = 0;
  double x_from = 0, x_to = 1, y1_to = 1, y2_to = 1;
  double x_label_offset = 0;  // barrel axis: added to the position
  bool has_right = false;
};

struct Diagram {
  DrawList list;
  DiagramFrame frame;
};

Diagram draw_diagram(const DiagramRun& run, const DiagramOptions& options, const Language& language,
                     double width, double height, TextWidth text_width);
// Before the first run: an empty frame with a text.
Diagram empty_diagram(const std::string& text, const DiagramOptions& options, double width, double height,
                      TextWidth text_width);

struct ReadOut {
  std::string x, y1, y2;  // y2 only with two curves
};
// Nothing when the point lies outside the plot.
std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options, Point at);

// A click beside an axis: the value and the mode of the fit; nothing inside the plot or elsewhere.
struct FitClick {
  double value = 0;  // cut to three digits, in the units of the axis
  int mode = 0;      // 0 pressure, 1 velocity, 2 barrel time (ms), 3 travel, 4 barrel length
};
std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at);
bool inside_plot(const DiagramFrame& frame, Point at);

}  // namespace tv
