// The program's icons, drawn as vectors in the colours of the palette, so that they are sharp at every scale
// and readable on light and dark.
#pragma once

#include <QIcon>
#include <string_view>

namespace tv {

// The icon of a command by its name; an empty icon if it has none.
QIcon command_icon(std::string_view command);
QIcon warning_icon();
QIcon program_icon();

}  // namespace tv
