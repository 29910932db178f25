// Where the command line program finds its data: the same places as the window program.
#pragma once

#include "data/settings_keys.h"

namespace tv {

// From the program's own place and the user's environment (HOME, XDG_CONFIG_HOME, XDG_DATA_HOME,
// XDG_DATA_DIRS). The delivered files lie beside bin/, in a build tree as in an installation.
PlaceHints place_hints();

}  // namespace tv
