#include "geometry/coefficients.h"

#include <gtest/gtest.h>

namespace tv {
namespace {

TEST(Coefficients, ChecksInTheirOrder) {
  using enum CoefficientFinding;
  const struct {
    std::array<double, 6> icao, limit;
    CoefficientFinding finding;
    int row;
  } cases[] = {
      {{0, 0.5}, {}, none, 0},
      {{0, 0.5, 0.48, 0.46, 0.44, 0.42}, {0, 900, 700, 500, 300}, none, 0},
      {{0, 3.5}, {}, none, 0},
      {{}, {}, not_valid, 1},  // not one
      {{0, 3.6}, {}, not_valid, 1},
      {{0, 0.5, 0}, {0, 900, 700}, not_valid, 2},
      {{0, 0.5, 3.6}, {0, 900}, not_valid, 2},
      {{0, 0.5, 0.4, 0.3}, {0, 700, 900}, not_falling, 1},
      {{0, 0.5, 0.4, 0.3}, {0, 700, 700}, not_falling, 1},
      {{0, 0.5, 0.4, 0, 0.3}, {0, 900}, after_zero_limit, 3},
      {{0, 0.5, 0.4}, {}, after_zero_limit, 1},
      {{0, 0.5, 0.4, 0, 0.2}, {0, 0, 900, 800}, not_valid, 3},  // and more is wrong: this kind comes first
      {{0, 0.5, 0.4, 0.3}, {0, 0, 900}, not_falling, 1},        // so does this
      {{0, 0.5, 0.4}, {0, 900, 0, 0, 0, 77}, none, 0},          // the last row has no limit
  };
  for (const auto& c : cases) {
    const auto check = check_coefficients({c.icao, {}, c.limit});
    EXPECT_EQ(check.finding, c.finding) << &c - cases;
    EXPECT_EQ(check.row, c.row) << &c - cases;
  }
  EXPECT_DOUBLE_EQ(metro_of_icao(0.982379), 1);
  EXPECT_DOUBLE_EQ(icao_of_metro(metro_of_icao(0.475)), 0.475);
}

}  // namespace
}  // namespace tv
