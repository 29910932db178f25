// The palettes of the program's own light and dark look, for desktops that do not say which they are.
#pragma once

#include <QPalette>

namespace tv {

QPalette light_palette();
QPalette dark_palette();

// 0 as the desktop's, 1 light, 2 dark.
void apply_look(int look);

}  // namespace tv
