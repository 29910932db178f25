#include "output/chart_axis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "text/number.h"

namespace tv {
namespace {

constexpr double kLargestShown =
    1e9;  // beyond any gun in any unit; what is larger would only break the scale
constexpr int kMostTicks = 40;

// Powers of ten exactly as they are written; pow() may miss the last bit.
double power_of_ten(int e) {
  static constexpr std::array<double, 78> powers = {
      1e-39, 1e-38, 1e-37, 1e-36, 1e-35, 1e-34, 1e-33, 1e-32, 1e-31, 1e-30, 1e-29, 1e-28, 1e-27,
      1e-26, 1e-25, 1e-24, 1e-23, 1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14,
      1e-13, 1e-12, 1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,
      1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,   1e8,   1e9,   1e10,  1e11,  1e12,
      1e13,  1e14,  1e15,  1e16,  1e17,  1e18,  1e19,  1e20,  1e21,  1e22,  1e23,  1e24,  1e25,
      1e26,  1e27,  1e28,  1e29,  1e30,  1e31,  1e32,  1e33,  1e34,  1e35,  1e36,  1e37,  1e38};
  return powers[static_cast<std::size_t>(std::clamp(e + 39, 0, 77))];
}

// The first of 1, 2, 5, 10 that is not below x, times a power of ten. The small allowance catches what single
// precision lost on the way down.
double first_step(float x, int e) {
  for (const int step : {1, 2, 5, 10}) {
    if (static_cast<double>(x) <= step * (1 + 1e-5)) return step * power_of_ten(e);
  }
  return 10 * power_of_ten(e);
}

std::string tick_pattern(double tick, bool milliseconds) {
  if (tick < 0.01) {  // two decimals would write the same label twice
    const int decimals = std::min(9, static_cast<int>(std::ceil(-std::log10(tick) - 1e-9)));
    return "0." + std::string(static_cast<std::size_t>(decimals), '0') + ";;0";
  }
  if (milliseconds) return tick < 0.5 ? "0.00;;0" : "0.0;;0";
  if (tick > 5) return "0;;0";
  return tick > 0.5 ? "0.0;;0" : "0.00;;0";
}

double sound_tick(double range, double tick) {
  return tick > 0 && range / tick <= kMostTicks ? tick : range / 10;
}

}  // namespace

double NiceTick(double range) {
  const auto single = static_cast<float>(std::abs(range));
  if (!std::isfinite(single)) return 1;
  constexpr float least = 10 * std::numeric_limits<float>::min();
  float x = (single < least ? 1e-8F : single) / 10;
  int e = 0;
  if (x >= 1) {
    for (; x >= 1; ++e) x /= 10;
    return first_step(x * 10, e - 1);
  }
  for (; x < 1; --e) x *= 10;
  return first_step(x, e);
}

bool is_drawable(double value) { return std::abs(value) <= kLargestShown; }  // false for NaN

ChartAxis exact_axis(double from, double to, double span, double offset, const std::string& unit) {
  ChartAxis axis;
  axis.unit = unit;
  axis.from = from;
  axis.to = is_drawable(to) && to > from ? to : from + 1;
  axis.offset = offset;
  axis.tick = NiceTick(is_drawable(span) && span > 0 ? span : 1);
  return sound_axis(axis);
}

ChartAxis value_axis(double largest, double reach, const std::string& unit) {
  const double need = std::max(1.02 * largest, reach);
  ChartAxis axis;
  axis.unit = unit;
  axis.tick = 0.1;
  if (is_drawable(need) && need > 0) {
    axis.tick = sound_tick(need, NiceTick(need));
    axis.to = std::ceil(need / axis.tick * (1 - 1e-12)) * axis.tick;
  }
  return sound_axis(axis);
}

ChartAxis spread_axis(double lowest, double highest, const std::string& unit) {
  ChartAxis axis;
  axis.unit = unit;
  if (is_drawable(lowest) && is_drawable(highest) && highest > lowest) {
    const double margin = 0.02 * (highest - lowest);
    axis.tick = sound_tick(highest - lowest, NiceTick(highest - lowest));
    axis.from = std::floor((lowest - margin) / axis.tick + 1e-9) * axis.tick;
    axis.to = std::ceil((highest + margin) / axis.tick - 1e-9) * axis.tick;
  }
  return sound_axis(axis);
}

ChartAxis sound_axis(const ChartAxis& axis) {
  ChartAxis sound = axis;
  if (!is_drawable(sound.from)) sound.from = 0;
  if (!is_drawable(sound.to) || !(sound.to > sound.from)) sound.to = sound.from + 1;
  if (!is_drawable(sound.offset)) sound.offset = 0;
  const double length = sound.to - sound.from;
  sound.tick = sound_tick(length, sound.tick > 0 ? sound.tick : NiceTick(length));
  if (sound.pattern.empty()) sound.pattern = tick_pattern(sound.tick, axis.unit == "ms");
  return sound;
}

ChartAxis section_of(const ChartAxis& axis, const ViewRange& range) {
  if (range == ViewRange{}) return axis;
  ChartAxis section = axis;
  const double length = axis.to - axis.from;
  section.from = axis.from + range.from * length;
  section.to = axis.from + range.to * length;
  section.tick = sound_tick(section.to - section.from, NiceTick(section.to - section.from));
  section.pattern = tick_pattern(section.tick, axis.unit == "ms");
  return section;
}

std::vector<ChartTick> ticks_of(const ChartAxis& axis) {
  std::vector<ChartTick> ticks;
  const double slack = 1e-9 * axis.tick;
  if (!axis.ticks.empty()) {
    for (const ChartTick& tick : axis.ticks) {
      if (tick.position >= axis.from - slack && tick.position <= axis.to + slack) ticks.push_back(tick);
    }
    return ticks;
  }
  const double first = std::ceil((axis.from + axis.offset - slack) / axis.tick);
  for (int i = 0; i <= 2 * kMostTicks; ++i) {
    const double told = (first + i) * axis.tick;
    if (told - axis.offset > axis.to + slack) break;
    ticks.push_back({told - axis.offset, format_pattern(told, axis.pattern), false});
  }
  if (ticks.size() > 1 && !axis.unit.empty()) ticks.back() = {ticks.back().position, axis.unit, true};
  return ticks;
}

}  // namespace tv
