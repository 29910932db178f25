// Measured strings out of a chronograph's export, by looking at the content: headings, metadata above and
// below, one series or many, beside or below each other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calculators/cell.h"
#include "calculators/measured.h"
#include "calculators/sheet.h"

namespace tv {

struct ChronographOptions {
  CellUnit unit = CellUnit::none;  // mps or fps whatever the file says; none: as the file says
  std::vector<ColumnRole> roles;   // what the user says of the columns; empty: found out
};

struct ColumnFound {
  std::string heading;
  ColumnRole role = ColumnRole::none;
};

struct ChronographRead {
  Unread error = Unread::none;  // then no series
  int line = 0;                 // of the error, counted from 1
  std::vector<MeasuredSeries> series;
  CellUnit unit_read = CellUnit::none;            // mps or fps; none: nothing told, m/s assumed
  std::vector<ColumnFound> columns;               // of the first series
  std::vector<std::vector<std::string>> preview;  // the first rows of its sheet, or of the file
  bool in_doubt = false;                          // let the user assign the columns
};

// Velocities of 10 to 3000 m/s, at most 999 shots in at most 200 series. Of several velocities by distance
// (V0, V10) the first, of one velocity in two units the first, columns named as series all. Shots that the
// device did not see are left out. A file that is not understood as a whole gives no series.
ChronographRead read_chronograph(std::string_view bytes, const ChronographOptions& options = {});

// The same for text from the clipboard.
inline ChronographRead read_pasted(std::string_view text, const ChronographOptions& options = {}) {
  return read_chronograph(text, options);
}

}  // namespace tv
