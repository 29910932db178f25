// Windows that find their room: dialogs at their first showing, tiles of a growing frame, pictures of the
// manual.
#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
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

// All of it on show: nothing scrolled away, nothing over it, no text cut.
void expect_whole(QWidget* widget, const std::string& where) {
  ASSERT_NE(widget, nullptr) << where;
  EXPECT_TRUE(widget->isVisible() && widget->visibleRegion() == QRegion(widget->rect()))
      << where << ": cut: " << widget->objectName().toStdString();
  const auto* edit = qobject_cast<QLineEdit*>(widget);
  const int needed = edit ? edit->fontMetrics().horizontalAdvance(edit->text()) + 12
                     : qobject_cast<QLabel*>(widget) ? widget->sizeHint().width()
                                                     : 0;
  EXPECT_GE(widget->width(), needed) << where << widget->objectName().toStdString();
}

// What a handloader looks at while he changes the charge, on the screens people have; the frame has lost a
// title to the desktop. Run once more at twice the density.
TEST_F(Room, TheResultIsAlwaysInSight) {
  program.desk->act([&] {
    open_load(program.session, std::string(TV_SHARE_DIR) + "/data/loads/308_winchester_168.dat");
    press(program.session, "Form4", "CalcAll");
  });
  MainFrame& frame = *program.desk->frame();
  auto* entries = frame.findChild<QTabBar*>("entry_tabs");
  const auto in_sight = [&](const std::string& where) {
    for (const char* name : {"MPgm", "MPgn", "CalcAll"}) expect_whole(program.control("Form4", name), where);
    for (const char* name : {"key_Mgas", "key_share", "key_bar", "key_Vnull", "key_Ener", "key_Sdau"})
      expect_whole(program.control("Form5", name), where);
  };
  for (const char* language : {"english", "german", "french", "russian"}) {
    program.desk->act([&] { language_switch(program.session, language); });
    for (const QSize size : {QSize(960, 540), QSize(1280, 720), QSize(1366, 768), QSize(1920, 1080)}) {
      frame.resize(size - QSize(0, 30));
      for (int i = 0; i < 3; ++i) QApplication::processEvents();
      const std::string where =
          std::string(language) + ' ' + std::to_string(size.width()) + 'x' + std::to_string(size.height());
      EXPECT_EQ(frame.size(), size - QSize(0, 30)) << where << ": it does not fit";
      in_sight(where);
      QWidget* diagram = program.control("Form7", "Pict1");
      expect_whole(diagram, where);
      EXPECT_GE(diagram->height(), size.width() < 1280 ? 150 : 250) << where;
      EXPECT_EQ(entries->isVisible(), size.width() < 1280) << where;
      for (int tab = 1; size.width() < 1280 && tab >= 0; --tab) {
        entries->setCurrentIndex(tab);
        QApplication::processEvents();
        in_sight(where);
      }
      if (const QByteArray folder = qgetenv("TV_PICTURES"); !folder.isEmpty())
        frame.grab().save(folder + '/' + where.c_str() + ".png");
    }
  }
}

TEST_F(Room, TheManualFitsItsPicturesAndFindsBack) {
  program.run("index");
  auto* manual = program.desk->frame()->findChild<QDialog*>("manual");
  ASSERT_NE(manual, nullptr);
  auto* text = manual->findChild<QTextBrowser*>();
  const QString first = text->source().fileName();
  manual->findChild<QPushButton*>("contents")->click();
  EXPECT_EQ(text->source().fileName(), "index.md");
  const int own_width = QImage(TV_SOURCE_DIR "/docs/manual/pictures/frmMAIN-english.png").width();
  ASSERT_GT(own_width, 600);
  for (const int width : {own_width + 700, 500}) {
    manual->resize(width, 600);
    QApplication::processEvents();
    EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0) << width;
    EXPECT_EQ(text->document()
                      ->resource(QTextDocument::ImageResource,
                                 text->source().resolved(QUrl("../pictures/frmMAIN-english.png")))
                      .value<QImage>()
                      .width() == own_width,
              width > own_width);
  }
  manual->findChild<QPushButton*>("back")->click();
  EXPECT_EQ(text->source().fileName(), first);
  manual->close();
}

}  // namespace
}  // namespace tv
