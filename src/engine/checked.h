// Operations that find their own failures. Status flags are moved by the optimiser and a last look for
// infinities misses those that were divided away (1/(1/0) is 0), so each formula that can fail uses these.
// Underflow is none.
#pragma once

#include <cmath>

#include "text/failure.h"

namespace tv {

// Thrown inside a room and caught at the edge of its public operations; it never leaves them.
struct ArithmeticFailure {
  int number;  // kInvalidArgument, kOverflow or kDivisionByZero
};

[[noreturn]] inline void fail_arithmetic(int number) { throw ArithmeticFailure{number}; }

inline double finite(double x) {
  if (!std::isfinite(x)) [[unlikely]]
    fail_arithmetic(kOverflow);
  return x;
}
inline double checked_div(double a, double b) {
  if (b == 0) [[unlikely]]
    fail_arithmetic(kDivisionByZero);
  return finite(a / b);
}
inline double checked_sqrt(double x) {
  if (!(x >= 0)) [[unlikely]]
    fail_arithmetic(kInvalidArgument);
  return finite(std::sqrt(x));
}
inline double checked_log(double x) {
  if (!(x > 0)) [[unlikely]]
    fail_arithmetic(kInvalidArgument);
  return finite(std::log(x));
}
inline double checked_pow(double x, double y) {
  if (x == 0 && y < 0) [[unlikely]]
    fail_arithmetic(kDivisionByZero);
  const double r = std::pow(x, y);
  if (!std::isfinite(r)) [[unlikely]]
    fail_arithmetic(std::isnan(r) ? kInvalidArgument : kOverflow);
  return r;
}
// Arc sine as atan(s / sqrt(1 - s^2)), the form the program uses throughout.
inline double checked_asin(double s) { return std::atan(checked_div(s, checked_sqrt(1 - s * s))); }

}  // namespace tv
