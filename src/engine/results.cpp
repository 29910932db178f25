#include "engine/results.h"

#include <cmath>

#include "engine/shot.h"
#include "text/number.h"

namespace tv {
namespace {

// Rounded on purpose, like those of the energy.
constexpr double kEfficiency = 308.6;

// Times need steps finer than the coarse setting has.
enum class Needs { nothing, fine_step, burnout };

struct Figure {
  const char* name;
  double value;
  const char* pattern;
  Needs needs = Needs::nothing;
};

int caption_index(const ShotResult& r) {
  switch (burn_caption(r)) {
    case BurnCaption::burnout:
      return r.burnIdx;
    case BurnCaption::at95:
      return r.idx95;
    case BurnCaption::none:
      break;
  }
  return 0;
}

bool available(Needs needs, const CalcState& s, int burnt) {
  if (needs == Needs::nothing) return true;
  return s.schrit != 2 && (needs != Needs::burnout || burnt >= 1);
}

double muzzle_velocity(const ShotCurve& c, const ShotResult& r) {
  return c.v[static_cast<std::size_t>(r.lastIdx)];
}

}  // namespace

PressureState pressure_state(double pMax, double zul_P) {
  // A little short of the round values, so that a peak of exactly the limit is flagged.
  if (!(zul_P > 0)) return PressureState::unknown;
  if (pMax > zul_P * 999999) return PressureState::over_limit;
  if (pMax > zul_P * 849999) return PressureState::near_limit;
  if (pMax > zul_P * 749999) return PressureState::caution;
  return PressureState::fine;
}

BurnCaption burn_caption(const ShotResult& r) {
  if (r.burnIdx >= 1) return BurnCaption::burnout;
  if (r.idx95 >= 1) return BurnCaption::at95;
  return BurnCaption::none;
}

std::vector<PanelField> showResults(const CalcState& s, const ShotCurve& c, const ShotResult& r,
                                    double charge_g, double Veff_cm3) {
  const auto last = static_cast<std::size_t>(r.lastIdx);
  const int burnt = caption_index(r);
  const auto n = static_cast<std::size_t>(burnt);
  const double F = s.pressure_unit_factor;
  const double v = c.v[last], grains = s.dim.Bwg, base = c.pB[last];
  const double grams = s.chargeGr / kGrainsPerGram;
  const Figure figures[] = {
      {"Mgas", r.pMax * F / 1000000, "0"},
      {"Mgaspsi", r.pMax / kPaPerPsi, "0"},
      {"Xpm", r.xPeak * 1000, "0.0"},
      {"Xpmzoll", r.xPeak * 1000 / kMmPerInch, "0.00"},
      {"Vnull", v, "0"},
      {"Vnullfps", v / 0.3048, "0"},
      {"Ener", v * v * grains / kEnergyJoule, "0"},
      {"Enerfp", v * v * grains / kEnergyFootPound, "0"},
      {"Maxpe", base * F / 1000000, "0"},
      {"Maxpepsi", base / kPaPerPsi, "0"},
      {"Vbrannt", int_of(c.z[last] * 10000) / 100, "0.0#"},
      {"wgrad", v * v * grains / (kEfficiency * s.Exw * grams), "00.0"},
      {"Sdau", std::fabs(r.t10) * 1000, "#0.000", Needs::fine_step},
      {"ptime", std::fabs(r.ptime) * 1000, "#0.000", Needs::fine_step},
      {"tbrs", std::fabs(r.t10 - c.t[n]) * 1000, "#0.000", Needs::burnout},
      {"xbrsmm", c.x[n] * 1000, "#0.0", Needs::burnout},
      {"xbrsin", c.x[n] * 1000 / kMmPerInch, "#0.00", Needs::burnout},
      {"cmratio", s.chargeKg / s.bulletKg, "#0.000"},
      {"exprat", (s.boreM2 * s.travelM + s.caseM3) / s.caseM3, "#0.000"},
      {"ladich", charge_g / Veff_cm3, "##0.000"},
      {"endich", s.Exw * charge_g / Veff_cm3, "0"},
  };
  std::vector<PanelField> fields;
  for (const Figure& figure : figures) {
    // A value that is not finite reads as "?".
    fields.push_back({figure.name, available(figure.needs, s, burnt)
                                       ? format_number(figure.value, figure.pattern)
                                       : std::string(" n.a.")});
  }
  return fields;
}

std::string run_notes_text(const RunNotes& notes, const Language& language) {
  std::string text;
  if (notes.overfill > 0) {
    text.append(" ").append(language.msg(75)).append(" : ");
    text.append(format_number(notes.overfill, "0.0")).append(language.msg(151));
  }
  for (int i = 0; i < notes.count; ++i) {
    text += language.fastmsg("fwarn", static_cast<int>(notes.notes[static_cast<std::size_t>(i)]));
  }
  return text;
}

std::string status_line(const CalcState& s, const ShotCurve& c, const ShotResult& r, const Language& language,
                        std::string_view more) {
  const double v = muzzle_velocity(c, r);
  std::string text = language.fastmsg("fwarn5");
  switch (pressure_state(r.pMax, s.dim.zul_P)) {
    case PressureState::over_limit:
      text += language.fastmsg("fwarn1");
      break;
    case PressureState::near_limit:
      text += language.fastmsg("fwarn2");
      break;
    case PressureState::unknown:
      text += language.fastmsg("fwarn3");
      break;
    case PressureState::caution:
    case PressureState::fine:
      break;
  }
  text.append(run_notes_text(r.runNotes, language)).append(more);
  // Grains times ft/s over 1000, and kg m/s times 100: the power factors of two sporting bodies.
  text += " (IPSC Factor= " + format_number(s.dim.Bwg * v / 304.8, "#.0");
  text += " - DSB MIP= " + format_number(s.bulletKg * v * 100, "#.0") + ")";
  return text + "\n";
}

bool status_line_red(const CalcState& s, const ShotResult& r) {
  const PressureState state = pressure_state(r.pMax, s.dim.zul_P);
  return state == PressureState::over_limit || state == PressureState::unknown;
}

}  // namespace tv
