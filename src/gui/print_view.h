// Printing what the output window shows: preview, printer, PDF. All of it works without any printer.
#pragma once

#include "gui/desk.h"

class QPrinter;

namespace tv {

// Paper by the country, margins by the options, turned if the text wants it.
void set_up_printer(QPrinter& printer, const Session& s);
// All pages onto the printer or into its file; false on failure or when the margins leave no room.
bool paint_output(QPrinter& printer, const Session& s);
void preview_output(Desk& desk);

}  // namespace tv
