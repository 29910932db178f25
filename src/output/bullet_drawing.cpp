#include "output/bullet_drawing.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "geometry/dimensions.h"
#include "output/turned.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kMargin = 14, kOutline = 1.3;
constexpr double kTip = 0.55;  // of the length, schematic

class BulletDrawing {
public:
  BulletDrawing(const CartridgeDimensions& d, const BulletWords& words, const DrawingColours& colours,
                MeasuredDrawing& drawing, MeasurePen& pen)
      : d_(d), words_(words), colours_(colours), list_(drawing.list), pen_(pen) {
    d_.TAIL = d.tail_type != kFlatBase && tail_is_possible(d);
    tail_ = tail_shape(d_);
  }

  void draw() {
    if (!known_inch(d_.Glen) || !known_inch(d_.buldin)) return say(words_.missing, list_.height / 2);
    shape_ = bullet_shape(d_, 0, kTip * d_.Glen);
    place();
    body();
    measures();
    if (tail_.length > 0) return tail();
    if (d_.tail_type != kFlatBase) say(words_.tail, list_.height - 6);
  }

private:
  void say(const std::string& text, double y) {
    add_text(list_, {list_.width / 2, y}, text, {colours_.ink, kFigureSize, Align::centre});
  }

  void place() {
    const double across = 66;  // for the figures of the diameters on the left
    const double above = 2.4 * kFigureRow, below = 2.8 * kFigureRow;
    const double wide = std::max(1.0, list_.width - across - 2 * kMargin - 30);
    const double high = std::max(1.0, list_.height - above - below);
    scale_ = std::min(wide / d_.Glen, high / d_.buldin);
    left_ = across + kMargin + (wide - scale_ * d_.Glen) / 2;
    middle_ = above + high / 2;
    reach_ = d_.buldin / 2 * scale_;
  }
  Point at(double x, double r) const { return {left_ + x * scale_, middle_ - r * scale_}; }

  void body() {
    std::vector<Point> around;
    for (const Point& p : shape_.outline) around.push_back(at(p.x, p.y));
    for (auto p = shape_.outline.rbegin(); p != shape_.outline.rend(); ++p) around.push_back(at(p->x, -p->y));
    add_area(list_, std::move(around), colours_.bullet);
    both_halves(part(shape_.outline, 0, shape_.dotted_from), LineStyle::solid);
    both_halves(part(shape_.outline, shape_.dotted_from, d_.Glen), LineStyle::dot);
    across(0, shape_.outline.front().y, LineStyle::solid);
    across(d_.Glen, shape_.outline.back().y, LineStyle::dot);
    add_line(list_, at(-0.03 * d_.Glen, 0), at(1.03 * d_.Glen, 0),
             {colours_.faint, 0.7, LineStyle::dash_dot});
  }
  void both_halves(const Profile& p, LineStyle style) {
    for (const int side : {1, -1}) {
      std::vector<Point> points;
      for (const Point& each : p) points.push_back(at(each.x, side * each.y));
      add_polyline(list_, std::move(points), {colours_.ink, kOutline, style});
    }
  }
  void across(double x, double r, LineStyle style) {
    add_line(list_, at(x, r), at(x, -r), {colours_.ink, kOutline, style});
  }

  std::string figure(double mm) const { return length_text(words_.length, mm); }
  static std::string diameter(const std::string& text) { return "\u00D8 " + text; }

  // Diameter of the body, where its full width ends, and the length below.
  void measures() {
    const double x = shape_.dotted_from, y = middle_ + reach_ + 1.9 * kFigureRow;
    for (const double end : {0.0, d_.Glen}) pen_.extension(at(end, 0), {at(end, 0).x, y + 4});
    pen_.level("gelenm", at(0, 0).x, at(d_.Glen, 0).x, y, figure(d_.Glen * kMmPerInch));
    const std::string text = diameter(figure(d_.buldin * kMmPerInch));
    const Point top = at(x, d_.buldin / 2);
    pen_.extension(top, {top.x, top.y - 0.6 * kFigureRow});
    pen_.measure("gdiam", top, at(x, -d_.buldin / 2), true, text, {top.x, top.y - kFigureRow});
  }

  // A boat tail widens from the base; a hollow base is widest there, and dashed.
  void tail() {
    const bool hollow = d_.tail_type == kInnerCone;
    const double at_base = hollow ? tail_.body : tail_.base, at_end = hollow ? tail_.base : tail_.body;
    if (hollow) {
      both_halves({{0, at_base}, {tail_.length, at_end}}, LineStyle::dash);
      across(tail_.length, at_end, LineStyle::dash);
    } else {
      add_line(list_, at(tail_.length, at_end), at(tail_.length, -at_end), {colours_.ink, 0.5});
    }
    const double y = middle_ + reach_ + 0.9 * kFigureRow;
    pen_.extension({at(tail_.length, 0).x, at(0, -at_end).y}, {at(tail_.length, 0).x, y + 4});
    pen_.level("cone_lenmm", at(0, 0).x, at(tail_.length, 0).x, y, figure(d_.tail_len));
    base_diameter(hollow ? "cone_dia_Dm" : "cone_diam", at_base,
                  hollow ? d_.tail_dia_large : d_.tail_dia_small);
    inner_diameter(hollow ? "cone_diam" : "cone_dia_Dm", at_end,
                   hollow ? d_.tail_dia_small : d_.tail_dia_large);
    say_angle();
  }
  void base_diameter(const char* name, double r, double mm) {
    const double x = at(0, 0).x - 12;
    for (const int side : {1, -1}) pen_.extension(at(0, side * r), {x - 4, at(0, side * r).y});
    const std::string text = diameter(figure(mm));
    pen_.measure(name, {x, at(0, r).y}, {x, at(0, -r).y}, true, text,
                 {x - 6 - pen_.width_of(text) / 2, middle_});
  }
  void inner_diameter(const char* name, double r, double mm) {
    const Point top = at(tail_.length, r);
    const std::string text = diameter(figure(mm));
    const double x = std::min(top.x, at(shape_.dotted_from, 0).x - pen_.width_of(text) - 12);
    const Point figure_at{x, middle_ - reach_ - kFigureRow};
    pen_.extension(top, {figure_at.x, figure_at.y + 0.4 * kFigureRow});
    pen_.measure(name, top, at(tail_.length, -r), true, text, figure_at);
  }
  void say_angle() {
    const std::string text = format_pattern(tail_angle(d_), "0.0") + " \u00B0";
    const Point p = at(tail_.length, 0);
    add_text(list_, {p.x + 8, p.y - 5}, text, {colours_.ink, kFigureSize});
  }

