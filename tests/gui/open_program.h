// The windows, open and quiet on a home of their own: the ground of the tests that use them as a person does.
#pragma once

#include <QTest>

#include <gtest/gtest.h>

#include "gui/program.h"

namespace tv {

inline std::string load_file() { return std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat"; }

class OpenProgram : public testing::Test {
protected:
  OpenProgram() {
    s.sound = false;
    s.options.intro_off = true;
    program.open();
    EXPECT_TRUE(QTest::qWaitForWindowActive(program.desk->frame()));
  }
  void open_example() {
    program.desk->act([&] { open_load(s, load_file()); });
  }
  void calculate() {
    program.desk->act([&] { press(s, "Form4", "CalcAll"); });
    EXPECT_TRUE(s.valid.results);
  }

  const Home home;
  Running program{home};
  Session& s = program.session;
};

}  // namespace tv
