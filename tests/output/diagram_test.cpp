#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "output/diagram_shot.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// What a text covers, from the line of the letters up.
struct Area {
  double left, top, right, bottom;
};
Area area_of(const DrawItem& item, const std::string& font) {
  const double width = estimated_text_width(item.text, item.size, item.bold, item.italic, font);
  const Point at = item.points[0];
  const double left = item.align == Align::left    ? at.x
                      : item.align == Align::right ? at.x - width
                                                   : at.x - width / 2;
  return {left, at.y - 0.72 * item.size, left + width, at.y};
}

void expect_sound(const DrawList& list) {
  for (const DrawItem& item : list.items) {
    ASSERT_FALSE(item.points.empty());
    for (const Point& p : item.points) {
      ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y)) << item.text;
      EXPECT_TRUE(p.x > -1 && p.x < list.width + 1 && p.y > -1 && p.y < list.height + 1) << item.text;
    }
    EXPECT_TRUE(std::isfinite(item.width) && std::isfinite(item.size) && item.size > 0) << item.text;
  }
}

TEST(Scale, TicksAreOneTwoFive) {
  const struct {
    double range, tick;
  } cases[] = {{0, 1e-9}, {0.001, 1e-4}, {1, 0.1},    {3, 0.5},   {10, 1},    {20, 2},      {100, 10},
               {250, 50}, {400, 50},     {1000, 100}, {-250, 50}, {1.3, 0.2}, {52000, 1e4}, {0.5, 0.05}};
  for (const auto& c : cases) EXPECT_NEAR(NiceTick(c.range), c.tick, 1e-12 * c.tick) << c.range;
  for (const double wild : {kNan, HUGE_VAL, -HUGE_VAL, 1e300}) EXPECT_EQ(NiceTick(wild), 1) << wild;
  for (double range = 1e-44; range < 1e38; range *= 1.7) {  // ends, and never leaves the axis without ticks
    EXPECT_GT(NiceTick(range), 0);
    if (range > 1e-30) {
      EXPECT_LE(range / NiceTick(range), 10.001) << range;
    }
  }
}

TEST(Scale, ThreeDigitsAreCut) {
  const struct {
    double value, cut;
  } cases[] = {{9.96, 9.96}, {999.9, 999}, {2.3, 2.3},     {8.2, 8.2},     {0.07406, 0.0740}, {366.49, 366},
               {0, 0},       {-3, 0},      {52999, 52900}, {1000.4, 1000}, {kNan, 0},         {HUGE_VAL, 0}};
  for (const auto& c : cases) EXPECT_NEAR(cut_three_digits(c.value), c.cut, 1e-9 * (1 + c.cut)) << c.value;
}

TEST(Scale, AxesReachTheCurveTheLimitAndTheEndOfTheShot) {
  Shot shot = magnum();  // peak 366.5 MPa, 899.3 m/s, 549.63 mm in 1.269 ms
  DiagramOptions options = of_type(3);
  options.maximum = false;
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.y1_to, 400);
  options.maximum = true;
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.y1_to, 450);
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.y2_to, 1000);
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.x_to, 549.63);
  EXPECT_NEAR(draw(shot, of_type(6)).frame.x_to, -1000 * shot.curve->t[0], 1e-12);
  shot.curve->p[50] = 450e6 / 1.02;  // a top that is a multiple stays, the least more takes the next
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.y1_to, 450);
  shot.curve->p[50] = 451e6 / 1.02;
  EXPECT_DOUBLE_EQ(draw(shot, options).frame.y1_to, 500);
}

TEST(Scale, BarrelAxisReadsZeroAtTheBoltFace) {
  const Shot shot = magnum();
  DiagramOptions options = of_type(1);
  options.barrel_axis = true;
  const DiagramFrame f = draw(shot, options).frame;
  const double behind = 24 * 25.4 - 549.63;
  EXPECT_NEAR(f.x_from, -behind, 1e-9);
  EXPECT_NEAR(f.x_label_offset, behind, 1e-9);
  EXPECT_EQ(read_out(f, options, {f.left, 100})->x, "0.0 mm");
  EXPECT_EQ(read_out(f, options, {f.right, 100})->x, "609.6 mm");
}

