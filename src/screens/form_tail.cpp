// FormTail: one bullet of the file, or the tail of the bullet in the load.
#include <utility>

#include "geometry/dimensions.h"
#include "output/bullet_drawing.h"
#include "screens/all.h"
#include "screens/editors.h"
#include "session/data_sets.h"
#include "session/dimensions.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "FormTail";
constexpr EditorPlace kEditor{kName, "GName", RecordKind::bullets};
constexpr double kUsualPressure = 25e6, kLeastPressure = 1e6, kPaPerMPa = 1e6;
using D = CartridgeDimensions;

// The start pressure stands in Pa, uncoated; without its own one the bullet shows what is usual.
struct State {
  EditedRecord<BulletRecord> record;
  double start_Pa = kUsualPressure;
  bool own_start = false;
  bool of_load = false;   // opened for the tail of the load
  D load_before;          // which cancel puts back
  Validity valid_before;  //
  bool for_load = false;  // is to be, when it opens
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }
BulletRecord& bullet(Session& s) { return state(s).record.now; }

// --- numbers

template <double D::*Member>
double& value(Session& s, int) {
  return bullet(s).dim.*Member;
}
double& start_pressure(Session& s, int) { return state(s).start_Pa; }
double& coefficient(Session& s, int) { return bullet(s).bc.icao[1]; }

// What is typed is the bullet's own.
void start_changed(Session& s, int, bool) {
  state(s).own_start = true;
  bullet(s).start_MPa = state(s).start_Pa / kPaPerMPa;
}
// Less than a megapascal is none.
void start_left(Session& s, int) {
  State& st = state(s);
  if (st.start_Pa >= kLeastPressure) return;
  st.start_Pa = bullet(s).start_MPa = 0;
  write_number(s, st.start_Pa);
}

void coefficient_changed(Session& s, int, bool) {
  CoefficientRows& bc = bullet(s).bc;
  bc.metro[1] = units::metro_of_icao.shown(bc.icao[1], s);
}

Limits within_bullet(const Session& s, const NumberSide& side, int) {
  const double diameter = state(s).record.now.dim.buldin * kMmPerInch;
  return {0, diameter > 0 ? side.unit->shown(diameter, s) : side.limits.most};
}

constexpr NumberField cone_field(const char* mm, const char* inch, double& (*member)(Session&, int),
                                 Limits most_mm, Limits most_in,
                                 Limits (*limits)(const Session&, const NumberSide&, int)) {
  return {.sides = {{{mm, &units::mm, most_mm, "0.000", "0.000"},
                     {inch, &units::inch_of_mm, most_in, "0.000", "0.000"}}},
          .value = member,
          .limits = limits};
}

const NumberField kNumbers[] = {
    pair_of({"gdiam", &units::mm_of_inch, {1, 609.6}, "0.00", "##0.00"},
            {"gdiaz", &units::inch, {0.04, 24}, "0.000", "0.000"}, value<&D::buldin>),
    pair_of({"ggram", &units::gram_of_grain, {0.06, 100000}, "0.00#", "####0.00#"},
            {"ggrain", &units::grain, {1, 1543230}, "0.0#", "0.0#"}, value<&D::Bwg>),
    pair_of({"gelenm", &units::mm_of_inch, {1, 1016}, "0.00", "##0.00"},
            {"gelenz", &units::inch, {0.06, 40}, "0.000", "#0.000"}, value<&D::Glen>),
    {.sides = {{{"start_p", &units::mode_of_Pa, {0, 1000}}}},
     .value = start_pressure,
     .changed = start_changed,
     .left = start_left},
    {.sides = {{{"bicao", &units::icao, {0.001, kMostCoefficient}, "0.000", "0.000"},
                {"bmetro", &units::metro_of_icao, {0.001, kMostCoefficient}, "0.000", "0.000"}}},
     .value = coefficient,
     .changed = coefficient_changed,
     .zero_empty = true},
    cone_field("cone_lenmm", "cone_lenin", value<&D::tail_len>, {0, 450}, {0, 17}, nullptr),
    cone_field("cone_dia_Dm", "cone_dia_Din", value<&D::tail_dia_large>, {0, 609.6}, {0, 24}, within_bullet),
    cone_field("cone_diam", "cone_diin", value<&D::tail_dia_small>, {0, 609.6}, {0, 24}, within_bullet),
};
constexpr double D::*kCone[] = {&D::tail_len, &D::tail_dia_large, &D::tail_dia_small};

