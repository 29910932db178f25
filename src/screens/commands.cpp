#include "screens/commands.h"

#include <algorithm>
#include <array>

#include "output/spreadsheet.h"
#include "screens/measure_screens.h"
#include "screens/output_window.h"
#include "screens/reports.h"
#include "session/data_sets.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/language_switch.h"
#include "session/load_files.h"
#include "session/load_steps.h"
#include "session/message.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/start.h"
#include "session/tables.h"
#include "text/codepage.h"
#include "text/file.h"

namespace tv {
namespace {

using C = const Command&;
using S = Session&;
using CS = const Session&;

bool results_valid(CS s, C) { return s.valid.results; }

constexpr const char* kMain = "frmMAIN";
constexpr const char* kOut = "form7";

// --- file

void calculate(S s, C) { Patdef(s); }
void new_load(S s, C) { lab_new(s); }
void save_load(S s, C) {
  ask_notes(s);
  lab_save(s);
}
void save_load_as(S s, C) {
  ask_notes(s);
  lab_sav(s);
}
void open_load_file(S s, C) { lab_lod(s); }
void open_example(S s, C) { lab_example(s); }
bool has_recent(CS s, C) { return !s.recent.empty(); }
void delete_load(S s, C) { lab_del(s); }
void design_data(S s, C) { lab_omt(s); }
void end_program(S s, C) {
  if (ask_to_end(s)) s.end_requested = true;
}

std::string_view language_of(C c) { return delivered_languages()[static_cast<std::size_t>(c.value)].name; }
void choose_language(S s, C c) { language_switch(s, language_of(c)); }
bool language_checked(CS s, C c) { return s.language.name() == language_of(c); }

// --- data sets: the value is the kind of record

RecordKind kind_of(C c) { return static_cast<RecordKind>(c.value); }
constexpr int kPowders = static_cast<int>(RecordKind::powders);
constexpr int kBullets = static_cast<int>(RecordKind::bullets);
constexpr int kCartridges = static_cast<int>(RecordKind::cartridges);
constexpr int kGuns = static_cast<int>(RecordKind::guns);

void open_set(S s, C c) { open_records(s, kind_of(c)); }
void new_set(S s, C c) { new_file(s, kind_of(c)); }
void save_set(S s, C c) { save_as(s, kind_of(c)); }
void collect_set(S s, C c) { collect_calibre(s, kind_of(c)); }
void filter_cartridges(S s, C) { filter_by_calibre(s); }
void sort_set(S s, C c) { sort_cartridges(s, c.value != 0); }
bool sort_checked(CS s, C c) { return s.options.sortvol == (c.value != 0); }

void undo_last_fit(S s, C) { undo_fit(s); }
bool fit_to_undo(CS s, C) { return can_undo_fit(s); }

// --- views and settings of a calculation

void show_view(S s, C c) {
  SetDisplayMode(s, c.value);
  bring_to_front(s, Role::output);
}
bool view_checked(CS s, C c) { return s.options.grftyp == c.value && !s.output.optional; }
void keep_curve(S s, C) {
  keep_run(s);
  outputs_changed(s);
}
void drop_curve(S s, C) {
  s.kept.reset();
  outputs_changed(s);
}

void choose_step(S s, C c) {
  s.step_before_friction.reset();  // the user's own choice stands
  setStep(s, c.value);
  if (!s.firstRun) recalculate(s);
}
bool step_checked(CS s, C c) { return s.state.schrit == c.value; }

void percent_step(S s, C c) { SetLoadTableStep(s, c.value); }
bool percent_checked(CS s, C c) {
  return !s.options.ldweight && !s.options.ldperc && s.options.ldstep == c.value;
}
void free_percent(S s, C) { ask_percent_step(s); }
bool free_percent_checked(CS s, C) { return s.options.ldperc; }
void weight_step(S s, C) { ask_weight_step(s); }
bool weight_checked(CS s, C) { return s.options.ldweight; }
void tolerance(S s, C c) { SetBaTolerance(s, c.value); }
bool tolerance_checked(CS s, C c) {
  const int n = s.options.batols;
  return c.value == (n == 3 || n == 10 || n == 15 ? n : 5);
}

void open_named(S s, const char* screen) { open_screen(s, screen); }
void criteria(S s, C) { open_named(s, "FormPsel"); }
void edit_cartridges(S s, C) { open_named(s, "Form11"); }
void edit_bullets(S s, C) { open_named(s, "FormTail"); }
void edit_powder(S s, C) { open_named(s, "Form9"); }
void black_powder(S s, C) { open_named(s, "frmBP"); }
void edit_guns(S s, C) { open_named(s, "frmGun"); }
void friction(S s, C) { open_named(s, "FormBorefrict"); }
void recoil_window(S s, C) { open_named(s, "FormBack"); }
void unit_converter(S s, C) { open_named(s, "Form8"); }
void measured_strings(S s, C) { open_named(s, "frmMeas"); }
void band(S s, C) { open_band(s, false); }
void crosscheck(S s, C) { open_band(s, true); }
void load_notes(S s, C) { open_named(s, "frmPrimer"); }
void more_curves(S s, C) { open_named(s, "FormGset"); }
bool optional_shown(CS s, C) { return s.output.optional; }
bool friction_checked(CS s, C) { return s.state.frictionOn; }

void pressure_unit(S s, C c) { set_pressure_unit(s, c.value != 0); }
bool pressure_unit_checked(CS s, C c) { return (s.state.pressure_unit_factor == 1) == (c.value != 0); }
void output_units(S s, C c) { set_unit_mode(s, c.value ? UnitMode::metric : UnitMode::imperial); }
bool output_units_checked(CS s, C c) { return (s.unit_mode == UnitMode::metric) == (c.value != 0); }

void toggle_sound(S s, C) { s.sound = !s.sound; }
bool sound_off(CS s, C) { return !s.sound; }

// --- options that are only kept

template <bool Options::*Flag>
void flip(S s, C c) {
  s.options.*Flag = !(s.options.*Flag);
  store_option(s, c.name);
}
template <bool Options::*Flag>
bool is_set(CS s, C) {
  return s.options.*Flag;
}

// --- windows

void by_window(S s, C c) {
  if (s.hooks.window_command) s.hooks.window_command(s, c.name);
}
void place_child(S s, C c) {
  open_screen(s, screen_name(s, static_cast<Role>(c.value)));
  by_window(s, c);
}
Role role_of(C c) { return static_cast<Role>(c.value); }
void show_child(S s, C c) {
  const auto name = screen_name(s, role_of(c));
  is_visible(s, role_of(c)) ? hide_screen(s, role_of(c)) : void(open_screen(s, name));
}
bool child_shown(CS s, C c) { return is_visible(s, role_of(c)); }
bool cascaded(CS s, C) { return !s.options.atiles; }
void quick_start(S s, C) {
  const auto name = screen_name(s, Role::quick_start);
  is_visible(s, Role::quick_start) ? close_screen(s, name) : open_screen(s, name);
}
bool quick_start_open(CS s, C) { return is_visible(s, Role::quick_start); }
void tips(S s, C) {
  s.options.toltip = !s.options.toltip;
  store_option(s, "toltip");
  if (s.hooks.window_command) s.hooks.window_command(s, "ttips");
}
void toolbar(S s, C) {
  s.options.symbol = !s.options.symbol;
  store_option(s, "symbol");
  if (s.hooks.window_command) s.hooks.window_command(s, "symbonoff");
}
void choose_look(S s, C c) {
  s.options.look = c.value;
  store_option(s, "look");
  by_window(s, c);
}
bool look_checked(CS s, C c) { return s.options.look == c.value; }
void about(S s, C) { open_named(s, "frmHelp"); }

// --- output window

void changed(S s) { outputs_changed(s); }
template <bool Options::*Flag>
void flip_mark(S s, C) {
  s.options.*Flag = !(s.options.*Flag);
  if (Flag == &Options::maxshw) show_whole_diagram(s);  // the axis reaches the limit or only the curve
  store_option(s, Flag == &Options::pcolor ? "pcolor" : Flag == &Options::maxshw ? "maxshw" : "actshw");
  changed(s);
}
void x_axis(S s, C c) {
  if (s.options.gbrlen != c.value) show_whole_diagram(s);
  s.options.gbrlen = c.value;
  store_option(s, "gbrlen");
  changed(s);
}
bool x_axis_checked(CS s, C c) { return (s.options.gbrlen != 0) == (c.value != 0); }
void sort_by(S s, C c) {
  s.tables.sort.column = c.value;
  sort_powder_table(s.tables.powder, s.tables.sort);
  changed(s);
}
bool sorted_by(CS s, C c) { return s.tables.sort.column == c.value; }
void sort_direction(S s, C c) {
  s.tables.sort.ascending = c.value != 0;
  sort_powder_table(s.tables.powder, s.tables.sort);
  changed(s);
}
bool direction_checked(CS s, C c) { return s.tables.sort.ascending == (c.value != 0); }
bool powder_table_shown(CS s, C) { return s.options.grftyp == -2; }
void toggle_units(S s, C) {
  s.output.imperial = !s.output.imperial;
  show_whole_diagram(s);
  changed(s);
}
bool imperial(CS s, C) { return s.output.imperial; }
void line_width(S s, C c) {
  s.output.line_width = c.value;
  changed(s);
}
bool line_width_checked(CS s, C c) { return s.output.line_width == c.value; }
void redraw(S s, C) { changed(s); }
constexpr double kMenuZoom = 3;  // steps of the wheel
void zoom_diagram(S s, C c) {
  if (c.value == 0)
    show_whole_diagram(s);
  else
    zoom_output(s, kMenuZoom * c.value);
  changed(s);
}
bool zoomable(CS s, C) { return diagram_shown(s); }
bool section_shown(CS s, C) { return diagram_shown(s) && !is_whole(s.output.view); }
void flip_curve(S s, C c) {
  show_curve(s, c.value, s.output.hidden[static_cast<std::size_t>(c.value - 1)]);
  changed(s);
}
void flip_reference(S s, C) {
  s.output.reference.shown = !s.output.reference.shown;
  changed(s);
}
bool has_reference(CS s, C) { return s.output.reference.loaded; }
bool reference_shown(CS s, C) { return s.output.reference.shown; }
void flip_as_measured(S s, C) {
  s.output.reference.as_measured = !s.output.reference.as_measured;
  changed(s);
}
bool as_measured(CS s, C) { return s.output.reference.as_measured; }
bool has_curve(CS s, C c) {
  return diagram_shown(s) && (c.value == 1 || (s.options.grftyp % 3 == 0 && !s.output.optional));
}
bool curve_shown(CS s, C c) { return !s.output.hidden[static_cast<std::size_t>(c.value - 1)]; }

bool exportable(CS s, C) {
  return s.options.excel_yes && s.valid.results && !output_stale(s) && output_export(s).has_value();
}
void to_spreadsheet(S s, C) {
  const auto data = output_export(s);
  if (!data) return warn(s, MessageText(s).msg(415));
  const auto answer = ask_file(s,
                               {FileMode::save, DialogKind::spreadsheet, s.language.fastmsg("flfdial", 32),
                                load_folder(s), "ternovale.xlsx", s.language.fastmsg("flffilt", 32), ""},
                               {"xlsx", "csv"});
  if (!answer) return;
  const int failure = file_has_extension(answer->file, "csv") ? write_csv(*data, answer->file)
                                                              : write_xlsx(*data, answer->file);
  if (failure)
    warn(s, MessageText(s).msg(417).line().add(answer->file).line().add(s.language.failure(failure)));
}
bool printable(CS s, C c) { return report_ready(s, *report_of(c.name)); }
void print_with_notes(S s, C c) {
  ask_notes(s);
  by_window(s, c);
}
void print_heading(S s, C) {
  std::string title = s.language.text("frmMAIN", "ptitle");
  std::erase(title, '&');
  const auto heading =
      s.user->input({title, MessageText(s).caption("frmMAIN", "pricomText"), s.load.pricomment});
  if (heading) s.load.pricomment = drop_foreign(trim(*heading), s.language.page());
}
bool has_heading(CS s, C) { return !s.load.pricomment.empty(); }
void save_as_text(S s, C) {
  const auto answer =
      ask_file(s,
               {FileMode::save, DialogKind::text, s.language.fastmsg("flfdial", 30), load_folder(s),
                report_name(s) + ".txt", s.language.fastmsg("flffilt", 30), ""},
               {"txt"});
  if (!answer) return;
  if (const int failure = write_file(answer->file, report_text(s)))
    warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
}

// clang-format off
constexpr Command kCommands[] = {
    {.name = "Datei_menu", .section = kMain, .parent = nullptr},
    {.name = "lab_new", .section = kMain, .parent = "Datei_menu", .action = new_load, .shortcut = "Ctrl+N"},
    {.name = "lab_lod", .section = kMain, .parent = "Datei_menu", .action = open_load_file, .shortcut = "Ctrl+O", .toolbar = 3},
    {.name = "lab_example", .section = kMain, .parent = "Datei_menu", .action = open_example},
    {.name = "lab_recent", .section = kMain, .parent = "Datei_menu", .enabled = has_recent, .holds_recent = true},
    {.name = "lab_save", .section = kMain, .parent = "Datei_menu", .action = save_load, .shortcut = "Ctrl+S", .toolbar = 4},
    {.name = "lab_sav", .section = kMain, .parent = "Datei_menu", .action = save_load_as, .shortcut = "Ctrl+Shift+S"},
    {.name = "rech", .section = kMain, .parent = "Datei_menu", .action = calculate, .shortcut = "F5", .toolbar = 0, .separator_before = true},
    {.name = "asci_print", .section = kMain, .parent = "Datei_menu", .action = save_as_text, .enabled = results_valid},
    {.name = "lab_del", .section = kMain, .parent = "Datei_menu", .action = delete_load},
    {.name = "addinfo", .section = kMain, .parent = "Datei_menu", .action = load_notes, .toolbar = 5},
    {.name = "lab_omt", .section = kMain, .parent = "Datei_menu", .action = design_data},
    {.name = "ptitle", .section = kMain, .parent = "Datei_menu", .action = print_heading, .checked = has_heading, .separator_before = true},
    {.name = "PrSetup", .section = kMain, .parent = "Datei_menu", .action = by_window},
    {.name = "prifontsel", .section = kMain, .parent = "Datei_menu", .action = by_window},
    {.name = "grfpri", .section = kMain, .parent = "Datei_menu"},
    {.name = "grf_akt", .section = kMain, .parent = "grfpri", .action = by_window, .shortcut = "Ctrl+P", .enabled = printable},
    {.name = "grf_akt_dat", .section = kMain, .parent = "grfpri", .action = print_with_notes, .toolbar = 1, .enabled = printable},
    {.name = "grf_weg_zeit", .section = kMain, .parent = "grfpri", .action = by_window, .toolbar = 2, .enabled = printable},
    {.name = "lade_tab", .section = kMain, .parent = "grfpri", .action = print_with_notes, .enabled = printable},
    {.name = "pulv_tab", .section = kMain, .parent = "grfpri", .action = print_with_notes, .enabled = printable},
    {.name = "s_lang", .section = kMain, .parent = "Datei_menu", .separator_before = true},
    {.name = "deutsch", .section = kMain, .parent = "s_lang", .action = choose_language, .checked = language_checked, .value = 1, .literal = "&Deutsch"},
    {.name = "english", .section = kMain, .parent = "s_lang", .action = choose_language, .checked = language_checked, .value = 0, .literal = "&English"},
    {.name = "french", .section = kMain, .parent = "s_lang", .action = choose_language, .checked = language_checked, .value = 2, .literal = "&Français"},
    {.name = "russisch", .section = kMain, .parent = "s_lang", .action = choose_language, .checked = language_checked, .value = 3, .literal = "&Русский"},
    {.name = "Ende", .section = kMain, .parent = "Datei_menu", .action = end_program, .separator_before = true},

    {.name = "tool", .section = kMain, .parent = nullptr},
    {.name = "brenn", .section = kMain, .parent = "tool"},
    {.name = "pow_dat", .section = kMain, .parent = "brenn", .action = edit_powder},
    {.name = "pow_load", .section = kMain, .parent = "brenn", .action = open_set, .value = kPowders},
    {.name = "pow_neu", .section = kMain, .parent = "brenn", .action = new_set, .value = kPowders},
    {.name = "pow_save_as", .section = kMain, .parent = "brenn", .action = save_set, .value = kPowders},
    {.name = "cart_cases", .section = kMain, .parent = "tool"},
    {.name = "case_dat", .section = kMain, .parent = "cart_cases", .action = edit_cartridges},
    {.name = "case_sort", .section = kMain, .parent = "cart_cases"},
    {.name = "case_sort_zug", .section = kMain, .parent = "case_sort", .action = sort_set, .checked = sort_checked, .value = 0},
    {.name = "case_sort_name", .section = kMain, .parent = "case_sort", .action = sort_set, .checked = sort_checked, .value = 1},
    {.name = "case_load", .section = kMain, .parent = "cart_cases", .action = open_set, .value = kCartridges},
    {.name = "case_neu", .section = kMain, .parent = "cart_cases", .action = new_set, .value = kCartridges},
    {.name = "case_save_as", .section = kMain, .parent = "cart_cases", .action = save_set, .value = kCartridges},
    {.name = "case_collect", .section = kMain, .parent = "cart_cases", .action = collect_set, .value = kCartridges},
    {.name = "case_select", .section = kMain, .parent = "cart_cases", .action = filter_cartridges},
    {.name = "bull_dat_start", .section = kMain, .parent = "tool"},
    {.name = "bull_dat", .section = kMain, .parent = "bull_dat_start", .action = edit_bullets},
    {.name = "bull_load", .section = kMain, .parent = "bull_dat_start", .action = open_set, .value = kBullets},
    {.name = "bull_neu", .section = kMain, .parent = "bull_dat_start", .action = new_set, .value = kBullets},
    {.name = "bull_save_as", .section = kMain, .parent = "bull_dat_start", .action = save_set, .value = kBullets},
    {.name = "bul_collect", .section = kMain, .parent = "bull_dat_start", .action = collect_set, .value = kBullets},
    {.name = "gun_menu", .section = kMain, .parent = "tool"},
    {.name = "gun_dat", .section = kMain, .parent = "gun_menu", .action = edit_guns},
    {.name = "gun_load", .section = kMain, .parent = "gun_menu", .action = open_set, .value = kGuns},
    {.name = "gun_neu", .section = kMain, .parent = "gun_menu", .action = new_set, .value = kGuns},
    {.name = "gun_save_as", .section = kMain, .parent = "gun_menu", .action = save_set, .value = kGuns},
    {.name = "measured", .section = kMain, .parent = "tool", .action = measured_strings, .separator_before = true},
    {.name = "band", .section = kMain, .parent = "tool", .action = band},
    {.name = "crosscheck", .section = kMain, .parent = "tool", .action = crosscheck},
    {.name = "undo_fit", .section = kMain, .parent = "tool", .action = undo_last_fit, .shortcut = "Ctrl+Z", .enabled = fit_to_undo, .separator_before = true},

    {.name = "options", .section = kMain, .parent = nullptr},
    {.name = "graf_open", .section = kMain, .parent = "options"},
    {.name = "pp_tab", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 14, .checked = view_checked, .value = -2},
    {.name = "ld_tab", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 13, .checked = view_checked, .value = -1},
    {.name = "nodia", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 15, .checked = view_checked, .value = 0},
    {.name = "Zeit_press", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 10, .checked = view_checked, .value = 4, .separator_before = true},
    {.name = "zeit_vel", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 11, .checked = view_checked, .value = 5},
    {.name = "Zeit_press_vel", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 12, .checked = view_checked, .value = 6},
    {.name = "weg_press", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 7, .checked = view_checked, .value = 1},
    {.name = "weg_vel", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 8, .checked = view_checked, .value = 2},
    {.name = "weg_press_vel", .section = kMain, .parent = "graf_open", .action = show_view, .toolbar = 9, .checked = view_checked, .value = 3},
    {.name = "schri", .section = kMain, .parent = "options"},
    {.name = "schriwh", .section = kMain, .parent = "schri", .action = choose_step, .checked = step_checked, .value = 1},
    {.name = "schriwn", .section = kMain, .parent = "schri", .action = choose_step, .checked = step_checked, .value = 0},
    {.name = "schriwg", .section = kMain, .parent = "schri", .action = choose_step, .checked = step_checked, .value = 2},
    {.name = "ldtabset", .section = kMain, .parent = "options"},
    {.name = "ldtabstp", .section = kMain, .parent = "ldtabset"},
    {.name = "useproz", .section = kMain, .parent = "ldtabstp"},
    {.name = "oneproz", .section = kMain, .parent = "ldtabstp", .action = percent_step, .checked = percent_checked, .value = 1, .literal = "1 %"},
    {.name = "twoproz", .section = kMain, .parent = "ldtabstp", .action = percent_step, .checked = percent_checked, .value = 2, .literal = "2 %"},
    {.name = "threeproz", .section = kMain, .parent = "ldtabstp", .action = percent_step, .checked = percent_checked, .value = 3, .literal = "3 %"},
    {.name = "inpercent", .section = kMain, .parent = "ldtabstp", .action = free_percent, .checked = free_percent_checked},
    {.name = "inweight", .section = kMain, .parent = "ldtabstp", .action = weight_step, .checked = weight_checked},
    {.name = "ldbatol", .section = kMain, .parent = "ldtabset"},
    {.name = "ldba3", .section = kMain, .parent = "ldbatol", .action = tolerance, .checked = tolerance_checked, .value = 3, .literal = "± 3 %"},
    {.name = "ldba5", .section = kMain, .parent = "ldbatol", .action = tolerance, .checked = tolerance_checked, .value = 5, .literal = "± 5 %"},
    {.name = "ldba10", .section = kMain, .parent = "ldbatol", .action = tolerance, .checked = tolerance_checked, .value = 10, .literal = "± 10 %"},
    {.name = "ldba15", .section = kMain, .parent = "ldbatol", .action = tolerance, .checked = tolerance_checked, .value = 15, .literal = "± 15 %"},
    {.name = "powd_set", .section = kMain, .parent = "options", .action = criteria},
    {.name = "borefriction", .section = kMain, .parent = "options", .action = friction, .checked = friction_checked},
    {.name = "savecalc", .section = kMain, .parent = "options", .action = keep_curve, .toolbar = 17, .enabled = results_valid, .separator_before = true},
    {.name = "delcalc", .section = kMain, .parent = "options", .action = drop_curve, .toolbar = 18},
    {.name = "backlash", .section = kMain, .parent = "options", .action = recoil_window},
    {.name = "refdruck", .section = kMain, .parent = "options", .action = flip_reference, .toolbar = 6, .enabled = has_reference, .checked = reference_shown},
    {.name = "refasis", .section = kMain, .parent = "options", .action = flip_as_measured, .enabled = has_reference, .checked = as_measured},
    {.name = "bpcharge", .section = kMain, .parent = "options", .action = black_powder},
    {.name = "conver", .section = kMain, .parent = "options", .action = unit_converter},
    {.name = "pressunit", .section = kMain, .parent = "options", .separator_before = true},
    {.name = "mpas", .section = kMain, .parent = "pressunit", .action = pressure_unit, .checked = pressure_unit_checked, .value = 1, .literal = "MPa"},
    {.name = "bars", .section = kMain, .parent = "pressunit", .action = pressure_unit, .checked = pressure_unit_checked, .value = 0, .literal = "bar"},
    {.name = "outputunits", .section = kMain, .parent = "options"},
    {.name = "metric", .section = kMain, .parent = "outputunits", .action = output_units, .checked = output_units_checked, .value = 1},
    {.name = "imperial", .section = kMain, .parent = "outputunits", .action = output_units, .checked = output_units_checked, .value = 0},
    {.name = "sysding", .section = kMain, .parent = "options", .action = toggle_sound, .checked = sound_off, .separator_before = true},
    {.name = "sysfon", .section = kMain, .parent = "options", .action = by_window},
    {.name = "look", .section = kMain, .parent = "options"},
    {.name = "look_system", .section = kMain, .parent = "look", .action = choose_look, .checked = look_checked, .value = 0},
    {.name = "look_light", .section = kMain, .parent = "look", .action = choose_look, .checked = look_checked, .value = 1},
    {.name = "look_dark", .section = kMain, .parent = "look", .action = choose_look, .checked = look_checked, .value = 2},
    {.name = "optset", .section = kMain, .parent = "options"},
    {.name = "primeryes", .section = kMain, .parent = "optset", .action = flip<&Options::primeryes>, .checked = is_set<&Options::primeryes>},
    {.name = "excel_yes", .section = kMain, .parent = "optset", .action = flip<&Options::excel_yes>, .checked = is_set<&Options::excel_yes>},
    {.name = "autocalc", .section = kMain, .parent = "optset", .action = flip<&Options::autocalc>, .checked = is_set<&Options::autocalc>},
    {.name = "intro_off", .section = kMain, .parent = "optset", .action = flip<&Options::intro_off>, .checked = is_set<&Options::intro_off>},
    {.name = "pri_graph1page", .section = kMain, .parent = "optset", .action = flip<&Options::pri_graph1page>, .checked = is_set<&Options::pri_graph1page>},

    {.name = "fenst", .section = kMain, .parent = nullptr},
    {.name = "arrng_wins", .section = kMain, .parent = "fenst", .action = by_window, .checked = is_set<&Options::atiles>},
    {.name = "arrng_stag", .section = kMain, .parent = "fenst", .action = by_window, .checked = cascaded},
    {.name = "sh_metr", .section = kMain, .parent = "fenst", .action = show_child, .checked = child_shown, .value = static_cast<int>(Role::dimensions), .separator_before = true},
    {.name = "sh_powd", .section = kMain, .parent = "fenst", .action = show_child, .checked = child_shown, .value = static_cast<int>(Role::powder)},
    {.name = "sh_result", .section = kMain, .parent = "fenst", .action = show_child, .checked = child_shown, .value = static_cast<int>(Role::results)},
    {.name = "sh_diagra", .section = kMain, .parent = "fenst", .action = show_child, .checked = child_shown, .value = static_cast<int>(Role::output)},
    {.name = "sh_abbr", .section = kMain, .parent = "fenst", .action = show_child, .checked = child_shown, .value = static_cast<int>(Role::burn_function)},
    {.name = "zoomwin", .section = kMain, .parent = "fenst", .action = by_window, .separator_before = true},
    {.name = "zoomdef", .section = kMain, .parent = "fenst", .action = by_window},
    {.name = "zoomout", .section = kMain, .parent = "fenst"},
    {.name = "zoomoutg", .section = kMain, .parent = "zoomout", .action = by_window},
    {.name = "zoomouth", .section = kMain, .parent = "zoomout", .action = by_window},
    {.name = "zoomoutv", .section = kMain, .parent = "zoomout", .action = by_window},
    {.name = "zoomin", .section = kMain, .parent = "fenst"},
    {.name = "zooming", .section = kMain, .parent = "zoomin", .action = by_window},
    {.name = "zoominh", .section = kMain, .parent = "zoomin", .action = by_window},
    {.name = "zoominv", .section = kMain, .parent = "zoomin", .action = by_window},
    {.name = "zentral", .section = kMain, .parent = "fenst", .separator_before = true},
    {.name = "metr", .section = kMain, .parent = "zentral", .action = place_child, .value = static_cast<int>(Role::dimensions)},
    {.name = "powd", .section = kMain, .parent = "zentral", .action = place_child, .value = static_cast<int>(Role::powder)},
    {.name = "result", .section = kMain, .parent = "zentral", .action = place_child, .value = static_cast<int>(Role::results)},
    {.name = "diagra", .section = kMain, .parent = "zentral", .action = place_child, .value = static_cast<int>(Role::output)},
    {.name = "abbrandfunktion", .section = kMain, .parent = "zentral", .action = place_child, .value = static_cast<int>(Role::burn_function)},

    {.name = "infbutton", .section = kMain, .parent = nullptr},
    {.name = "qstart", .section = kMain, .parent = "infbutton", .action = quick_start, .checked = quick_start_open},
    {.name = "ttips", .section = kMain, .parent = "infbutton", .action = tips, .checked = is_set<&Options::toltip>},
    {.name = "symbonoff", .section = kMain, .parent = "infbutton", .action = toolbar, .checked = is_set<&Options::symbol>},
    {.name = "index", .section = kMain, .parent = "infbutton", .action = by_window, .shortcut = "F1", .separator_before = true},
    {.name = "shortcuts", .section = kMain, .parent = "infbutton", .action = by_window, .shortcut = "Ctrl+?"},
    {.name = "who", .section = kMain, .parent = "infbutton", .action = about},

    {.name = "dia_menu", .section = kOut, .parent = nullptr},
    {.name = "toggleunits", .section = kOut, .parent = "dia_menu", .action = toggle_units, .toolbar = 16, .checked = imperial},
    {.name = "newpic", .section = kOut, .parent = "dia_menu", .action = redraw},
    {.name = "moregraph", .section = kOut, .parent = "dia_menu", .action = more_curves, .checked = optional_shown},
    {.name = "savecalc", .section = kOut, .parent = "dia_menu", .action = keep_curve, .enabled = results_valid},
    {.name = "delcalc", .section = kOut, .parent = "dia_menu", .action = drop_curve},
    {.name = "refdruck", .section = kOut, .parent = "dia_menu", .action = flip_reference, .enabled = has_reference, .checked = reference_shown},
    {.name = "refasis", .section = kOut, .parent = "dia_menu", .action = flip_as_measured, .enabled = has_reference, .checked = as_measured},
    {.name = "viewin", .section = kOut, .parent = "dia_menu", .action = zoom_diagram, .shortcut = "Ctrl++", .enabled = zoomable, .value = 1, .separator_before = true},
    {.name = "viewout", .section = kOut, .parent = "dia_menu", .action = zoom_diagram, .shortcut = "Ctrl+-", .enabled = section_shown, .value = -1},
    {.name = "viewall", .section = kOut, .parent = "dia_menu", .action = zoom_diagram, .shortcut = "Ctrl+0", .enabled = section_shown, .value = 0},
    {.name = "curve_l", .section = kOut, .parent = "dia_menu", .action = flip_curve, .enabled = has_curve, .checked = curve_shown, .value = 1, .separator_before = true},
    {.name = "curve_r", .section = kOut, .parent = "dia_menu", .action = flip_curve, .enabled = has_curve, .checked = curve_shown, .value = 2},
    {.name = "marks_menu", .section = kOut, .parent = nullptr},
    {.name = "shozone", .section = kOut, .parent = "marks_menu", .action = flip_mark<&Options::pcolor>, .checked = is_set<&Options::pcolor>},
    {.name = "drawmax", .section = kOut, .parent = "marks_menu", .action = flip_mark<&Options::maxshw>, .checked = is_set<&Options::maxshw>},
    {.name = "showactiv", .section = kOut, .parent = "marks_menu", .action = flip_mark<&Options::actshw>, .checked = is_set<&Options::actshw>},
    {.name = "refaxis", .section = kOut, .parent = nullptr},
    {.name = "rax_weg", .section = kOut, .parent = "refaxis", .action = x_axis, .checked = x_axis_checked, .value = 0},
    {.name = "rax_llen", .section = kOut, .parent = "refaxis", .action = x_axis, .checked = x_axis_checked, .value = 1},
    {.name = "ppsort", .section = kOut, .parent = nullptr, .enabled = powder_table_shown},
    {.name = "ppname", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 0},
    {.name = "velocity", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 1},
    {.name = "chrgwht", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 2},
    {.name = "ppress", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 3},
    {.name = "pburntsort", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 4},
    {.name = "ldratio", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 5},
    {.name = "bartim", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 6},
    {.name = "burnrat", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 9},
    {.name = "hvolsort", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 10},
    {.name = "blensort", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 11},
    {.name = "pmuzzsort", .section = kOut, .parent = "ppsort", .action = sort_by, .enabled = powder_table_shown, .checked = sorted_by, .value = 12},
    {.name = "upsort", .section = kOut, .parent = "ppsort", .action = sort_direction, .enabled = powder_table_shown, .checked = direction_checked, .value = 1, .separator_before = true},
    {.name = "downsort", .section = kOut, .parent = "ppsort", .action = sort_direction, .enabled = powder_table_shown, .checked = direction_checked, .value = 0},
    {.name = "look_menu", .section = kOut, .parent = nullptr},
    {.name = "strichst", .section = kOut, .parent = "look_menu"},
    {.name = "strichst1", .section = kOut, .parent = "strichst", .action = line_width, .checked = line_width_checked, .value = 1},
    {.name = "strichst2", .section = kOut, .parent = "strichst", .action = line_width, .checked = line_width_checked, .value = 2},
    {.name = "strichst3", .section = kOut, .parent = "strichst", .action = line_width, .checked = line_width_checked, .value = 3},
    {.name = "strichst4", .section = kOut, .parent = "strichst", .action = line_width, .checked = line_width_checked, .value = 4},
    {.name = "strichst5", .section = kOut, .parent = "strichst", .action = line_width, .checked = line_width_checked, .value = 5},
    {.name = "afonts", .section = kOut, .parent = "look_menu", .action = by_window},
    {.name = "acolor", .section = kOut, .parent = "look_menu", .action = by_window},
    {.name = "ax_l", .section = kOut, .parent = "look_menu", .action = by_window},
    {.name = "ax_r", .section = kOut, .parent = "look_menu", .action = by_window},
    {.name = "ax_ref", .section = kOut, .parent = "look_menu", .action = by_window, .enabled = has_reference},
    {.name = "out_menu", .section = kOut, .parent = nullptr},
    {.name = "filewrite", .section = kOut, .parent = "out_menu", .action = by_window, .enabled = results_valid},
    {.name = "toexcel", .section = kOut, .parent = "out_menu", .action = to_spreadsheet, .enabled = exportable},
    {.name = "copypic", .section = kOut, .parent = "out_menu", .action = by_window},
    {.name = "copytab", .section = kOut, .parent = "out_menu", .action = by_window},
};
// clang-format on

// Of commands with one of these only one is chosen at a time.
constexpr bool (*kExclusive[])(CS, C) = {
    language_checked,
    sort_checked,
    view_checked,
    step_checked,
    percent_checked,
    free_percent_checked,
    weight_checked,
    tolerance_checked,
    pressure_unit_checked,
    output_units_checked,
    look_checked,
    x_axis_checked,
    sorted_by,
    direction_checked,
    line_width_checked,
    is_set<&Options::atiles>,
    cascaded,
};

constexpr std::string_view kDialogs[] = {
    "lab_sav",      "lab_lod",     "lab_example", "addinfo",      "lab_omt",   "ptitle",       "PrSetup",
    "prifontsel",   "grf_akt",     "grf_akt_dat", "grf_weg_zeit", "lade_tab",  "pulv_tab",     "asci_print",
    "pow_load",     "pow_neu",     "pow_save_as", "case_dat",     "case_load", "case_neu",     "case_save_as",
    "case_collect", "case_select", "bull_dat",    "bull_load",    "bull_neu",  "bull_save_as", "bul_collect",
    "gun_dat",      "gun_load",    "gun_neu",     "gun_save_as",  "powd_set",  "borefriction", "backlash",
    "conver",       "sysfon",      "filewrite",   "toexcel",      "afonts",    "acolor",       "ax_l",
    "ax_r",         "moregraph",   "bpcharge",    "measured",     "band",
};

}  // namespace

std::span<const Command> commands() { return kCommands; }

const Command* find_command(std::string_view name) {
  const auto* at = std::ranges::find_if(kCommands, [&](const Command& c) { return c.name == name; });
  return at == std::end(kCommands) ? nullptr : at;
}

bool is_menu(const Command& command) {
  return command.holds_recent || std::ranges::any_of(kCommands, [&](const Command& c) {
           return c.parent && std::string_view(c.parent) == command.name &&
                  std::string_view(c.section) == command.section;
         });
}

bool is_exclusive(const Command& command) {
  return command.checked && std::ranges::find(kExclusive, command.checked) != std::end(kExclusive);
}

bool opens_dialog(const Command& command) {
  return std::ranges::find(kDialogs, command.name) != std::end(kDialogs);
}

bool command_enabled(const Session& s, const Command& command) {
  if (!command.action && !is_menu(command)) return false;  // a heading
  return !command.enabled || command.enabled(s, command);
}

bool command_checked(const Session& s, const Command& command) {
  return command.checked && command.checked(s, command);
}

bool run_command(Session& s, std::string_view name) {
  const Command* command = find_command(name);
  if (!command || !command->action || !command_enabled(s, *command)) return false;
  const Action action(s);
  const Focus in_use = s.focus;
  leave_focus(s);
  command->action(s, *command);
  // A calculation leaves the person where he types.
  if (command->action == calculate && !in_use.field.empty() && s.focus.field.empty()) {
    focus_field(s, in_use.screen, in_use.field);
    s.focus.select_from = in_use.select_from;
    s.focus.select_length = in_use.select_length;
  }
  return true;
}

bool run_shortcut(Session& s, std::string_view key) {
  for (const Command& command : kCommands)
    if (command.shortcut && key == command.shortcut) return run_command(s, command.name);
  return false;
}

}  // namespace tv
