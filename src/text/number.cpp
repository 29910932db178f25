#include "text/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "text/codepage.h"

namespace tv {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_sign(char c) { return c == '+' || c == '-'; }

// Where a number ends and whether any digit was seen; the scanner knows the grammar, from_chars the values.
struct Scan {
  std::size_t end = 0;
  std::size_t exponent = std::string_view::npos;  // place of the letter
  bool digits = false;
};

Scan scan_number(std::string_view text) {
  Scan scan;
  std::size_t i = !text.empty() && is_sign(text[0]) ? 1 : 0;
  bool point = false;
  for (; i < text.size(); ++i) {
    if (is_digit(text[i])) {
      scan.digits = true;
    } else if (text[i] == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  scan.end = i;
  if (!scan.digits || i >= text.size() || std::string_view("EeDd").find(text[i]) == std::string_view::npos) {
    return scan;
  }
  std::size_t j = i + 1;
  if (j < text.size() && is_sign(text[j])) ++j;
  if (j >= text.size() || !is_digit(text[j])) return scan;
  while (j < text.size() && is_digit(text[j])) ++j;
  scan.exponent = i;
  scan.end = j;
  return scan;
}

// Tells a number out of range that is too large from one that is too small: its decimal magnitude is far on
// one side or the other.
bool is_large(std::string_view mantissa, std::string_view exponent) {
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return false;
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const double place = static_cast<double>(point) - static_cast<double>(first);
  double power = 0;
  bool negative = false;
  for (char c : exponent) {
    if (c == '-') negative = true;
    if (is_digit(c)) power = power * 10 + (c - '0');
  }
  return place + (negative ? -power : power) > 0;
}

// A decimal number: value = 0.digits times ten to the point. Zero has no digits.
struct Decimal {
  std::string digits;
  int point = 0;
};

std::size_t index_of(int place) { return static_cast<std::size_t>(place); }

// From text such as "1.2345e-06" without sign.
Decimal decimal_of(std::string_view scientific) {
  Decimal d;
  const std::size_t e = scientific.find('e');
  for (char c : scientific.substr(0, e)) {
    if (is_digit(c)) d.digits += c;
  }
  const char* power = scientific.data() + e + 1;
  if (*power == '+') ++power;
  std::from_chars(power, scientific.data() + scientific.size(), d.point);
  ++d.point;
  while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
  if (d.digits.empty()) d.point = 0;
  return d;
}

Decimal shortest(double x) {
  std::array<char, 64> buffer;
  const auto done =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::scientific);
  return decimal_of({buffer.data(), done.ptr});
}

Decimal fifteen_digits(double x) {
  std::array<char, 64> buffer;
  const auto done =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, std::chars_format::scientific, 14);
  return decimal_of({buffer.data(), done.ptr});
}

// Half away from zero.
Decimal rounded(Decimal d, int decimals) {
  const int keep = d.point + decimals;
  if (keep >= static_cast<int>(d.digits.size())) return d;
  if (keep < 0) return {};
  const bool up = d.digits[index_of(keep)] >= '5';
  d.digits.resize(index_of(keep));
  if (up) {
    while (!d.digits.empty() && d.digits.back() == '9') d.digits.pop_back();
    if (d.digits.empty()) {
      d.digits = "1";
      ++d.point;
    } else {
      ++d.digits.back();
    }
  }
  while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
  if (d.digits.empty()) d.point = 0;
  return d;
}

std::string whole_digits(const Decimal& d) {
  if (d.point <= 0) return {};
  std::string whole = d.digits.substr(0, index_of(d.point));
  whole.resize(index_of(d.point), '0');
  return whole;
}

std::string fraction_digits(const Decimal& d) {
  if (d.point >= static_cast<int>(d.digits.size())) return {};
  if (d.point >= 0) return d.digits.substr(index_of(d.point));
  return std::string(index_of(-d.point), '0') + d.digits;
}

std::string exponent_text(int power, std::size_t least_digits) {
  std::string digits = std::to_string(power < 0 ? -power : power);
  if (digits.size() < least_digits) digits.insert(0, least_digits - digits.size(), '0');
  return digits;
}

bool is_place(char c) { return c == '0' || c == '#'; }

int count_places(std::string_view pattern) {
  int n = 0;
  for (char c : pattern) n += is_place(c);
  return n;
}

// One section of a pattern, cut at its point and its exponent.
struct Pattern {
  std::string_view whole;     // places and literals before the point
  std::string_view fraction;  // behind it
  std::string_view exponent;  // places of the exponent
  std::string_view tail;      // literals behind the exponent
  bool has_point = false;
  bool has_exponent = false;
  bool plus = false;  // the sign of a positive exponent is shown
};

Pattern parse_pattern(std::string_view section) {
  Pattern p;
  std::size_t end = section.size();
  for (std::size_t i = 1; i + 2 < section.size(); ++i) {
    if (section[i] == 'E' && is_sign(section[i + 1]) && is_place(section[i + 2])) {
      p.has_exponent = true;
      p.plus = section[i + 1] == '+';
      const std::size_t behind = section.find_first_not_of("0#", i + 2);
      p.exponent = section.substr(i + 2, behind == std::string_view::npos ? behind : behind - i - 2);
      p.tail = section.substr(i + 2 + p.exponent.size());
      end = i;
      break;
    }
  }
  const std::string_view mantissa = section.substr(0, end);
  const std::size_t point = mantissa.find('.');
  p.has_point = point != std::string_view::npos;
  p.whole = mantissa.substr(0, point);
  if (p.has_point) p.fraction = mantissa.substr(point + 1);
  return p;
}

// Digits go into their places from the right; what is left over stands before the first place.
void put_whole(std::string& out, std::string_view pattern, const std::string& digits) {
  const int places = count_places(pattern);
  int left = places;
  bool always = false;
  for (char c : pattern) {
    if (!is_place(c)) {
      out += c;
      continue;
    }
    const int have = static_cast<int>(digits.size());
    if (left == places && have > places) out.append(digits, 0, index_of(have - places));
    always = always || c == '0';
    if (have >= left) {
      out += digits[index_of(have - left)];
    } else if (always) {
      out += '0';
    }
    --left;
  }
  if (places == 0) out += digits;
}

// A digit is shown if its place or a later one says always, or if a digit other than 0 still follows.
void put_fraction(std::string& out, std::string_view pattern, const std::string& digits) {
  std::size_t place = 0;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (!is_place(pattern[i])) {
      out += pattern[i];
      continue;
    }
    if (place < digits.size()) {
      out += digits[place];
    } else if (pattern.substr(i).find('0') != std::string_view::npos) {
      out += '0';
    }
    ++place;
  }
}

