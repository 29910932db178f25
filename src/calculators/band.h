// How sure a prediction is: each uncertain input of a load with its spread, what it does to peak pressure and
// muzzle velocity, and the range that all of them together give, by random draws.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "engine/shot.h"

namespace tv {

inline constexpr std::size_t kBandInputs = 7;

// One standard deviation of each input, in the unit of its row.
using BandSpreads = std::array<double, kBandInputs>;

struct BandInput {
  const char* key;    // of the load: abkof0, powwht, volful, bulgew, sdepth, laflen, anfdru
  const char* field;  // of the screen and the settings: spr_Ba0 ...
  const char* unit;   // "%" of the value, "gr", "mm"
  double standard;    // what is taken unless the user says otherwise
};
std::span<const BandInput, kBandInputs> band_inputs();
BandSpreads standard_spreads();

// The amount (in the unit of the input) that is one percent of the load's value; 0 if it has none.
double band_percent(const CalcState& s, std::size_t input);

inline constexpr std::array<double, 5> kBandShares{2.5, 16, 50, 84, 97.5};  // percent of the draws below

struct BandFigure {
  double value = 0;           // of the load as it is
  double sd = 0;              // of the draws
  std::array<double, 5> q{};  // by kBandShares
};

struct BandEffect {
  std::size_t input = 0;
  double spread = 0;
  double pMax = 0, vMuzzle = 0;  // change for one spread upwards, half of that from below to above
};

// The 95 % range along the barrel, at equal steps of travel from 0 to the muzzle.
struct BandCurve {
  std::vector<double> x;              // m
  std::vector<double> p_low, p_high;  // Pa
  std::vector<double> v_low, v_high;  // m/s
};

struct BandOptions {
  int draws = 2000;        // 10 to 1 000 000
  std::uint64_t seed = 1;  // the same seed gives the same answer
  int curve_points = 0;    // of the range along the barrel; 0 none
};

struct Band {
  bool ok = false;                   // else the load itself cannot be shot
  int draws = 0, failed = 0;         // shots that could not be calculated count in neither range nor share
  BandFigure pMax, vMuzzle;          // Pa, m/s
  std::optional<double> over_limit;  // share of the draws above the cartridge's limit; nothing if unknown
  std::vector<BandEffect> effects;   // by size of the change in pressure, then velocity
  BandCurve curve;
};

// in:  s with all that a shot needs, in user units; spreads 0 or more, a start pressure of less than 1 MPa
// has
//      none
// why: normal deviates by Box and Muller from the numbers of mt19937_64, as the library's own distribution
//      may differ from one library to the next
Band predict_band(const CalcState& s, const BandSpreads& spreads, const BandOptions& options = {});

}  // namespace tv
