// Both tables as plain monospaced text, and as tab-separated text for copying. The texts are built from what
// the run noted, never from the inputs of now.
#pragma once

#include <string>

#include "tables/table_data.h"

namespace tv {

struct TableText {
  std::string caption;                // of the window
  std::string text;                   // lines end in CR LF
  int head_line = 0, head_lines = 0;  // the lines that head the columns: the first, from 0, and their number
};

// A table that was never run gives one short text instead.
TableText DrawLoadTableText(const LoadTable& table, const Language& language, const ViewUnits& units);
TableText DrawPowderTableText(const PowderTable& table, const Language& language, bool imperial);

// What stands above the columns: the load, the step or the criterion, what was left out. Lines end in CR LF.
std::string load_table_head(const LoadTable& table, const Language& language);
std::string powder_table_head(const PowderTable& table, const Language& language);

// A line of heads and the rows as shown, cells parted by tabs; empty without rows.
std::string load_table_tsv(const LoadTable& table, const Language& language, const ViewUnits& units);
std::string powder_table_tsv(const PowderTable& table, const Language& language, bool imperial);

// Whether the shot of a row could be calculated; the others show a text instead of figures.
bool shows_figures(const PowderTable& table, const PowderRow& row);

}  // namespace tv
