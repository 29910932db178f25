// Free recoil of the gun from the results of the last shot: at the moment the bullet leaves the muzzle, and
// after the gas has run out.
#pragma once

#include <string>
#include <vector>

#include "engine/calc_state.h"

namespace tv {

struct RecoilGun {
  double gun_kg = 0;          // whole mass of the gun, sight included; above 0
  double scope_kg = 0;        // mass of the sight
  double charge_share = 0.5;  // part of the charge that moves with the bullet, 0 to 1
};

// What a shot does to the gun; SI.
struct RecoilShot {
  double bullet_kg = 0, charge_kg = 0;
  double bore_m2 = 0;
  double peak_Pa = 0, muzzle_Pa = 0;
  double velocity = 0;  // at the muzzle
  double travel_m = 0;
};
RecoilShot recoil_shot(const CalcState& s, const ShotCurve& curve, const ShotResult& result);

struct Recoil {
  bool ok = false;                                  // else there is nothing to show
  double peak_kN = 0, mount_kN = 0, muzzle_kN = 0;  // forces: on the gun, of the sight's mount, of the gas
  double impulse = 0, velocity = 0;                 // at the bullet's exit, N s and m/s
  double travel_mm = 0, energy = 0;                 // J
  double total_impulse = 0, total_velocity = 0;     // after the gas
  double total_travel_mm = 0, total_energy = 0;
  double gas_ms = 0;  // mean time the gas takes to run out
};

// Momentum is shared between bullet with its part of the charge and the gun with the rest; then the gas runs
// out at 1300 m/s. Not ok when velocity, the mass that recoils or the muzzle force is not above 0, or a value
// is not finite.
Recoil recoil(const RecoilGun& gun, const RecoilShot& shot);

// The fields of the screen with their texts: force kN or lbf, impulse N s or lb ft/s, velocity m/s or fps,
// travel mm or in, energy J or ft lb, time ms. Empty texts when not ok. The after-effect impulse is the
// difference of the two impulses as shown, so that the three figures agree on the screen.
struct RecoilField {
  const char* name;
  std::string text;
};
std::vector<RecoilField> recoil_fields(const Recoil& recoil, bool imperial);

inline constexpr double kPoundsPerKg = 2.2046;  // of the masses entered on the screen

}  // namespace tv
