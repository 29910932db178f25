// Form11: one cartridge of the file, with the calculation of its bore area.
#include <array>

#include "geometry/bore_area.h"
#include "output/bore_drawing.h"
#include "output/case_drawing.h"
#include "screens/all.h"
#include "screens/editors.h"
#include "session/data_sets.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form11";
constexpr EditorPlace kEditor{kName, "pnam", RecordKind::cartridges};
constexpr double kPsi1500MPa = 217557;  // rounded to the nearest whole number
constexpr const char* kPictures = "data/pictures/";
using D = CartridgeDimensions;

// The calculation of the bore area: its entries in mm, widths and radii apart, so that neither profile loses
// its own.
struct Bore {
  bool open = false, in_mm = true, polygon = false;
  double Dz = 0, Df = 0, n = 0;
  std::array<double, 2> first{}, second{};  // groove width and r1, land width and r2: by the profile
  std::array<bool, 2> second_leads{};       // it was entered last, and the first follows from it
  double mm2 = 0;                           // of the last entries that gave one
  BoreArea area;                            // of the present ones
};
struct State {
  EditedRecord<CartridgeRecord> record;
  Bore bore;
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }
CartridgeRecord& cartridge(Session& s) { return state(s).record.now; }
Bore& bore(Session& s) { return state(s).bore; }
const Bore& bore(const Session& s) { return state(s).bore; }

// --- bore area

Rifling rifling(const Bore& b) {
  const auto single = [](double v) { return static_cast<float>(v); };
  return {.polygon = b.polygon,
          .Dz = single(b.Dz),
          .Df = single(b.Df),
          .n = single(b.n),
          .groove_width = single(b.first[0]),
          .land_width = single(b.second[0]),
          .r1 = single(b.first[1]),
          .r2 = single(b.second[1])};
}
std::size_t profile(const Bore& b) { return b.polygon ? 1 : 0; }
double& first(Bore& b) { return b.first[profile(b)]; }
double& second(Bore& b) { return b.second[profile(b)]; }

// A width or radius that was not entered follows from the other.
void tie(Bore& b) {
  if (!(b.Dz > 0 && b.Df > 0 && b.n > 0)) return;
  const bool second_leads = b.second_leads[profile(b)];
  const double leading = second_leads ? second(b) : first(b);
  if (!(leading > 0)) return;
  const Rifling r = rifling(b);
  double& follows = second_leads ? first(b) : second(b);
  if (b.polygon)
    follows = static_cast<double>(second_leads ? r1_of_r2(r) : r2_of_r1(r));
  else
    follows = static_cast<double>(other_width(r, static_cast<float>(leading)));
}

// An area that cannot be told leaves the one before, grey.
void calculate(Bore& b) {
  b.area = bore_area(rifling(b));
  if (b.area.finding != BoreFinding::no_area) b.mm2 = b.area.mm2;
}

Message finding_text(const Session& s, const BoreArea& a) {
  MessageText text(s);
  if (a.finding == BoreFinding::land_not_below) return text.msg(55).add(" ").msg(54);
  if (a.finding != BoreFinding::none) return text.msg(53);
  if (a.outside) return text.msg(422);
  if (a.radii_reversed) return text.msg(56).line().msg(57);
  return text;
}

// An entry is warned of when it is left. A value that is still to come is none to warn of.
// Radii the wrong way round are told with a radius only.
void warn_of_bore(Session& s, double entered, bool radius = false) {
  const Bore& b = bore(s);
  const bool complete = b.Dz != 0 && b.Df != 0 && b.n != 0 && first(bore(s)) != 0 && second(bore(s)) != 0;
  const bool to_come = b.area.finding == BoreFinding::value_missing && entered > 0 && !complete;
  if (to_come || (b.area.finding == BoreFinding::none && !(radius && b.area.radii_reversed))) return;
  BoreArea told = b.area;
  told.outside = false;
  warn(s, finding_text(s, told));
}

void show_widths(Session& s) {
  write_number(s, first(bore(s)));
  write_number(s, second(bore(s)));
}

// --- numbers

template <double D::*Member>
double& value(Session& s, int) {
  return cartridge(s).dim.*Member;
}
template <double Bore::*Member>
double& bore_value(Session& s, int) {
  return bore(s).*Member;
}
double& first_value(Session& s, int) { return first(bore(s)); }
double& second_value(Session& s, int) { return second(bore(s)); }

