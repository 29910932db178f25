// Both tables as plain monospaced text, and as tab-separated text for copying. The texts are built from what
// the run noted, never from the inputs of now.
#pragma once

#include <string>

#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "text/language.h"

namespace tv {

struct TableText {
  std::string caption;                // of the window
  std::string text;                   // lines end in CR LF
  int head_line = 0, head_lines = 0;  // the lines that head the columns: the first, from 0, and their number
};

// A table that was never run gives one short text instead.
TableText DrawLoadTableText(const LoadTable& table, const Language& language, const ViewUnits& units);
// Pressures of the powder table are MPa whatever the pressure unit, or psi.
TableText DrawPowderTableText(const PowderTable& table, const Language& language, bool imperial);

// A line of heads and the rows as shown, cells parted by tabs; empty without rows.
std::string load_table_tsv(const LoadTable& table, const Language& language, const ViewUnits& units);
std::string powder_table_tsv(const PowderTable& table, const Language& language, bool imperial);

// The target pressure in whole psi.
double whole_psi(double p_MPa);

enum class Mark { none, near_limit, over_limit };
// Peak (MPa) above the maximum pressure less 5 MPa, or above 85 % of it; none when the limit is unknown.
Mark pressure_mark(double peak, double zul_P);
std::string mark_text(Mark mark, const Language& language);  // empty for none

// Whether the shot of a row could be calculated; the others show a text instead of figures.
bool shows_figures(const PowderTable& table, const PowderRow& row);

}  // namespace tv
