// Measured strings: shots of one charge with what was measured of them, and how they stand in section
// `measured` of a load. One short key per series and shot, as values of more than 512 characters would be cut
// on reading.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/sectioned_file.h"

namespace tv {

struct MeasuredShot {
  double velocity = 0;  // m/s; 0 not measured
  double pressure = 0;  // Pa; 0 not measured
  bool excluded = false;
  std::string reason;  // of the exclusion: "sighter"; may be empty

  bool operator==(const MeasuredShot&) const = default;
};

struct MeasuredSeries {
  std::string name;
  double charge_gr = 0;     // grains; 0 unknown
  std::string temperature;  // degrees C as noted; empty unknown
  std::vector<MeasuredShot> shots;

  bool operator==(const MeasuredSeries&) const = default;
};

inline constexpr std::string_view kMeasuredSection = "measured";
inline constexpr std::size_t kMostStoredSeries = 200, kMostStoredShots = 999;  // more are not written

// "s2" holds charge (grains), temperature and name of the second series, "s2v3" velocity (m/s), pressure
// (Pa), 1 for left out and the reason of its third shot, parted by ";". Texts are cut to 200 characters.
std::vector<std::pair<std::string, std::string>> measured_keys(std::span<const MeasuredSeries> series);
// Writes them and empties those that a former version of the file had beyond them. Other keys stand.
void write_measured(std::span<const MeasuredSeries> series, SectionedFile& file);
// Up to the first series or shot that is missing. A value that is no number, or no velocity above 0, reads as
// not measured.
std::vector<MeasuredSeries> read_measured(const SectionedFile& file);

}  // namespace tv
