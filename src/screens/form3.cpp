// Form3: the dimensions of the load, with the drawing of the seated cartridge.
#include "geometry/dimensions.h"
#include "output/cartridge_drawing.h"
#include "screens/all.h"
#include "screens/editors.h"
#include "session/dimensions.h"
#include "session/entry.h"
#include "session/input_check.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/take_records.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form3";
using D = CartridgeDimensions;
constexpr double kMost = 9999999;
constexpr double kPsi1500MPa = 217557;  // rounded to the nearest whole number

// --- numbers

void input_changed(Session& s, int, bool) { setResultsValid(s, false); }

void groove_changed(Session& s, int, bool) {
  s.load.bore_area_stale = true;
  mark_volumes_stale(s);
  setResultsValid(s, false);
}

void bore_area_changed(Session& s, int, bool) {
  s.load.bore_area_stale = false;
  setResultsValid(s, false);
}

template <DimensionEdit Kind>
void dimension_changed(Session& s, int, bool) {
  recompute_dimensions(s, Kind);
  setResultsValid(s, false);
}

// The other depth follows at once, also when the recompute refuses a depth beyond the case.
void seating_changed(Session& s, int, bool differs) {
  D& d = s.state.dim;
  d.ssd = ssd_of_Bsd(d);
  write_number(s, d.ssd);
  recompute_dimensions(s, kSeatingDepth);
  if (differs) setResultsValid(s, false);
}

void band_seating_changed(Session& s, int, bool differs) {
  D& d = s.state.dim;
  d.Bsd = Bsd_of_ssd(d);
  write_number(s, d.Bsd);
  recompute_dimensions(s, kBandSeating);
  if (differs) setResultsValid(s, false);
}

// While it is typed the field of the overall length lags one entry behind.
void band_seating_left(Session& s, int) { write_number(s, s.state.dim.Plen); }

// A bullet cannot be seated deeper than the case.
Limits seating_limits(const Session& s, const NumberSide& side, int) {
  const double Hlen = s.state.dim.Hlen;
  return {side.limits.least, Hlen > 0 ? side.unit->shown(Hlen, s) : side.limits.most};
}

