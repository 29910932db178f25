// The keys of a load: where each stands in the sectioned file and which value it holds. One table serves
// reading, writing, `--set` on the command line and the preview.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/measured_strings.h"
#include "data/section_values.h"
#include "data/settings_keys.h"
#include "engine/calc_state.h"
#include "text/sectioned_file.h"

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
  std::vector<MeasuredSeries> measured;  // in a section of their own
};

inline constexpr std::string_view kMetrics = "metrics", kChargeData = "chargedata", kStartup = "startup";

// One key of a load: its section and the value behind it. Exactly one of the members is set.
struct LoadKey {
  std::string_view key;
  std::string_view section;
  double CalcState::*state = nullptr;
  double CartridgeDimensions::*dim = nullptr;
  int CartridgeDimensions::*dim_int = nullptr;
  bool CartridgeDimensions::*dim_flag = nullptr;
  int CalcState::*state_int = nullptr;
  bool CalcState::*state_flag = nullptr;
  double LoadData::*load = nullptr;
  int LoadData::*load_int = nullptr;
  bool LoadData::*load_flag = nullptr;
  std::string LoadData::*text = nullptr;
  double Coefficient::*coefficient = nullptr;  // of the row below
  std::size_t row = 0;
};

// In the order in which they are read.
std::span<const LoadKey> load_keys();
const LoadKey* load_key(std::string_view key);  // ignoring case; nothing if there is none

// Keys whose text was not understood as a whole and read as what could be made of it: "38x" as 38, a tail of
// an unknown kind as none.
using KeyList = std::vector<std::string_view>;

// Takes the values of a load, a key that is missing in its section from the section's former name. Gives the
// keys that were not understood; nothing, and then nothing changes, if the file holds neither dimensions nor
// charge, so is no load. A missing number is 0, but: powtmp and the drag function stay as they were; sdepth
// missing or 0 follows from the lengths; buldia is the groove diameter; c1icao missing or 0 is 4.5; molyco
// below 0.4 is 0.66. The first row whose coefficient is not above 0 ends the list of coefficients, and c1icao
// is its first one. A load without measured strings has none. TAIL is set if the tail is not flat and tailon does not say otherwise. A load that was
// written reads back to the last bit.
std::optional<KeyList> read_load_keys(const SectionedFile& file, CalcState& state, LoadData& load);
// Sets every key of a load; one that a former section holds as well is emptied there. The comment is cut to
// 255 characters.
void write_load_keys(const CalcState& state, const LoadData& load, SectionedFile& file);

// Whether a file of the one would hold the same as a file of the other, but for what follows from the rest.
bool same_load(const CalcState& state, const LoadData& load, const CalcState& other_state,
               const LoadData& other_load);

// What a load holds beside its keys: the targets of the powder table and the gun, sections `metrics` and
// `recoil`. To be read behind the load keys: maxtab is 0.875 of a known maximum pressure unless the file
// holds one above 10 MPa. Gives the keys that were not understood.
KeyList read_load_options(const SectionedFile& file, const CalcState& state, Options& options);
void write_load_options(const Options& options, SectionedFile& file);

// Design data: names and dimensions of section `metrics`; only keys that hold something change anything.
// Gives the keys that were not understood.
KeyList read_design_data(const SectionedFile& file, CalcState& state, LoadData& load);

// One value from text as a user types it: a number must be one as a whole, a tail of a known kind. False, and
// nothing changes, if it is not. What hangs on the key alone follows (coefficients, tail, coating factor).
bool set_load_value(const LoadKey& key, std::string_view text, CalcState& state, LoadData& load);
// The value as it stands in a load, without the blank ahead of a number.
std::string load_value_text(const LoadKey& key, const CalcState& state, const LoadData& load);

// What a file dialog tells of a load: cartridge, bullet, powder, primer and comment, lines ended by "\n".
std::string load_preview(const SectionedFile& file);

// Section `transfer` of the file for companion programs. in: vnull is the muzzle velocity as shown.
void write_transfer(const CalcState& state, const LoadData& load, const Options& options,
                    std::string_view vnull, SectionedFile& file);

}  // namespace tv
