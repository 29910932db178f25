#include "session/dimensions.h"

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "session/input_check.h"
#include "session/numbers.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/settings.h"

namespace tv {
namespace {

void write_dimension(Session& s, Dimension which) {
  const CartridgeDimensions& d = s.state.dim;
  switch (which) {
    case Dimension::Plen:
      return write_number(s, d.Plen);
    case Dimension::Bsd:
      return write_number(s, d.Bsd);
    case Dimension::ssd:
      return write_number(s, d.ssd);
    case Dimension::Vvg:
      return write_number(s, d.Vvg);
    case Dimension::Veff:
      s.valid.volumes_stale = false;
      return write_number(s, d.Veff);
    case Dimension::Wob:
      return write_number(s, d.Wob);
  }
}

}  // namespace

void mark_volumes_stale(Session& s) { s.valid.volumes_stale = true; }

void recompute_dimensions(Session& s, int kind) {
  const bool whole = move_dimensions(s.state.dim, kind, shown_number(s, s.state.dim.Zkal),
                                     [&](Dimension which) { write_dimension(s, which); });
  if (whole) refresh_fill(s);
}

void refresh_fill(Session& s) {
  s.state.fill =
      loading_ratio(s.state.chargeGr / kGrainsPerGram, s.state.bulkdn, shown_number(s, s.state.dim.Veff));
}

void refresh_pressure_fields(Session& s) {
  write_number(s, s.state.start_pressure);
  write_number(s, s.state.frictionPress);
  write_number(s, s.options.maxtab);
  write_number(s, s.state.dim.zul_P);
}

void set_unit_mode(Session& s, UnitMode mode) {
  take_shown_start_pressure(s);
  s.unit_mode = mode;
  s.output.imperial = mode == UnitMode::imperial;
  show_whole_diagram(s);
  s.options.metyes = mode == UnitMode::metric;
  store_option(s, "metyes");
  for (const ScreenSpec* spec : s.program.screens)
    if (spec->units_chosen) spec->units_chosen(s);
  refresh_pressure_fields(s);
  outputs_changed(s);
}

void set_pressure_unit(Session& s, bool MPa) {
  take_shown_start_pressure(s);
  s.state.pressure_unit_factor = MPa ? 1 : 10;
  s.options.mpayes = MPa;
  show_whole_diagram(s);
  store_option(s, "mpayes");
  refresh_pressure_fields(s);
  if (s.shown.any) {
    s.shown.state.pressure_unit_factor = s.state.pressure_unit_factor;
    show_panel(s);
  }
  outputs_changed(s);
}

}  // namespace tv
