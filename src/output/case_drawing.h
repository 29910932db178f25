// The outside of a case, to scale, with every dimension that its shape has named on it.
#pragma once

#include "geometry/case_volume.h"
#include "output/measures.h"

namespace tv {

// Names of the measures are those of the fields: L1 to L3, LR, R1, P1, P2, H1, H2.
struct CaseWords {
  std::string schematic;  // where dimensions are missing or contradict each other: a usual case, dotted
  LengthText length;
};

// Of Hlen inch. What the drawing turned about its axis holds is the outside that the capacity starts from,
// the extractor groove of a rimless case included.
MeasuredDrawing draw_case(const CaseBody& body, double Hlen, const CaseWords& words,
                          const DrawingColours& colours, std::string_view marked, double width, double height,
                          TextWidth text_width);

}  // namespace tv
