// What comes out of the printer, read back from PDF as a reader would.
#include <gtest/gtest.h>

#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include "gui/modal.h"
#include "gui/open_program.h"
#include "gui/print_view.h"
#include "screens/print_pages.h"
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
  QStringList printed() {
    const QString file = qt(home.folder() + "out.pdf");
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(file);
    set_up_printer(printer, program.session);
    orientation = printer.pageLayout().orientation();
    EXPECT_TRUE(paint_output(printer, program.session));
    QProcess reader;
    reader.start("pdftotext", {"-layout", file, "-"});
    EXPECT_TRUE(reader.waitForFinished()) << "pdftotext (poppler-utils) is missing";
    QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split('\f');
    pages.removeLast();
    return pages;
  }

  QPageLayout::Orientation orientation = QPageLayout::Portrait;
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
  EXPECT_FALSE(find_command("grf_akt")->enabled(s, *find_command("grf_akt"))) << "stale";
  program.desk->act([&] { press(s, "Form4", "CalcAll"); });
  const std::string cartridge = s.shown.block.cartridge;
  s.load.pattyp = "something else";
  s.state.dim.zul_P = 200;
  for (const int mode : {3, 6, 0}) {
    SetDisplayMode(s, mode);
    const QStringList pages = printed();
    ASSERT_EQ(mode == 0, pages.size() > 1) << mode;
    for (int i = 0; i < pages.size(); ++i) {
      const QString page = packed(pages[i]);
      EXPECT_TRUE(page.contains(notice)) << mode << " " << i;
      EXPECT_TRUE(page.contains(packed(qt(cartridge))));
      EXPECT_FALSE(page.contains("somethingelse"));
      EXPECT_TRUE(page.contains("IPSC")) << "the notes";
      EXPECT_TRUE(page.contains(QString("%1/%2").arg(i + 1).arg(pages.size())));
    }
    if (mode == 0) {
      EXPECT_TRUE(pages.join("").contains(qt(field(s, "Form5", "Vnull").text)));
    }
  }
}

TEST_F(Print, WideTextTurnsThePaperAndNoRoomPrintsNothing) {
  calculate();
  SetDisplayMode(s, 0);
  printed();
  const PrintArea narrow{180, 900, "monospace", estimated_text_width};
  EXPECT_EQ(orientation, QPageLayout::Portrait);
  EXPECT_TRUE(wants_landscape(s, narrow));
  EXPECT_FALSE(wants_landscape(s, {1000, 600, "monospace", estimated_text_width}));
  for (const PrintPage& page : output_pages(s, narrow))
    for (const DrawItem& item : page.at(1).list.items)
      EXPECT_LE(estimated_text_width(item.text, item.size, false, false, "monospace"), 181);
  EXPECT_TRUE(output_pages(s, {100, 900, "monospace", estimated_text_width}).empty());
  EXPECT_TRUE(output_pages(s, {700, 120, "monospace", estimated_text_width}).empty());
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(qt(home.folder() + "no/such/folder.pdf"));
  set_up_printer(printer, s);
  EXPECT_FALSE(paint_output(printer, s)) << "no such folder";
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
