#include "calculators/band.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "engine/results.h"
#include "geometry/dimensions.h"

namespace tv {
namespace {

enum Input : std::size_t { kBa0, kCharge, kVolume, kBullet, kSeating, kBarrel, kStart };

constexpr BandInput kInputs[kBandInputs] = {
    {"abkof0", "spr_Ba0", "%", 2},        {"powwht", "spr_charge", "gr", 0.1},
    {"volful", "spr_volume", "%", 1},     {"bulgew", "spr_bullet", "%", 0.2},
    {"sdepth", "spr_seating", "mm", 0.1}, {"laflen", "spr_barrel", "mm", 1},
    {"anfdru", "spr_start", "%", 10},
};

// A load without a brim full capacity knows its effective volume only.
double capacity(const CartridgeDimensions& d) { return d.Volf > 0 ? d.Volf : d.Veff; }

double displaced(CartridgeDimensions d) {
  move_dimensions(d, kNothingMoved, d.Zkal * kMmPerInch, [](Dimension) {});
  return d.Vvg;
}

// Deeper by mm: less volume, more travel.
void seat_deeper(CartridgeDimensions& d, double mm) {
  const double before = displaced(d);
  d.Bsd += mm / kMmPerInch;
  d.Veff -= displaced(d) - before;
  d.Wob += mm;
}

void shift(CalcState& s, std::size_t input, double amount) {
  CartridgeDimensions& d = s.dim;
  const double factor = 1 + amount / 100;
  switch (input) {
    case kBa0:
      s.Ba0 *= factor;
      break;
    case kCharge:
      s.chargeGr += amount;
      break;
    case kVolume:
      d.Veff += capacity(d) * amount / 100;
      break;
    case kBullet:
      d.Bwg *= factor;
      break;
    case kSeating:
      seat_deeper(d, amount);
      break;
    case kBarrel:
      d.Wob += amount;
      break;
    case kStart:
      if (s.start_pressure >= 1e6) s.start_pressure *= factor;
      break;
  }
}

// The normal deviates of one seed.
class Normal {
public:
  explicit Normal(std::uint64_t seed) : engine_(seed) {}
  double operator()() {
    if (kept_) return *std::exchange(kept_, {});
    const double radius = std::sqrt(-2 * std::log(unit())), angle = 2 * M_PI * unit();
    kept_ = radius * std::sin(angle);
    return radius * std::cos(angle);
  }

private:
  double unit() { return (static_cast<double>(engine_() >> 11) + 0.5) * 0x1p-53; }  // never 0

  std::mt19937_64 engine_;
  std::optional<double> kept_;
};

struct Shot {
  ShotCurve curve;
  ShotResult result;

  bool fire(CalcState s) {
    convertUnits(s);
    return prepareShot(s) == SetUp::ok && runShot(s, curve, result, ShotFor::figures).ok();
  }
};

// At the share of a sorted row, between neighbours in proportion.
double quantile(const std::vector<double>& sorted, double percent) {
  const double at = percent / 100 * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(at);
  const std::size_t above = std::min(below + 1, sorted.size() - 1);
  return sorted[below] + (at - static_cast<double>(below)) * (sorted[above] - sorted[below]);
}

void tell(BandFigure& figure, std::vector<double> draws) {
  if (draws.empty()) return;
  std::ranges::sort(draws);
  for (std::size_t i = 0; i < kBandShares.size(); ++i) figure.q[i] = quantile(draws, kBandShares[i]);
  double mean = 0, squares = 0;
  for (const double x : draws) mean += x / static_cast<double>(draws.size());
  for (const double x : draws) squares += (x - mean) * (x - mean);
  figure.sd = std::sqrt(squares / static_cast<double>(draws.size()));
}

std::vector<BandEffect> effects(const CalcState& s, const BandSpreads& spreads, Shot& shot) {
  std::vector<BandEffect> all;
  for (std::size_t i = 0; i < kBandInputs; ++i) {
    BandEffect effect{i, spreads[i], 0, 0};
    bool ok = spreads[i] > 0;
    for (const double side : {0.5, -0.5}) {
      CalcState moved = s;
      shift(moved, i, 2 * side * spreads[i]);
      ok = ok && shot.fire(moved);
      effect.pMax += side * shot.result.pMax;
      effect.vMuzzle += side * shot.result.vMuzzle;
    }
    if (!ok) effect.pMax = effect.vMuzzle = 0;
    all.push_back(effect);
  }
  std::ranges::stable_sort(all, std::greater{}, [](const BandEffect& e) {
    return std::pair(std::fabs(e.pMax), std::fabs(e.vMuzzle));
  });
  return all;
}

// Pressure and velocity of all draws at the same places.
class Curves {
public:
  Curves(int points, double travel) : p_(static_cast<std::size_t>(points)), v_(p_.size()) {
    for (std::size_t n = 0; n < p_.size(); ++n)
      curve_.x.push_back(travel * static_cast<double>(n) /
                         static_cast<double>(std::max<std::size_t>(1, p_.size() - 1)));
  }

