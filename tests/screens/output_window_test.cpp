// What the output window shows: of the last run, never of inputs that have changed since.
#include "screens/output_window.h"
#include "session/started.h"

namespace tv_test {
namespace {

using namespace tv;

class OutputWindow : public Started {};

TEST_F(OutputWindow, ShowsTheRunAndMarksItWhenStale) {
  load("308_winchester_168");
  for (int mode = -2; mode <= 6; ++mode) {
    SetDisplayMode(s, mode);
    EXPECT_NE(output_text(s).find(s.language.fastmsg("fcrgvar6")), std::string::npos) << mode;
    EXPECT_FALSE(output_export(s).has_value() || output_stale(s)) << mode;
    EXPECT_EQ(output_shows_text(s), mode <= 0);
  }
  s.options.bamint = 0.6, s.options.bamaxt = 0.72;
  for (const int mode : {-2, -1, 0}) {
    SetDisplayMode(s, mode);
    ASSERT_EQ(recalculate(s), -1);
  }
  for (int mode = -2; mode <= 3; ++mode) {
    SetDisplayMode(s, mode);
    EXPECT_TRUE(output_export(s).has_value()) << mode;
    EXPECT_FALSE(output_stale(s)) << mode;
    const std::string before = output_text(s), cells = output_tsv(s);
    EXPECT_NE(before.find(".308 Winchester"), std::string::npos) << mode;
    EXPECT_NE(cells.find('\t'), std::string::npos) << mode;
    EXPECT_EQ(before.find('\r'), std::string::npos);

    const double charge = s.state.chargeGr;
    pick("Form3", "HVolDat", ".223 Remington");
    EXPECT_TRUE(output_stale(s)) << mode;
    EXPECT_TRUE(output_text(s).ends_with(before)) << "the old figures under the old names: " << mode;
    EXPECT_NE(output_text(s).find(s.language.fastmsg("fobsol0")), std::string::npos);
    EXPECT_TRUE(output_tsv(s).ends_with(cells));
    EXPECT_TRUE(output_tsv(s).starts_with(s.language.fastmsg("fobsol0"))) << "also where it is copied to";
    s.state.chargeGr = charge;
    s.resultsValid = s.load_table.table_valid = s.powder_table.table_valid = true;
  }
  SetDisplayMode(s, 2);
  output_switch(s);
  EXPECT_TRUE(output_shows_text(s));
  output_switch(s);
  EXPECT_FALSE(output_shows_text(s));
}

}  // namespace
}  // namespace tv_test
