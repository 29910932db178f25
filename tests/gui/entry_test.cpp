// Fields, lists and keys, used as a person uses them.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "gui/fold_head.h"
#include "gui/modal.h"
#include "gui/number_edit.h"
#include "gui/open_program.h"
#include "gui/program_style.h"

namespace tv {
namespace {

class Entry : public OpenProgram {
protected:
  Entry() { open_example(); }
  FieldEdit* edit(const char* screen, const char* name) { return program.find<FieldEdit>(screen, name); }
  FieldEdit* enter(const char* screen, const char* name) {
    auto* field = edit(screen, name);
    program.session.user->focus(screen, name);
    QApplication::processEvents();
    EXPECT_TRUE(field->hasFocus()) << name;
    return field;
  }
  bool calculated() const { return program.session.valid.results; }
};

TEST_F(Entry, TypingReplacesTurnsCommasAndDropsRubbish) {
  auto* metric = enter("Form3", "Llenm");
  EXPECT_EQ(metric->selectedText(), metric->text()) << "all of it is selected on focus";
  QTest::keyClicks(metric, "5x0,8 -.a");
  EXPECT_EQ(metric->text(), "50.8");
  EXPECT_EQ(edit("Form3", "Llenz")->text(), "2") << "the partner follows each key";
  EXPECT_DOUBLE_EQ(program.session.state.dim.Llen, 2.0);
  QTest::keyClick(metric, Qt::Key_Backspace);
  EXPECT_EQ(metric->text(), "50.");
  QTest::keyClick(metric, Qt::Key_Tab);
  EXPECT_FALSE(metric->hasFocus());
}

TEST_F(Entry, PastedTextIsCleanedOrRefusedWhole) {
  auto* field = enter("Form4", "MPgm");
  QApplication::clipboard()->setText(" 2,45 ");
  field->paste();
  EXPECT_EQ(field->text(), "2.45");
  field->selectAll();
  QApplication::clipboard()->setText("2.4.5 g");
  field->paste();
  EXPECT_EQ(field->text(), "2.45");
  EXPECT_NEAR(program.session.state.chargeGr, 2.45 * 15.432358353, 1e-9);
}

TEST_F(Entry, OutOfRangeIsMarkedSaidAndKept) {
  auto* field = enter("Form3", "Glenm");
  QTest::keyClicks(field, "5000");
  EXPECT_TRUE(field->toolTip().contains("1016")) << "the reason in words";
  EXPECT_FALSE(field->actions().isEmpty()) << "a sign, not the colour alone";
  QTest::keyClick(field, Qt::Key_Tab);
  enter("Form3", "Glenm");
  auto* hint = program.desk->view("Form3")->root->findChild<QLabel*>("grenzen_box");
  ASSERT_NE(hint, nullptr);
  EXPECT_TRUE(hint->isVisible());
  EXPECT_TRUE(hint->text().contains("1016"));
  QTest::keyClicks(field, "30");
  EXPECT_FALSE(hint->isVisible());
}

TEST_F(Entry, EscapeGivesTheFieldBackAndNeverTakesAChildAway) {
  const double before = program.session.state.dim.Llen;
  const QString text = edit("Form3", "Llenm")->text();
  auto* field = enter("Form3", "Llenm");
  QTest::keyClicks(field, "511");
  EXPECT_NE(program.session.state.dim.Llen, before);
  for (int i = 0; i < 3; ++i) QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_EQ(field->text(), text);
  EXPECT_DOUBLE_EQ(program.session.state.dim.Llen, before);
  EXPECT_TRUE(field->isVisible());
  program.run("sh_metr");
  EXPECT_FALSE(field->isVisible());
  program.run("metr");
  EXPECT_TRUE(field->isVisible());
}

TEST_F(Entry, AFoldOpensBySpaceAndCannotHideWhatIsWrong) {
  auto* head = program.find<FoldHead>("Form3", "fold_case");
  auto* limit = edit("Form3", "zul_P0");
  EXPECT_FALSE(limit->isVisible());
  EXPECT_TRUE(head->accessibleDescription().contains("415 MPa"));
  head->setFocus();
  QTest::keyClick(head, Qt::Key_Space);
  EXPECT_TRUE(limit->isVisible());
  QTest::keyClick(head, Qt::Key_Space);
  EXPECT_FALSE(limit->isVisible());
  program.desk->act([&] { type_text(s, "Form3", "zul_P0", "0"); });  // unknown
  EXPECT_TRUE(limit->isVisible());
  QTest::mouseClick(head, Qt::LeftButton);
  EXPECT_TRUE(limit->isVisible());
  program.desk->act([&] { type_text(s, "Form3", "zul_P0", "415"); });
  EXPECT_FALSE(limit->isVisible());
}

TEST_F(Entry, KeyFiguresTellTheShareOfTheLimitAndWhenTheyAreOld) {
  const auto share = [&] { return program.text("Form5", "key_share"); };
  const auto bars = [&] { return find_surface(s, "Form5", "key_bar")->draw(s, {100, 8}).items.size(); };
  EXPECT_EQ(program.text("Form5", "key_Mgas"), "\u2013");
  calculate();
  EXPECT_EQ(share(), "82 % of 415 MPa");
  EXPECT_GT(bars(), 0u);
  EXPECT_TRUE(
      program.desk->frame()->findChild<QWidget*>("key_figures")->accessibleName().contains(qt(share())));
  program.desk->act([&] { type_text(s, "Form4", "MPgn", "38"); });
  EXPECT_EQ(share(), s.language.text("form5", "key_stale"));
  EXPECT_EQ(bars(), 0u);
  program.desk->act([&] { type_text(s, "Form3", "zul_P0", "300"); });
  calculate();
  EXPECT_NE(share().find(s.language.text("form5", "key_over")), std::string::npos);
  program.desk->act([&] { type_text(s, "Form3", "zul_P0", "0"); });
  calculate();
  EXPECT_EQ(share(), s.language.text("form5", "key_unknown"));
  EXPECT_EQ(bars(), 0u);
}

TEST_F(Entry, EnterCalculatesFromABoxAndSpaceTogglesIt) {
  auto* box = program.find<QAbstractButton>("Form3", "TAIL");
  const bool before = box->isChecked();
  s.firstRun = false;
  box->setFocus();
  QTest::keyClick(box, Qt::Key_Return);
  EXPECT_TRUE(calculated());
  EXPECT_EQ(box->isChecked(), before);
}

TEST_F(Entry, ALoadIsCalculatedByKeyByEnterAndByButton) {
  auto* charge = enter("Form4", "MPgn");
  QTest::keyClicks(charge, "38");
  QTest::keyClick(charge, Qt::Key_Return);
  EXPECT_TRUE(calculated());
  const QString velocity = edit("Form5", "Vnull")->text();
  EXPECT_GT(velocity.toInt(), 300);
  EXPECT_TRUE(charge->hasFocus()) << "the next charge can be typed at once";

  charge->selectAll();
  QTest::keyClicks(charge, "39");
  EXPECT_FALSE(calculated());
  EXPECT_TRUE(edit("Form5", "Vnull")->font().italic()) << "results that belong to other inputs look it";
  QTest::keyClick(charge, Qt::Key_F5);
  EXPECT_TRUE(calculated());
  EXPECT_FALSE(edit("Form5", "Vnull")->font().italic());
  const int refreshed = program.desk->refreshes();
  QTest::keyClicks(charge, ".");
  EXPECT_EQ(program.desk->refreshes(), refreshed + 1) << "one action draws once";
  QTest::keyClick(charge, Qt::Key_F5);
  EXPECT_EQ(program.desk->refreshes(), refreshed + 2);
  EXPECT_GT(edit("Form5", "Vnull")->text().toInt(), velocity.toInt());

  enter("Form4", "MPgn");
  QTest::keyClicks(charge, "37");
  QTest::mouseClick(program.find<QPushButton>("Form4", "CalcAll"), Qt::LeftButton);
  EXPECT_TRUE(calculated());
  EXPECT_LT(edit("Form5", "Vnull")->text().toInt(), velocity.toInt());
}

TEST_F(Entry, LimitColoursCarryASignAndReadableText) {
  calculate();
  program.desk->act([&] { type_text(program.session, "Form3", "zul_P0", "100"); });
  calculate();
  const Field& peak = field(program.session, "Form5", "Mgas");
  ASSERT_EQ(peak.paper, Paper::red);
  auto* shown = edit("Form5", "Mgas");
  ASSERT_FALSE(shown->actions().isEmpty());
  EXPECT_TRUE(shown->actions().first()->isVisible());
  for (const QPalette& palette : {QApplication::palette(), dark_palette()})
    for (const Paper paper :
         {Paper::white, Paper::red, Paper::magenta, Paper::yellow, Paper::grey, Paper::failed})
      for (const Ink ink : {Ink::black, Ink::red, Ink::magenta, Ink::grey}) {
        EXPECT_GE(contrast(paper_colour(paper, palette), ink_colour(ink, paper, palette)), 4.5)
            << int(paper) << " " << int(ink);
      }
}

}  // namespace
}  // namespace tv
