// A diagram or a page as plain records: lines, circles, bands and texts. One replayer paints it, on the
// screen, a printer, into PDF, PNG and SVG alike. Coordinates are logical units (device-independent pixels)
// from the top left.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tv {

struct Colour {
  std::uint8_t r = 0, g = 0, b = 0, a = 255;
  friend bool operator==(const Colour&, const Colour&) = default;
};

enum class LineStyle : std::uint8_t { solid, dash, dot, dash_dot };
enum class DrawKind : std::uint8_t { line, polyline, circle, band, text };
enum class Align : std::uint8_t { left, centre, right };

struct Point {
  double x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct DrawItem {
  DrawKind kind = DrawKind::line;
  std::vector<Point>
      points;  // line: 2; polyline: many; circle: centre; band: two opposite corners; text: anchor (baseline)
  double radius = 0;  // circle
  Colour colour;      // of the line, the text or the band's fill
  double width = 1;   // of the line
  LineStyle style = LineStyle::solid;
  bool filled = false;  // circle; polyline: the area within, without its line
  std::string text;
  double size = 12;  // of the text: its pixel height
  bool bold = false, italic = false;
  Align align = Align::left;
  double angle = 0;  // degrees, counter-clockwise about the anchor
  friend bool operator==(const DrawItem&, const DrawItem&) = default;
};

struct DrawList {
  double width = 0, height = 0;
  Colour background{255, 255, 255, 255};
  std::string font = "Arial";
  std::vector<DrawItem> items;
  friend bool operator==(const DrawList&, const DrawList&) = default;
};

// What the layout of a diagram needs to know of a text on the canvas at hand: its width in logical units.
using TextWidth = double (*)(const std::string& text, double size, bool bold, bool italic,
                             const std::string& font);

// The width of a text without any font at hand, from the usual proportions of a sans-serif face; good to a
// tenth or so. For the command line and tests.
double estimated_text_width(const std::string& text, double size, bool bold, bool italic,
                            const std::string& font);

// How the look of a line is told at once.
struct Stroke {
  Colour colour;
  double width = 1;
  LineStyle style = LineStyle::solid;
};
struct TextLook {
  Colour colour;
  double size = 12;
  Align align = Align::left;
  bool bold = false, italic = false;
};

void add_line(DrawList& list, Point from, Point to, const Stroke& stroke);
void add_polyline(DrawList& list, std::vector<Point> points, const Stroke& stroke);
// The area within a line that closes itself.
void add_area(DrawList& list, std::vector<Point> points, Colour fill);
void add_circle(DrawList& list, Point centre, double radius, Colour colour, bool filled, double width = 1);
void add_band(DrawList& list, Point corner, Point opposite, Colour fill);
void add_text(DrawList& list, Point anchor, const std::string& text, const TextLook& look);

}  // namespace tv
