#include "output/cartridge_drawing.h"

#include <algorithm>
#include <cmath>

#include "output/turned.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kTextSize = 11, kNoteSize = 10, kRow = 15, kMargin = 10;
constexpr double kLow = 115;  // logical units
constexpr double kKneeWidth = 0.6, kOutline = 1.3;

// --- what is drawn

// Of the measured body; empty if it was not measured or its parts do not follow each other.
Profile measured_case(const CaseBody& b, double Hlen) {
  const bool bottleneck = b.Shape % 10 == 0;
  for (const double each : {b.rim, b.rim_dia, b.P1, b.P2, b.l1})
    if (!known_inch(each)) return {};
  if (b.rim >= b.l1 || b.l1 > Hlen) return {};
  Profile p{{0, b.rim_dia / 2}, {b.rim, b.rim_dia / 2}, {b.rim, b.P1 / 2}, {b.l1, b.P2 / 2}};
  if (!bottleneck) {
    p.push_back({Hlen, b.P2 / 2});
    return p;
  }
  if (!known_inch(b.l2) || !known_inch(b.H1) || !known_inch(b.H2) || b.l2 < b.l1 || b.l2 > Hlen) return {};
  p.push_back({b.l2, b.H1 / 2});
  p.push_back({Hlen, b.H2 / 2});
  return p;
}

// As wide as its capacity asks for, with a usual neck and shoulder where that is wider than the bullet.
Profile schematic_case(const CartridgeDimensions& d) {
  constexpr double wall = 1.1;            // outside over inside
  constexpr double filled = 0.92;         // length of the inside over that of the case
  constexpr double shoulder_slope = 0.4;  // rise over length
  const double neck = calibre(d) / 2 * wall;
  const double cm3 = d.Volf / (kGrainsPerGram * dicht_H2), inch3 = cm3 * 1000 / std::pow(kMmPerInch, 3);
  const double inside = known_inch(inch3) ? std::sqrt(inch3 / (kPi * d.Hlen * filled)) : 0;
  const double body = std::min(inside * wall, 4 * neck);
  if (body < 1.15 * neck) return {{0, neck}, {d.Hlen, neck}};
  const double l2 = d.Hlen - std::min(0.3 * d.Hlen, calibre(d));
  const double l1 = l2 - std::min(0.25 * d.Hlen, (body - neck) / shoulder_slope);
  return {{0, body}, {l1, body * 0.97}, {l2, neck}, {d.Hlen, neck}};
}

TurnedShape case_shape(const CartridgeDimensions& d, const CaseBody& body) {
  TurnedShape shape;
  shape.outline = measured_case(body, d.Hlen);
  if (shape.outline.empty()) {
    shape.outline = schematic_case(d);
    shape.dot(0, d.Hlen);
  }
  return shape;
}

// The tip begins outside of the case if it can.
TurnedShape seated_bullet(const CartridgeDimensions& d) {
  const double base = d.Hlen - d.Bsd, tip = base + d.Glen;
  const double body_from = base + (d.tail_type == kOuterCone ? tail_shape(d).length : 0);
  const double free = std::min(tip - std::max(d.Hlen, body_from), 5 * calibre(d) / 2);
  return bullet_shape(d, base, free * 0.85);
}

// --- drawing

class Drawing {
public:
  Drawing(const CartridgeDimensions& d, const CartridgeWords& words, const CartridgeColours& colours,
          DrawList& list, TextWidth text_width)
      : d_(d), words_(words), colours_(colours), list_(list), text_width_(text_width) {}

  void draw(const CaseBody& body) {
    const TurnedShape brass = case_shape(d_, body), bullet = seated_bullet(d_);
    place(brass.outline, bullet.outline);
    area(brass.outline, colours_.brass);
    area(bullet.outline, colours_.bullet);
    add_line(list_, at(least_, 0), at(most_, 0), {colours_.faint, 0.7, LineStyle::dash_dot});
    outline(brass, LineStyle::solid, 0, d_.Hlen);
    for (const auto& knee : brass.outline)
      if (knee.x > 0 && brass.dotted_from > 0) across(knee.x, knee.y, {colours_.ink, kKneeWidth});
    end(brass, 0);
    end(brass, brass.outline.size() - 1);
    draw_bullet(bullet);
    lengths();
  }