  // Linear between the points of the shot; behind its muzzle there is nothing.
  void add(const Shot& shot) {
    const ShotCurve& c = shot.curve;
    const auto last = static_cast<std::size_t>(shot.result.lastIdx);
    std::size_t i = 1;
    for (std::size_t n = 0; n < p_.size(); ++n) {
      const double x = curve_.x[n];
      while (i < last && c.x[i] < x) ++i;
      if (x > c.x[i] * (1 + 1e-9)) return;
      const double width = c.x[i] - c.x[i - 1], part = width > 0 ? (x - c.x[i - 1]) / width : 1;
      p_[n].push_back(c.p[i - 1] + part * (c.p[i] - c.p[i - 1]));
      v_[n].push_back(c.v[i - 1] + part * (c.v[i] - c.v[i - 1]));
    }
  }

  BandCurve range() {
    for (std::size_t n = 0; n < p_.size(); ++n) {
      put(p_[n], curve_.p_low, curve_.p_high);
      put(v_[n], curve_.v_low, curve_.v_high);
    }
    return curve_;
  }

private:
  static void put(std::vector<double>& draws, std::vector<double>& low, std::vector<double>& high) {
    std::ranges::sort(draws);
    low.push_back(draws.empty() ? 0 : quantile(draws, kBandShares.front()));
    high.push_back(draws.empty() ? 0 : quantile(draws, kBandShares.back()));
  }

  BandCurve curve_;
  std::vector<std::vector<double>> p_, v_;
};

}  // namespace

std::span<const BandInput, kBandInputs> band_inputs() { return kInputs; }

BandSpreads standard_spreads() {
  BandSpreads spreads;
  for (std::size_t i = 0; i < kBandInputs; ++i) spreads[i] = kInputs[i].standard;
  return spreads;
}

double band_percent(const CalcState& s, std::size_t input) {
  switch (input) {
    case kCharge:
      return s.chargeGr / 100;
    case kSeating:
      return std::fabs(s.dim.Bsd) * kMmPerInch / 100;
    case kBarrel:
      return s.dim.Llen * kMmPerInch / 100;
    default:
      return 1;
  }
}

Band predict_band(const CalcState& s, const BandSpreads& spreads, const BandOptions& options) {
  Band band;
  Shot shot;
  if (!shot.fire(s)) return band;
  band.ok = true;
  band.pMax.value = shot.result.pMax;
  band.vMuzzle.value = shot.result.vMuzzle;
  Curves curves(options.curve_points, s.dim.Wob / 1000);
  Normal normal(options.seed);
  std::vector<double> p, v;
  int over = 0;
  for (band.draws = 0; band.draws < options.draws; ++band.draws) {
    CalcState moved = s;
    // Every input has its deviate, whatever its spread: one spread changed leaves the others' draws alone.
    for (std::size_t i = 0; i < kBandInputs; ++i) {
      const double deviate = normal();
      if (spreads[i] > 0) shift(moved, i, deviate * spreads[i]);
    }
    if (!shot.fire(moved)) {
      ++band.failed;
      continue;
    }
    p.push_back(shot.result.pMax);
    v.push_back(shot.result.vMuzzle);
    over += pressure_state(shot.result.pMax, s.dim.zul_P) == PressureState::over_limit;
    if (options.curve_points > 0) curves.add(shot);
  }
  if (s.dim.zul_P > 0 && !p.empty()) band.over_limit = over / static_cast<double>(p.size());
  tell(band.pMax, std::move(p));
  tell(band.vMuzzle, std::move(v));
  band.effects = effects(s, spreads, shot);
  if (options.curve_points > 0) band.curve = curves.range();
  return band;
}

}  // namespace tv
