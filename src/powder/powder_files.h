// The two files of measured values: closed-vessel tables (.viv) and pressure curves (.ref). Both are
// sectioned files. Writing changes only the keys whose value differs, so that a file read and written stays
// as it was, byte for byte, digits and spelling of its numbers included.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "powder/closed_vessel.h"
#include "powder/reference_curve.h"
#include "text/codepage.h"

namespace tv {

inline constexpr std::size_t kPowderComment = 254;  // characters of a comment in a file

struct VivacityFile {
  VivacityTable table;
  std::string comment;
  int failure = 0;       // FailureNumber; the table is then to be left alone
  bool foreign = false;  // read, but it has no such section
};
VivacityFile read_vivacity(const std::string& path, CodePage page);
VivacityFile parse_vivacity(std::string_view bytes, CodePage page);
std::string vivacity_bytes(std::string_view old_bytes, const VivacityTable& table, std::string_view comment,
                           CodePage page);
int write_vivacity(const std::string& path, const VivacityTable& table, std::string_view comment,
                   CodePage page);  // failure number

// A curve that misses a value is no reference; what was read stands in the table all the same.
struct ReferenceFile {
  ReferenceCurve curve;
  std::vector<std::string> missing;  // the keys without a value, in their order
  int failure = 0;

  bool good() const { return failure == 0 && missing.empty(); }
};
ReferenceFile read_reference(const std::string& path, CodePage page);
ReferenceFile parse_reference(std::string_view bytes, CodePage page);
std::string reference_bytes(std::string_view old_bytes, const ReferenceCurve& curve, CodePage page);
int write_reference(const std::string& path, const ReferenceCurve& curve, CodePage page);

// Two columns of numbers from a spreadsheet's clipboard: cells parted by tabs, semicolons or blanks, or by
// commas where the numbers have points; a comma is a point otherwise. Lines without a number, such as heads,
// are passed over. With one column alone `first` stays empty.
struct PastedRow {
  std::string first, second;
};
struct PastedColumns {
  std::vector<PastedRow> rows;
  int left_out = 0;  // lines with a number that were not understood, or beyond the rows there are
};
PastedColumns pasted_columns(std::string_view text, int most_rows);

}  // namespace tv
