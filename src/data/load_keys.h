// The keys of a load: where each stands in the sectioned file and which value it holds. One table serves
// reading, writing, `--set` on the command line and the preview.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/calc_state.h"

namespace tv {

struct Coefficient {
  double bc = 0;        // ballistic coefficient
  double velocity = 0;  // valid down to this velocity, m/s
};

// What a load holds beside the inputs in CalcState: names, notes, case body and rifling, which do not enter
// the calculation.
struct LoadData {
  std::string commen, pricomment;
  std::string pattyp, pmetho, bultyp, pulver;
  std::string gfunc = "G1";  // drag function of the coefficients
  double c1icao = 0;
  std::vector<Coefficient> coefficients;  // 1 to 5 rows
  double l1_in = 0, l2_in = 0, Ri_in = 0, R1_in = 0, P1_in = 0, P2_in = 0, H1_in = 0,
         H2_in = 0;  // case body, inch
  int Shape = 0;
  double caswht = 0;                                  // case weight, grains
  double ZD_in = 0, ZB_in = 0, FD_in = 0, FB_in = 0;  // rifling, inch
  int ZZ_no = 0, Polyg = 0;
  bool bore_area_stale = false;  // wirktr
  bool start_press_set = false;  // a start pressure was given, by the bullet, by the case length or by entry
  bool fproof = false;           // molydo
  double anfpul = 0;             // powder burnt at shot start
  std::string primer, PrimerLot, BulletLot, PowderLot, CaseMfg;
  std::string MuzzleVel_meas, MVel_meas_std, MVel_meas_unit, Press_meas, Press_meas_std, Press_meas_unit;
};

inline constexpr std::string_view kMetrics = "metrics", kMetricsFormer = "abmessungen";
inline constexpr std::string_view kChargeData = "chargedata", kChargeDataFormer = "treibladung";
inline constexpr std::string_view kStartup = "startup";

// One key of a load: its section and the value behind it. Exactly one of the members is set.
struct LoadKey {
  std::string_view key;
  std::string_view section;
  double CalcState::*state = nullptr;
  double CartridgeDimensions::*dim = nullptr;
  int CartridgeDimensions::*dim_int = nullptr;
  int CalcState::*state_int = nullptr;
  bool CalcState::*state_flag = nullptr;
  double LoadData::*load = nullptr;
  int LoadData::*load_int = nullptr;
  bool LoadData::*load_flag = nullptr;
  std::string LoadData::*text = nullptr;
};

// In the order in which they are read.
std::span<const LoadKey> load_keys();
const LoadKey* load_key(std::string_view key);              // ignoring case; nothing if there is none
std::string_view former_section(std::string_view section);  // "abmessungen" for "metrics"; empty if none

}  // namespace tv
