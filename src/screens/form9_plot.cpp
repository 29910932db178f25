// Form9: the picture. The law over the burnt fraction with its handles and what was measured; while a reference
// curve is entered, that curve over time.
#include <algorithm>
#include <cmath>

#include "output/chart.h"
#include "output/chart_axis.h"
#include "screens/form9.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/units.h"
#include "text/number.h"

namespace tv::form9 {
namespace {

enum SeriesId : int { kEdited = 1, kStored, kMeasured, kMean };

constexpr double kCurveReach = 9;  // of the pointer to the curve
constexpr double kLeastTop = 0.1;
constexpr double kNarrow = 1e-9;

double at_three_decimals(double x) { return std::round(x * 1000) / 1000; }
double at_four_decimals(double x) { return std::round(x * 10000) / 10000; }

// Fine enough that its steep end looks round.
std::vector<Point> points_of(const BurnLaw& drawn) {
  constexpr int kSteps = 400;
  std::vector<Point> points;
  for (int i = 0; i <= kSteps; ++i) {
    const double z = static_cast<double>(i) / kSteps, before = static_cast<double>(i - 1) / kSteps;
    if (drawn.Limz1 < 1 && drawn.Limz1 > before && drawn.Limz1 < z)
      points.push_back({drawn.Limz1, burn_rate(drawn, drawn.Limz1)});
    points.push_back({z, burn_rate(drawn, z)});
  }
  return points;
}

double largest(const std::vector<Point>& points) {
  double top = 0;
  for (const Point& p : points)
    if (is_drawable(p.y)) top = std::max(top, p.y);
  return top;
}

ChartLook look_of(const Session& s, bool dark) {
  ChartLook look;
  look.colours = dark ? dark_colours() : light_colours();
  look.font = s.options.pict_font_nam;
  look.line_width = s.output.line_width;
  return look;
}

void add_laws(Chart& chart, const Session& s) {
  const State& st = state(s);
  const ChartColours& c = chart.look.colours;
  if (!(st.opened.law == st.now.law))
    chart.series.push_back({.id = kStored,
                            .name = text(s, "stored"),
                            .points = points_of(burn_curve(st.opened.law).law),
                            .colour = c.stale,
                            .style = LineStyle::dash,
                            .weight = 0.5});
  chart.series.push_back({.id = kEdited,
                          .name = text(s, "edited"),
                          .points = points_of(burn_curve(st.now.law).law),
                          .colour = c.velocity,
                          .bold = true});
}

void add_measured(Chart& chart, const Session& s) {
  const State& st = state(s);
  ChartSeries rows{.id = kMeasured,
                   .name = text(s, "vivsoll"),
                   .colour = chart.look.colours.pressure,
                   .weight = 0,
                   .shape = ChartPoints::dots,
                   .reading = ChartReading::at_points};
  for (const VivacityPoint& row : st.table.rows)
    if (row.x > 0 && row.f > 0) rows.points.push_back({row.x, row.f});
  std::ranges::sort(rows.points, {}, &Point::x);
  if (!rows.points.empty()) chart.series.push_back(std::move(rows));
  if (!(st.mean37 > 0 && st.mean38 > 0)) return;
  const struct {
    const char* name;
    double to, mean;
  } lines[] = {{"vivsoll37", 0.7, st.mean37}, {"vivsoll38", 0.8, st.mean38}};
  for (const auto& line : lines)
    chart.series.push_back({.id = kMean,
                            .name = text(s, line.name),
                            .points = {{0.3, line.mean}, {line.to, line.mean}},
                            .colour = chart.look.colours.pressure,
                            .style = LineStyle::dot,
                            .reading = ChartReading::none});
}

// The points that fix the function, and the rings to drag.
void add_marks(Chart& chart, const Session& s) {
  const State& st = state(s);
  const ChartColours& c = chart.look.colours;
  if (st.fit)
    for (const VivacityPoint& row : {st.fit->a, st.fit->b})
      chart.marks.push_back(
          {.at = {row.x, row.f}, .colour = row.x > st.now.law.Limz1 ? Colour{220, 0, 0, 255} : c.pressure});
  if (st.from_means) chart.marks.push_back({.at = {0.8, st.at_80}, .colour = c.pressure});
  const BurnLaw drawn = burn_curve(st.now.law).law;
  const double z1 = std::min(drawn.Limz1, 1.0);
  chart.marks.push_back(
      {.label = "Ba", .at = {0, drawn.Ba0}, .id = static_cast<int>(Handle::left_end), .colour = c.velocity});
  chart.marks.push_back({.label = "z1",
                         .at = {z1, burn_rate(drawn, z1)},
                         .id = static_cast<int>(Handle::joint),
                         .colour = c.velocity});
}

// Where the powder stands when the pressure is highest, of the shot beside the reference.
void add_peak(Chart& chart, const Session& s) {
  if (!in_mode(s, Mode::manual) || !s.output.reference.shown || !s.valid.results) return;
  const double z = s.result.zPeak;
  chart.limits.push_back({.level = z, .label = z < 0.99 ? "M" : "", .vertical = true});
}

Chart law_chart(const Session& s, bool dark) {
  const State& st = state(s);
  Chart chart;
  chart.look = look_of(s, dark);
  chart.x = {.title = text(s, "axis_x"), .from = 0, .to = 1, .tick = 0.1, .pattern = "0.0"};
  add_laws(chart, s);
  if (in_mode(s, Mode::table)) add_measured(chart, s);
  double top = kLeastTop / 1.3;
  for (const ChartSeries& series : chart.series) top = std::max(top, largest(series.points));
  top = st.drag.moved ? st.drag.top : 1.3 * top;
  chart.left = {.title = text(s, "axis_y") + ", " + s.language.text("units", "unit_Ba"),
                .from = 0,
                .to = top,
                .tick = burn_axis_step(top)};
  add_marks(chart, s);
  add_peak(chart, s);
  return chart;
}

// The curve as it is entered, and the shot where one is there to be compared.
Chart reference_chart(const Session& s, bool dark) {
  const ReferenceCurve& curve = state(s).reference;
  Chart chart;
  chart.look = look_of(s, dark);
  const bool compared = s.valid.results && reference_fault(curve).hint == kNoHint;
  std::vector<ReferencePoint> rows(curve.rows.begin(), curve.rows.end());
  if (compared) rows = reference_over_time(curve, s.curve, s.result, s.output.reference.as_measured);
  ChartSeries measured{.id = kMeasured,
                       .name = text(s, "frm_ref"),
                       .colour = chart.look.colours.reference,
                       .shape = ChartPoints::dots};
  for (const ReferencePoint& row : rows)
    if (row.MPa > 0) measured.points.push_back({row.ms, units::mode_of_MPa.shown(row.MPa, s)});
  std::ranges::sort(measured.points, {}, &Point::x);
  double end = measured.points.empty() ? 1 : measured.points.back().x, top = largest(measured.points);
  chart.series.push_back(std::move(measured));
  if (compared) {
    ChartSeries shot{
        .id = kEdited, .name = s.language.fastmsg("fchp"), .colour = chart.look.colours.pressure};
    for (int i = 0; i <= s.result.lastIdx; ++i) {
      const auto k = static_cast<std::size_t>(i);
      shot.points.push_back(
          {(s.curve.t[k] - s.curve.t[0]) * 1000, units::mode_of_MPa.shown(s.curve.p[k] / 1e6, s)});
    }
    end = std::max(end, shot.points.back().x);
    top = std::max(top, largest(shot.points));
    chart.series.push_back(std::move(shot));
  }
  chart.x = exact_axis(std::min(0.0, chart.series[0].points.empty() ? 0 : chart.series[0].points[0].x), end,
                       end, 0, "ms");
  chart.x.title = s.language.fastmsg("fbulttim");
  chart.left = value_axis(top, 0, mode_pressure_unit(s));
  chart.left.title = text(s, "druck");
  return chart;
}

Chart chart_of(const Session& s, bool dark) {
  return in_mode(s, Mode::reference) ? reference_chart(s, dark) : law_chart(s, dark);
}
DrawnChart drawn_chart(const Session& s, const Extent& e) {
  return draw_chart(chart_of(s, e.dark), e.width, e.height, e.text_width);
}
bool has_powder(const Session& s) { return state(s).now.law.Ba0 > 0; }

// --- what the pointer takes hold of

Handle handle_at(const Session& s, const DrawnChart& drawn, Point at) {
  if (const int id = handle_hit(drawn, at)) return static_cast<Handle>(id);
  if (!inside_plot(drawn.frame, at)) return Handle::none;
  const BurnLaw law = burn_curve(state(s).now.law).law;
  const double z = x_value(drawn.frame, at.x);
  const double away = projected(drawn.frame, z, burn_rate(law, z), false).y - at.y;
  if (!(std::fabs(away) < kCurveReach)) return Handle::none;
  return z < law.Limz1 || law.Limz1 >= 1 ? Handle::first_part : Handle::second_part;
}

// The law with what was taken hold of at (z, y).
BurnLaw dragged(BurnLaw law, Handle handle, double z, double y) {
  switch (handle) {
    case Handle::left_end:
      law.Ba0 = at_four_decimals(y);
      break;
    case Handle::joint:
      law.Limz1 = std::clamp(at_three_decimals(z), 0.01, 1.0);
      break;
    case Handle::first_part: {  // Ba0 sqrt(1 + PDko z) = y
      if (!(z > 0.01)) break;
      const double q = y / law.Ba0;
      law.PDko = at_four_decimals(std::max((q * q - 1) / z, -0.99));
      break;
    }
    case Handle::second_part: {  // the limit from which the second part, joined to the first, passes (z, y)
      const double a = law.Ba0 * law.Ba0 * (1 - z);
      const double below = y * y + a * law.PDko;
      if (std::fabs(below) > kNarrow)
        law.Limz1 = std::clamp(at_three_decimals((y * y - a) / below), 0.01, std::min(z, 0.999));
      break;
    }
    case Handle::none:
      break;
  }
  return joined(law);
}

void begin_drag(Session& s, const Pointer& p, const Extent& e) {
  State& st = state(s);
  st.drag = {};
  if (in_mode(s, Mode::reference) || !has_powder(s)) return;
  const DrawnChart drawn = drawn_chart(s, e);
  st.drag = {handle_at(s, drawn, p.at), drawn.frame.y1_to};
}

void drag(Session& s, const Pointer& p, const Extent& e) {
  State& st = state(s);
  if (st.drag.handle == Handle::none) return;
  if (!st.drag.moved) leave_focus(s);
  st.drag.moved = true;
  st.fit.reset();
  st.from_means = false;
  const ChartFrame frame = drawn_chart(s, e).frame;
  const double z = std::clamp(x_value(frame, p.at.x), 0.0, 1.0), y = std::max(0.0, y1_value(frame, p.at.y));
  take_law(s, dragged(st.now.law, st.drag.handle, z, y));
}

void end_drag(Session& s) {
  State& st = state(s);
  const bool moved = st.drag.moved;
  st.drag = {};
  if (!moved) return;
  keep_step(s);
  compare(s);
}

}  // namespace

DrawList draw(const Session& s, const Extent& e) {
  const State& st = state(s);
  const Chart chart = chart_of(s, e.dark);
  if (!in_mode(s, Mode::reference) && !has_powder(s))
    return empty_chart(text(s, "hint36"), chart.look, e.width, e.height, e.text_width).list;
  DrawnChart drawn = draw_chart(chart, e.width, e.height, e.text_width);
  if (st.pointer && inside_plot(drawn.frame, *st.pointer) && st.drag.handle == Handle::none) {
    const DrawList over = pointer_overlay(chart, drawn.frame, *st.pointer, e.text_width);
    drawn.list.items.insert(drawn.list.items.end(), over.items.begin(), over.items.end());
  }
  return drawn.list;
}

void pointer(Session& s, const Pointer& p, const Extent& e) {
  State& st = state(s);
  st.pointer = p.at;
  switch (p.what) {
    case Pointer::What::press:
    case Pointer::What::double_click:
      begin_drag(s, p, e);
      break;
    case Pointer::What::drag:
      drag(s, p, e);
      break;
    case Pointer::What::release:
      end_drag(s);
      break;
    case Pointer::What::away:
      end_drag(s);
      st.pointer.reset();
      break;
    case Pointer::What::move:
    case Pointer::What::wheel:
      break;
  }
  // Told in words as well, for whom the picture tells nothing.
  st.told.clear();
  if (!st.pointer || (!in_mode(s, Mode::reference) && !has_powder(s))) return;
  const Chart chart = chart_of(s, e.dark);
  const auto out = chart_read_out(chart, drawn_chart(s, e).frame, *st.pointer);
  if (!out) return;
  st.told = (in_mode(s, Mode::reference) ? "" : "z ") + out->x;
  for (const auto& entry : out->entries) st.told += " \u00B7 " + entry.name + " " + entry.value;
}

}  // namespace tv::form9
