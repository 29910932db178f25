// Export of a view to a spreadsheet file.
#pragma once

#include <string>

#include "output/export_data.h"

namespace tv {

// Both give the failure number, 0 if all went well. On failure the old file stands.

// A workbook with a sheet of numbers ("... Results"), one of the notes ("... Notes") and, with more than one
// row, a chart sheet ("... Graph"): curves over the first column, or columns when that holds names. Texts are
// written as texts, whatever they begin with; blank cells stay empty.
int write_xlsx(const ExportData& data, const std::string& path);

// UTF-8 with its mark, points as decimal signs, commas between cells, lines ended by CR LF; texts with
// commas, quotes or line ends in quotes, texts that begin like a formula behind an apostrophe. Without the
// notes.
int write_csv(const ExportData& data, const std::string& path);
std::string csv_text(const ExportData& data);

}  // namespace tv