void bore_changed(Session& s, int, bool) {
  Bore& b = bore(s);
  tie(b);
  calculate(b);
  show_widths(s);
}
template <double Bore::*Member>
void bore_left(Session& s, int) {
  warn_of_bore(s, bore(s).*Member);
}
void grooves_left(Session& s, int) {
  Bore& b = bore(s);
  b.n = int_of(b.n);
  tie(b);
  calculate(b);
  write_number(s, b.n);
  show_widths(s);
  warn_of_bore(s, b.n >= 1 ? b.n : 0);
}

template <bool Second>
void width_changed(Session& s, int, bool) {
  Bore& b = bore(s);
  b.second_leads[profile(b)] = Second;
  tie(b);
  calculate(b);
  write_number(s, Second ? first(b) : second(b));
}
// Without diameters and number no width means anything.
template <bool Second>
void width_left(Session& s, int) {
  Bore& b = bore(s);
  const double entered = Second ? second(b) : first(b);
  if (!(b.Dz > 0 && b.Df > 0 && b.n > 0)) {
    first(b) = second(b) = 0;
    show_widths(s);
  }
  warn_of_bore(s, entered, true);
}

double shown(double mm, const Session& s) { return bore(s).in_mm ? mm : mm / kMmPerInch; }
double single(double v, const Session&) { return static_cast<double>(static_cast<float>(v)); }
double as_it_is(double v, const Session&) { return v; }
double stored(double length, const Session& s) {
  return single(bore(s).in_mm ? length : length * kMmPerInch, s);
}
const char* pattern(const Session& s) { return bore(s).in_mm ? "0.000" : "0.0000"; }
Limits in_unit(Limits l, const Session& s) {
  return bore(s).in_mm ? l : Limits{l.least / kMmPerInch, l.most / kMmPerInch};
}
constexpr const char* kLengthUnits = "%unit_mm|unit_in";
const Unit kLength{kLengthUnits, shown, stored, pattern, in_unit};
const Unit kCount{nullptr, as_it_is, single};

constexpr NumberField bore_field(const char* name, Limits limits, double& (*member)(Session&, int),
                                 void (*changed)(Session&, int, bool), void (*left)(Session&, int),
                                 const Unit* unit = &kLength) {
  return {.sides = {{{name, unit, limits, "0", "0"}}},
          .value = member,
          .changed = changed,
          .left = left,
          .zero_empty = true};
}

const NumberField kNumbers[] = {
    pair_of({"Volfml", &units::cm3_of_grain, {0.06, 20000}, "##0.000", "#0.000"},
            {"Volfgn", &units::grain_h2o, {1, 308646}, "###0.000", "##0.000"}, value<&D::Volf>),
    pair_of({"Hlenm", &units::mm_of_inch, {1, 1016}, "0.00", "###0.00"},
            {"Hlenz", &units::inch, {0.04, 40}, "0.000", "#0.000"}, value<&D::Hlen>),
    pair_of({"Zkalm", &units::mm_of_inch, {1, 609.6}, "##0.00", "##0.00"},
            {"Zkalz", &units::inch, {0.04, 24}, "0.000", "0.000"}, value<&D::Zkal>),
    one_side({"sebf", &units::plain, {0, 3}, nullptr, "#0.0#"}, value<&D::sebf>),
    pair_of({"efqmm", &units::mm2, {0, 32429}, "##.00#", "#.00#"},
            {"efqin", &units::sqin_of_mm2, {0, 50.26}, "0.000###", "#.000###"}, value<&D::qfq>),
    {.sides = {{{"zul_P0", &units::chosen_of_MPa, {0, 1500}, "0.0", "0.0"},
                {"zul_P1", &units::psi_of_MPa, {0, kPsi1500MPa}, "0", "0"}}},
     .value = value<&D::zul_P>,
     .zero_unknown = true},
    pair_of({"Plenm", &units::mm_of_inch, {1, 1524}, "0.00", "###0.00"},
            {"Plenz", &units::inch, {0.04, 60}, "0.000", "#0.000"}, value<&D::Plen>),
    bore_field("Zug_mm", {1, 609.6}, bore_value<&Bore::Dz>, bore_changed, bore_left<&Bore::Dz>),
    bore_field("feld_mm", {1, 609.6}, bore_value<&Bore::Df>, bore_changed, bore_left<&Bore::Df>),
    bore_field("zug_anz", {2, 150}, bore_value<&Bore::n>, bore_changed, grooves_left, &kCount),
    bore_field("zbr", {0, 1947}, first_value, width_changed<false>, width_left<false>),
    bore_field("fbr", {0, 1947}, second_value, width_changed<true>, width_left<true>),
};

