// Picked records into the load.
#pragma once

#include "session/session.h"

namespace tv {

// Nothing happens for row -1.
void take_cartridge(Session& s, int row);
void take_bullet(Session& s, int row);
void take_powder(Session& s, int row);
void match_bullet_list(Session& s, bool show_message);

}  // namespace tv
