// The seated cartridge of the load, drawn from its stored dimensions: case, bullet with its tail, and how
// deep it sits. What the dimensions tell is to one scale in length and diameter; what they do not tell, the
// tip of a bullet always and the body of a case that was not measured, is drawn with dotted lines.
#pragma once

#include <string>

#include "engine/calc_state.h"
#include "output/draw_list.h"

namespace tv {

// The outside of the case, inch; zeros where it was not measured. Lengths are from the head.
struct CaseBody {
  double l1 = 0, l2 = 0;        // to where the shoulder and the neck begin
  double rim = 0, rim_dia = 0;  // head or rim: its length and diameter
  double P1 = 0, P2 = 0;        // diameter of the body at the head and at the shoulder
  double H1 = 0, H2 = 0;        // diameter of the neck at the shoulder and at the mouth
  int Shape = 0;                // body (0 bottleneck, 1 cone, 2 cylinder) + 10 * head
};

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
