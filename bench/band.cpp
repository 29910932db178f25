// The range of a prediction by 2,000 shots: the aim is a tenth of a second.
#include "calculators/band.h"

#include <benchmark/benchmark.h>

#include "example_loads.h"

namespace {

void band(benchmark::State& state) {
  const tv::CalcState s = tv::test::rifle_load();
  const tv::BandOptions options{2000, 1, static_cast<int>(state.range(0))};
  for (auto _ : state) benchmark::DoNotOptimize(tv::predict_band(s, tv::standard_spreads(), options));
  state.SetItemsProcessed(state.iterations() * options.draws);
}
BENCHMARK(band)->Arg(0)->Arg(101)->ArgName("curve_points")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
