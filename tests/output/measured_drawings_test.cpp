// The drawings of bore, case and bullet: to scale, with all their measures, each to be found by a click.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "output/bore_drawing.h"
#include "output/bullet_drawing.h"
#include "output/case_drawing.h"

namespace tv {
namespace {

constexpr double kMm = 1 / 25.4;
const LengthText kLength{" mm", true};

MeasuredDrawing bore(const Rifling& r, double size = 360) {
  return draw_bore(r, {"none", kLength}, light_drawing(), "", size, size, estimated_text_width);
}
MeasuredDrawing drawn_case(const CaseBody& b, double Hlen, double width = 520, double height = 260) {
  return draw_case(b, Hlen, {"usual", kLength}, light_drawing(), "", width, height, estimated_text_width);
}
MeasuredDrawing bullet(const CartridgeDimensions& d, double width = 480, double height = 220) {
  return draw_bullet(d, {"none", "no tail", kLength}, dark_drawing(), "", width, height,
                     estimated_text_width);
}

Rifling grooved() { return {.Dz = 7.82F, .Df = 7.62F, .n = 4, .groove_width = 4.47F, .land_width = 1.59F}; }
Rifling polygonal() {
  Rifling r{.polygon = true, .Dz = 9.03F, .Df = 8.82F, .n = 6, .r2 = 3.0F};
  r.r1 = r1_of_r2(r);
  return r;
}
CaseBody body(int shape) {
  return {39.62 * kMm, 43.48 * kMm, 5.08 * kMm, 12.01 * kMm, 11.96 * kMm,
          11.53 * kMm, 8.9 * kMm,   8.72 * kMm, shape};
}
CartridgeDimensions boat_tail() {
  CartridgeDimensions d;
  d.buldin = 0.308;
  d.Glen = 1.215;
  d.tail_type = kOuterCone;
  d.tail_len = 4.6;
  d.tail_dia_large = 7.82;
  d.tail_dia_small = 6.3;
  return d;
}

const std::vector<Point>& filled(const DrawList& list) {
  return std::ranges::find_if(list.items,
                              [](const DrawItem& i) {
                                return i.kind == DrawKind::polyline && i.filled && i.points.size() > 8;
                              })
      ->points;
}
std::set<std::string> names(const MeasuredDrawing& d) {
  std::set<std::string> all;
  for (const Measure& m : d.measures) all.insert(m.name);
  return all;
}
double length_of(const MeasuredDrawing& d, const std::string& name) {
  const auto m = std::ranges::find(d.measures, name, &Measure::name);
  return m == d.measures.end() ? -1 : std::hypot(m->to.x - m->from.x, m->to.y - m->from.y);
}

// The text that stands in the measure's box.
std::string figure_of(const MeasuredDrawing& d, const std::string& name) {
  const auto m = std::ranges::find(d.measures, name, &Measure::name);
  for (const DrawItem& item : d.list.items)
    if (item.kind == DrawKind::text && m != d.measures.end() && item.points[0].x > m->text_from.x &&
        item.points[0].x < m->text_to.x && item.points[0].y > m->text_from.y &&
        item.points[0].y < m->text_to.y)
      return item.text;
  return {};
}
// All to one scale, and the figures beside tell the same.
void expect_measures(const MeasuredDrawing& d, double scale,
                     const std::vector<std::pair<std::string, double>>& mm) {
  for (const auto& [name, value] : mm) {
    EXPECT_NEAR(length_of(d, name) / scale, value, 2e-3) << name;
    const std::string text = figure_of(d, name), wanted = length_text(kLength, value);
    EXPECT_TRUE(text.ends_with(wanted)) << name << ": " << text;
  }
}

TEST(MeasuredDrawings, BoreIsToScale) {
  for (const Rifling& r : {grooved(), polygonal()}) {
    const MeasuredDrawing d = bore(r);
    const double scale = 0.95 * 180 / (static_cast<double>(r.Dz) / 2);
    double twice = 0;
    const auto& points = filled(d.list);
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
      twice += points[i].x * points[i + 1].y - points[i + 1].x * points[i].y;
    EXPECT_NEAR(std::fabs(twice) / 2 / scale / scale / bore_area(r).mm2, 1, 2e-4);
    // The width of a groove is a chord at the mean diameter; a radius is drawn as itself.
    expect_measures(d, scale,
                    {{"Zug_mm", r.Dz}, {"feld_mm", r.Df}, {"zbr", r.polygon ? r.r1 : r.groove_width}});
    if (r.polygon) expect_measures(d, scale, {{"fbr", r.r2}});
  }
  EXPECT_TRUE(bore({.Dz = 7.82F, .Df = 7.62F}).measures.empty());
}

// The drawing turned about its axis holds what the capacity starts from.
TEST(MeasuredDrawings, CaseTurnedHoldsItsVolume) {
  for (const int form : {kBottleneck, kCone, kCylinder})
    for (const int head : {kRimless, kRimmed, kBelted}) {
      CaseBody b = body(form + 10 * head);
      if (form == kCylinder) b.P2 = b.P1;
      const double Hlen = 51.18 * kMm;
      const MeasuredDrawing d = drawn_case(b, Hlen);
      const double scale = length_of(d, "L1") / 39.62;
      expect_measures(d, scale,
                      {{"LR", 5.08}, {"L1", 39.62}, {"R1", 12.01}, {"P1", 11.96}, {"P2", b.P2 / kMm}});
      if (form == kBottleneck)
        expect_measures(d, scale, {{"L2", 43.48}, {"L3", 51.18}, {"H1", 8.9}, {"H2", 8.72}});
      // Half the outline goes from the head to the mouth; frustums between its points.
      const auto& all = filled(d.list);
      const std::size_t half = (all.size() - 1) / 2;
      const double axis = (all.front().y + all[2 * half - 1].y) / 2;
      double mm3 = 0;
      for (std::size_t i = 0; i + 1 < half; ++i) {
        const double h = (all[i + 1].x - all[i].x) / scale;
        const double r = (axis - all[i].y) / scale, R = (axis - all[i + 1].y) / scale;
        mm3 += 3.14159265358979 / 3 * h * (r * r + r * R + R * R);
      }
      EXPECT_NEAR(mm3 / 1000, case_volume(b, Hlen, kBrass, 5).outside_cm3, 1e-5) << form << ' ' << head;
    }
}

TEST(MeasuredDrawings, BulletAndItsTailAreToScale) {
  CartridgeDimensions d = boat_tail();
  for (const int tail : {kOuterCone, kInnerCone}) {
    d.tail_type = tail;
    const MeasuredDrawing drawing = bullet(d);
    const double scale = length_of(drawing, "gelenm") / (1.215 / kMm);
    expect_measures(drawing, scale,
                    {{"gdiam", 0.308 / kMm},
                     {"gelenm", 1.215 / kMm},
                     {"cone_lenmm", 4.6},
                     {"cone_dia_Dm", 7.82},
                     {"cone_diam", 6.3}});
    const auto& shape = filled(drawing.list);
    EXPECT_NEAR((shape.back().y - shape.front().y) / scale, tail == kOuterCone ? 6.3 : 0.308 / kMm, 1e-6);
  }
  d.tail_dia_small = 9;  // wider than the bullet
  EXPECT_EQ(names(bullet(d)), (std::set<std::string>{"gdiam", "gelenm"}));
}

// Each measure that the shape has, and none twice; its figure and the middle of its line lead back to it.
TEST(MeasuredDrawings, EveryMeasureIsNamedReadableAndFoundByAClick) {
  const std::set<std::string> bottle{"L1", "L2", "L3", "LR", "R1", "P1", "P2", "H1", "H2"},
      tube{"L1", "LR", "R1", "P1", "P2"};
  const std::set<std::string> profile{"Zug_mm", "feld_mm", "zbr", "fbr"};
  const std::set<std::string> tail{"gdiam", "gelenm", "cone_lenmm", "cone_dia_Dm", "cone_diam"};
  const struct {
    MeasuredDrawing drawing;
    std::set<std::string> names;
  } all[] = {{drawn_case(body(kBottleneck), 51.18 * kMm), bottle},
             {drawn_case(body(10 + kBottleneck), 51.18 * kMm, 380, 240), bottle},
             {drawn_case(body(kCone), 39.62 * kMm), tube},
             {drawn_case({}, 0), bottle},
             {drawn_case({.Shape = 21}, 0), tube},
             {bore(grooved()), profile},
             {bore(polygonal(), 300), profile},
             {bullet(boat_tail()), tail}};
  for (const auto& [drawing, wanted] : all) {
    EXPECT_EQ(names(drawing), wanted);
    EXPECT_EQ(drawing.measures.size(), wanted.size());
    for (const Measure& m : drawing.measures) {
      const Point figure{(m.text_from.x + m.text_to.x) / 2, (m.text_from.y + m.text_to.y) / 2};
      EXPECT_EQ(measure_at(drawing, figure), m.name);
      EXPECT_EQ(measure_at(drawing, {m.from.x * 0.9 + m.to.x * 0.1, m.from.y * 0.9 + m.to.y * 0.1}), m.name);
      EXPECT_GE(std::min(m.text_from.x, m.text_from.y), 0) << m.name;
      EXPECT_LE(m.text_to.x, drawing.list.width) << m.name;
      EXPECT_LE(m.text_to.y, drawing.list.height) << m.name;
      for (const Measure& other : drawing.measures)
        EXPECT_FALSE(&m != &other && m.text_from.x < other.text_to.x && other.text_from.x < m.text_to.x &&
                     m.text_from.y < other.text_to.y && other.text_from.y < m.text_to.y)
            << m.name << " over " << other.name;
    }
    EXPECT_EQ(measure_at(drawing, {-50, -50}), "");
  }
  EXPECT_EQ(length_text({" in", false}, 7.62), "0.300 in");
  EXPECT_EQ(length_text(kLength, 0), "?");
}

TEST(MeasuredDrawings, AnyStoredValueIsDrawn) {
  const auto expect_finite = [](const MeasuredDrawing& d) {
    for (const DrawItem& item : d.list.items)
      for (const Point& p : item.points) ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
  };
  using Bullet = CartridgeDimensions;
  for (const double wild : {0.0, -1.0, 1e-30, 40.0, 1e30, std::nan(""), HUGE_VAL}) {
    for (double CaseBody::*const member : {&CaseBody::l1, &CaseBody::l2, &CaseBody::rim, &CaseBody::rim_dia,
                                           &CaseBody::P1, &CaseBody::P2, &CaseBody::H1, &CaseBody::H2}) {
      CaseBody b = body(kBottleneck);
      b.*member = wild;
      expect_finite(drawn_case(b, 51.18 * kMm));
    }
    expect_finite(drawn_case(body(kBottleneck), wild));
    for (double Bullet::*const member : {&Bullet::buldin, &Bullet::Glen, &Bullet::tail_len,
                                         &Bullet::tail_dia_large, &Bullet::tail_dia_small}) {
      Bullet d = boat_tail();
      d.*member = wild;
      expect_finite(bullet(d));
    }
    for (float Rifling::*const member :
         {&Rifling::Dz, &Rifling::Df, &Rifling::n, &Rifling::r1, &Rifling::r2}) {
      Rifling r = polygonal();
      r.*member = static_cast<float>(wild);
      expect_finite(bore(r));
    }
  }
  for (const auto& [w, h] : {std::pair{0.0, 0.0}, {1.0, 400.0}, {400.0, 1.0}}) {
    expect_finite(drawn_case(body(0), 51.18 * kMm, w, h));
    expect_finite(bullet(boat_tail(), w, h));
    expect_finite(bore(grooved(), w));
  }
}

}  // namespace
}  // namespace tv
