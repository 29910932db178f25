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
    {"6_5x55_140", 319.8, 820.5, 3.2, 16},         {"worked_load", 366.49, 899.32, 0.05, 0.02}};

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

// The numbers "KEY 1" to "KEY n" of a delivered example.
std::vector<double> numbers(const char* file, const char* section, const std::string& key, int n) {
  const SectionedFile read = read_sectioned(std::string(TV_SHARE_DIR) + "/data/" + file, CodePage::cp1252);
  std::vector<double> values;
  for (int i = 1; i <= n; ++i) {
    const std::string text = read.get(section, key + " " + std::to_string(i));
    EXPECT_FALSE(text.empty()) << key << i;
    values.push_back(read_number(text));
  }
  return values;
}

// A measured pressure rises to one peak and falls; its times ascend.
TEST(DeliveredCurves, TheReferenceIsAPressureCurve) {
  const auto times = numbers("example.ref", "referenz", "zeit", 12);
  EXPECT_TRUE(std::ranges::is_sorted(times, std::less_equal{}));
  EXPECT_GT(times.front(), 0);
  const auto pressures = numbers("example.ref", "referenz", "druck", 12);
  const auto top = std::ranges::max_element(pressures);
  EXPECT_NEAR(*top, 366.49, 30) << "about the peak of the worked load";
  EXPECT_TRUE(std::is_sorted(pressures.begin(), top + 1) &&
              std::is_sorted(top, pressures.end(), std::greater{}));
}

// The vivacities are the burn function of the powder that the comment names.
TEST_F(Delivered, TheVivacitiesAreThoseOfAPowder) {
  const RecordTable& powders = s.set(RecordKind::powders).file.table;
  const int row = powders.find("Example R-06 medium rifle");
  ASSERT_GE(row, 0);
  namespace f = powder_field;
  const double Ba0 = powders.number(row, f::Ba0), z1 = powders.number(row, f::Limz1);
  const auto z = numbers("example.viv", "vivacity", "ppm", 9);
  const auto vivacity = numbers("example.viv", "vivacity", "viv", 9);
  for (std::size_t i = 0; i < z.size(); ++i) {
    EXPECT_NEAR(z[i], 0.1 * static_cast<double>(i + 1), 1e-9);
    const double shape = z[i] < z1 ? std::sqrt(1 + powders.number(row, f::PDko) * z[i])
                                   : powders.number(row, f::Ba1) * std::sqrt(1 - z[i]);
    EXPECT_NEAR(vivacity[i], Ba0 * shape, 6e-5) << z[i];
  }
}

}  // namespace
}  // namespace tv_test
