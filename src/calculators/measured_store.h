// Measured strings in a sectioned file: section `measured` of a load. One short key per series and shot, as
// values of more than 512 characters would be cut on reading.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calculators/measured.h"
#include "text/sectioned_file.h"

namespace tv {

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
