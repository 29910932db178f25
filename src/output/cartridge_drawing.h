// The seated cartridge of the load, drawn from its stored dimensions: case, bullet with its tail, and how
// deep it sits. What the dimensions tell is to one scale in length and diameter; what they do not tell, the
// tip of a bullet always and the body of a case that was not measured, is drawn with dotted lines.
#pragma once

#include <string>

#include "engine/calc_state.h"
#include "geometry/case_volume.h"
#include "output/draw_list.h"

namespace tv {

struct CartridgeWords {
  std::string note;     // what dotted lines mean
  std::string missing;  // in place of a drawing, when the lengths or the calibre are not known
  std::string warning;  // of a bullet that does not hold in the case; empty: none
  std::string unit;     // behind the lengths, with its blank
  bool metric = true;   // lengths in mm, else in inch
};

struct CartridgeColours {
  Colour paper{255, 255, 255, 255}, ink{40, 40, 40, 255}, faint{150, 150, 150, 255};
  Colour brass{238, 217, 160, 255}, bullet{214, 158, 120, 255}, warning{176, 0, 0, 255};
};
CartridgeColours light_cartridge();
CartridgeColours dark_cartridge();

// True if lengths and diameter suffice for a drawing: all above zero and of a size that can be.
bool cartridge_can_be_drawn(const CartridgeDimensions& d);

// A list of the given size, logical units. Any stored values will do: what makes no sense counts as unknown.
DrawList draw_cartridge(const CartridgeDimensions& d, const CaseBody& body, const CartridgeWords& words,
                        const CartridgeColours& colours, double width, double height, TextWidth text_width);

}  // namespace tv
