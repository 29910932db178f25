#include "gui/print_view.h"

#include <QFontDatabase>
#include <QLocale>
#include <QPainter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <algorithm>

#include "gui/captions.h"
#include "gui/main_frame.h"
#include "gui/painter.h"
#include "screens/print_pages.h"
#include "session/message.h"

namespace tv {
namespace {

constexpr double kUnitsPerInch = 96;

QPageSize usual_paper() {
  const QLocale here = QLocale::system();
  const bool letter = here.measurementSystem() == QLocale::ImperialUSSystem ||
                      here.territory() == QLocale::Canada || here.territory() == QLocale::Mexico;
  return QPageSize(letter ? QPageSize::Letter : QPageSize::A4);
}

PrintArea print_area(const QPrinter& printer) {
  const QRectF room = printer.pageRect(QPrinter::Inch);
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  return {room.width() * kUnitsPerInch, room.height() * kUnitsPerInch, utf8(fixed.family()), qt_text_width};
}

}  // namespace

void set_up_printer(QPrinter& printer, const Session& s) {
  const Options& o = s.options;
  printer.setCreator(kProgramName);
  printer.setDocName(qt(s.shown.block.cartridge.empty() ? kProgramName : s.shown.block.cartridge));
  printer.setPageSize(usual_paper());
  // A device that cannot print so near to the edge keeps its own least margins.
  const QMarginsF least = printer.pageLayout().minimumMargins();  // points by default
  const auto margin = [](double cm, double least_pt) { return std::max(cm * 10, least_pt * 25.4 / 72); };
  printer.setPageMargins(
      QMarginsF(margin(o.prileftcm, least.left()), margin(o.pritopcm, least.top()),
                margin(o.prirightcm, least.right()), margin(o.pribottomcm, least.bottom())),
      QPageLayout::Millimeter);
  if (wants_landscape(s, print_area(printer))) printer.setPageOrientation(QPageLayout::Landscape);
}

bool paint_output(QPrinter& printer, const Session& s) {
  const std::vector<PrintPage> pages = output_pages(s, print_area(printer));
  QPainter painter;
  if (pages.empty() || !painter.begin(&printer)) return false;
  const double scale = printer.logicalDpiX() / kUnitsPerInch;
  painter.scale(scale, scale);
  bool first = true;
  for (const PrintPage& page : pages) {
    if (!first && !printer.newPage()) return false;
    first = false;
    for (const PagePart& part : page) {
      painter.save();
      painter.translate(part.at.x, part.at.y);
      replay(painter, part.list);
      painter.restore();
    }
  }
  return painter.end() && printer.printerState() != QPrinter::Error;
}

void preview_output(Desk& desk) {
  const Session& s = desk.session();
  QPrinter printer(QPrinter::HighResolution);
  set_up_printer(printer, s);
  QPrintPreviewDialog preview(&printer, desk.frame());
  preview.setWindowTitle(plain_caption(qt(s.language.text("frmMAIN", "grfpri"))) + " - " + kProgramName);
  preview.resize(desk.frame()->size().boundedTo(QSize(1000, 900)));
  bool failed = false;
  QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                   [&](QPrinter* device) { failed = !paint_output(*device, s) || failed; });
  preview.exec();
  if (failed) warn(desk.session(), MessageText(s).msg(416));
}

}  // namespace tv