// --- form

constexpr Row kRecord[] = {
    wide_row("GName", {"GName", ControlKind::combo, nullptr, ListOf::own_records, RecordKind::bullets}),
    source_row("GName"),
    note_row("@record_note"),
    number_row("gdiam", "gdiaz"),
    number_row("ggram", "ggrain"),
    number_row("gelenm", "gelenz"),
    number_row("start_p"),
    {RowShape::bare, nullptr, {check("sspress")}},
};
constexpr Row kCoefficient[] = {
    number_row("bicao"),
    number_row("bmetro"),
    {RowShape::pair, nullptr, {display("gfunc"), button("dgfun")}},
    {RowShape::buttons, nullptr, {button("bcdef")}},
};
constexpr Row kTail[] = {
    {RowShape::bare, nullptr, {option("Optkon0"), option("Optkon1"), option("Optkon2")}},
    number_row("cone_lenmm", "cone_lenin"),
    number_row("cone_dia_Dm", "cone_dia_Din"),
    number_row("cone_diam", "cone_diin"),
    display_row("labangle", nullptr),
};
constexpr Row kDrawing[] = {{RowShape::block, nullptr, {surface("drawing")}}};
constexpr Row kAngle[] = {{RowShape::block, nullptr, {surface("btwink")}}};
constexpr Row kButtons[] = {{RowShape::buttons,
                             nullptr,
                             {button("additm"), button("delitm"), button("konusexit"), button("konusok")}}};
constexpr Group kForm[] = {{"grp_record", 0, kRecord}, {"grp_bc", 0, kCoefficient}, {nullptr, 1, kDrawing},
                           {"grp_tail", 1, kTail},     {nullptr, 1, kAngle},        {nullptr, -1, kButtons}};

// --- the record on show

void show(Session& s, const BulletRecord& b) {
  State& st = state(s);
  st.record.show(b);
  st.own_start = b.start_MPa > 0;
  st.start_Pa = st.own_start ? b.start_MPa * kPaPerMPa : kUsualPressure;
  write_numbers(s, *s.screens.find(kName)->second.spec);
}
void show_row(Session& s, int row) { show(s, bullet_of(s.set(kEditor.kind).file.table.record(row))); }

RecordFault fault_of(Session& s) {
  const BulletRecord& b = bullet(s);
  if (trim(b.name).empty()) return {23, "GName"};
  if (!in_range(s, kName, "ggrain")) return {24, "ggrain"};
  if (!in_range(s, kName, "gelenz")) return {25, "gelenz"};
  if (!in_range(s, kName, "gdiaz")) return {26, "gdiaz"};
  if (b.bc.icao[1] != 0 && !in_range(s, kName, "bicao")) return {26, "bicao"};
  return {};
}

bool tail_is_good(Session& s) {
  const D& d = bullet(s).dim;
  if (d.tail_type == kFlatBase || tail_is_possible(d)) return true;
  warn(s, MessageText(s).msg(53));
  s.user->focus(kName, "cone_lenmm");
  return false;
}

bool save(Session& s) {
  if (!record_is_good(s, kEditor, fault_of(s)) || !tail_is_good(s)) return false;
  BulletRecord& b = bullet(s);
  if (!state(s).own_start) b.start_MPa = 0;
  if (!add_record(s, kEditor.kind, record_of(b))) return false;
  show_row(s, editor_row(s, kEditor, clean_field(b.name)));
  return true;
}
bool may_go(Session& s) {
  return may_give_way<BulletRecord>(s, state(s).record, [&s] { return save(s); });
}

