// A calculation as a script and a person do it, with the settings and the transfer file that follow it, beside
// the flushed writing of both at each one, which is what it would cost if the work waited for the disk.
#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "cli/cli.h"
#include "text/codepage.h"
#include "text/sectioned_file.h"

namespace {

namespace fs = std::filesystem;

// On the disk of the working folder: that of temporary files may be none.
class Root {
public:
  Root() : path_((fs::current_path() / fmt::format("bench-files-{}", getpid())).string()) {
    fs::create_directories(path_);
  }
  ~Root() { fs::remove_all(path_); }
  const std::string& path() const { return path_; }

private:
  std::string path_;
};

std::string script(int calculations) {
  std::string lines = "open load " TV_SHARE_DIR "/data/loads/308_winchester_168.dat\n";
  for (int i = 0; i < calculations; ++i)
    lines += fmt::format("type Form4.MPgn \"{:.1f}\"\npress Form4.CalcAll\n", 30 + 0.1 * (i % 60));
  return lines;
}

void played_calculations(benchmark::State& state) {
  const int calculations = static_cast<int>(state.range(0));
  const std::string lines = script(calculations);
  for (auto _ : state) {
    const Root root;
    const char* words[] = {"ternovale-cli", "--root", root.path().c_str(), "--language", "english",
                           "play",          "-"};
    std::istringstream in(lines);
    std::ostringstream out, err;
    if (tv::run(std::size(words), words, in, out, err) != tv::kDone) state.SkipWithError(err.str().c_str());
  }
  state.SetItemsProcessed(state.iterations() * calculations);
}

void waiting_for_the_disk(benchmark::State& state) {
  const Root root;
  fs::create_directories(root.path());
  int n = 0;
  for (auto _ : state)
    for (const char* name : {"/ternofw.set", "/ternofw.xmt"})
      tv::settings_write("chargedata", "powwht", std::to_string(++n), root.path() + name,
                         tv::CodePage::cp1252);
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(played_calculations)->Arg(10)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(waiting_for_the_disk)->UseRealTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
