// The units calculator: a value converted between the two units of a pair, both ways, in single precision as
// the table of pairs holds its factors.
#pragma once

#include <string>
#include <string_view>

namespace tv {

// One row of the table: second = first * factor + offset.
struct UnitPair {
  std::string first, second;
  float factor = 1;
  float offset = 0;
};

// From the four columns of a row as text.
UnitPair unit_pair(std::string_view first, std::string_view second, std::string_view factor,
                   std::string_view offset);
std::string unit_pair_name(const UnitPair& pair);  // "inch  <-->  mm"

// The other field's text from what was typed: the shortest digits that read back to the same float, in the
// general form; "?" for what a float cannot hold.
std::string to_second(const UnitPair& pair, std::string_view first);
std::string to_first(const UnitPair& pair, std::string_view second);  // empty for a factor of 0

}  // namespace tv
