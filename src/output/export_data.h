// What the output window shows, as numbers for a spreadsheet: one row for each row of the view, in its units.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "output/diagram.h"
#include "tables/point_list.h"
#include "tables/table_data.h"

namespace tv {

using ExportCell = std::variant<std::monostate, double, std::string>;  // blank, number, text

struct ExportData {
  std::string title = "Ternovale > Excel";
  std::string x_title, y_title = "Y";
  std::vector<std::string> headers;
  std::vector<std::vector<ExportCell>> data;  // rows as long as the headers; the last column is the mark
  std::string notes;                          // lines for a sheet of their own: what the figures are of

  bool text_first() const;  // the first column holds names: categories instead of a scale
  std::size_t figures() const { return headers.empty() ? 0 : headers.size() - 1; }  // columns before the mark
};

// A row's mark tells how its pressure stands to the limit, in words of the language; empty when well below.

// The ladder of the load table, without the two rows of the burn rate. A failed row keeps its charge alone.
ExportData export_load_table(const LoadTable& table, const Language& language, const ViewUnits& units);
// A row that shows no figures keeps its name alone.
ExportData export_powder_table(const PowderTable& table, const Language& language, bool imperial);
ExportData export_point_list(const PointListRun& run, const Language& language, const ViewUnits& units);
// The standard diagrams, type 1 to 6: x or time from the first point, then the pressure, the velocity or
// both.
ExportData export_diagram(int type, const PointListRun& run, const Language& language,
                          const ViewUnits& units);
// The optional diagram: each point of the curve as drawn, then those of the kept one in a column of their own.
ExportData export_optional(const DiagramRun& run, const DiagramOptions& options, const Language& language);

}  // namespace tv
