// The logged points of a shot as text.
#pragma once

#include <string>

#include "engine/calc_state.h"
#include "tables/table_inputs.h"
#include "tables/table_text.h"
#include "text/language.h"

namespace tv {

// What the list is drawn from: a finished run's own copy.
struct PointListRun {
  const DataBlock& block;
  const ShotCurve& curve;
  int lastIdx = 0;
  int schrit = 0;     // 2 (coarse) has no times
  bool exits = true;  // the last point is the muzzle; false for a bullet that stuck and for a run that failed
};

inline constexpr std::size_t kMaxListText = 1'000'000;  // characters; then the list stops with a line

TableText DrawPointList(const PointListRun& run, const Language& language, const ViewUnits& units);
std::string point_list_tsv(const PointListRun& run, const Language& language, const ViewUnits& units);

}  // namespace tv
