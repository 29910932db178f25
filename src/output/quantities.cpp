#include "output/quantities.h"

#include <algorithm>
#include <cmath>

#include "output/diagram_parts.h"
#include "tables/view_units.h"

namespace tv {
namespace {

using R = const DiagramRun&;
using O = const DiagramOptions&;
using I = std::size_t;
using Kind = Quantity::Kind;

constexpr double kPerG = 0.102;  // turns m/s2 into g, rounded as it is

// The charge moves at half the bullet's velocity on the whole, so half of it goes with the bullet and half
// with the gun.
double half_charge(R run) { return 0.5 * run.state->chargeKg; }
double force(R run, I i) { return run.curve->p[i] * run.state->boreM2; }
double energy(R run, I i) { return run.curve->v[i] * run.curve->v[i] * run.state->dim.Bwg; }

double travel_mm(R run, O, I i) { return run.curve->x[i] * 1000; }
double travel_in(R run, O, I i) { return run.curve->x[i] * 1000 / kMmPerInch; }
double time_ms(R run, O, I i) { return (run.curve->t[i] - run.curve->t[0]) * 1000; }
double burnt(R run, O, I i) { return run.curve->z[i] * 100; }
double velocity(R run, O, I i) { return run.curve->v[i]; }
double velocity_fps(R run, O, I i) { return run.curve->v[i] * kFeetPerMetre; }
double pressure(R run, O o, I i) { return run.curve->p[i] / sound_factor(o.metric_pressure_factor); }
double pressure_psi(R run, O, I i) { return run.curve->p[i] / kPaPerPsi; }
double energy_joule(R run, O, I i) { return energy(run, i) / kEnergyJoule; }
double energy_foot_pound(R run, O, I i) { return energy(run, i) / kEnergyFootPound; }
double bullet_acceleration(R run, O, I i) { return force(run, i) * kPerG / run.state->effMass; }
double gun_acceleration(R run, O, I i) { return force(run, i) * kPerG / (half_charge(run) + run.gun_kg); }
double gun_velocity(R run, O, I i) {
  return run.curve->v[i] * (half_charge(run) + run.state->bulletKg) / (half_charge(run) + run.gun_kg);
}
double gun_travel(R run, O, I i) {
  const CalcState& s = *run.state;
  return run.curve->x[i] * 1000 * (half_charge(run) + s.bulletKg) / (s.chargeKg + run.gun_kg + s.bulletKg);
}
double chamber_cm3(R run, O, I i) {
  return run.state->freeVol * 1e6 + run.curve->x[i] * run.state->boreM2 * 1e6;
}
double base_pressure(R run, O o, I i) { return run.curve->pB[i] / sound_factor(o.metric_pressure_factor); }
double base_pressure_psi(R run, O, I i) { return run.curve->pB[i] / kPaPerPsi; }

constexpr Quantity kX[kXQuantities] = {
    {"fptravel", "f_mm", travel_mm, Kind::travel}, {"fbulttim", "f_ms", time_ms, Kind::time},
    {"fptravel", "f_in", travel_in, Kind::travel}, {"fcharge11", "fproz", burnt},
    {"fcharge6", "f_mm", travel_mm, Kind::barrel}, {"fcharge6", "f_in", travel_in, Kind::barrel},
};
constexpr Quantity kY[kYQuantities] = {
    {"fptravel", "f_mm", travel_mm},
    {"fbulttim", "f_ms", time_ms, Kind::time},
    {"fvel", "fmps", velocity},
    {"fchp", nullptr, pressure, Kind::pressure},
    {"fcharge11", "fproz", burnt},
    {"fbulegy", "=J", energy_joule},
    {"fbulegy", "=ft.lbs.", energy_foot_pound},
    {"fchp", "fpsi", pressure_psi, Kind::pressure},
    {"fvel", "ffps", velocity_fps},
    {"fbulacc", "=g", bullet_acceleration},
    {"fgunacc", "=g", gun_acceleration, Kind::other, true},
    {"fgunrec", "fmps", gun_velocity, Kind::other, true},
    {"fgunfre", "f_mm", gun_travel, Kind::other, true},
    {"fchmvlr", "fccm", chamber_cm3},
    {"fbulpres", nullptr, base_pressure, Kind::other, false,
     2},  // at the first two points it is 0 by definition
    {"fbulpres", "fpsi", base_pressure_psi, Kind::other, false, 2},
};

bool barrel_of(const Quantity& x) { return x.kind == Kind::barrel; }
bool length_of(const Quantity& x) { return x.kind == Kind::travel || barrel_of(x); }
bool in_inches(const Quantity& x) { return x.value == travel_in; }

std::vector<Point> points_of(R run, O options, const Quantity& x, const Quantity& y, double shift) {
  std::vector<Point> points;
  for (int i = y.first; i <= last_index(run); ++i) {
    const auto at = static_cast<I>(i);
    points.push_back({x.value(run, options, at) + shift, y.value(run, options, at)});
  }
  return points;
}

ChartAxis x_axis(R run, O options, const Quantity& x, const ChartSeries& present, const ChartSeries* kept,
                 const Language& language) {
  const std::string& unit = options.optional_x_unit;
  ChartAxis axis;
  if (length_of(x)) {
    const double factor = in_inches(x) ? kMmPerInch : 1;
    const double offset = barrel_of(x) ? bolt_space_mm(run) / factor : 0;
    const double travel = axis_travel_mm(run, barrel_of(x)) / factor;
    axis = exact_axis(-offset, travel, travel, offset, unit);
  } else {
    double end = 0;
    for (const ChartSeries* series : {&present, kept})
      if (series && !series->points.empty()) end = std::max(end, series->points.back().x);
    axis = exact_axis(0, end, end, 0, unit);
  }
  axis.title = language.fastmsg(x.title);
  return axis;
}

template <std::size_t N>
const Quantity& quantity(const Quantity (&table)[N], int n) {
  return table[static_cast<std::size_t>(n)];
}

}  // namespace

int sound_graf_x(int graf_x) { return graf_x >= 0 && graf_x < kXQuantities ? graf_x : 0; }
int sound_graf_y(int graf_y) { return graf_y >= 0 && graf_y < kYQuantities ? graf_y : 3; }
const Quantity& x_quantity(int graf_x) { return quantity(kX, sound_graf_x(graf_x)); }
const Quantity& y_quantity(int graf_y) { return quantity(kY, sound_graf_y(graf_y)); }

std::string quantity_unit(const Quantity& q, const DiagramOptions& options, const Language& language) {
  if (!q.unit) return options.metric_pressure_unit;
  return *q.unit == '=' ? std::string(q.unit + 1) : language.fastmsg(q.unit);
}

Chart describe_optional(const DiagramRun& run, const DiagramOptions& options, const Language& language) {
  const Quantity &x = x_quantity(options.graf_x), &y = y_quantity(options.graf_y);
  Chart chart;
  chart.look = look_of(options);
  if (y.of_gun && !(run.gun_kg > 0)) return chart;
  chart.view = options.view;
  ChartSeries present;
  present.id = kLeftCurve;
  present.name = language.fastmsg(y.title);
  present.points = points_of(run, options, x, y, 0);
  const bool pressure_curve = y.kind == Kind::pressure || y.first > 0;
  present.colour = pressure_curve ? options.colours.pressure : options.colours.velocity;
  present.bold = options.followed == kLeftCurve;
  present.hidden = options.hidden[0];
  std::optional<ChartSeries> kept;
  if (run.kept && !(y.of_gun && !(run.kept->gun_kg > 0))) {
    const double shift =
        length_of(x) ? kept_shift_mm(run, barrel_of(x)) / (in_inches(x) ? kMmPerInch : 1) : 0;
    kept = kept_series(present, points_of(*run.kept, options, x, y, shift), language);
    present.weight = kPresentWeight;
    chart.legend_lines = both_loads(run, *run.kept, options, language);
  }
  const ChartSeries* other = kept ? &*kept : nullptr;
  chart.x = x_axis(run, options, x, present, other, language);
  const bool limited = y.kind == Kind::pressure && run.state->dim.zul_P > 0;
  const double limit =
      limited ? run.state->dim.zul_P * 1e6 /
                    (y.value == pressure_psi ? kPaPerPsi : sound_factor(options.metric_pressure_factor))
              : 0;
  chart.left = value_axis(largest_of(present, other), options.maximum ? limit : 0, options.optional_y_unit);
  chart.left.title = present.name;
  chart.left.title_colour = present.colour;
  add_limits(chart, limit, options, language);
  chart.series.push_back(std::move(present));
  if (kept) chart.series.push_back(std::move(*kept));
  const bool times = x.kind == Kind::time || y.kind == Kind::time;
  if (run.state->schrit == 2 && times) chart.legend_note = language.fastmsg("fcoarse");
  if (options.stale) chart.banner = language.fastmsg("fobsol0") + " " + language.fastmsg("fobsol1");
  chart.section_note = chart.gone_note = language.fastmsg("fsection");
  return chart;
}

}  // namespace tv
