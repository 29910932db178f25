// The output window: what it shows by its display mode, in the units and from the copies of the last runs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "output/diagram.h"
#include "output/export_data.h"
#include "session/session.h"

namespace tv {

// Whether the text box stands in place of the drawing surface: modes 0, -1 and -2, or after a double click.
bool output_shows_text(const Session& s);
void output_switch(Session& s);  // double click: text and back

std::string output_caption(const Session& s);  // of the window, without the program's name
std::string output_text(const Session& s);     // plain line breaks; the point list for the diagrams
// The same with the place of the lines that head its columns; none without a table.
struct OutputText {
  std::string text;
  int head_line = 0, head_lines = 0;  // first line, from 0, and number of lines
};
OutputText output_text_view(const Session& s);
std::string output_tsv(const Session& s);  // the same for copying, cells parted by tabs
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
// Left click on an entry of the legend: its name picks the curve that the read-out follows, a second click
// lets it go; its sample hides the curve and shows it again. A curve that is picked is shown.
void click_legend(Session& s, const LegendHit& hit);
void show_curve(Session& s, int curve, bool shown);

// A diagram of a shot is on show, so that there is something to zoom.
bool diagram_shown(const Session& s);
void zoom_output(Session& s, const DiagramFrame& frame, Point at, double steps);
void zoom_output(Session& s, double steps);  // about the middle
// By shares of the section on show, to the right and up; false at the ends of the axes.
bool move_output(Session& s, double right, double up);
// "+", "=", "-", the arrows, "Home" and "0"; "Escape" as long as a section is on show. True: it was used.
bool output_key(Session& s, std::string_view key);

}  // namespace tv
