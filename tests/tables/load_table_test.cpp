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
    EXPECT_TRUE(table.table_valid && table.row_count == 17);
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
  }
}

// Steps by percent and weight; rows without a charge, without free space or beyond any number are failed
// rows.
TEST(LoadTable, LadderAndFailedRows) {
  const struct {
    double charge, ldstep, weight;
    bool inweight;
    double step, row0, row15;
    int failed;
  } cases[] = {{40, 1, 0, false, 1, 36, 42, 0},
               {40, 9, 0, false, 9, 4, 58, 1},
               {40, 1, 0.5, true, 1.25, 35, 42.5, 0},
               {4, 1, 5, true, 125, -46, 29, 11},
               {75, 2, 0, false, 2, 60, 82.5, 4},
               {0, 1.5, 0.5, true, 1.5, 0, 0, 18},
               {1e308, 9, 0, false, 9, 1e307, 1.45e308, 18}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.charge);
    test::Shot shot = test::rifle();
    shot.s.chargeGr = c.charge;
    const CalcState before = shot.s;
    LoadTableSettings settings{c.ldstep, c.weight, c.inweight, false, 7};
    const LoadTable table = run(shot, settings);
    EXPECT_EQ(shot.s, before);
    EXPECT_EQ(table.batols, 7);
    EXPECT_DOUBLE_EQ(table.step, c.step);
    EXPECT_DOUBLE_EQ(settings.ldstep, c.step);
    EXPECT_NEAR(table.charge[0], c.row0, 1e-9 + 1e-12 * c.charge);
    EXPECT_NEAR(table.charge[15], c.row15, 1e-9 + 1e-12 * c.charge);
    int failed = 0;
    for (std::size_t i = 0; i <= 17; ++i) {
      EXPECT_TRUE(std::isfinite(table.charge[i]));
      failed += table.velocity[i] == 0;
    }
    EXPECT_EQ(failed, c.failed);
  }
}

}  // namespace
}  // namespace tv
