// Black powder: a muzzle velocity straight from charge, bullet weight, barrel length and Miller's factor K of
// the powder. It does not go through the engine.
#pragma once

#include <array>
#include <optional>

namespace tv {

// Muzzle loader with a round ball, muzzle loader with a conical bullet, breech loader with a metal cartridge.
inline constexpr int kBlackPowderLoads = 3;

struct BlackPowder {
  std::array<double, kBlackPowderLoads> K{};  // by kind of load; not above 0: not offered
  bool warned = false;                        // the charge may be too much from some weight on
};

inline bool offers(const BlackPowder& powder, int load) {
  return load >= 0 && load < kBlackPowderLoads && powder.K[static_cast<std::size_t>(load)] > 0;
}
// The kind of load that stays chosen with this powder: the one at hand if it is offered, else the first that
// is; with none the one at hand.
int offered_load(const BlackPowder& powder, int load);

// in:  load 0 to 2, K of it, charge and bullet [grains], barrel [inch]
// out: [ft/s]; nothing without charge or bullet, or if it is not finite. A charge beyond 11 times the bullet
//      gives a negative velocity for the bullets, which is told as it is.
std::optional<double> black_powder_velocity(int load, double K, double charge_gr, double bullet_gr,
                                            double barrel_in);

// Weight of a lead ball [grains] from its diameter [inch].
double round_ball_weight(double diameter_in);

}  // namespace tv
