// Ballistic coefficients of a bullet: one quantity told by two standards, and up to five of them, each down
// to a limit velocity. The shot inside the barrel does not depend on them; they are kept with the bullet.
#pragma once

#include <array>

namespace tv {

inline constexpr int kCoefficients = 5;
inline constexpr double kMostCoefficient = 3.5;
inline constexpr double kUnknownCoefficient = 4;  // this or more stands for none known

// The same coefficient by the other standard atmosphere.
inline double metro_of_icao(double icao) { return icao / 0.982379; }
inline double icao_of_metro(double metro) { return metro * 0.982379; }

// Rows 1 to 5; slot 0 is not used.
struct CoefficientRows {
  std::array<double, kCoefficients + 1> icao{};      // not above 0: an empty row
  std::array<double, kCoefficients + 1> metro{};     //
  std::array<double, kCoefficients + 1> limit_ms{};  // valid down to this velocity; row 5 has 0
  bool operator==(const CoefficientRows&) const = default;
};

enum class CoefficientFinding {
  none,
  not_valid,         // a limit without a coefficient or with one above the most there is; row 1 empty
  not_falling,       // a limit not above the next one
  after_zero_limit,  // a row with values follows a limit of 0
};
struct CoefficientCheck {
  CoefficientFinding finding = CoefficientFinding::none;
  int row = 0;
};
// The first thing that is wrong, one kind after the other, each from row 1 on.
CoefficientCheck check_coefficients(const CoefficientRows& rows);

}  // namespace tv
