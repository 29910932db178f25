// What the views of a finished table need beside its figures, noted when the run begins.
#pragma once

#include "engine/calc_state.h"
#include "tables/data_block.h"

namespace tv {

// What only the screens know: the head lines and the number in the field of the effective case volume.
struct TableHead {
  DataBlock block;
  double Veffm = 0;  // cm3
};

struct TableInputs {
  DataBlock block;
  double Veffm = 0;     // effective case volume, cm3
  double bulletGr = 0;  // grains
  double bulkdn = 0;    // bulk density of the load's powder, g/cm3; 0 unknown
  double zul_P = 0;     // maximum pressure, MPa; not above 0 unknown
  double fill = 0;      // loading ratio of the load, percent; 0 when it could not be computed
  int schrit = 0;       // step setting: 2 (coarse) has no times
};

inline TableInputs note_inputs(const CalcState& s, const TableHead& head) {
  return {head.block, head.Veffm, s.dim.Bwg, s.bulkdn, s.dim.zul_P, s.fill, s.schrit};
}

}  // namespace tv
