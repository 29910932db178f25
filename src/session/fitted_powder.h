// A powder that was fitted to measured velocities, and the load that takes it.
#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

// "Powder 2026-11-22" of a powder whose name may hold the mark of an edited one, or an older day.
std::string fitted_name(std::string_view name, std::string_view day);
// The powder of the state becomes that of the load, as a copy with the day in its name, and the shot is run. One
// undo puts back what was.
void take_fitted_powder(Session& s, const CalcState& fitted, std::string_view day);

}  // namespace tv
