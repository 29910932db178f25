#include "calculators/powder_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tv {
namespace {

constexpr double kLevel = 0.95;
constexpr int kRounds = 40;
constexpr double kLongestStep = 0.3;   // of a scaled number in one round
constexpr double kFarthest = 1.5;      // from where it started: Ba0 by a factor of 4.5
constexpr double kSettled = 1e-7;      // a gain in the sum of squares below this ends the search
constexpr double kMostDamping = 1e6;   // no step helps any more
constexpr double kDifference = 0.005;  // for slopes; well above the grain of the muzzle's place
constexpr double kNotMet = 0.001;      // of the velocity: a single charge that is missed by more
constexpr int kManyShots = 1000;

enum class Second { none, PDko, start_pressure };
using Numbers = std::array<double, 2>;  // steps from the load: ln Ba0, PDko or ln of the start pressure

// How far half of an interval may reach.
struct Reach {
  double determined, barely;
};
constexpr Reach kReachBa0{0.05, 0.15}, kReachPDko{0.25, 0.75}, kReachStart{0.2, 0.6};

double joint(double PDko, double Limz1) { return std::sqrt(1 + PDko * Limz1) / std::sqrt(1 - Limz1); }

CalcState moved(const CalcState& s, Second second, const Numbers& by) {
  CalcState c = s;
  c.Ba0 = s.Ba0 * std::exp(by[0]);
  if (second == Second::PDko) {
    c.PDko = s.PDko + by[1];
    if (s.Limz1 < 1 && 1 + c.PDko * s.Limz1 > 0)
      c.Ba1 = s.Ba1 * joint(c.PDko, s.Limz1) / joint(s.PDko, s.Limz1);
  }
  if (second == Second::start_pressure) c.start_pressure = s.start_pressure * std::exp(by[1]);
  return c;
}

// What the data say of their scatter.
struct Scatter {
  double pooled = 0;  // spread of a shot, m/s; 0 if nobody knows any
  int freedom = 0;
};

Scatter pooled_scatter(std::span<const FitPoint> points) {
  double squares = 0, bare = 0;
  int freedom = 0, uncounted = 0;
  for (const FitPoint& p : points) {
    if (!(p.sd > 0)) continue;
    if (p.count >= 2) {
      squares += (p.count - 1) * p.sd * p.sd;
      freedom += p.count - 1;
    } else {
      bare += p.sd * p.sd;
      ++uncounted;
    }
  }
  if (freedom > 0) return {std::sqrt(squares / freedom), freedom};
  if (uncounted > 0) return {std::sqrt(bare / uncounted), kManyShots};
  return {};
}

// Standard errors of the means: what weighs, and what the pooled spread makes of them.
struct Errors {
  std::vector<double> weighing, pooled;
};

Errors errors_of(std::span<const FitPoint> points, const Scatter& scatter) {
  Errors errors;
  for (const FitPoint& p : points) {
    const double pooled = scatter.pooled > 0 ? scatter.pooled / std::sqrt(std::max(1, p.count)) : 1;
    errors.pooled.push_back(pooled);
    errors.weighing.push_back(p.sd > 0 && p.count >= 2 ? p.sd / std::sqrt(p.count) : pooled);
  }
  return errors;
}

// A symmetric matrix of two rows, of which the first alone counts with one number.
struct Matrix {
  double a = 0, b = 0, d = 0;  // [a b; b d]
};

class Fit {
public:
  Fit(const CalcState& s, std::span<const FitPoint> points, Second second)
      : s_(s),
        points_(points),
        second_(second),
        two_(second != Second::none),
        scatter_(pooled_scatter(points)),
        errors_(errors_of(points, scatter_)) {}

  // False when the search finds no ground.
  bool search() {
    auto at = residuals(by_);
    if (!at || !slopes(*at)) return false;
    double damping = 1e-3, now = squares(*at);
    for (int round = 0; round < kRounds && damping < kMostDamping && !edge(); ++round) {
      const Numbers step = step_of(*at, damping);
      const Numbers next{by_[0] + step[0], by_[1] + step[1]};
      const auto there = residuals(next);
      const double then = there ? squares(*there) : INFINITY;
      if (!(then <= now)) {
        damping *= 10;
        continue;
      }
      const bool settled = now - then < kSettled;
      by_ = next;
      at = there;
      now = then;
      damping /= 10;
      if (!slopes(*at)) return false;
      if (settled) break;
    }
    residuals_ = *at;
    return true;
  }

