// Scales of a chart: the section of an axis that is on show and its ticks.
#pragma once

#include <string>
#include <vector>

#include "output/chart.h"

namespace tv {

// Ten ticks or so of a 1-2-5 step for an axis that covers the range; single precision. Not finite: 1.
double NiceTick(double range);

// A value that can stand on an axis.
bool is_drawable(double value);

// With a length, a tick and a pattern, whatever the axis told.
ChartAxis sound_axis(const ChartAxis& axis);
// The section of a sound axis that is on show, with ticks of its own.
ChartAxis section_of(const ChartAxis& axis, const ViewRange& range);
std::vector<ChartTick> ticks_of(const ChartAxis& axis);

}  // namespace tv
