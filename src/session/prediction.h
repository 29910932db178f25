// How sure the prediction of the last run is, and how it stands to what was measured: for the screens, the
// command line and the data sheet. All of it is of the inputs of that run.
#pragma once

#include <optional>
#include <string>

#include "calculators/band.h"
#include "calculators/measured.h"
#include "calculators/powder_fit.h"
#include "engine/crosscheck.h"
#include "session/session.h"

namespace tv {

// The spreads that the user keeps, by band_inputs().
double& spread_of(Options& options, std::size_t input);
BandSpreads kept_spreads(const Options& options);

// --- range

// Nothing is drawn unless asked for; see predict_band. Not ok before the first run.
Band band_of_run(const Session& s, const BandOptions& options = {});
// For the diagram: the range along the barrel, kept with the run.
void draw_band_of_run(Session& s);
std::optional<CrossCheck> cross_check_of_run(const Session& s);  // nothing if one of the two did not finish

// In the units of the program, with the unit: "342 (315 to 372) MPa"; the bracket is the 95 % range.
std::string pressure_range_text(const Session& s, const BandFigure& figure);
std::string velocity_range_text(const Session& s, const BandFigure& figure);
// The share of the draws above the limit: "2.3 %", "below 0.05 %" of none among 2000, "?" if there is no limit.
std::string over_limit_text(const Session& s, const Band& band);
// "+0.12 %, +0.03 %": of peak pressure and muzzle velocity.
std::string cross_check_text(const CrossCheck& check);

std::string pressure_text(const Session& s, double Pa);  // rounded to whole units, with the unit
// The same, with so many decimals.
std::string velocity_text(const Session& s, double mps, int decimals = 0);
std::string percent_text(double share);  // with its sign, to a tenth: "+1.2 %"

// --- measured beside predicted

inline constexpr double kSameCharge = 0.05;  // grains: strings this near were shot with the charge

struct MeasuredFigures {
  SampleFigures velocity, pressure;  // m/s, Pa; counts of 0 where nothing was measured
};
// Of all strings of that charge together.
MeasuredFigures measured_at(const LoadData& load, double charge_gr);
// Of the inputs of the last run with another charge; nothing if those inputs have changed since or the shot
// fails.
std::optional<ShotFigures> predicted_at(const Session& s, double charge_gr);

}  // namespace tv