// Every logged point is drawn, and the read-out at its x tells its values, at whatever height the pointer is.
TEST(ReadOut, IsTheInverseOfTheDrawing) {
  const Shot shot = magnum();
  for (int type = 1; type <= 6; ++type) {
    const DiagramOptions options = of_type(type);
    const Diagram d = draw(shot, options, 900, 700);
    const DrawItem* curve = nullptr;
    for (const DrawItem* each : items_of(d.list, DrawKind::polyline)) {
      if (each->points.size() == static_cast<std::size_t>(shot.result.lastIdx) + 1 && !curve) curve = each;
    }
    ASSERT_TRUE(curve) << type;
    for (const std::size_t i : {std::size_t{1}, std::size_t{50}, std::size_t{98}}) {
      const double height = d.frame.top + 4.0 * static_cast<double>(i);
      const auto out = read_out(d.frame, options, shot.run(), {curve->points[i].x, height});
      ASSERT_TRUE(out) << type;
      const double x = type < 4 ? shot.curve->x[i] * 1000 : (shot.curve->t[i] - shot.curve->t[0]) * 1000;
      const double y = type % 3 == 2 ? shot.curve->v[i] : shot.curve->p[i] / 1e6;
      EXPECT_NEAR(read_number(out->x), x, type < 4 ? 0.051 : 0.00051) << type;
      EXPECT_NEAR(read_number(out->y1), y, 0.51) << type;
      EXPECT_EQ(out->y2.empty(), type % 3 != 0);
      if (type % 3 == 0) {
        EXPECT_NEAR(read_number(out->y2), shot.curve->v[i], 0.51) << type;
      }
      ASSERT_EQ(out->on_curve.size(), type % 3 == 0 ? 2U : 1U);
      EXPECT_NEAR(out->on_curve[0].y, curve->points[i].y, 0.5);
    }
    // Beside an axis the pointer's own values stand, elsewhere none.
    const auto beside = read_out(d.frame, options, shot.run(), {d.frame.left - 1, d.frame.bottom});
    ASSERT_TRUE(beside);
    EXPECT_EQ(read_number(beside->y1), 0);
    EXPECT_TRUE(beside->on_curve.empty());
    EXPECT_FALSE(read_out(d.frame, options, shot.run(), {d.frame.left - 1, d.frame.bottom + 5}));
    EXPECT_FALSE(read_out(d.frame, options, shot.run(), {200, d.frame.top - 1}));
  }
}