  PowderFit result() const {
    PowderFit fit;
    fit.residuals = residuals_;
    fit.state = moved(s_, second_, by_);
    const Matrix spread = covariance();
    const double reach = quantile();
    fit.fitted.push_back(number("abkof0", fit.state.Ba0, true, spread.a, reach));
    if (second_ == Second::PDko)
      fit.fitted.push_back(number("prodeg", fit.state.PDko, false, spread.d, reach));
    if (second_ == Second::start_pressure)
      fit.fitted.push_back(number("anfdru", fit.state.start_pressure, true, spread.d, reach));
    if (two_ && spread.a * spread.d > 0) fit.correlation = spread.b / std::sqrt(spread.a * spread.d);
    fit.verdict = verdict(spread, reach);
    return fit;
  }

  // How much of what it may be the second number's interval takes; the smaller the better.
  double share_of_reach() const { return quantile() * std::sqrt(covariance().d) / reach_of_second().barely; }

private:
  using Values = std::vector<double>;

  std::optional<Values> residuals(const Numbers& by) const {
    const CalcState s = moved(s_, second_, by);
    Values r;
    for (const FitPoint& p : points_) {
      const auto shot = shot_figures(s, p.charge_gr);
      if (!shot) return {};
      r.push_back(p.velocity - shot->vMuzzle);
    }
    return r;
  }

  double squares(const Values& r) const {
    double sum = 0;
    for (std::size_t i = 0; i < r.size(); ++i) sum += std::pow(r[i] / errors_.weighing[i], 2);
    return sum;
  }

  // Of the velocities over the numbers, by central differences; one-sided where a shot fails.
  bool slopes(const Values& at) {
    for (std::size_t k = 0; k < (two_ ? 2u : 1u); ++k) {
      Numbers up = by_, down = by_;
      up[k] += kDifference;
      down[k] -= kDifference;
      const auto above = residuals(up), below = residuals(down);
      if (!above && !below) return false;
      const double width = above && below ? 2 * kDifference : kDifference;
      slopes_[k].resize(at.size());
      for (std::size_t i = 0; i < at.size(); ++i)
        slopes_[k][i] = ((below ? *below : at)[i] - (above ? *above : at)[i]) / width;
    }
    return true;
  }

  Matrix normal_matrix() const {
    Matrix m;
    for (std::size_t i = 0; i < points_.size(); ++i) {
      const double w = 1 / (errors_.weighing[i] * errors_.weighing[i]);
      m.a += w * slopes_[0][i] * slopes_[0][i];
      if (!two_) continue;
      m.b += w * slopes_[0][i] * slopes_[1][i];
      m.d += w * slopes_[1][i] * slopes_[1][i];
    }
    if (!two_) m.d = 1;
    return m;
  }

  static Matrix inverse(const Matrix& m) {
    const double det = m.a * m.d - m.b * m.b;
    return {m.d / det, -m.b / det, m.a / det};
  }

  // Gauss and Newton, damped after Levenberg and Marquardt.
  Numbers step_of(const Values& r, double damping) const {
    Matrix m = normal_matrix();
    m.a *= 1 + damping;
    m.d *= 1 + damping;
    Numbers g{};
    for (std::size_t i = 0; i < r.size(); ++i)
      for (std::size_t k = 0; k < (two_ ? 2u : 1u); ++k)
        g[k] += slopes_[k][i] * r[i] / (errors_.weighing[i] * errors_.weighing[i]);
    const Matrix inv = inverse(m);
    Numbers step{inv.a * g[0] + inv.b * g[1], two_ ? inv.b * g[0] + inv.d * g[1] : 0};
    for (double& x : step) x = std::isfinite(x) ? std::clamp(x, -kLongestStep, kLongestStep) : 0;
    return step;
  }

  bool edge() const { return std::fabs(by_[0]) > kFarthest || std::fabs(by_[1]) > 2 * kFarthest; }

  // Of the fitted numbers. They are weighted sums of the means, whose true errors the pooled spread knows
  // better than each small sample does; scatter about the fit beyond that counts too.
  Matrix covariance() const {
    const Matrix inv = inverse(normal_matrix());
    Matrix c;
    double about = 0;
    for (std::size_t i = 0; i < points_.size(); ++i) {
      const double w = 1 / (errors_.weighing[i] * errors_.weighing[i]);
      const double s1 = slopes_[0][i], s2 = two_ ? slopes_[1][i] : 0;
      const double g1 = (inv.a * s1 + inv.b * s2) * w, g2 = (inv.b * s1 + inv.d * s2) * w;
      const double variance = errors_.pooled[i] * errors_.pooled[i];
      c.a += g1 * g1 * variance;
      c.b += g1 * g2 * variance;
      c.d += g2 * g2 * variance;
      about += residuals_[i] * residuals_[i] / variance;
    }
    const int left = freedom_left();
    double factor = left > 0 ? about / left : 0;
    if (scatter_.pooled > 0) factor = std::max(1.0, factor);
    return {c.a * factor, c.b * factor, c.d * factor};
  }