// The mantissa has as many digits before the point as the pattern has places there, one at least.
int scale_mantissa(Decimal& d, const Pattern& p) {
  if (d.digits.empty()) {
    d = {"0", 1};
    return 0;
  }
  const int places = std::max(1, count_places(p.whole));
  int power = d.point - places;
  d.point = places;
  d = rounded(d, count_places(p.fraction));
  power += d.point - places;
  d.point = places;
  return power;
}

struct Shown {
  std::string text;
  bool zero = false;
};

Shown apply_section(double magnitude, std::string_view section) {
  const Pattern p = parse_pattern(section);
  if (count_places(section) == 0) return {std::string(section), magnitude == 0};
  Decimal d = fifteen_digits(magnitude);
  int power = 0;
  if (p.has_exponent) {
    power = scale_mantissa(d, p);
  } else {
    d = rounded(d, count_places(p.fraction));
  }
  Shown shown{{}, d.digits.empty()};
  put_whole(shown.text, p.whole, whole_digits(d));
  if (p.has_point) shown.text += '.';
  put_fraction(shown.text, p.fraction, fraction_digits(d));
  if (p.has_exponent) {
    shown.text += power < 0 ? "E-" : p.plus ? "E+" : "E";
    std::size_t least = 0;
    for (char c : p.exponent) least += c == '0';
    shown.text += exponent_text(power, least);
    shown.text += p.tail;
  }
  return shown;
}

