#include "output/diagram_scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "text/number.h"

namespace tv {
namespace {

// Beyond any gun in any unit; what is larger would only break the scale.
constexpr double kLargestShown = 1e9;
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

bool within(const DiagramRun& run, int index) { return index >= 0 && index <= last_index(run); }

double share(double value, double from, double to) { return to == from ? 0 : (value - from) / (to - from); }

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

double cut_three_digits(double value) {
  if (!(value > 0) || !std::isfinite(value)) return 0;
  const double digits = 2 - std::floor(std::log10(value));
  const double scale = std::pow(10, digits);
  const double cut = std::trunc(value * scale + 1e-9) / scale;
  return std::isfinite(cut) ? cut : 0;
}

Axis exact_axis(double from, double to, double span, double offset, const std::string& unit) {
  Axis axis;
  axis.unit = unit;
  axis.from = from;
  axis.to = is_drawable(to) && to > from ? to : from + 1;
  axis.low = axis.from;
  axis.high = axis.to;
  axis.offset = offset;
  axis.tick = sound_tick(axis.to - axis.from, NiceTick(is_drawable(span) && span > 0 ? span : 1));
  axis.pattern = tick_pattern(axis.tick, unit == "ms");
  return axis;
}

Axis value_axis(double largest, double reach, const std::string& unit) {
  const double need = std::max(1.02 * largest, reach);
  Axis axis;
  axis.unit = unit;
  if (is_drawable(need) && need > 0) {
    axis.tick = sound_tick(need, NiceTick(need));
    axis.to = std::ceil(need / axis.tick * (1 - 1e-12)) * axis.tick;
  }
  axis.high = axis.to;
  axis.pattern = tick_pattern(axis.tick, false);
  return axis;
}

Axis section_of(const Axis& axis, const ViewRange& range) {
  if (range == ViewRange{}) return axis;
  Axis section = axis;
  const double length = axis.high - axis.low;
  section.from = axis.low + range.from * length;
  section.to = axis.low + range.to * length;
  section.tick = sound_tick(section.to - section.from, NiceTick(section.to - section.from));
  section.pattern = tick_pattern(section.tick, axis.unit == "ms");
  return section;
}

std::vector<Tick> ticks_of(const Axis& axis) {
  std::vector<Tick> ticks;
  const double slack = 1e-9 * axis.tick;
  const double first = std::ceil((axis.from + axis.offset - slack) / axis.tick);
  for (int i = 0; i <= 2 * kMostTicks; ++i) {
    const double told = (first + i) * axis.tick;
    if (told - axis.offset > axis.to + slack) break;
    ticks.push_back({told - axis.offset, format_pattern(told, axis.pattern), false});
  }
  if (ticks.size() > 1) ticks.back() = {ticks.back().position, axis.unit, true};
  return ticks;
}

double x_value(const DiagramFrame& f, double x) {
  return f.x_from + share(x, f.left, f.right) * (f.x_to - f.x_from);
}
double y1_value(const DiagramFrame& f, double y) {
  return f.y1_from + share(y, f.bottom, f.top) * (f.y1_to - f.y1_from);
}
double y2_value(const DiagramFrame& f, double y) {
  return f.y2_from + share(y, f.bottom, f.top) * (f.y2_to - f.y2_from);
}

bool is_drawable(double value) { return std::abs(value) <= kLargestShown; }  // false for NaN

double sound_factor(double factor) { return factor > 0 && std::isfinite(factor) ? factor : 1; }

int last_index(const DiagramRun& run) { return std::clamp(run.result->lastIdx, 0, ShotCurve::kPoints - 1); }

double x_of(const DiagramRun& run, const DiagramOptions& options, int index) {
  if (!within(run, index)) return std::nan("");
  const auto i = static_cast<std::size_t>(index);
  return is_over_time(options.type) ? (run.curve->t[i] - run.curve->t[0]) * 1000
                                    : run.curve->x[i] * 1000 / sound_factor(options.distance_factor);
}

double pressure_of(const DiagramRun& run, const DiagramOptions& options, int index) {
  if (!within(run, index)) return std::nan("");
  return run.curve->p[static_cast<std::size_t>(index)] / sound_factor(options.pressure_factor);
}

double velocity_of(const DiagramRun& run, const DiagramOptions& options, int index) {
  if (!within(run, index)) return std::nan("");
  return run.curve->v[static_cast<std::size_t>(index)] / sound_factor(options.velocity_factor);
}

}  // namespace tv
