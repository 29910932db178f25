// Start and end of the whole program: notice, order, second start, homes in every state.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <fstream>
#include <map>

#include "gui/modal.h"
#include "gui/program.h"

namespace tv {
namespace {

TEST(Start, TheNoticeMustBeAgreedTo) {
  const Home home;
  Running program(home);
  Session& s = program.session;
  Modal dialog([](QDialog* notice) {
    auto* go_on = notice->findChild<QPushButton*>("weiter");
    EXPECT_FALSE(go_on->isEnabled());
    auto* languages = notice->findChild<QComboBox*>("wechsel");
    EXPECT_EQ(languages->count(), 4);
    const QString english = notice->windowTitle();
    Q_EMIT languages->activated(1);
    EXPECT_NE(notice->windowTitle(), english);
    auto* down = notice->findChild<QPushButton*>("page_down");
    notice->resize(500, 300);
    QApplication::processEvents();
    EXPECT_TRUE(down->isVisible() && down->isEnabled()) << "it does not fit";
    down->click();
    EXPECT_TRUE(notice->findChild<QPushButton*>("page_up")->isEnabled());
    QTest::mouseClick(notice->findChild<QAbstractButton*>("Check2"), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::mouseClick(notice->findChild<QAbstractButton*>("acceptiert"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(go_on->isEnabled());
    go_on->click();
  });
  open_screen(s, "Form2");
  EXPECT_TRUE(s.notice_agreed);
  EXPECT_TRUE(s.options.accept);
  Running again(home);
  EXPECT_TRUE(again.session.options.accept) << "told in the settings file";
}

// Runs the program as main does; `step` is called every few milliseconds with the dialog that blocks, or
// null, until the program ends.
void run_whole(const PlaceHints& hints, const std::function<void(QDialog*)>& step) {
  App& app = *static_cast<App*>(qApp);
  bool running = true;
  QElapsedTimer since;
  since.start();
  QTimer driver;
  driver.setInterval(5);
  QObject::connect(&driver, &QTimer::timeout, [&] {
    // Later, as a timer whose slot waits for a dialog does not come again.
    QTimer::singleShot(0, qApp, [&] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!running || (dialog && !dialog->isVisible())) return;
      if (!since.hasExpired(30000)) return step(dialog);
      if (dialog) dialog->reject();
      app.exit(1);
    });
  });
  driver.start();
  EXPECT_EQ(run_program(app, hints, {}), 0) << "did not end by itself";
  driver.stop();
  running = false;
  QApplication::processEvents();
  plain_look(app);
}

MainFrame* open_frame() {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (auto* frame = dynamic_cast<MainFrame*>(window); frame && frame->isVisible()) return frame;
  return nullptr;
}

void agree(QDialog* notice) {
  notice->findChild<QAbstractButton*>("acceptiert")->click();
  notice->findChild<QPushButton*>("weiter")->click();
}

TEST(Start, TheNoticeComesBeforeTheFrameAndTheEndIsAsked) {
  const Home home;
  std::vector<std::string> order;
  run_whole(home.hints(), [&](QDialog* dialog) {
    if (dialog && dialog->objectName() == "Form2") {
      EXPECT_EQ(open_frame(), nullptr);
      order.push_back("notice");
      return agree(dialog);
    }
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
      order.push_back("box");
      box->buttons().front()->click();
    } else if (MainFrame* frame = open_frame(); frame && !dialog) {
      order.push_back("frame");
      for (const char* shown : {"HVolDat", "MPgn", "key_Mgas", "Pict1"})
        EXPECT_TRUE(frame->findChild<QWidget*>(shown)->isVisible()) << shown;
      frame->close();
    }
  });
  EXPECT_EQ(order, (std::vector<std::string>{"notice", "frame", "box"}));
}

TEST(Start, OnlyTheFirstOneOpensTheQuickStartOnAnExample) {
  const Home home;
  for (const bool first : {true, false}) {
    bool looked = false;
    run_whole(home.hints(), [&](QDialog* dialog) {
      if (dialog && dialog->objectName() == "Form2") return agree(dialog);
      if (auto* box = qobject_cast<QMessageBox*>(dialog)) return box->buttons().front()->click();
      MainFrame* frame = open_frame();
      if (!frame || dialog || looked) return;
      looked = true;
      auto* quick = frame->findChild<QDialog*>("frmFast");
      EXPECT_EQ(quick && quick->isVisible(), first);
      if (first) {
        quick->findChild<QPushButton*>("Proceed")->click();
        EXPECT_FALSE(quick->isVisible());
        EXPECT_GT(frame->findChild<QLineEdit*>("Vnull")->text().toInt(), 700) << "it calculates as it stands";
        EXPECT_TRUE(frame->windowTitle().startsWith("*")) << "no file of the user's";
      }
      frame->close();
    });
    EXPECT_TRUE(looked);
  }
}

bool holds_data(const QString& home) {
  QDirIterator files(home, {"ternofw.*"}, QDir::Files, QDirIterator::Subdirectories);
  return files.hasNext();
}

TEST(Start, ASecondProcessTouchesNothing) {
  QTemporaryDir runtime;
  struct Process {
    QTemporaryDir home;
    QProcess process;
    void start(const QTemporaryDir& runtime_folder) {
      QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
      environment.insert("QT_QPA_PLATFORM", "offscreen");
      environment.insert("XDG_RUNTIME_DIR", runtime_folder.path());
      environment.insert("HOME", home.path());
      process.setProcessEnvironment(environment);
      process.setProcessChannelMode(QProcess::MergedChannels);
      process.start(TV_BIN_DIR "/ternovale", {});
    }
    bool works() {
      return QTest::qWaitFor([this] { return holds_data(home.path()); }, 20000);
    }
    void kill() {
      process.kill();
      process.waitForFinished();
    }
  };
  Process first, second;
  first.start(runtime);
  ASSERT_TRUE(first.works());
  second.start(runtime);
  ASSERT_TRUE(second.process.waitForStarted());
  QTest::qWait(1500);
  EXPECT_EQ(second.process.state(), QProcess::Running) << "it says so and waits";
  EXPECT_FALSE(holds_data(second.home.path()));
  second.kill();
  first.kill();  // leaves its lock behind
  second.start(runtime);
  EXPECT_TRUE(second.works()) << "the lock of a dead process counts for nothing";
  second.kill();
}

TEST(Start, ASecondStartHandsItsLoadOver) {
  QTemporaryDir runtime;
  qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
  const Home home;
  const auto lock = take_instance_lock();
  QProcess second;
  bool asked = false;
  run_whole(home.hints(), [&](QDialog* dialog) {
    if (second.state() == QProcess::NotRunning && second.program().isEmpty())  // while the notice stands
      second.start(TV_BIN_DIR "/ternovale", {TV_SHARE_DIR "/data/loads/9mm_luger_124.dat"});
    if (dialog && dialog->objectName() == "Form2") {
      if (second.state() == QProcess::NotRunning) agree(dialog);
    } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
      asked = true;
      box->buttons().front()->click();
    } else if (MainFrame* frame = open_frame(); frame && frame->windowTitle().startsWith("9mm_luger_124")) {
      frame->close();
    }
  });
  EXPECT_TRUE(asked) << "the load was opened, and the end asked for";
  EXPECT_EQ(second.exitCode(), 0);
}

}  // namespace
}  // namespace tv
