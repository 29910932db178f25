// The two tables and the fit of the load at hand to a target, as the driver runs them.
#pragma once

#include "session/session.h"

namespace tv {

// Run in place of the single shot; the load stands as before, its own shot is shown again.
void run_load_table(Session& s);
void run_powder_table(Session& s);

// Single load to a target from a click beside an axis. mode 0 pressure, 1 velocity, 2 barrel time (ms), 3
// travel, 4 barrel length; value in the units of the axis.
void FitChargeToTarget(Session& s, double value, int mode);
// A row of the table on show becomes the load: its charge, and from the powder table its powder. The table stays
// valid. False: the row has nothing to take (no figures, burn rate rows, a table out of date).
bool take_table_row(Session& s, int row);
int present_row(const Session& s);  // of the table on show, the row that is the load at hand; -1 if none
bool can_undo_fit(const Session& s);
void undo_fit(Session& s);

}  // namespace tv
