// Setting every key of a file in forty sections: what stands there already is changed, as many keys are
// added. The time for each key must not grow with the file.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <string>

#include "text/sectioned_file.h"

namespace {

constexpr int kSections = 40;

std::string section(int i) { return fmt::format("section {}", i % kSections); }

void set_keys(benchmark::State& state) {
  const int keys = static_cast<int>(state.range(0));
  tv::SectionedFile before;
  for (int i = 0; i < keys; i += 2) before.set(section(i), fmt::format("key{}", i), "a value");
  const std::string bytes = before.bytes();
  std::size_t written = 0;
  for (auto _ : state) {
    tv::SectionedFile file(bytes);
    for (int i = 0; i < keys; ++i) file.set_number(section(i), fmt::format("key{}", i), i);
    written = file.bytes().size();
  }
  state.SetLabel(fmt::format("{:.1f} MB", static_cast<double>(written) / 1e6));
  state.SetItemsProcessed(state.iterations() * keys);
}

}  // namespace

BENCHMARK(set_keys)->RangeMultiplier(10)->Range(400, 400000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
