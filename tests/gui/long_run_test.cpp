// A powder table over a long list in the windows: what is shown meanwhile, and that Escape ends it.
#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include "gui/open_program.h"
#include "screens/output_window.h"

namespace tv {
namespace {

class LongRun : public OpenProgram {
protected:
  LongRun() {
    open_example();
    calculate();
    auto& powders = s.set(RecordKind::powders).file.table.rows;
    for (std::size_t i = 0; powders.size() < 2000; ++i) powders.push_back(powders[i]);
    s.options.bamint = 0;
    s.options.bamaxt = 320;
    s.tables.strategy = 8;  // the longest fits
  }
  void calculate_table() {
    program.run("pp_tab");
    program.desk->act([&] { press(s, "Form4", "CalcAll"); });
  }
};

TEST_F(LongRun, TellsThePowderAndEndsAtEscape) {
  auto* frame = program.desk->frame();
  auto* bar = frame->findChild<QProgressBar*>("progress");
  auto* line = frame->findChild<QLabel*>("status_line");
  const CalcState before = s.state;
  bool pressed = false;
  QTimer looks;
  QObject::connect(&looks, &QTimer::timeout, [&] {
    if (pressed || !bar->isVisible() || bar->value() == 0) return;
    const std::string told = utf8(line->text()), behind = s.language.fastmsg("fwarn15");
    EXPECT_TRUE(told.starts_with("Example ") && told.ends_with(behind)) << told;
    QTest::keyClick(frame->windowHandle(), Qt::Key_Escape);
    pressed = true;
  });
  looks.start(1);
  calculate_table();
  ASSERT_TRUE(pressed) << "the run ended by itself";
  EXPECT_TRUE(s.tables.powder.cancelled);
  EXPECT_GT(s.tables.powder.rows.size(), 0U);
  EXPECT_LT(s.tables.powder.rows.size(), 2000U);
  EXPECT_TRUE(s.valid.results);
  EXPECT_TRUE(s.state == before);
  EXPECT_EQ(s.options.grftyp, 3);
  EXPECT_FALSE(bar->isVisible());
  program.run("pp_tab");
  EXPECT_NE(output_text(s).find(s.language.fastmsg("fproptab", 14)), std::string::npos)
      << "what was done is on show, and that it is not all";
}

}  // namespace
}  // namespace tv