const NumberField kNumbers[] = {
    pair_of({"Zkalm", &units::mm_of_inch, {1, 609.6}, "##0.00", "##0.00"},
            {"Zkalz", &units::inch, {0.04, 24}, "0.000", "0.000"}, dim<&D::Zkal>, groove_changed),
    pair_of({"buldinmm", &units::mm_of_inch, {1, 609.6}, "0.00", "##0.00"},
            {"buldinch", &units::inch, {0.04, 24}, "0.000", "0.000"}, dim<&D::buldin>, input_changed),
    pair_of({"Bwgm", &units::gram_of_grain, {0.06, 100000}, "0.00#", "####0.00#"},
            {"Bwgn", &units::grain, {1, 1543230}, "0.0#", "0.0#"}, dim<&D::Bwg>, input_changed),
    pair_of({"Glenm", &units::mm_of_inch, {1, 1016}, "0.00", "##0.00"},
            {"Glenz", &units::inch, {0.06, 40}, "0.000", "#0.000"}, dim<&D::Glen>,
            dimension_changed<kBulletLength>),
    pair_of({"Hlenm", &units::mm_of_inch, {1, 1016}, "0.00", "###0.00"},
            {"Hlenz", &units::inch, {0.04, 40}, "0.000", "#0.000"}, dim<&D::Hlen>,
            dimension_changed<kCaseLength>),
    pair_of({"Plenm", &units::mm_of_inch, {1, 1524}, "0.00", "###0.00"},
            {"Plenz", &units::inch, {0.04, 60}, "0.000", "#0.000"}, dim<&D::Plen>,
            dimension_changed<kOverallLength>),
    pair_of({"Llenm", &units::mm_of_inch, {10, 10160}, "##0.0##", "####0.0#"},
            {"Llenz", &units::inch, {0.4, 400}, "0.0##", "##0.0##"}, dim<&D::Llen>,
            dimension_changed<kNothingMoved>),
    {.sides = {{{"Wobm", &units::mm, {10, 10160}, "##0.0#", "####0.0#"},
                {"Wobz", &units::inch_of_mm, {0.4, 400}, "##0.0##", "##0.0##"}}},
     .value = dim<&D::Wob>,
     .read_only = true},
    pair_of({"qfqm", &units::mm2, {0, 32429}, "##.00#", "#.00#"},
            {"qfqi", &units::sqin_of_mm2, {0, 50.26}, "0.000###", "#.000###"}, dim<&D::qfq>,
            bore_area_changed),
    pair_of({"Volfml", &units::cm3_of_grain, {0.06, 20000}, "##0.000", "#0.000"},
            {"Volfgn", &units::grain_h2o, {1, 308646}, "###0.000", "##0.000"}, dim<&D::Volf>,
            dimension_changed<kNothingMoved>),
    {.sides = {{{"Vvgm", &units::cm3_of_grain, {-kMost, kMost}, "0.000"},
                {"Vvgn", &units::grain_h2o, {-kMost, kMost}, "0.000"}}},
     .value = dim<&D::Vvg>,
     .read_only = true},
    {.sides = {{{"Veffm", &units::cm3_of_grain, {0.06, 20000}, "0.000"},
                {"Veffz", &units::grain_h2o, {1, 308646}, "0.000"}}},
     .value = dim<&D::Veff>,
     .read_only = true},
    {.sides = {{{"Bsdm", &units::mm_of_inch, {-1016, 1016}, "0.00"},
                {"Bsdz", &units::inch, {-40, 40}, "0.000"}}},
     .value = dim<&D::Bsd>,
     .changed = seating_changed,
     .limits = seating_limits},
    {.sides = {{{"ssdm", &units::mm_of_inch, {-1016, 1016}, "0.00"},
                {"ssdz", &units::inch, {-40, 40}, "0.000"}}},
     .value = dim<&D::ssd>,
     .changed = band_seating_changed,
     .left = band_seating_left},
    one_side({"sebf", &units::plain, {0, 3}, nullptr, "#0.0#"}, dim<&D::sebf>, input_changed),
    {.sides = {{{"zul_P0", &units::chosen_of_MPa, {0, 1500}, "0.0", "0.0"},
                {"zul_P1", &units::psi_of_MPa, {0, kPsi1500MPa}, "0", "0"}}},
     .value = dim<&D::zul_P>,
     .changed = input_changed,
     .zero_unknown = true},
};

// --- form

constexpr Row kParts[] = {
    wide_row("HVolDat", load_list("HVolDat", RecordKind::cartridges)),
    source_row("HVolDat"),
    wide_row("Bnam", load_list("Bnam", RecordKind::bullets)),
    source_row("Bnam"),
    {RowShape::bare, nullptr, {check("TAIL"), check("fproof")}},
    number_row("Plenm", "Plenz"),
    number_row("Bsdm", "Bsdz"),
    number_row("Llenm", "Llenz"),
};
constexpr Row kDrawing[] = {{RowShape::block, nullptr, {surface("drawing")}}};
constexpr Row kCase[] = {
    number_row("Zkalm", "Zkalz"),
    number_row("qfqm", "qfqi"),
    number_row("Hlenm", "Hlenz"),
    number_row("Volfml", "Volfgn"),
    note_row("water"),
    {RowShape::pair, "zul_P0", {number("zul_P0", "@zulp_nam"), number("zul_P1")}},
    wide_row("method", {"method", ControlKind::text}),
    number_row("sebf"),
};
constexpr Row kBullet[] = {
    number_row("buldinmm", "buldinch"),
    number_row("Bwgm", "Bwgn"),
    number_row("Glenm", "Glenz"),
    number_row("ssdm", "ssdz"),
    display_row("Wobm", "unit_mm", "Wobz", "unit_in"),
    display_row("Vvgm", "unit_ccm", "Vvgn", "unit_grh2o"),
    display_row("Veffm", "unit_ccm", "Veffz", "unit_grh2o"),
};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("shpic"), button("Patdef")}}};

