#include "tables/powder_table.h"

#include <algorithm>
#include <cmath>

#include "tables/guarded.h"
#include "tables/sort_table.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr FitRule kNoFit{};
constexpr FitRule kToPressure{Fitted::charge, Meets::peak_pressure, 0.2e6, Guard::charge};
constexpr FitRule kToVelocity{Fitted::charge, Meets::velocity, 0.15, Guard::charge};
constexpr FitRule kToBarrelTime{Fitted::charge, Meets::barrel_time, 1e-6, Guard::charge};
constexpr FitRule kToRiseTime{Fitted::charge, Meets::rise_time, 2e-6, Guard::charge};
constexpr FitRule kChamberToPressure{Fitted::chamber, Meets::peak_pressure, 0.5e6, Guard::chamber};
constexpr FitRule kTravelToVelocity{Fitted::travel, Meets::velocity, 0.02, Guard::none};

using enum StartCharge;
using enum AfterFirst;
constexpr std::array<Strategy, kStrategies> kStrategyTable{{
    // start, share, first, after, second, bulk density, times
    {space, 0.7, kToPressure, done, kNoFit, false, false},
    {loading_ratio, 0, kNoFit, done, kNoFit, true, false},
    {loading_ratio, 0.8, kNoFit, restart_above, kToPressure, false, false},
    {space, 0.8, kToPressure, lower_level, kToPressure, false, false},
    {space, 0.8, kToVelocity, done, kNoFit, false, false},
    {space, 0.7, kToBarrelTime, done, kNoFit, false, true},
    {space, 0.7, kToRiseTime, done, kNoFit, false, true},
    {whole_case, 0, kNoFit, done, kNoFit, true, false},
    {present, 0, kChamberToPressure, then_second, kTravelToVelocity, false, false},
}};

double water_to_cm3(double grains) { return grains / dicht_H2 / kGrainsPerGram; }

// Puts the state back however the run is left.
struct Restore {
  CalcState& s;
  CalcState saved;
  explicit Restore(CalcState& state) : s(state), saved(state) {}
  Restore(const Restore&) = delete;
  Restore& operator=(const Restore&) = delete;
  ~Restore() { s = saved; }
};

struct PowderRun {
  CalcState& s;
  ShotCurve& curve;
  ShotResult& result;
  const CalcState& load;  // the load at hand
  const PowderCriteria& criteria;
  const Strategy& strategy;
  PowderTable& table;
  double p;       // target pressure, MPa; strategy 3 lowers it for its second level
  double rank{};  // of the present powder

  double target(Meets meets) const {
    switch (meets) {
      case Meets::peak_pressure:
        return p * 1e6;
      case Meets::velocity:
        return criteria.veltab;
      default:
        return table.target_time;
    }
  }
  FitEnd fit(const FitRule& rule) { return run_fit(s, curve, result, rule, target(rule.meets), table.shots); }
  double last(const std::array<double, ShotCurve::kPoints>& series) const {
    return series[static_cast<std::size_t>(result.lastIdx)];
  }
};

void load_powder(CalcState& s, const RecordTable& powders, int row) {
  const auto number = [&](int field) { return powders.number(row, field); };
  s.Exw = number(powder_field::Exw);
  s.Kap = number(powder_field::Kap);
  s.Pdens = number(powder_field::Pdens);
  s.Ba0 = number(powder_field::Ba0);
  s.PDko = number(powder_field::PDko);
  s.Limz1 = number(powder_field::Limz1);
  s.Ba1 = number(powder_field::Ba1);
  s.bulkdn = number(powder_field::bulkdn);
  s.ExwJ = s.Exw * 1000;
}

// A single shot refuses such a powder; the model would give figures for some of them.
bool out_of_range(CalcState trial) {
  switch (prepareShot(trial)) {
    case SetUp::Exw:
    case SetUp::Ba0:
    case SetUp::Kap:
    case SetUp::PDko:
    case SetUp::Limz1:
    case SetUp::Pdens:
      return true;
    default:
      return false;
  }
}

double space_cm3(const PowderRun& run) { return water_to_cm3(run.load.dim.Veff); }

