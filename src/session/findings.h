// What the input check finds in a load. A warning stands as long as its cause does: it is told anew from the
// state whenever it is asked for. Its box comes at a calculation of the user's own, once for the same values.
#pragma once

#include <optional>
#include <vector>

#include "session/session.h"

namespace tv {

// The bore area against the circle of the calibre: more than 10 % above or 20 % below it.
std::optional<Finding> bore_area_finding(const Session& s);
// The groove diameter against the bullet's: -1 to 2 % of difference are silent.
std::optional<Finding> bullet_diameter_finding(const Session& s);
std::optional<Finding> seating_finding(const Session& s);  // a negative seating depth
std::optional<Finding> tail_finding(const Session& s);    // a boat tail that takes up the whole seating depth
std::optional<Finding> powder_finding(const Session& s);  // the load's powder against its record

// All that stand now, and last why the last calculation was refused, until an input changes.
std::vector<Finding> findings(const Session& s);

// The inputs that stand outside the limits of their fields, each once, where they are entered. Seating depths,
// and what a warning speaks of already, are left to the findings.
std::vector<FieldPlace> unusual_values(Session& s);

// The box of a warning, unless the same values have had it; nothing of it is remembered once its cause is gone.
void tell_once(Session& s, int kind, const std::optional<Finding>& finding);

// The focus into the field that a finding speaks of.
void go_to(Session& s, const Finding& finding);

}  // namespace tv
