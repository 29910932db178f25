#include "calculators/units.h"

#include <array>
#include <charconv>
#include <cmath>

#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

float read_float(std::string_view text) { return static_cast<float>(read_number(text)); }

// The double nearest to the float's shortest digits has the same shortest digits.
std::string general_float(float x) {
  if (!std::isfinite(x)) return "?";
  std::array<char, 32> digits;
  const auto done = std::to_chars(digits.data(), digits.data() + digits.size(), x);
  return general(read_number({digits.data(), done.ptr}));
}

}  // namespace

UnitPair unit_pair(std::string_view first, std::string_view second, std::string_view factor,
                   std::string_view offset) {
  return {std::string(trim(first)), std::string(trim(second)), read_float(factor), read_float(offset)};
}

std::string unit_pair_name(const UnitPair& pair) { return pair.first + "  <-->  " + pair.second; }

std::string to_second(const UnitPair& pair, std::string_view first) {
  return general_float(read_float(first) * pair.factor + pair.offset);
}

std::string to_first(const UnitPair& pair, std::string_view second) {
  if (pair.factor == 0) return {};
  return general_float((read_float(second) - pair.offset) / pair.factor);
}

}  // namespace tv
