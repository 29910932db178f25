// The window program.
#include <cstdio>
#include <string_view>

#include "gui/app.h"
#include "gui/hand_over.h"

namespace {

constexpr const char* kUsage =
    "Usage: ternovale [LOAD]\n"
    "Predict pressure and velocity of a handload. LOAD is opened; where the program runs already, there.\n\n"
    "  --help     this text\n"
    "  --version  the version\n\n"
    "The same without windows: ternovale-cli --help\n";

// What is answered without a display. False if the program is to start.
bool answered(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "--version") return std::printf("%s %s\n", tv::kProgramName, tv::kVersion) > 0;
    if (word == "--help" || word == "-h") return std::fputs(kUsage, stdout) >= 0;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (answered(argc, argv)) return std::fflush(stdout) == 0 ? 0 : 3;
  tv::App app(argc, argv);
  QCoreApplication::setApplicationName("ternovale");
  QGuiApplication::setDesktopFileName("org.ternovale.Ternovale");
  const QStringList loads = app.arguments().mid(1);
  const auto lock = tv::take_instance_lock();
  if (lock) return tv::run_program(app, tv::place_hints(), loads);
  if (loads.isEmpty() || !tv::hand_over(tv::absolute_file(loads[0]))) tv::say_already_running();
  return 0;
}
