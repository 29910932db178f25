// Windows that find their room: dialogs at their first showing, tiles of a growing frame, pictures of the
// manual.
#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTimer>

#include "gui/program.h"

namespace tv {
namespace {

class Room : public testing::Test {
protected:
  Room() : program(home) { program.open(); }

  const Home home;
  Running program;
};

TEST_F(Room, ADialogHasRoomForUnitsThatComeWithItsValues) {
  program.desk->act([&] {
    open_load(program.session, std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat");
    language_switch(program.session, "english");
  });
  for (const char* screen : {"FormBorefrict", "FormPsel"}) {
    bool seen = false;
    // At its first sight, before it would grow by itself.
    QTimer::singleShot(0, [&] {
      auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(shown, nullptr);
      for (const QLabel* label : shown->findChildren<QLabel*>())
        EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
      seen = true;
      shown->reject();
    });
    open_screen(program.session, screen);
    EXPECT_TRUE(seen) << screen;
  }
}

TEST_F(Room, TilesFollowTheFrameUntilOneIsMoved) {
  MainFrame& frame = *program.desk->frame();
  auto* diagram = qobject_cast<QMdiSubWindow*>(program.desk->view("Form7")->window);
  const auto resize = [&](int width, int height) {
    frame.resize(width, height);
    QApplication::processEvents();
    QApplication::processEvents();
  };
  for (const QSize size : {QSize(1700, 1100), QSize(1900, 1300), QSize(1700, 1150)}) {
    resize(size.width(), size.height());
    EXPECT_EQ(diagram->geometry().bottomRight(), frame.area().viewport()->rect().bottomRight());
  }
  diagram->move(diagram->x() - 20, diagram->y());
  const QRect moved = diagram->geometry();
  resize(1900, 1300);
  EXPECT_EQ(diagram->geometry(), moved);
}

TEST_F(Room, TheManualFitsItsPicturesAndFindsBack) {
  program.run("index");
  auto* manual = program.desk->frame()->findChild<QDialog*>("manual");
  ASSERT_NE(manual, nullptr);
  auto* text = manual->findChild<QTextBrowser*>();
  const QString first = text->source().fileName();
  manual->findChild<QPushButton*>("contents")->click();
  EXPECT_EQ(text->source().fileName(), "index.md");
  for (const int width : {1800, 500}) {  // its picture is 1640 wide
    manual->resize(width, 600);
    QApplication::processEvents();
    EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0) << width;
    EXPECT_EQ(text->document()
                      ->resource(QTextDocument::ImageResource,
                                 text->source().resolved(QUrl("../pictures/frmMAIN-english.png")))
                      .value<QImage>()
                      .width() == 1640,
              width > 1640);
  }
  manual->findChild<QPushButton*>("back")->click();
  EXPECT_EQ(text->source().fileName(), first);
  manual->close();
}

}  // namespace
}  // namespace tv
