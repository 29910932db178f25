#include "powder/black_powder.h"

#include <cmath>

namespace tv {

int offered_load(const BlackPowder& powder, int load) {
  if (offers(powder, load)) return load;
  for (int i = 0; i < kBlackPowderLoads; ++i)
    if (offers(powder, i)) return i;
  return load;
}

std::optional<double> black_powder_velocity(int load, double K, double charge_gr, double bullet_gr,
                                            double barrel_in) {
  if (!(charge_gr > 0) || !(bullet_gr > 0) || !(K > 0)) return {};
  const double r = charge_gr / bullet_gr;
  const double burnt = load == 0 ? std::sqrt(r / (r / 2 + 1)) : std::sqrt(r) * (1 - 0.3 * std::sqrt(r));
  const double v = K * std::pow(barrel_in, 0.25) * burnt;
  if (!std::isfinite(v)) return {};
  return v;
}

double round_ball_weight(double diameter_in) { return diameter_in * diameter_in * diameter_in * 1500; }

}  // namespace tv
