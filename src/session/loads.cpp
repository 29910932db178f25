#include "session/loads.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/findings.h"
#include "session/input_check.h"
#include "session/load_files.h"
#include "session/load_steps.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

// How a load's values are shown when it has been read.
struct LoadFormat {
  double& (*value)(Session&, int);
  Patterns patterns;
};
using D = CartridgeDimensions;
using C = CalcState;
constexpr LoadFormat kLoadFormats[] = {
    {dim<&D::Llen>, {"####0.0#", "##0.0##"}},
    {dim<&D::Plen>, {"###0.00", "#0.000"}},
    {dim<&D::Bsd>, {"0.00", "0.000"}},
    {dim<&D::ssd>, {"0.00", "0.000"}},
    {dim<&D::Hlen>, {"###0.00", "#0.000"}},
    {dim<&D::Zkal>, {"##0.00", "0.000"}},
    {dim<&D::sebf>, {"#0.0#"}},
    {dim<&D::Volf>, {"####0.000", "0.00"}},
    {dim<&D::qfq>, {"#.00#", "#.000###"}},
    {dim<&D::Veff>, {"0.000", "0.000"}},
    {dim<&D::Vvg>, {"0.000", "0.000"}},
    {dim<&D::Wob>, {"##0.0##", "#0.0#"}},
    {dim<&D::Bwg>, {"###0.0##", "####0.0"}},
    {dim<&D::Glen>, {"##0.00", "#0.000"}},
    {dim<&D::buldin>, {"#0.00", "0.000"}},
    {state<&C::Limz1>, {"0.000"}},
    {state<&C::Ba0>, {"0.0000"}},
    {state<&C::Ba1>, {"#0.0000"}},
    {state<&C::Exw>, {"####0"}},
    {state<&C::Kap>, {"0.0000"}},
    {state<&C::Pdens>, {"0.000"}},
    {state<&C::PDko>, {"#0.0000"}},
    {state<&C::bulkdn>, {"0.000"}},
    {state<&C::chargeGr>, {"##0.00#", "##0.0#"}},
};
// Those that the unit of pressures decides.
constexpr double& (*kPressures[])(Session&, int) = {dim<&D::zul_P>, state<&C::start_pressure>,
                                                    state<&C::frictionPress>, option<&Options::maxtab>};

// The box's title is part of what it says.
void warn_as_warning(Session& s, Message message) {
  message.keys.emplace_back("msg75");
  warn(s, message, true, std::string(kProgramName) + ": " + s.language.msg(75));
}

// Its box comes as the load is read, with the values it speaks of.
void compare_powder(Session& s) {
  if (const auto finding = powder_finding(s)) warn_as_warning(s, finding->message);
}

// A load that has just been read has no results: figures of another one must not stand beside it.
void clear_results(Session& s) {
  clear_panel(s);
  s.shown.any = s.shown.failed = false;
  s.fit_undo = {};
  s.told.clear();
  s.status.clear();
}

// The seating depth follows from the lengths. One that agrees with them but for rounding stands, so that a
// load reads back to the last bit; one that does not was kept so: the overall length of a bullet seated too
// deep stays at that of the case.
void settle_dimensions(Session& s) {
  constexpr double rounding = 1e-9, kept = 0.0005;  // inch
  const double Bsd = s.state.dim.Bsd;
  recompute_dimensions(s, kOverallLength);
  const double off = std::abs(s.state.dim.Bsd - Bsd);
  if (off >= rounding && off <= kept) return;
  s.state.dim.Bsd = Bsd;
  write_number(s, s.state.dim.Bsd);
  recompute_dimensions(s, kNothingMoved);
}

// Texts of the load that are no numbers as a whole, and tails of an unknown kind.
void tell_odd_keys(Session& s, const KeyList& keys) {
  if (keys.empty()) return;
  MessageText text(s);
  text.msg(426).line();
  for (const std::string_view key : keys) text.add(key).add(" ");
  warn(s, text);
}

// Fields and derived dimensions after values were read from a file.
void take_read_values(Session& s, bool with_depth) {
  if (s.load.coefficients.empty()) s.load.coefficients = {{s.load.c1icao, 0}};
  s.state.ExwJ = 1000 * s.state.Exw;
  refresh_all_fields(s);
  with_depth ? settle_dimensions(s) : recompute_dimensions(s, kOverallLength);
  setResultsValid(s, false);
}

void begin_load(Session& s) {
  clear_results(s);
  take_read_values(s, true);
  if (s.state.frictionOn) begin_friction_step(s);
  settle_steps(s);
  s.valid.ask_charge = !(s.state.chargeGr > 0);
}

}  // namespace