// Charge in kg (and, in the last strategy, the chamber) to begin with.
void set_start(PowderRun& run) {
  const auto kg = [&run](double grams) { run.s.chargeKg = grams / 1000; };
  switch (run.strategy.start) {
    case space:
      kg(run.strategy.share * space_cm3(run));
      break;
    case loading_ratio:
      if (run.s.bulkdn > 0)
        kg(run.criteria.lratio / 100 * space_cm3(run) * run.s.bulkdn);
      else
        kg(run.strategy.share * space_cm3(run));
      break;
    case whole_case:
      kg(run.criteria.hratio / 100 * water_to_cm3(run.load.dim.Volf) * run.s.bulkdn);
      break;
    case present:
      run.s.chargeKg = run.load.chargeKg;
      assign(run.s.caseM3, [&] { return 1.6 * checked_div(run.s.chargeKg, run.s.Pdens * 1000); });
      break;
  }
}

// Up to the values of the row: the first rule, and the second where both belong to one row. Tells by
// at_target whether the charge was fitted to the pressure, which the row then reports instead of the peak.
FitEnd run_rules(PowderRun& run, bool& at_target) {
  const FitRule* rule = &run.strategy.first;
  // Without a bulk density no loading ratio can be tried: the fit follows at once.
  if (run.strategy.after == restart_above && !(run.s.bulkdn > 0)) rule = &run.strategy.second;
  FitEnd end = run.fit(*rule);
  if (end == FitEnd::met && rule == &run.strategy.first) {
    const bool above = run.strategy.after == restart_above && run.result.pMax > run.p * 1e6;
    if (above) run.s.chargeKg = run.strategy.share * space_cm3(run) / 1000;
    if (above || run.strategy.after == then_second) end = run.fit(*(rule = &run.strategy.second));
  }
  at_target = rule->fitted == Fitted::charge && rule->meets == Meets::peak_pressure;
  return end;
}

// The loading ratio in percent; false when it cannot be computed.
bool ratio_of(const CalcState& s, double& ratio) {
  return s.bulkdn > 0 && assign(ratio, [&] { return checked_div(s.chargeKg, s.bulkdn * s.caseM3 * 10); });
}

void write_row(const PowderRun& run, bool at_target, PowderRow& row) {
  const CalcState& s = run.s;
  auto& cell = row.cells;
  const double burnt = run.last(run.curve.z);
  cell[1] = burnt > 1.0 ? 0 : run.last(run.curve.v);
  cell[2] = s.chargeKg;
  cell[3] = at_target ? run.p * 1e6 : run.result.pMax;
  cell[4] = burnt;
  ratio_of(s, cell[5]);
  cell[6] = run.strategy.after == lower_level ? 0 : std::abs(run.result.t10);
  cell[7] = burnt;
  cell[9] = run.rank;
  assign(cell[10], [&] { return s.caseM3 + water_to_cm3(s.dim.Vvg) / 1e6; });
  assign(cell[11], [&] { return s.travelM + (s.dim.Plen - s.dim.Glen) * kMmPerInch / 1000; });
  cell[12] = run.last(run.curve.p);
  row.status = burnt > 1.0 ? RowStatus::failed : RowStatus::ok;
}

// The second level of strategy 3, from the charge found. A level that is not met leaves the pressure lowered
// for all powders to come; this is kept as it is.
void run_second_level(PowderRun& run, PowderRow& row) {
  assign(run.p, [&] { return run.p * run.criteria.lod2nd; });
  if (run.fit(run.strategy.second) != FitEnd::met) {
    row.cells[1] = 0;
    row.status = RowStatus::not_converged;
    return;
  }
  const double burnt = run.last(run.curve.z);
  row.cells[6] = run.s.chargeKg;
  row.cells[7] = burnt;
  row.cells[8] = burnt > 1.0 ? 0 : run.last(run.curve.v);
  if (burnt > 1.0) {
    row.cells[1] = 0;
    row.status = RowStatus::failed;
  }
  assign(run.p, [&] { return checked_div(run.p, run.criteria.lod2nd); });
}

