#include "session/number_pairs.h"

#include <algorithm>

#include "session/session.h"
#include "text/number.h"

namespace tv {
namespace {

double cm3(double grains) { return grains / dicht_H2 / kGrainsPerGram; }

// Values of the load by the member they stand in.
template <double CartridgeDimensions::*Member>
double& dim(Session& s) {
  return s.state.dim.*Member;
}
template <double CalcState::*Member>
double& state(Session& s) {
  return s.state.*Member;
}
template <double Options::*Member>
double& option(Session& s) {
  return s.options.*Member;
}
using D = CartridgeDimensions;
using C = CalcState;
using O = Options;

constexpr NumberSide none{};
constexpr double kMost = 9999999;
// 1.5e9 Pa in psi, rounded to the nearest whole number; 30e6 Pa for friction.
constexpr double kPsi1500MPa = 217557, kPsi30MPa = 4351, kPsi10MPa = 1450;

using enum Unit;
using enum OnChange;

constexpr NumberPair kPairs[] = {
    {"Form3",
     {"Zkalm", mm_of_inch, {1, 609.6}, "##0.00", "##0.00"},
     {"Zkalz", plain, {0.04, 24}, "0.000", "0.000"},
     dim<&D::Zkal>,
     groove},
    {"Form3",
     {"buldinmm", mm_of_inch, {1, 609.6}, "0.00", "##0.00"},
     {"buldinch", plain, {0.04, 24}, "0.000", "0.000"},
     dim<&D::buldin>,
     store},
    {"Form3",
     {"Bwgm", gram_of_grain, {0.06, 100000}, "0.00#", "####0.00#"},
     {"Bwgn", plain, {1, 1543230}, "0.0#", "0.0#"},
     dim<&D::Bwg>,
     store},
    {"Form3",
     {"Glenm", mm_of_inch, {1, 1016}, "0.00", "##0.00"},
     {"Glenz", plain, {0.06, 40}, "0.000", "#0.000"},
     dim<&D::Glen>,
     bullet_length},
    {"Form3",
     {"Hlenm", mm_of_inch, {1, 1016}, "0.00", "###0.00"},
     {"Hlenz", plain, {0.04, 40}, "0.000", "#0.000"},
     dim<&D::Hlen>,
     case_length},
    {"Form3",
     {"Plenm", mm_of_inch, {1, 1524}, "0.00", "###0.00"},
     {"Plenz", plain, {0.04, 60}, "0.000", "#0.000"},
     dim<&D::Plen>,
     overall_length},
    {"Form3",
     {"Llenm", mm_of_inch, {10, 10160}, "##0.0##", "####0.0#"},
     {"Llenz", plain, {0.4, 400}, "0.0##", "##0.0##"},
     dim<&D::Llen>,
     barrel_or_case},
    {"Form3",
     {"Wobm", plain, {10, 10160}, "##0.0#", "####0.0#"},
     {"Wobz", inch_of_mm, {0.4, 400}, "##0.0##", "##0.0##"},
     dim<&D::Wob>,
     store,
     true},
    {"Form3",
     {"qfqm", plain, {0, 32429}, "##.00#", "#.00#"},
     {"qfqi", sqin_of_mm2, {0, 50.26}, "0.000###", "#.000###"},
     dim<&D::qfq>,
     bore_area},
    {"Form3",
     {"Volfml", cm3_of_grain, {0.06, 20000}, "##0.000", "#0.000"},
     {"Volfgn", plain, {1, 308646}, "###0.000", "##0.000"},
     dim<&D::Volf>,
     barrel_or_case},
    {"Form3",
     {"Vvgm", cm3_of_grain, {-kMost, kMost}, "0.000", nullptr},
     {"Vvgn", plain, {-kMost, kMost}, "0.000", nullptr},
     dim<&D::Vvg>,
     store,
     true},
    {"Form3",
     {"Veffm", cm3_of_grain, {0.06, 20000}, "0.000", nullptr},
     {"Veffz", plain, {1, 308646}, "0.000", nullptr},
     dim<&D::Veff>,
     store,
     true},
    {"Form3",
     {"Bsdm", mm_of_inch, {-1016, 1016}, "0.00", nullptr},
     {"Bsdz", plain, {-40, 40}, "0.000", nullptr},
     dim<&D::Bsd>,
     seating},
    {"Form3",
     {"ssdm", mm_of_inch, {-1016, 1016}, "0.00", nullptr},
     {"ssdz", plain, {-40, 40}, "0.000", nullptr},
     dim<&D::ssd>,
     band_seating},
    {"Form3", {"sebf", plain, {0, 3}, nullptr, "#0.0#"}, none, dim<&D::sebf>, store},
    {"Form3",
     {"zul_P0", chosen_of_MPa, {0, 1500}, "0.0", "0.0"},
     {"zul_P1", psi_of_MPa, {0, kPsi1500MPa}, "0", "0"},
     dim<&D::zul_P>,
     store},

    {"Form4", {"Exw", plain, {1, 10000}, nullptr, "####0"}, none, state<&C::Exw>, powder},
    {"Form4", {"Kap", plain, {1.001, 1.999}, nullptr, "0.0000"}, none, state<&C::Kap>, powder},
    {"Form4", {"Pdens", plain, {0.001, 100}, nullptr, "0.000"}, none, state<&C::Pdens>, powder},
    {"Form4", {"bulkdn", plain, {0, 100}, nullptr, "0.000"}, none, state<&C::bulkdn>, powder},
    {"Form4", {"Ba0", plain, {0.001, 1000}, nullptr, "0.0000"}, none, state<&C::Ba0>, powder},
    {"Form4", {"PDko", plain, {-0.99, 10000}, nullptr, "0.0000"}, none, state<&C::PDko>, powder},
    {"Form4", {"Limz1", plain, {0.01, 1}, nullptr, "0.000"}, none, state<&C::Limz1>, powder},
    {"Form4", {"Ba1", plain, {0, kMost}, nullptr, "0.0000"}, none, state<&C::Ba1>, powder},
    {"Form4",
     {"MPgm", gram_of_grain, {0.0065, 100000}, "##0.00#", "##0.00#"},
     {"MPgn", plain, {0.1, 1543230}, "##0.0#", "##0.0#"},
     state<&C::chargeGr>,
     charge},
    {"Form4",
     {"ini_press1", mode_of_Pa, {0, 1000}, nullptr, nullptr},
     none,
     state<&C::start_pressure>,
     OnChange::start_pressure},

    {"FormBorefrict",
     {"sugg_P0", chosen_of_Pa, {0, 30}, "0.0##", "0.0##"},
     {"sugg_P1", psi_of_Pa, {0, kPsi30MPa}, "0", "0"},
     state<&C::frictionPress>,
     friction},

    {"FormPsel",
     {"sugg_P0", chosen_of_MPa, {10, 1500}, "0.0", "0.0"},
     {"sugg_P1", psi_of_MPa, {kPsi10MPa, kPsi1500MPa}, "0", "0"},
     option<&O::maxtab>,
     criteria},
    {"FormPsel",
     {"sugg_V0", plain, {10, 3000}, "0.0", "0.0"},
     {"sugg_V1", fps_of_mps, {32, 9843}, "0", "0"},
     option<&O::veltab>,
     criteria},
    {"FormPsel", {"lratio", plain, {30, 140}, nullptr, "0.0"}, none, option<&O::lratio>, criteria},
    {"FormPsel", {"lminratio", plain, {29, 140}, nullptr, "0.0"}, none, option<&O::lv_min>, criteria},
    {"FormPsel", {"hfill", plain, {30, 140}, nullptr, "0.0"}, none, option<&O::hratio>, criteria},
    {"FormPsel", {"lowpress", reduction, {5, 50}, nullptr, "0.0"}, none, option<&O::lod2nd>, criteria},
    {"FormPsel", {"tbamin", plain, {0, 320}, nullptr, "0.00##"}, none, option<&O::bamint>, criteria},
    {"FormPsel", {"tbamax", plain, {0, 320}, nullptr, "0.00##"}, none, option<&O::bamaxt>, criteria},

    {"frmFast", {"MPgn", plain, {0, kMost}, nullptr, nullptr}, none, nullptr, quick},
    {"frmFast", {"Plenz", plain, {0, kMost}, nullptr, nullptr}, none, nullptr, quick},
    {"frmFast", {"Glenz", plain, {0, kMost}, nullptr, nullptr}, none, nullptr, quick},
    {"frmFast", {"Llenz", plain, {0, kMost}, nullptr, nullptr}, none, nullptr, quick},
};

const char* side_pattern(const NumberSide& side, const Session& s) {
  if (side.unit == mode_of_Pa) return s.unit_mode == UnitMode::imperial ? "0" : "0.0";
  return side.on_leave ? side.on_leave : side.as_partner;
}

void write_side(Session& s, std::string_view screen, const NumberSide& side, double stored,
                const char* pattern) {
  if (!side.field) return;
  Field& f = field(s, screen, side.field);
  f.text = format_number(shown_value(side.unit, stored, s), pattern ? pattern : side_pattern(side, s));
  f.ink = Ink::black;
  f.stale = false;
  f.reason.clear();
}

}  // namespace

double shown_value(Unit unit, double stored, const Session& s) {
  const double factor = s.state.pressure_unit_factor;
  switch (unit) {
    case mm_of_inch:
      return stored * kMmPerInch;
    case inch_of_mm:
      return stored / kMmPerInch;
    case gram_of_grain:
      return stored / kGrainsPerGram;
    case sqin_of_mm2:
      return stored / kMm2PerSqIn;
    case cm3_of_grain:
      return cm3(stored);
    case chosen_of_MPa:
      return stored * factor;
    case psi_of_MPa:
      return 1000000 * stored / kPaPerPsi;
    case chosen_of_Pa:
      return stored * factor / 1000000;
    case psi_of_Pa:
      return stored / kPaPerPsi;
    case mode_of_Pa:
      return shown_value(s.unit_mode == UnitMode::imperial ? psi_of_Pa : chosen_of_Pa, stored, s);
    case fps_of_mps:
      return stored * kFeetPerMetre + 0.01;  // so that a whole number of feet does not show one too few
    case reduction:
      return (1 - stored) * 100;
    case plain:
      break;
  }
  return stored;
}

double stored_value(Unit unit, double shown, const Session& s) {
  const double factor = s.state.pressure_unit_factor;
  switch (unit) {
    case mm_of_inch:
      return shown / kMmPerInch;
    case inch_of_mm:
      return shown * kMmPerInch;
    case gram_of_grain:
      return shown * kGrainsPerGram;
    case sqin_of_mm2:
      return shown * kMm2PerSqIn;
    case cm3_of_grain:
      return shown * kGrainsPerGram * dicht_H2;
    case chosen_of_MPa:
      return shown / factor;
    case psi_of_MPa:
      return shown * kPaPerPsi / 1000000;
    case chosen_of_Pa:
      return shown * 1000000 / factor;
    case psi_of_Pa:
      return shown * kPaPerPsi;
    case mode_of_Pa:
      return stored_value(s.unit_mode == UnitMode::imperial ? psi_of_Pa : chosen_of_Pa, shown, s);
    case fps_of_mps:
      return shown / kFeetPerMetre;
    case reduction:
      return 1 - shown / 100;
    case plain:
      break;
  }
  return shown;
}

std::span<const NumberPair> number_pairs() { return kPairs; }

PairSide find_pair(std::string_view screen, std::string_view name) {
  for (const NumberPair& pair : kPairs) {
    if (screen != pair.screen) continue;
    if (name == pair.metric.field) return {&pair, true};
    if (pair.imperial.field && name == pair.imperial.field) return {&pair, false};
  }
  return {nullptr, true};
}

void write_pair(Session& s, std::string_view screen, std::string_view metric_field,
                const char* metric_pattern, const char* imperial_pattern) {
  const NumberPair& pair = *find_pair(screen, metric_field).pair;
  const double value = pair.value(s);
  write_side(s, screen, pair.metric, value, metric_pattern);
  write_side(s, screen, pair.imperial, value, imperial_pattern);
}

}  // namespace tv
