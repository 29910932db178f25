#include "powder/burn_function.h"

#include <algorithm>
#include <cmath>

#include "text/number.h"

namespace tv {
namespace {

constexpr double kLeastPDko = -0.99;

// The digits of a field become the value.
double as_shown(double x, const char* pattern) { return read_number(format_pattern(x, pattern)); }

double nine_decimals(double x) { return std::round(x * 1e9) / 1e9; }

}  // namespace

double burn_rate(const BurnLaw& law, double z) {
  if (z < law.Limz1 || law.Limz1 >= 1) return law.Ba0 * std::sqrt(1 + law.PDko * z);
  return law.Ba1 * law.Ba0 * std::sqrt(1 - z);
}

BurnLaw joined(BurnLaw law) {
  if (law.Limz1 >= 1) {
    law.Ba1 = 0;
  } else if (law.PDko > -1) {
    law.Ba1 = std::sqrt(law.PDko * law.Limz1 + 1) / std::sqrt(1 - law.Limz1);
  } else {
    law.PDko = kLeastPDko;
    law.Ba1 = 1.001;  // about what the joint asks for, and never 1, which the curve cannot show
  }
  return law;
}

BurnHint law_hint(const BurnLaw& law) {
  if (!(law.Ba0 > 0)) return kHintVivacity;
  if (!(law.PDko >= -2)) return kHintCoefficient;
  if (!(law.Limz1 >= 0 && law.Limz1 <= 1)) return kHintLimit;
  if (law.Limz1 == 1 && law.PDko < -1) return kHintCoefficient;
  const bool in_range = law.Ba0 >= 0.001 && law.Ba0 <= 1000 && law.PDko <= 10000 && law.Limz1 >= 0.01;
  return in_range ? kNoHint : kHintRange;
}

BurnLaw shaped(BurnLaw law, ShapingStep step) {
  switch (step) {
    case ShapingStep::more_vivacity:
      law.Ba0 = nine_decimals(law.Ba0 + 0.01);
      break;
    case ShapingStep::less_vivacity:
      law.Ba0 = nine_decimals(law.Ba0 - 0.01);
      break;
    case ShapingStep::more_PDko:
      law.PDko = nine_decimals(law.PDko + 0.1);
      break;
    case ShapingStep::less_PDko:
      law.PDko = nine_decimals(law.PDko - 0.1);
      break;
    case ShapingStep::later_limit:
      law.Limz1 = nine_decimals(law.Limz1 + 0.01);
      break;
    case ShapingStep::earlier_limit:
      law.Limz1 = nine_decimals(law.Limz1 - 0.01);
      break;
  }
  law.Limz1 = std::clamp(law.Limz1, 0.01, 1.0);
  return joined(law);
}

HandOver handed_over(BurnLaw law) {
  HandOver over{law};
  over.raised = law.PDko < kLeastPDko;
  if (over.raised) {
    over.law.PDko = kLeastPDko;
    over.law = joined(over.law);
  }
  over.law.Limz1 = as_shown(over.law.Limz1, "0.000");
  over.law.Ba0 = as_shown(over.law.Ba0, "0.0000");
  over.law.PDko = as_shown(over.law.PDko, "0.0000");
  over.law.Ba1 = over.law.Limz1 < 1 ? as_shown(over.law.Ba1, "0.0000") : 0;
  return over;
}

BurnCurve burn_curve(BurnLaw law) {
  if (law.Ba1 == 1) {
    law.PDko = -0.99999;
    law.Ba1 = 1.0001;
  }
  BurnCurve curve;
  curve.law = law;
  for (int i = 0; i < BurnCurve::kSlots; ++i) {
    const double rate = burn_rate(law, 0.025 * i);
    curve.slot[static_cast<std::size_t>(i)] = rate;
    if (rate > curve.top) curve.top = rate;
  }
  curve.top *= 1.3;
  if (law.Limz1 < 1) curve.joint = law.Ba1 * law.Ba0 * std::sqrt(1 - law.Limz1);
  return curve;
}

double burn_axis_step(double top) {
  constexpr struct {
    double top, step;
  } kSteps[] = {{0.1, 0.01}, {0.2, 0.02}, {0.5, 0.05}, {1, 0.1}, {2, 0.2}, {3, 0.3},
                {5, 0.5},    {10, 1},     {20, 2},     {30, 3},  {100, 10}};
  for (const auto& row : kSteps)
    if (!(top > row.top)) return row.step;
  return int_of(top / 100) * 10;
}

void begin_history(ShapingHistory& history, const BurnLaw& law) { history = {{law}, 0}; }

void add_step(ShapingHistory& history, const BurnLaw& law) {
  if (history.laws.empty()) return begin_history(history, law);
  if (history.laws[history.at] == law) return;
  history.laws.resize(history.at + 1);
  history.laws.push_back(law);
  ++history.at;
}

bool can_undo(const ShapingHistory& history) { return history.at > 0; }
bool can_redo(const ShapingHistory& history) { return history.at + 1 < history.laws.size(); }

BurnLaw undo_step(ShapingHistory& history) {
  if (can_undo(history)) --history.at;
  return history.laws.empty() ? BurnLaw{} : history.laws[history.at];
}

BurnLaw redo_step(ShapingHistory& history) {
  if (can_redo(history)) ++history.at;
  return history.laws.empty() ? BurnLaw{} : history.laws[history.at];
}

}  // namespace tv