// A figure in the units on show.
std::string told(const Session& s, const char* metric, const char* metric_unit, const char* imperial,
                 const char* imperial_unit) {
  const bool in_metric = s.unit_mode == UnitMode::metric;
  return field(s, kName, in_metric ? metric : imperial).text + ' ' +
         s.language.text("units", in_metric ? metric_unit : imperial_unit);
}

std::string case_in_short(const Session& s) {
  const bool metric = s.unit_mode == UnitMode::metric;
  return told(s, "Volfml", "unit_ccm", "Volfgn", "unit_grh2o") + " · " +
         field(s, kName, metric ? "zul_P0" : "zul_P1").text + ' ' + mode_pressure_unit(s) + ' ' +
         field(s, kName, "method").text;
}

// A volume that waits for its next calculation is not told as if it were good.
std::string bullet_in_short(const Session& s) {
  return told(s, "Bwgm", "unit_g", "Bwgn", "unit_gr") + " · Veff " +
         (s.valid.volumes_stale ? s.language.text("form5", "key_stale")
                                : told(s, "Veffm", "unit_ccm", "Veffz", "unit_grh2o"));
}

constexpr Group kForm[] = {{nullptr, 0, kParts},
                           {nullptr, 0, kDrawing},
                           {"fold_case", 0, kCase, nullptr, case_in_short},
                           {"fold_bullet", 0, kBullet, nullptr, bullet_in_short},
                           {nullptr, 0, kButtons}};

// --- actions

void pick_cartridge(Session& s, int) { pick_cartridge_of_load(s, picked_row(field(s, kName, "HVolDat"))); }
void pick_bullet(Session& s, int) { take_bullet(s, picked_row(field(s, kName, "Bnam"))); }

void name_typed(Session& s, const char* list, std::string& name) {
  Field& f = field(s, kName, list);
  f.selected = -1;
  name = f.text;
  setResultsValid(s, false);
}
void type_cartridge(Session& s, int) { name_typed(s, "HVolDat", s.load.pattyp); }
void type_bullet(Session& s, int) { name_typed(s, "Bnam", s.load.bultyp); }

// Typing the word of agreement takes the standing notice away from the main window.
void type_method(Session& s, int) {
  Field& f = field(s, kName, "method");
  s.load.pmetho = trim(f.text);
  const std::string word = upper(trim(s.language.fastmsg("agreeit2")));
  if (s.options.nowarn || word.empty() || upper(s.load.pmetho) != word) return;
  s.options.nowarn = true;
  store_option(s, "nowarn");
  f.text = "?";
  s.load.pmetho = "?";
}

// The window of the bullet sets the box, if it is left by OK.
void toggle_tail(Session& s, int) {
  if (field(s, kName, "TAIL").checked) return open_tail_of_load(s);
  s.state.dim.TAIL = false;
  recompute_dimensions(s, kSeatingDepth);
  setResultsValid(s, false);
}

// Asks for the factor until it lies in its range; an empty or given up answer keeps the one in force.
void ask_moly_factor(Session& s) {
  for (;;) {
    const auto answer = s.user->input(
        {kProgramName, MessageText(s).msg(49).line().msg(50), format_number(s.state.moly_factor, "0.0##")});
    if (!answer || trim(*answer).empty()) return;
    const double factor = read_number(with_points(*answer));
    if (factor >= 0.4 && factor <= 1.0) {
      s.state.moly_factor = factor;
      return;
    }
    beep(s);
    s.state.moly_factor = 0.66;
  }
}

