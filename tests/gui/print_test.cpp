// What comes out of the printer, read back from PDF as a reader would.
#include <gtest/gtest.h>

#include <QFile>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include "gui/modal.h"
#include "gui/open_program.h"
#include "gui/painter.h"
#include "gui/print_view.h"
#include "screens/commands.h"
#include "screens/page_checks.h"
#include "session/language_switch.h"
#include "session/run.h"

namespace tv {
namespace {

class Print : public OpenProgram {
protected:
  void calculate() {
    open_example();
    OpenProgram::calculate();
  }
  // Each page as text.
  QStringList printed(Report report = Report::current) {
    const QString file = qt(home.folder() + "out.pdf");
    QFile out(file);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(report_pdf(program.session, report));
    out.close();
    QProcess reader;
    reader.start("pdftotext", {"-layout", file, "-"});
    EXPECT_TRUE(reader.waitForFinished()) << "pdftotext (poppler-utils) is missing";
    QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split('\f');
    pages.removeLast();
    return pages;
  }
};

// Blanks do not count: the notes are broken into lines anew. Neither do ligatures.
QString packed(const QString& text) {
  return text.normalized(QString::NormalizationForm_KC).remove(QRegularExpression("\\s+"));
}

TEST_F(Print, EveryPageTellsTheLoadTheNotesAndTheNotice) {
  calculate();
  s.options.nowarn = true;
  const QString notice = packed(qt(s.language.notice()));
  // The inputs of now are another load's.
  program.desk->act([&] { type_text(s, "Form3", "Llenm", "500"); });
  EXPECT_FALSE(command_enabled(s, *find_command("grf_akt"))) << "stale";
  program.desk->act([&] { press(s, "Form4", "CalcAll"); });
  const std::string cartridge = s.shown.block.cartridge;
  s.load.pattyp = "something else";
  s.state.dim.zul_P = 200;
  for (const int mode : {3, 6, 0}) {
    SetDisplayMode(s, mode);
    const QStringList pages = printed(mode == 6 ? Report::data_sheet : Report::current);
    ASSERT_EQ(mode == 0, pages.size() > 1) << mode;
    for (int i = 0; i < pages.size(); ++i) {
      const QString page = packed(pages[i]);
      EXPECT_EQ(page.count(notice), 1) << mode << " " << i;
      EXPECT_TRUE(page.contains(packed(qt(cartridge))));
      EXPECT_FALSE(page.contains("somethingelse"));
      EXPECT_TRUE(page.contains("IPSC")) << "the notes";
      EXPECT_TRUE(page.contains(QString("%1of%2").arg(i + 1).arg(pages.size())));
    }
    EXPECT_TRUE(pages.join("").contains(qt(field(s, "Form5", "Vnull").text)));
  }
}

// With the fonts of the screen, which the estimated widths of the other tests only come near to.
TEST_F(Print, PagesAreWholeWithRealFonts) {
  calculate();
  for (const char* language : {"english", "german", "french", "russian"}) {
    program.desk->act([&] { language_switch(s, language); });
    for (const Report report : {Report::current, Report::data_sheet, Report::travel_and_time}) {
      SCOPED_TRACE(std::string(language) + " " + std::to_string(static_cast<int>(report)));
      tv_test::expect_whole(s, report, report_format(s, {11905, 16837, 0, 0}, qt_text_width));
    }
  }
  s.options.prileftcm = 30;
  EXPECT_TRUE(report_pdf(s, Report::data_sheet).isEmpty()) << "no room";
}

TEST_F(Print, ThePreviewComesByItsKeyWithoutAnyPrinter) {
  calculate();
  ASSERT_TRUE(QTest::qWaitForWindowActive(program.desk->frame()));
  int pages = 0;
  Modal preview([&](QDialog* shown) {
    auto* sheet = shown->findChild<QPrintPreviewWidget*>();
    ASSERT_NE(sheet, nullptr);
    sheet->updatePreview();
    pages = sheet->pageCount();
    shown->reject();
  });
  QTest::keyClick(program.desk->frame(), Qt::Key_P, Qt::ControlModifier);
  EXPECT_EQ(pages, 1);
}

}  // namespace
}  // namespace tv
