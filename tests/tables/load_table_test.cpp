#include "tables/load_table.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tables/fixture.h"

namespace tv {
namespace {

LoadTable run(test::Shot& shot, LoadTableSettings& settings) {
  LoadTable table;
  RunLoadTable(shot.s, shot.curve, shot.result, settings, test::head(), table);
  return table;
}

TEST(LoadTable, EveryRowIsTheSingleShotOfItsChargeAndBurnRate) {
  for (const int schrit : {0, 1, 2}) {
    test::Shot shot = test::rifle();
    shot.s.schrit = schrit;
    setBaseStep(shot.s);
    shot.s.frictionOn = schrit == 1;
    shot.s.frictionPress = 5e6;
    const CalcState before = shot.s;
    LoadTableSettings settings;
    const LoadTable table = run(shot, settings);
    EXPECT_EQ(shot.s, before);
    EXPECT_EQ(table.row_count, 17);
    EXPECT_TRUE(table.table_valid);
    for (std::size_t i = 0; i <= 17; ++i) {
      SCOPED_TRACE(i);
      test::Shot single = test::rifle();
      single.s.schrit = schrit;
      single.s.frictionOn = before.frictionOn;
      single.s.frictionPress = before.frictionPress;
      const double percent = i < 16 ? static_cast<double>(i) - 10 : 0;
      single.s.chargeGr = 42 + 42 * percent / 100;
      single.s.Ba0 *= i == 16 ? 1.05 : i == 17 ? 0.95 : 1;
      ASSERT_TRUE(single.run());
      EXPECT_NEAR(table.charge[i], single.s.chargeGr, 1e-9);
      EXPECT_NEAR(table.velocity[i], single.velocity(), 1e-6);
      EXPECT_NEAR(table.pmax[i], single.result.pMax, 1);
      EXPECT_NEAR(table.pmuzzle[i], single.curve.p[static_cast<std::size_t>(single.result.lastIdx)], 1);
      EXPECT_NEAR(table.burnt[i], single.result.zMuzzle, 1e-9);
      EXPECT_NEAR(table.barrel_time[i], std::abs(single.result.t10), 1e-9);
    }
    EXPECT_GT(table.pmax[16], table.pmax[10]);
    EXPECT_LT(table.pmax[17], table.pmax[10]);
  }
}

TEST(LoadTable, StepsByPercentAndByWeight) {
  const struct {
    double charge, ldstep, weight;
    bool inweight;
    double step, row0, row15;
  } cases[] = {{40, 1, 0, false, 1, 36, 42},
               {40, 9, 0, false, 9, 4, 58},
               {40, 1, 0.5, true, 1.25, 35, 42.5},
               {4, 1, 5, true, 125, -46, 29}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.step);
    test::Shot shot = test::rifle();
    shot.s.chargeGr = c.charge;
    LoadTableSettings settings{c.ldstep, c.weight, c.inweight, false, 5};
    const LoadTable table = run(shot, settings);
    EXPECT_DOUBLE_EQ(table.step, c.step);
    EXPECT_DOUBLE_EQ(settings.ldstep, c.step);
    EXPECT_NEAR(table.charge[0], c.row0, 1e-9);
    EXPECT_NEAR(table.charge[10], c.charge, 1e-9);
    EXPECT_NEAR(table.charge[15], c.row15, 1e-9);
    for (std::size_t i = 0; i <= 17; ++i)
      if (table.charge[i] <= 0) {
        EXPECT_EQ(table.velocity[i], 0) << i;
      }
  }
}

TEST(LoadTable, RowsThatCannotBeCalculatedKeepNoVelocity) {
  test::Shot full = test::rifle();
  full.s.chargeGr = 75;  // 77.6 gr fill the space at solid density
  LoadTableSettings settings{2, 0, false, false, 7};
  const LoadTable table = run(full, settings);
  EXPECT_GT(table.velocity[0], 0);
  EXPECT_EQ(table.velocity[15], 0);
  EXPECT_EQ(table.pmax[15], table.pmax[14]);  // what the shot before left
  EXPECT_EQ(table.batols, 7);

  test::Shot none = test::rifle();
  none.s.chargeGr = 0;
  const CalcState before = none.s;
  LoadTableSettings by_weight{1.5, 0.5, true, false, 5};
  const LoadTable empty = run(none, by_weight);
  EXPECT_EQ(empty.step, 1.5);  // the division by the charge is left out
  for (std::size_t i = 0; i <= 17; ++i) EXPECT_EQ(empty.velocity[i], 0);
  EXPECT_EQ(none.s, before);

  test::Shot huge = test::rifle();
  huge.s.chargeGr = 1e308;
  LoadTableSettings wide{9, 0, false, false, 15};
  const LoadTable overflow = run(huge, wide);
  for (std::size_t i = 0; i <= 17; ++i) {
    EXPECT_EQ(overflow.velocity[i], 0);
    EXPECT_TRUE(std::isfinite(overflow.charge[i]));
  }
}

}  // namespace
}  // namespace tv
