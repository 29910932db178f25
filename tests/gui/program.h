// The whole program on a home folder of its own, for tests and pictures.
#pragma once

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <filesystem>

#include "gui/app.h"
#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/desk.h"
#include "gui/gui_user.h"
#include "gui/icons.h"
#include "gui/main_frame.h"
#include "gui/palettes.h"
#include "screens/all.h"
#include "screens/commands.h"
#include "session/entry.h"
#include "session/language_switch.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/start.h"

namespace tv {

// The same pixels on every machine.
inline void plain_look(QApplication& app) {
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setPalette(QApplication::style()->standardPalette());
  QFont font("DejaVu Sans", 9);
  font.setHintingPreference(QFont::PreferNoHinting);
  app.setFont(font);
  app.setWindowIcon(program_icon());
}

class Home {
public:
  std::string folder() const { return folder_.path().toStdString() + "/"; }
  PlaceHints hints() const {
    std::filesystem::create_directories(folder() + "docs");
    return {folder() + "no-such-program/", folder() + "docs/", {}, std::string(TV_SHARE_DIR) + "/"};
  }

private:
  QTemporaryDir folder_;
};

// Started as main does, without the notice.
struct Running {
  explicit Running(const Home& home) : session(user, the_program()) {
    user.attach(&session, nullptr);
    started = start(session, home.hints());
    desk = std::make_unique<Desk>(session);
    user.attach(&session, desk.get());
  }
  ~Running() {
    QApplication::processEvents();
    user.attach(&session, nullptr);
  }
  void open() {
    desk->open_frame();
    desk->frame()->activateWindow();
    QApplication::processEvents();
  }
  QWidget* control(std::string_view screen, std::string_view name) {
    View* view = desk->view(screen);
    return view ? view->control(qt(name)) : nullptr;
  }
  template <class W>
  W* find(std::string_view screen, std::string_view name) {
    return dynamic_cast<W*>(control(screen, name));
  }
  std::string text(std::string_view screen, std::string_view name) {
    return field(session, screen, name).text;
  }
  void run(std::string_view command) {
    desk->act([&] { run_command(session, command); });
  }

  GuiUser user;
  Session session;
  bool started = false;
  std::unique_ptr<Desk> desk;
};

}  // namespace tv
