#include "session/tables.h"

#include <memory>

#include "engine/shot.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/load_steps.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/take_records.h"
#include "tables/fit.h"
#include "tables/table_data.h"
#include "tables/table_text.h"
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

void note_fit(Session& s, const FitUndo& before, const FitTold& told, double from, double to,
              const char* head = "ffitted") {
  const FitUnit& unit = s.output.imperial ? told.imperial : told.metric;
  s.fit_undo = before;
  s.status = s.language.fastmsg(head) + s.language.fastmsg(told.key) + " " +
             format_number(from / unit.size, unit.pattern) + " -> " +
             format_number(to / unit.size, unit.pattern) + " " + s.language.fastmsg(unit.key);
}

void tell_no_fit(Session& s) { warn(s, MessageText(s).msg(159).line().msg(160)); }

void fit_the_charge(Session& s, double value, FitMode mode) {
  const FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const double factors[] = {pressure_axis_factor(s), s.output.imperial ? 1 / kFeetPerMetre : 1.0, 0.001};
  const auto curve = std::make_unique<ShotCurve>();  // the one on show stands meanwhile
  ShotResult result;
  const bool found =
      fit_charge(s.state, *curve, result, mode, value * factors[static_cast<std::size_t>(mode)]);
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
  const std::string told = s.status;
  setResultsValid(s, run_shown_shot(s));
  s.status = told;
  if (!told.empty()) s.valid.load_table = s.valid.powder_table = false;  // of another load
  outputs_changed(s);
}

namespace {

bool row_there(int row, int count) { return row >= 0 && row < count; }

// The charge of a row in grains.
std::optional<double> charge_of_row(const Session& s, int row) {
  const auto i = static_cast<std::size_t>(row);
  if (s.mode() == DisplayMode::load_table) {
    const LoadTable& t = s.tables.load;
    if (!row_there(row, LoadTable::kLadder) || !s.valid.load_table || t.velocity[i] == 0) return {};
    return t.charge[i];
  }
  const PowderTable& t = s.tables.powder;
  if (s.mode() != DisplayMode::powder_table || !row_there(row, static_cast<int>(t.rows.size()))) return {};
  if (!s.valid.powder_table || !shows_figures(t, t.rows[i])) return {};
  return t.rows[i].cell(2) * 1000 * kGrainsPerGram;
}

// With case volume and barrel varied, charge and powder alone do not give the row's figures.
bool ask_without_chamber(Session& s, int row) {
  if (s.tables.powder.criteria.strategy != 8) return true;
  const TableData data = powder_table_data(s.tables.powder, s.output.imperial);
  MessageText text(s);
  text.msg(432).line();
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    const TableColumn& column = data.columns[i];
    if (column.key != std::string_view("volume") && column.key != std::string_view("barrel")) continue;
    const double value = data.rows[static_cast<std::size_t>(row)].values[i];
    text.fast(column.title).add(" " + cell_text(column, value) + " " + column.unit).line();
  }
  return ask_ok_cancel(s, text);
}

bool take_powder_of_row(Session& s, int row, FitUndo& before) {
  const std::string& name = s.tables.powder.rows[static_cast<std::size_t>(row)].name;
  const int record = s.set(RecordKind::powders).file.table.find(trim(name));
  if (record < 0) {
    warn(s, MessageText(s).msg(62).line().add(name));
    return false;
  }
  if (!ask_without_chamber(s, row)) return false;
  before.powder = s.state;
  before.pulver = s.load.pulver;
  take_powder(s, record);
  return true;
}

}  // namespace

bool take_table_row(Session& s, int row) {
  leave_focus(s);  // Escape must not undo half of it
  const auto charge = charge_of_row(s, row);
  if (!charge) {
    beep(s);
    return false;
  }
  FitUndo before{true, s.state.chargeGr, s.state.dim.Llen, s.state.dim.Wob};
  const Validity marks = s.valid;
  const bool powders = s.mode() == DisplayMode::powder_table;
  if (powders && !take_powder_of_row(s, row, before)) return false;
  s.state.chargeGr = *charge;
  write_number(s, s.state.chargeGr);
  s.valid.ask_charge = false;
  refresh_fill(s);
  setResultsValid(s, false);
  (powders ? s.valid.powder_table : s.valid.load_table) = powders ? marks.powder_table : marks.load_table;
  note_fit(s, before, kChargeTold, before.chargeGr, s.state.chargeGr, "ftaken");
  s.autocalc_due = true;
  return true;
}

int present_row(const Session& s) {
  if (s.mode() == DisplayMode::load_table) {
    for (int i = 0; i < LoadTable::kLadder && s.tables.load.row_count > 0; ++i)
      if (s.tables.load.charge[static_cast<std::size_t>(i)] == s.state.chargeGr) return i;
  } else if (s.mode() == DisplayMode::powder_table) {
    const auto& rows = s.tables.powder.rows;
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (trim(rows[i].name) == trim(s.load.pulver)) return static_cast<int>(i);
  }
  return -1;
}

bool can_undo_fit(const Session& s) { return s.fit_undo.possible; }

void undo_fit(Session& s) {
  if (!s.fit_undo.possible) return;
  s.state.chargeGr = s.fit_undo.chargeGr;
  s.state.dim.Llen = s.fit_undo.Llen;
  s.state.dim.Wob = s.fit_undo.Wob;
  if (s.fit_undo.powder) put_back_powder(s, *s.fit_undo.powder, s.fit_undo.pulver);
  s.fit_undo = {};
  write_number(s, s.state.chargeGr);
  write_number(s, s.state.dim.Llen);
  write_number(s, s.state.dim.Wob);
  refresh_fill(s);
  setResultsValid(s, false);
}

}  // namespace tv
