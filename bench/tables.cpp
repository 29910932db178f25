// The tables beside the time of as many single shots: what a table adds to its shots stays under 5 %. And how
// long a powder table can be deaf to Escape: the longest time between two looks at it stays under 100 ms.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <random>

#include "example_loads.h"
#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "text/number.h"

namespace {

using namespace tv;
// Processor time, so that other work on the machine does not count.
double seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

struct Rifle {
  CalcState s;
  ShotCurve curve;
  ShotResult result;
  Rifle() : s(test::rifle_load()) {
    convertUnits(s);
    prepareShot(s);
  }
};

RecordTable list(int count) {
  RecordTable powders;
  for (int i = 0; i < count; ++i) {
    Record r;
    r[powder_field::name] = "Example " + std::to_string(i);
    r[powder_field::Exw] = general(3700 + i % 7 * 50);
    r[powder_field::Kap] = "1.231";
    r[powder_field::Pdens] = "1.6";
    r[powder_field::Ba0] = general(0.42 + 0.0002 * i);
    r[powder_field::PDko] = "1.0";
    r[powder_field::Limz1] = "0.5";
    r[powder_field::Ba1] = "1.7320508";
    r[powder_field::bulkdn] = "0.92";
    powders.rows.push_back(std::move(r));
  }
  return powders;
}

// Every second powder with some of its values anywhere in the range that a shot accepts: the slowest fits.
RecordTable odd_list(int count) {
  struct Range {
    int field;
    double least, most;
  };
  constexpr Range kRanges[] = {{powder_field::Exw, 1, 10000},      {powder_field::Kap, 1.001, 1.999},
                               {powder_field::Pdens, 0.001, 100},  {powder_field::Ba0, 0.001, 1000},
                               {powder_field::PDko, 0.001, 10000}, {powder_field::Limz1, 0.01, 1},
                               {powder_field::Ba1, 0.001, 1000},   {powder_field::bulkdn, 0.01, 2}};
  std::mt19937 random(5);
  const auto share = [&random] { return static_cast<double>(random()) / 4294967296.0; };
  RecordTable powders = list(count);
  for (std::size_t i = 1; i < powders.rows.size(); i += 2)
    for (const Range& range : kRanges)
      if (share() < 0.5)
        powders.rows[i][static_cast<std::size_t>(range.field)] =
            general(range.least * std::pow(range.most / range.least, share()));
  return powders;
}

PowderCriteria criteria_of(std::int64_t strategy) {
  PowderCriteria criteria;
  criteria.strategy = static_cast<int>(strategy);
  criteria.maxtab = 360;
  criteria.veltab = 820;
  criteria.lv_min = 29;
  criteria.lratio = 90;
  criteria.hratio = 80;
  return criteria;
}

void single_shot(benchmark::State& state) {
  Rifle rifle;
  for (auto _ : state) benchmark::DoNotOptimize(quickShot(rifle.s, rifle.curve, rifle.result));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(single_shot);

void load_table(benchmark::State& state) {
  Rifle rifle;
  LoadTableSettings settings;
  LoadTable table;
  double with_table = 1e9, shots_alone = 1e9;  // the best of all rounds
  for (auto _ : state) {
    double begin = seconds();
    RunLoadTable(rifle.s, rifle.curve, rifle.result, settings, {}, table);
    with_table = std::min(with_table, seconds() - begin);
    state.PauseTiming();
    const CalcState load = rifle.s;
    begin = seconds();
    for (std::size_t row = 0; row <= 17; ++row) {
      rifle.s.chargeKg = table.charge[row] / (kGrainsPerGram * 1000);
      rifle.s.Ba0 = load.Ba0 * (row == 16 ? 1.05 : row == 17 ? 0.95 : 1);
      benchmark::DoNotOptimize(quickShot(rifle.s, rifle.curve, rifle.result));
    }
    shots_alone = std::min(shots_alone, seconds() - begin);
    rifle.s = load;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * 18);
  state.counters["over_single_shots"] = with_table / shots_alone;
}
BENCHMARK(load_table)->Iterations(500);

// The charges of a finished run shot once more, as often as the run took shots, one for each powder at the
// charge that it started with: the price without the table.
double replay(const RecordTable& powders, const PowderTable& table) {
  Rifle rifle;
  const Strategy& strategy = strategies()[static_cast<std::size_t>(table.criteria.strategy)];
  const double start = strategy.share * rifle.s.caseM3 * 1000;  // kg
  const double begin = seconds();
  for (int shot = 0; shot < table.shots; ++shot) {
    const PowderRow& row = table.rows[static_cast<std::size_t>(shot) % table.rows.size()];
    const int at = static_cast<int>(read_number(row.name.substr(8)));
    rifle.s.ExwJ = powders.number(at, powder_field::Exw) * 1000;
    rifle.s.Ba0 = powders.number(at, powder_field::Ba0);
    const bool first = shot < table.row_index() + 1 && strategy.start == StartCharge::space;
    rifle.s.chargeKg = first ? start : row.cell(2) > 0 ? row.cell(2) : 0.0027;
    if (row.cell(10) > 0) rifle.s.caseM3 = row.cell(10) - rifle.s.dim.Vvg / dicht_H2 / kGrainsPerGram / 1e6;
    if (row.cell(11) > 0) rifle.s.travelM = row.cell(11) - 1.7 * 0.0254;
    benchmark::DoNotOptimize(quickShot(rifle.s, rifle.curve, rifle.result));
  }
  return seconds() - begin;
}

void powder_table(benchmark::State& state) {
  const RecordTable powders = list(2000);
  const PowderCriteria criteria = criteria_of(state.range(0));
  Rifle rifle;
  PowderTable table;
  double with_table = 1e9, shots_alone = 1e9;  // the best of all rounds
  std::int64_t shots = 0;
  for (auto _ : state) {
    const double begin = seconds();
    RunPowderTable(rifle.s, rifle.curve, rifle.result, powders, criteria, {}, {}, {}, table);
    with_table = std::min(with_table, seconds() - begin);
    shots += table.shots;
    state.PauseTiming();
    shots_alone = std::min(shots_alone, replay(powders, table));
    state.ResumeTiming();
  }
  state.SetItemsProcessed(shots);
  state.counters["shots_per_powder"] = table.shots / 2000.0;
  state.counters["over_single_shots"] = with_table / shots_alone;
}
BENCHMARK(powder_table)->DenseRange(0, kStrategies - 1)->Iterations(8)->Unit(benchmark::kMillisecond);

// The fine step, which takes the most points, and powders of every kind.
void deaf_to_escape(benchmark::State& state) {
  const RecordTable powders = odd_list(2000);
  PowderCriteria criteria = criteria_of(state.range(0));
  criteria.bamint = 0;
  criteria.bamaxt = 1000;
  Rifle rifle;
  rifle.s.schrit = 1;
  PowderTable table;
  double longest = 0, looked = 0;
  const auto look = [&] {
    const double now = seconds();
    longest = std::max(longest, now - looked);
    looked = now;
    return false;
  };
  for (auto _ : state) {
    looked = seconds();
    RunPowderTable(rifle.s, rifle.curve, rifle.result, powders, criteria, {}, {}, {look, {}}, table);
    look();  // the sorting at the end too
  }
  state.counters["longest_ms"] = longest * 1000;
}
BENCHMARK(deaf_to_escape)->DenseRange(0, kStrategies - 1)->Iterations(2)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