// --- form

constexpr Place length_place(const char* name) { return number(name, kLengthUnits); }
constexpr Row kRecord[] = {
    wide_row("pnam", {"pnam", ControlKind::combo, nullptr, ListOf::own_records, RecordKind::cartridges}),
    source_row("pnam"),
    note_row("@record_note"),
    number_row("Volfml", "Volfgn"),
    number_row("Hlenm", "Hlenz"),
    number_row("Plenm", "Plenz"),
    number_row("Zkalm", "Zkalz"),
    number_row("efqmm", "efqin"),
    number_row("sebf"),
    number_row("zul_P0", "zul_P1"),
    wide_row("method", {"method", ControlKind::text}),
    wide_row("pic_file", {"pic_file", ControlKind::text}),
    {RowShape::buttons, nullptr, {button("pic_choose"), button("querschnitt"), button("volcalc")}},
};
constexpr Row kBoreEntries[] = {
    {RowShape::bare, nullptr, {option("profil10"), option("profil11"), check("mminch_switch")}},
    {RowShape::pair, "Zug_mm", {length_place("Zug_mm")}},
    {RowShape::pair, "feld_mm", {length_place("feld_mm")}},
    number_row("zug_anz"),
    {RowShape::pair, "@first_label", {length_place("zbr")}},
    {RowShape::pair, "@second_label", {length_place("fbr")}},
    display_row("mife", nullptr),
    display_row("wirkq", "%unit_mm2|unit_sqin"),
    note_row("@bore_note"),
    {RowShape::block, nullptr, {surface("quer")}},
    {RowShape::buttons, nullptr, {button("abbruch"), button("okarea")}},
};
bool imperial(const Session& s) { return !bore(s).in_mm; }
constexpr Row kCaseDrawing[] = {{RowShape::block, nullptr, {surface("drawing")}}};
bool bore_open(const Session& s) { return bore(s).open; }
bool bore_closed(const Session& s) { return !bore(s).open; }
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("adnew"), button("del_it"), button("cancel"), button("ok")}}};
constexpr Group kForm[] = {{"grp_record", 0, kRecord},
                           {nullptr, 1, kCaseDrawing, bore_closed},
                           {"quercalc", 1, kBoreEntries, bore_open},
                           {nullptr, -1, kButtons}};

// --- the record on show

void write_all(Session& s) { write_numbers(s, *s.screens.find(kName)->second.spec); }

void show(Session& s, int row) {
  state(s).record.show(cartridge_of(s.set(kEditor.kind).file.table.record(row)));
  bore(s).open = false;
  write_all(s);
}

RecordFault fault_of(Session& s) {
  if (trim(cartridge(s).name).empty()) return {23, "pnam"};
  if (!in_range(s, kName, "Volfgn")) return {28, "Volfgn"};
  if (!in_range(s, kName, "Hlenz")) return {25, "Hlenz"};
  if (!in_range(s, kName, "Plenz")) return {25, "Plenz"};
  if (!in_range(s, kName, "Zkalz")) return {26, "Zkalz"};
  if (!(cartridge(s).dim.qfq > 0) || !in_range(s, kName, "efqmm")) return {28, "efqmm"};
  return {};
}

bool save(Session& s) {
  if (!record_is_good(s, kEditor, fault_of(s)) || !add_record(s, kEditor.kind, record_of(cartridge(s))))
    return false;
  show(s, editor_row(s, kEditor, clean_field(cartridge(s).name)));
  return true;
}
bool may_go(Session& s) {
  return may_give_way<CartridgeRecord>(s, state(s).record, [&s] { return save(s); });
}

// --- actions of the record