  int freedom_left() const { return static_cast<int>(points_.size()) - (two_ ? 2 : 1); }
  double quantile() const {
    return student_t(kLevel, scatter_.pooled > 0 ? scatter_.freedom : freedom_left());
  }
  Reach reach_of_second() const { return second_ == Second::PDko ? kReachPDko : kReachStart; }

  static FittedNumber number(const char* key, double value, bool logarithmic, double variance, double reach) {
    const double error = std::sqrt(variance), half = reach * error;
    if (!logarithmic) return {key, value, error, value - half, value + half};
    return {key, value, value * error, value * std::exp(-half), value * std::exp(half)};
  }

  static FitVerdict of(double half, Reach reach) {
    if (half <= reach.determined) return FitVerdict::determined;
    return half <= reach.barely ? FitVerdict::barely : FitVerdict::undetermined;
  }

  FitVerdict verdict(const Matrix& spread, double reach) const {
    const bool known = scatter_.pooled > 0 || freedom_left() > 0;
    if (edge() || (points_.size() == 1 && std::fabs(residuals_[0]) > kNotMet * points_[0].velocity))
      return FitVerdict::undetermined;
    FitVerdict worst = known ? of(reach * std::sqrt(spread.a), kReachBa0) : FitVerdict::barely;
    if (two_) worst = std::max(worst, of(reach * std::sqrt(spread.d), reach_of_second()));
    return worst;
  }

  const CalcState& s_;
  std::span<const FitPoint> points_;
  Second second_;
  bool two_;
  Scatter scatter_;
  Errors errors_;
  Numbers by_{};
  Values residuals_;
  std::array<Values, 2> slopes_;
};

PowderFit fit_one(const CalcState& s, std::span<const FitPoint> points) {
  Fit fit(s, points, Second::none);
  return fit.search() ? fit.result() : PowderFit{};
}

// Of the numbers that may be the second one the better determined.
PowderFit fit_two(const CalcState& s, std::span<const FitPoint> points) {
  PowderFit best;
  double least = INFINITY;
  for (const Second second : {Second::PDko, Second::start_pressure}) {
    if (second == Second::start_pressure && s.start_pressure < 1e6) continue;
    Fit fit(s, points, second);
    if (!fit.search()) continue;
    const double share = fit.share_of_reach();
    const PowderFit result = fit.result();
    if (std::isfinite(share) && (best.fitted.empty() || result.verdict < best.verdict ||
                                 (result.verdict == best.verdict && share < least))) {
      best = result;
      least = share;
    }
  }
  return best;
}

int charges(std::span<const FitPoint> points) {
  std::vector<double> all;
  for (const FitPoint& p : points) all.push_back(p.charge_gr);
  std::ranges::sort(all);
  return static_cast<int>(std::unique(all.begin(), all.end()) - all.begin());
}

}  // namespace

std::optional<ShotFigures> shot_figures(CalcState s, double charge_gr) {
  thread_local ShotCurve curve;  // large; one is enough
  ShotResult result;
  s.chargeGr = charge_gr;
  convertUnits(s);
  if (prepareShot(s) != SetUp::ok || !runShot(s, curve, result, ShotFor::figures).ok()) return {};
  return ShotFigures{result.pMax, result.vMuzzle};
}

std::vector<FitPoint> fit_points(std::span<const MeasuredSeries> series) {
  std::vector<FitPoint> points;
  for (const MeasuredSeries& one : series) {
    const SampleFigures f = velocity_figures(one);
    if (one.charge_gr > 0 && f.count > 0) points.push_back({one.charge_gr, f.mean, f.sd, f.count});
  }
  return points;
}

PowderFit fit_powder(const CalcState& s, std::span<const FitPoint> points, FitNumbers numbers) {
  PowderFit fit;
  const bool ladder = charges(points) >= 3;
  if (!points.empty() && numbers != FitNumbers::two) fit = fit_one(s, points);
  if (ladder && numbers != FitNumbers::one) {
    const PowderFit two = fit_two(s, points);
    if (numbers == FitNumbers::two || two.verdict == FitVerdict::determined) fit = two;
  }
  if (fit.verdict == FitVerdict::undetermined) fit.state = s;
  fit.before = shot_figures(s, s.chargeGr).value_or(ShotFigures{});
  if (fit.verdict != FitVerdict::undetermined)
    fit.after = shot_figures(fit.state, s.chargeGr).value_or(ShotFigures{});
  return fit;
}

}  // namespace tv
