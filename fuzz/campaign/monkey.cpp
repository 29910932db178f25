// campaign_monkey SECONDS SEED: random keys, clicks, wheels and commands over all windows, offscreen; meant for a
// build with sanitizers. The program starts anew every few thousand actions, with the settings that the monkey
// left. A crash is the finding: the line printed before it names the seed and the action. Status 0 if none came.
#include <unistd.h>
#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <random>

#include <fmt/core.h>

#include "gui/program.h"

namespace tv {
namespace {

// What must not be left to chance: other programs, printers, the end of the run.
constexpr std::string_view kLeftAlone[] = {"Ende",    "mhelp",       "manual", "prisetup",
                                           "grf_akt", "grf_akt_dat", "drucken"};

constexpr int kKeys[] = {Qt::Key_0,       Qt::Key_1,     Qt::Key_5,         Qt::Key_9,        Qt::Key_Period,
                         Qt::Key_Comma,   Qt::Key_Minus, Qt::Key_Backspace, Qt::Key_Delete,   Qt::Key_Tab,
                         Qt::Key_Backtab, Qt::Key_Up,    Qt::Key_Down,      Qt::Key_Left,     Qt::Key_Right,
                         Qt::Key_Home,    Qt::Key_End,   Qt::Key_PageUp,    Qt::Key_PageDown, Qt::Key_Return,
                         Qt::Key_Escape,  Qt::Key_Space, Qt::Key_F5,        Qt::Key_A,        Qt::Key_Z,
                         Qt::Key_Plus,    Qt::Key_F2,    Qt::Key_F4};

class Monkey {
public:
  Monkey(unsigned seed, int most, int milliseconds)
      : random_(seed), most_(most), milliseconds_(milliseconds) {
    time_.start();
    QObject::connect(&timer_, &QTimer::timeout, [this] { act(); });
  }
  void start() { timer_.start(0); }
  void stop() { timer_.stop(); }
  long actions() const { return actions_; }
  bool over() const { return actions_ >= most_ || time_.hasExpired(milliseconds_); }
  long kinds(std::size_t i) const { return kinds_[i]; }

private:
  unsigned pick(std::size_t n) { return n == 0 ? 0 : static_cast<unsigned>(random_() % n); }

  // The modal window on top, or any window that is on show.
  QWidget* window() {
    if (QWidget* popup = QApplication::activePopupWidget()) return popup;
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    QWidgetList shown;
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->isVisible()) shown.push_back(widget);
    return shown.isEmpty() ? nullptr : shown[static_cast<int>(pick(static_cast<std::size_t>(shown.size())))];
  }
  QWidget* inside(QWidget* window) {
    QWidgetList widgets;
    for (QWidget* widget : window->findChildren<QWidget*>())
      if (widget->isVisible() && widget->isEnabled()) widgets.push_back(widget);
    return widgets.isEmpty() ? window
                             : widgets[static_cast<int>(pick(static_cast<std::size_t>(widgets.size())))];
  }
  QPoint place(QWidget* widget) {
    return {static_cast<int>(pick(static_cast<std::size_t>(std::max(1, widget->width())))),
            static_cast<int>(pick(static_cast<std::size_t>(std::max(1, widget->height()))))};
  }
  Qt::KeyboardModifiers modifiers() {
    static constexpr Qt::KeyboardModifiers kThem[] = {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier,
                                                      Qt::ShiftModifier, Qt::ControlModifier};
    return kThem[pick(std::size(kThem))];
  }

