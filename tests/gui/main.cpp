#include <gtest/gtest.h>

#include "gui/program.h"

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  tv::App app(argc, argv);
  tv::plain_look(app);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
