#include "output/draw_list.h"

#include <string_view>
#include <utility>

namespace tv {
namespace {

// Shares of the pixel height, by the look of the letter.
double letter_width(unsigned char c) {
  constexpr std::string_view thin = "ijl.,:;'|! ", slim = "ftr()[]/-\"I", wide = "mwMW%@";
  if (thin.find(static_cast<char>(c)) != std::string_view::npos) return 0.28;
  if (slim.find(static_cast<char>(c)) != std::string_view::npos) return 0.34;
  if (wide.find(static_cast<char>(c)) != std::string_view::npos) return 0.86;
  if (c >= 'A' && c <= 'Z') return 0.69;
  if (c >= 0xC0) return 0.6;  // a letter of several bytes
  return 0.56;
}

}  // namespace

double estimated_text_width(const std::string& text, double size, bool bold, bool, const std::string&) {
  double width = 0;
  for (const char each : text) {
    const auto c = static_cast<unsigned char>(each);
    if ((c & 0xC0) != 0x80) width += letter_width(c);
  }
  return width * size * (bold ? 1.2 : 1.1);  // rather too wide than too narrow
}

void add_line(DrawList& list, Point from, Point to, const Stroke& stroke) {
  DrawItem item;
  item.points = {from, to};
  item.colour = stroke.colour;
  item.width = stroke.width;
  item.style = stroke.style;
  list.items.push_back(std::move(item));
}

void add_polyline(DrawList& list, std::vector<Point> points, const Stroke& stroke) {
  DrawItem item;
  item.kind = DrawKind::polyline;
  item.points = std::move(points);
  item.colour = stroke.colour;
  item.width = stroke.width;
  item.style = stroke.style;
  list.items.push_back(std::move(item));
}

void add_area(DrawList& list, std::vector<Point> points, Colour fill) {
  add_polyline(list, std::move(points), {fill});
  list.items.back().filled = true;
}

void add_circle(DrawList& list, Point centre, double radius, Colour colour, bool filled, double width) {
  DrawItem item;
  item.kind = DrawKind::circle;
  item.points = {centre};
  item.radius = radius;
  item.colour = colour;
  item.filled = filled;
  item.width = width;
  list.items.push_back(std::move(item));
}

void add_band(DrawList& list, Point corner, Point opposite, Colour fill) {
  DrawItem item;
  item.kind = DrawKind::band;
  item.points = {corner, opposite};
  item.colour = fill;
  list.items.push_back(std::move(item));
}

void add_text(DrawList& list, Point anchor, const std::string& text, const TextLook& look) {
  DrawItem item;
  item.kind = DrawKind::text;
  item.points = {anchor};
  item.text = text;
  item.colour = look.colour;
  item.size = look.size;
  item.align = look.align;
  item.bold = look.bold;
  item.italic = look.italic;
  list.items.push_back(std::move(item));
}

}  // namespace tv
