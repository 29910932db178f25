#include "output/case_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/calc_state.h"
#include "output/turned.h"

namespace tv {
namespace {

constexpr double kMargin = 12, kOutline = 1.3;

// Stands for a case of which too little is known; inch.
CaseBody usual_body(int Shape) {
  CaseBody b{1.56, 1.712, 0.2, 0.473, 0.471, 0.454, 0.343, 0.343, Shape};
  const CaseForm form = case_form(Shape);
  if (form != kBottleneck) b.l1 = 1.56, b.P2 = form == kCone ? 0.39 : b.P1;
  if (case_head(Shape) == kRimmed) b.rim = 0.06, b.rim_dia = 0.53;
  if (case_head(Shape) == kBelted) b.rim = 0.22, b.rim_dia = 0.52;
  return b;
}
constexpr double kUsualHlen = 2.015;

bool follows(const CaseBody& b, double Hlen) {
  for (const double each : {b.rim, b.rim_dia, b.P1, b.P2, b.l1})
    if (!known_inch(each)) return false;
  if (b.rim >= b.l1) return false;
  if (case_form(b.Shape) != kBottleneck) return true;
  return known_inch(b.H1) && known_inch(b.H2) && known_inch(Hlen) && b.l1 <= b.l2 && b.l2 <= Hlen;
}

// A groove in the head that takes just what a rimless case loses by it: of a usual depth, deeper where the
// head is short.
struct Groove {
  double from = 0, to = 0, radius = 0;
};
Groove extractor_groove_of(const CaseBody& b) {
  const double lost = extractor_groove(b.P1 * kMmPerInch) * 1000 / std::pow(kMmPerInch, 3);  // cubic inch
  const double R = b.rim_dia / 2, head = kPi * R * R * b.rim;
  constexpr double usual = 1 - 0.86 * 0.86;  // share of the section that the groove takes
  const double share = std::max(usual, lost / (head * 0.5));
  if (share > 0.8) return {};  // no room for it
  const double length = lost / (kPi * R * R * share);
  const double to = b.rim - 0.1 * (b.rim - length);
  return {to - length, to, R * std::sqrt(1 - share)};
}

Profile outline_of(const CaseBody& b, double Hlen) {
  const double R = b.rim_dia / 2;
  Profile p{{0, R}};
  const Groove g = case_head(b.Shape) == kRimless ? extractor_groove_of(b) : Groove{};
  if (g.radius > 0)
    for (const Point& each : {Point{g.from, R}, {g.from, g.radius}, {g.to, g.radius}, {g.to, R}})
      p.push_back(each);
  for (const Point& each : {Point{b.rim, R}, {b.rim, b.P1 / 2}, {b.l1, b.P2 / 2}}) p.push_back(each);
  if (case_form(b.Shape) == kBottleneck) {
    p.push_back({b.l2, b.H1 / 2});
    p.push_back({Hlen, b.H2 / 2});
  }
  return p;
}

class CaseDrawing {
public:
  CaseDrawing(const CaseBody& body, double Hlen, const CaseWords& words, const DrawingColours& colours,
              MeasuredDrawing& drawing, MeasurePen& pen)
      : body_(body),
        Hlen_(Hlen),
        known_(follows(body, Hlen)),
        words_(words),
        colours_(colours),
        list_(drawing.list),
        pen_(pen) {
    if (!known_) body_ = usual_body(body.Shape), Hlen_ = kUsualHlen;
    outline_ = outline_of(body_, Hlen_);
    place();
  }

  void draw(const CaseBody& figures, double Hlen) {
    std::vector<Point> around;
    for (const Point& p : outline_) around.push_back(at(p.x, p.y));
    for (auto p = outline_.rbegin(); p != outline_.rend(); ++p) around.push_back(at(p->x, -p->y));
    around.push_back(around.front());
    add_area(list_, around, colours_.body);
    add_polyline(list_, std::move(around),
                 {colours_.ink, kOutline, known_ ? LineStyle::solid : LineStyle::dot});
    for (const Point& p : outline_)
      if (p.x > 0) add_line(list_, at(p.x, p.y), at(p.x, -p.y), {colours_.ink, 0.5});
    add_line(list_, at(-0.03 * end(), 0), at(1.03 * end(), 0), {colours_.faint, 0.7, LineStyle::dash_dot});
    lengths(figures, Hlen);
    diameters(figures);
    if (!known_) schematic();
  }

private:
  bool bottleneck() const { return case_form(body_.Shape) == kBottleneck; }
  double end() const { return outline_.back().x; }