std::array<std::string_view, 3> split_sections(std::string_view pattern) {
  std::array<std::string_view, 3> sections;
  for (auto& section : sections) {
    const std::size_t end = pattern.find(';');
    section = pattern.substr(0, end);
    if (end == std::string_view::npos) break;
    pattern.remove_prefix(end + 1);
  }
  return sections;
}

}  // namespace

NumberRead read_number_checked(std::string_view text) {
  text = trim(text);
  const Scan scan = scan_number(text);
  if (!scan.digits) return {};
  const bool whole = scan.end == text.size();
  std::string_view number = text.substr(0, scan.end);
  std::string copy;
  if (scan.exponent != std::string_view::npos && number[scan.exponent] != 'E') {
    copy = number;
    copy[scan.exponent] = 'E';
    number = copy;
  }
  if (number[0] == '+') number.remove_prefix(1);
  double value = 0;
  const auto done = std::from_chars(number.data(), number.data() + number.size(), value);
  if (done.ec == std::errc::result_out_of_range || !std::isfinite(value)) {
    const std::size_t e = number.find('E');
    const std::string_view mantissa = number.substr(number[0] == '-' ? 1 : 0, e - (number[0] == '-' ? 1 : 0));
    return {0, is_large(mantissa, e == std::string_view::npos ? "" : number.substr(e)), whole};
  }
  return {value + 0.0, false, whole};  // no negative zero
}

double read_number(std::string_view text) { return read_number_checked(text).value; }

NumberRead read_stored(std::string_view text) {
  const std::size_t comma = text.find(',');
  const bool is_point = comma != std::string_view::npos &&
                        text.find(',', comma + 1) == std::string_view::npos &&
                        text.find('.') == std::string_view::npos;
  std::string pointed;
  if (is_point) {
    pointed = text;
    pointed[comma] = '.';
    text = pointed;
  }
  NumberRead read = read_number_checked(text);
  read.whole = read.whole && !read.overflow;
  return read;
}

double int_of(double x) { return std::floor(x); }

int to_int(double x) {
  const double whole = int_of(x);
  return std::fabs(whole) <= std::numeric_limits<int>::max() ? static_cast<int>(whole) : 0;
}

std::string general(double x) {
  if (!std::isfinite(x)) return "?";
  if (x == 0) return "0";
  const Decimal d = shortest(std::fabs(x));
  std::string out = x < 0 ? "-" : "";
  const int power = d.point - 1;
  if (power >= -5 && power < 15) {
    const std::string whole = whole_digits(d);
    const std::string fraction = fraction_digits(d);
    out += whole.empty() ? "0" : whole;
    if (!fraction.empty()) out += "." + fraction;
    return out;
  }
  out += d.digits[0];
  if (d.digits.size() > 1) out += "." + d.digits.substr(1);
  return out + (power < 0 ? "E-" : "E+") + exponent_text(power, 2);
}

std::string str(double x) { return x < 0 ? general(x) : " " + general(x); }

std::string format_pattern(double x, std::string_view pattern) {
  if (!std::isfinite(x)) return "?";
  if (pattern.empty()) return general(x);
  const auto [positive, negative, zero] = split_sections(pattern);
  if (x == 0) return apply_section(0, zero.empty() ? positive : zero).text;
  if (x > 0) return apply_section(x, positive).text;
  Shown shown = apply_section(-x, negative.empty() ? positive : negative);
  if (shown.zero) return apply_section(-x, positive).text;
  return negative.empty() ? "-" + shown.text : shown.text;
}

std::string format_number(double x, std::string_view pattern) {
  std::string text = format_pattern(x, pattern);
  const bool point = text.find('.') != std::string::npos;
  // A value just beside a whole number would keep a point with nothing behind it.
  if (point && (x == std::floor(x) || text.back() == '.')) return format_pattern(x, "0");
  return text;
}

std::string format_nonzero(double x, std::string_view pattern) {
  return x == 0 ? std::string() : format_number(x, pattern);
}

}  // namespace tv
