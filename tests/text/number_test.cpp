#include "text/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

namespace tv {
namespace {

TEST(ReadNumber, TakesTheLeadingNumberAndNothingElse) {
  const struct {
    const char* text;
    double value;
  } cases[] = {{"", 0},         {"   ", 0},         {"abc", 0},
               {"-", 0},        {".", 0},           {"12", 12},
               {" \t 12", 12},  {"+7", 7},          {"-.5", -.5},
               {"5.", 5},       {"1,5", 1},         {"1.5.6", 1.5},
               {"1 000", 1},    {"12mm", 12},       {"--3", 0},
               {"1e3", 1000},   {"1D3", 1000},      {"1d-2", 0.01},
               {"2E+2x", 200},  {"1e", 1},          {"1e+", 1},
               {"1ex", 1},      {"1.e2", 100},      {".e2", 0},
               {"0x10", 0},     {"inf", 0},         {"nan", 0},
               {"infinity", 0}, {"-Inf", 0},        {"&H10", 0},
               {"1e-400", 0},   {"0e999999999", 0}, {"0.308\"", 0.308},
               {" -0", 0},      {"1e5.5", 1e5},     {"1e00000000000000000002", 100}};
  for (const auto& c : cases) {
    const NumberRead read = read_number_checked(c.text);
    EXPECT_EQ(read.value, c.value) << "'" << c.text << "'";
    EXPECT_FALSE(std::signbit(read.value) && read.value == 0) << c.text;
    EXPECT_FALSE(read.overflow) << c.text;
  }
}

TEST(ReadNumber, TellsOverflowFromUnderflow) {
  const std::string many(400, '9'), zeros(400, '0');
  for (const std::string& text : {std::string("1e309"), many + ".5", "0." + zeros + "1e800"}) {
    EXPECT_TRUE(read_number_checked(text).overflow) << text;
    EXPECT_EQ(read_number(text), 0) << text;
  }
  for (const std::string& text : {"0." + zeros + "1", many + "e-900", "1" + zeros + "e-1000"}) {
    EXPECT_FALSE(read_number_checked(text).overflow) << text;
    EXPECT_EQ(read_number(text), 0) << text;
  }
  EXPECT_EQ(read_number("0." + zeros + "1e401"), 1);
}

TEST(GeneralForm, IsShortestPlainText) {
  const struct {
    double x;
    const char* text;
  } cases[] = {{0, "0"},
               {-0.0, "0"},
               {-0.25, "-0.25"},
               {1e-5, "0.00001"},
               {9.99e-6, "9.99E-06"},
               {999999999999999, "999999999999999"},
               {1e15, "1E+15"},
               {1.5e-300, "1.5E-300"},
               {1.0 / 3, "0.3333333333333333"},
               {5e-324, "5E-324"},
               {HUGE_VAL, "?"},
               {std::nan(""), "?"}};
  for (const auto& c : cases) EXPECT_EQ(general(c.x), c.text);
  EXPECT_EQ(str(3) + str(0) + str(-3), " 3 0-3");
}

TEST(GeneralForm, ReadsBackToTheSameDouble) {
  std::mt19937_64 random(20240117);
  for (int i = 0; i < 200000; ++i) {
    const auto x = std::bit_cast<double>(random());
    if (!std::isfinite(x)) continue;
    ASSERT_EQ(read_number(general(x)), x) << general(x);
  }
}

TEST(FormatPattern, AppliesPlacesSectionsAndExponent) {
  // Number, pattern and what it gives, each set off by blanks.
  const char* const cases[] = {
      "12 0.00 12.00", "0.308 #.000 .308", "12 #.### 12.", "0.1255 #.00# .126", "0.55 0.0## 0.55",
      "12.3456 0.00# 12.346", "7 #0.000 7.000", "7.25 ##0.0# 7.25", "1234.5 ####0 1235", "0 ####0 0",
      "3.14159 ####0.00# 3.142", "1.2 #.000### 1.200", "0 #.0# .0", "7.5 00.0 07.5", "123.45 00.0 123.5",
      "5 +00.0;-00.0 +05.0", "-5 +00.0;-00.0 -05.0", "-0.04 +00.0;-00.0 +00.0", "0 0.00;;0 0",
      "-1.5 0.00;;0 -1.50", "1.5 0.0;;0 1.5", "-3 0;;0 -3", "-0.001 0.00 0.00", "-0.4 0 0",
      "1500 #E+### 2E+3", "0.00015 #E+### 2E-4", "9.6 #E+### 1E+1", "0 #E+### 0E+0",
      "-1234 0.00E+00 -1.23E+03", "5 0.0E-00 5.0E00", "1e-300 0.00 0.00", "1e20 0 100000000000000000000",
      "1 text text",
      // half away from zero, on fifteen digits
      "0.125 0.00 0.13", "2.675 0.00 2.68", "-2.675 0.00 -2.68", "1.005 0.00 1.01", "0.5 0 1", "2.5 0 3",
      "-0.5 0 -1", "999.95 0.0 1000.0", "0.0999 0.00 0.10", "0.05 0.0 0.1", "0.049 0.0 0.0",
      "0.49999999999999994 0 1"};
  for (const char* c : cases) {
    std::istringstream columns(c);
    std::string number, pattern, text;
    columns >> number >> pattern >> text;
    EXPECT_EQ(format_pattern(std::stod(number), pattern), text) << c;
  }
  EXPECT_EQ(format_pattern(-5, "0 m/s"), "-5 m/s");
  EXPECT_EQ(format_pattern(1.5, ""), "1.5");
  EXPECT_EQ(format_pattern(std::nan(""), "0.00"), "?");
}

// Independent of the decimal text: the exact product of a random number of ten digits.
TEST(FormatPattern, AgreesWithWholeNumberArithmetic) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 50000; ++i) {
    const auto n = static_cast<std::int64_t>(random() % 20000000000) - 10000000000;  // millionths
    const std::int64_t hundredths = (std::llabs(n) + 5000) / 10000;
    char expected[40];
    std::snprintf(expected, sizeof expected, "%s%lld.%02lld", n < 0 && hundredths ? "-" : "",
                  static_cast<long long>(hundredths / 100), static_cast<long long>(hundredths % 100));
    ASSERT_EQ(format_pattern(static_cast<double>(n) / 1e6, "0.00"), expected) << n;
  }
}

