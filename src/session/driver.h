// From the data on the screens to results: dimensions, input check, transfer of records, the calculation.
#pragma once

#include "session/session.h"

namespace tv {

// Dimensions: keeps seating depth, lengths, volumes, travel and loading ratio consistent and writes their
// fields. kind: 0 seating depth, 1 bullet length, 2 overall length, 3 case length, 4 band seating depth,
// other: nothing moved.
void recompute_dimensions(Session& s, int kind);
void refresh_fill(Session& s);  // loading ratio, field and number
// The band seating depth is marked while the full-diameter body of a boat tail bullet stands off the case.
void mark_band_seating(Session& s);
// The volumes on show belong to a groove diameter that has changed since, or no longer do.
void mark_volumes_stale(Session& s, bool stale);
void refresh_pressure_fields(Session& s);  // ini_press1, zul_P and their unit captions

// Picked records into the load and the screens; nothing happens for row -1.
void take_cartridge(Session& s, int row);
void take_bullet(Session& s, int row);
void take_powder(Session& s, int row);
void match_bullet_list(Session& s, bool show_message);
void copy_list(Session& s, std::string_view from_screen, std::string_view from, std::string_view to_screen,
               std::string_view to);
// Selects row in a list by its stored row number and shows its text; -1 clears.
void select_row(Session& s, std::string_view screen, std::string_view list, int row);

// What is shown is what runs: a start pressure shown in ini_press1 stands in for a stored one below 1 MPa.
void take_shown_start_pressure(Session& s);
// Names and texts of the load as the screens show them now, for the views of a run.
DataBlock data_block(const Session& s);

// Units of the display; no value changes and no result becomes stale.
void set_unit_mode(Session& s, UnitMode mode);
void set_pressure_unit(Session& s, bool MPa);

// Cartridge and bullet data; the travel from the geometry. Clears inputsOk at the first refusal.
void transferInputs(Session& s);
// Powder data; the SI values. Clears inputsOk on refusal.
void prepareShotChecked(Session& s);
bool checkStartPressureAsked(Session& s);  // true: may be calculated

void setResultsValid(Session& s, bool valid);  // also clears both table_valid when invalid
void setStep(Session& s, int step);
int recalculate(Session& s);  // 0 on refusal, -1 after a finished run
void press_Patdef(Session& s);
int runAndShow(Session& s);
// One more interactive shot at the load as it stands, with the panel live whatever the display mode: after
// tables and fits. False if the set-up is refused or the run did not finish.
bool run_shown_shot(Session& s);
// The two tables, run in place of the single shot; the load stands as before, its own shot is shown again.
void run_load_table(Session& s);
void run_powder_table(Session& s);
// Fills the results panel and status line from the last run.
void show_panel(Session& s);
void clear_panel(Session& s);  // all figures and colours; the unit of pressure stays

// Display mode of the output window: -2 powder table, -1 load table, 0 point list, 1 to 6 diagrams.
void SetDisplayMode(Session& s, int type);
// A section of a diagram belongs to its axes: with other axes or another shot the whole is on show again.
void show_whole_diagram(Session& s);

// Single load to a target from a click beside an axis. mode 0 pressure, 1 velocity, 2 barrel time (ms), 3
// travel, 4 barrel length; value in the units of the axis.
void FitChargeToTarget(Session& s, double value, int mode);
bool can_undo_fit(const Session& s);
void undo_fit(Session& s);

}  // namespace tv