  void click(QWidget* widget) {
    const auto button = pick(8) == 0 ? Qt::RightButton : Qt::LeftButton;
    QTest::mouseClick(widget, button, modifiers(), place(widget));
  }
  void double_click(QWidget* widget) {
    QTest::mouseDClick(widget, Qt::LeftButton, Qt::NoModifier, place(widget));
  }
  void drag(QWidget* widget) {
    const QPointer<QWidget> still(widget);
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, place(widget));
    if (still) QTest::mouseMove(widget, place(widget));
    if (still) QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, place(widget));
  }
  void wheel(QWidget* widget) {
    const QPoint at = place(widget);
    QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, pick(2) ? 120 : -120}, Qt::NoButton, modifiers(),
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
  }
  void press_key(QWidget* widget) {
    QWidget* at = QApplication::focusWidget() && pick(3) ? QApplication::focusWidget() : widget;
    QTest::keyClick(at, static_cast<Qt::Key>(kKeys[pick(std::size(kKeys))]), modifiers());
  }
  void type(QWidget* widget) {
    static constexpr const char* kTexts[] = {
        "38.7", "0", "-1", "1e9", "99999999999", "7,62", "", ".308 Winchester", "abc"};
    if (auto* line = qobject_cast<QLineEdit*>(widget)) {
      line->setFocus();
      line->selectAll();
      QTest::keyClicks(line, kTexts[pick(std::size(kTexts))]);
    } else if (auto* list = qobject_cast<QComboBox*>(widget); list && list->count() > 0) {
      list->setCurrentIndex(static_cast<int>(pick(static_cast<std::size_t>(list->count()))));
      emit list->activated(list->currentIndex());
    } else {
      press_key(widget);
    }
  }
  void trigger(QWidget* window) {
    QList<QAction*> entries;
    for (QAction* action : window->findChildren<QAction*>()) {
      const std::string name = action->objectName().toStdString();
      const bool alone = std::ranges::find(kLeftAlone, name) != std::end(kLeftAlone);
      if (action->isEnabled() && !action->menu() && !alone) entries.push_back(action);
    }
    if (!entries.isEmpty())
      entries[static_cast<int>(pick(static_cast<std::size_t>(entries.size())))]->trigger();
  }

  // Ends whatever waits for an answer, so that the program comes back to where it was opened.
  void come_back() {
    if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<QDialog*>(modal))
      dialog->done(0);
    else if (modal)
      modal->close();
    if (!time_.hasExpired(milliseconds_ + 30000)) return;
    fmt::print("found: the windows do not come back, {}\n",
               modal ? modal->objectName().toStdString() : "no window");
    std::fflush(stdout);
    _exit(1);
  }

  void act() {
    if (over()) return come_back();
    QWidget* window = this->window();
    if (!window) return;
    ++actions_;
    QWidget* widget = inside(window);
    using Action = void (Monkey::*)(QWidget*);
    static constexpr Action kActions[] = {&Monkey::click,        &Monkey::press_key, &Monkey::type,
                                          &Monkey::double_click, &Monkey::wheel,     &Monkey::drag};
    const unsigned what = pick(16);
    if (what == 15) {
      ++kinds_[6];
      if (!QApplication::activeModalWidget()) trigger(window);
      return;
    }
    const std::size_t which = what < 6 ? what : what < 10 ? 0 : what < 12 ? 1 : 2;
    ++kinds_[which];
    (this->*kActions[which])(widget);
  }

  std::minstd_rand random_;
  long most_;
  int milliseconds_;
  QElapsedTimer time_;
  QTimer timer_;
  long actions_ = 0;
  std::array<long, 7> kinds_{};
};

// One life of the program; its actions.
long live(const Home& home, unsigned seed, std::array<long, 7>& kinds, int most, int milliseconds) {
  fmt::print("seed {}\n", seed);
  std::fflush(stdout);
  Running program(home);
  program.session.sound = false;
  program.session.options.intro_off = true;
  program.open();
  program.desk->act(
      [&] { open_load(program.session, std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat"); });
  Monkey monkey(seed, most, milliseconds);
  monkey.start();
  while (!monkey.over()) {
    QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    if (!program.desk->frame()->isVisible()) program.open();
  }
  monkey.stop();
  for (std::size_t i = 0; i < kinds.size(); ++i) kinds[i] += monkey.kinds(i);
  return monkey.actions();
}

}  // namespace
}  // namespace tv

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir folder;
  qputenv("HOME", folder.path().toUtf8());
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  tv::plain_look(app);
  const int seconds = argc > 1 ? std::stoi(argv[1]) : 10;
  unsigned seed = static_cast<unsigned>(argc > 2 ? std::stoul(argv[2]) : 1);
  QElapsedTimer time;
  time.start();
  long actions = 0, lives = 0;
  std::array<long, 7> kinds{};
  const tv::Home home;
  for (qint64 left; (left = seconds * 1000LL - time.elapsed()) > 0; ++lives)
    actions += tv::live(home, seed++, kinds, 4000, static_cast<int>(left));
  fmt::print(
      "windows: {} actions in {} lives ({} clicks, {} keys, {} entries, {} double clicks, {} wheels, {} "
      "drags, "
      "{} commands); found 0\n",
      actions, lives, kinds[0], kinds[1], kinds[2], kinds[3], kinds[4], kinds[5], kinds[6]);
  return 0;
}
