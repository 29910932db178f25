#include "session/prediction.h"

#include <array>
#include <cmath>
#include <memory>

#include "text/number.h"

namespace tv {
namespace {

constexpr std::array<double Options::*, kBandInputs> kSpreads{
    &Options::spr_Ba0,     &Options::spr_charge, &Options::spr_volume, &Options::spr_bullet,
    &Options::spr_seating, &Options::spr_barrel, &Options::spr_start};

struct ShownUnit {
  double size;  // in SI
  std::string name;
};

ShownUnit pressure_unit(const Session& s) {
  if (s.unit_mode == UnitMode::imperial) return {kPaPerPsi, "psi"};
  return {1e6 / s.state.pressure_unit_factor, chosen_pressure_unit(s)};
}
ShownUnit velocity_unit(const Session& s) {
  if (s.unit_mode == UnitMode::imperial) return {1 / kFeetPerMetre, "fps"};
  return {1, "m/s"};
}

std::string whole(double value, const ShownUnit& unit) { return format_number(value / unit.size, "0"); }

std::string range_text(const Session& s, const BandFigure& figure, const ShownUnit& unit) {
  return whole(figure.value, unit) + " (" + whole(figure.q.front(), unit) + " " +
         s.language.text("frmBand", "band_to") + " " + whole(figure.q.back(), unit) + ") " + unit.name;
}

std::string signed_percent(double percent) { return format_pattern(percent, "+0.00;-0.00;0.00") + " %"; }

}  // namespace

double& spread_of(Options& options, std::size_t input) { return options.*kSpreads[input]; }

BandSpreads kept_spreads(const Options& options) {
  BandSpreads spreads{};
  for (std::size_t i = 0; i < kBandInputs; ++i) spreads[i] = options.*kSpreads[i];
  return spreads;
}

Band band_of_run(const Session& s, const BandOptions& options) {
  if (!s.shown.any) return {};
  return predict_band(s.shown.state, kept_spreads(s.options), options);
}

void draw_band_of_run(Session& s) {
  constexpr int kPoints = 101;
  BandOptions options;
  options.curve_points = kPoints;
  const Band band = band_of_run(s, options);
  if (band.ok) s.shown.band = band.curve;
  outputs_changed(s);
}

std::optional<CrossCheck> cross_check_of_run(const Session& s) {
  if (!s.shown.any) return {};
  const auto curve = std::make_unique<ShotCurve>();  // the one on show stands
  const CrossCheck check = cross_check(s.shown.state, *curve);
  return check.ok ? std::optional(check) : std::nullopt;
}

std::string pressure_range_text(const Session& s, const BandFigure& figure) {
  return range_text(s, figure, pressure_unit(s));
}

std::string velocity_range_text(const Session& s, const BandFigure& figure) {
  return range_text(s, figure, velocity_unit(s));
}

std::string over_limit_text(const Session& s, const Band& band) {
  if (!band.over_limit) return "?";
  const int counted = band.draws - band.failed;
  if (*band.over_limit > 0) return format_number(100 * *band.over_limit, "0.0#") + " %";
  return s.language.text("frmBand", "band_under") + " " + format_number(100.0 / counted, "0.0###") + " %";
}

std::string cross_check_text(const CrossCheck& check) {
  return signed_percent(check.percent.pMax) + ", " + signed_percent(check.percent.vMuzzle);
}

std::string pressure_text(const Session& s, double Pa) {
  const ShownUnit unit = pressure_unit(s);
  return whole(Pa, unit) + " " + unit.name;
}

std::string velocity_text(const Session& s, double mps, int decimals) {
  const ShownUnit unit = velocity_unit(s);
  return format_pattern(mps / unit.size, decimals > 0 ? "0.0;-0.0" : "0;-0") + " " + unit.name;
}

std::string percent_text(double share) { return format_pattern(100 * share, "+0.0;-0.0;0.0") + " %"; }

MeasuredFigures measured_at(const LoadData& load, double charge_gr) {
  std::vector<double> velocities, pressures;
  const auto append = [](std::vector<double>& all, const std::vector<double>& more) {
    all.insert(all.end(), more.begin(), more.end());
  };
  for (const MeasuredSeries& series : load.measured) {
    if (!(std::fabs(series.charge_gr - charge_gr) <= kSameCharge)) continue;
    append(velocities, counted_velocities(series));
    append(pressures, counted_pressures(series));
  }
  return {sample_figures(velocities), sample_figures(pressures)};
}

std::optional<ShotFigures> predicted_at(const Session& s, double charge_gr) {
  if (!s.valid.results) return {};
  if (charge_gr == s.shown.state.chargeGr) return ShotFigures{s.result.pMax, s.result.vMuzzle};
  return shot_figures(s.shown.state, charge_gr);
}

}  // namespace tv
