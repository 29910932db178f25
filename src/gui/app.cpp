#include "gui/app.h"

#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>

#include "gui/desk.h"
#include "gui/gui_user.h"
#include "gui/hand_over.h"
#include "gui/icons.h"
#include "gui/main_frame.h"
#include "gui/palettes.h"
#include "gui/program_style.h"
#include "gui/windows.h"
#include "screens/all.h"
#include "session/entry.h"
#include "session/load_files.h"
#include "session/start.h"

namespace tv {
namespace {

std::string local_folder(const QString& path) {
  const std::string folder = QFile::encodeName(path).toStdString();
  return folder.empty() || folder.ends_with('/') ? folder : folder + '/';
}

// The safety notice; false: the program is to end.
bool show_notice(Session& s) {
  if (s.options.accept) return true;
  for (;;) {
    s.end_requested = false;
    open_screen(s, "Form2");
    if (s.notice_agreed) return true;
    if (ask_to_end(s)) return false;
  }
}

void open_file(Desk& desk, const QString& file) {
  desk.act([&] { open_load(desk.session(), QFile::encodeName(file).toStdString()); });
}

void come_to_front(Desk& desk) {
  MainFrame* frame = desk.frame();
  if (!frame) return;
  frame->setWindowState(frame->windowState() & ~Qt::WindowMinimized);
  frame->show();
  frame->raise();
  frame->activateWindow();
}

// A load from another start, unless something else is going on.
bool take_handed_over(Desk& desk, const QString& file) {
  if (!desk.frame() || QApplication::activeModalWidget() || desk.session().action_depth > 0) return false;
  open_file(desk, file);
  return true;
}

}  // namespace

bool App::notify(QObject* receiver, QEvent* event) {
  try {
    if (session && receiver->isWidgetType() && notice_tip(receiver, event)) return true;
    return QApplication::notify(receiver, event);
  } catch (const std::exception& fault) {
    show_fault(fault.what());
  } catch (...) {
    show_fault({});
  }
  return true;
}

bool App::notice_tip(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::ToolTip)
    return tips_.show(*session, static_cast<QWidget*>(receiver), *static_cast<QHelpEvent*>(event));
  return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Control &&
         tips_.edit(*session);
}

QString absolute_file(const QString& word) { return QFileInfo(word).absoluteFilePath(); }

std::unique_ptr<QLockFile> take_instance_lock() {
  auto lock = std::make_unique<QLockFile>(instance_place() + ".lock");
  lock->setStaleLockTime(0);  // only a process that has died leaves a stale lock
  if (lock->tryLock()) return lock;
  if (lock->error() == QLockFile::LockFailedError) return nullptr;
  return lock;  // no folder for a lock: better two than none
}

void say_already_running() {
  QMessageBox box(QMessageBox::Information, kProgramName,
                  "Ternovale is already running!\nTernovale läuft bereits!", QMessageBox::Ok);
  box.setWindowIcon(program_icon());
  box.exec();
}

PlaceHints place_hints() {
  PlaceHints hints;
  hints.program_folder = local_folder(QCoreApplication::applicationDirPath());
  hints.documents = local_folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  for (const QString& place : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
    hints.shared_data.push_back(local_folder(place));
  return hints;
}

int run_program(App& app, const PlaceHints& hints, const QStringList& loads) {
  HandedOver others;
  GuiUser user;
  Session session(user, the_program());
  user.attach(&session, nullptr);
  app.setStyle(new ProgramStyle(session));
  app.session = &session;
  app.setWindowIcon(program_icon());
  app.setQuitOnLastWindowClosed(false);  // the notice closes before the frame opens
  int answer = 0;
  if (start(session, hints)) {
    if (session.options.look != 0) apply_look(session.options.look);
    // The toolkit keeps some settings of its dialogs: in a portable folder they stay in it.
    if (session.roots.delivered == session.roots.root)
      QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                         QFile::decodeName(session.roots.root.c_str()));
    Desk desk(session);
    user.attach(&session, &desk);
    if (show_notice(session)) {
      desk.open_frame();
      if (loads.isEmpty())
        desk.act([&] { open_first_example(session); });
      else
        open_file(desk, absolute_file(loads[0]));
      others.deliver_to([&desk] { come_to_front(desk); },
                        [&desk](const QString& file) { return take_handed_over(desk, file); });
      answer = app.exec();
      others.deliver_to({}, {});
    }
    user.attach(&session, nullptr);
  }
  app.session = nullptr;
  return answer;
}

}  // namespace tv
