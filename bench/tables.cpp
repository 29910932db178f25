// The tables beside the time of as many single shots: what a table adds to its shots stays under 5 %.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

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
  for (auto _ : state) RunLoadTable(rifle.s, rifle.curve, rifle.result, settings, {}, table);
  state.SetItemsProcessed(state.iterations() * 18);
}
BENCHMARK(load_table);

// The charges of a finished run shot once more, as often as the run took shots: its price without the table.
double replay(const RecordTable& powders, const PowderTable& table) {
  Rifle rifle;
  const double begin = seconds();
  for (int shot = 0; shot < table.shots; ++shot) {
    const PowderRow& row = table.rows[static_cast<std::size_t>(shot) % table.rows.size()];
    const int at = static_cast<int>(read_number(row.name.substr(8)));
    rifle.s.ExwJ = powders.number(at, powder_field::Exw) * 1000;
    rifle.s.Ba0 = powders.number(at, powder_field::Ba0);
    rifle.s.chargeKg = row.cell(2) > 0 ? row.cell(2) : 0.0027;
    if (row.cell(10) > 0) rifle.s.caseM3 = row.cell(10) - rifle.s.dim.Vvg / dicht_H2 / kGrainsPerGram / 1e6;
    if (row.cell(11) > 0) rifle.s.travelM = row.cell(11) - 1.7 * 0.0254;
    benchmark::DoNotOptimize(quickShot(rifle.s, rifle.curve, rifle.result));
  }
  return seconds() - begin;
}

void powder_table(benchmark::State& state) {
  const RecordTable powders = list(2000);
  PowderCriteria criteria;
  criteria.strategy = static_cast<int>(state.range(0));
  criteria.maxtab = 360;
  criteria.veltab = 820;
  criteria.lv_min = 29;
  criteria.lratio = 90;
  criteria.hratio = 80;
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

}  // namespace

BENCHMARK_MAIN();