// The bands beside the axes, for each type: left, right, below with travel and with barrel axis.
TEST(FitClick, BandsOfEveryType) {
  const Shot shot = magnum();
  const struct {
    int type, left, right, below, below_barrel;
  } cases[] = {{1, 0, 0, 3, 4}, {2, 1, 1, 3, 4}, {3, 0, 1, 3, 4},
               {4, 0, 0, 2, 2}, {5, 1, 1, 2, 2}, {6, 0, 1, 2, 2}};
  for (const auto& c : cases) {
    for (const bool barrel : {false, true}) {
      DiagramOptions options = of_type(c.type);
      options.barrel_axis = barrel;
      const Diagram d = draw(shot, options);
      const DiagramFrame& f = d.frame;
      const double middle = (f.top + f.bottom) / 2;
      const auto left = fit_click(f, options, {f.left - 5, middle});
      const auto right = fit_click(f, options, {f.right + 5, middle});
      const auto below = fit_click(f, options, {f.left + 0.75 * (f.right - f.left), f.bottom + 5});
      ASSERT_TRUE(left && right && below) << c.type;
      EXPECT_EQ(left->mode, c.left) << c.type;
      EXPECT_EQ(right->mode, c.right) << c.type;
      EXPECT_EQ(below->mode, barrel ? c.below_barrel : c.below) << c.type;
      EXPECT_DOUBLE_EQ(left->value, f.y1_to / 2);
      EXPECT_DOUBLE_EQ(right->value, c.type % 3 == 0 ? f.y2_to / 2 : f.y1_to / 2);
      const double x = f.x_from + 0.75 * (f.x_to - f.x_from) + f.x_label_offset;
      EXPECT_DOUBLE_EQ(below->value, cut_three_digits(x)) << c.type;
      // Not in the plot, the corners, above the frame or on the legend.
      const LegendEntry& entry = d.legend.front();
      for (const Point at :
           {Point{f.left + 9, middle}, Point{f.left - 5, f.bottom + 5}, Point{f.right + 5, f.bottom + 5},
            Point{f.left + 9, f.top - 5}, Point{entry.left + 9, (entry.top + entry.bottom) / 2}}) {
        EXPECT_FALSE(fit_click(f, options, at)) << c.type << " " << at.x << " " << at.y;
      }
    }
  }
  const DiagramFrame f = draw(shot, of_type(6)).frame;
  EXPECT_EQ(fit_click(f, of_type(6), {f.left - 5, f.bottom})->value, 0);  // nothing to fit, but a click
  const Diagram none = empty_diagram("nothing", of_type(6), 300, 250, nullptr);
  EXPECT_FALSE(fit_click(none.frame, of_type(6), {5, 100}));
  EXPECT_FALSE(inside_plot(none.frame, {150, 100}));
}

TEST(Marks, StandOnlyAtValidPointsAndWhenAsked) {
  Shot shot = magnum();  // not burnt out in the barrel
  DiagramOptions options = of_type(6);
  const auto shown = [&](const char* label) { return text_item(draw(shot, options).list, label) != nullptr; };
  for (const char* label : {"Pmax", "M", "Z1", "95%", "Pmax allowed", "Pmax -15% ", "Pmax -25% "}) {
    EXPECT_TRUE(shown(label)) << label;
  }
  EXPECT_FALSE(shown("100%"));
  shot.result.burnIdx = 90;
  shot.result.z1Idx = -1;
  shot.result.idx95 = 4000;
  EXPECT_TRUE(shown("100%"));
  EXPECT_FALSE(shown("Z1"));
  EXPECT_FALSE(shown("95%"));
  options.marks = false;
  EXPECT_TRUE(shown("Pmax"));
  EXPECT_FALSE(shown("M"));
  options.maximum = false;
  EXPECT_FALSE(shown("Pmax"));
  EXPECT_FALSE(shown("Pmax allowed"));
}

TEST(Zones, LieDirectlyUnderEachOther) {
  Shot shot = magnum();
  const DiagramOptions options = of_type(1);
  const Diagram d = draw(shot, options);
  const auto bands = items_of(d.list, DrawKind::band);
  ASSERT_EQ(bands.size(), 3U);
  const double per_unit = (d.frame.bottom - d.frame.top) / d.frame.y1_to;
  double upper = d.frame.top;
  for (const double level : {430.0, 430 * (1 - 0.147), 430 * (1 - 0.147 - 0.097)}) {
    const DrawItem& band = *bands[static_cast<std::size_t>(level == 430 ? 0 : level > 360 ? 1 : 2)];
    EXPECT_NEAR(band.points[0].y, upper, 1e-9);
    EXPECT_NEAR(band.points[1].y, d.frame.bottom - level * per_unit, 1e-9);
    upper = band.points[1].y;
  }
  EXPECT_TRUE(items_of(draw(shot, of_type(2)).list, DrawKind::band).empty());
  shot.state.dim.zul_P = 0;  // unknown: no zones, no lines, no longer axis
  const Diagram unknown = draw(shot, options);
  EXPECT_TRUE(items_of(unknown.list, DrawKind::band).empty());
  EXPECT_FALSE(text_item(unknown.list, "Pmax allowed"));
  EXPECT_DOUBLE_EQ(unknown.frame.y1_to, 400);
}

