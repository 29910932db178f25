// Prints a hash of every bit of the curves and results of a few hundred loads, ten loads a line.
#include <bit>
#include <cstdint>
#include <cstdio>

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

void add_shot(Hash& hash, const ShotCurve& c, const ShotResult& r) {
  for (std::size_t i = 0; i <= static_cast<std::size_t>(r.lastIdx); ++i) {
    for (const double x : {c.x[i], c.v[i], c.p[i], c.z[i], c.sigma[i], c.w[i], c.pB[i], c.t[i]}) hash.add(x);
  }
  for (const int n : {r.lastIdx, r.peakIdx, r.peakState, r.burnIdx, r.idx95, r.z1Idx, r.p10Idx, r.tailIdx}) {
    hash.add(n);
  }
  for (const double x : {r.pMax, r.vMuzzle, r.zMuzzle, r.t10, r.ptime, r.tStart, r.pBasePeak}) hash.add(x);
}

}  // namespace

int main() {
  static ShotCurve curve;
  ShotResult result;
  test::LoadMaker make(51);
  for (int line = 0; line < 40; ++line) {
    Hash hash;
    for (int n = 0; n < 10; ++n) {
      CalcState s = make.reasonable(n % 2 == 0);
      s.frictionOn = n % 5 == 0;
      s.frictionPress = 8e6;
      hash.add(static_cast<int>(runShot(s, curve, result).end));
      add_shot(hash, curve, result);
    }
    std::printf("%016llx\n", static_cast<unsigned long long>(hash.value));
  }
}
