// The frame, the output window, dialogs, start and end.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QSvgRenderer>
#include <QTableView>
#include <QTest>
#include <QTextBlock>
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
#include "session/file_names.h"

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

  auto* field = program.find<QLineEdit>("Form4", "MPgn");
  program.session.user->focus("Form4", "MPgn");
  QApplication::processEvents();
  QTest::keyClick(field, Qt::Key_Up, Qt::ControlModifier);
  EXPECT_EQ(program.session.state.chargeGr, std::round((charge + 1) * 1e9) / 1e9);
  EXPECT_TRUE(program.session.valid.results);
  EXPECT_TRUE(field->hasFocus());
  EXPECT_EQ(field->selectedText(), field->text());
}

TEST_F(Windows, TheViewIsSavedUnderANameThatIsTested) {
  calculate();
  const std::string target = home.folder() + "docs/view.";
  // Names the file; where it is there already the question is answered with no, and the dialog that comes back closed.
  const auto save = [&](const std::string& file) {
    int dialogs = 0, questions = 0;
    QTimer answer;
    answer.setInterval(5);
    QObject::connect(&answer, &QTimer::timeout, [&] {
      auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (auto* box = qobject_cast<QMessageBox*>(shown)) {
        ++questions;
        box->buttons().last()->click();
      } else if (shown && dialogs++ == 0) {
        shown->findChild<QLineEdit*>("NamenFeld")->setText(qt(file));
        shown->findChild<QPushButton*>("accept")->click();
      } else if (shown) {
        shown->reject();
      }
    });
    answer.start();
    program.run("filewrite");
    return questions;
  };
  EXPECT_EQ(save(target + "png"), 0);
  EXPECT_EQ(QImageReader(qt(target + "png")).format(), "png");
  EXPECT_EQ(save(target + "png"), 1);
  program.run("nodia");
  EXPECT_EQ(save(target), 0);
  std::ifstream text(target + "txt");
  const std::string lines((std::istreambuf_iterator<char>(text)), {});
  EXPECT_NE(lines.find("\r\n"), std::string::npos);
  EXPECT_NE(lines.find(s.language.fastmsg("warning1").substr(0, 20)), std::string::npos) << "the notice";
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
  QTest::keyClick(&frame, Qt::Key_6, Qt::ControlModifier);
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

TEST_F(Windows, TheManualIsSearchedAndListed) {
  program.run("french");
  program.run("index");
  auto* manual = program.desk->frame()->findChild<QDialog*>("manual");
  auto* text = manual->findChild<QTextBrowser*>();
  auto* pages = manual->findChild<QListWidget*>("pages");
  const QString folder = text->source().toLocalFile().section('/', 0, -2);
  EXPECT_EQ(pages->count(), QDir(folder).entryList({"*.md"}).size());
  EXPECT_TRUE(utf8(manual->findChild<QLabel*>("note")->text()).find("anglaise") != std::string::npos);
  manual->findChild<QPushButton*>("contents")->click();
  EXPECT_EQ(pages->currentRow(), 0);
  auto* search = manual->findChild<QLineEdit*>("search");
  search->setText("ornamold");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_EQ(text->source().fileName(), "main.md");
  EXPECT_EQ(text->textCursor().selectedText(), "Ornamold");
  EXPECT_EQ(pages->currentRow(), 1);
  search->setText("Grenzgeschwindigkeit ohne Sinn");
  QTest::keyClick(search, Qt::Key_Return);
  EXPECT_FALSE(manual->findChild<QLabel*>("result")->text().isEmpty());
  text->setSource(QUrl("index.md#worth-and-limits-of-a-prediction"));
  EXPECT_EQ(utf8(text->textCursor().block().text()), "Worth and limits of a prediction");
  manual->close();
}

bool shows(const QListView* files, int rows) {
  return QTest::qWaitFor([&] { return files->model()->rowCount(files->rootIndex()) == rows; });
}

TEST_F(Windows, TheFileDialogFiltersEntersFoldersAndHandsOverTheComment) {
  const FileBox box{FileMode::save,        DialogKind::load, "Save", std::string(TV_SHARE_DIR) + "/data/", "",
                    "Loads (*.dat)|*.dat", "first line"};
  Modal dialog([](QDialog* shown) {
    auto* name = shown->findChild<QLineEdit*>("NamenFeld");
    auto* files = shown->findChild<QListView*>("filFiles");
    auto* ok = shown->findChild<QPushButton*>("accept");
    EXPECT_EQ(ok->text(), "&Save");
    const auto* places = shown->findChild<QListView*>("verzeichnis")->model();
    QStringList named;
    for (int row = 0; row < places->rowCount(); ++row) named << places->index(row, 0).data().toString();
    EXPECT_TRUE(named.contains("Examples")) << utf8(named.join(' '));
    name->setText("loads");
    ok->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return files->model()->rowCount(files->rootIndex()) > 3; }));
    EXPECT_TRUE(shown->findChild<QLabel*>("lblAktDir")->text().endsWith("/data/loads"));
    name->setText("9*.dat");
    ok->click();
    EXPECT_TRUE(shows(files, 1));
    shown->findChild<QPlainTextEdit*>("kommentar")->insertPlainText(QString::fromUtf8("\u0416\u20ac"));
    shown->findChild<QPlainTextEdit*>("kommentar")->appendPlainText("second line");
    name->setText("mine");
    QTest::keyClick(name, Qt::Key_Return);
  });
  const auto answer = run_file_dialog(program.session, box, nullptr);
  ASSERT_TRUE(answer.has_value());
  EXPECT_EQ(answer->file, std::string(TV_SHARE_DIR) + "/data/loads/mine");
  EXPECT_EQ(answer->comment, "\u20acfirst line\nsecond line") << "what the page lacks is dropped";
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

}  // namespace
}  // namespace tv
