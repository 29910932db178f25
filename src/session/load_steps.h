// The steps of the load table, as its menus set them.
#pragma once

#include "session/session.h"

namespace tv {

// 1, 2 and 3 percent have menu entries of their own, any other value is the free percentage.
void SetLoadTableStep(Session& s, double percent);
// The burn rate tolerance, percent; any number stays in force.
void SetBaTolerance(Session& s, int percent);
// The step chosen last, by percent or by weight, stands; the other follows it and the charge. For whoever
// reads or stores one of them.
void settle_steps(Session& s);
// Input boxes: 0.1 to 9.0 percent; 0.1 to 5.0 grains, in the unit of weights on show. What is no number or
// lies outside changes nothing, and the status line says so.
void ask_percent_step(Session& s);
void ask_weight_step(Session& s);

}  // namespace tv
