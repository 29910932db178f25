#include "gui/print_view.h"

#include <QBuffer>
#include <QLocale>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>
#include <cmath>

#include "gui/captions.h"
#include "gui/main_frame.h"
#include "gui/painter.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/settings.h"
#include "text/file.h"

namespace tv {
namespace {

constexpr double kUnitsPerInch = 96, kTwipsPerPoint = 20;
constexpr int kPdfDpi = 1200;

QPageSize usual_paper() {
  const QLocale here = QLocale::system();
  const bool letter = here.measurementSystem() == QLocale::ImperialUSSystem ||
                      here.territory() == QLocale::Canada || here.territory() == QLocale::Mexico;
  return QPageSize(letter ? QPageSize::Letter : QPageSize::A4);
}

QPageSize chosen_paper(const Session& s) {
  for (int id = 0; id <= QPageSize::LastPageSize; ++id) {
    const auto each = static_cast<QPageSize::PageSizeId>(id);
    if (utf8(QPageSize::key(each)) == s.options.pri_paper) return QPageSize(each);
  }
  return usual_paper();
}

QPageLayout layout_of(const Session& s) {
  const Options& o = s.options;
  // The whole sheet is painted on; where on it the margins are kept is told by the pages themselves.
  QPageLayout layout(chosen_paper(s), o.pri_landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                     QMarginsF(), QPageLayout::Millimeter);
  layout.setMode(QPageLayout::FullPageMode);
  layout.setMargins(QMarginsF(o.prileftcm, o.pritopcm, o.prirightcm, o.pribottomcm) * 10);
  return layout;
}

// The page as the device has it, with the margins that it was given, which a preview may have changed.
PageFormat format_of(const QPagedPaintDevice& device, const Session& s) {
  const QPageLayout layout = device.pageLayout();
  const QRectF paper = layout.fullRect(QPageLayout::Point);
  QPageLayout in_points = layout;
  in_points.setUnits(QPageLayout::Point);
  const QMarginsF edge = in_points.minimumMargins();
  const auto twips = [](double points) { return static_cast<float>(points * kTwipsPerPoint); };
  const PrintablePage page{twips(paper.width() - edge.left() - edge.right()),
                           twips(paper.height() - edge.top() - edge.bottom()), twips(edge.left()),
                           twips(edge.top())};
  PageFormat format = report_format(s, page, qt_text_width);
  const QMarginsF margins = layout.margins(QPageLayout::Millimeter) / 10;
  const auto cm = [](double value) { return static_cast<float>(value); };
  if (!SetMargins(cm(margins.top()), cm(margins.left()), cm(margins.right()), cm(margins.bottom()), page,
                  format.box))
    format.box = {};
  return format;
}

// Whether the pages are there and were painted.
bool paint_pages(QPagedPaintDevice& device, const std::vector<DrawList>& pages, const PrintablePage& page) {
  QPainter painter;
  if (pages.empty() || !painter.begin(&device)) return false;
  const double scale = device.logicalDpiX() / kUnitsPerInch;
  painter.scale(scale, scale);
  painter.translate(page.ox / kTwipsPerUnit, page.oy / kTwipsPerUnit);
  bool first = true;
  for (const DrawList& list : pages) {
    if (!first && !device.newPage()) return false;
    first = false;
    replay(painter, list);
  }
  return painter.end();
}

void no_room(Session& s) { warn(s, MessageText(s).caption("fileout", "84txt")); }

void save_pdf(Desk& desk, Report report) {
  Session& s = desk.session();
  const QByteArray bytes = report_pdf(s, report);
  if (bytes.isEmpty()) return no_room(s);
  const auto answer =
      ask_file(s,
               {FileMode::save, DialogKind::text, s.language.fastmsg("flfdial", 33), load_folder(s),
                report_name(s) + ".pdf", s.language.fastmsg("flffilt", 33), ""},
               {"pdf"});
  if (!answer) return;
  if (const int failure = write_file(answer->file, bytes.toStdString()))
    warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
}

}  // namespace

void set_up_pages(QPagedPaintDevice& device, const Session& s, Report report) {
  device.setPageLayout(layout_of(s));
  if (wants_landscape(report_document(s, report), format_of(device, s)))
    device.setPageOrientation(QPageLayout::Landscape);
}

bool paint_report(QPagedPaintDevice& device, const Session& s, Report report) {
  const PageFormat format = format_of(device, s);
  return paint_pages(device, document_pages(report_document(s, report), format), format.page);
}

QByteArray report_pdf(const Session& s, Report report) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kPdfDpi);
  writer.setCreator(kProgramName);
  writer.setTitle(qt(report_name(s)));
  set_up_pages(writer, s, report);
  if (!paint_report(writer, s, report)) return {};
  buffer.close();
  return bytes;
}

void preview_report(Desk& desk, Report report) {
  Session& s = desk.session();
  QPrinter printer(QPrinter::HighResolution);
  printer.setCreator(kProgramName);
  printer.setDocName(qt(report_name(s)));
  set_up_pages(printer, s, report);
  if (document_pages(report_document(s, report), format_of(printer, s)).empty()) return no_room(s);
  QPrintPreviewDialog preview(&printer, desk.frame());
  preview.setWindowTitle(plain_caption(qt(s.language.text("frmMAIN", "grfpri"))) + " - " + kProgramName);
  preview.resize(desk.frame()->size().boundedTo(QSize(1000, 900)));
  if (auto* bar = preview.findChild<QToolBar*>()) {
    bar->addSeparator();
    QAction* pdf = bar->addAction(qt(s.language.fastmsg("flfdial", 33)));
    pdf->setObjectName("savepdf");
    QObject::connect(pdf, &QAction::triggered, &preview,
                     [&desk, report] { desk.act([&] { save_pdf(desk, report); }); });
  }
  bool failed = false;
  QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview, [&](QPrinter* device) {
    failed = !paint_report(*device, s, report) || device->printerState() == QPrinter::Error || failed;
  });
  preview.exec();
  if (failed) warn(s, MessageText(s).msg(416));
}

void edit_page_setup(Desk& desk) {
  Session& s = desk.session();
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(layout_of(s));
  QPageSetupDialog dialog(&printer, desk.frame());
  if (dialog.exec() != QDialog::Accepted) return;
  const QPageLayout layout = printer.pageLayout();
  const QMarginsF margins = layout.margins(QPageLayout::Millimeter) / 10;
  const auto hundredths = [](double cm) { return std::round(cm * 100) / 100; };
  Options& o = s.options;
  o.prileftcm = hundredths(margins.left());
  o.pritopcm = hundredths(margins.top());
  o.prirightcm = hundredths(margins.right());
  o.pribottomcm = hundredths(margins.bottom());
  o.pri_paper = utf8(layout.pageSize().key());
  o.pri_landscape = layout.orientation() == QPageLayout::Landscape;
  store_options(s, {"prileftcm", "pritopcm", "prirightcm", "pribottomcm", "pri_paper", "pri_landscape"});
}

}  // namespace tv
