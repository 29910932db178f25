// The delivered loads against an independent integration of the model.
#include <algorithm>
#include <cmath>

#include "session/started.h"
#include "text/file.h"
#include "text/number.h"
#include "text/sectioned_file.h"

namespace tv_test {
namespace {

using namespace tv;

class Delivered : public Started {};

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