void pick_record(Session& s, int entry) {
  const std::string name = entry_name(s, kEditor, entry);
  if (may_go(s)) show(s, editor_row(s, kEditor, name));
}
void type_name(Session& s, int) { cartridge(s).name = field(s, kName, "pnam").text; }
void type_method(Session& s, int) { cartridge(s).method = field(s, kName, "method").text; }
void type_picture(Session& s, int) { cartridge(s).picture = field(s, kName, "pic_file").text; }
void press_save(Session& s, int) { save(s); }
void press_delete(Session& s, int) {
  if (const Deleted deleted = delete_shown(s, kEditor, cartridge(s).name); deleted.done)
    show(s, deleted.next);
}

// A picture from elsewhere is copied to where the records look for theirs.
void choose_picture(Session& s, int) {
  const std::string folder = s.roots.root + kPictures;
  make_folders(folder);
  const auto answer =
      ask_file(s,
               {FileMode::open, DialogKind::picture, s.language.fastmsg("flfdial", 11),
                dialog_folder(s, "", kPictures, FileMode::open), "", s.language.fastmsg("flffilt", 11), ""},
               {"png", "jpg", "jpeg", "bmp", "svg"});
  if (!answer) return;
  const std::string name = file_name_only(answer->file);
  if (!file_exists(data_path(s, kPictures + name)))
    if (const int failure = write_file(folder + name, read_file(answer->file).bytes); failure != 0)
      return warn(s,
                  MessageText(s).msg(420).line().add(folder + name).line().add(s.language.failure(failure)));
  cartridge(s).picture = name;
}

void open_volume(Session& s, int) { open_screen(s, "Form12"); }

void press_ok(Session& s, int) {
  if (!may_go(s)) return;
  if (ask_yes_no(s, MessageText(s).msg(423))) {
    if (!record_is_good(s, kEditor, fault_of(s))) return;
    if (cartridge(s).name != s.load.pattyp && !may_replace_load(s)) return;
    take_cartridge_values(s, record_of(cartridge(s)));
  }
  hide_screen(s, kName);
}
void press_cancel(Session& s, int) { hide_screen(s, kName); }

// --- actions of the bore area

void open_bore(Session& s, int) {
  Bore& b = bore(s);
  const Rifling r = rifling_of(cartridge(s));
  b = {};
  b.open = true;
  b.in_mm = s.unit_mode == UnitMode::metric;
  b.polygon = r.polygon;
  b.Dz = static_cast<double>(r.Dz);
  b.Df = static_cast<double>(r.Df);
  b.n = static_cast<double>(r.n);
  b.first = {static_cast<double>(r.groove_width), static_cast<double>(r.r1)};
  b.second = {static_cast<double>(r.land_width), static_cast<double>(r.r2)};
  calculate(b);
  write_all(s);
}

void choose_profile(Session& s, int i) {
  Bore& b = bore(s);
  b.polygon = i == 1;
  tie(b);
  calculate(b);
  show_widths(s);
  if (b.area.finding == BoreFinding::none) warn_of_bore(s, 1, true);
}

void switch_unit(Session& s, int) {
  bore(s).in_mm = field(s, kName, "mminch_switch").checked;
  write_all(s);
}

void accept_bore(Session& s, int) {
  Bore& b = bore(s);
  set_rifling(cartridge(s), rifling(b));
  double& qfq = cartridge(s).dim.qfq;
  qfq = b.area.mm2;
  b.open = false;
  write_number(s, qfq, {"#.00", "#.000###"});
}
void close_bore(Session& s, int) { bore(s).open = false; }

constexpr ControlAction kActions[] = {
    {"pnam", pick_record, type_name},
    {"method", nullptr, type_method},
    {"pic_file", nullptr, type_picture},
    {"pic_choose", choose_picture},
    {"querschnitt", open_bore},
    {"volcalc", open_volume},
    {"adnew", press_save},
    {"del_it", press_delete},
    {"ok", press_ok},
    {"cancel", press_cancel},
    {"profil1", choose_profile},
    {"mminch_switch", switch_unit},
    {"okarea", accept_bore},
    {"abbruch", close_bore},
};

void open(Session& s) {
  const int row = editor_row(s, kEditor, s.load.pattyp);
  show(s, row >= 0 ? row : editor_row(s, kEditor, cartridge(s).name));
}
void close(Session& s) {
  if (may_go(s)) hide_screen(s, kName);
}
bool key(Session& s, std::string_view name) { return step_by_key(s, kEditor, name); }

// --- drawing

