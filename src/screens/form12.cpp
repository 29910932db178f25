// Form12: what a case holds, estimated from its outside and its weight.
#include <optional>

#include "geometry/case_volume.h"
#include "output/case_drawing.h"
#include "screens/all.h"
#include "screens/editors.h"
#include "session/entry.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form12";
constexpr double kMost = 609.6;  // mm

// A copy of the cartridge's body, in inches and grains.
struct State {
  CaseBody body;
  double Hlen = 0, weight = 0;
  CaseMaterial material = kBrass;
  bool in_mm = true;
  CaseVolume volume;             // of the last calculation
  std::optional<double> sebert;  //
  bool current = false;          // it belongs to what is on show
};
State& state(Session& s) { return own<State>(s, kName); }
const State& state(const Session& s) { return own<State>(s, kName); }

// --- numbers: one field each, in mm or inches by the screen's own switch

double shown(double inch, const Session& s) { return state(s).in_mm ? inch * kMmPerInch : inch; }
double stored(double length, const Session& s) { return state(s).in_mm ? length / kMmPerInch : length; }
const char* pattern(const Session& s) { return state(s).in_mm ? "0.00" : "0.000"; }
Limits in_unit(Limits l, const Session& s) { return state(s).in_mm ? l : Limits{0, 24}; }
constexpr const char* kLengthUnits = "%unit_mm|unit_in";
const Unit kLength{kLengthUnits, shown, stored, pattern, in_unit};

void changed(Session& s, int, bool) { state(s).current = false; }
template <double CaseBody::*Member>
double& body(Session& s, int) {
  return state(s).body.*Member;
}
double& case_length(Session& s, int) { return state(s).Hlen; }
double& weight(Session& s, int) { return state(s).weight; }

constexpr NumberField length_field(const char* name, double& (*value)(Session&, int)) {
  return {.sides = {{{name, &kLength, {0, kMost}}}}, .value = value, .changed = changed, .zero_empty = true};
}
using B = CaseBody;
const NumberField kNumbers[] = {
    length_field("L1", body<&B::l1>),
    length_field("L2", body<&B::l2>),
    length_field("L3", case_length),
    length_field("LR", body<&B::rim>),
    length_field("R1", body<&B::rim_dia>),
    length_field("P1", body<&B::P1>),
    length_field("P2", body<&B::P2>),
    length_field("H1", body<&B::H1>),
    length_field("H2", body<&B::H2>),
    {.sides = {{{"mssgm", &units::gram_of_grain, {0, 10000}, "0.00#", "0.00#"},
                {"mssgn", &units::grain, {0, 154323}, "0.0#", "0.0#"}}},
     .value = weight,
     .changed = changed,
     .zero_empty = true},
};

// --- form

constexpr Row length_row(const char* name) { return {RowShape::pair, name, {number(name, kLengthUnits)}}; }
constexpr Row kDimensions[] = {
    {RowShape::bare, nullptr, {check("mass_mm")}},
    length_row("L1"),
    length_row("L2"),
    length_row("L3"),
    length_row("LR"),
    length_row("R1"),
    length_row("P1"),
    length_row("P2"),
    length_row("H1"),
    length_row("H2"),
    number_row("mssgm", "mssgn"),
};
constexpr Row kChoices[] = {
    {RowShape::bare, "body", {option("body0"), option("body1"), option("body2")}},
    {RowShape::bare, "head", {option("head0"), option("head1"), option("head2")}},
    {RowShape::bare, "material", {option("material0"), option("material1"), option("material2")}},
};
constexpr Row kPicture[] = {{RowShape::block, nullptr, {surface("bild1")}}};
constexpr Row kResults[] = {
    display_row("volum_ml", "unit_ccm", "volum_h2o", "unit_grh2o"),
    display_row("volum_gramm", "unit_g"),
    display_row("ezebert", nullptr),
    display_row("neckang", nullptr),
};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("abbruch"), button("ok"), button("calculate")}}};
constexpr Group kForm[] = {{"grp_dims", 0, kDimensions},
                           {nullptr, 1, kChoices},
                           {nullptr, 1, kPicture},
                           {"estimate", 1, kResults},
                           {nullptr, -1, kButtons}};
bool imperial(const Session& s) { return !state(s).in_mm; }

// --- actions

void choose_body(Session& s, int i) {
  CaseBody& b = state(s).body;
  b.Shape = i + 10 * case_head(b.Shape);
  state(s).current = false;
}
void choose_head(Session& s, int i) {
  CaseBody& b = state(s).body;
  b.Shape = case_form(b.Shape) + 10 * i;
  state(s).current = false;
}
void choose_material(Session& s, int i) {
  state(s).material = static_cast<CaseMaterial>(i);
  state(s).current = false;
}

void switch_unit(Session& s, int) {
  state(s).in_mm = field(s, kName, "mass_mm").checked;
  write_numbers(s, *s.screens.find(kName)->second.spec);
}

