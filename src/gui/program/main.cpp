// The window program.
#include "gui/app.h"

int main(int argc, char** argv) {
  tv::App app(argc, argv);
  QCoreApplication::setApplicationName("ternovale");
  QGuiApplication::setDesktopFileName("org.ternovale.Ternovale");
  const auto lock = tv::take_instance_lock();
  if (!lock) {
    tv::say_already_running();
    return 0;
  }
  return tv::run_program(app, tv::place_hints(), app.arguments().mid(1));
}
