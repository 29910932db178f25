// Any text read as a number, and the number written by every pattern: no input may crash, and what is written
// must read back to the same value within what the pattern shows.
#include "text/number.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void check_value(double x, std::string_view pattern) {
  const std::string text = tv::general(x);
  if (std::isfinite(x)) {
    require(tv::read_number(text) == x);
    require(tv::str(x).ends_with(text));
    // By a plain pattern the error is half of the last digit shown, or the sixteenth digit of the number.
    // The largest numbers overflow when rounded to fifteen digits.
    const std::string plain = tv::format_pattern(x, "0.00");
    const tv::NumberRead back = tv::read_number_checked(plain);
    require(back.overflow || std::fabs(back.value - x) <= 0.005000001 + std::fabs(x) * 1e-14);
    require(back.overflow || back.value != 0 || plain.front() != '-');
    tv::format_pattern(x, pattern);
  } else {
    require(text == "?" && tv::format_pattern(x, pattern) == "?");
  }
  tv::format_number(x, pattern);
  tv::format_nonzero(x, pattern);
}

}  // namespace

// The text before the first line end is a number, the bits of the number another, the rest a pattern.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.find('\n');
  const std::string_view pattern = end == input.npos ? "0.00" : input.substr(end + 1);
  const tv::NumberRead read = tv::read_number_checked(input.substr(0, end));
  require(std::isfinite(read.value));
  require(!read.overflow || read.value == 0);
  check_value(read.value, pattern);
  if (size >= sizeof(double)) {
    double bits;
    std::memcpy(&bits, data, sizeof bits);
    check_value(bits, pattern);
  }
  return 0;
}
