// Picked records into the load.
#pragma once

#include "session/session.h"

namespace tv {

// Nothing happens for row -1.
void take_cartridge(Session& s, int row);
void take_bullet(Session& s, int row);
void take_powder(Session& s, int row);
// Its values and its name, from a load that had them.
void put_back_powder(Session& s, const CalcState& from, const std::string& name);
// A cartridge that its editor or a gun tells: its values into the load as it stands. One of another name
// begins a new load, as a pick does.
void take_cartridge_values(Session& s, const Record& cartridge);
void match_bullet_list(Session& s, bool show_message);

}  // namespace tv
