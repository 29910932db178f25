// Sections of a diagram and hidden curves.
#include <algorithm>
#include <cmath>

#include "output/chart_labels.h"
#include "output/diagram_shot.h"
#include "text/number.h"

namespace tv {
namespace {

Point middle_of(const DiagramFrame& f) { return {(f.left + f.right) / 2, (f.top + f.bottom) / 2}; }

double value_left(const DiagramFrame& f, double y) {
  return f.y1_from + (f.bottom - y) / (f.bottom - f.top) * (f.y1_to - f.y1_from);
}
double value_below(const DiagramFrame& f, double x) {
  return f.x_from + (x - f.left) / (f.right - f.left) * (f.x_to - f.x_from);
}

std::vector<const DrawItem*> curves_of(const Diagram& d, const DiagramOptions& options) {
  std::vector<const DrawItem*> out;
  for (const DrawItem* each : items_of(d.list, DrawKind::polyline)) {
    const bool coloured =
        each->colour == options.colours.pressure || each->colour == options.colours.velocity;
    if (coloured && each->points.size() > 2) out.push_back(each);
  }
  return out;
}

TEST(View, WhatIsUnderThePointerStaysThere) {
  const Shot shot = magnum();
  for (int type = 1; type <= 6; ++type) {
    DiagramOptions options = of_type(type);
    options.barrel_axis = type == 1;
    const DiagramFrame whole = draw(shot, options, 900, 700).frame;
    const Point at{whole.left + 0.3 * (whole.right - whole.left),
                   whole.top + 0.2 * (whole.bottom - whole.top)};
    const double x = value_below(whole, at.x), y = value_left(whole, at.y);
    DiagramFrame f = whole;
    for (int notch = 1; notch <= 8; ++notch) {
      options.view = zoom_at(f, options.view, at, 1);
      f = draw(shot, options, 900, 700).frame;
      const double share = std::pow(kZoomStep, notch);
      EXPECT_NEAR(f.x_to - f.x_from, share * (whole.x_to - whole.x_from), 1e-9) << type;
      EXPECT_NEAR(f.y1_to - f.y1_from, share * whole.y1_to, 1e-9) << type;
      if (f.has_right) {  // both scales in step
        EXPECT_NEAR(f.y2_from / whole.y2_to, f.y1_from / whole.y1_to, 1e-12);
      }
      // The frame itself may move by the width of a longer label.
      EXPECT_NEAR(value_below(f, at.x), x, 0.03 * (f.x_to - f.x_from)) << type;
      EXPECT_NEAR(value_left(f, at.y), y, 1e-9) << type;
    }
    options.view = drag_view(f, options.view, at, {at.x + 40, at.y - 30});
    const DiagramFrame dragged = draw(shot, options, 900, 700).frame;
    EXPECT_NEAR(value_below(dragged, at.x + 40), value_below(f, at.x), 1e-9) << type;
    EXPECT_NEAR(value_left(dragged, at.y - 30), value_left(f, at.y), 1e-9) << type;
    EXPECT_TRUE(is_whole(zoom_at(dragged, options.view, at, -9))) << "and back out";
  }
}

TEST(View, BesideAnAxisOnlyThisAxisIsZoomed) {
  const Diagram d = draw(magnum(), of_type(3));
  const DiagramFrame& f = d.frame;
  const Point centre = middle_of(f);
  const struct {
    Point at;
    bool x, y;
  } cases[] = {{centre, true, true},
               {{f.left - 5, centre.y}, false, true},
               {{f.right + 5, centre.y}, false, true},
               {{centre.x, f.bottom + 5}, true, false},
               {{f.left - 5, f.bottom + 5}, false, false},
               {{centre.x, f.top - 5}, false, false},
               {{d.legend[0].left + 3, d.legend[0].top + 3}, false, false}};
  for (const auto& c : cases) {
    const DiagramView view = zoom_at(f, {}, c.at, 2);
    EXPECT_EQ(view.x != ViewRange{}, c.x) << c.at.x << " " << c.at.y;
    EXPECT_EQ(view.y != ViewRange{}, c.y) << c.at.x << " " << c.at.y;
  }
  for (const double wild : {std::nan(""), HUGE_VAL, -1e300}) {
    const DiagramView view = zoom_at(f, {}, centre, wild);
    EXPECT_TRUE(view.x.from >= 0 && view.x.to <= 1 && view.x.from < view.x.to) << wild;
    EXPECT_EQ(zoom_at(DiagramFrame{}, {}, {wild, wild}, 1), DiagramView{});
  }
}

// In every section: nothing leaves the frame, curves keep to the shot, ticks tell what stands beside them.
TEST(Section, IsClippedToTheFrameAndTellsTrueValues) {
  const Shot shot = magnum();
  const DiagramView views[] = {{{0.2, 0.6}, {0.5, 1}},      {{0, 0.1}, {0, 0.3}}, {{0.9, 1}, {0.1, 0.5}},
                               {{0.3, 0.305}, {0.7, 0.72}}, {{0, 1}, {0.6, 0.9}}, {{0.1, 0.12}, {0, 1}}};
  int drawn = 0;
  for (const DiagramView& view : views) {
    for (int type = 1; type <= 6; ++type) {
      SCOPED_TRACE(std::to_string(type) + " from " + std::to_string(view.x.from));
      DiagramOptions options = of_type(type);
      options.view = view;
      const Diagram d = draw(shot, options, 800, 600);
      const DiagramFrame& f = d.frame;
      for (const DrawItem* curve : curves_of(d, options)) {
        ++drawn;
        const bool pressure = curve->colour == options.colours.pressure;
        for (const Point& at : curve->points) {
          EXPECT_TRUE(inside_plot({f.left - 1e-6, f.right + 1e-6, f.top - 1e-6, f.bottom + 1e-6}, at));
          // Between two logged points, as a value at this x; the last may lie a hair beyond the axis.
          const double x = value_below(f, at.x);
          const double up = (f.bottom - at.y) / (f.bottom - f.top);
          const double y =
              type % 3 == 0 && !pressure ? f.y2_from + up * (f.y2_to - f.y2_from) : value_left(f, at.y);
          const auto last = static_cast<std::size_t>(shot.result.lastIdx);
          bool found = false;
          for (std::size_t i = 1; i <= last && !found; ++i) {
            const auto x_at = [&](std::size_t n) {
              return type < 4 ? shot.curve->x[n] * 1000 : (shot.curve->t[n] - shot.curve->t[0]) * 1000;
            };
            const auto y_at = [&](std::size_t n) {
              return pressure ? shot.curve->p[n] / 1e6 : shot.curve->v[n];
            };
            if (x < x_at(i - 1) - 1e-9 || x > x_at(i) + 1e-9) continue;
            const double part = (x - x_at(i - 1)) / (x_at(i) - x_at(i - 1));
            found = std::abs(y_at(i - 1) + part * (y_at(i) - y_at(i - 1)) - y) < 2e-3;
          }
          EXPECT_TRUE(found) << x << " " << y;
        }
      }
      for (const DrawItem& item : d.list.items) {
        const Point at = item.points[0];
        if (item.kind == DrawKind::circle) {
          EXPECT_TRUE(inside_plot(f, at));
        }
        if (item.kind == DrawKind::line && item.points[1].x > f.right - 1e-6 && at.x < f.left + 1e-6) {
          EXPECT_TRUE(at.y >= f.top && at.y <= f.bottom) << "a line across the plot";
        }
        if (item.kind == DrawKind::band) {
          EXPECT_TRUE(item.points[0].y >= f.top - 1e-9 && item.points[1].y <= f.bottom + 1e-9);
        }
        const bool left_label =
            item.kind == DrawKind::text && item.align == Align::right && at.x < f.left && !item.italic;
        if (left_label) {
          const double step = 0.501 * std::pow(10, -double(item.text.size() - item.text.find('.') - 1));
          const double baseline = at.y - 0.36 * item.size;
          EXPECT_NEAR(read_number(item.text), value_left(f, baseline),
                      item.text.find('.') == std::string::npos ? 0.501 : step);
        }
      }
    }
  }
  EXPECT_GT(drawn, 25);
}

TEST(Section, SaysThatItIsOneAndThatThePeakIsElsewhere) {
  const Shot shot = magnum();
  const std::string section = english().fastmsg("fsection"), gone = english().fastmsg("fsectpk");
  const struct {
    int type;
    DiagramView view;
    const char* key;
  } cases[] = {{4, {}, nullptr},
               {4, {{0.1, 0.9}, {0.1, 1}}, "fsection"},
               {6, {{0, 1}, {0, 0.5}}, "fsectpk"},
               {1, {{0.5, 1}, {0, 1}}, "fsectpk"},
               {5, {{0.5, 0.6}, {0, 0.1}}, "fsection"}};  // no pressure there that could be missed
  for (const auto& c : cases) {
    DiagramOptions options = of_type(c.type);
    options.view = c.view;
    const DrawList list = draw(shot, options).list;
    for (const char* key : {"fsection", "fsectpk"}) {
      const bool wanted = c.key && std::string_view(c.key) == key;
      EXPECT_EQ(text_item(list, english().fastmsg(key)) != nullptr, wanted) << c.type << " " << key;
    }
    EXPECT_EQ(text_item(list, "Pmax") != nullptr, !c.key || c.type == 4) << c.type;
  }
}

TEST(HiddenCurves, LeaveTheAxesAndAGreyEntry) {
  const Shot shot = magnum();
  DiagramOptions options = of_type(6);
  const Diagram both = draw(shot, options);
  for (const int hidden : {0, 1}) {
    options.hidden = {hidden == 0, hidden == 1};
    const Diagram d = draw(shot, options);
    const auto curves = curves_of(d, options);
    ASSERT_EQ(curves.size(), 1U);
    EXPECT_EQ(curves[0]->colour, hidden == 0 ? options.colours.velocity : options.colours.pressure);
    EXPECT_EQ(d.frame.y1_to, both.frame.y1_to);
    ASSERT_EQ(d.legend.size(), 2U) << "to show it again";
    EXPECT_EQ(items_of(d.list, DrawKind::circle).empty(), hidden == 0) << "marks go with their curve";
    EXPECT_TRUE(text_item(d.list, "Pmax allowed"));
    int grey = 0;
    for (const DrawItem* text : items_of(d.list, DrawKind::text))
      grey += text->colour == options.colours.stale;
    EXPECT_EQ(grey, 1);
  }
}

}  // namespace
}  // namespace tv