  CartridgeDimensions d_;
  const BulletWords& words_;
  const DrawingColours& colours_;
  DrawList& list_;
  MeasurePen& pen_;
  TailShape tail_;
  TurnedShape shape_;
  double scale_ = 1, left_ = 0, middle_ = 0, reach_ = 0;  // logical units
};

// Half the length of the body behind the tail is drawn with it.
constexpr double kBodyShare = 0.5;

// Both edges of the tail and the body behind it, base at the left.
void add_tail_outline(DrawList& list, const TailShape& tail, double radius, bool hollow,
                      const std::function<Point(double, double)>& at, const DrawingColours& colours) {
  const double end = tail.length * (1 + kBodyShare), base = hollow ? radius : tail.base;
  const Profile outside =
      hollow ? Profile{{0, radius}, {end, radius}}
             : Profile{{0, base}, {tail.length, tail.body}, {tail.length, radius}, {end, radius}};
  std::vector<Point> around;
  for (const Point& p : outside) around.push_back(at(p.x, p.y));
  for (auto p = outside.rbegin(); p != outside.rend(); ++p) around.push_back(at(p->x, -p->y));
  add_area(list, std::move(around), colours.bullet);
  for (const int side : {1, -1}) {
    std::vector<Point> edge;
    for (const Point& p : outside) edge.push_back(at(p.x, side * p.y));
    add_polyline(list, std::move(edge), {colours.ink, kOutline});
    if (hollow)
      add_line(list, at(0, side * tail.body), at(tail.length, side * tail.base),
               {colours.ink, kOutline, LineStyle::dash});
  }
  add_line(list, at(0, base), at(0, -base), {colours.ink, kOutline});
}

}  // namespace

MeasuredDrawing draw_bullet(const CartridgeDimensions& d, const BulletWords& words,
                            const DrawingColours& colours, std::string_view marked, double width,
                            double height, TextWidth text_width) {
  MeasuredDrawing drawing;
  drawing.list.width = width;
  drawing.list.height = height;
  drawing.list.background = colours.paper;
  MeasurePen pen(drawing, colours, marked, text_width);
  BulletDrawing(d, words, colours, drawing, pen).draw();
  return drawing;
}

DrawList draw_tail(const CartridgeDimensions& from, const BulletWords& words, const DrawingColours& colours,
                   double width, double height, TextWidth text_width) {
  DrawList list;
  list.width = width;
  list.height = height;
  list.background = colours.paper;
  CartridgeDimensions d = from;
  d.TAIL = d.tail_type != kFlatBase && tail_is_possible(d);
  const TailShape tail = tail_shape(d);
  const bool hollow = d.tail_type == kInnerCone;
  if (!(tail.length > 0) || !known_inch(d.buldin)) {
    if (d.tail_type != kFlatBase)
      add_text(list, {width / 2, height / 2}, words.tail, {colours.ink, kFigureSize, Align::centre});
    return list;
  }
  const double radius = d.buldin / 2, long_mm = tail.length * (1 + kBodyShare);
  const double scale = std::min(std::max(1.0, width - 2 * kMargin) / long_mm,
                                std::max(1.0, height - 2 * kMargin) / (2 * radius));
  const auto at = [&](double x, double r) {
    return Point{(width - scale * long_mm) / 2 + x * scale, height / 2 - r * scale};
  };
  add_tail_outline(list, tail, radius, hollow, at, colours);
  // The angle between the cone and a line along the axis, at the end of the tail.
  const Point vertex = at(tail.length, hollow ? tail.base : tail.body);
  const double reach = tail.length * scale * 0.8,
               turn = std::fabs(tail_angle(d)) * kPi / 180 * (hollow ? -1 : 1);
  add_line(list, vertex, {vertex.x - reach, vertex.y}, {colours.marked, 0.8, LineStyle::dash});
  std::vector<Point> arc;
  for (int i = 0; i <= 12; ++i)
    arc.push_back(
        {vertex.x - reach * 0.8 * std::cos(turn * i / 12), vertex.y + reach * 0.8 * std::sin(turn * i / 12)});
  add_polyline(list, std::move(arc), {colours.marked, 1.2});
  const std::string text = format_pattern(tail_angle(d), "0.0") + " \u00B0";
  add_text(list, {vertex.x - reach / 2, height / 2 + kFigureSize * 0.36}, text,
           {colours.ink, kFigureSize, Align::centre});
  static_cast<void>(text_width);
  return list;
}

}  // namespace tv