TEST(Layout, TextsKeepApartAndInsideAtEverySize) {
  const Shot shot = magnum();
  const struct { double width, height; } sizes[] = {{300, 250}, {640, 480}, {1000, 300}, {2000, 1400}};
  for (const auto& size : sizes) {
    for (const double text_size : {9.0, 12.0, 24.0}) {
      for (int n = 0; n < 18; ++n) {
        const int type = 1 + n % 6;
        DiagramOptions options = of_type(type);
        options.text_size = text_size;
        options.view = std::array{DiagramView{}, DiagramView{{0, 0.4}, {0.5, 1}},
                                  DiagramView{{0.3, 0.5}, {0, 0.7}}}[static_cast<std::size_t>(n / 6)];
        const DrawList list = draw(shot, options, size.width, size.height).list;
        expect_sound(list);
        const auto texts = items_of(list, DrawKind::text);
        for (std::size_t i = 0; i < texts.size(); ++i) {
          const Area a = area_of(*texts[i], list.font);
          const std::string where =
              fmt::format("{} in {}x{} at {} type {} from {}", texts[i]->text, size.width, size.height,
                          text_size, type, options.view.x.from);
          EXPECT_TRUE(a.left >= 0 && a.right <= size.width && a.top >= 0 && a.bottom <= size.height) << where;
          EXPECT_GE(texts[i]->size, 8.5) << where;
          for (std::size_t j = i + 1; j < texts.size(); ++j) {
            const Area b = area_of(*texts[j], list.font);
            EXPECT_FALSE(a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom)
                << where << " over " << texts[j]->text;
          }
        }
      }
    }
  }
}

TEST(Layout, CoarseStepAndStaleResultsAreTold) {
  Shot shot = magnum();
  shot.state.schrit = 2;
  DiagramOptions options = of_type(6);
  const std::string note = english().fastmsg("fcoarse");
  EXPECT_TRUE(text_item(draw(shot, options).list, note));
  EXPECT_FALSE(text_item(draw(shot, of_type(3)).list, note));
  options.stale = true;
  const DrawList list = draw(shot, options).list;
  EXPECT_TRUE(text_item(list, english().fastmsg("fobsol0") + " " + english().fastmsg("fobsol1")));
  for (const DrawItem& item : list.items) {
    EXPECT_FALSE(item.colour == options.colours.pressure || item.colour == options.colours.velocity);
  }
}

TEST(Layout, TwoCurvesDifferWithoutColour) {
  const Shot shot = magnum();
  DiagramOptions options = of_type(3);
  options.followed = 2;
  const Diagram d = draw(shot, options);
  std::vector<const DrawItem*> curves;
  for (const DrawItem* each : items_of(d.list, DrawKind::polyline)) {
    if (each->points.size() > 50) curves.push_back(each);
  }
  ASSERT_EQ(curves.size(), 2U);
  EXPECT_NE(curves[0]->style, curves[1]->style);
  EXPECT_GT(curves[1]->width, curves[0]->width);  // the followed one is bold
  ASSERT_EQ(d.legend.size(), 2U);
  for (const LegendEntry& entry : d.legend) {
    const LegendHit sample = legend_hit(d, {entry.left + 3, entry.top + 3});
    const LegendHit name = legend_hit(d, {entry.right - 3, entry.top + 3});
    EXPECT_TRUE(sample.curve == entry.curve && sample.sample);
    EXPECT_TRUE(name.curve == entry.curve && !name.sample);
  }
  EXPECT_EQ(legend_hit(d, {d.frame.left + 50, d.frame.top + 50}).curve, 0);
}

