// The load table: 16 charges around the charge of the load, and the load with powder that burns a little
// faster and slower.
#pragma once

#include <array>

#include "engine/shot.h"
#include "tables/table_inputs.h"

namespace tv {

struct LoadTableSettings {
  double ldstep = 1;       // step, percent of the charge; derived anew by each run with a step by weight
  double weight_step = 0;  // step, grains; follows from ldstep x charge / 100 when a load has been read
  bool inweight = false;   // the step is a weight (key ldweight)
  bool inpercent = false;  // the step was entered as a free percentage (key ldperc)
  int batols = 5;          // tolerance of the burn rate, percent
};

// Rows 0 to 15 are the ladder, row 10 the load itself; the last two are burn rate up and down.
struct LoadTable {
  static constexpr int kSlots = 21;
  static constexpr int kLadder = 16;
  static constexpr int kNominal = 10;
  using Series = std::array<double, kSlots>;
  Series charge{};       // grains
  Series pmax{};         // peak pressure, Pa
  Series pmuzzle{};      // pressure at shot exit, Pa
  Series burnt{};        // burnt fraction at shot exit
  Series barrel_time{};  // from a tenth of the peak pressure to shot exit, s
  Series velocity{};     // at shot exit, m/s; 0 for a row that could not be calculated
  int row_count = 0;     // index of the last row: 0 before the first run, then 17
  bool table_valid = false;

  TableInputs inputs;
  double step = 0;  // percent, as run
  int batols = 0;   // percent, as run
};

// Runs the 18 shots and fills the table. The state must have been made ready (convertUnits, prepareShot); it
// is left as it was, while curve and result hold the last shot: the caller runs the load once more with
// quickShot. A row that fails keeps velocity 0 and whatever the shot before left.
void RunLoadTable(CalcState& s, ShotCurve& curve, ShotResult& result, LoadTableSettings& settings,
                  const TableHead& head, LoadTable& table);

}  // namespace tv
