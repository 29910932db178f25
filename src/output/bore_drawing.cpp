#include "output/bore_drawing.h"

#include <algorithm>
#include <cmath>

#include "engine/calc_state.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kFilled = 0.95;  // of the smaller side, by the groove circle

class BoreDrawing {
public:
  BoreDrawing(const Rifling& r, const BoreWords& words, const DrawingColours& colours,
              MeasuredDrawing& drawing, MeasurePen& pen)
      : r_(r), words_(words), colours_(colours), list_(drawing.list), pen_(pen) {
    const double half = std::min(list_.width, list_.height) / 2;
    centre_ = {list_.width / 2, list_.height / 2};
    widest_ = std::max(static_cast<double>(r.Dz), static_cast<double>(r.Df)) / 2;
    scale_ = widest_ > 0 && std::isfinite(widest_) ? kFilled * half / widest_ : 0;
    theta_ = r.n >= 1 ? kPi / static_cast<double>(r.n) : kPi / 2;
    turn_ = kPi / 2 - theta_;  // the first groove points up
    barrel_ = half;
  }

  void draw() {
    add_circle(list_, centre_, barrel_, colours_.steel, true);
    const auto arcs = bore_outline(r_);
    if (arcs.empty()) return unknown();
    outline(arcs);
    circles();
    diameters();
    if (r_.polygon)
      radii(arcs);
    else
      widths(arcs);
  }

private:
  Point at(double x, double y) const {
    const double c = std::cos(turn_), s = std::sin(turn_);
    return {centre_.x + scale_ * (x * c - y * s), centre_.y - scale_ * (x * s + y * c)};
  }
  Point around(double radius, double angle) const {
    return at(radius * std::cos(angle), radius * std::sin(angle));
  }
  static double middle(const BoreArc& a) { return (a.from + a.to) / 2; }
  Point on(const BoreArc& a, double angle) const {
    return at(a.x + a.radius * std::cos(angle), a.y + a.radius * std::sin(angle));
  }

  void unknown() {
    add_circle(list_, centre_, scale_ > 0 ? kFilled * barrel_ : 0.0, colours_.paper, true);
    if (scale_ > 0) circles();
    add_text(list_, centre_, words_.missing, {colours_.ink, kFigureSize, Align::centre});
  }

  void outline(const std::vector<BoreArc>& arcs) {
    std::vector<Point> points;
    for (const BoreArc& a : arcs) {
      const int steps = std::clamp(static_cast<int>(std::fabs(a.to - a.from) * 200 / kPi), 8, 400);
      for (int i = 0; i <= steps; ++i) points.push_back(on(a, a.from + (a.to - a.from) * i / steps));
    }
    points.push_back(points.front());
    add_area(list_, points, colours_.paper);
    add_polyline(list_, std::move(points), {colours_.ink, 1.5});
  }

  // The circles of lands and grooves, dashed: the profile runs along them or between.
  void circles() {
    for (const float diameter : {r_.Dz, r_.Df}) {
      if (!(diameter > 0)) continue;
      std::vector<Point> points;
      for (int i = 0; i <= 180; ++i)
        points.push_back(around(static_cast<double>(diameter) / 2, i * kPi / 90));
      add_polyline(list_, std::move(points), {colours_.faint, 0.7, LineStyle::dash});
    }
  }

  std::string length(float mm) const { return length_text(words_.length, static_cast<double>(mm)); }

  // Over the centre: from the groove on top, and from the land nearest to the level.
  void diameters() {
    const double Rz = static_cast<double>(r_.Dz) / 2, Rf = static_cast<double>(r_.Df) / 2;
    pen_.along("Zug_mm", around(Rz, theta_), around(-Rz, theta_), true, "\u00D8 " + length(r_.Dz), 0.75);
    pen_.along("feld_mm", around(-Rf, level_land()), around(Rf, level_land()), true,
               "\u00D8 " + length(r_.Df), 0.72);
    const Point free = around(Rf * 0.5, level_land() + kPi / 4);
    add_text(list_, free, "n = " + format_number(static_cast<double>(r_.n), "0"),
             {colours_.ink, kFigureSize, Align::centre});
  }

  // The middle of the land next to the level line on the right.
  double level_land() const {
    const double step = 2 * theta_;
    return std::round(-turn_ / step) * step;
  }

  // The arc next to a direction on the drawing, of the lands or of the grooves.
  const BoreArc& nearest(const std::vector<BoreArc>& arcs, std::size_t first, double direction) const {
    const auto off = [&](std::size_t i) {
      return std::fabs(std::remainder(middle(arcs[i]) + turn_ - direction, 2 * kPi));
    };
    std::size_t best = first;
    for (std::size_t i = first; i < arcs.size(); i += 2)
      if (off(i) < off(best)) best = i;
    return arcs[best];
  }

  // Across the mean diameter, the figures within.
  void widths(const std::vector<BoreArc>& arcs) {
    width("zbr", nearest(arcs, 1, kPi * 0.8), r_.groove_width);
    width("fbr", nearest(arcs, 0, kPi * 1.25), r_.land_width);
  }
  void width(std::string_view name, const BoreArc& a, float mm) {
    const double R = (static_cast<double>(r_.Dz) + static_cast<double>(r_.Df)) / 4;
    const std::string text = length(mm);
    const double chord = scale_ * R * std::cos((a.to - a.from) / 2);
    pen_.measure(name, around(R, a.from), around(R, a.to), true, text,
                 within(chord, middle(a) + turn_, text));
  }
  // Where a figure has room before a line, so far from the centre.
  Point within(double line, double direction, const std::string& text) const {
    const double x = std::cos(direction), y = std::sin(direction);
    const double away = pen_.width_of(text) / 2 * std::fabs(x) + kFigureSize / 2 * std::fabs(y) + 6;
    return {centre_.x + (line - away) * x, centre_.y - (line - away) * y};
  }

  // From the centres of the arcs.
  void radii(const std::vector<BoreArc>& arcs) {
    radius("zbr", nearest(arcs, 0, kPi * 1.25), "r1 ");
    radius("fbr", nearest(arcs, 1, kPi * 0.8), "r2 ");
  }
  void radius(std::string_view name, const BoreArc& a, const std::string& symbol) {
    const std::string text = symbol + length(static_cast<float>(a.radius));
    pen_.along(name, at(a.x, a.y), on(a, middle(a)), false, text, 0.6);
    add_circle(list_, at(a.x, a.y), 2, colours_.ink, true);
  }

  const Rifling& r_;
  const BoreWords& words_;
  const DrawingColours& colours_;
  DrawList& list_;
  MeasurePen& pen_;
  Point centre_;
  double widest_ = 0, scale_ = 0, theta_ = 0, turn_ = 0, barrel_ = 0;
};

}  // namespace

MeasuredDrawing draw_bore(const Rifling& r, const BoreWords& words, const DrawingColours& colours,
                          std::string_view marked, double width, double height, TextWidth text_width) {
  MeasuredDrawing drawing;
  drawing.list.width = width;
  drawing.list.height = height;
  drawing.list.background = colours.paper;
  MeasurePen pen(drawing, colours, marked, text_width);
  BoreDrawing(r, words, colours, drawing, pen).draw();
  return drawing;
}

}  // namespace tv
