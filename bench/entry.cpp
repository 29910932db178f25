// CPU time from a typed charge, key by key and Return, to the drawn result; with the four main windows open.
#include <fmt/core.h>
#include <time.h>

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <vector>

#include "gui/app.h"
#include "gui/desk.h"
#include "gui/gui_user.h"
#include "screens/all.h"
#include "session/load_files.h"
#include "session/start.h"

namespace {

double cpu_ms() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

// A charge between 36 and 38.9 grains.
double typed_charge(tv::Session& session, QLineEdit* charge, int n) {
  const double begin = cpu_ms();
  charge->selectAll();
  QTest::keyClicks(charge, QString::number(36 + n % 30 * 0.1, 'f', 1));
  QTest::keyClick(charge, Qt::Key_Return);
  QApplication::processEvents();
  if (!session.valid.results) fmt::print("charge {} was not calculated\n", n);
  return cpu_ms() - begin;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QTemporaryDir folder;
  const std::string home = folder.path().toStdString() + "/";
  tv::App app(argc, argv);
  tv::GuiUser user;
  tv::Session session(user, tv::the_program());
  user.attach(&session, nullptr);
  tv::PlaceHints hints;
  hints.program_folder = "/bin/";
  hints.documents = home;
  hints.root = home + "ternovale/";
  hints.build_share = TV_SHARE_DIR "/";
  if (!tv::start(session, hints)) return 1;
  session.sound = false;
  {
    tv::Desk desk(session);
    user.attach(&session, &desk);
    desk.open_frame();
    desk.act([&] { tv::open_load(session, TV_SHARE_DIR "/data/loads/308_winchester_168.dat"); });
    QApplication::processEvents();
    auto* charge = qobject_cast<QLineEdit*>(desk.view("Form4")->control("MPgn"));
    user.focus("Form4", "MPgn");
    QApplication::processEvents();
    std::vector<double> times;
    for (int n = 0; n < 210; ++n) {
      const double ms = typed_charge(session, charge, n);
      if (n >= 10) times.push_back(ms);
    }
    std::ranges::sort(times);
    fmt::print("CPU time from a typed charge to the drawn result: median {:.2f} ms, {:.2f} to {:.2f} ms\n",
               times[times.size() / 2], times.front(), times.back());
    user.attach(&session, nullptr);
  }
  return 0;
}
