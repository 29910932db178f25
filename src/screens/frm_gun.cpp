// frmGun: one gun of the file, and its barrel and cartridge into the load.
#include "screens/all.h"
#include "screens/editors.h"
#include "session/data_sets.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmGun";
constexpr EditorPlace kEditor{kName, "GunNam", RecordKind::guns};
using G = GunRecord;

struct State {
  EditedRecord<GunRecord> record;
};
State& state(Session& s) { return own<State>(s, kName); }
GunRecord& gun(Session& s) { return state(s).record.now; }

// --- numbers

template <double G::*Member>
double& value(Session& s, int) {
  return gun(s).*Member;
}
void click_changed(Session& s, int, bool) { setResultsValid(s, false); }

const NumberField kNumbers[] = {
    pair_of({"Llenm", &units::mm_of_inch, {10, 10160}, "##0.0##", "####0.0#"},
            {"Llenz", &units::inch, {0.4, 400}, "0.0##", "##0.0##"}, value<&G::Llen>),
    pair_of({"twlenmm", &units::mm_of_inch, {-10160, 10160}, "0.0#", "0.0#"},
            {"twLenin", &units::inch, {-400, 400}, "0.0##", "0.0##"}, value<&G::twist>),
    pair_of({"vhmm", &units::mm_of_inch, {1, 609.6}, "0.0#", "0.0#"},
            {"vhinch", &units::inch, {0.04, 24}, "0.0##", "0.0##"}, value<&G::sight>),
    pair_of({"gun_weight_kg", &units::kg, {0.01, 100000}, "0.0##", "0.0##"},
            {"gun_weight_lb", &units::lb_of_kg, {0.022, 220458}, "0.0##", "0.0##"}, value<&G::weight_kg>),
    one_side({"moapclick", &units::minute, {0, 3.76}, "#0.000#", "#0.000#"}, value<&G::gmoacli>,
             click_changed),
};

// --- form

constexpr Row kRecord[] = {
    wide_row("GunNam", {"GunNam", ControlKind::combo, nullptr, ListOf::own_records, RecordKind::guns}),
    source_row("GunNam"),
    note_row("@record_note"),
    wide_row("CalDat", {"CalDat", ControlKind::combo, nullptr, ListOf::own_records, RecordKind::cartridges}),
    source_row("CalDat"),
    number_row("Llenm", "Llenz"),
    number_row("twlenmm", "twLenin"),
    note_row("hs_gun"),
    number_row("vhmm", "vhinch"),
    number_row("gun_weight_kg", "gun_weight_lb"),
    {RowShape::pair, "moapclick", {number("moapclick"), button("moa_open")}},
};
constexpr Row kComment[] = {{RowShape::block, "Text1", {Place{"Text1", ControlKind::memo}}}};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("F6save"), button("F6delgun"), button("f6cancel"), button("F6ok")}}};
constexpr Group kForm[] = {{nullptr, 0, kRecord}, {nullptr, 0, kComment}, {nullptr, -1, kButtons}};

// --- the record on show

void show(Session& s, int row) {
  state(s).record.show(gun_of(s.set(kEditor.kind).file.table.record(row)));
  write_numbers(s, *s.screens.find(kName)->second.spec);
}

int cartridge_row(const Session& s, std::string_view name) {
  return s.set(RecordKind::cartridges).file.table.find(trim(name));
}

RecordFault fault_of(Session& s) {
  if (trim(gun(s).name).empty()) return {23, "GunNam"};
  if (trim(gun(s).CalDat).empty()) return {26, "CalDat"};
  if (!in_range(s, kName, "Llenz")) return {25, "Llenz"};
  if (!in_range(s, kName, "gun_weight_kg")) return {24, "gun_weight_kg"};
  return {};
}

// The gun keeps its own copy of a cartridge that the open file does not have, and says so.
bool save(Session& s) {
  if (!record_is_good(s, kEditor, fault_of(s))) return false;
  if (cartridge_row(s, gun(s).CalDat) < 0) warn(s, MessageText(s).msg(113));
  if (!add_record(s, kEditor.kind, record_of(gun(s)))) return false;
  show(s, editor_row(s, kEditor, clean_field(gun(s).name)));
  return true;
}
bool may_go(Session& s) {
  return may_give_way<GunRecord>(s, state(s).record, [&s] { return save(s); });
}

// --- actions

void pick_gun(Session& s, int entry) {
  const std::string name = entry_name(s, kEditor, entry);
  if (may_go(s)) show(s, editor_row(s, kEditor, name));
}
void type_name(Session& s, int) { gun(s).name = field(s, kName, "GunNam").text; }
void type_comment(Session& s, int) { gun(s).Text1 = field(s, kName, "Text1").text; }

void pick_cartridge(Session& s, int) {
  const int row = picked_row(field(s, kName, "CalDat"));
  chamber(gun(s), cartridge_of(s.set(RecordKind::cartridges).file.table.record(row)));
}

void press_save(Session& s, int) { save(s); }
void press_delete(Session& s, int) {
  if (const Deleted deleted = delete_shown(s, kEditor, gun(s).name); deleted.done) show(s, deleted.next);
}
void open_clicks(Session& s, int) { open_screen(s, "FormMOA"); }

// Barrel, twist, sight, weight and the cartridge of the gun become those of the load.
void hand_over(Session& s) {
  const GunRecord g = gun(s);
  s.state.dim.Llen = g.Llen;
  write_number(s, s.state.dim.Llen);
  s.options.twistlen = g.twist;
  s.options.gunhos = g.sight;
  s.options.gunmas = g.weight_kg;
  s.options.gclidst = g.gclidst;
  s.options.gmoacli = g.gmoacli;
  store_options(s, {"twistlen", "gunhos", "gunmas", "gclidst", "gmoacli"});
  CartridgeRecord c;
  c.name = g.CalDat;
  c.dim = g.cartridge;
  c.method = g.method;
  take_cartridge_values(s, record_of(c));
}

void press_ok(Session& s, int) {
  if (!record_is_good(s, kEditor, fault_of(s)) || !may_go(s) || !may_replace_load(s)) return;
  hand_over(s);
  hide_screen(s, kName);
}
void press_cancel(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {
    {"GunNam", pick_gun, type_name}, {"CalDat", pick_cartridge}, {"Text1", nullptr, type_comment},
    {"F6save", press_save},          {"F6delgun", press_delete}, {"F6ok", press_ok},
    {"f6cancel", press_cancel},      {"moa_open", open_clicks},  {"moapclick", open_clicks},
};

void open(Session& s) { show(s, editor_row(s, kEditor, gun(s).name)); }
void close(Session& s) {
  if (may_go(s)) hide_screen(s, kName);
}
bool key(Session& s, std::string_view name) { return step_by_key(s, kEditor, name); }

void refresh(Session& s) {
  const GunRecord& g = gun(s);
  show_record_name(s, kEditor, g.name, state(s).record.changed());
  show_text(s, kName, "CalDat", g.CalDat);
  select_entry(field(s, kName, "CalDat"), cartridge_row(s, g.CalDat));
  show_text(s, kName, "Text1", g.Text1);
}

}  // namespace

GunRecord& edited_gun(Session& s) { return gun(s); }
void edited_gun_changed(Session& s) { write_number(s, gun(s).gmoacli); }

extern const ScreenSpec kFrmGun{.name = kName,
                                .section = "frmGun",
                                .form = kForm,
                                .default_button = "F6ok",
                                .numbers = kNumbers,
                                .actions = kActions,
                                .open = open,
                                .close = close,
                                .refresh = refresh,
                                .key = key};

}  // namespace tv