static void write_missing_pressures(Session& s) {
  if (!(s.state.dim.zul_P > 0)) write_texts(s, s.state.dim.zul_P, " ? ", " ? ");
  if (s.state.start_pressure == 0) write_texts(s, s.state.start_pressure, " 0.0", "");
}

void refresh_all_fields(Session& s) {
  for (const LoadFormat& format : kLoadFormats) write_number(s, format.value(s, 0), format.patterns);
  refresh_pressure_fields(s);
  write_missing_pressures(s);
  select_by_name(s, RecordKind::cartridges, s.load.pattyp);
  select_by_name(s, RecordKind::bullets, s.load.bultyp);
  select_by_name(s, RecordKind::powders, s.load.pulver);
  refresh_fill(s);
}

LoadNumbers::LoadNumbers(Session& s) {
  for (const LoadFormat& format : kLoadFormats) before_.push_back(format.value(s, 0));
  for (const auto value : kPressures) before_.push_back(value(s, 0));
}

void LoadNumbers::refresh(Session& s) const {
  std::size_t n = 0;
  for (const LoadFormat& format : kLoadFormats)
    if (const double& value = format.value(s, 0); value != before_[n++])
      write_number(s, value, format.patterns);
  for (const auto pressure : kPressures)
    if (const double& value = pressure(s, 0); value != before_[n++]) {
      write_number(s, value);
      write_missing_pressures(s);
    }
  refresh_fill(s);
}

bool load_read(Session& s, const std::string& file) {
  s.writer.drain();
  return load_take(s, file, read_file(file));
}

bool load_take(Session& s, const std::string& file, const FileRead& read) {
  leave_focus(s);  // nothing held from before survives the load
  const bool settings = file == s.settings_file;
  const SectionedFile sections(read.bytes, s.language.page());
  CalcState state = s.state;  // taken over when it is whole
  LoadData load = s.load;
  const auto odd = read.failure == 0 ? read_load_keys(sections, state, load) : std::nullopt;
  if (!odd && !settings) {
    MessageText text(s);
    text.msg(185).add(file).line().msg(197);
    if (read.failure) text.line().add(s.language.failure(read.failure));
    warn_as_warning(s, text);
    return false;
  }
  s.picture.clear();
  if (odd) {
    const bool had_friction = s.state.frictionOn;
    s.state = state;
    s.load = std::move(load);
    read_load_options(sections, s.state, s.options);
    if (had_friction && !s.state.frictionOn) end_friction_step(s);
  }
  begin_load(s);
  mark_saved(s);
  if (odd) {
    tell_odd_keys(s, *odd);
    compare_powder(s);
  }
  return true;
}

void begin_empty_load(Session& s) {
  if (s.state.frictionOn) end_friction_step(s);
  CalcState empty;
  empty.dim.Llen = s.state.dim.Llen;
  empty.schrit = s.state.schrit;
  empty.pressure_unit_factor = s.state.pressure_unit_factor;
  s.state = empty;
  s.load = {};
  s.picture.clear();
  begin_load(s);
}

bool load_write(Session& s, const std::string& file) {
  take_shown_start_pressure(s);  // or the load read back would run without it
  return change_sectioned(s, file, [&](SectionedFile& sections) {
    write_load_keys(s.state, s.load, sections);
    write_load_options(s.options, sections);
  });
}

void save_current_load(Session& s) {
  if (!s.writes_files) return;
  take_shown_start_pressure(s);
  s.options.labchg = has_unsaved_changes(s);
  // The name with the load: whatever ends the program, one load never stands under another's name.
  const auto write = [state = s.state, load = s.load, options = s.options](SectionedFile& sections) {
    write_load_keys(state, load, sections);
    write_load_options(options, sections);
    for (const char* key : {"labfil", "labchg"}) write_option(*option_key(key), options, sections);
  };
  change_behind(s, s.settings_file, write, Flush::yes);
}

bool take_design_data(Session& s, const std::string& file) {
  const FileRead read = read_file(file);
  if (read.failure) {
    warn(s, MessageText(s).msg(185).add(file).line().add(s.language.failure(read.failure)));
    return false;
  }
  read_design_data(SectionedFile(read.bytes, s.language.page()), s.state, s.load);
  take_read_values(s, false);
  return true;
}

static std::string velocity_shown(const Session& s) {
  const auto at = std::ranges::find(s.shown.panel, std::string_view("Vnull"), &PanelField::name);
  return at == s.shown.panel.end() ? std::string() : at->text;
}

void write_transfer_file(Session& s) {
  if (!s.writes_files) return;
  const auto write = [state = s.state, load = s.load, options = s.options, velocity = velocity_shown(s)](
                         SectionedFile& file) { write_transfer(state, load, options, velocity, file); };
  change_behind(s, s.transfer_file, write, Flush::no);
}

}  // namespace tv