  // Rows of figures stand above and below.
  void place() {
    double radius = 0;
    for (const Point& p : outline_) radius = std::max(radius, p.y);
    const double above = 3 * kFigureRow + 4, below = (bottleneck() ? 4 : 2) * kFigureRow + (known_ ? 8 : 24);
    const double wide = std::max(1.0, list_.width - 2 * kMargin - 60);
    const double high = std::max(1.0, list_.height - above - below);
    scale_ = std::min(wide / end(), high / (2 * radius));
    left_ = std::max(kMargin, (list_.width - scale_ * end()) / 2 - 20);
    middle_ = above + high / 2;
    reach_ = radius * scale_;
  }
  Point at(double x, double r) const { return {left_ + x * scale_, middle_ - r * scale_}; }

  std::string figure(const char* name, double inch) const {
    const std::string text = length_text(words_.length, inch * kMmPerInch);
    return std::string(name) + "  " + text;
  }

  // From the head, the longest lowest.
  void lengths(const CaseBody& figures, double Hlen) {
    struct Length {
      const char* name;
      double drawn, figure;
      bool there;
    };
    const Length all[] = {{"LR", body_.rim, figures.rim, true},
                          {"L1", body_.l1, figures.l1, true},
                          {"L2", body_.l2, figures.l2, bottleneck()},
                          {"L3", Hlen_, Hlen, bottleneck()}};
    double y = middle_ + reach_ + kFigureRow;
    for (const Length& l : all) {
      if (!l.there) continue;
      for (const double x : {0.0, l.drawn})
        pen_.extension({at(x, 0).x, middle_ + reach_ * 0.2}, {at(x, 0).x, y + 4});
      pen_.level(l.name, at(0, 0).x, at(l.drawn, 0).x, y, figure(l.name, l.figure));
      y += kFigureRow;
    }
  }

  // Across the body; the figures in rows above, so that none covers another.
  void diameters(const CaseBody& figures) {
    struct Diameter {
      const char* name;
      double x, drawn, figure;
      bool there;
    };
    const double inset = 0.012 * end();  // beside the step that belongs to two of them
    const Diameter all[] = {{"R1", body_.rim * 0.3, body_.rim_dia, figures.rim_dia, true},
                            {"P1", body_.rim + inset, body_.P1, figures.P1, true},
                            {"P2", body_.l1 - inset, body_.P2, figures.P2, true},
                            {"H1", body_.l2 + inset, body_.H1, figures.H1, bottleneck()},
                            {"H2", Hlen_ - inset, body_.H2, figures.H2, bottleneck()}};
    std::array<double, 3> taken{0, 0, 0};
    for (const Diameter& d : all) {
      if (!d.there) continue;
      const std::string text = figure(d.name, d.figure);
      const double half = pen_.width_of(text) / 2, x = at(d.x, 0).x;
      const double middle = std::clamp(x, half + 2, std::max(half + 2, list_.width - half - 2));
      std::size_t row = 0;
      while (row + 1 < taken.size() && middle - half < taken[row]) ++row;
      taken[row] = middle + half + 8;
      const double y = middle_ - reach_ - kFigureRow * (static_cast<double>(row) + 0.7);
      pen_.extension(at(d.x, d.drawn / 2), {x, y + kFigureSize * 0.6});
      pen_.measure(d.name, at(d.x, d.drawn / 2), at(d.x, -d.drawn / 2), true, text, {middle, y});
    }
  }

  void schematic() {
    TextLook look{colours_.ink, kFigureSize, Align::centre};
    look.italic = true;
    add_text(list_, {list_.width / 2, list_.height - 6}, words_.schematic, look);
  }

  CaseBody body_;
  double Hlen_;
  bool known_;
  const CaseWords& words_;
  const DrawingColours& colours_;
  DrawList& list_;
  MeasurePen& pen_;
  Profile outline_;
  double scale_ = 1, left_ = 0, middle_ = 0, reach_ = 0;  // logical units
};

}  // namespace

MeasuredDrawing draw_case(const CaseBody& body, double Hlen, const CaseWords& words,
                          const DrawingColours& colours, std::string_view marked, double width, double height,
                          TextWidth text_width) {
  MeasuredDrawing drawing;
  drawing.list.width = width;
  drawing.list.height = height;
  drawing.list.background = colours.paper;
  MeasurePen pen(drawing, colours, marked, text_width);
  CaseDrawing(body, Hlen, words, colours, drawing, pen).draw(body, Hlen);
  return drawing;
}

}  // namespace tv
