// The model's four equations, integrated numerically: motion, energy and the two burn laws, written here for
// themselves and sharing no formula with the engine. The velocity is the running variable, since a plain
// charge at rest has neither pressure nor burnt powder and would never start in time:
//   dz/dv = K sqrt(1 + b z), then K f sqrt(1 - z), K = a m / (P0 A)
//   dx/dv = m v / (A p),  p = (kappa - 1) (w0 Q z - m v^2 / 2) / (V0 + A x)
// Behind z1 the unknown is u = sqrt(1 - z), du/dv = -K f / 2, which stays regular where burning ends.
#pragma once

#include <cmath>

#include "engine/calc_state.h"

namespace tv::test {

class Integration {
public:
  enum class Law { first, second, burnt };

  explicit Integration(const CalcState& s) : s_(s), K_(s.Ba0 * s.effMass / (98066.5 * s.boreM2)) {
    if (s.start_pressure >= 1e6) at_.y = s.start_pressure * s.freeVol / ((s.Kap - 1) * s.chargeKg * s.ExwJ);
  }
  // From any state, such as a logged point.
  Integration(const CalcState& s, double v, double x, double z) : Integration(s) {
    v_ = v;
    at_ = {z, x};
    if (z >= s.Limz1) {
      law_ = z < 1 ? Law::second : Law::burnt;
      at_.y = std::sqrt(std::fabs(1 - z));
    }
  }

  double v() const { return v_; }
  double x() const { return at_.x; }
  double z() const { return z_of(law_, at_); }
  double p() const { return p_of(law_, at_, v_); }
  double highest_p() const { return highest_; }

  void to_velocity(double v, int steps) {
    const double h = (v - v_) / steps;
    for (int n = 0; n < steps; ++n) advance(n + 1 < steps ? h : v - v_);
  }
  // Steps of h until x would pass, then that step is halved onto it.
  void to_travel(double x, double h) {
    while (h > 1e-11) {
      const Integration before = *this;
      advance(h);
      if (at_.x > x) {
        *this = before;
        h /= 2;
      }
    }
  }

private:
  struct State {
    double y = 0;  // z by the first law, sqrt(1 - z) by the second
    double x = 0;
  };

  static double z_of(Law law, State at) {
    return law == Law::first ? at.y : law == Law::second ? 1 - at.y * at.y : 1;
  }
  double p_of(Law law, State at, double v) const {
    const double energy = s_.chargeKg * s_.ExwJ * z_of(law, at) - s_.effMass * v * v / 2;
    return (s_.Kap - 1) * energy / (s_.freeVol + s_.boreM2 * at.x);
  }
  State slope(State at, double v) const {
    State d;
    if (law_ == Law::first) d.y = K_ * std::sqrt(1 + s_.PDko * at.y);
    if (law_ == Law::second) d.y = -K_ * s_.Ba1 / 2;
    // At rest in the plain model both v and p vanish; their ratio does not.
    d.x = v == 0 && at.y == 0
              ? s_.effMass * s_.freeVol / (s_.boreM2 * (s_.Kap - 1) * s_.chargeKg * s_.ExwJ * K_)
              : s_.effMass * v / (s_.boreM2 * p_of(law_, at, v));
    return d;
  }
  State stepped(double h) const {
    const auto moved = [&](State k, double part) { return State{at_.y + part * k.y, at_.x + part * k.x}; };
    const State k1 = slope(at_, v_);
    const State k2 = slope(moved(k1, h / 2), v_ + h / 2);
    const State k3 = slope(moved(k2, h / 2), v_ + h / 2);
    const State k4 = slope(moved(k3, h), v_ + h);
    return {at_.y + h / 6 * (k1.y + 2 * k2.y + 2 * k3.y + k4.y),
            at_.x + h / 6 * (k1.x + 2 * k2.x + 2 * k3.x + k4.x)};
  }
  void take(State next, double h) {
    at_ = next;
    v_ += h;
    highest_ = std::fmax(highest_, p());
  }
  bool passes(State next) const {
    return (law_ == Law::first && next.y > s_.Limz1) || (law_ == Law::second && next.y < 0);
  }
  // One step, parted where the law changes or burning ends.
  void advance(double h) {
    if (!passes(stepped(h))) return take(stepped(h), h);
    double low = 0, high = h;
    for (int n = 0; n < 60; ++n) {
      const double mid = (low + high) / 2;
      (passes(stepped(mid)) ? high : low) = mid;
    }
    take(stepped(low), low);
    law_ = law_ == Law::first && s_.Limz1 < 1 ? Law::second : Law::burnt;
    at_.y = law_ == Law::second ? std::sqrt(1 - s_.Limz1) : 0;
    advance(h - low);
  }

  CalcState s_;
  double K_;
  Law law_ = Law::first;
  double v_ = 0;
  State at_;
  double highest_ = 0;
};

}  // namespace tv::test