  void notes() {
    double y = list_.height - 4;
    for (const auto& [text, look] :
         {std::pair{&words_.note, TextLook{colours_.ink, kNoteSize}},
          {&words_.warning, TextLook{colours_.warning, kNoteSize, Align::left, true}}}) {
      if (text->empty()) continue;
      add_fitting({kMargin, y}, *text, look);
      y -= kRow;
    }
  }

  void missing() {
    add_fitting({list_.width / 2, list_.height / 2}, words_.missing,
                {colours_.ink, kNoteSize, Align::centre});
  }

private:
  // Smaller where there is no room for its size.
  void add_fitting(Point anchor, const std::string& text, TextLook look) {
    const double wide = text_width_(text, look.size, look.bold, false, list_.font);
    if (wide > 0) look.size *= std::clamp((list_.width - 2 * kMargin) / wide, 0.1, 1.0);
    add_text(list_, anchor, text, look);
  }

  // Scale and place, so that everything has room between the rows of lengths and notes.
  void place(const Profile& brass, const Profile& bullet) {
    double radius = 0;
    least_ = 0, most_ = std::max(d_.Hlen, known_inch(d_.Plen) ? d_.Plen : 0);
    for (const Profile* p : {&brass, &bullet})
      for (const Point& point : *p) {
        radius = std::max(radius, point.y);
        least_ = std::min(least_, point.x);
        most_ = std::max(most_, point.x);
      }
    const double above = kRow + 6;
    const double below = kRow * ((low() ? 1 : 2) + (words_.warning.empty() ? 1 : 2)) + 6;
    const double wide = std::max(1.0, list_.width - 2 * kMargin);
    const double high = std::max(1.0, list_.height - above - below);
    scale_ = std::min(wide / (most_ - least_), high / (2 * radius));
    left_ = kMargin + (wide - scale_ * (most_ - least_)) / 2;
    middle_ = above + high / 2;
    reach_ = radius * scale_;
  }
  Point at(double x, double r) const { return {left_ + (x - least_) * scale_, middle_ - r * scale_}; }

  void area(const Profile& p, Colour fill) {
    std::vector<Point> points;
    for (const Point& each : p) points.push_back(at(each.x, each.y));
    for (auto each = p.rbegin(); each != p.rend(); ++each) points.push_back(at(each->x, -each->y));
    add_area(list_, std::move(points), fill);
  }

  // Both halves between two places; what is schematic is dotted whatever the style of the rest.
  void outline(const TurnedShape& shape, LineStyle style, double from, double to) {
    both_halves(part(shape.outline, from, std::min(to, shape.dotted_from)), style);
    both_halves(part(shape.outline, std::max(from, shape.dotted_from), std::min(to, shape.dotted_to)),
                LineStyle::dot);
  }
  void both_halves(const Profile& p, LineStyle style) {
    if (p.size() < 2) return;
    for (const int side : {1, -1}) {
      std::vector<Point> points;
      for (const Point& each : p) points.push_back(at(each.x, side * each.y));
      add_polyline(list_, std::move(points), {colours_.ink, kOutline, style});
    }
  }
  void across(double x, double r, const Stroke& stroke) { add_line(list_, at(x, r), at(x, -r), stroke); }
  void end(const TurnedShape& shape, std::size_t i) {
    const Point& p = shape.outline[i];
    const bool dotted = p.x >= shape.dotted_from && p.x <= shape.dotted_to;
    across(p.x, p.y, {colours_.ink, kOutline, dotted ? LineStyle::dot : LineStyle::solid});
  }

