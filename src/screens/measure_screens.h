// What the screens around measured strings give each other.
#pragma once

#include <string>
#include <vector>

#include "calculators/chronograph.h"
#include "output/chart.h"
#include "session/session.h"

namespace tv {

// frmMeas takes strings that were read: the first one fills an empty string on show, the others follow it.
void take_strings(Session& s, std::vector<MeasuredSeries> strings);
// frmColumns, for a file whose columns are not certain; what comes of it goes to take_strings().
void ask_columns(Session& s, std::string bytes, CellUnit unit);

// frmFit, when there is something to fit and the load can be calculated.
void open_fit(Session& s);
// frmBand, calculated at once; with its cross-check.
void open_band(Session& s, bool with_cross_check);

// A load whose inputs have changed is calculated first. False if it was refused.
bool run_is_current(Session& s);
// All shots over their charge, the means with their intervals, and the predicted velocities.
DrawList measured_plot(const Session& s, const Extent& e, bool fps);
// Light or dark, with the font of the diagrams.
ChartLook chart_look(const Session& s, bool dark);

}  // namespace tv
