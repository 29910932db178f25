// What hangs on a number that the user enters.
#include <cmath>

#include "geometry/dimensions.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kPsi1000MPa = 145038;  // 1e9 Pa, rounded to a whole number

void mark_edited_powder(Session& s) {
  Field& name = field(s, "Form4", "PulvDat");
  if (name.text.empty() || name.text.ends_with(" ?")) return;
  name.text += " ?";
  s.load.pulver = name.text;
}

bool moves_dimensions(OnChange change) {
  switch (change) {
    case OnChange::seating:
    case OnChange::bullet_length:
    case OnChange::overall_length:
    case OnChange::case_length:
    case OnChange::band_seating:
    case OnChange::barrel_or_case:
      return true;
    default:
      return false;
  }
}

int edit_kind(OnChange change) {
  switch (change) {
    case OnChange::seating:
      return kSeatingDepth;
    case OnChange::bullet_length:
      return kBulletLength;
    case OnChange::overall_length:
      return kOverallLength;
    case OnChange::case_length:
      return kCaseLength;
    case OnChange::band_seating:
      return kBandSeating;
    default:
      return kNothingMoved;
  }
}

// A slip while typing must leave no trace: each keystroke computes from what stood when the field got the
// focus.
void dimension_changed(Session& s, const PairSide& side, double stored) {
  restore_dimensions(s, side);
  auto& d = s.state.dim;
  const OnChange change = side.pair->on_change;
  side.pair->value(s) = stored;
  // The other depth follows at once, also when the recompute refuses a depth beyond the case.
  if (change == OnChange::seating) {
    d.ssd = ssd_of_Bsd(d);
    write_pair(s, "Form3", "ssdm");
  }
  if (change == OnChange::band_seating) {
    d.Bsd = Bsd_of_ssd(d);
    write_pair(s, "Form3", "Bsdm");
  }
  if (!s.update_suspended) recompute_dimensions(s, edit_kind(change));
  if (change == OnChange::band_seating) mark_band_seating(s);
}

}  // namespace

void restore_dimensions(Session& s, const PairSide& but) {
  const CartridgeDimensions now = s.state.dim;
  for (const NumberPair& pair : number_pairs()) {
    if (std::string_view(pair.screen) != "Form3" || &pair == but.pair) continue;
    s.state.dim = now;
    const double moved = pair.value(s);
    s.state.dim = s.held.dim;
    if (pair.value(s) != moved) write_pair(s, "Form3", pair.metric.field);
  }
  s.state.dim = s.held.dim;
  mark_band_seating(s);
}

void number_changed(Session& s, const PairSide& side, double stored) {
  const OnChange change = side.pair->on_change;
  if (change == OnChange::quick || !side.pair->value) return;
  if (change == OnChange::criteria) {
    side.pair->value(s) = stored;
    return;
  }
  const bool differs = side.pair->value(s) != stored;
  if (moves_dimensions(change))
    dimension_changed(s, side, stored);
  else
    side.pair->value(s) = stored;
  switch (change) {
    case OnChange::groove:
      if (!s.update_suspended) s.load.bore_area_stale = true;
      mark_volumes_stale(s, true);
      break;
    case OnChange::bore_area:
      s.load.bore_area_stale = false;
      break;
    case OnChange::powder:
      mark_edited_powder(s);
      refresh_fill(s);
      break;
    case OnChange::charge:
      if (stored > 0) s.askCharge = false;
      refresh_fill(s);
      break;
    case OnChange::start_pressure:
      s.load.start_press_set = true;
      break;
    default:
      break;
  }
  const bool seating = change == OnChange::seating || change == OnChange::band_seating;
  if (!seating || differs) setResultsValid(s, false);
}

void number_left(Session& s, const PairSide& side) {
  if (std::string_view(side.own().field) != "lminratio" || !(s.options.lv_min > s.options.lratio)) return;
  set_text(s, "FormPsel", "lminratio", format_number(s.options.lratio - 1, "0.0"));
  s.options.lv_min = s.options.lratio;
}

Limits field_limits(const Session& s, const PairSide& side) {
  Limits limits = side.own().limits;
  const std::string_view name = side.own().field;
  const auto& d = s.state.dim;
  switch (side.own().unit) {
    case Unit::chosen_of_MPa:
    case Unit::chosen_of_Pa:
      return {limits.min * s.state.pressure_unit_factor, limits.max * s.state.pressure_unit_factor};
    case Unit::mode_of_Pa:
      return {0, s.unit_mode == UnitMode::imperial ? kPsi1000MPa : limits.max * s.state.pressure_unit_factor};
    default:
      break;
  }
  if (d.Hlen > 0 && name == "Bsdm") limits.max = d.Hlen * kMmPerInch;
  if (d.Hlen > 0 && name == "Bsdz") limits.max = d.Hlen;
  if (name == "lratio") limits.min = s.options.lv_min;
  if (name == "lminratio") limits.max = s.options.lratio;
  const DataSet& powders = s.set(RecordKind::powders);
  if ((name == "tbamin" || name == "tbamax") && powders.Ba0_least <= powders.Ba0_most)
    return {int_of(powders.Ba0_least * 100) / 100, powders.Ba0_most};  // as the bar beside it starts
  return limits;
}

}  // namespace tv