// False when the powder is left out of the table.
bool run_powder(PowderRun& run, PowderRow& row) {
  if (run.strategy.needs_bulk_density && !(run.s.bulkdn > 0)) {
    row.name += " , no density";
    row.status = RowStatus::no_density;
    return true;
  }
  if (out_of_range(run.s)) return true;
  set_start(run);
  bool at_target = false;
  const FitEnd end = run_rules(run, at_target);
  if (end != FitEnd::met) {
    row.status = end == FitEnd::shot_failed ? RowStatus::failed : RowStatus::not_converged;
    return true;
  }
  double ratio = 0;
  if (ratio_of(run.s, ratio) && ratio <= run.criteria.lv_min) return false;
  write_row(run, at_target, row);
  if (run.strategy.after == lower_level) run_second_level(run, row);
  return true;
}

double start_pressure_target(const CalcState& s, double maxtab) {
  double p = maxtab;
  if (p <= 10) p = s.dim.zul_P;
  return p > 10 ? p : 350;  // no maximum pressure known: the default of the criterion
}

// The time of the load at hand that strategies 5 and 6 aim at; 0, which no powder meets, if it has none.
double time_of_load(PowderRun& run) {
  ++run.table.shots;
  if (!quickShot(run.s, run.curve, run.result)) return 0;
  return measured(run.strategy.first.meets, run.curve, run.result);
}

void run_list(PowderRun& run, const RecordTable& powders, const PowderRunHooks& hooks) {
  PowderTable& table = run.table;
  const int total = static_cast<int>(powders.rows.size());
  for (int i = 0; i < total; ++i) {
    load_powder(run.s, powders, i);
    if (run.s.Ba0 < run.criteria.bamint || run.s.Ba0 > run.criteria.bamaxt) {
      ++table.outside_band;
      continue;
    }
    if (hooks.cancelled && hooks.cancelled()) {
      table.cancelled = true;
      return;
    }
    run.rank = powders.number(i, powder_field::mean_burn_rate);
    const std::string& name = powders.cell(i, powder_field::name);
    PowderRow& row = table.rows.emplace_back();
    row.name = name;
    const bool kept = run_powder(run, row);
    run.s.caseM3 = run.load.caseM3;
    run.s.travelM = run.load.travelM;
    if (!kept) {
      table.rows.pop_back();
      ++table.rejected_count;
    } else if (hooks.progress) {
      hooks.progress(name, i + 1, total);
    }
  }
}

}  // namespace

std::span<const Strategy, kStrategies> strategies() { return kStrategyTable; }

bool needs_present_charge(int strategy) {
  const Strategy& s = kStrategyTable[static_cast<std::size_t>(std::clamp(strategy, 0, kStrategies - 1))];
  return s.times || s.start == present;
}

const char* status_name(RowStatus status) {
  constexpr const char* kNames[] = {"ok", "no density", "failed", "not converged"};
  return kNames[static_cast<std::size_t>(status)];
}

void RunPowderTable(CalcState& s, ShotCurve& curve, ShotResult& result, const RecordTable& powders,
                    const PowderCriteria& criteria, const TableHead& head, const SortState& sort,
                    const PowderRunHooks& hooks, PowderTable& table) {
  const int index = std::clamp(criteria.strategy, 0, kStrategies - 1);
  const Strategy& strategy = kStrategyTable[static_cast<std::size_t>(index)];
  // Times make no sense with coarse steps; the coarse setting is lost on purpose.
  if (strategy.times && s.schrit == 2) {
    s.schrit = 0;
    setBaseStep(s);
  }
  Restore restore(s);
  table = PowderTable{};
  table.rows.reserve(powders.rows.size());
  table.inputs = note_inputs(s, head);
  table.criteria = criteria;
  table.criteria.strategy = index;
  table.p = start_pressure_target(s, criteria.maxtab);

  PowderRun run{s, curve, result, restore.saved, criteria, strategy, table, table.p};
  if (strategy.times) table.target_time = time_of_load(run);
  run_list(run, powders, hooks);
  sort_powder_table(table, sort);
  table.finished = !table.cancelled;
  table.table_valid = true;
}

}  // namespace tv
