#include "output/svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tv {
namespace {

// Two decimals at most, without idle zeros.
std::string number(double value) {
  std::string text = fmt::format("{:.2f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        if (static_cast<unsigned char>(c) >= 0x20) out += c;
    }
  }
  return out;
}

std::string paint(const char* what, Colour colour) {
  std::string out = fmt::format(" {}=\"#{:02x}{:02x}{:02x}\"", what, colour.r, colour.g, colour.b);
  if (colour.a != 255) out += fmt::format(" {}-opacity=\"{}\"", what, number(colour.a / 255.0));
  return out;
}

std::string dashes(LineStyle style, double width) {
  const auto pattern = [width](std::initializer_list<double> lengths) {
    std::string out;
    for (const double each : lengths)
      out += fmt::format("{}{}", out.empty() ? "" : " ", number(each * width));
    return fmt::format(" stroke-dasharray=\"{}\"", out);
  };
  switch (style) {
    case LineStyle::dash:
      return pattern({4, 2});
    case LineStyle::dot:
      return pattern({1, 2});
    case LineStyle::dash_dot:
      return pattern({4, 2, 1, 2});
    case LineStyle::solid:
      break;
  }
  return "";
}

std::string stroke(const DrawItem& item) {
  return paint("stroke", item.colour) + " stroke-width=\"" + number(item.width) + "\"" +
         dashes(item.style, item.width);
}

std::string polyline(const DrawItem& item) {
  std::string points;
  for (const Point& each : item.points) {
    points += (points.empty() ? "" : " ") + number(each.x) + "," + number(each.y);
  }
  if (item.filled) return "<polygon" + paint("fill", item.colour) + " points=\"" + points + "\"/>";
  return "<polyline fill=\"none\"" + stroke(item) + " stroke-linejoin=\"round\" points=\"" + points + "\"/>";
}

std::string circle(const DrawItem& item) {
  const Point at = item.points.front();
  return "<circle cx=\"" + number(at.x) + "\" cy=\"" + number(at.y) + "\" r=\"" + number(item.radius) + "\"" +
         (item.filled ? paint("fill", item.colour) : " fill=\"none\"" + stroke(item)) + "/>";
}

std::string band(const DrawItem& item) {
  const Point a = item.points.front(), b = item.points.back();
  return "<rect x=\"" + number(std::min(a.x, b.x)) + "\" y=\"" + number(std::min(a.y, b.y)) + "\" width=\"" +
         number(std::abs(a.x - b.x)) + "\" height=\"" + number(std::abs(a.y - b.y)) + "\"" +
         paint("fill", item.colour) + "/>";
}

std::string text(const DrawItem& item) {
  const Point at = item.points.front();
  std::string out = "<text xml:space=\"preserve\" x=\"" + number(at.x) + "\" y=\"" + number(at.y) +
                    "\" font-size=\"" + number(item.size) + "\"" + paint("fill", item.colour);
  if (item.bold) out += " font-weight=\"bold\"";
  if (item.italic) out += " font-style=\"italic\"";
  if (item.align == Align::centre) out += " text-anchor=\"middle\"";
  if (item.align == Align::right) out += " text-anchor=\"end\"";
  if (item.angle != 0) {
    out += " transform=\"rotate(" + number(-item.angle) + " " + number(at.x) + " " + number(at.y) + ")\"";
  }
  return out + ">" + escaped(item.text) + "</text>";
}

std::string element(const DrawItem& item) {
  switch (item.kind) {
    case DrawKind::line:
    case DrawKind::polyline:
      return polyline(item);
    case DrawKind::circle:
      return circle(item);
    case DrawKind::band:
      return band(item);
    case DrawKind::text:
      return text(item);
  }
  return "";
}

bool drawable(const DrawItem& item) {
  const auto finite = [](const Point& p) { return std::isfinite(p.x) && std::isfinite(p.y); };
  return !item.points.empty() && std::all_of(item.points.begin(), item.points.end(), finite) &&
         std::isfinite(item.radius) && std::isfinite(item.width) && std::isfinite(item.size) &&
         std::isfinite(item.angle);
}

}  // namespace

std::string to_svg(const DrawList& list) {
  const std::string size = " width=\"" + number(list.width) + "\" height=\"" + number(list.height) + "\"";
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"" +
                    size + " viewBox=\"0 0 " + number(list.width) + " " + number(list.height) +
                    "\" font-family=\"" + escaped(list.font) + ", sans-serif\">\n" + "<rect" + size +
                    paint("fill", list.background) + "/>\n";
  for (const DrawItem& item : list.items) {
    if (drawable(item)) out += element(item) + "\n";
  }
  return out + "</svg>\n";
}

}  // namespace tv
