#include "output/diagram.h"

#include <algorithm>
#include <cmath>

#include "output/diagram_parts.h"
#include "output/quantities.h"

namespace tv {
namespace {

constexpr int kReferenceSeries = 5;

// What a run gives at a logged point, in shown units; not finite where there is no such point.
using ValueOf = double (*)(const DiagramRun&, const DiagramOptions&, std::size_t);

double x_of(const DiagramRun& run, const DiagramOptions& options, std::size_t i) {
  return is_over_time(options.type) ? (run.curve->t[i] - run.curve->t[0]) * 1000
                                    : run.curve->x[i] * 1000 / sound_factor(options.distance_factor);
}
double pressure_of(const DiagramRun& run, const DiagramOptions& options, std::size_t i) {
  return run.curve->p[i] / sound_factor(options.pressure_factor);
}
double velocity_of(const DiagramRun& run, const DiagramOptions& options, std::size_t i) {
  return run.curve->v[i] / sound_factor(options.velocity_factor);
}

std::optional<Point> point_of(const DiagramRun& run, const DiagramOptions& options, int index,
                              ValueOf value_of) {
  if (index < 0 || index > last_index(run)) return std::nullopt;
  const auto i = static_cast<std::size_t>(index);
  return Point{x_of(run, options, i), value_of(run, options, i)};
}

std::vector<Point> points_of(const DiagramRun& run, const DiagramOptions& options, ValueOf value_of,
                             double shift) {
  std::vector<Point> points;
  const auto last = static_cast<std::size_t>(last_index(run));
  for (std::size_t i = 0; i <= last; ++i) {
    points.push_back({x_of(run, options, i) + shift, value_of(run, options, i)});
  }
  return points;
}

ChartSeries curve_of(const DiagramRun& run, const DiagramOptions& options, ValueOf value_of) {
  ChartSeries series;
  series.points = points_of(run, options, value_of, 0);
  // A velocity looks the same in every diagram.
  const bool pressure = value_of == pressure_of;
  series.colour = pressure ? options.colours.pressure : options.colours.velocity;
  series.style = pressure ? LineStyle::solid : LineStyle::dash;
  return series;
}

std::optional<ChartSeries> kept_curve_of(const DiagramRun& run, const DiagramOptions& options,
                                         const ChartSeries& present, ValueOf value_of,
                                         const Language& language) {
  if (!run.kept) return std::nullopt;
  const double shift = is_over_time(options.type)
                           ? 0
                           : kept_shift_mm(run, options.barrel_axis) / sound_factor(options.distance_factor);
  return kept_series(present, points_of(*run.kept, options, value_of, shift), language);
}

ChartSeries reference_of(const DiagramOptions& options) {
  ChartSeries series;
  series.id = kReferenceSeries;
  series.name = options.reference_name;
  series.points = options.reference;
  series.colour = options.colours.reference;
  series.style = LineStyle::dash_dot;
  series.shape = ChartPoints::dots;
  return series;
}

// --- beside the curves: a range is known over travel only

struct Beside {
  const std::vector<double>*low = nullptr, *high = nullptr;  // empty: no range
  DiagramBeside::Mean measured;
  int index = 0;  // of the logged point where it was measured
  double factor = 1;
};

Beside beside_of(const DiagramRun& run, const DiagramOptions& options, bool pressure) {
  static const DiagramBeside kNothing;
  const DiagramBeside& b = run.beside ? *run.beside : kNothing;
  if (pressure)
    return {&b.p_low, &b.p_high, b.pressure, run.result->peakIdx, sound_factor(options.pressure_factor)};
  return {&b.v_low, &b.v_high, b.velocity, last_index(run), sound_factor(options.velocity_factor)};
}

double highest(const Beside& beside, bool with_range) {
  double top = (beside.measured.value + beside.measured.half) / beside.factor;
  if (with_range)
    for (const double value : *beside.high) top = std::max(top, value / beside.factor);
  return is_drawable(top) ? top : 0;
}

void add_range(Chart& chart, const DiagramRun& run, const DiagramOptions& options, const Beside& beside,
               const ChartSeries& curve) {
  if (is_over_time(options.type) || beside.high->empty() || curve.hidden) return;
  constexpr std::uint8_t kVeil = 60;
  ChartArea area;
  area.colour = curve.colour;
  area.colour.a = kVeil;
  area.right_scale = curve.right_scale;
  for (std::size_t i = 0; i < run.beside->x.size(); ++i) {
    const double x = run.beside->x[i] * 1000 / sound_factor(options.distance_factor);
    area.lower.push_back({x, (*beside.low)[i] / beside.factor});
    area.upper.push_back({x, (*beside.high)[i] / beside.factor});
  }
  chart.areas.push_back(std::move(area));
}

constexpr int kFirstMeasured = 11;  // behind whatever else is drawn

void add_measured(Chart& chart, const DiagramRun& run, const DiagramOptions& options, const Beside& beside,
                  const ChartSeries& curve, const Language& language) {
  if (!(beside.measured.value > 0) || beside.index < 0 || beside.index > last_index(run) || curve.hidden)
    return;
  ChartSeries point;
  point.id = kFirstMeasured + curve.id - 1;
  point.name = language.fileout(91);
  point.points = {
      {x_of(run, options, static_cast<std::size_t>(beside.index)), beside.measured.value / beside.factor}};
  point.spread = {beside.measured.half / beside.factor};
  point.colour = curve.colour;
  point.weight = 0;
  point.shape = ChartPoints::rings;
  point.reading = ChartReading::none;
  point.right_scale = curve.right_scale;
  chart.series.push_back(std::move(point));
}

// The cartridge's maximum in shown units, 0 if unknown or not in this diagram.
double maximum_pressure(const DiagramRun& run, const DiagramOptions& options) {
  const double limit = run.state->dim.zul_P * 1e6 / sound_factor(options.pressure_factor);
  return is_drawable(limit) && shows_pressure(options.type) ? std::max(limit, 0.0) : 0;
}

ChartAxis x_axis(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  if (is_over_time(options.type)) {
    double end = std::abs(run.curve->t[0]) * 1000;
    if (run.kept) end = std::max(end, std::abs(run.kept->curve->t[0]) * 1000);
    ChartAxis axis = exact_axis(0, end, end, 0, "ms");
    axis.title = language.fastmsg("fbulttim");
    return axis;
  }
  const double factor = sound_factor(options.distance_factor);
  const double travel = axis_travel_mm(run, options.barrel_axis) / factor;
  const double offset = options.barrel_axis ? bolt_space_mm(run) / factor : 0;
  ChartAxis axis = exact_axis(-offset, travel, travel, offset, options.distance_unit);
  axis.title = language.fastmsg(options.barrel_axis ? "fcharge6" : "fptravel");
  return axis;
}

void add_series(Chart& chart, const DiagramRun& run, const DiagramOptions& options, const Language& language,
                ValueOf value_of) {
  const bool pressure = value_of == pressure_of, second = !chart.series.empty();
  ChartSeries series = curve_of(run, options, value_of);
  series.id = second ? kRightCurve : kLeftCurve;
  series.name = language.fastmsg(pressure ? "fchp" : "fvel");
  series.right_scale = second;
  series.hidden = options.hidden[second ? 1 : 0];
  series.bold = options.followed == series.id;
  const auto kept = kept_curve_of(run, options, series, value_of, language);
  if (kept) series.weight = kPresentWeight;
  double top = largest_of(series, kept ? &*kept : nullptr);
  if (pressure) top = std::max(top, largest_of(reference_of(options), nullptr));
  top = std::max(top, highest(beside_of(run, options, pressure), !is_over_time(options.type)));
  ChartAxis axis = value_axis(top, pressure && options.maximum ? maximum_pressure(run, options) : 0,
                              pressure ? options.pressure_unit : options.velocity_unit);
  axis.title = series.name;
  axis.title_colour = series.colour;
  if (shows_both(options.type)) axis.label_colour = series.colour;
  chart.series.push_back(std::move(series));
  if (kept) chart.series.push_back(*kept);
  if (second)
    chart.right = axis;
  else
    chart.left = axis;
}

// They stand on the first curve.
void add_marks(Chart& chart, const DiagramRun& run, const DiagramOptions& options) {
  if (last_index(run) == 0) return;
  const ShotResult& r = *run.result;
  const struct {
    const char* label;
    int index;
    bool wanted;
  } candidates[] = {{"Pmax", r.peakIdx, options.maximum},
                    {"M", last_index(run), options.marks && run.exits},
                    {"100%", r.burnIdx, options.marks},
                    {"Z1", r.z1Idx, options.marks},
                    {"95%", r.idx95, options.marks}};
  for (const auto& each : candidates) {
    const auto at =
        point_of(run, options, each.index, shows_pressure(options.type) ? pressure_of : velocity_of);
    if (at && each.wanted) chart.marks.push_back({each.label, *at, false, 1, 0, std::nullopt});
  }
}

DiagramOptions with_known_type(DiagramOptions options) {
  if (options.type < 1 || options.type > 6) options.type = 3;
  return options;
}

}  // namespace

double bolt_space_mm(const DiagramRun& run) {
  const double behind = run.state->dim.Llen * kMmPerInch - run.state->dim.Wob;
  return is_drawable(behind) ? std::max(behind, 0.0) : 0;
}

double kept_shift_mm(const DiagramRun& run, bool barrel) {
  return barrel && run.kept ? bolt_space_mm(*run.kept) - bolt_space_mm(run) : 0;
}

double axis_travel_mm(const DiagramRun& run, bool barrel) {
  const double travel = run.state->dim.Wob;
  if (!run.kept) return travel;
  return std::max(travel, run.kept->state->dim.Wob + kept_shift_mm(run, barrel));
}

double largest_of(const ChartSeries& present, const ChartSeries* kept) {
  double top = 0;
  for (const ChartSeries* series : {&present, kept}) {
    if (!series) continue;
    for (const Point& value : series->points) {
      if (is_drawable(value.y)) top = std::max(top, value.y);
    }
  }
  return top;
}

ChartSeries kept_series(const ChartSeries& present, std::vector<Point> points, const Language& language) {
  ChartSeries kept = present;
  kept.id = present.right_scale ? kKeptRight : kKeptLeft;
  kept.name = language.fastmsg("flinthin") + present.name;
  kept.points = std::move(points);
  kept.weight = kKeptWeight;
  kept.bold = kept.in_legend = false;
  return kept;
}

void add_limits(Chart& chart, double limit, const DiagramOptions& options, const Language& language) {
  if (!(limit > 0)) return;
  const double near_limit = limit - 0.147 * limit, caution = near_limit - 0.097 * limit;
  if (options.zones) {
    chart.bands = {{limit, HUGE_VAL, options.colours.over, false, language.fastmsg("fmark0")},
                   {near_limit, limit, options.colours.near_limit, false, language.fastmsg("fmark1")},
                   {caution, near_limit, options.colours.caution}};
  }
  if (!options.maximum) return;
  const std::string below = language.fastmsg("pmin");
  chart.limits = {{limit, language.fastmsg("pzul"), LineStyle::solid, true},
                  {0.85 * limit, below + "-15% ", LineStyle::dash_dot, false},
                  {0.75 * limit, below + "-25% ", LineStyle::dot, true}};
}

ChartLook look_of(const DiagramOptions& options) {
  return {options.colours, options.font, options.text_size, options.line_width, options.stale};
}

Chart describe_diagram(const DiagramRun& run, const DiagramOptions& wanted, const Language& language) {
  const DiagramOptions options = with_known_type(wanted);
  Chart chart;
  chart.look = look_of(options);
  if (!run.state || !run.curve || !run.result) return chart;
  if (options.optional) return describe_optional(run, options, language);
  chart.view = options.view;
  chart.x = x_axis(run, options, language);
  if (shows_pressure(options.type)) add_series(chart, run, options, language, pressure_of);
  if (!shows_pressure(options.type) || shows_both(options.type)) {
    add_series(chart, run, options, language, velocity_of);
  }
  if (shows_pressure(options.type) && !options.reference.empty())
    chart.series.push_back(reference_of(options));
  add_limits(chart, maximum_pressure(run, options), options, language);
  if (run.kept) chart.legend_lines = both_loads(run, *run.kept, options, language);
  add_marks(chart, run, options);
  const std::size_t curves = chart.series.size();
  for (std::size_t i = 0; i < curves; ++i) {
    const ChartSeries curve = chart.series[i];
    if (curve.id != kLeftCurve && curve.id != kRightCurve) continue;  // no curve of this shot
    const Beside beside = beside_of(run, options, shows_pressure(options.type) && i == 0);
    add_range(chart, run, options, beside, curve);
    add_measured(chart, run, options, beside, curve, language);
  }
  chart.section_note = language.fastmsg("fsection");
  // A pressure that leaves the frame could be taken for one without a peak.
  chart.gone_note = language.fastmsg("fsectpk");
  if (shows_pressure(options.type)) chart.key = point_of(run, options, run.result->peakIdx, pressure_of);
  if (run.state->schrit == 2 && is_over_time(options.type)) chart.legend_note = language.fastmsg("fcoarse");
  if (options.stale) chart.banner = language.fastmsg("fobsol0") + " " + language.fastmsg("fobsol1");
  return chart;
}

Diagram draw_diagram(const DiagramRun& run, const DiagramOptions& options, const Language& language,
                     double width, double height, TextWidth text_width) {
  const Chart chart = describe_diagram(run, options, language);
  if (chart.series.empty()) return empty_chart("", chart.look, width, height, text_width);
  return draw_chart(chart, width, height, text_width);
}

Diagram empty_diagram(const std::string& text, const DiagramOptions& options, double width, double height,
                      TextWidth text_width) {
  return empty_chart(text, look_of(options), width, height, text_width);
}

}  // namespace tv
