// Hashes of every bit that shots give, over many random loads: a change of the engine that should change no
// figure leaves them as they are. Usage: bench_hash [LOADS], 60000 unless told. Each reasonable load runs in
// both variants and all step settings, and two hostile ones beside it. One line of hashes for each tenth of
// the loads: of what reasonable loads log and give, of what hostile ones do, and of how all of them end.
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "engine/loads.h"
#include "engine/shot.h"

namespace {

using namespace tv;

struct Hash {
  std::uint64_t value = 0xCBF29CE484222325U;
  void add(std::uint64_t bits) {
    value = (value ^ bits) * 0x100000001B3U;
    value ^= value >> 29;
  }
  void add(double x) { add(std::bit_cast<std::uint64_t>(x)); }
  void add(int n) { add(static_cast<std::uint64_t>(n)); }
};

struct Hashes {
  Hash reasonable, hostile, ends;
};

// A value that is not a number counts as one and the same: its sign and payload are the processor's affair.
void add_value(Hash& hash, double x) { hash.add(std::isnan(x) ? NAN : x); }

void add_shot(Hash& hash, const ShotCurve& c, const ShotResult& r, bool finished) {
  for (std::size_t i = 0; i <= static_cast<std::size_t>(r.lastIdx); ++i) {
    for (const double x : {c.x[i], c.v[i], c.p[i], c.z[i], c.sigma[i], c.w[i], c.pB[i], c.t[i], c.dt[i]}) {
      add_value(hash, x);
    }
  }
  for (const int n : {r.lastIdx, r.peakIdx, r.peakState, r.notBurnt, r.burnIdx, r.idx95, r.z1Idx}) {
    hash.add(n);
  }
  for (const double x :
       {r.pMax, r.xPeak, r.vPeak, r.zPeak, r.vMuzzle, r.zMuzzle, r.t10, r.ptime, r.tStart, r.pBasePeak}) {
    add_value(hash, x);
  }
  // A run that failed on its way back along the time axis left these anywhere.
  if (finished) hash.add(r.p10Idx), hash.add(r.tailIdx);
}

void shoot(const CalcState& s, Hash& values, Hash& ends) {
  static ShotCurve curve;
  ShotResult result;
  curve.dt.fill(0);  // which a run that fails leaves as the one before had it
  const ShotOutcome outcome = runShot(s, curve, result);
  add_shot(values, curve, result, outcome.ok());
  ends.add(static_cast<int>(outcome.end));
  ends.add(outcome.failure);
  ends.add(static_cast<int>(outcome.stage));
  for (int n = 0; n < result.runNotes.count; ++n) {
    ends.add(static_cast<int>(result.runNotes.notes[static_cast<std::size_t>(n)]));
  }
}

void shoot_load(test::LoadMaker& make, bool friction, Hashes& h) {
  CalcState s = make.reasonable(true);
  s.frictionOn = friction;
  s.frictionPress = 8e6;
  const double start_pressure = s.start_pressure;
  for (s.schrit = 0; s.schrit < 3; ++s.schrit) {
    setBaseStep(s);
    for (const double start : {0.0, start_pressure}) {
      s.start_pressure = start;
      shoot(s, h.reasonable, h.ends);
    }
  }
  shoot(make.wild(s), h.hostile, h.ends);
  shoot(make.edge(), h.hostile, h.ends);
}

}  // namespace

int main(int argc, char** argv) {
  const int loads = argc > 1 ? std::atoi(argv[1]) : 60000;
  test::LoadMaker make(51);
  Hashes h;
  for (int n = 0; n < loads; ++n) {
    shoot_load(make, n % 10 == 0, h);
    if ((n + 1) % (loads / 10) != 0) continue;
    std::printf("%7d reasonable %016llx hostile %016llx ends %016llx\n", n + 1,
                static_cast<unsigned long long>(h.reasonable.value),
                static_cast<unsigned long long>(h.hostile.value),
                static_cast<unsigned long long>(h.ends.value));
  }
}
