// A draw list as a picture in SVG, without any window system: for the command line, tests and files.
#pragma once

#include <string>

#include "output/draw_list.h"

namespace tv {

// A whole SVG document in UTF-8, one element a line in the order of the list. Items with a coordinate that is
// not finite are left out; characters that XML cannot hold too.
std::string to_svg(const DrawList& list);

}  // namespace tv
