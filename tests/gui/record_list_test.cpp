// The lists of records: filtered by typing, the records picked last above them; files dropped on them.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

#include "gui/open_program.h"
#include "gui/record_list.h"

namespace tv {
namespace {

class Lists : public OpenProgram {
protected:
  const Field& record() { return field(program.session, "Form4", "PulvDat"); }
  int entry(const std::string& name) {
    for (std::size_t i = 0; i < record().items.size(); ++i)
      if (record().items[i].text == name) return static_cast<int>(i);
    ADD_FAILURE() << name;
    return -1;
  }
  void pick_powder(const std::string& name) {
    program.desk->act([&] { pick(program.session, "Form4", "PulvDat", entry(name)); });
  }
  void type(const QString& text) {
    program.session.user->focus("Form4", "PulvDat");
    list->lineEdit()->selectAll();
    QTest::keyClicks(list, text);
    QApplication::processEvents();
  }
  // What the popup offers while typing; a line is "-".
  QStringList offered() {
    const QAbstractItemModel* rows = list->completer()->popup()->model();
    QStringList names;
    for (int row = 0; row < rows->rowCount(); ++row) {
      const QModelIndex index = rows->index(row, 0);
      names << (index.flags() & Qt::ItemIsEnabled ? index.data().toString() : "-");
    }
    return names;
  }
  QStringList holding(const char* part) {
    QStringList names;
    for (const ListItem& item : record().items)
      if (qt(item.text).contains(part, Qt::CaseInsensitive)) names << qt(item.text);
    return names;
  }

  RecordList* list = program.find<RecordList>("Form4", "PulvDat");
};

constexpr const char* kSlow = "Example M-06 slow magnum rifle";
constexpr const char* kPistol = "Example P-05 pistol";

TEST_F(Lists, FilteredByAnyPartEveryRowStandsForItsOwnRecord) {
  const QStringList rifles = holding("RIFLE");
  ASSERT_GT(rifles.size(), 3);
  ASSERT_LT(rifles.size(), qsizetype(record().items.size()));
  type("RiFLe");
  EXPECT_EQ(offered(), rifles) << "nothing was picked before: no line";
  list->completer()->popup()->hide();
  QTest::keyClick(list, Qt::Key_Escape);

  pick_powder(kPistol);
  pick_powder(kSlow);
  EXPECT_EQ(list->count(), int(record().items.size()) + 3);
  EXPECT_EQ(list->currentText().toStdString(), kSlow);
  type("rifle");
  EXPECT_EQ(offered(), QStringList({kSlow, "-"}) + rifles) << "above the line only what holds the text, too";
  type("zz no powder");
  EXPECT_FALSE(list->completer()->popup()->isVisible());

  for (const int row : {0, 3}) {  // above and below the line
    type("rifle");
    const QString wanted = offered()[row];
    auto* popup = list->completer()->popup();
    ASSERT_TRUE(popup->isVisible());
    QTest::mouseClick(popup->viewport(), Qt::LeftButton, {},
                      popup->visualRect(popup->model()->index(row, 0)).center());
    EXPECT_EQ(program.session.load.pulver, utf8(wanted));
    EXPECT_EQ(record().selected, entry(utf8(wanted)));
    EXPECT_EQ(list->currentText(), wanted);
  }
}

TEST_F(Lists, ThePopupOpensAtTheRecordsPickedLast) {
  pick_powder(kPistol);
  pick_powder(kSlow);
  program.session.user->focus("Form4", "PulvDat");
  QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(list, &wheel);
  EXPECT_EQ(program.session.load.pulver, kSlow) << "the wheel takes no record by the way";
  QTest::keyClick(list, Qt::Key_Down);
  QApplication::processEvents();
  ASSERT_TRUE(list->view()->isVisible());
  EXPECT_EQ(program.session.load.pulver, kSlow) << "nor does opening the list";
  EXPECT_EQ(list->view()->currentIndex().row(), 0);
  QTest::keyClick(list->view(), Qt::Key_Down);
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_EQ(program.session.load.pulver, kPistol);
  EXPECT_EQ(record().selected, entry(kPistol));

  QTest::keyClick(list, Qt::Key_Down);
  QTest::keyClick(list->view(), Qt::Key_Down);
  QTest::keyClick(list->view(), Qt::Key_Down);  // across the line
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_EQ(record().selected, 0);
}

TEST_F(Lists, ALoadDroppedOnAFieldIsOpened) {
  auto* on = program.find<QLineEdit>("Form3", "method");
  const std::string before = program.text("Form3", "method");
  QMimeData data;
  const QString file = QString(TV_SHARE_DIR) + "/data/loads/9mm_luger_124.dat";
  data.setUrls({QUrl::fromLocalFile(file)});
  data.setText(file);  // as file managers do
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(on, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(on, &drop);
  EXPECT_EQ(program.session.load.pattyp.substr(0, 4), "9 mm") << program.session.load.pattyp;
  EXPECT_FALSE(on->text().contains("luger"));
  EXPECT_TRUE(program.session.options.labfil.ends_with("/9mm_luger_124."));
}

}  // namespace
}  // namespace tv
