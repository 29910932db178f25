// Reading and writing numbers as text, the same in every locale: a point is the decimal sign.
#pragma once

#include <string>
#include <string_view>

namespace tv {

struct NumberRead {
  double value = 0;       // 0 when no digits were found or the number overflows
  bool overflow = false;  // the digits stand for more than a double can hold
  bool whole = false;     // the text is that number from end to end, but for blanks
};

// Leading blanks, an optional sign, digits with at most one point, an exponent by E or D with at least one
// digit; reading ends at the first other character. No digits give 0. No hexadecimal forms, no "inf", no
// "nan".
NumberRead read_number_checked(std::string_view text);

// The value alone; a number that overflows reads as 0.
double read_number(std::string_view text);

// A number that stands in a file: one comma and no point means the point, as people in half of the world
// write it. A number that overflows is not whole.
NumberRead read_stored(std::string_view text);

// The largest whole number not above x (floor, in double).
double int_of(double x);

// The same as an int; 0 for what an int cannot hold.
int to_int(double x);

// General form: the shortest digits that read back to the same double, a leading zero, plain notation from
// 1e-5 to 1e15, else as "1E-06". Not finite: "?".
std::string general(double x);

// general() with a leading blank when x is not negative.
std::string str(double x);

// Applies a pattern: "0" a digit always shown, "#" a digit shown if significant, up to three sections by ";"
// (positive, negative, zero; an empty one means the first, a negative value then with its sign), "E+###" the
// exponent, other characters literal. Rounds half away from zero on the decimal text of 15 significant
// digits. A result that rounds to zero has no minus. Not finite: "?". Used for every column with a width,
// axis labels, coefficients.
std::string format_pattern(double x, std::string_view pattern);

// format_pattern, then: a whole number loses its point and decimals (12 by "0.00" is "12"). Used for fields,
// panel and load texts.
std::string format_number(double x, std::string_view pattern);

// format_number, the empty text for 0.
std::string format_nonzero(double x, std::string_view pattern);

}  // namespace tv
