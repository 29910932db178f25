// The powder table: for every powder of a list whose burn rate factor lies in a band, the charge (or, in the
// last strategy, chamber and barrel) that meets a criterion.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "data/record_table.h"
#include "tables/fit.h"
#include "tables/table_inputs.h"
#include "text/codepage.h"

namespace tv {

inline constexpr int kStrategies = 9;

// What the user asks for; the names are those of the settings.
struct PowderCriteria {
  int strategy = 0;      // 0 to 8, searchwhat
  double maxtab = 350;   // target peak pressure, MPa; at most 10: the maximum pressure of the cartridge
  double veltab = 500;   // target velocity, m/s
  double lratio = 100;   // target loading ratio, percent
  double lv_min = 90;    // a powder with a loading ratio not above this is left out, percent
  double hratio = 100;   // fill of the whole case, percent
  double lod2nd = 0.85;  // second pressure level as a share of the first
  double bamint = 0.3, bamaxt = 4;  // band of Ba0, both ends belong to it
};

enum class StartCharge { space, loading_ratio, whole_case, present };
enum class AfterFirst {
  done,
  restart_above,  // one shot; with a peak above the target the charge starts anew and the second rule fits it
  then_second,    // the second rule follows at once
  lower_level,    // the row is written, then the second rule fits the lower pressure level
};
struct Strategy {
  StartCharge start;
  double share;  // g of powder to 1 cm3 under the bullet: the start, or the restart, of the charge
  FitRule first;
  AfterFirst after;
  FitRule second;
  bool needs_bulk_density;
  bool times;  // meets a time of the load at hand, so a coarse step is given up for good
};
std::span<const Strategy, kStrategies> strategies();

// Whether a strategy starts from the charge of the load at hand or aims at its time; the others do without
// it.
bool needs_present_charge(int strategy);

enum class RowStatus { ok, no_density, failed, not_converged };
const char* status_name(RowStatus status);  // "ok", "no density", "failed", "not converged"

// Cells by column: 1 velocity m/s, 2 charge kg, 3 peak pressure Pa (the target where the charge was fitted
// to it), 4 burnt fraction, 5 loading ratio % (0 without bulk density), 6 barrel time s or in strategy 3 the
// charge of the second level kg, 7 burnt fraction (of the second level), 8 velocity of the second level m/s,
// 9 burn rate rank, 10 whole-case volume m3, 11 barrel length m, 12 pressure at shot exit Pa. Column 0 is the
// name. A row that is not ok has a velocity of 0.
struct PowderRow {
  std::string name;
  std::array<double, 13> cells{};
  RowStatus status = RowStatus::failed;
  double cell(int column) const { return cells[static_cast<std::size_t>(column)]; }
};

struct PowderTable {
  std::vector<PowderRow> rows;
  int rejected_count = 0;    // powders left out for their loading ratio
  int outside_band = 0;      // and for their Ba0
  bool table_valid = false;  // belongs to the present load
  bool finished = false;     // a run went through to its end
  bool cancelled = false;    // the last run was cut short; its rows are kept
  int shots = 0;             // that the run took
  int row_index() const { return static_cast<int>(rows.size()) - 1; }

  TableInputs inputs;
  PowderCriteria criteria;  // as run
  double p = 0;             // target pressure at the start of the run, MPa
  double target_time = 0;   // barrel or rise time of the load at hand, s (strategies 5 and 6)
};

struct SortState {
  int column = 1;  // muzzle velocity
  bool ascending = false;
  CodePage page = CodePage::cp1252;  // of the powder file: names go by their bytes in it
};

struct PowderRunHooks {
  std::function<bool()> cancelled;  // asked before each powder of the band
  std::function<void(const std::string& name, int done, int total)> progress;  // powders of the list
};

// Runs the table over the list in its order and sorts it. The state must have been made ready (convertUnits,
// prepareShot); it is left as it was however the run ends, but for a coarse step, which strategies 5 and 6
// set to normal for good. curve and result hold the last shot: the caller runs the load once more. A
// powder outside the ranges that a single shot accepts is a failed row. A shot allocates nothing.
void RunPowderTable(CalcState& s, ShotCurve& curve, ShotResult& result, const RecordTable& powders,
                    const PowderCriteria& criteria, const TableHead& head, const SortState& sort,
                    const PowderRunHooks& hooks, PowderTable& table);

}  // namespace tv
