#include "output/measures.h"

#include <algorithm>
#include <cmath>

#include "engine/calc_state.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kHeadLength = 6, kHeadHalf = 2, kNear = 5;

double distance_to_line(Point p, Point a, Point b) {
  const double dx = b.x - a.x, dy = b.y - a.y, long2 = dx * dx + dy * dy;
  const double t = long2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / long2, 0.0, 1.0) : 0;
  return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distance_to_box(Point p, Point a, Point b) {
  const auto [left, right] = std::minmax(a.x, b.x);
  const auto [top, bottom] = std::minmax(a.y, b.y);
  return std::hypot(p.x - std::clamp(p.x, left, right), p.y - std::clamp(p.y, top, bottom));
}

// A figure goes before every line that passes it.
double distance(const Measure& m, Point at) {
  const double to_text =
      m.text_from.x == m.text_to.x ? kNear + 1 : distance_to_box(at, m.text_from, m.text_to);
  return to_text == 0 ? -1 : std::min(to_text, distance_to_line(at, m.from, m.to));
}

}  // namespace

std::string_view measure_at(const MeasuredDrawing& drawing, Point at) {
  const auto nearest =
      std::ranges::min_element(drawing.measures, {}, [at](const Measure& m) { return distance(m, at); });
  if (nearest == drawing.measures.end() || distance(*nearest, at) > kNear) return {};
  return nearest->name;
}

DrawingColours light_drawing() { return {}; }

DrawingColours dark_drawing() {
  DrawingColours c;
  c.paper = {24, 26, 30, 255};
  c.ink = {236, 236, 236, 255};
  c.faint = {150, 154, 160, 255};
  c.body = {112, 94, 48, 255};
  c.bullet = {124, 78, 52, 255};
  c.steel = {66, 72, 80, 255};
  c.marked = {120, 190, 255, 255};
  return c;
}

std::string length_text(const LengthText& t, double mm) {
  if (!(mm > 0) || !std::isfinite(mm)) return "?";
  return format_pattern(t.metric ? mm : mm / kMmPerInch, t.metric ? "0.00#" : "0.000#") + t.unit;
}

double MeasurePen::width_of(const std::string& text) const {
  return text_width_(text, kFigureSize, false, false, drawing_.list.font);
}

Stroke MeasurePen::thin(std::string_view name) const {
  return {name == marked_ ? colours_.marked : colours_.faint, name == marked_ ? 1.5 : 0.8};
}

void MeasurePen::head(Point tip, Point from, Colour colour) {
  const double dx = from.x - tip.x, dy = from.y - tip.y, length = std::hypot(dx, dy);
  if (!(length > 2 * kHeadLength)) return;
  const double ux = dx / length, uy = dy / length;
  const Point foot{tip.x + ux * kHeadLength, tip.y + uy * kHeadLength};
  add_area(drawing_.list,
           {tip,
            {foot.x - uy * kHeadHalf, foot.y + ux * kHeadHalf},
            {foot.x + uy * kHeadHalf, foot.y - ux * kHeadHalf}},
           colour);
}

// `middle` is that of the figure's box.
void MeasurePen::figure(Measure& m, Point middle, const std::string& text, double angle) {
  const double half = width_of(text) / 2, turn = angle * kPi / 180;
  const double wide = half * std::fabs(std::cos(turn)) + kFigureSize / 2 * std::fabs(std::sin(turn));
  const double high = half * std::fabs(std::sin(turn)) + kFigureSize / 2 * std::fabs(std::cos(turn));
  m.text_from = {middle.x - wide, middle.y - high};
  m.text_to = {middle.x + wide, middle.y + high};
  const double down = kFigureSize * 0.36;  // from the middle of the letters to their foot
  add_text(drawing_.list, {middle.x + down * std::sin(turn), middle.y + down * std::cos(turn)}, text,
           {ink(m.name), kFigureSize, Align::centre, m.name == marked_});
  drawing_.list.items.back().angle = angle;
}

void MeasurePen::line(const Measure& m, bool both_heads) {
  add_line(drawing_.list, m.from, m.to, thin(m.name));
  heads(m, both_heads);
}

void MeasurePen::heads(const Measure& m, bool both) {
  head(m.to, m.from, thin(m.name).colour);
  if (both) head(m.from, m.to, thin(m.name).colour);
}

void MeasurePen::measure(std::string_view name, Point from, Point to, bool both_heads,
                         const std::string& text, Point figure_at, double angle) {
  Measure m{std::string(name), from, to, {}, {}};
  line(m, both_heads);
  figure(m, figure_at, text, angle);
  drawing_.measures.push_back(std::move(m));
}

void MeasurePen::level(std::string_view name, double x1, double x2, double y, const std::string& text) {
  const double half = width_of(text) / 2 + 4, middle = (x1 + x2) / 2;
  if (x2 - x1 <= 2 * half + 2 * kHeadLength)
    return measure(name, {x1, y}, {x2, y}, true, text, {x2 + half, y});
  Measure m{std::string(name), {x1, y}, {x2, y}, {}, {}};
  add_line(drawing_.list, m.from, {middle - half, y}, thin(name));
  add_line(drawing_.list, {middle + half, y}, m.to, thin(name));
  heads(m, true);
  figure(m, {middle, y}, text);
  drawing_.measures.push_back(std::move(m));
}

void MeasurePen::along(std::string_view name, Point from, Point to, bool both_heads, const std::string& text,
                       double share) {
  double angle = std::atan2(from.y - to.y, to.x - from.x) * 180 / kPi;
  if (angle > 91) angle -= 180;  // read from below or from the right
  if (angle < -89) angle += 180;
  const double turn = angle * kPi / 180, away = kFigureSize * 0.8;
  const Point middle{from.x + (to.x - from.x) * share, from.y + (to.y - from.y) * share};
  measure(name, from, to, both_heads, text,
          {middle.x - away * std::sin(turn), middle.y - away * std::cos(turn)}, angle);
}

void MeasurePen::extension(Point from, Point to) { add_line(drawing_.list, from, to, {colours_.faint, 0.5}); }

}  // namespace tv
