// ternovale-shots FOLDER [LANGUAGE]: a picture of every window in every language, light and dark, at 1x and
// 2x.
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QMdiSubWindow>
#include <QTimer>
#include <cstdio>

#include "gui/file_dialog.h"
#include "gui/input_box.h"
#include "gui/program.h"

namespace tv {
namespace {

struct Look {
  QString name;
  QPalette palette;
  int scale;
};

void shoot(QWidget* window, const QString& file, int scale) {
  window->ensurePolished();
  QApplication::processEvents();
  QPixmap picture(window->size() * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  window->render(&picture);
  if (!picture.save(file)) std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
}

// A window that blocks until it is answered is taken from a timer and sent away.
template <class Run>
void shoot_modal(const QString& file, int scale, Run run) {
  QTimer::singleShot(0, [&] {
    if (auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      // No folder of the machine that took the picture.
      if (auto* where = shown->findChild<QLabel*>("lblAktDir"))
        where->setText("/usr/share/ternovale/data/loads");
      shoot(shown, file, scale);
      shown->reject();
    }
  });
  run();
}

void shoot_all(Program& program, const QString& folder, const Look& look) {
  QApplication::setPalette(look.palette);
  Desk& desk = *program.desk;
  Session& s = program.session;
  desk.refresh();
  const auto name = [&](const QString& window) {
    return folder + '/' + window + '-' + qt(s.language.name()) + look.name + ".png";
  };
  shoot(desk.frame(), name("frmMAIN"), look.scale);
  for (const char* screen : {"Form3", "Form4", "Form5", "Form7"})
    shoot(desk.view(screen)->window, name(screen), look.scale);
  for (const char* screen : {"Form2", "FormBorefrict", "FormPsel", "frmHelp", "frmPic"})
    shoot_modal(name(screen), look.scale, [&] { open_screen(s, screen); });
  open_screen(s, "frmFast");
  shoot(desk.view("frmFast")->window, name("frmFast"), look.scale);
  close_screen(s, "frmFast");
  shoot_modal(name("FormGetInput"), look.scale, [&] {
    run_input_box(s, {kProgramName, MessageText(s).msg(49).line().msg(50), "0.66"}, desk.frame());
  });
  shoot_modal(name("files"), look.scale, [&] {
    run_file_dialog(s,
                    {FileMode::open, DialogKind::load, s.language.fastmsg("flfdial6"),
                     std::string(TV_SHARE_DIR) + "/data/loads/", "", s.language.fastmsg("flffilt6"), ""},
                    desk.frame());
  });
}

}  // namespace
}  // namespace tv

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_FONT_DPI", "96");
  tv::App app(argc, argv);
  tv::plain_look(app);
  if (argc < 2) return 2;
  const QString folder = QString::fromLocal8Bit(argv[1]);
  QDir().mkpath(folder);
  const QPalette light = QApplication::palette();
  const tv::Look looks[] = {{"", light, 1}, {"-dark", tv::dark_palette(), 1}, {"-2x", light, 2}};
  const tv::Home home;
  tv::Program program(home);
  if (!program.started) return 1;
  program.session.sound = false;
  program.open();
  program.desk->frame()->resize(1640, 1030);
  program.desk->act([&] {
    tv::open_load(program.session, std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat");
    tv::press(program.session, "Form4", "CalcAll");
    program.session.picture = "308win.png";
  });
  program.run("arrng_wins");
  for (const char* language : {"english", "german", "french", "russian"}) {
    if (argc > 2 && std::string_view(argv[2]) != language) continue;
    tv::language_switch(program.session, language);
    for (const tv::Look& look : looks) tv::shoot_all(program, folder, look);
  }
  return 0;
}
