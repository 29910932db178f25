// Recoil, units and notes.
#include <gtest/gtest.h>

#include <cmath>

#include "calculators/load_notes.h"
#include "calculators/recoil.h"
#include "calculators/units.h"
#include "engine/shot.h"
#include "example_loads.h"
#include "text/number.h"

namespace tv {
namespace {

// The worked load: 180 grains of bullet, 73 of powder.
RecoilShot worked_shot() {
  CalcState s = test::worked_load();
  convertUnits(s);
  EXPECT_EQ(prepareShot(s), SetUp::ok);
  return {s.bulletKg, s.chargeKg, s.boreM2, 366.49e6, 105.62e6, 899.32, s.travelM};
}

TEST(Recoil, WorkedShotInAGunOfFourKilograms) {
  const Recoil r = recoil({4, 0.5, 0.5}, worked_shot());
  ASSERT_TRUE(r.ok);
  const struct {
    double value, expected, digits;
  } cases[] = {{r.peak_kN, 17.342, 3},     {r.mount_kN, 2.168, 3},       {r.muzzle_kN, 4.155, 3},
               {r.impulse, 12.617, 3},     {r.velocity, 3.152, 3},       {r.travel_mm, 1.927, 3},
               {r.energy, 19.89, 2},       {r.total_impulse, 16.639, 3}, {r.total_velocity, 4.157, 3},
               {r.total_energy, 34.59, 2}, {r.gas_ms, 1.936, 3},         {r.total_travel_mm, 9.434, 3}};
  for (const auto& c : cases) EXPECT_NEAR(c.value, c.expected, 1.01 * std::pow(10, -c.digits)) << c.expected;
}

// Momentum of gun and ejected mass balance at the muzzle, and again once the rest of the gas is out.
TEST(Recoil, MomentumBalances) {
  for (const double share : {0.0, 0.3, 1.0}) {
    const RecoilShot shot = worked_shot();
    const RecoilGun gun{3.2, 0, share};
    const Recoil r = recoil(gun, shot);
    const double recoiling = gun.gun_kg + (1 - share) * shot.charge_kg;
    EXPECT_NEAR(recoiling * r.velocity, (shot.bullet_kg + share * shot.charge_kg) * shot.velocity, 1e-12);
    EXPECT_NEAR(recoiling * r.total_velocity, shot.bullet_kg * shot.velocity + shot.charge_kg * 1300, 1e-9);
    EXPECT_NEAR(r.energy, r.impulse * r.impulse / (2 * recoiling), 1e-9);
    EXPECT_EQ(r.mount_kN, 0);
  }
}

std::string text(const std::vector<RecoilField>& fields, const std::string& name) {
  for (const RecoilField& f : fields)
    if (f.name == name) return f.text;
  return "missing";
}

TEST(Recoil, FieldsInBothUnits) {
  const Recoil r = recoil({4, 0.5, 0.5}, worked_shot());
  const auto metric = recoil_fields(r, false), imperial = recoil_fields(r, true);
  ASSERT_EQ(metric.size(), 13u);
  const struct {
    const char* name;
    const char* metric;
    double factor;  // 1 N in lbf and the like, from the definitions of pound and foot
  } cases[] = {{"mx_r_kraft", "17.34", 1000 / 4.4482216}, {"gaus_imp", "12.62", 1 / 0.138255},
               {"ges_vel", "4.16", 1 / 0.3048},           {"gaus_weg", "1.9", 1 / 25.4},
               {"ges_ener", "34.6", 1 / 1.3558179},       {"gas_dau", "1.94", 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(text(metric, c.name), c.metric);
    EXPECT_NEAR(read_number(text(imperial, c.name)), read_number(c.metric) * c.factor,
                0.006 * c.factor + 0.05)
        << c.name;
  }
  // The three impulses on the screen add up.
  EXPECT_EQ(text(metric, "ges_imp"), "16.64");
  EXPECT_EQ(text(metric, "nach_imp"), "4.02");
  for (const auto& [velocity, gun] : {std::pair{0.0, 4.0}, {800.0, 0.0}}) {
    RecoilShot shot = worked_shot();
    shot.velocity = velocity;
    for (const RecoilField& f : recoil_fields(recoil({gun, 1, 1}, shot), false)) EXPECT_EQ(f.text, "");
  }
}

TEST(Units, SinglePrecisionBothWays) {
  const struct {
    UnitPair pair;
    const char* first;
    const char* second;
  } cases[] = {{unit_pair(" inch ", "mm", "25.4", "0"), "1", "25.4"},
               {unit_pair("C", "F", "1.8", "32"), "-40", "-40"},
               {unit_pair("C", "K", "1", "273.15"), "21", "294.15"},
               {unit_pair("psi", "MPa", "0.00689475729", "0"), "60190.676", "415.00012"},
               {unit_pair("pound", "grain", "7000", "0"), "0.5", "3500"}};
  for (const auto& c : cases) {
    EXPECT_EQ(to_second(c.pair, c.first), c.second);
    EXPECT_FLOAT_EQ(static_cast<float>(read_number(to_first(c.pair, c.second))),
                    static_cast<float>(read_number(c.first)));
  }
  EXPECT_EQ(unit_pair_name(cases[0].pair), "inch  <-->  mm");
  EXPECT_EQ(to_second(cases[4].pair, "3e37"), "?");
  EXPECT_EQ(to_first(unit_pair("a", "b", "0", "1"), "5"), "");
}

TEST(LoadNotes, MeasuredBesidePredicted) {
  EXPECT_NEAR(*velocity_difference("2530", "fps", 771.144), 0, 1e-5);
  EXPECT_NEAR(*velocity_difference(" 786,56 ", "m/s", 771.144), 0.02, 1e-4);
  EXPECT_NEAR(*pressure_difference("50763.3", "psi", 350e6), 0, 1e-5);
  EXPECT_NEAR(*pressure_difference("3150", "bar", 350e6), -0.1, 1e-12);
  for (const auto& [value, unit] : {std::pair{"50000", "CUP"},
                                    {"about 350", "MPa"},
                                    {"", "MPa"},
                                    {"350", ""},
                                    {"3,5,0", "MPa"},
                                    {"inf", "MPa"}})
    EXPECT_FALSE(pressure_difference(value, unit, 350e6)) << value << unit;
  EXPECT_FALSE(velocity_difference("800", "m/s", 0));
  EXPECT_EQ(without_unit_sign(" 812.3m "), "812.3");
  EXPECT_EQ(without_unit_sign("812.3"), "812.3");
}

}  // namespace
}  // namespace tv
