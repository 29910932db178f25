// The shared record of one shot: the inputs of the load in the user's units, their SI values, the logged
// curve and the results. One instance lives as long as the program; tables change a few inputs, run, and put
// them back.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace tv {

// Conversions, the same throughout and not to be refined.
inline constexpr double kGrainsPerGram = 15.432358353;
inline constexpr double kMmPerInch = 25.4;
inline constexpr double kMm2PerSqIn = 645.16;
inline constexpr double kPaPerPsi = 6894.76;
inline constexpr double kFeetPerMetre = 3.280839895;
// v^2 times the bullet in grains over these is its energy; near the exact conversions and kept so.
inline constexpr double kEnergyJoule = 30860;
inline constexpr double kEnergyFootPound = 41840;
inline constexpr double kPi = 3.141592654;

inline constexpr double dicht_H2 = 0.998;   // density of water, g/cm3, for case capacity
inline constexpr float norm_P0 = 98066.5F;  // the pressure unit of Ba0, Pa
inline constexpr float dicht_ms = 8.65F;    // brass, g/cm3
inline constexpr float dicht_fe = 7.87F;    // iron, g/cm3
inline constexpr float dicht_al = 2.75F;    // aluminium, g/cm3

enum TailType : int { kFlatBase = 0, kInnerCone = 1, kOuterCone = 2 };  // 1 hollow base, 2 boat tail
enum class UnitMode { metric, imperial };

// Dimensions of the cartridge and bullet of the load. Lengths in inch, weights in grains, volumes in grains
// of water, except where said.
struct CartridgeDimensions {
  double Zkal = 0;    // groove diameter
  double buldin = 0;  // bullet diameter
  double Bwg = 0;     // bullet weight, grains (bulletGr)
  double Glen = 0;    // bullet length
  double Hlen = 0;    // case length
  double Plen = 0;    // cartridge overall length
  double Llen = 0;    // barrel length
  double Wob = 0;     // bullet travel to the muzzle, mm (travelMm)
  double qfq = 0;     // effective bore area, mm2 (boreMm2)
  double Volf = 0;    // case capacity, brim full
  double Vvg = 0;     // volume displaced by the seated bullet
  double Veff = 0;    // effective case volume under the seated bullet (caseGr)
  double Bsd = 0;     // seating depth
  double ssd = 0;     // seating depth of the full-diameter body
  double sebf = 0;    // share of the charge mass that moves with the bullet, 0 to 12
  double zul_P = 0;   // maximum allowed pressure, MPa; not above 0 means unknown

  bool TAIL = false;          // the tail counts
  int tail_type = kFlatBase;  // TailType
  double tail_len = 0;        // mm
  double tail_dia_large = 0;  // mm
  double tail_dia_small = 0;  // mm

  bool operator==(const CartridgeDimensions&) const = default;
};

struct CalcState {
  CartridgeDimensions dim;

  // Powder, in the units of its screen.
  double Exw = 0;     // explosion heat, kJ/kg; accepted 1 to 10000
  double Kap = 0;     // ratio of specific heats; 1.001 to 1.999
  double Ba0 = 0;     // vivacity, 1/s per norm_P0; 0.001 to 1000
  double Ba1 = 0;     // factor of the burn law after Limz1
  double PDko = 0;    // progressivity up to Limz1; -0.99 to 10000
  double Limz1 = 0;   // burnt fraction where the law changes; 0.01 to 1
  double Pdens = 0;   // solid density, g/cm3; 0.001 to 100
  double bulkdn = 0;  // bulk density, g/cm3; 0 unknown
  int powtmp = 21;    // powder temperature, degrees C; a note, not in the model

  double chargeGr = 0;        // charge, grains
  double start_pressure = 0;  // shot-start pressure (ini_press1), Pa
  double fill = 0;            // loading ratio, percent; 0 when it cannot be computed

  int schrit = 0;                     // step setting: 0 normal, 1 fine, 2 coarse
  double pressure_unit_factor = 1.0;  // 1 shows MPa, 10 shows bar
  bool frictionOn = false;
  double frictionPress = 0;   // Pa, 0 to 30e6
  double moly_factor = 0.66;  // start pressure of a coated bullet over that of a bare one, 0.4 to 1

