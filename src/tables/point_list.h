// The logged points of a shot.
#pragma once

#include <string>

#include "engine/calc_state.h"
#include "tables/data_block.h"
#include "tables/table_data.h"
#include "tables/table_text.h"

namespace tv {

// What the list is drawn from: a finished run's own copy.
struct PointListRun {
  const DataBlock& block;
  const ShotCurve& curve;
  int lastIdx = 0;
  int schrit = 0;     // 2 (coarse) has no times
  bool exits = true;  // the last point is the muzzle; false for a bullet that stuck and for a run that failed
  double zul_P = 0;   // maximum pressure, MPa; not above 0 unknown
};

inline constexpr std::size_t kMaxListText = 1'000'000;  // characters; then the list stops with a line

// Columns x, burnt, velocity, pressure and, unless coarse, time; a row is marked by the pressure of its
// point.
TableData point_list_data(const PointListRun& run, const ViewUnits& units);
TableText DrawPointList(const PointListRun& run, const Language& language, const ViewUnits& units);
std::string point_list_tsv(const PointListRun& run, const Language& language, const ViewUnits& units);

}  // namespace tv
