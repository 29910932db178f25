// The cross-section of a rifled bore, to scale, with its measures: what the gas pushes on is paper, the
// barrel around it steel.
#pragma once

#include "geometry/bore_area.h"
#include "output/measures.h"

namespace tv {

// Names of the measures are those of the fields of the panel: Zug_mm, feld_mm, zbr, fbr.
struct BoreWords {
  std::string missing;  // in place of the profile, while its values give none
  LengthText length;
};

// A list of the given size, logical units; the groove circle fills 0.95 of the smaller side. Without an area
// only the circles that are known are drawn.
MeasuredDrawing draw_bore(const Rifling& r, const BoreWords& words, const DrawingColours& colours,
                          std::string_view marked, double width, double height, TextWidth text_width);

}  // namespace tv
