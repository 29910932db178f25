// The frame, the output window, dialogs, start and end.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QSvgRenderer>
#include <QTableView>
#include <QTest>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <cmath>
#include <fstream>

#include "gui/file_dialog.h"
#include "gui/input_box.h"
#include "gui/modal.h"
#include "gui/open_program.h"
#include "gui/painter.h"
#include "screens/output_window.h"

namespace tv {
namespace {

class Windows : public OpenProgram {
protected:
  void calculate() {
    open_example();
    OpenProgram::calculate();
    program.run("diagra");
    program.desk->frame()->resize(1280, 720);
    QApplication::processEvents();
  }
  QWidget* root(const char* screen) { return program.desk->view(screen)->root; }
};

TEST_F(Windows, ABareHomeReachesTheMainWindow) {
  EXPECT_TRUE(program.desk->frame()->isVisible());
  for (const auto& [screen, control] :
       {std::pair{"Form3", "HVolDat"}, {"Form4", "MPgn"}, {"Form5", "key_Mgas"}, {"Form7", "Pict1"}})
    EXPECT_TRUE(program.control(screen, control)->isVisible()) << control;
  EXPECT_EQ(program.desk->active_screen(), "Form3");
  program.run("arrng_stag");
  for (const char* screen : {"Form3", "Form4", "Form5", "Form7"})
    EXPECT_TRUE(program.desk->view(screen)->window->isVisible()) << screen;
  program.run("arrng_wins");
  EXPECT_TRUE(program.control("Form4", "MPgn")->isVisible());
  EXPECT_FALSE(program.desk->frame()->findChild<QLabel*>("Picture1")->text().trimmed().isEmpty());
}

TEST_F(Windows, ToolbarButtonsRunTheirCommandsAndFollowTheState) {
  calculate();
  auto* bar = program.desk->frame()->findChild<QToolBar*>("toolbar_box");
  ASSERT_NE(bar, nullptr);
  for (const Command& command : commands()) {
    if (command.toolbar < 0) continue;
    auto* button = bar->findChild<QToolButton*>("button_img" + QString::number(command.toolbar));
    ASSERT_NE(button, nullptr) << command.name;
    EXPECT_FALSE(button->icon().isNull()) << command.name;
    EXPECT_FALSE(button->toolTip().isEmpty()) << command.name;
    EXPECT_FALSE(button->accessibleName().isEmpty()) << command.name;
  }
  bar->findChild<QToolButton*>("button_img8")->click();
  EXPECT_EQ(program.session.options.grftyp, 2);
  EXPECT_TRUE(bar->findChild<QToolButton*>("button_img8")->isChecked());
  EXPECT_FALSE(bar->findChild<QToolButton*>("button_img12")->isChecked());
  program.run("symbonoff");
  EXPECT_FALSE(bar->isVisible());
}

TEST_F(Windows, TheDiagramReadsOutSwitchesToTextAndIsSaved) {
  calculate();
  auto* surface = root("Form7")->findChild<QWidget*>("Pict1");
  auto* text = root("Form7")->findChild<QPlainTextEdit*>("Text1");
  ASSERT_TRUE(surface->isVisible());
  QTest::mouseMove(surface, surface->rect().center());
  EXPECT_FALSE(root("Form7")->findChild<QLabel*>("x1")->text().isEmpty());
  QTest::mouseDClick(surface, Qt::LeftButton, {}, surface->rect().center());
  ASSERT_TRUE(text->isVisible());
  EXPECT_GT(text->document()->blockCount(), 50);
  EXPECT_TRUE(text->toPlainText().contains("Muzzle"));
  text->selectAll();
  text->copy();
  EXPECT_TRUE(QApplication::clipboard()->text().contains('\t'));
  QTest::mouseDClick(text->viewport(), Qt::LeftButton);
  EXPECT_TRUE(surface->isVisible());

  const DrawList list = output_diagram(program.session, 600, 400, qt_text_width).list;
  for (const char* type : {"png", "bmp", "svg", "pdf"}) {
    const std::string file = home.folder() + "picture." + type;
    ASSERT_EQ(save_picture(list, file), 0) << type;
    if (std::string_view(type) == "svg") {
      const QSvgRenderer svg(qt(file));
      EXPECT_EQ(svg.viewBox().size(), QSize(600, 400));
    } else if (std::string_view(type) != "pdf") {
      EXPECT_EQ(QImageReader(qt(file)).size(), QSize(1200, 800)) << type;
    } else {
      std::ifstream in(file);
      std::string head(5, ' ');
      in.read(head.data(), 5);
      EXPECT_EQ(head, "%PDF-");
    }
  }
  EXPECT_NE(save_picture(list, home.folder() + "no/such/folder/a.png"), 0);
}

TEST_F(Windows, ARowOfATableBecomesTheLoadAndTheChargeSteps) {
  calculate();
  program.run("ld_tab");
  program.run("rech");
  auto* rows = root("Form7")->findChild<QTableView*>("tab_rows");
  ASSERT_TRUE(rows->isVisible());
  const auto bold = [&](int row) {
    return rows->model()->index(row, 0).data(Qt::FontRole).value<QFont>().bold();
  };
  EXPECT_EQ(rows->model()->rowCount(), 18);
  EXPECT_TRUE(bold(LoadTable::kNominal));
  const double charge = program.session.tables.load.charge[5];
  rows->setCurrentIndex(rows->model()->index(5, 0));
  QTest::keyClick(rows, Qt::Key_Return);
  EXPECT_EQ(program.session.state.chargeGr, charge);
  EXPECT_TRUE(bold(5) && !bold(LoadTable::kNominal));
  EXPECT_TRUE(program.session.valid.load_table && !program.session.valid.results);
  QTest::keyClick(rows, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().count('\n'), 2);

  auto* field = root("Form4")->findChild<QLineEdit*>("MPgn");
  field->setFocus();
  QTest::keyClick(field, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(program.session.state.chargeGr, std::round((charge + 1) * 1e9) / 1e9);
  EXPECT_TRUE(program.session.valid.results);
  EXPECT_TRUE(field->hasFocus());
  EXPECT_EQ(field->selectedText(), field->text());
}

TEST_F(Windows, TheViewIsSavedUnderANameThatIsTested) {
  calculate();
  const std::string target = home.folder() + "docs/view.";
  const auto answer_with = [&](const std::string& file, int type) {
    return [file, type](QDialog* shown) {
      auto* name = shown->findChild<QLineEdit*>("NamenFeld");
      name->setText(qt(file));
      if (type >= 0) {
        auto* types = shown->findChild<QComboBox*>("combo1");
        types->setCurrentIndex(type);
        QMetaObject::invokeMethod(types, "activated", Q_ARG(int, type));
      }
      shown->findChild<QPushButton*>("accept")->click();
    };
  };
  {
    Modal dialog(answer_with(target + "png", -1));
    program.run("filewrite");
  }
  EXPECT_EQ(QImageReader(qt(target + "png")).format(), "png");
  const auto before = std::filesystem::last_write_time(target + "png");
  {  // the same name again: the question is answered with no, and the dialog that comes back is closed
    int questions = 0;
    Modal dialog([&](QDialog* shown) { answer_with(target + "png", -1)(shown); });
    QTimer later;
    later.setInterval(5);
    QObject::connect(&later, &QTimer::timeout, [&] {
      auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!shown || !dialog.seen) return;
      if (auto* box = qobject_cast<QMessageBox*>(shown)) {
        ++questions;
        box->buttons().last()->click();
      } else if (questions > 0) {
        shown->reject();
      }
    });
    later.start();
    program.run("filewrite");
    EXPECT_EQ(questions, 1);
  }
  EXPECT_EQ(std::filesystem::last_write_time(target + "png"), before);
  program.run("nodia");
  {
    Modal dialog(answer_with(target, -1));
    program.run("filewrite");
  }
  std::ifstream text(target + "txt");
  const std::string lines((std::istreambuf_iterator<char>(text)), {});
  EXPECT_NE(lines.find("\r\n"), std::string::npos);
  EXPECT_NE(lines.find(s.language.fastmsg("warning1").substr(0, 20)), std::string::npos) << "the notice";
}

TEST_F(Windows, AListTellsItsFile) {
  auto* label = program.find<QLabel>("Form4", "source_PulvDat");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(utf8(label->text()), program.session.language.fastmsg("flpro") + "ternofw");
  EXPECT_EQ(label->toolTip(), label->text());
  program.run("deutsch");
  EXPECT_EQ(utf8(label->text()), program.session.language.fastmsg("flpro") + "ternofw");
  EXPECT_GT(label->width(), 60);
}

TEST_F(Windows, AClickBesideAnAxisFitsTheLoadAndCanBeUndone) {
  calculate();
  auto* surface = root("Form7")->findChild<QWidget*>("Pict1");
  const double before = program.session.state.chargeGr;
  const Diagram diagram = output_diagram(program.session, surface->width(), surface->height(), qt_text_width);
  // At the left of the axis, at two thirds of the peak.
  const double y = diagram.frame.bottom + (diagram.frame.top - diagram.frame.bottom) * 0.5;
  QTest::mouseClick(surface, Qt::LeftButton, {}, QPoint(int(diagram.frame.left) - 8, int(y)));
  EXPECT_NE(program.session.state.chargeGr, before);
  EXPECT_FALSE(program.desk->frame()->findChild<QLabel*>("status_line")->text().isEmpty());
  program.run("undo_fit");
  EXPECT_DOUBLE_EQ(program.session.state.chargeGr, before);
}

TEST_F(Windows, PlacesAndLoadComeBackAfterARestart) {
  calculate();
  program.run("arrng_stag");
  const double charge = program.session.state.chargeGr;
  const auto place = [](Running& p, const char* screen) {
    const QMdiArea& area = p.desk->frame()->area();
    return p.desk->view(screen)->window->geometry().translated(area.horizontalScrollBar()->value(),
                                                               area.verticalScrollBar()->value());
  };
  program.desk->view("Form4")->window->move(123, 45);
  program.desk->view("Form7")->window->setGeometry(30, 60, 450, 330);
  program.desk->frame()->setGeometry(20, 30, 700, 600);
  QApplication::processEvents();
  const QRect powder = place(program, "Form4"), output = place(program, "Form7");
  program.desk->frame()->close();
  ASSERT_TRUE(program.session.end_requested);

  Running again(home);
  again.session.sound = false;
  again.open();
  EXPECT_EQ(place(again, "Form4").topLeft(), powder.topLeft());
  EXPECT_EQ(place(again, "Form7"), output);
  EXPECT_EQ(again.desk->frame()->geometry(), QRect(20, 30, 700, 600));
  EXPECT_NEAR(again.session.state.chargeGr, charge, 0.05);
}

TEST_F(Windows, TheDeskComesBackAsItWasLeft) {
  calculate();
  MainFrame& frame = *program.desk->frame();
  frame.resize(780, 700);
  QTest::keyClick(&frame, Qt::Key_2, Qt::ControlModifier);
  EXPECT_EQ(program.session.options.grftyp, -1);
  program.run("rech");
  QTest::keyClick(&frame, Qt::Key_5, Qt::ControlModifier);
  auto* results = program.control("Form5", "Vnull");
  EXPECT_TRUE(results->isVisible());
  program.run("rech");
  EXPECT_TRUE(results->isVisible()) << "a run brings no tab to the front";
  program.find<QAbstractButton>("Form4", "fold_powder")->click();
  Q_EMIT frame.findChild<QSplitter*>()->splitterMoved(520, 1);
  const int left = program.session.options.deskleft;
  EXPECT_GT(left, 0);
  frame.close();

  Running again(home);
  again.session.sound = false;
  again.open();
  EXPECT_TRUE(again.control("Form5", "Vnull")->isVisible());
  EXPECT_EQ(again.session.options.folds, "Form4.fold_powder;");
  EXPECT_EQ(again.desk->frame()->size(), QSize(780, 700));
  EXPECT_EQ(again.session.options.deskleft, left);
}

TEST_F(Windows, APlaceBeyondEveryScreenIsBroughtBack) {
  Options& options = program.session.options;
  options.form1l = options.form1t = "900000";
  options.form1w = "9000000";
  options.form1h = "9000";
  program.desk->frame()->restore_places();
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  EXPECT_TRUE(room.contains(program.desk->frame()->geometry()));
  EXPECT_EQ(options.form1l, "900000") << "never in the file";
}

TEST_F(Windows, TheEndIsAskedForAndCancelKeepsAll) {
  program.session.options.intro_off = false;
  {
    QString text;
    Modal box(box_button(1, &text));
    program.run("Ende");
    EXPECT_TRUE(box.seen);
    EXPECT_TRUE(text.contains(kProgramName));
  }
  EXPECT_TRUE(program.desk->frame()->isVisible());
  EXPECT_FALSE(program.session.end_requested);
  Modal box(box_button(0));
  program.desk->frame()->close();
  EXPECT_FALSE(program.desk->frame()->isVisible());
}

TEST_F(Windows, DialogsOpenByTheirCommandsAndCloseByEscape) {
  for (const char* command : {"borefriction", "powd_set", "who"}) {
    Modal dialog([](QDialog* shown) { QTest::keyClick(shown, Qt::Key_Escape); });
    program.run(command);
    EXPECT_TRUE(dialog.seen) << command;
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << command;
  }
  program.run("qstart");
  QWidget* quick = program.desk->view("frmFast")->window;
  EXPECT_TRUE(quick->isVisible());
  QTest::keyClick(quick->findChild<QLineEdit*>("MPgn"), Qt::Key_Escape);
  EXPECT_FALSE(quick->isVisible());
}

TEST_F(Windows, TheCartridgesPictureIsShownAndZoomed) {
  auto* button = program.find<QPushButton>("Form3", "shpic");
  EXPECT_FALSE(button->isVisible()) << "no cartridge, no picture";
  const Field& cartridges = field(program.session, "Form3", "HVolDat");
  const RecordTable& records = program.session.set(RecordKind::cartridges).file.table;
  int with_picture = -1;
  for (int i = 0; i < static_cast<int>(cartridges.items.size()); ++i)
    if (!trim(records.cell(cartridges.items[static_cast<std::size_t>(i)].row, cartridge_field::picture))
             .empty())
      with_picture = i;
  ASSERT_GE(with_picture, 0);
  program.desk->act([&] { pick(program.session, "Form3", "HVolDat", with_picture); });
  ASSERT_TRUE(button->isVisible());
  int fitted = 0, larger = 0;
  Modal viewer([&](QDialog* shown) {
    auto* picture = shown->findChild<QLabel*>("picture");
    fitted = picture->width();
    shown->findChild<QPushButton*>("zoom_in")->click();
    larger = picture->width();
    shown->findChild<QPushButton*>("full")->click();
    EXPECT_EQ(picture->size(), picture->pixmap().size());
    shown->reject();
  });
  button->click();
  EXPECT_GT(fitted, 50);
  EXPECT_GT(larger, fitted);
}

TEST_F(Windows, F1OpensTheManualAtTheActiveScreen) {
  const auto shown = [this] {
    auto* manual = program.desk->frame()->findChild<QDialog*>("manual");
    return manual && manual->isVisible() ? manual->findChild<QTextBrowser*>()->source().fileName()
                                         : QString();
  };
  program.session.user->focus("Form4", "MPgn");
  QTest::keyClick(program.find<QLineEdit>("Form4", "MPgn"), Qt::Key_F1);
  EXPECT_EQ(shown(), "form4.md");
  const QString english = program.desk->frame()->findChild<QTextBrowser*>()->toPlainText();
  EXPECT_GT(english.size(), 100);
  program.desk->frame()->findChild<QDialog*>("manual")->close();
  program.run("deutsch");
  program.run("index");
  EXPECT_EQ(shown(), "form4.md");
  EXPECT_NE(program.desk->frame()->findChild<QTextBrowser*>()->toPlainText(), english);
}

TEST_F(Windows, TheCriteriaBarsMoveTheirFields) {
  QString lowest, highest;
  Modal dialog([&](QDialog* shown) {
    auto* bar = shown->findChild<QAbstractSlider*>("scrminba");
    auto* other = shown->findChild<QAbstractSlider*>("scrmaxba");
    bar->setFocus();
    QTest::keyClick(bar, Qt::Key_Home);
    other->setFocus();
    QTest::keyClick(other, Qt::Key_Home);
    EXPECT_EQ(bar->value(), bar->minimum());
    EXPECT_EQ(other->value(), other->minimum());
    bar->setFocus();
    QTest::keyClick(bar, Qt::Key_End);
    EXPECT_EQ(other->value(), other->maximum()) << "pulled along";
    lowest = shown->findChild<QLineEdit*>("tbamin")->text();
    highest = shown->findChild<QLineEdit*>("tbamax")->text();
    shown->reject();
  });
  program.desk->act([&] { open_screen(program.session, "FormPsel"); });
  EXPECT_GT(lowest.toDouble(), 0);
  EXPECT_EQ(highest, lowest);
}

TEST_F(Windows, ThePreviewTellsTheCommentAndCancelTellsNothing) {
  const FileBox box{FileMode::open,
                    DialogKind::cartridges,
                    "Open",
                    std::string(TV_SHARE_DIR) + "/data/calibers/",
                    "",
                    "Cartridges (*.vol)|*.vol",
                    ""};
  Modal cancel([](QDialog* dialog) {
    auto* files = dialog->findChild<QListWidget*>("filFiles");
    ASSERT_EQ(files->count(), 1);
    files->setCurrentRow(0);
    EXPECT_EQ(dialog->findChild<QLineEdit*>("NamenFeld")->text(), "ternofw.vol");
    EXPECT_FALSE(dialog->findChild<QPlainTextEdit*>("kommentar")->toPlainText().isEmpty());
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  EXPECT_FALSE(run_file_dialog(program.session, box, nullptr).has_value());
}

TEST_F(Windows, TheFileDialogFiltersEntersFoldersAndHandsOverTheComment) {
  const FileBox box{FileMode::save,        DialogKind::load, "Save", std::string(TV_SHARE_DIR) + "/data/", "",
                    "Loads (*.dat)|*.dat", "first line"};
  Modal dialog([](QDialog* shown) {
    auto* name = shown->findChild<QLineEdit*>("NamenFeld");
    auto* files = shown->findChild<QListWidget*>("filFiles");
    auto* ok = shown->findChild<QPushButton*>("accept");
    EXPECT_EQ(files->count(), 0);
    name->setText("loads");
    ok->click();
    EXPECT_GT(files->count(), 3);
    name->setText("9*.dat");
    ok->click();
    EXPECT_EQ(files->count(), 1);
    shown->findChild<QPlainTextEdit*>("kommentar")->appendPlainText("second line");
    name->setText("mine");
    QTest::keyClick(name, Qt::Key_Return);
  });
  const auto answer = run_file_dialog(program.session, box, nullptr);
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->file, std::string(TV_SHARE_DIR) + "/data/loads/mine");
  EXPECT_EQ(answer->comment, "first line\nsecond line");
}

TEST_F(Windows, TheInputBoxAnswersOrIsCancelled) {
  const InputBox box{"Title", {"Prompt", {}}, "0.66"};
  {
    Modal dialog([](QDialog* shown) {
      auto* answer = shown->findChild<QLineEdit*>("answer");
      EXPECT_EQ(answer->selectedText(), "0.66");
      QTest::keyClicks(answer, "0.5");
      QTest::keyClick(answer, Qt::Key_Return);
    });
    EXPECT_EQ(run_input_box(program.session, box, nullptr), "0.5");
  }
  Modal dialog(press_in_dialog("cancel"));
  EXPECT_FALSE(run_input_box(program.session, box, nullptr).has_value());
}

TEST_F(Windows, AnUnforeseenFaultIsShownAndSurvived) {
  QString text;
  Modal box(box_button(0, &text));
  program.desk->act([] { throw std::runtime_error("the roof fell in"); });
  EXPECT_TRUE(text.contains("the roof fell in"));
  program.run("english");
  EXPECT_TRUE(program.desk->frame()->isVisible());
}

TEST_F(Windows, ALongRunHearsEscapeAndNothingElse) {
  calculate();
  User& user = *program.session.user;
  user.busy(true);
  EXPECT_FALSE(user.cancelled());
  auto* charge = program.find<QLineEdit>("Form4", "MPgn");
  const QString before = charge->text();
  QWindow* window = program.desk->frame()->windowHandle();
  QTimer::singleShot(0, [&] {
    QTest::keyClick(window, Qt::Key_F5);
    QTest::keyClick(window, Qt::Key_5);
  });
  EXPECT_FALSE(user.cancelled());
  EXPECT_EQ(charge->text(), before);
  QTimer::singleShot(0, [&] { QTest::keyClick(window, Qt::Key_Escape); });
  user.progress("powder", 0.5);
  EXPECT_TRUE(user.cancelled());
  user.busy(false);
  user.busy(true);
  EXPECT_FALSE(user.cancelled()) << "the next run begins afresh";
  user.busy(false);
}

}  // namespace
}  // namespace tv
