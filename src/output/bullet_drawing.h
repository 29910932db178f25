// A bullet to scale with the measures of its tail and the angle of the cone. Its tip is only schematic.
#pragma once

#include "engine/calc_state.h"
#include "output/measures.h"

namespace tv {

// Names of the measures are those of the metric fields: gdiam, gelenm, cone_lenmm, cone_dia_Dm, cone_diam.
struct BulletWords {
  std::string missing;  // in place of the drawing, while diameter or length are not known
  std::string tail;     // a tail that cannot be: said instead of its measures
  LengthText length;
};

// Of buldin, Glen and the tail by its type; whether the load uses the tail does not matter.
MeasuredDrawing draw_bullet(const CartridgeDimensions& d, const BulletWords& words,
                            const DrawingColours& colours, std::string_view marked, double width,
                            double height, TextWidth text_width);

// The tail alone, as large as there is room, with its angle. Without a tail that can be only words.
DrawList draw_tail(const CartridgeDimensions& d, const BulletWords& words, const DrawingColours& colours,
                   double width, double height, TextWidth text_width);

}  // namespace tv
