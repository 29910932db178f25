// The drawing of the cartridge: to scale where it says so, dotted where it does not know, and whole whatever
// is stored.
#include "output/cartridge_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tv {
namespace {

CartridgeDimensions boat_tail() {
  CartridgeDimensions d;
  d.Zkal = d.buldin = 0.308;
  d.Glen = 1.215;
  d.Hlen = 2.015;
  d.Plen = 2.8;
  d.Bsd = 0.43;
  d.ssd = 0.43 - 4.5 / 25.4;
  d.Volf = 56;
  d.TAIL = true;
  d.tail_type = kOuterCone;
  d.tail_len = 4.5;
  d.tail_dia_large = 7.82;
  d.tail_dia_small = 6.4;
  return d;
}
const CaseBody kBottleneck{1.56, 1.712, 0.2, 0.473, 0.471, 0.454, 0.343, 0.343, 0};
const CartridgeWords kWords{"dotted: schematic", "no drawing", "", " mm", true};

DrawList draw(const CartridgeDimensions& d, const CaseBody& body, double width = 400, double height = 150,
              const CartridgeWords& words = kWords) {
  return draw_cartridge(d, body, words, light_cartridge(), width, height, estimated_text_width);
}

bool all_finite(const DrawList& list) {
  return std::ranges::all_of(list.items, [](const DrawItem& item) {
    return std::isfinite(item.size) && std::ranges::all_of(item.points, [](const Point& p) {
             return std::isfinite(p.x) && std::isfinite(p.y);
           });
  });
}

struct Extent {
  double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
  double width() const { return right - left; }
  double height() const { return bottom - top; }
};
// Of the n-th filled area: 0 the case, 1 the bullet.
Extent area(const DrawList& list, int n) {
  Extent e;
  for (const DrawItem& item : list.items)
    if (item.filled && n-- == 0)
      for (const Point& p : item.points)
        e = {std::min(e.left, p.x), std::max(e.right, p.x), std::min(e.top, p.y), std::max(e.bottom, p.y)};
  return e;
}

TEST(CartridgeDrawing, IsToOneScaleInLengthAndDiameter) {
  for (const auto& [width, height] : {std::pair{400.0, 150.0}, {900.0, 140.0}, {240.0, 400.0}}) {
    const DrawList list = draw(boat_tail(), kBottleneck, width, height);
    const Extent brass = area(list, 0), bullet = area(list, 1);
    const double scale = brass.width() / 2.015;
    EXPECT_NEAR(bullet.width() / scale, 1.215, 1e-9);
    EXPECT_NEAR((brass.right - bullet.left) / scale, 0.43, 1e-9) << "seating depth";
    EXPECT_NEAR((bullet.right - brass.left) / scale, 2.8, 1e-9) << "overall length";
    EXPECT_NEAR(brass.height() / scale, 0.473, 1e-9);
    EXPECT_NEAR(bullet.height() / scale, 0.308, 1e-9);
    EXPECT_GE(std::min(brass.left, brass.top), 0);
    EXPECT_LE(bullet.right, width);
    EXPECT_LE(brass.bottom, height - 30) << "room for the lengths";
  }
}

TEST(CartridgeDrawing, DotsOnlyWhatIsNotKnown) {
  const auto dotted_from = [](const DrawList& list) {
    double from = 1e9;
    for (const DrawItem& item : list.items)
      if (item.style == LineStyle::dot)
        for (const Point& p : item.points) from = std::min(from, p.x);
    return from;
  };
  const DrawList measured = draw(boat_tail(), kBottleneck);
  EXPECT_GT(dotted_from(measured), area(measured, 0).right) << "of a measured case only the tip";
  CaseBody mixed_up = kBottleneck;
  std::swap(mixed_up.l1, mixed_up.l2);
  for (const CaseBody& body : {CaseBody{}, mixed_up}) {
    const DrawList unknown = draw(boat_tail(), body);
    EXPECT_NEAR(dotted_from(unknown), area(unknown, 0).left, 1e-9);
    EXPECT_NEAR(area(unknown, 1).width() / area(unknown, 0).width(), 1.215 / 2.015, 1e-9);
  }
  // A straight case where the capacity asks for no more than the bullet's width.
  CartridgeDimensions straight = boat_tail();
  straight.Volf = 10;
  EXPECT_LT(area(draw(straight, {}), 0).height(), area(draw(boat_tail(), {}), 0).height());
}

TEST(CartridgeDrawing, MarksATailAboveTheMouth) {
  const auto in_warning_colour = [](const DrawList& list) {
    return std::ranges::count(list.items, light_cartridge().warning, &DrawItem::colour);
  };
  CartridgeDimensions d = boat_tail();
  EXPECT_EQ(in_warning_colour(draw(d, kBottleneck)), 0);
  CartridgeWords words = kWords;
  words.warning = "stands off";
  d.Bsd = 0.1;
  EXPECT_EQ(in_warning_colour(draw(d, kBottleneck, 400, 150, words)), 2) << "in words and on the bullet";
  d.TAIL = false;
  EXPECT_EQ(in_warning_colour(draw(d, kBottleneck)), 0);
}

TEST(CartridgeDrawing, AnyStoredValueIsDrawnOrToldOf) {
  using D = CartridgeDimensions;
  double D::*const kLengths[] = {&D::Zkal, &D::buldin, &D::Glen,           &D::Hlen,     &D::Plen,
                                 &D::Bsd,  &D::Volf,   &D::tail_dia_large, &D::tail_len, &D::tail_dia_small};
  double CaseBody::*const kBody[] = {&CaseBody::l1, &CaseBody::l2, &CaseBody::rim, &CaseBody::rim_dia,
                                     &CaseBody::P1, &CaseBody::P2, &CaseBody::H1,  &CaseBody::H2};
  for (const int tail : {kFlatBase, kInnerCone, kOuterCone})
    for (const double value : {0.0, -1.0, 1e-300, 40.0, 1e300, -40.0, std::nan(""), HUGE_VAL}) {
      for (const auto member : kLengths) {
        D d = boat_tail();
        d.tail_type = tail;
        d.*member = value;
        EXPECT_TRUE(all_finite(draw(d, kBottleneck)) && all_finite(draw(d, {}))) << value;
      }
      for (const auto member : kBody) {
        CaseBody body = kBottleneck;
        body.*member = value;
        EXPECT_TRUE(all_finite(draw(boat_tail(), body))) << value;
      }
    }
  for (const auto& [width, height] : {std::pair{0.0, 0.0}, {1.0, 500.0}, {500.0, 1.0}})
    EXPECT_TRUE(all_finite(draw(boat_tail(), kBottleneck, width, height)));
  const DrawList none = draw({}, {});
  ASSERT_EQ(none.items.size(), 1u);
  EXPECT_EQ(none.items[0].text, "no drawing");
}

}  // namespace
}  // namespace tv
