// The six standard diagrams and the optional one of a shot, told as charts: which curves over which axes, zones and marks, and
// what a click beside an axis asks for.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "engine/calc_state.h"
#include "output/chart.h"
#include "output/chart_axis.h"
#include "tables/data_block.h"
#include "text/language.h"

namespace tv {

using DiagramColours = ChartColours;
using DiagramFrame = ChartFrame;
using Diagram = DrawnChart;

// The value cut (not rounded) to three significant digits; 0 for a value not above 0.
double cut_three_digits(double value);

// What stands beside the curves of a run: the range of its prediction along the barrel, and what was measured.
struct DiagramBeside {
  std::vector<double> x;                             // m, as long as the others; empty: none
  std::vector<double> p_low, p_high, v_low, v_high;  // Pa, m/s
  struct Mean {
    double value = 0, half = 0;  // Pa or m/s, and half of its interval; a value of 0: none
  };
  Mean pressure, velocity;  // where the peak is calculated; at the muzzle
};

// What a diagram is drawn from: a finished run's own copy, never the live inputs.
struct DiagramRun {
  const CalcState* state = nullptr;
  const ShotCurve* curve = nullptr;
  const ShotResult* result = nullptr;
  bool exits = true;  // the last point is the muzzle; false for a bullet that stuck and for a run that failed
  double gun_kg = 0;  // mass of the gun for what its recoil does; not above 0 unknown
  const DataBlock* block = nullptr;  // names of the load, for the legend beside another run
  const DiagramRun* kept = nullptr;  // the run to compare with, if there is one
  const DiagramBeside* beside = nullptr;
};

struct DiagramOptions {
  int type = 6;           // grftyp 1 to 6
  bool optional = false;  // instead: quantity graf_y over graf_x, see quantities.h
  int graf_x = 0, graf_y = 3;
  std::string optional_x_unit, optional_y_unit;  // of that pair
  bool imperial = false;
  double pressure_factor = 1e6;  // Pa per shown unit
  double velocity_factor = 1;    // m/s per shown unit
  double distance_factor = 1;    // mm per shown unit
  std::string pressure_unit = "MPa", velocity_unit = "m/s", distance_unit = "mm";
  double metric_pressure_factor = 1e6;  // of quantities in the chosen unit, whatever the view
  std::string metric_pressure_unit = "MPa";
  bool zones = true, maximum = true, marks = true;  // pcolor, maxshw, actshw
  bool barrel_axis = false;                         // gbrlen
  double line_width = 2;
  bool stale = false;
  std::string font = "Arial";
  double text_size = 12;
  ChartColours colours;
  int followed = 0;              // the curve drawn bold: 0 none, 1 first, 2 second
  std::array<bool, 2> hidden{};  // first and second curve: not drawn, grey in the legend
  DiagramView view;
  // A measured pressure curve beside that of the shot, over the same axes and in their units; empty: none.
  std::vector<Point> reference;
  std::string reference_name;
};

// Types 1 to 3 run over travel, 4 to 6 over time; pressure, velocity, both in turn.
inline bool is_over_time(int type) { return type >= 4; }
inline bool shows_pressure(int type) { return type % 3 != 2; }
inline bool shows_both(int type) { return type % 3 == 0; }

// Numbers of the series: the present run's over the left axis and over the right one, then the kept run's.
inline constexpr int kLeftCurve = 1, kRightCurve = 2, kKeptLeft = 3, kKeptRight = 4;

// The chart of a diagram. A type other than 1 to 6 is 3. Nothing to draw: no series. A kept run is drawn thin
// in the same colours, the axes cover both, and the legend tells both loads.
Chart describe_diagram(const DiagramRun& run, const DiagramOptions& options, const Language& language);
Diagram draw_diagram(const DiagramRun& run, const DiagramOptions& options, const Language& language,
                     double width, double height, TextWidth text_width);
// Before the first run: an empty frame with a text.
Diagram empty_diagram(const std::string& text, const DiagramOptions& options, double width, double height,
                      TextWidth text_width);

struct ReadOut {
  std::string x, y1, y2;        // y2 only with two curves
  std::vector<Point> on_curve;  // where the figures stand on the curves; empty for those of the bare point
};
// Inside the plot the values of the curves at the point's x, whatever its height; beside an axis those of the
// axes at the point itself, the target of a fit. With units; nothing elsewhere.
std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options,
                                const DiagramRun& run, Point at);
// The values of the axes at the point itself.
std::optional<ReadOut> read_out(const DiagramFrame& frame, const DiagramOptions& options, Point at);

// A click beside an axis: the value and the mode of the fit; nothing inside the plot, on the legend, in the
// corners or above the frame.
struct FitClick {
  double value = 0;  // cut to three digits, in the units of the axis; 0 when there is nothing to fit: beep
  int mode = 0;      // 0 pressure, 1 velocity, 2 barrel time (ms), 3 travel, 4 barrel length
};
std::optional<FitClick> fit_click(const DiagramFrame& frame, const DiagramOptions& options, Point at);

}  // namespace tv
