// A file of rows and cells, whatever it was written with: text parted by commas, semicolons or tabs in any
// usual encoding, or a workbook. Cells are texts; what they mean is found out elsewhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tv {

// Why a file was not understood.
enum class Unread {
  none,
  too_large,     // more bytes, cells or shots than a chronograph could have seen
  not_text,      // control characters, an unknown form
  open_quote,    // a quoted cell that never ends
  bad_workbook,  // damaged, encrypted, or a part is missing
  no_velocity,   // nothing that looks like a column of velocities
  bad_number,    // a shot whose velocity is no number
  out_of_range,  // a velocity that no gun gives
};

struct SheetRow {
  int line = 0;                    // in the file, counted from 1
  std::vector<std::string> cells;  // trimmed

  // Blank behind the last cell.
  const std::string& cell(std::size_t column) const;
  bool blank() const;
};

struct Sheet {
  std::string name;  // of a workbook's sheet
  std::vector<SheetRow> rows;
};

struct SheetsRead {
  std::vector<Sheet> sheets;  // one for text
  Unread error = Unread::none;
  int line = 0;  // of the error
};

inline constexpr std::size_t kMostSheetBytes = 8 << 20;  // of a file, and of a workbook's parts unpacked
inline constexpr std::size_t kMostCells = 500000;
inline constexpr std::size_t kMostCharacters = 200;  // of a cell; the rest is cut

// Text or workbook by its first bytes.
SheetsRead read_sheets(std::string_view bytes);
// Parts of it: UTF-8 and UTF-16 with or without mark, else code page 1252; the separator is looked for.
SheetsRead read_text_sheet(std::string_view bytes);
SheetsRead read_workbook(std::string_view bytes);  // .xlsx

}  // namespace tv