TEST(FormatNumber, ShowsWholeNumbersPlain) {
  const struct {
    double x;
    const char *pattern, *text;
  } cases[] = {{12, "#.###", "12"},         {-12, "0.00", "-12"},      {0, "#.0", "0"},
               {11.99999, "0.00", "12.00"}, {11.99999, "#.###", "12"}, {-0.00001, "0.00", "0.00"},
               {7.5, "00.0", "07.5"},       {1500, "#E+###", "2E+3"},  {std::nan(""), "0.00", "?"}};
  for (const auto& c : cases) EXPECT_EQ(format_number(c.x, c.pattern), c.text) << c.x << " by " << c.pattern;
  EXPECT_EQ(format_nonzero(-0.0, "0.00") + format_nonzero(3, "0.00"), "3");
}

struct CommaPoint : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Numbers, DoNotFollowTheLocale) {
  const std::locale former = std::locale::global(std::locale(std::locale(), new CommaPoint));
  // The C library's own locale too, where one with a comma is installed.
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    if (std::setlocale(LC_ALL, name)) break;
  }
  EXPECT_EQ(read_number("1.5"), 1.5);
  EXPECT_EQ(read_number("1,5"), 1);
  EXPECT_EQ(general(123456.5), "123456.5");
  EXPECT_EQ(format_pattern(12345.5, "0.00"), "12345.50");
  std::setlocale(LC_ALL, "C");
  std::locale::global(former);
}

}  // namespace
}  // namespace tv