// Curves and inputs that no gun gives must not put anything into the list that a painter cannot draw.
TEST(Hostile, NothingThatIsNotFiniteIsDrawn) {
  Shot shot = magnum();
  const auto check = [&](const char* what) {
    SCOPED_TRACE(what);
    for (int n = 0; n < 16; ++n) {
      DiagramOptions options = of_type(n / 2);
      options.barrel_axis = n % 2 == 1;
      if (options.barrel_axis) options.view = {{0.2, 0.6}, {0.3, 0.5}};
      const Diagram d = draw(shot, options);
      expect_sound(d.list);
      EXPECT_LT(d.list.items.size(), 600U);
    }
  };
  shot.curve->p[10] = kNan;
  shot.curve->v[20] = HUGE_VAL;
  shot.curve->p[30] = 1e300;
  shot.curve->x[40] = -HUGE_VAL;
  shot.curve->p[60] = -5e6;
  check("wild points");
  shot.curve->p.fill(kNan);
  shot.curve->t.fill(kNan);
  shot.state.dim.Wob = kNan;
  shot.state.dim.Llen = shot.state.dim.zul_P = HUGE_VAL;
  check("nothing but wild values");
  shot = {};
  check("one point of zero");
  shot.result.lastIdx = 1000000;
  check("index out of range");
  DiagramOptions options = of_type(6);
  options.pressure_factor = 0;
  options.velocity_factor = options.text_size = kNan;
  for (const double size : {kNan, -5.0, 0.0, 1.0, HUGE_VAL}) {
    expect_sound(draw(magnum(), options, size, size).list);
    expect_sound(empty_diagram("No shot yet", options, size, size, nullptr).list);
  }
  expect_sound(draw_diagram({}, options, english(), 300, 250, nullptr).list);
}

TEST(Hostile, AGapStaysAGap) {
  Shot shot = magnum();
  shot.curve->p[40] = kNan;
  std::vector<std::size_t> pieces;
  const Diagram drawn = draw(shot, of_type(1));
  for (const DrawItem* each : items_of(drawn.list, DrawKind::polyline)) {
    if (each->points.size() > 10) pieces.push_back(each->points.size());
  }
  EXPECT_EQ(pieces, (std::vector<std::size_t>{40, 58}));
}

// Pressure left, velocity right; the range only where x is the travel, and nothing of a curve that is hidden.
TEST(DiagramBeside, MeasuredAndRangeStandWhereTheirValuesPutThem) {
  const Shot shot = magnum();
  DiagramBeside beside;
  beside.x = {0, 0.3};
  beside.p_low = {1e6, 90e6};
  beside.p_high = {2e6, 900e6};
  beside.v_low = {0, 700};
  beside.v_high = {0, 720};
  beside.pressure = {380e6, 5e6};
  beside.velocity = {905, 4};
  DiagramRun run = shot.run();
  run.beside = &beside;
  DiagramOptions options;
  options.type = 3;
  options.velocity_factor = 0.3048;
  const Chart both = describe_diagram(run, options, english());
  ASSERT_EQ(both.series.size(), 4U);
  ASSERT_EQ(both.areas.size(), 2U);
  EXPECT_GE(both.left.to, 900) << "the axis reaches the range";
  EXPECT_EQ(both.areas[0].upper[1], (Point{300, 900}));
  EXPECT_TRUE(both.areas[1].right_scale);
  EXPECT_NEAR(both.areas[1].lower[1].y, 700 / 0.3048, 1e-9);
  const auto peak = static_cast<std::size_t>(shot.result.peakIdx);
  EXPECT_EQ(both.series[2].points[0], (Point{shot.curve->x[peak] * 1000, 380}));
  EXPECT_EQ(both.series[2].spread[0], 5);
  EXPECT_NEAR(both.series[3].points[0].x, shot.state.dim.Wob, 0.01);
  EXPECT_NEAR(both.series[3].points[0].y, 905 / 0.3048, 1e-9);
  EXPECT_TRUE(both.series[3].right_scale);
  options.hidden = {true, false};
  const Chart one = describe_diagram(run, options, english());
  EXPECT_EQ(one.series.size(), 3U);
  EXPECT_EQ(one.areas.size(), 1U);
  options.type = 6;
  EXPECT_TRUE(describe_diagram(run, options, english()).areas.empty());
  expect_sound(draw_diagram(run, options, english(), 800, 520, estimated_text_width).list);
}

}  // namespace
}  // namespace tv
