#include "calculators/load_notes.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "engine/calc_state.h"
#include "text/codepage.h"

namespace tv {
namespace {

struct NotedUnit {
  std::string_view name;
  double to_si;
};
constexpr NotedUnit kVelocities[] = {{"m/s", 1}, {"fps", 1 / kFeetPerMetre}};
constexpr NotedUnit kPressures[] = {{"psi", kPaPerPsi}, {"MPa", 1e6}, {"bar", 1e5}};

template <class Units>
std::optional<double> difference(const Units& units, std::string_view text, std::string_view unit,
                                 double predicted) {
  const auto found =
      std::ranges::find_if(units, [&](const NotedUnit& u) { return same_fold(u.name, trim(unit)); });
  const std::optional<double> measured = whole_number(text);
  if (found == std::end(units) || !measured || !(*measured > 0) || !(predicted > 0)) return {};
  return (*measured * found->to_si - predicted) / predicted;
}

}  // namespace

std::optional<double> velocity_difference(std::string_view text, std::string_view unit,
                                          double predicted_mps) {
  return difference(kVelocities, text, unit, predicted_mps);
}

std::optional<double> pressure_difference(std::string_view text, std::string_view unit, double predicted_Pa) {
  return difference(kPressures, text, unit, predicted_Pa);
}

std::string without_unit_sign(std::string_view value) {
  value = trim(value);
  if (!value.empty() && (value.back() < '0' || value.back() > '9')) value.remove_suffix(1);
  return std::string(trim(value));
}

std::optional<double> whole_number(std::string_view text) {
  std::string digits(trim(text));
  if (std::ranges::count(digits, ',') == 1 && digits.find('.') == std::string::npos)
    std::ranges::replace(digits, ',', '.');
  const char* begin = digits.data() + (digits.starts_with('+') && !digits.starts_with("+-") ? 1 : 0);
  const char* end = digits.data() + digits.size();
  double value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return {};
  return value;
}

}  // namespace tv
