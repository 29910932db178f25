// ternovale-shots FOLDER [LANGUAGE]: a picture of every window, diagram, table and menu in every language,
// light and dark. With QT_SCALE_FACTOR=2 all of them as on a display of twice the density.
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <cstdio>

#include "gui/file_dialog.h"
#include "gui/input_box.h"
#include "gui/painter.h"
#include "gui/program.h"
#include "gui/program_style.h"
#include "screens/measure_screens.h"
#include "screens/reports.h"
#include "session/prediction.h"
#include "session/run.h"

namespace tv {
namespace {

struct Look {
  QString name;
  QPalette palette;
};

void shoot(QWidget* window, const QString& file) {
  window->ensurePolished();
  QApplication::processEvents();
  QApplication::sendPostedEvents();  // a layout that asks for another one
  QApplication::processEvents();
  if (!window->grab().save(file)) std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
}

// A window that blocks until it is answered is taken from a timer and sent away.
template <class Run>
void shoot_modal(const QString& file, Run run) {
  QTimer::singleShot(0, [&] {
    if (auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
      // No folder of the machine that took the picture.
      if (auto* where = shown->findChild<QLabel*>("lblAktDir"))
        where->setText("/usr/share/ternovale/data/loads");
      shoot(shown, file);
      shown->reject();
    }
  });
  run();
}

// The three modes of the burn function, on the delivered example files.
template <class Name>
void shoot_burn_function(Desk& desk, Name name) {
  Session& s = desk.session();
  const auto shot = [&](const char* mode) {
    desk.refresh();
    shoot(desk.view("Form9")->window, name(QString("Form9-") + mode));
  };
  desk.act([&] {
    s.options.vivfil = s.options.reffil = "data/example.";
    s.screens["Form9"].own.reset();
    open_screen(s, "Form9");
    s.output.reference.shown = s.output.reference.loaded;
    toggle(s, "Form9", "vividx1");
    toggle(s, "Form9", "vividx3");
    press(s, "Form9", "cal_tab");
    point_at(s, "Form9", "Pic1", {Pointer::What::move, {200, 150}}, {640, 480});
  });
  shot("table");
  desk.act([&] {
    choose(s, "Form9", "Option1", 1);
    key(s, "Form9", "Shift+Up");
  });
  shot("manual");
  desk.act([&] { choose(s, "Form9", "Option1", 2); });
  shot("reference");
  desk.act([&] {
    choose(s, "Form9", "Option1", 0);
    press(s, "Form9", "restore");
    s.output.reference.shown = false;
    press(s, "Form4", "CalcAll");
  });
}

// Every page of every report, on white whatever the palette.
template <class Name>
void shoot_reports(const Session& s, Name name) {
  constexpr std::pair<Report, const char*> kSheets[] = {{Report::data_sheet, "sheet"},
                                                        {Report::travel_and_time, "sheet-diagrams"},
                                                        {Report::load_table, "sheet-table"},
                                                        {Report::powder_table, "sheet-powders"}};
  for (const auto& [report, file] : kSheets) {
    int page = 0;
    for (const DrawList& list : report_pages(s, report, qt_text_width)) {
      const QString number = ++page > 1 ? QString::number(page) : QString();
      draw_image(list, 0.9).save(name(file + number));
    }
  }
}

// A ladder, as if it had been shot with the load.
std::vector<MeasuredSeries> ladder() {
  std::vector<MeasuredSeries> strings;
  for (const auto& [charge, first] : {std::pair{37.7, 755.0}, {38.7, 773.0}, {39.7, 789.0}, {40.7, 806.0}}) {
    MeasuredSeries& series = strings.emplace_back();
    series.name = "2026-11-21";
    series.charge_gr = charge;
    series.temperature = "18";
    for (const double more : {0.0, 4.1, -2.6, 1.9, -1.2})
      series.shots.push_back({first + more, 0, false, {}});
  }
  strings[1].shots.push_back({742, 0, true, "sighter"});
  return strings;
}

template <class Name>
void shoot_measured(Session& s, Name name) {
  s.load.measured = ladder();
  shoot_modal(name("frmMeas"), [&] { open_screen(s, "frmMeas"); });
  shoot_modal(name("frmColumns"), [&] {
    ask_columns(s, "No,Speed 1,Speed 2,Notes\n1,771.2,764.9,\n2,774.8,768.3,\n3,769.5,763.1,wind\n",
                CellUnit::none);
  });
  shoot_modal(name("frmFit"), [&] { open_fit(s); });
  s.output.band = true;
  shoot_modal(name("frmBand"), [&] { open_band(s, true); });
  SetDisplayMode(s, 3);
  draw_band_of_run(s);
  refresh_screens(s);
  s.user->refresh();
  shoot_modal(name("preview-band"), [&] { s.hooks.window_command(s, "grf_akt"); });
  s.output.band = false;
  s.load.measured.clear();
}

void shoot_all(Running& program, const QString& folder, const Look& look) {
  QApplication::setPalette(look.palette);
  Desk& desk = *program.desk;
  Session& s = program.session;
  desk.refresh();
  const auto name = [&](const QString& window) {
    return folder + '/' + window + '-' + qt(s.language.name()) + look.name + ".png";
  };
  program.run("arrng_wins");
  program.run("Zeit_press_vel");
  shoot(desk.frame(), name("frmMAIN"));
  program.run("arrng_stag");
  for (const char* screen : {"Form3", "Form4", "Form5", "Form7"})
    shoot(desk.view(screen)->window, name(screen));
  for (const char* screen :
       {"Form2", "FormBorefrict", "FormPsel", "frmHelp", "frmPic", "Form11", "Form12", "FormTail", "frmBC",
        "frmGun", "FormMOA", "FormBack", "Form8", "frmPrimer", "Form10", "frmBP", "FormGset"})
    shoot_modal(name(screen), [&] { open_screen(s, screen); });
  shoot_burn_function(desk, name);
  shoot_measured(s, name);
  open_screen(s, "frmFast");
  shoot(desk.view("frmFast")->window, name("frmFast"));
  close_screen(s, "frmFast");
  shoot_modal(name("FormGetInput"), [&] {
    run_input_box(s, {kProgramName, MessageText(s).msg(49).line().msg(50), "0.66"}, desk.frame());
  });
  shoot_modal(name("files"), [&] {
    run_file_dialog(s,
                    {FileMode::open, DialogKind::load, s.language.fastmsg("flfdial6"),
                     std::string(TV_SHARE_DIR) + "/data/loads/", "", s.language.fastmsg("flffilt6"), ""},
                    desk.frame());
  });
  shoot_modal(name("box"), [&] { warn(s, MessageText(s).msg(416)); });
  shoot_modal(name("preview"), [&] { program.run("grf_akt"); });
  program.run("index");
  shoot(desk.frame()->findChild<QDialog*>("manual"), name("manual"));
  desk.frame()->findChild<QDialog*>("manual")->close();
  for (const char* output : {"pp_tab", "ld_tab", "nodia", "Zeit_press", "zeit_vel", "weg_press", "weg_vel",
                             "weg_press_vel", "Zeit_press_vel"}) {
    program.run(output);
    if (std::string_view(output).ends_with("_tab")) program.run("rech");
    shoot(desk.view("Form7")->window, name(QString("Form7-") + output));
  }
  shoot_reports(s, name);
  for (QWidget* window : {static_cast<QWidget*>(desk.frame()), desk.view("Form7")->root})
    for (QMenu* menu : window->findChild<QMenuBar*>()->findChildren<QMenu*>()) {
      if (menu->objectName().isEmpty() || !menu->menuAction()->isVisible()) continue;
      menu->ensurePolished();
      menu->adjustSize();
      shoot(menu, name("menu-" + menu->objectName()));
    }
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
  const QString scale = app.devicePixelRatio() > 1 ? "-2x" : "";
  const tv::Look looks[] = {{scale, light}, {"-dark" + scale, tv::dark_palette()}};
  const tv::Home home;
  tv::Running program(home);
  if (!program.started) return 1;
  app.setStyle(new tv::ProgramStyle(program.session, QStyleFactory::create("Fusion")));
  program.session.sound = false;
  program.open();
  program.desk->frame()->resize(1280, 720);
  program.desk->act([&] {
    tv::open_load(program.session, std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat");
    tv::press(program.session, "Form4", "CalcAll");
    program.session.picture = "308win.png";
  });
  program.run("arrng_wins");
  // One look after the other: windows keep the colour of their title bars from the palette before.
  for (const tv::Look& look : looks)
    for (const char* language : {"english", "german", "french", "russian"}) {
      if (argc > 2 && std::string_view(argv[2]) != language) continue;
      tv::language_switch(program.session, language);
      tv::shoot_all(program, folder, look);
    }
  return 0;
}