// --- actions

void pick_record(Session& s, int entry) {
  const std::string name = entry_name(s, kEditor, entry);
  if (may_go(s)) show_row(s, editor_row(s, kEditor, name));
}
void type_name(Session& s, int) { bullet(s).name = field(s, kName, "GName").text; }
void press_save(Session& s, int) { save(s); }
void press_delete(Session& s, int) {
  if (const Deleted deleted = delete_shown(s, kEditor, bullet(s).name); deleted.done)
    show_row(s, deleted.next);
}

// The pressure of the record, else what is usual; nothing of it is stored while the box is off.
void toggle_start(Session& s, int) {
  State& st = state(s);
  st.own_start = field(s, kName, "sspress").checked;
  if (!st.own_start) st.start_Pa = kUsualPressure;
  bullet(s).start_MPa = st.own_start ? st.start_Pa / kPaPerMPa : 0;
  write_number(s, st.start_Pa);
}

void change_drag_function(Session& s, int) {
  std::string& gfunc = bullet(s).gfunc;
  gfunc = gfunc == "G7" ? "G1" : "G7";
}

constexpr int kTailTypes[] = {kInnerCone, kOuterCone, kFlatBase};  // of the options
void choose_tail(Session& s, int i) {
  D& d = bullet(s).dim;
  d.tail_type = kTailTypes[i];
  if (d.tail_type != kFlatBase) return;
  for (const auto member : kCone) {
    d.*member = 0;
    write_texts(s, d.*member, "0.000", "0.000");
  }
}

void several_coefficients(Session& s, int) { open_screen(s, "frmBC"); }

void set_tail(Session& s, const D& from, bool counts) {
  D& to = s.state.dim;
  to.tail_type = from.tail_type;
  for (const auto member : kCone) to.*member = from.*member;
  to.TAIL = counts;
  recompute_dimensions(s, kSeatingDepth);
  setResultsValid(s, false);
}

// The box of the load has been set meanwhile, if its tail can be.
void put_back_tail(Session& s) {
  const State& st = state(s);
  set_tail(s, st.load_before, false);
  if (s.state.dim == st.load_before) s.valid = st.valid_before;
}

void press_ok(Session& s, int) {
  if (!tail_is_good(s)) return;
  if (state(s).of_load)
    set_tail(s, bullet(s).dim, bullet(s).dim.tail_type != kFlatBase);
  else if (!may_go(s))
    return;
  hide_screen(s, kName);
}
void give_up(Session& s) {
  if (state(s).of_load) put_back_tail(s);
  hide_screen(s, kName);
}
void press_cancel(Session& s, int) { give_up(s); }

constexpr ControlAction kActions[] = {
    {"GName", pick_record, type_name}, {"additm", press_save},          {"delitm", press_delete},
    {"sspress", toggle_start},         {"dgfun", change_drag_function}, {"bcdef", several_coefficients},
    {"Optkon", choose_tail},           {"konusok", press_ok},           {"konusexit", press_cancel},
};

// --- opening and closing

BulletRecord of_load(const Session& s) {
  BulletRecord b;
  b.name = s.load.bultyp;
  b.dim = s.state.dim;
  b.gfunc = s.load.gfunc;
  std::size_t i = 0;
  for (const Coefficient& c : s.load.coefficients) {
    if (++i > kCoefficients) break;
    b.bc.icao[i] = c.bc < kUnknownCoefficient ? c.bc : 0;
    b.bc.metro[i] = metro_of_icao(b.bc.icao[i]);
    b.bc.limit_ms[i] = i < kCoefficients ? c.velocity : 0;
  }
  const double pressure = s.state.start_pressure / (s.load.fproof ? s.state.moly_factor : 1);
  b.start_MPa = pressure >= kLeastPressure ? pressure / kPaPerMPa : 0;
  return b;
}