  // Dashed where the case hides it.
  void draw_bullet(const TurnedShape& bullet) {
    const double base = bullet.outline.front().x, tip = bullet.outline.back().x;
    outline(bullet, LineStyle::dash, base, std::min(tip, d_.Hlen));
    outline(bullet, LineStyle::solid, std::max(base, d_.Hlen), tip);
    const LineStyle hidden = base < d_.Hlen ? LineStyle::dash : LineStyle::solid;
    across(base, bullet.outline.front().y, {colours_.ink, kOutline, hidden});
    end(bullet, bullet.outline.size() - 1);
    const TailShape tail = tail_shape(d_);
    if (!(tail.length > 0)) return;
    if (d_.tail_type == kOuterCone) {
      const bool stands_off = base + tail.length > d_.Hlen;
      across(base + tail.length, calibre(d_) / 2,
             {stands_off ? colours_.warning : colours_.ink, stands_off ? 2.5 : kKneeWidth});
    } else {  // the hollow is widest at the base
      both_halves({{base, tail.body}, {base + tail.length, tail.base}}, LineStyle::dash);
      across(base + tail.length, tail.base, {colours_.ink, kOutline, LineStyle::dash});
    }
  }

  // A low drawing leaves out the length of the case, for the cartridge to keep some height.
  bool low() const { return list_.height < kLow; }
  void lengths() {
    const double base = d_.Hlen - d_.Bsd;
    length_line(std::min(base, d_.Hlen), std::max(base, d_.Hlen), d_.Bsd, middle_ - reach_ - 9, -reach_);
    double y = middle_ + reach_ + 10;
    if (!low()) length_line(0, d_.Hlen, d_.Hlen, y, reach_);
    if (!low()) y += kRow;
    if (known_inch(d_.Plen)) length_line(0, d_.Plen, d_.Plen, y, reach_);
  }
  // The line of a length with its ends and the figure, in the line where there is room, else behind it.
  void length_line(double from, double to, double inch, double y, double edge) {
    const Stroke thin{colours_.faint, 0.8};
    const double x1 = at(from, 0).x, x2 = at(to, 0).x;
    for (const double x : {x1, x2})
      add_line(list_, {x, middle_ + edge}, {x, y + (edge > 0 ? 4 : -4)}, {colours_.faint, 0.5});
    const std::string text =
        format_pattern(words_.metric ? inch * kMmPerInch : inch, words_.metric ? "0.00" : "0.000") +
        words_.unit;
    const double half = text_width_(text, kTextSize, false, false, list_.font) / 2 + 4;
    const bool inside = x2 - x1 > 2 * half + 10;
    const double middle = (x1 + x2) / 2;
    if (inside) {
      add_line(list_, {x1, y}, {middle - half, y}, thin);
      add_line(list_, {middle + half, y}, {x2, y}, thin);
    } else {
      add_line(list_, {x1, y}, {x2, y}, thin);
    }
    add_text(list_, {inside ? middle : x2 + 6, y + 4}, text,
             {colours_.ink, kTextSize, inside ? Align::centre : Align::left});
  }

  const CartridgeDimensions& d_;
  const CartridgeWords& words_;
  const CartridgeColours& colours_;
  DrawList& list_;
  TextWidth text_width_;
  double least_ = 0, most_ = 0;                           // inch along the axis
  double scale_ = 1, left_ = 0, middle_ = 0, reach_ = 0;  // logical units
};

}  // namespace

CartridgeColours light_cartridge() { return {}; }

CartridgeColours dark_cartridge() {
  CartridgeColours c;
  c.paper = {24, 26, 30, 255};
  c.ink = {236, 236, 236, 255};
  c.faint = {140, 144, 150, 255};
  c.brass = {112, 94, 48, 255};
  c.bullet = {124, 78, 52, 255};
  c.warning = {255, 130, 130, 255};
  return c;
}

bool cartridge_can_be_drawn(const CartridgeDimensions& d) {
  return known_inch(d.Hlen) && known_inch(d.Glen) && known_inch(calibre(d)) && std::isfinite(d.Bsd) &&
         std::fabs(d.Bsd) < kMostInch;
}

DrawList draw_cartridge(const CartridgeDimensions& d, const CaseBody& body, const CartridgeWords& words,
                        const CartridgeColours& colours, double width, double height, TextWidth text_width) {
  DrawList list;
  list.width = width;
  list.height = height;
  list.background = colours.paper;
  Drawing drawing(d, words, colours, list, text_width);
  if (!cartridge_can_be_drawn(d)) {
    drawing.missing();
    return list;
  }
  drawing.draw(body);
  drawing.notes();
  return list;
}

}  // namespace tv
