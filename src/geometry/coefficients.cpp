#include "geometry/coefficients.h"

#include <cstddef>

namespace tv {
namespace {

struct Row {
  double coefficient, limit;
  bool empty() const { return !(coefficient > 0); }
};
Row row(const CoefficientRows& rows, int i) {
  const auto at = static_cast<std::size_t>(i);
  return {rows.icao[at], i < kCoefficients ? rows.limit_ms[at] : 0};
}

bool not_valid(const CoefficientRows& rows, int i) {
  const Row r = row(rows, i);
  return r.coefficient > kMostCoefficient || (r.empty() && (r.limit > 0 || i == 1));
}
bool not_falling(const CoefficientRows& rows, int i) {
  const double limit = row(rows, i).limit, next = row(rows, i + 1).limit;
  return limit < next || (limit == next && limit > 0);
}
bool after_zero_limit(const CoefficientRows& rows, int i) {
  const Row next = row(rows, i + 1);
  return !(row(rows, i).limit > 0) && (next.limit > 0 || !next.empty());
}

}  // namespace

CoefficientCheck check_coefficients(const CoefficientRows& rows) {
  for (int i = 1; i <= kCoefficients; ++i)
    if (not_valid(rows, i)) return {CoefficientFinding::not_valid, i};
  for (int i = 1; i < kCoefficients; ++i)
    if (not_falling(rows, i)) return {CoefficientFinding::not_falling, i};
  for (int i = 1; i < kCoefficients; ++i)
    if (after_zero_limit(rows, i)) return {CoefficientFinding::after_zero_limit, i};
  return {};
}

}  // namespace tv
