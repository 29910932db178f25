// The two tables as the driver runs them, and the fit of the load at hand to a target.
#include "session/driver.h"
#include "session/files.h"
#include "session/number_pairs.h"
#include "tables/fit.h"
#include "text/number.h"

namespace tv {
namespace {

TableHead table_head(const Session& s) { return {data_block(s), field_number(s, "Form3", "Veffm")}; }

PowderCriteria criteria(const Session& s) {
  const Options& o = s.options;
  return {s.strategy, o.maxtab, o.veltab, o.lratio, o.lv_min, o.hratio, o.lod2nd, o.bamint, o.bamaxt};
}

void show_outputs(Session& s) {
  if (s.outputs_changed) s.outputs_changed(s);
  s.user->bring_to_front("Form7");
}

double pressure_axis_factor(const Session& s) {
  if (s.imperial_view) return kPaPerPsi;
  return 1e6 / s.state.pressure_unit_factor;
}

void write_charge(Session& s) { write_pair(s, "Form4", "MPgm"); }

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
  const FitUnit& unit = s.imperial_view ? told.imperial : told.metric;
  s.fit_undo = before;
  s.fit_note = s.language.fastmsg("ffitted") + s.language.fastmsg(told.key) + " " +
               format_number(from / unit.size, unit.pattern) + " -> " +
               format_number(to / unit.size, unit.pattern) + " " + s.language.fastmsg(unit.key);
}

void tell_no_fit(Session& s) { warn(s, MessageText(s).msg(159).line().msg(160)); }

void fit_the_charge(Session& s, double value, FitMode mode) {
  const FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const double factors[] = {pressure_axis_factor(s), s.imperial_view ? 1 / kFeetPerMetre : 1.0, 0.001};
  const int kind = s.state.tableKind;
  s.state.tableKind = 1;  // the screens stand still meanwhile
  const bool found =
      fit_charge(s.state, s.curve, s.result, mode, value * factors[static_cast<std::size_t>(mode)]);
  s.state.tableKind = kind;
  write_charge(s);
  if (found)
    note_fit(s, before, kChargeTold, before.chargeGr, s.state.chargeGr);
  else
    tell_no_fit(s);
}

bool fit_the_barrel(Session& s, double value, FitMode mode) {
  const FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const double mm = value * (s.imperial_view ? kMmPerInch : 1.0);
  const FitGeometry fit = fit_geometry(s.state, mode, mode == FitMode::travel ? mm : mm / kMmPerInch);
  if (!fit.ok) {
    beep(s);
    return false;
  }
  s.state.dim.Llen = fit.barrel_in;
  s.state.dim.Wob = fit.travel_mm;
  write_pair(s, "Form3", "Llenm");
  write_pair(s, "Form3", "Wobm");
  note_fit(s, before, kBarrelTold, before.Llen, fit.barrel_in);
  return true;
}

}  // namespace

void run_load_table(Session& s) {
  LoadTableSettings settings{s.options.ldstep, s.weight_step, s.options.ldweight, s.options.ldperc,
                             s.options.batols};
  {
    const Waiting waiting(*s.user);
    RunLoadTable(s.state, s.curve, s.result, settings, table_head(s), s.load_table);
  }
  s.options.ldstep = settings.ldstep;
  run_shown_shot(s);
  settings_save(s);
  s.load_table.table_valid = true;
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
                 s.sort, hooks, table);
  return table;
}

}  // namespace

void run_powder_table(Session& s) {
  s.sort.page = s.language.page();
  s.powder_table = powder_table_of(s);
  if (s.options.schrit != s.state.schrit) s.load_table.table_valid = false;
  s.options.schrit = s.state.schrit;
  const bool cancelled = s.powder_table.cancelled;
  run_shown_shot(s);
  if (cancelled) {
    SetDisplayMode(s, 3);
  } else {
    s.state.tableKind = 2;
  }
  s.powder_table.table_valid = true;
  show_outputs(s);
}

void FitChargeToTarget(Session& s, double value, int mode) {
  if (!s.resultsValid) return;
  if (!(value > 0)) return beep(s);
  s.fit_note.clear();
  const auto fit = static_cast<FitMode>(mode);
  if (fit == FitMode::travel || fit == FitMode::barrel_length) {
    if (!fit_the_barrel(s, value, fit)) return;
  } else {
    fit_the_charge(s, value, fit);
  }
  convertUnits(s.state);
  refresh_fill(s);
  setResultsValid(s, run_shown_shot(s));
  if (!s.fit_note.empty()) s.load_table.table_valid = s.powder_table.table_valid = false;  // of another load
  set_text(s, "frmMAIN", "status_line", s.fit_note);
  if (s.outputs_changed) s.outputs_changed(s);
}

bool can_undo_fit(const Session& s) { return s.fit_undo.possible; }

void undo_fit(Session& s) {
  if (!s.fit_undo.possible) return;
  s.state.chargeGr = s.fit_undo.chargeGr;
  s.state.dim.Llen = s.fit_undo.Llen;
  s.state.dim.Wob = s.fit_undo.Wob;
  s.fit_undo = {};
  s.fit_note.clear();
  write_charge(s);
  write_pair(s, "Form3", "Llenm");
  write_pair(s, "Form3", "Wobm");
  refresh_fill(s);
  set_text(s, "frmMAIN", "status_line", "");
  setResultsValid(s, false);
}

}  // namespace tv
