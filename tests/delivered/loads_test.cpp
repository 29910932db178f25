// The delivered loads against an independent integration of the model, and every delivered cartridge shot
// with what is delivered for it.
#include <algorithm>
#include <cmath>

#include "session/started.h"
#include "text/file.h"
#include "text/number.h"
#include "text/sectioned_file.h"

namespace tv_test {
namespace {

using namespace tv;

class Delivered : public Started {
protected:
  // The lightest bullet of the calibre that a load of the usual length holds without a warning.
  bool take_seated_bullet() {
    const RecordTable& table = s.set(RecordKind::bullets).file.table;
    for (const int row : rows_near(table, bullet_field::buldin, s.state.dim.Zkal, 0.0025)) {
      take_bullet(s, row);
      user.forget();
      transferInputs(s);
      if (s.inputsOk && user.boxes.empty() && s.state.dim.Bsd > 0.3 * s.state.dim.buldin) return true;
    }
    return false;
  }
};

struct Figures {
  const char* load;
  double MPa, mps;
  double MPa_tolerance, mps_tolerance;
};
// Peak and muzzle velocity by a program of its own that integrates the equations; it shares no code.
const Figures kFigures[] = {
    {"308_winchester_168", 343.9, 775.5, 3.4, 15}, {"300_win_mag_190", 349.8, 898.5, 3.5, 18},
    {"9mm_luger_124", 190.2, 345.2, 1.9, 6.9},     {"44_magnum_240", 204.6, 420.0, 2.0, 8.4},
    {"45-70_405", 149.7, 461.4, 1.5, 9.2},         {"223_remington_55_slow", 187.9, 719.7, 1.9, 14},
    {"6_5x55_140", 319.8, 820.5, 3.2, 16},         {"worked_load", 366.49, 899.32, 0.05, 0.02},
};

TEST_F(Delivered, LoadsGiveTheFiguresOfAnIndependentIntegration) {
  for (const Figures& f : kFigures) {
    SCOPED_TRACE(f.load);
    ASSERT_TRUE(load_read(s, example(f.load)));
    user.forget();
    ASSERT_EQ(recalculate(s), -1);
    EXPECT_EQ(user.box_keys(), "") << "no warning";
    EXPECT_NEAR(s.result.pMax / 1e6, f.MPa, f.MPa_tolerance);
    EXPECT_NEAR(s.result.vMuzzle, f.mps, f.mps_tolerance);
    EXPECT_LT(s.result.pMax / 1e6, s.state.dim.zul_P);
    const bool slow = std::string_view(f.load).ends_with("_slow");
    EXPECT_EQ(s.result.zMuzzle < 0.85, slow) << s.result.zMuzzle;
  }
}

// A key that the program reads: none is misspelt.
bool is_known(const std::string& section, const std::string& key) {
  const auto known = [&](const auto& k) { return k.section == section && k.key == key; };
  return std::ranges::any_of(load_keys(), known) || std::ranges::any_of(option_keys(), known);
}

TEST_F(Delivered, LoadsGoWithTheDeliveredRecords) {
  for (const Figures& f : kFigures) {
    SCOPED_TRACE(f.load);
    user.forget();
    ASSERT_TRUE(load_read(s, example(f.load)));
    EXPECT_EQ(user.box_keys(), "") << "its powder is in the file, with the same values";
    EXPECT_GE(s.set(RecordKind::cartridges).file.table.find(s.load.pattyp), 0);
    EXPECT_GE(s.set(RecordKind::bullets).file.table.find(s.load.bultyp), 0);
    const SectionedFile file = read_sectioned(example(f.load), CodePage::cp1252);
    for (const std::string& section : file.sections())
      for (const std::string& key : file.keys(section)) EXPECT_TRUE(is_known(section, key)) << key;
  }
}

TEST_F(Delivered, FrictionLoadLosesVelocityAndNoPressure) {
  load("8x57_is_196_friction");
  EXPECT_TRUE(s.state.frictionOn);
  EXPECT_EQ(s.state.schrit, 1);
  ASSERT_EQ(recalculate(s), -1);
  const double peak = s.result.pMax, slow = s.result.vMuzzle;
  s.state.frictionOn = false;
  ASSERT_EQ(recalculate(s), -1);
  EXPECT_EQ(s.result.pMax, peak);
  EXPECT_LT(slow, s.result.vMuzzle);
  EXPECT_GT(slow, 0.8 * s.result.vMuzzle);
}

// A charge that fills a share of the case gives a peak a gun lives by.
bool plausible(const Session& s, bool handgun) {
  const double MPa = s.result.pMax / 1e6;
  const bool pressure = handgun ? MPa > 80 && MPa < 300 : MPa > 100 && MPa < 450;
  return pressure && s.result.vMuzzle > 180 && s.result.vMuzzle < 1300;
}

TEST_F(Delivered, EveryCartridgeShootsWithSomeDeliveredPowder) {
  const int cases = s.set(RecordKind::cartridges).file.table.last();
  const int powders = s.set(RecordKind::powders).file.table.last();
  for (int row = 0; row <= cases; ++row) {
    take_cartridge(s, row);
    SCOPED_TRACE(s.load.pattyp);
    const bool handgun = s.state.dim.Hlen < 1.32;
    s.state.dim.Llen = handgun ? 6 : 24;
    refresh_all_fields(s);
    ASSERT_TRUE(take_seated_bullet()) << "every bullet gives a warning";
    convertUnits(s.state);
    bool shoots = false;
    for (int powder = 0; powder <= powders && !shoots; ++powder) {
      take_powder(s, powder);
      for (int percent = 95; percent >= 30 && !shoots; percent -= 5) {
        s.state.chargeGr = percent / 100.0 * s.state.bulkdn * s.state.dim.Veff / dicht_H2;
        if (prepareShot(s.state) != SetUp::ok || !runShot(s.state, s.curve, s.result).ok()) continue;
        const double limit = s.state.dim.zul_P > 0 ? s.state.dim.zul_P * 1e6 : 1e12;
        shoots = plausible(s, handgun) && s.result.pMax < limit;
      }
    }
    EXPECT_TRUE(shoots) << "no powder for " << s.load.pattyp << " with " << s.load.bultyp;
  }
}

// The tables of the two example files of measured curves: in order, as far as they go.
TEST_F(Delivered, ExampleCurvesAreTables) {
  const auto numbers = [&](const char* file, const char* section, const char* key, int n) {
    const SectionedFile read(read_file(std::string(TV_SHARE_DIR) + "/data/loads/" + file).bytes,
                             CodePage::cp1252);
    std::vector<double> values;
    for (int i = 1; i <= n; ++i) values.push_back(read_number(read.get(section, key + std::to_string(i))));
    return values;
  };
  const auto times = numbers("example.ref", "referenz", "zeit ", 12);
  EXPECT_TRUE(std::ranges::is_sorted(times));
  EXPECT_GT(times.front(), 0);
  const auto pressures = numbers("example.ref", "referenz", "druck ", 12);
  const auto top = std::ranges::max_element(pressures);
  EXPECT_TRUE(std::is_sorted(pressures.begin(), top + 1) &&
              std::is_sorted(top, pressures.end(), std::greater{}));
  EXPECT_EQ(numbers("example.viv", "vivacity", "ppm ", 9).back(), 0.9);
  for (const double vivacity : numbers("example.viv", "vivacity", "viv ", 9))
    EXPECT_NEAR(vivacity, 0.52, 0.25);
}

}  // namespace
}  // namespace tv_test
