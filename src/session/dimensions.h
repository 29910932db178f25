// Dimensions of the load on the screens: seating depth, lengths, volumes, travel and loading ratio kept
// consistent, with their fields.
#pragma once

#include "session/session.h"

namespace tv {

// kind: as DimensionEdit of geometry/dimensions.h.
void recompute_dimensions(Session& s, int kind);
void refresh_fill(Session& s);  // the loading ratio from charge, bulk density and the volume on show
// The volumes on show belong to a groove diameter that has changed since.
void mark_volumes_stale(Session& s);
// Fields that show a pressure in a unit that has changed.
void refresh_pressure_fields(Session& s);

// Units of the display; no value changes and no result becomes stale.
void set_unit_mode(Session& s, UnitMode mode);
void set_pressure_unit(Session& s, bool MPa);

}  // namespace tv
