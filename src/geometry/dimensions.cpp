#include "geometry/dimensions.h"

#include <cmath>

#include "engine/checked.h"

namespace tv {
namespace {

bool boat_tail(const CartridgeDimensions& d) { return d.TAIL && d.tail_type == kOuterCone; }

// One recompute: the record, and who is told of what is written.
struct Recompute {
  CartridgeDimensions& d;
  const std::function<void(Dimension)>& wrote;

  void set(double& value, double to, Dimension which) {
    value = finite(to);
    wrote(which);
  }
  void ssd_follows() { set(d.ssd, ssd_of_Bsd(d), Dimension::ssd); }
  void seating_follows() {
    set(d.Bsd, d.Hlen + d.Glen - d.Plen, Dimension::Bsd);
    ssd_follows();
  }
  double overall_length() const { return d.Glen - d.Bsd >= 0 ? d.Hlen + d.Glen - d.Bsd : d.Hlen; }

  void propagate(int kind) {
    switch (kind) {
      case kSeatingDepth:
        if (d.Bsd > d.Hlen) return;
        set(d.Plen, overall_length(), Dimension::Plen);
        return ssd_follows();
      case kCaseLength:
        if (d.Plen < d.Hlen) set(d.Plen, d.Hlen, Dimension::Plen);
        return seating_follows();
      case kBulletLength:
      case kOverallLength:
        return seating_follows();
      case kBandSeating:
        if (d.Bsd > d.Hlen) return;
        wrote(Dimension::Plen);  // as it stood: the field lags one edit behind, the stored value is the right
                                 // one
        set(d.Bsd, Bsd_of_ssd(d), Dimension::Bsd);
        d.Plen = finite(overall_length());
        return;
      default:
        return ssd_follows();
    }
  }

  void volumes(double Zkalm_shown) {
    const double body = d.Bsd * 198.23 * (d.Zkal * d.Zkal);
    set(d.Vvg, d.TAIL ? (body - tail_volume(d, Zkalm_shown) * kGrainsPerGram) / dicht_H2 : body / dicht_H2,
        Dimension::Vvg);
    set(d.Veff, d.Volf - d.Vvg, Dimension::Veff);
    set(d.Wob, (d.Llen - d.Hlen + d.Bsd) * kMmPerInch, Dimension::Wob);
  }
};

}  // namespace

double ssd_of_Bsd(const CartridgeDimensions& d) {
  return boat_tail(d) ? d.Bsd - d.tail_len / kMmPerInch : d.Bsd;
}

double Bsd_of_ssd(const CartridgeDimensions& d) {
  return boat_tail(d) ? d.ssd + d.tail_len / kMmPerInch : d.ssd;
}

double tail_volume(const CartridgeDimensions& d, double Zkalm_shown) {
  const double R = d.tail_dia_large / 2, r = d.tail_dia_small / 2;
  const double frustum =
      (d.tail_len * kPi / 3000) * (R * R + d.tail_dia_large * d.tail_dia_small / 4 + r * r);
  if (d.tail_type != kOuterCone) return frustum;
  return (Zkalm_shown / 2) * (Zkalm_shown / 2) * d.tail_len * kPi / 1000 - frustum;
}

bool tail_is_possible(const CartridgeDimensions& d) {
  const double bullet_mm = d.buldin * kMmPerInch;
  return d.tail_len > 0 && d.tail_dia_small >= 0 && bullet_mm >= d.tail_dia_small &&
         d.tail_dia_large - bullet_mm <= 0.02 && d.tail_dia_small <= d.tail_dia_large;
}

double tail_angle(const CartridgeDimensions& d) {
  const double step = std::fabs(d.tail_dia_large - d.tail_dia_small);
  if (!(step >= 0.01) || !(d.tail_len > 0) || d.tail_type == kFlatBase) return 0;
  const double degrees = std::atan(step / 2 / d.tail_len) * 180 / kPi;
  return d.tail_type == kOuterCone ? degrees : -degrees;
}

bool move_dimensions(CartridgeDimensions& d, int kind, double Zkalm_shown,
                     const std::function<void(Dimension)>& wrote) try {
  Recompute r{d, wrote};
  if (d.Hlen > 0 && d.Plen > 0 && d.Glen > 0) r.propagate(kind);
  r.volumes(Zkalm_shown);
  return true;
} catch (const ArithmeticFailure&) {
  return false;
}

}  // namespace tv
