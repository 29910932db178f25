// The output window: what it shows by its display mode, in the units and from the copies of the last runs.
#pragma once

#include <optional>
#include <string>

#include "output/diagram.h"
#include "output/export_data.h"
#include "session/session.h"

namespace tv {

// Whether the text box stands in place of the drawing surface: modes 0, -1 and -2, or after a double click.
bool output_shows_text(const Session& s);
void output_switch(Session& s);  // double click: text and back

std::string output_caption(const Session& s);  // of the window, without the program's name
std::string output_text(const Session& s);     // plain line breaks; the point list for the diagrams
std::string output_tsv(const Session& s);      // the same for copying, cells parted by tabs
// What stands at the end of every print and export, whatever the window itself hides: the notes of the run
// with the note of its limit, and the standing notice.
std::string output_notes(const Session& s);
bool output_stale(const Session& s);  // what is on show belongs to inputs that have changed

// The diagram for a surface of that size; an empty frame before the first run. dark: colours for a dark desk.
DiagramOptions diagram_options(const Session& s, bool dark = false);
Diagram output_diagram(const Session& s, double width, double height, TextWidth text_width,
                       bool dark = false);

// What toexcel hands over; nothing when there is nothing to export.
std::optional<ExportData> output_export(const Session& s);

// Left click released at a point beside an axis: fits the load. False if the point means nothing.
bool click_output(Session& s, const DiagramFrame& frame, Point at);

}  // namespace tv
