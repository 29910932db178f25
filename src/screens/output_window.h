// The output window: what it shows by its display mode, in the units and from the copies of the last runs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "output/diagram.h"
#include "output/export_data.h"
#include "session/session.h"
#include "tables/table_data.h"

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
// A table as the window shows it: nothing where a text or a picture is on show.
struct OutputTable {
  TableData data = {};
  std::string heading = {};  // what stands above the columns, plain line breaks
  std::string line = {};     // the same in one line, what to watch first
  int present = -1;          // row of the load at hand
  int sorted_column =
      -1;  // index into the columns, those without a width counted; -1: by its own order or by name
  bool by_name = false, ascending = false;
  bool stale = false;
};
std::optional<OutputTable> output_table(const Session& s);
// A click on the head of a column, -1 that of the names: the powder table is sorted by it, or turned round. False: it
// has no order by that.
bool sort_output(Session& s, int column);

std::string output_table_rows(const Session& s);  // heads and rows of the table, cells parted by tabs
std::string output_tsv(const Session& s);         // the same for copying, cells parted by tabs
// What stands at the end of every print and export, whatever the window itself hides: the notes of the run
// with the note of its limit, and the standing notice.
std::string output_notes(const Session& s);
bool output_stale(const Session& s);  // what is on show belongs to inputs that have changed

// The diagram for a surface of that size; an empty frame before the first run. dark: colours for a dark desk.
DiagramOptions diagram_options(const Session& s, bool dark = false);
void show_reference(const Session& s, DiagramOptions& options);  // as its type wants it
// The points of the last run.
PointListRun shown_point_list(const Session& s);
// The last run and the kept one, if there is one. A run must have finished.
DiagramRun diagram_run(const Session& s);
void keep_run(Session& s);  // the last run in place of the one kept before
// The optional diagram of a pair of quantities in place of the standard one. False, and nothing changes, if
// it wants the mass of the gun and there is none.
bool show_optional(Session& s, int graf_x, int graf_y);
Diagram output_diagram(const Session& s, double width, double height, TextWidth text_width,
                       bool dark = false);

// What toexcel hands over; nothing when there is nothing to export.
std::optional<ExportData> output_export(const Session& s);

Chart output_chart(const Session& s, bool dark = false);  // what the diagram of a shot is made from

// What a click there would fit, if it would.
std::optional<FitClick> output_click(const Session& s, const DiagramFrame& frame, Point at);
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
