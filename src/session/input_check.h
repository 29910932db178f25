// Whether the data on the screens can be calculated. Each stage stops at the first refused value and puts the
// focus into it; many findings only warn, and the run goes on.
#pragma once

#include "session/session.h"

namespace tv {

// What is shown is what runs: a start pressure shown stands in for a stored one below 1 MPa.
void take_shown_start_pressure(Session& s);
// Cartridge and bullet data; the travel from the geometry. Clears inputsOk at the first refusal.
void transferInputs(Session& s);
// Powder data; the SI values. Clears inputsOk on refusal.
void prepare_shot_checked(Session& s);
bool start_pressure_accepted(Session& s);  // true: may be calculated

}  // namespace tv
