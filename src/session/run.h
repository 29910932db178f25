// What starts a calculation, and in which order inputs, derived values, the run and the views follow.
#pragma once

#include "session/session.h"

namespace tv {

void setResultsValid(Session& s, bool valid);  // also clears both table_valid when invalid
void setStep(Session& s, int step);
// Friction runs with the fine step at least; without it the step is again the one that stood before, unless the
// user has chosen another since.
void begin_friction_step(Session& s);
void end_friction_step(Session& s);
int recalculate(Session& s);  // 0 on refusal, -1 after a finished run
void Patdef(Session& s);
// A shot of the load as it stands, never a table: nothing is asked and the focus stays. What refuses it stands
// in the findings, and the results stay as they are.
void calculate_quietly(Session& s);
int runAndShow(Session& s);
// One more interactive shot at the load as it stands, with the panel live whatever the display mode: after
// tables and fits. False if the set-up is refused or the run did not finish.
bool run_shown_shot(Session& s);

// Names and texts of the load as the screens show them now, for the views of a run.
DataBlock data_block(const Session& s);

// Display mode of the output window: -2 powder table, -1 load table, 0 point list, 1 to 6 diagrams.
void SetDisplayMode(Session& s, int type);
// A section of a diagram belongs to its axes: with other axes or another shot the whole is on show again.
void show_whole_diagram(Session& s);

}  // namespace tv
