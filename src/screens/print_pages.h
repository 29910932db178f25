// What the output window shows, as pages: a head line of the load, the diagram or the text, and at the foot
// of every page the notes of the run and the standing notice.
#pragma once

#include <string>
#include <vector>

#include "output/draw_list.h"
#include "session/session.h"

namespace tv {

// The printable rectangle in units of 1/96 inch, and the fonts of the device.
struct PrintArea {
  double width = 0, height = 0;
  std::string fixed_font;
  TextWidth text_width = estimated_text_width;
};

struct PagePart {
  Point at;  // of its top left on the printable rectangle
  DrawList list;
};
using PrintPage = std::vector<PagePart>;

bool output_printable(const Session& s);  // something valid is on show
// The text is too wide even in the smallest readable letters: it wants the paper turned.
bool wants_landscape(const Session& s, const PrintArea& area);
// No page if the margins leave no room. Texts are made smaller until they fit the width.
std::vector<PrintPage> output_pages(const Session& s, const PrintArea& area);

}  // namespace tv
