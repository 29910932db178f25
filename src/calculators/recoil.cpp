#include "calculators/recoil.h"

#include <cmath>

#include "text/number.h"

namespace tv {
namespace {

constexpr double kGasVelocity = 1300;  // m/s, at which the gas leaves the muzzle

bool all_finite(const Recoil& r) {
  for (const double x : {r.peak_kN, r.mount_kN, r.muzzle_kN, r.impulse, r.velocity, r.travel_mm, r.energy,
                         r.total_impulse, r.total_velocity, r.total_travel_mm, r.total_energy, r.gas_ms})
    if (!std::isfinite(x)) return false;
  return true;
}

enum class Quantity { force, impulse, velocity, length, energy, time };

struct Unit {
  double imperial;  // factor
  const char* pattern;
};
constexpr Unit kUnits[] = {{224.808, "0.00"}, {7.2333, "0.00"}, {kFeetPerMetre, "0.00"},
                           {1 / 25.4, "0.0"}, {0.7376, "0.0"},  {1, "0.00"}};

struct Row {
  const char* name;
  Quantity quantity;
  double Recoil::*value;
};
constexpr Row kRows[] = {
    {"mx_r_kraft", Quantity::force, &Recoil::peak_kN},
    {"mont_kraft", Quantity::force, &Recoil::mount_kN},
    {"kraft_muend", Quantity::force, &Recoil::muzzle_kN},
    {"gaus_imp", Quantity::impulse, &Recoil::impulse},
    {"gaus_vel", Quantity::velocity, &Recoil::velocity},
    {"gaus_weg", Quantity::length, &Recoil::travel_mm},
    {"gaus_ener", Quantity::energy, &Recoil::energy},
    {"ges_imp", Quantity::impulse, &Recoil::total_impulse},
    {"ges_vel", Quantity::velocity, &Recoil::total_velocity},
    {"ges_weg", Quantity::length, &Recoil::total_travel_mm},
    {"ges_ener", Quantity::energy, &Recoil::total_energy},
    {"gas_dau", Quantity::time, &Recoil::gas_ms},
};

std::string shown(const Recoil& r, const Row& row, bool imperial) {
  const Unit& unit = kUnits[static_cast<std::size_t>(row.quantity)];
  return format_number(r.*row.value * (imperial ? unit.imperial : 1), unit.pattern);
}

const std::string& text_of(const std::vector<RecoilField>& fields, std::string_view name) {
  for (const RecoilField& field : fields)
    if (field.name == name) return field.text;
  return fields.front().text;
}

}  // namespace

RecoilShot recoil_shot(const CalcState& s, const ShotCurve& curve, const ShotResult& result) {
  const auto muzzle = static_cast<std::size_t>(result.lastIdx);
  return {s.bulletKg, s.chargeKg, s.boreM2, result.pMax, curve.p[muzzle], curve.v[muzzle], curve.x[muzzle]};
}

Recoil recoil(const RecoilGun& gun, const RecoilShot& shot) {
  const double m = shot.bullet_kg, w = shot.charge_kg, V = shot.velocity, c = gun.charge_share;
  Recoil r;
  r.peak_kN = shot.bore_m2 * shot.peak_Pa / 1000;
  r.mount_kN = r.peak_kN * gun.scope_kg / gun.gun_kg;
  const double ejected = c * w + m;
  r.impulse = V * ejected;
  const double muzzle_force = shot.bore_m2 * shot.muzzle_Pa * m / ejected;
  r.muzzle_kN = muzzle_force / 1000;
  const double recoiling = (1 - c) * w + gun.gun_kg;
  r.velocity = ejected * V / recoiling;
  r.travel_mm = ejected * shot.travel_m / recoiling * 1000;
  r.energy = r.velocity * r.velocity * recoiling / 2;
  const double k = kGasVelocity / V;  // how much faster than the bullet the gas is
  r.total_velocity = (k * w + m) * V / recoiling;
  r.total_impulse = recoiling * r.total_velocity;
  r.total_energy = r.total_velocity * r.total_velocity * recoiling / 2;
  // The force falls from its value at the muzzle to nothing: half of it is the mean.
  const double t = (k - c) * w * V / (muzzle_force / 2);
  r.gas_ms = t * 1000;
  // Not the way from sg on, but the way while the gas runs out: the mean velocity and a sixth for the force
  // that falls.
  r.total_travel_mm = ((r.total_velocity + r.velocity) / 2 + (r.total_velocity + r.velocity) / 6) * t * 1000;
  r.ok = V > 0 && recoiling > 0 && muzzle_force > 0 && all_finite(r);
  return r;
}

std::vector<RecoilField> recoil_fields(const Recoil& r, bool imperial) {
  std::vector<RecoilField> fields;
  for (const Row& row : kRows) fields.push_back({row.name, r.ok ? shown(r, row, imperial) : ""});
  const double after = read_number(text_of(fields, "ges_imp")) - read_number(text_of(fields, "gaus_imp"));
  fields.push_back({"nach_imp", r.ok ? format_number(after, "0.00") : ""});
  return fields;
}

}  // namespace tv
