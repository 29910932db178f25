// The strings of a load over their charge, beside what is predicted.
#include <algorithm>
#include <array>
#include <cmath>

#include "screens/measure_screens.h"
#include "session/prediction.h"

namespace tv {
namespace {

constexpr int kPredictedPoints = 9;

struct Charges {
  double least = 0, most = 0;  // grains; with a margin, so that no point stands on the frame
};
Charges charges_of(const Session& s) {
  double least = HUGE_VAL, most = -HUGE_VAL;
  for (const MeasuredSeries& series : s.load.measured) {
    if (!(series.charge_gr > 0)) continue;
    least = std::min(least, series.charge_gr);
    most = std::max(most, series.charge_gr);
  }
  if (!(least <= most)) return {};
  const double margin = std::max(0.01 * most, 0.15 * (most - least));
  return {least - margin, most + margin};
}

ChartSeries predicted_line(const Session& s, const Charges& charges, double size) {
  ChartSeries line;
  line.id = 1;
  line.name = s.language.text("frmMeas", "plot_predicted");
  for (int i = 0; i < kPredictedPoints; ++i) {
    const double charge = charges.least + (charges.most - charges.least) * i / (kPredictedPoints - 1);
    if (const auto shot = predicted_at(s, charge)) line.points.push_back({charge, size * shot->vMuzzle});
  }
  return line;
}

// Shots as dots; those left out grey.
ChartSeries shots_of(const Session& s, bool excluded, double size) {
  ChartSeries dots;
  dots.id = excluded ? 3 : 2;
  dots.weight = 0;
  dots.shape = ChartPoints::dots;
  dots.reading = ChartReading::none;
  dots.name = s.language.text("frmMeas", excluded ? "plot_excluded" : "plot_shots");
  for (const MeasuredSeries& series : s.load.measured)
    for (const MeasuredShot& shot : series.shots)
      if (series.charge_gr > 0 && shot.velocity > 0 && shot.excluded == excluded)
        dots.points.push_back({series.charge_gr, size * shot.velocity});
  std::ranges::stable_sort(dots.points, {}, &Point::x);
  return dots;
}

ChartSeries means_of(const Session& s, double size) {
  ChartSeries means;
  means.id = 4;
  means.weight = 0;
  means.shape = ChartPoints::rings;
  means.reading = ChartReading::at_points;
  means.name = s.language.text("frmMeas", "plot_means");
  std::vector<std::array<double, 3>> rows;  // charge, mean, half of the interval
  for (const MeasuredSeries& series : s.load.measured)
    if (const SampleFigures f = velocity_figures(series); f.count > 0 && series.charge_gr > 0)
      rows.push_back({series.charge_gr, size * f.mean, size * (f.high - f.mean)});
  std::ranges::sort(rows);
  for (const auto& [charge_gr, mean, half] : rows) {
    means.points.push_back({charge_gr, mean});
    means.spread.push_back(half);
  }
  return means;
}

// From the lowest to the highest value on show, bars and all.
ChartAxis velocity_axis(const Session& s, const std::vector<ChartSeries>& all, bool fps) {
  double least = HUGE_VAL, most = -HUGE_VAL;
  for (const ChartSeries& series : all)
    for (std::size_t i = 0; i < series.points.size(); ++i) {
      const double half = i < series.spread.size() ? series.spread[i] : 0;
      least = std::min(least, series.points[i].y - half);
      most = std::max(most, series.points[i].y + half);
    }
  ChartAxis axis = spread_axis(least, most, fps ? "fps" : "m/s");
  axis.title = s.language.text("frmMeas", "mes_v");
  return axis;
}

}  // namespace

DrawList measured_plot(const Session& s, const Extent& e, bool fps) {
  const double size = fps ? kFeetPerMetre : 1;
  Chart chart;
  chart.look = chart_look(s, e.dark);
  const ChartColours& colours = chart.look.colours;
  const Charges charges = charges_of(s);
  if (!(charges.most > 0))
    return empty_chart(s.language.text("frmMeas", "mes_empty"), chart.look, e.width, e.height, e.text_width)
        .list;
  for (ChartSeries series : {predicted_line(s, charges, size), shots_of(s, false, size),
                             shots_of(s, true, size), means_of(s, size)}) {
    series.colour = series.id == 1 ? colours.velocity : series.id == 3 ? colours.stale : colours.pressure;
    if (!series.points.empty()) chart.series.push_back(std::move(series));
  }
  chart.x = exact_axis(charges.least, charges.most, charges.most - charges.least, 0, "gr");
  chart.x.title = s.language.text("frmMeas", "mes_chgm");
  chart.left = velocity_axis(s, chart.series, fps);
  return draw_chart(chart, e.width, e.height, e.text_width).list;
}

ChartLook chart_look(const Session& s, bool dark) {
  ChartLook look;
  look.colours = dark ? dark_colours() : light_colours();
  look.font = s.options.pict_font_nam;
  return look;
}

}  // namespace tv
