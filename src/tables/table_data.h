// What the load table, the powder table and the point list hold, told once: their text, its copy, the
// spreadsheet, the list on the screen and the sheet of paper are made from it. Figures are in the units on
// show; one that cannot be computed is not a number.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "tables/view_units.h"
#include "text/language.h"

namespace tv {

enum class Mark { none, near_limit, over_limit, unknown };
// Peak (MPa) above the maximum pressure less 5 MPa, or above 85 % of it; unknown when the maximum is.
Mark pressure_mark(double peak, double zul_P);
std::string mark_text(Mark mark,
                      const Language& language);  // behind a row of a text; empty for none, unknown
std::string mark_word(Mark mark, const Language& language);  // in a cell; empty for none
const char* mark_key(Mark mark);                             // "near", "over", "unknown" or ""

struct TableColumn {
  const char* key = "";      // names the quantity for good
  const char* title = "";    // key in fastmsg: its name in the language
  std::string unit = {};     // behind the title
  std::string head = {};     // of the copy and of a spreadsheet, with the unit
  const char* pattern = "";  // of the figure
  std::size_t width = 0;     // in the text; 0: not there, nor in the copy
  int sheet = 0;             // place in a spreadsheet, from 1; 0: not there
  const char* missing = "?";
  bool leads = false;           // stands in the text also of a row without figures
  std::string sheet_head = {};  // of the spreadsheet where it is another than head
};

struct TableRow {
  std::string name;
  std::vector<double> values;  // one for each column
  const char* reason = "";     // why there are no figures, a key in fastmsg; empty: there are
  Mark mark = Mark::none;
  double share = std::numeric_limits<double>::quiet_NaN();  // of the maximum pressure
  bool in_sheet = true;                                     // a row of the spreadsheet
  bool has_figures() const { return *reason == '\0'; }
};

struct TableData {
  std::string name_head;      // of the rows' names
  const char* name_title;     // the same in the language, a key in fastmsg
  bool names_in_sheet;        // else the first column heads the spreadsheet
  std::string sheet_x_title;  // of the chart in the spreadsheet
  std::vector<TableColumn> columns;
  std::vector<TableRow> rows;
};

// Row 10 of the ladder is the load itself. A table that was never run has no rows.
TableData load_table_data(const LoadTable& table, const ViewUnits& units);
// Pressures of the powder table are MPa whatever the pressure unit, or psi.
TableData powder_table_data(const PowderTable& table, bool imperial);

// The row's figure as it is shown, trimmed.
std::string cell_text(const TableColumn& column, double value);
// A line of heads and the rows as shown, cells parted by tabs; empty without rows.
std::string table_tsv(const TableData& view, const Language& language);

// The target pressure in whole psi.
double whole_psi(double p_MPa);

}  // namespace tv
