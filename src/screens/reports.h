// What is printed of a run: each report as a document, its pages, and the report as plain text. Figures come
// from the copy that the run left; notes, comment and heading are those of the load now.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output/document.h"
#include "session/session.h"
#include "tables/table_data.h"

namespace tv {

enum class Report { current, data_sheet, travel_and_time, load_table, powder_table };
// By the name of its entry in the menu: "grf_akt", "grf_akt_dat", "grf_weg_zeit", "lade_tab", "pulv_tab".
std::optional<Report> report_of(std::string_view entry);

// There are figures for it, and they belong to the inputs.
bool report_ready(const Session& s, Report report);
Document report_document(const Session& s, Report report);

// The format of a page as the options tell it, without a printer.
PageFormat report_format(const Session& s, const PrintablePage& page, TextWidth text_width);
// A sheet of the paper that the options name, turned where they or the report ask for it.
std::vector<DrawList> report_pages(const Session& s, Report report,
                                   TextWidth text_width = estimated_text_width);

// Data block, results, notes of the load, shot table, run notes and notice; lines end in CR LF.
std::string report_text(const Session& s);
// What a file of a report is called, less extension: as the load's file, else as its cartridge.
std::string report_name(const Session& s);

// Papers by their names in the settings; the first two are those for pages without a printer.
struct PaperSize {
  const char* name;
  double width_mm, height_mm;
};
const PaperSize& paper_of(std::string_view name);  // A4 for a name that stands for none

// --- parts of the documents

// Groups of the data sheet with their values in the units on show; second units behind them.
std::vector<LabelGroup> load_groups(const Session& s);    // cartridge and barrel, bullet
std::vector<LabelGroup> powder_groups(const Session& s);  // powder and charge
std::vector<LabelGroup> result_groups(const Session& s);  // results of the run
std::vector<LabelGroup> note_groups(const Session& s);    // notes of the load; none where all are empty
KeyFigures key_figures(const Session& s);
PrintedTable printed_table(const TableData& data, const Language& language);

}  // namespace tv
