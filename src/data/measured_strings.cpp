#include "data/measured_strings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/number.h"

namespace tv {
namespace {

constexpr std::size_t kMostText = 200;

std::string series_key(std::size_t n) { return "s" + std::to_string(n + 1); }
std::string shot_key(std::size_t n, std::size_t shot) {
  return series_key(n) + "v" + std::to_string(shot + 1);
}

// The last piece is free text and may hold separators itself.
template <std::size_t n>
std::array<std::string, n> pieces(std::string_view value) {
  std::array<std::string, n> out;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t end = i + 1 < n ? value.find(';') : std::string_view::npos;
    out[i] = trim(value.substr(0, end));
    value.remove_prefix(end == std::string_view::npos ? value.size() : end + 1);
  }
  return out;
}

double positive(const std::string& text) { return std::max(0.0, read_number(text)); }

std::string without_separator(std::string text) {
  std::ranges::replace(text, ';', ',');
  return left(text, kMostText);
}

bool is_ours(std::string_view key) {
  if (!key.starts_with('s') || key.size() < 2) return false;
  return std::ranges::all_of(key.substr(1), [](char c) { return (c >= '0' && c <= '9') || c == 'v'; });
}

}  // namespace

std::vector<std::pair<std::string, std::string>> measured_keys(std::span<const MeasuredSeries> series) {
  std::vector<std::pair<std::string, std::string>> keys;
  for (std::size_t n = 0; n < std::min(series.size(), kMostStoredSeries); ++n) {
    const MeasuredSeries& one = series[n];
    keys.emplace_back(series_key(n), general(one.charge_gr) + ";" + without_separator(one.temperature) + ";" +
                                         left(one.name, kMostText));
    for (std::size_t i = 0; i < std::min(one.shots.size(), kMostStoredShots); ++i) {
      const MeasuredShot& shot = one.shots[i];
      keys.emplace_back(shot_key(n, i), general(shot.velocity) + ";" + general(shot.pressure) +
                                            (shot.excluded ? ";1;" : ";0;") + left(shot.reason, kMostText));
    }
  }
  return keys;
}

void write_measured(std::span<const MeasuredSeries> series, SectionedFile& file) {
  const auto keys = measured_keys(series);
  for (const std::string& old : file.keys(kMeasuredSection)) {
    const bool kept = std::ranges::any_of(keys, [&](const auto& key) { return same_fold(key.first, old); });
    if (is_ours(old) && !kept) file.set(kMeasuredSection, old, "");
  }
  for (const auto& [key, value] : keys) file.set(kMeasuredSection, key, value);
}

std::vector<MeasuredSeries> read_measured(const SectionedFile& file) {
  std::vector<MeasuredSeries> all;
  while (all.size() < kMostStoredSeries) {
    const std::string head = file.get(kMeasuredSection, series_key(all.size()));
    if (head.empty()) break;
    const auto [charge, temperature, name] = pieces<3>(head);
    MeasuredSeries series{name, positive(charge), temperature, {}};
    while (series.shots.size() < kMostStoredShots) {
      const std::string value = file.get(kMeasuredSection, shot_key(all.size(), series.shots.size()));
      if (value.empty()) break;
      const auto [velocity, pressure, excluded, reason] = pieces<4>(value);
      series.shots.push_back({positive(velocity), positive(pressure), excluded == "1", reason});
    }
    all.push_back(std::move(series));
  }
  return all;
}

}  // namespace tv
