// Measured drawings: a drawing with named dimension lines, and which of them a point touches.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "output/draw_list.h"

namespace tv {

// A dimension line with its figure. The name is that of the field that holds it.
struct Measure {
  std::string name;
  Point from, to;            // the line
  Point text_from, text_to;  // two opposite corners of the figure's box; both the same without a figure
};

struct MeasuredDrawing {
  DrawList list;
  std::vector<Measure> measures;
};
// The name of the measure whose figure or line lies nearest to a point, within a few units; empty: none.
std::string_view measure_at(const MeasuredDrawing& drawing, Point at);

struct DrawingColours {
  Colour paper{255, 255, 255, 255}, ink{40, 40, 40, 255}, faint{120, 120, 120, 255};
  Colour body{238, 217, 160, 255};  // of a case
  Colour bullet{214, 158, 120, 255};
  Colour steel{196, 202, 210, 255};
  Colour marked{0, 84, 166, 255};  // the measure whose field is in use
};
DrawingColours light_drawing();
DrawingColours dark_drawing();

// Lengths on a drawing.
struct LengthText {
  std::string unit;    // behind the figure, with its blank
  bool metric = true;  // mm, else inch
};
// "7.82 mm" or "0.308 in"; "?" for what is not above zero.
std::string length_text(const LengthText& t, double mm);

// Draws measures one after the other; `marked` is the name of the one to stand out.
class MeasurePen {
public:
  MeasurePen(MeasuredDrawing& drawing, const DrawingColours& colours, std::string_view marked,
             TextWidth text_width)
      : drawing_(drawing), colours_(colours), marked_(marked), text_width_(text_width) {}

  double width_of(const std::string& text) const;
  // A line with heads at both ends or at the last only, and its figure around a place, turned by an angle
  // (degrees, counter-clockwise).
  void measure(std::string_view name, Point from, Point to, bool both_heads, const std::string& text,
               Point figure_at, double angle = 0);
  // The figure in the middle of the line, which makes room for it, or behind its end where there is none.
  void level(std::string_view name, double x1, double x2, double y, const std::string& text);
  // The figure beside the line, along it, at a share of its length.
  void along(std::string_view name, Point from, Point to, bool both_heads, const std::string& text,
             double share = 0.5);
  // A thin line from the body to where it is measured.
  void extension(Point from, Point to);

private:
  Colour ink(std::string_view name) const { return name == marked_ ? colours_.marked : colours_.ink; }
  Stroke thin(std::string_view name) const;
  void line(const Measure& m, bool both_heads);
  void heads(const Measure& m, bool both);
  void head(Point tip, Point from, Colour colour);
  void figure(Measure& m, Point middle, const std::string& text, double angle = 0);

  MeasuredDrawing& drawing_;
  const DrawingColours& colours_;
  std::string_view marked_;
  TextWidth text_width_;
};

inline constexpr double kFigureSize = 11, kFigureRow = 16;  // logical units

}  // namespace tv