void open(Session& s) {
  State& st = state(s);
  st.of_load = std::exchange(st.for_load, false);
  if (st.of_load) return show(s, of_load(s));
  const int row = editor_row(s, kEditor, s.load.bultyp);
  show_row(s, row >= 0 ? row : editor_row(s, kEditor, st.record.now.name));
}

void close(Session& s) {
  if (state(s).of_load || may_go(s)) give_up(s);
}

bool key(Session& s, std::string_view name) { return step_by_key(s, kEditor, name); }

// --- drawing

BulletWords words(const Session& s) {
  const bool metric = s.unit_mode == UnitMode::metric;
  return {s.language.text("frmtail", "no_drawing"),
          s.language.msg(53),
          {" " + s.language.text("units", metric ? "unit_mm" : "unit_in"), metric}};
}
std::string_view marked(const Session& s) {
  return s.focus.screen == kName ? std::string_view(s.focus.field) : std::string_view();
}
MeasuredDrawing drawing(const Session& s, const Extent& e) {
  return draw_bullet(state(s).record.now.dim, words(s), e.dark ? dark_drawing() : light_drawing(), marked(s),
                     e.width, e.height, e.text_width);
}
DrawList draw(const Session& s, const Extent& e) { return drawing(s, e).list; }
void click(Session& s, const Pointer& pointer, const Extent& e) {
  if (pointer.what != Pointer::What::release) return;
  const MeasuredDrawing shown = drawing(s, e);
  if (const auto name = measure_at(shown, pointer.at); !name.empty()) s.user->focus(kName, name);
}
DrawList draw_angle(const Session& s, const Extent& e) {
  return draw_tail(state(s).record.now.dim, words(s), e.dark ? dark_drawing() : light_drawing(), e.width,
                   e.height, e.text_width);
}
constexpr Surface kSurfaces[] = {{"drawing", draw, click, 480, 320},
                                 {"btwink", draw_angle, nullptr, 260, 190}};

void refresh(Session& s) {
  const State& st = state(s);
  const BulletRecord& b = st.record.now;
  show_record_name(s, kEditor, b.name, !st.of_load && st.record.changed());
  field(s, kName, "sspress").checked = st.own_start;
  field(s, kName, "start_p").stale = !st.own_start;
  set_text(s, kName, "gfunc", b.gfunc);
  for (int i = 0; i < 3; ++i)
    field(s, kName, "Optkon" + std::to_string(i)).checked = b.dim.tail_type == kTailTypes[i];
  for (const char* name :
       {"cone_lenmm", "cone_lenin", "cone_dia_Dm", "cone_dia_Din", "cone_diam", "cone_diin"})
    field(s, kName, name).enabled = b.dim.tail_type != kFlatBase;
  const double angle = tail_angle(b.dim);
  set_text(s, kName, "labangle", (angle == 0 ? " 0" : format_pattern(angle, "0.0")) + " \u00B0");
}

}  // namespace

BulletRecord& edited_bullet(Session& s) { return bullet(s); }
void edited_bullet_changed(Session& s) { write_number(s, bullet(s).bc.icao[1]); }

void open_tail_of_load(Session& s) {
  State& st = state(s);
  st.for_load = true;
  st.load_before = s.state.dim;
  st.valid_before = s.valid;
  if (s.state.dim.tail_type != kFlatBase && tail_is_possible(s.state.dim)) set_tail(s, s.state.dim, true);
  open_screen(s, kName);
}

extern const ScreenSpec kFormTail{.name = kName,
                                  .section = "frmtail",
                                  .form = kForm,
                                  .default_button = "konusok",
                                  .numbers = kNumbers,
                                  .actions = kActions,
                                  .surfaces = kSurfaces,
                                  .open = open,
                                  .close = close,
                                  .refresh = refresh,
                                  .key = key};

}  // namespace tv
