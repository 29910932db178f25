// Scales of the diagrams: which quantity a type shows, the range and the ticks of an axis.
#pragma once

#include <string>
#include <vector>

#include "output/diagram.h"

namespace tv {

// Types 1 to 3 run over travel, 4 to 6 over time; pressure, velocity, both in turn.
inline bool is_over_time(int type) { return type >= 4; }
inline bool shows_pressure(int type) { return type % 3 != 2; }
inline bool shows_both(int type) { return type % 3 == 0; }

struct Axis {
  std::string title, unit;
  double from = 0, to = 1;   // the range drawn
  double low = 0, high = 1;  // the whole range; values beyond it stand at its ends
  double offset = 0;         // added to a position where it is told
  double tick = 0.1;
  std::string pattern;  // of the tick labels
};

struct Tick {
  double position = 0;
  std::string label;
  bool is_unit = false;  // the last one names the unit instead of its value
};

// An axis from `from` to its exact end; ticks as fit a length of `span`.
Axis exact_axis(double from, double to, double span, double offset, const std::string& unit);
// An axis from 0 to the smallest multiple of its tick that is neither below 1.02 times the largest value nor
// below `reach`.
Axis value_axis(double largest, double reach, const std::string& unit);
// The section of a whole axis that is on show, with ticks of its own.
Axis section_of(const Axis& axis, const ViewRange& range);
std::vector<Tick> ticks_of(const Axis& axis);

// The value under a point of the surface.
double x_value(const DiagramFrame& frame, double x);   // as drawn, without the label offset
double y1_value(const DiagramFrame& frame, double y);  // left scale
double y2_value(const DiagramFrame& frame, double y);  // right scale

// What a run gives at a logged point, in shown units; not finite when the point cannot be drawn.
double x_of(const DiagramRun& run, const DiagramOptions& options, int index);
double pressure_of(const DiagramRun& run, const DiagramOptions& options, int index);
double velocity_of(const DiagramRun& run, const DiagramOptions& options, int index);
// The index of the muzzle point, kept within the arrays.
int last_index(const DiagramRun& run);
// A value that can stand on an axis.
bool is_drawable(double value);
// A unit factor, 1 when it is no factor.
double sound_factor(double factor);

}  // namespace tv
