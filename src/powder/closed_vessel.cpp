#include "powder/closed_vessel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tv {
namespace {

constexpr double kMostVivacity = 1000;

double mean(const std::array<double, 11>& value, int from, int to) {
  double sum = 0;
  for (int i = from; i <= to; ++i) sum += value[static_cast<std::size_t>(i)];
  return sum / (to - from + 1);
}

// PDko of the law through both points; not a number if there is none.
double coefficient_through(VivacityPoint a, VivacityPoint b, double Limz1) {
  if (Limz1 == 1) return -1;
  if (b.f == 0) return -0.99999;
  const double q2 = (a.f / b.f) * (a.f / b.f);
  const double denominator = a.x - q2 * b.x;
  if (denominator == 0 || !(a.f < kMostVivacity) || !(b.f < kMostVivacity)) return NAN;
  return (q2 - 1) / denominator + 0.0;  // a negative zero becomes 0
}

}  // namespace

VivacityTable::VivacityTable() {
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i].x = static_cast<double>(i + 1) / 10;
}

void toggle_mark(RowMarks& marks, int row) {
  if (row == marks.second) {
    marks.second = -1;
  } else if (row == marks.first) {
    marks = {marks.second, -1};
  } else if (marks.count() == 0) {
    marks.first = row;
  } else if (marks.count() == 1) {
    marks = {std::min(marks.first, row), std::max(marks.first, row)};
  }
}

void sort_rows(VivacityTable& table, RowMarks& marks) {
  std::array<int, kVivacityRows> order{};
  std::iota(order.begin(), order.end(), 0);
  const VivacityTable before = table;
  const auto row = [&](int i) { return before.rows[static_cast<std::size_t>(i)]; };
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return row(a).x < row(b).x; });
  RowMarks moved;
  for (int i = 0; i < kVivacityRows; ++i) {
    const int from = order[static_cast<std::size_t>(i)];
    table.rows[static_cast<std::size_t>(i)] = row(from);
    if (marks.has(from)) toggle_mark(moved, i);
  }
  marks = moved;
}

std::optional<BurnLaw> fit_through(VivacityPoint a, VivacityPoint b, double Limz1) {
  BurnLaw law;
  law.Limz1 = Limz1;
  law.PDko = coefficient_through(a, b, Limz1);
  if (!(law.PDko >= -1 && law.PDko < 10000) || (law.PDko == -1 && Limz1 != 1)) return {};
  law.Ba0 = a.f / std::sqrt(law.PDko * a.x + 1);
  law.Ba1 = Limz1 < 1 ? std::sqrt((law.PDko * Limz1 + 1) / (1 - Limz1)) : 0;
  if (!std::isfinite(law.Ba1) || law_hint(law) != kNoHint) return {};
  return law;
}

double value_at_80(double mean37, double mean38) { return 6 * mean38 - 5 * mean37; }

std::optional<BurnLaw> law_from_means(double v, double Limz1) {
  if (!(v > 0)) return {};
  if (Limz1 >= 0.8) Limz1 = 0.5;
  const double w = v / std::sqrt(0.2) * std::sqrt(1 - Limz1);
  return fit_through({0, w}, {Limz1, w}, Limz1);
}

VivacityMeans means_of(const BurnCurve& curve) {
  VivacityMeans means;
  for (std::size_t i = 0; i < means.value.size(); ++i) means.value[i] = curve.slot[4 * i];
  means.mean37 = mean(means.value, 3, 7);
  means.mean38 = mean(means.value, 3, 8);
  return means;
}

bool is_off(double mean, double entered) { return entered > 0 && std::fabs(mean - entered) > 0.01 * entered; }

FitKind fit_kind(const VivacityTable& table, const RowMarks& marks, double mean37, double mean38) {
  const bool missing =
      std::any_of(table.rows.begin(), table.rows.end(), [](const auto& row) { return !(row.f > 0); });
  if (!missing) return marks.count() < 2 ? FitKind::too_few_rows : FitKind::rows;
  return mean37 > 0 && mean38 > 0 ? FitKind::means : FitKind::rows_missing;
}

RowFit fit_rows(VivacityTable& table, RowMarks& marks, double Limz1) {
  sort_rows(table, marks);
  RowFit fit;
  fit.a = table.rows.at(static_cast<std::size_t>(marks.first));
  fit.b = table.rows.at(static_cast<std::size_t>(marks.second));
  fit.law = fit_through(fit.a, fit.b, Limz1);
  fit.beyond_limit = fit.b.x > Limz1;
  return fit;
}

RowMiss largest_miss(const VivacityTable& table, const BurnLaw& law) {
  RowMiss miss;
  for (int i = 0; i < kVivacityRows; ++i) {
    const VivacityPoint row = table.rows[static_cast<std::size_t>(i)];
    if (!(row.x > 0 && row.f > 0)) continue;
    const double percent = 100 * std::fabs(burn_rate(law, row.x) - row.f) / row.f;
    if (miss.row < 0 || percent > miss.percent) miss = {i, percent};
  }
  return miss;
}

std::optional<double> heat_ratio(double Q, double p_MPa, double charge_g, double chamber_cm3, double rho) {
  if (Q == 0 || p_MPa == 0 || charge_g == 0 || chamber_cm3 == 0 || rho == 0) return {};
  const double ratio = p_MPa / (Q * charge_g) * (chamber_cm3 - charge_g / rho) + 1;
  if (!std::isfinite(ratio)) return {};
  return ratio;
}

bool is_heat_ratio(double cp_cv) { return cp_cv >= 1.001 && cp_cv <= 1.999; }

}  // namespace tv