DrawList draw_body(const Session& s, const Extent& e) {
  const CartridgeRecord& c = state(s).record.now;
  const bool metric = s.unit_mode == UnitMode::metric;
  const CaseWords words{s.language.text("form12", "schematic"),
                        {" " + s.language.text("units", metric ? "unit_mm" : "unit_in"), metric}};
  return draw_case(c.body, c.dim.Hlen, words, e.dark ? dark_drawing() : light_drawing(), {}, e.width,
                   e.height, e.text_width)
      .list;
}
void click_body(Session& s, const Pointer& pointer, const Extent&) {
  if (pointer.what == Pointer::What::release) open_volume(s, 0);
}

MeasuredDrawing drawing(const Session& s, const Extent& e) {
  const Bore& b = bore(s);
  const BoreWords words{s.language.text("form11", "no_profile"),
                        {" " + s.language.text("units", b.in_mm ? "unit_mm" : "unit_in"), b.in_mm}};
  const std::string_view marked = s.focus.screen == kName ? s.focus.field : std::string_view();
  return draw_bore(rifling(b), words, e.dark ? dark_drawing() : light_drawing(), marked, e.width, e.height,
                   e.text_width);
}
DrawList draw(const Session& s, const Extent& e) { return drawing(s, e).list; }
void click(Session& s, const Pointer& pointer, const Extent& e) {
  if (pointer.what != Pointer::What::release) return;
  const MeasuredDrawing shown_drawing = drawing(s, e);
  if (const auto name = measure_at(shown_drawing, pointer.at); !name.empty()) s.user->focus(kName, name);
}
constexpr Surface kSurfaces[] = {{"quer", draw, click, 360, 460},
                                 {"drawing", draw_body, click_body, 480, 320}};

// --- what is on show

void show_bore(Session& s) {
  const Bore& b = bore(s);
  const auto text = [&](const char* key) { return s.language.text("form11", key); };
  field(s, kName, "profil10").checked = !b.polygon;
  field(s, kName, "profil11").checked = b.polygon;
  field(s, kName, "mminch_switch").checked = b.in_mm;
  set_text(s, kName, "first_label", text(b.polygon ? "zbr_poly" : "zbr"));
  set_text(s, kName, "second_label", text(b.polygon ? "fbr_poly" : "fbr"));
  const double land = mean_land_width(rifling(b));
  field(s, kName, "mife").visible = !b.polygon;
  set_text(s, kName, "mife", land > 0 ? format_number(shown(land, s), pattern(s)) : "");
  Field& area = field(s, kName, "wirkq");
  const double divisor = b.in_mm ? 1 : kMmPerInch * kMmPerInch;
  area.text = b.mm2 > 0 ? format_number(b.mm2 / divisor, b.in_mm ? "0.000" : "0.00000") : "";
  area.stale = b.area.finding != BoreFinding::none;
  area.ink = b.area.outside ? Ink::red : Ink::black;
  const bool silent = b.area.finding == BoreFinding::value_missing;
  const Message told = finding_text(s, b.area);
  area.reason = silent ? std::string() : told.text;
  set_text(s, kName, "bore_note", area.reason);
  field(s, kName, "bore_note").ink = Ink::red;
  field(s, kName, "okarea").enabled = b.area.finding == BoreFinding::none && !b.area.outside;
}

void refresh(Session& s) {
  const CartridgeRecord& c = cartridge(s);
  show_record_name(s, kEditor, c.name, state(s).record.changed());
  show_text(s, kName, "method", c.method);
  show_text(s, kName, "pic_file", c.picture);
  Field& picture = field(s, kName, "pic_file");
  const bool missing =
      !trim(c.picture).empty() && !file_exists(data_path(s, kPictures + std::string(trim(c.picture))));
  picture.ink = missing ? Ink::red : Ink::black;
  picture.reason = missing ? s.language.failure(kFileNotFound) : std::string();
  show_bore(s);
}

}  // namespace

CartridgeRecord& edited_cartridge(Session& s) { return cartridge(s); }
void edited_cartridge_changed(Session& s) { write_all(s); }

extern const ScreenSpec kForm11{.name = kName,
                                .section = "form11",
                                .form = kForm,
                                .default_button = "ok",
                                .numbers = kNumbers,
                                .actions = kActions,
                                .surfaces = kSurfaces,
                                .open = open,
                                .close = close,
                                .refresh = refresh,
                                .key = key,
                                .imperial = imperial};

}  // namespace tv
