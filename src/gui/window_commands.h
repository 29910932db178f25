// The commands that concern the windows themselves: arranging, zoom, fonts, the manual, the end.
#pragma once

#include <string_view>

#include "gui/desk.h"

namespace tv {

// Runs a command that only the windows can do; the session hands it over by its name.
void run_window_command(Desk& desk, std::string_view command);

// Windows of their own in an overlapping order.
void cascade(Desk& desk);
// The font of the windows from the options, scaled by the zoom.
void apply_fonts(Desk& desk);

}  // namespace tv