// The first dimension that the shape asks for and that is missing.
const char* missing_field(const State& st) {
  const CaseBody& b = st.body;
  const struct {
    const char* name;
    double value;
    bool neck;
  } needed[] = {{"LR", b.rim, false}, {"R1", b.rim_dia, false}, {"P1", b.P1, false},
                {"L1", b.l1, false},  {"P2", b.P2, false},      {"L2", b.l2, true},
                {"H1", b.H1, true},   {"L3", st.Hlen, true},    {"H2", b.H2, true}};
  for (const auto& each : needed)
    if (!(each.value > 0) && (!each.neck || case_form(b.Shape) == kBottleneck)) return each.name;
  return nullptr;
}

void calculate(Session& s, int) {
  State& st = state(s);
  st.volume = case_volume(st.body, st.Hlen, st.material, st.weight / kGrainsPerGram);
  st.sebert = estimated_sebert(st.body);
  st.current = st.volume.finding == CaseFinding::none;
  if (st.current) return;
  const bool weight_missing = st.volume.finding == CaseFinding::weight_missing;
  warn(s, MessageText(s).msg(weight_missing ? 41 : 42));
  const char* missing = missing_field(st);
  s.user->focus(kName, weight_missing ? "mssgm" : missing ? missing : "L1");
}

void store(Session& s, int) {
  State& st = state(s);
  CartridgeRecord& record = edited_cartridge(s);
  record.body = st.body;
  record.dim.Hlen = st.Hlen;
  record.caswht = st.weight;
  if (st.current && ask_yes_no(s, MessageText(s).msg(424))) {
    record.dim.Volf = st.volume.water_gr;
    if (st.sebert) record.dim.sebf = *st.sebert;
  }
  edited_cartridge_changed(s);
  hide_screen(s, kName);
}
void cancel(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {
    {"body", choose_body},    {"head", choose_head}, {"material", choose_material}, {"mass_mm", switch_unit},
    {"calculate", calculate}, {"ok", store},         {"abbruch", cancel},
};

void open(Session& s) {
  const CartridgeRecord& record = edited_cartridge(s);
  State st;
  st.body = record.body;
  st.Hlen = record.dim.Hlen;
  st.weight = record.caswht;
  st.in_mm = s.unit_mode == UnitMode::metric;
  state(s) = st;
}

// --- drawing

MeasuredDrawing drawing(const Session& s, const Extent& e) {
  const State& st = state(s);
  const CaseWords words{s.language.text("form12", "schematic"),
                        {" " + s.language.text("units", st.in_mm ? "unit_mm" : "unit_in"), st.in_mm}};
  const std::string_view marked = s.focus.screen == kName ? s.focus.field : std::string_view();
  return draw_case(st.body, st.Hlen, words, e.dark ? dark_drawing() : light_drawing(), marked, e.width,
                   e.height, e.text_width);
}
DrawList draw(const Session& s, const Extent& e) { return drawing(s, e).list; }

void click(Session& s, const Pointer& pointer, const Extent& e) {
  if (pointer.what != Pointer::What::release) return;
  const MeasuredDrawing shown_drawing = drawing(s, e);
  if (const auto name = measure_at(shown_drawing, pointer.at); !name.empty()) s.user->focus(kName, name);
}
constexpr Surface kSurfaces[] = {{"bild1", draw, click, 540, 380}};

// --- what is on show

void show_options(Session& s, const std::string& group, int chosen) {
  for (int i = 0; i < 3; ++i) field(s, kName, group + std::to_string(i)).checked = i == chosen;
}

std::string angle_text(const CaseBody& b) {
  const auto angle = neck_angle(b);
  return "alpha = " + (angle ? format_pattern(*angle, "0.0") + "\u00B0" : std::string("?"));
}

void show_results(Session& s) {
  const State& st = state(s);
  const bool any = st.volume.finding == CaseFinding::none || st.volume.outside_cm3 > 0;
  set_text(s, kName, "volum_ml", format_number(st.volume.inside_cm3, "0.000"));
  set_text(s, kName, "volum_h2o", format_number(st.volume.water_gr, "0.00"));
  set_text(s, kName, "volum_gramm", format_number(st.volume.water_g, "0.000"));
  set_text(s, kName, "ezebert", !any ? "0" : st.sebert ? format_number(*st.sebert, "0.000") : "?");
  for (const char* name : {"volum_ml", "volum_h2o", "volum_gramm", "ezebert"})
    field(s, kName, name).stale = !st.current;
}

void refresh(Session& s) {
  const State& st = state(s);
  show_options(s, "body", case_form(st.body.Shape));
  show_options(s, "head", case_head(st.body.Shape));
  show_options(s, "material", st.material);
  field(s, kName, "mass_mm").checked = st.in_mm;
  show_results(s);
  set_text(s, kName, "neckang", angle_text(st.body));
}

}  // namespace

extern const ScreenSpec kForm12{.name = kName,
                                .section = "form12",
                                .form = kForm,
                                .default_button = "calculate",
                                .numbers = kNumbers,
                                .actions = kActions,
                                .surfaces = kSurfaces,
                                .open = open,
                                .refresh = refresh,
                                .imperial = imperial};

}  // namespace tv
