#include "session/tables.h"

#include <memory>

#include "engine/shot.h"
#include "session/dimensions.h"
#include "session/load_steps.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "tables/fit.h"
#include "text/number.h"

namespace tv {
namespace {

TableHead table_head(const Session& s) { return {data_block(s), shown_number(s, s.state.dim.Veff)}; }

PowderCriteria criteria(const Session& s) {
  const Options& o = s.options;
  return {s.tables.strategy, o.maxtab, o.veltab, o.lratio, o.lv_min, o.hratio, o.lod2nd, o.bamint, o.bamaxt};
}

void show_outputs(Session& s) {
  outputs_changed(s);
  if (!s.options.atiles)
    bring_to_front(s, Role::output);  // a tiled desk brings no tab to the front by itself
}

double pressure_axis_factor(const Session& s) {
  if (s.output.imperial) return kPaPerPsi;
  return 1e6 / s.state.pressure_unit_factor;
}

// How a fitted value is told, in the units of the output window.
struct FitUnit {
  const char* key;  // of fastmsg
  double size;      // stored units to one unit shown
  const char* pattern;
};
struct FitTold {
  const char* key;  // what was fitted
  FitUnit metric, imperial;
};
constexpr FitTold kChargeTold{"fcharge", {"fgramm", kGrainsPerGram, "0.000"}, {"fgrains", 1, "0.00"}};
constexpr FitTold kBarrelTold{"fcharge6", {"f_mm", 1 / kMmPerInch, "0.0"}, {"f_in", 1, "0.00"}};

void note_fit(Session& s, const FitUndo& before, const FitTold& told, double from, double to) {
  const FitUnit& unit = s.output.imperial ? told.imperial : told.metric;
  s.fit_undo = before;
  s.status = s.language.fastmsg("ffitted") + s.language.fastmsg(told.key) + " " +
             format_number(from / unit.size, unit.pattern) + " -> " +
             format_number(to / unit.size, unit.pattern) + " " + s.language.fastmsg(unit.key);
}

void tell_no_fit(Session& s) { warn(s, MessageText(s).msg(159).line().msg(160)); }

void fit_the_charge(Session& s, double value, FitMode mode) {
  const FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const double factors[] = {pressure_axis_factor(s), s.output.imperial ? 1 / kFeetPerMetre : 1.0, 0.001};
  const auto curve = std::make_unique<ShotCurve>();  // the one on show stands meanwhile
  ShotResult result;
  s.state.tableKind = 1;
  const bool found =
      fit_charge(s.state, *curve, result, mode, value * factors[static_cast<std::size_t>(mode)]);
  s.state.tableKind = 0;
  write_number(s, s.state.chargeGr);
  if (found)
    note_fit(s, before, kChargeTold, before.chargeGr, s.state.chargeGr);
  else
    tell_no_fit(s);
}

bool fit_the_barrel(Session& s, double value, FitMode mode) {
  const FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const double mm = value * (s.output.imperial ? kMmPerInch : 1.0);
  const FitGeometry fit = fit_geometry(s.state, mode, mode == FitMode::travel ? mm : mm / kMmPerInch);
  if (!fit.ok) {
    beep(s);
    return false;
  }
  s.state.dim.Llen = fit.barrel_in;
  s.state.dim.Wob = fit.travel_mm;
  write_number(s, s.state.dim.Llen);
  write_number(s, s.state.dim.Wob);
  note_fit(s, before, kBarrelTold, before.Llen, fit.barrel_in);
  return true;
}

}  // namespace

void run_load_table(Session& s) {
  settle_steps(s);
  LoadTableSettings settings{s.options.ldstep, s.tables.weight_step, s.options.ldweight, s.options.ldperc,
                             s.options.batols};
  {
    const Waiting waiting(*s.user);
    RunLoadTable(s.state, s.curve, s.result, settings, table_head(s), s.tables.load);
  }
  s.options.ldstep = settings.ldstep;
  run_shown_shot(s);
  settings_save(s);
  s.valid.load_table = true;
  show_outputs(s);
}

namespace {

// Apart from the session until it is whole: the windows are painted meanwhile, and show the load's own curve.
PowderTable powder_table_of(Session& s) {
  const Waiting waiting(*s.user);
  const PowderRunHooks hooks{.cancelled = [&] { return s.user->cancelled(); },
                             .progress =
                                 [&](const std::string& name, int done, int total) {
                                   s.user->progress(name + s.language.fastmsg("fwarn15"),
                                                    total > 0 ? double(done) / total : 1);
                                 }};
  const auto curve = std::make_unique<ShotCurve>();
  ShotResult result;
  PowderTable table;
  RunPowderTable(s.state, *curve, result, s.set(RecordKind::powders).file.table, criteria(s), table_head(s),
                 s.tables.sort, hooks, table);
  return table;
}

}  // namespace

void run_powder_table(Session& s) {
  s.tables.sort.page = s.language.page();
  s.tables.powder = powder_table_of(s);
  if (s.options.schrit != s.state.schrit) s.valid.load_table = false;
  s.options.schrit = s.state.schrit;
  const bool cancelled = s.tables.powder.cancelled;
  run_shown_shot(s);
  if (cancelled) SetDisplayMode(s, 3);
  s.tables.powder_shown = !cancelled;
  s.valid.powder_table = true;
  show_outputs(s);
}

void FitChargeToTarget(Session& s, double value, int mode) {
  if (!s.valid.results) return;
  if (!(value > 0)) return beep(s);
  s.status.clear();
  const auto fit = static_cast<FitMode>(mode);
  if (fit == FitMode::travel || fit == FitMode::barrel_length) {
    if (!fit_the_barrel(s, value, fit)) return;
  } else {
    fit_the_charge(s, value, fit);
  }
  convertUnits(s.state);
  refresh_fill(s);
  setResultsValid(s, run_shown_shot(s));
  if (!s.status.empty()) s.valid.load_table = s.valid.powder_table = false;  // of another load
  outputs_changed(s);
}

bool can_undo_fit(const Session& s) { return s.fit_undo.possible; }

void undo_fit(Session& s) {
  if (!s.fit_undo.possible) return;
  s.state.chargeGr = s.fit_undo.chargeGr;
  s.state.dim.Llen = s.fit_undo.Llen;
  s.state.dim.Wob = s.fit_undo.Wob;
  s.fit_undo = {};
  write_number(s, s.state.chargeGr);
  write_number(s, s.state.dim.Llen);
  write_number(s, s.state.dim.Wob);
  refresh_fill(s);
  s.status.clear();
  setResultsValid(s, false);
}

}  // namespace tv