void toggle_coating(Session& s, int) {
  bool coated = field(s, kName, "fproof").checked;
  double& pressure = s.state.start_pressure;
  take_shown_start_pressure(s);  // of a bullet that has none of its own
  if (coated) {
    ask_moly_factor(s);
    pressure *= s.state.moly_factor;
    if (pressure < 1000000) {
      warn(s, MessageText(s).msg(43).line().msg(44));
      coated = false;
      pressure /= s.state.moly_factor;
    }
  } else {
    pressure /= s.state.moly_factor;
  }
  s.load.fproof = coated;
  refresh_pressure_fields(s);
  setResultsValid(s, false);
}

void show_picture(Session& s, int) { open_screen(s, "frmPic"); }
void press_Patdef(Session& s, int) { Patdef(s); }

constexpr ControlAction kActions[] = {
    {"HVolDat", pick_cartridge, type_cartridge},
    {"Bnam", pick_bullet, type_bullet},
    {"method", nullptr, type_method},
    {"TAIL", toggle_tail},
    {"fproof", toggle_coating},
    {"shpic", show_picture},
    {"Patdef", press_Patdef},
};

// --- drawing

// What is wrong with how the bullet sits: it does not reach into the case, or with its tail only.
std::string seating_warning(const Session& s) {
  const D& d = s.state.dim;
  if (!cartridge_can_be_drawn(d)) return {};
  if (d.Bsd < 0) return s.language.msg(174) + " " + s.language.msg(175);
  return body_stands_off(d) ? s.language.msg(177) : std::string();
}

DrawList draw(const Session& s, const Extent& e) {
  const LoadData& load = s.load;
  const CaseBody body{load.l1_in, load.l2_in, load.Ri_in, load.R1_in, load.P1_in,
                      load.P2_in, load.H1_in, load.H2_in, load.Shape};
  const bool metric = s.unit_mode == UnitMode::metric;
  const CartridgeWords words{s.language.text("form3", "draw_note"), s.language.text("form3", "draw_missing"),
                             seating_warning(s),
                             " " + s.language.text("units", metric ? "unit_mm" : "unit_in"), metric};
  return draw_cartridge(s.state.dim, body, words, e.dark ? dark_cartridge() : light_cartridge(), e.width,
                        e.height, e.text_width);
}

void click_drawing(Session& s, const Pointer& pointer, const Extent&) {
  if (pointer.what == Pointer::What::release) press(s, kName, "shpic");
}

constexpr Surface kSurfaces[] = {{"drawing", draw, click_drawing, 360, 140}};

// The band seating depth is marked while the full-diameter body of a boat tail bullet stands off the case.
void mark_band_seating(Session& s) {
  const bool off = body_stands_off(s.state.dim);
  for (const char* name : {"ssdm", "ssdz"}) {
    Field& f = field(s, kName, name);
    if (f.ink == Ink::red) continue;  // out of its range, which says more
    f.ink = off ? Ink::magenta : Ink::black;
    f.reason = off ? s.language.msg(177) : std::string();
  }
}

void refresh(Session& s) {
  show_text(s, kName, "HVolDat", s.load.pattyp);
  show_text(s, kName, "Bnam", s.load.bultyp);
  show_text(s, kName, "method", s.load.pmetho.empty() ? " ?" : s.load.pmetho);
  set_text(s, kName, "zulp_nam", chosen_pressure_unit(s));
  field(s, kName, "TAIL").checked = s.state.dim.TAIL;
  field(s, kName, "fproof").checked = s.load.fproof;
  field(s, kName, "shpic").visible = !s.picture.empty();
  for (const char* name : {"Vvgm", "Vvgn", "Veffm", "Veffz"})
    field(s, kName, name).stale = s.valid.volumes_stale;
  field(s, kName, "drawing").reason = seating_warning(s);
  mark_band_seating(s);
}

}  // namespace

extern const ScreenSpec kForm3{.name = kName,
                               .section = "form3",
                               .shape = ScreenShape::child,
                               .role = Role::dimensions,
                               .form = kForm,
                               .default_button = "Patdef",
                               .numbers = kNumbers,
                               .actions = kActions,
                               .surfaces = kSurfaces,
                               .refresh = refresh};

}  // namespace tv
