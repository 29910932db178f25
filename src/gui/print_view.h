// Printing a report: preview, printer, PDF. All of it works without any printer.
#pragma once

#include <QByteArray>

#include "gui/desk.h"
#include "screens/reports.h"

class QPagedPaintDevice;
class QPrinter;

namespace tv {

// Paper, orientation and margins by the options, turned if the report wants it.
void set_up_pages(QPagedPaintDevice& device, const Session& s, Report report);
// All pages; false on failure or when the margins leave no room.
bool paint_report(QPagedPaintDevice& device, const Session& s, Report report);
// The report as a PDF document; empty when the margins leave no room.
QByteArray report_pdf(const Session& s, Report report);

void preview_report(Desk& desk, Report report);
void edit_page_setup(Desk& desk);  // paper, orientation, margins

}  // namespace tv
