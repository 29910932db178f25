// What physics allows, against loads that the closed forms cannot follow and against curves made wrong.
#include "engine/ledger.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/crosscheck.h"
#include "engine/loads.h"

namespace tv::test {
namespace {

TEST(Ledger, NotesAndFailsWhatTheClosedFormsCannotFollow) {
  // A case nearly empty under the highest start pressure: 177 m/s, where the equations give 316.
  static Shot shot;
  shot.s.chargeGr = 10;
  ASSERT_TRUE(shot.run());
  shot.s.start_pressure = start_pressure_bound(shot.s);
  EXPECT_LT(cross_check(shot.s, shot.c).percent.vMuzzle, -30);
  ASSERT_TRUE(shot.run());
  EXPECT_TRUE(shot.r.runNotes.has(Note::fwarn19));
  // A powder so quick that s hardly rises with z: the bisection ends far from burnout, short of it or beyond.
  shot.s = worked_load();
  shot.s.Limz1 = 1;
  shot.s.Ba0 = 12.8;
  ASSERT_TRUE(shot.run());
  EXPECT_TRUE(shot.r.runNotes.has(Note::fwarn19));
  shot.s.Ba0 = 51.2;
  EXPECT_FALSE(shot.run());
  EXPECT_STREQ(stage_name(shot.outcome.stage), "bounds");
  EXPECT_TRUE(shot.r.runNotes.has(Note::fwarn14));
}

// A finished shot with something made wrong, and the verdict. The bore friction of a bullet may only slow it.
TEST(Ledger, FindsWhatIsWrongWithACurve) {
  static Shot good;
  good.s.Ba0 = 0.6;  // burnt out in the barrel
  ASSERT_TRUE(good.run());
  ASSERT_GT(good.r.burnIdx, 0);
  const std::size_t last = good.last(), peak = static_cast<std::size_t>(good.r.peakIdx);
  const auto verdict = [&](auto change) {
    static Shot wrong;
    wrong = good;
    change(wrong);
    return std::max(energy_ledger(wrong.s, wrong.c, wrong.r), order_ledger(wrong.c, wrong.r, good.c.v[last]));
  };
  EXPECT_EQ(verdict([](Shot&) {}), Ledger::balanced);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.p[last] *= 1.01; }), Ledger::off);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.z[peak] -= 0.002; }), Ledger::off);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.p[last] *= 1.1; }), Ledger::broken) << "more than all the heat";
  EXPECT_EQ(verdict([](Shot& x) { x.r.vMuzzle = 9300; }), Ledger::off) << "faster than the gas: 9160 m/s";
  const auto overworked = [&](Shot& x) { std::for_each_n(&x.c.p[1], peak - 1, [](double& p) { p *= 4; }); };
  EXPECT_EQ(verdict(overworked), Ledger::off) << "more work than energy of the bullet";
  EXPECT_EQ(verdict([&](Shot& x) { x.c.pB[last] = 1.001 * x.c.p[last]; }), Ledger::off);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.t[peak] = 1e-9; }), Ledger::broken);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.t[0] = x.c.t[peak] / 2; }), Ledger::broken);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.v[last] *= 1.0001; }), Ledger::broken);
  EXPECT_EQ(verdict([&](Shot& x) { x.c.v[last] = NAN; }), Ledger::broken);
}

}  // namespace
}  // namespace tv::test
