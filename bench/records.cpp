// Reading 2,000 records of every kind, and files of 50,000, beside a plain read of the same bytes: the counter
// `to_plain` is how many times as long it takes. Of 50,000 the rows behind the last that a kind holds are read
// and told, not kept.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>

#include "data/record_file.h"
#include "text/file.h"

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

// Numbers in every field, in no order, so that the sorts have their full work.
tv::RecordFile scrambled(int rows) {
  tv::RecordFile file;
  unsigned number = 12345;
  for (int row = 0; row < rows; ++row) {
    tv::Record record;
    for (std::string& field : record) {
      number = number * 1664525U + 1013904223U;
      field = fmt::format("{:.3f}", 0.2 + 1e-10 * number);
    }
    record[0] = fmt::format("{}.{} example record {}", number % 12, number % 97, row);
    file.table.rows.push_back(record);
  }
  return file;
}

void read_kind(benchmark::State& state) {
  const auto kind = static_cast<tv::RecordKind>(state.range(0));
  const tv::RecordKindInfo& info = tv::record_kind(kind);
  std::string folder = (std::filesystem::temp_directory_path() / "tv-bench-XXXXXX").string();
  if (!mkdtemp(folder.data())) return state.SkipWithError("no folder");
  const std::string path = folder + "/records." + info.extension;
  const int most = tv::record_kind(kind).limit + 1, rows = static_cast<int>(state.range(1));
  const tv::RecordFile file = scrambled(rows > 2000 ? rows : std::min(rows, most));
  if (tv::write_records(path, file, kind, tv::CodePage::cp1252)) return state.SkipWithError("not written");
  Clock::duration records{}, plain{};
  for (auto _ : state) {
    const auto start = Clock::now();
    const tv::FileRead bytes = tv::read_file(path);
    benchmark::DoNotOptimize(bytes.bytes.data());
    const auto between = Clock::now();
    const tv::RecordRead read = tv::read_records(path, kind, tv::CodePage::cp1252);
    benchmark::DoNotOptimize(read.file.table.rows.data());
    plain += between - start;
    records += Clock::now() - between;
    state.SetIterationTime(seconds(Clock::now() - between));
  }
  state.SetLabel(fmt::format("{} {} rows", info.extension, file.table.rows.size()));
  state.counters["to_plain"] = seconds(records) / seconds(plain);
  std::filesystem::remove_all(folder);
}

}  // namespace

BENCHMARK(read_kind)
    ->ArgsProduct({benchmark::CreateDenseRange(0, tv::kRecordKinds - 1, 1), {2000, 50000}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
