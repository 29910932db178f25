// The drawing on the screen of the dimensions: the cartridge of the load as it stands now.
#pragma once

#include <string>

#include "output/draw_list.h"
#include "session/session.h"

namespace tv {

// What is wrong with how the bullet sits, in the language in force: it does not reach into the case, or with
// its tail only. Empty if nothing is.
std::string seating_warning(const Session& s);

// width, height: logical units; lengths in the units of the display.
DrawList dimension_drawing(const Session& s, double width, double height, TextWidth text_width, bool dark);

}  // namespace tv