  // SI values made by convertUnits.
  double bulletKg = 0;
  double travelM = 0;
  double caseM3 = 0;
  double boreM2 = 0;
  // SI values made by prepareShot.
  double ExwJ = 0;  // J/kg
  double chargeKg = 0;
  double freeVol = 0;   // case volume less the solid volume of the charge, m3
  double sigmaEnd = 0;  // relative expansion at the muzzle
  double effMass = 0;   // bullet and the share of the charge that moves with it, kg
  double baseStep = 0;  // increment of sigma, by setBaseStep

  bool operator==(const CalcState&) const = default;  // field by field
};

inline constexpr double kLeastFreeVol = 0.00000002;  // m3; less is no chamber to calculate

// The logged points of a shot, fixed in size and reused; a run allocates nothing.
struct ShotCurve {
  static constexpr int kPoints = 1001;
  std::array<double, kPoints> x{};       // travel, m
  std::array<double, kPoints> v{};       // bullet velocity, m/s
  std::array<double, kPoints> p{};       // mean gas pressure, Pa
  std::array<double, kPoints> z{};       // burnt fraction
  std::array<double, kPoints> sigma{};   // relative expansion A*x/V0
  std::array<double, kPoints> w{};       // walking variable of phase 2
  std::array<double, kPoints> pB{};      // pressure at the bullet base, Pa
  std::array<double, kPoints + 1> t{};   // time, s; 0 at the muzzle, negative before
  std::array<double, kPoints + 1> dt{};  // time of each step, s
  int used = kPoints;  // points from here on are 0; a run clears no more than the one before left
};

enum class Stage : std::uint8_t {
  none,
  Ca_Knst_v_Z1,
  Ca_All_v_Z1,
  Ca_Knst_n_Z1,
  Ca_All_n_Z1,
  Calc_n_Brs,
  End_V_Brs,
  End_N_Brs,
  bounds  // finished, but as no gun could
};
const char* stage_name(Stage stage);

// Notes of a run, shown on the status line in the order they were added.
enum class Note : std::uint8_t {
  fwarn8 = 8,    // the bullet leaves the barrel before burnout
  fwarn9 = 9,    // no pressure peak in the barrel
  fwarn10 = 10,  // burnout in the barrel
  fwarn11 = 11,  // peak while the powder burns
  fwarn12 = 12,  // peak at burnout
  fwarn13 = 13,  // too many steps
  fwarn14 = 14,  // failed; results not valid
  fwarn19 = 19,  // energy or base pressure off by more than the model is known to be
};

struct RunNotes {
  double overfill = 0;  // percent over the full case; a note when above 0
  std::array<Note, 8> notes{};
  int count = 0;
  void add(Note note) {
    if (count < static_cast<int>(notes.size())) notes[static_cast<std::size_t>(count++)] = note;
  }
  bool has(Note note) const {
    return std::find(notes.begin(), notes.begin() + count, note) != notes.begin() + count;
  }
};

struct ShotResult {
  int lastIdx = 0;  // index of the muzzle point
  double pMax = 0;  // highest pressure on the curve, Pa
  int peakIdx = 0;
  double xPeak = 0, vPeak = 0, zPeak = 0;
  double vMuzzle = 0, zMuzzle = 0;
  int peakState = 0;     // 0 none yet, 1 muzzle before any peak, 2 while burning, 3 at burnout
  int notBurnt = 0;      // 1 if the powder was not burnt at the muzzle
  int burnIdx = -1;      // burnout, -1 if none
  int idx95 = -1;        // first index with z above 0.949, -1 if none
  int z1Idx = -1;        // change of burn law, -1 if none
  int p10Idx = 0;        // next to a tenth of pMax on the rise
  double t10 = 0;        // time of a tenth of pMax, s, negative
  double ptime = 0;      // time from it to the peak, s
  double tStart = 0;     // curve.t at tailIdx
  int tailIdx = 0;       // lowest index reached by the time integration
  double pBasePeak = 0;  // estimate of the base pressure at the peak, Pa
  RunNotes runNotes;
};

}  // namespace tv
