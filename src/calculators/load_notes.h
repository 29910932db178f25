// Notes of a load: what was measured, held beside what was predicted.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tv {

// (measured - predicted) / predicted. in: text as noted, a number as a whole, with point or comma; its unit;
// predicted in m/s or Pa, above 0. Nothing, so not comparable, for another text or unit: the crusher's CUP is
// no pressure in MPa.
std::optional<double> velocity_difference(std::string_view text, std::string_view unit, double predicted_mps);
std::optional<double> pressure_difference(std::string_view text, std::string_view unit, double predicted_Pa);

// A chronograph's value without the sign of its unit: one trailing character that is no digit is cut off.
std::string without_unit_sign(std::string_view value);

// The number that a text is as a whole, blanks around it aside; one comma may stand for the point.
std::optional<double> whole_number(std::string_view text);

}  // namespace tv
