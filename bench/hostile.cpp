// Hostile loads through the engine, as many as wanted: bench_hostile [COUNT [SEED]], a million and 1 unless
// told. Half of them lie at the edges of what the set-up accepts, half have inputs replaced by anything and
// nothing checked. Every run must end soon, as a value; a run that finished must have finite figures only,
// and within what physics allows unless a note says otherwise. Prints what was tried and how it ended; status
// 1 when something was found.
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "engine/loads.h"
#include "engine/shot.h"

namespace {

using namespace tv;

constexpr double kLongest = 1.0;  // s, for one run on a busy machine

struct Counts {
  std::array<long, 6> ends{};                                              // by ShotEnd
  std::array<long, static_cast<std::size_t>(Stage::bounds) + 1> failed{};  // by stage
  long noted = 0;  // finished, with the note of the ledger
  long found = 0;
  double longest = 0;  // s
};

bool all_finite(std::initializer_list<double> values) {
  return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

const char* not_finite(const ShotCurve& c, const ShotResult& r) {
  for (std::size_t i = 0; i <= static_cast<std::size_t>(r.lastIdx); ++i) {
    if (!all_finite({c.x[i], c.v[i], c.p[i], c.z[i], c.sigma[i], c.w[i], c.t[i], c.pB[i]}))
      return "curve not finite";
  }
  const bool fine = all_finite(
      {r.pMax, r.xPeak, r.vPeak, r.zPeak, r.vMuzzle, r.zMuzzle, r.t10, r.ptime, r.tStart, r.pBasePeak});
  return fine ? nullptr : "result not finite";
}

// What no gun can do; velocities after bore friction are below those of the ledger's own look.
const char* beyond_physics(const CalcState& s, const ShotCurve& c, const ShotResult& r) {
  const auto last = static_cast<std::size_t>(r.lastIdx);
  const double heat = s.chargeKg * s.ExwJ, moving = s.effMass * c.v[last] * c.v[last] / 2;
  const double gas = c.p[last] * (s.freeVol + s.boreM2 * c.x[last]) / (s.Kap - 1);
  if (moving > 1.01 * heat) return "bullet above the heat of the charge";
  if (!s.frictionOn && moving + gas > 1.01 * heat) return "energy above the heat of the charge";
  if (c.v[last] > 2 * std::sqrt(s.Kap * s.ExwJ / (s.Kap - 1))) return "velocity above that of the gas";
  if (r.pMax < 0 || c.p[last] < 0) return "negative pressure";
  if (c.pB[last] > c.p[last] * (1 + 1e-6)) return "base pressure above the mean";
  if (c.t[0] > c.t[static_cast<std::size_t>(r.peakIdx)] || c.t[static_cast<std::size_t>(r.peakIdx)] > 0)
    return "time runs back";
  return nullptr;
}

void report(Counts& counts, long load, const char* what) {
  if (++counts.found <= 20) fmt::print("load {}: {}\n", load, what);
}

void shoot(const CalcState& s, long load, Counts& counts) {
  static ShotCurve curve;
  ShotResult result;
  const auto start = std::chrono::steady_clock::now();
  const ShotOutcome outcome = runShot(s, curve, result);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  counts.longest = std::max(counts.longest, took.count());
  if (took.count() > kLongest) report(counts, load, "takes too long");
  ++counts.ends[static_cast<std::size_t>(outcome.end)];
  if (outcome.end == ShotEnd::failed) ++counts.failed[static_cast<std::size_t>(outcome.stage)];
  if (!outcome.ok()) return;
  const bool noted = result.runNotes.has(Note::fwarn19);
  counts.noted += noted;
  const char* what = not_finite(curve, result);
  if (what == nullptr && !noted) what = beyond_physics(s, curve, result);
  if (what != nullptr) report(counts, load, what);
}

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 1000000;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atol(argv[2])) : 1;
  test::LoadMaker make(seed);
  Counts counts;
  CalcState base;
  for (long n = 0; n < count; ++n) {
    if (n % 200 == 0) base = make.reasonable(n % 400 == 0);
    shoot(n % 2 == 0 ? make.edge() : make.wild(base), n, counts);
  }
  constexpr std::array kEnds{"finished",       "no space",     "no solution",
                             "too many steps", "bullet stuck", "failed"};
  fmt::print("{} hostile loads, seed {}\n", count, seed);
  for (std::size_t n = 0; n < kEnds.size(); ++n) fmt::print("{:>9} {}\n", counts.ends[n], kEnds[n]);
  fmt::print("{:>9} of the finished with the note of the ledger\n", counts.noted);
  for (std::size_t n = 1; n < counts.failed.size(); ++n) {
    fmt::print("{:>9} failed in {}\n", counts.failed[n], stage_name(static_cast<Stage>(n)));
  }
  fmt::print("longest run {:.4f} s; found: {}\n", counts.longest, counts.found);
  return counts.found == 0 ? 0 : 1;
}
