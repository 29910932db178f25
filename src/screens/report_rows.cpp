// The figures of the data sheet: label, value with unit, second unit.
#include <cmath>
#include <memory>

#include "calculators/load_notes.h"
#include "engine/crosscheck.h"
#include "screens/reports.h"
#include "session/prediction.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kGramsPerCm3InGrainsPerIn3 = kGrainsPerGram * 16.387064;
constexpr double kCm3PerIn3 = 16.387064;

// A value in one unit: already a text, with the key of its unit.
struct InUnit {
  std::string text;
  std::string unit;
};

class Rows {
public:
  Rows(const Session& s, LabelGroup& group) : s_(s), group_(group) {}

  std::string label(int n) const { return s_.language.fileout(n); }
  std::string unit(const char* key) const { return s_.language.text("units", key); }
  InUnit in(double value, const char* pattern, const char* unit_key) const {
    return {std::isfinite(value) ? format_number(value, pattern) : "?", unit(unit_key)};
  }
  InUnit pressure(double pascal) const {
    const double factor = s_.state.pressure_unit_factor;
    return {format_number(pascal * factor / 1e6, "###0.0"), chosen_pressure_unit(s_)};
  }
  InUnit psi(double pascal) const { return in(pascal / kPaPerPsi, "####0", "unit_psi"); }

  // First the unit on show, then the other.
  LabelRow& both(const std::string& name, const InUnit& metric, const InUnit& imperial) {
    const bool i = s_.output.imperial;
    return add({name, joined(i ? imperial : metric), joined(i ? metric : imperial)});
  }
  LabelRow& one(const std::string& name, const InUnit& value) { return add({name, joined(value), ""}); }
  void text(const std::string& name, const std::string& value) {
    if (!trim(value).empty()) add({name, value, "", true});
  }
  void length(int n, double inches) {
    both(label(n), in(inches * kMmPerInch, "####0.0#", "unit_mm"), in(inches, "##0.000", "unit_in"));
  }
  void volume(int n, double grains) {
    both(label(n), in(grains / dicht_H2 / kGrainsPerGram, "##0.000", "unit_ccm"),
         in(grains, "####0.0#", "unit_grh2o"));
  }
  void weight(int n, double grains, const char* grams_pattern) {
    both(label(n), in(grains / kGrainsPerGram, grams_pattern, "unit_g"), in(grains, "####0.0#", "unit_gr"));
  }
  void density(int n, double g_cm3) {
    if (!(g_cm3 > 0)) return void(add({label(n), label(75), ""}));
    both(label(n), in(g_cm3, "##0.000", "unit_gccm"),
         {format_number(g_cm3 * kGramsPerCm3InGrainsPerIn3, "###0.0"), "gr./in.³"});
  }

private:
  static std::string joined(const InUnit& value) {
    return value.unit.empty() ? value.text : value.text + " " + value.unit;
  }
  LabelRow& add(LabelRow row) { return group_.rows.emplace_back(std::move(row)); }

  const Session& s_;
  LabelGroup& group_;
};

LabelGroup cartridge_group(const Session& s) {
  const CartridgeDimensions& d = s.shown.state.dim;
  LabelGroup group{s.language.fileout(5), {}};
  Rows rows(s, group);
  rows.text(rows.label(6), s.shown.block.cartridge);
  rows.length(12, d.Zkal);
  rows.both(rows.label(13), rows.in(d.qfq, "##0.000", "unit_mm2"),
            rows.in(d.qfq / kMm2PerSqIn, "####0.00###", "unit_sqin"));
  rows.length(10, d.Hlen);
  rows.length(11, d.Plen);
  rows.volume(7, d.Volf);
  rows.volume(9, d.Veff);
  rows.one(rows.label(14), {format_number(d.sebf, "##0.0##"), ""});
  if (d.zul_P > 0)
    rows.both(rows.label(15), rows.pressure(d.zul_P * 1e6), rows.psi(d.zul_P * 1e6));
  else
    rows.one(rows.label(15), {rows.label(75), ""});
  rows.text(rows.label(16), s.shown.load.pmetho);
  rows.length(17, d.Llen);
  rows.length(18, d.Wob / kMmPerInch);
  if (s.shown.state.frictionOn)
    rows.both(rows.label(74), rows.pressure(s.shown.state.frictionPress),
              rows.psi(s.shown.state.frictionPress));
  return group;
}

void tail_rows(Rows& rows, const CartridgeDimensions& d) {
  constexpr int kShapes[] = {27, 28, 29};
  const int shape = d.TAIL && d.tail_type >= 0 && d.tail_type <= 2 ? d.tail_type : kFlatBase;
  rows.one(rows.label(26), {rows.label(kShapes[shape]), ""});
  if (shape == kFlatBase) return;
  rows.length(30, d.tail_len / kMmPerInch);
  rows.length(31, d.tail_dia_large / kMmPerInch);
  rows.length(32, d.tail_dia_small / kMmPerInch);
}

LabelGroup bullet_group(const Session& s) {
  const CartridgeDimensions& d = s.shown.state.dim;
  LabelGroup group{s.language.fileout(19), {}};
  Rows rows(s, group);
  rows.text(rows.label(20), s.shown.block.bullet + (s.shown.block.coated ? ", " + rows.label(33) : ""));
  rows.weight(21, d.Bwg, "####0.0##");
  rows.length(22, d.buldin);
  rows.length(23, d.Glen);
  rows.length(24, d.Bsd);
  rows.length(25, d.ssd);
  rows.volume(8, d.Vvg);
  tail_rows(rows, d);
  return group;
}

std::string panel_text(const Session& s, std::string_view name) {
  for (const PanelField& f : s.shown.panel)
    if (name == f.name) return f.text;
  return "?";
}

// A row of the results panel, with its caption and its texts.
struct PanelRow {
  const char *metric, *metric_unit;  // unit: a key; "*" the chosen pressure unit
  const char *imperial = nullptr, *imperial_unit = nullptr;
  int at95 = 0;  // its label where the powder is not burnt whole in the barrel
};
constexpr PanelRow kPanel[] = {
    {"Mgas", "*", "Mgaspsi", "unit_psi"},
    {"Xpm", "unit_mm", "Xpmzoll", "unit_in"},
    {"Vnull", "unit_mps", "Vnullfps", "unit_fps"},
    {"Ener", "unit_J", "Enerfp", "unit_ftlb"},
    {"Maxpe", "*", "Maxpepsi", "unit_psi"},
    {"Vbrannt", "unit_percent"},
    {"wgrad", "unit_percent"},
    {"Sdau", "unit_ms"},
    {"ptime", "unit_ms"},
    {"tbrs", "unit_ms", nullptr, nullptr, 58},
    {"xbrsmm", "unit_mm", "xbrsin", "unit_in", 59},
    {"cmratio", nullptr},
    {"exprat", nullptr},
};

std::string panel_caption(const Session& s, const char* name) { return s.language.text("form5", name); }
std::string panel_label(const Session& s, const PanelRow& row) {
  if (row.at95 == 0 || burn_caption(s.result) != BurnCaption::at95) return panel_caption(s, row.metric);
  return s.language.fastmsg("fburn95") + ": " + s.language.fileout(row.at95);
}

void density_rows(const Session& s, Rows& rows) {
  const std::string density = panel_text(s, "ladich"), energy = panel_text(s, "endich");
  const auto imperial = [](const std::string& text, double factor, const char* pattern) {
    return text == "?" ? text : format_number(read_number(text) * factor, pattern);
  };
  rows.both(panel_caption(s, "ladich"), {density, rows.unit("unit_gccm")},
            {imperial(density, kGramsPerCm3InGrainsPerIn3, "###0.0"), "gr./in.³"});
  rows.both(panel_caption(s, "endich"), {energy, rows.unit("unit_Jccm")},
            {imperial(energy, kCm3PerIn3, "#####0"), "J/in.³"});
}

// How far the closed forms are from an integration of their equations; not with friction, which that has not.
void crosscheck_row(const Session& s, Rows& rows) {
  if (s.shown.state.frictionOn) return;
  const auto curve = std::make_unique<ShotCurve>();
  const CrossCheck check = cross_check(s.shown.state, *curve);
  if (!check.ok) return;
  const auto percent = [](double x) { return format_pattern(x, "+0.00;-0.00;0.00") + " %"; };
  rows.text(rows.label(88), "p " + percent(check.percent.pMax) + ", v " + percent(check.percent.vMuzzle));
}

std::string with_unit(const std::string& value, const std::string& unit) {
  return trim(value).empty() || unit.empty() ? value : value + " " + unit;
}

void measured_rows(const Session& s, Rows& rows, int label, const std::string& value, const std::string& unit,
                   const std::string& deviation, std::optional<double> difference) {
  rows.text(rows.label(label), with_unit(value, unit));
  if (trim(value).empty()) return;
  rows.text(rows.label(86),
            difference ? format_pattern(100 * *difference, "+0.0;-0.0;0.0") + " %" : s.language.fileout(87));
  rows.text(rows.label(71), with_unit(deviation, unit));
}

// Of the strings with the charge of the load: the mean with half of its 95 % interval.
void string_rows(const Session& s, Rows& rows) {
  const SampleFigures f = measured_at(s.load, s.shown.state.chargeGr).velocity;
  if (f.count == 0) return;
  rows.text(rows.label(91), velocity_text(s, f.mean, 1) +
                                (f.has_spread() ? " \u00B1 " + velocity_text(s, f.high - f.mean, 1) : "") +
                                ", n " + std::to_string(f.count));
  if (s.result.vMuzzle > 0) rows.text(rows.label(86), percent_text(f.mean / s.result.vMuzzle - 1));
}

}  // namespace

std::vector<LabelGroup> load_groups(const Session& s) { return {cartridge_group(s), bullet_group(s)}; }

std::vector<LabelGroup> powder_groups(const Session& s) {
  const CalcState& c = s.shown.state;
  LabelGroup group{s.language.fileout(34), {}};
  Rows rows(s, group);
  rows.text(rows.label(35), s.shown.block.powder);
  rows.weight(36, c.chargeGr, "####0.00##");
  rows.one(rows.label(46),
           c.fill > 0 ? rows.in(c.fill, "##0.0", "unit_percent") : InUnit{rows.label(75), ""});
  rows.both(rows.label(37), {format_number(c.Exw, "#####0"), "J/g"},
            {format_number(c.Exw / kGrainsPerGram, "####0.0#"), "J/gr."});
  rows.one(rows.label(38), {format_number(c.Kap, "####0.0###"), ""});
  rows.density(39, c.Pdens);
  rows.density(40, c.bulkdn);
  rows.one(rows.label(41), {format_number(c.Ba0, "####0.0###"), "1/s"});
  rows.one(rows.label(42), {format_number(c.PDko, "####0.0###"), ""});
  rows.one(rows.label(43), {format_number(c.Limz1, "##0.000"), ""});
  rows.one(rows.label(44), {format_number(c.Ba1, "####0.0###"), ""});
  rows.both(rows.label(45), rows.pressure(c.start_pressure), rows.psi(c.start_pressure));
  rows.one(rows.label(47), {format_number(c.powtmp, "####0"), "°C"});
  return {group};
}

std::vector<LabelGroup> result_groups(const Session& s) {
  LabelGroup group{s.language.fileout(48), {}};
  Rows rows(s, group);
  const PressureState state = pressure_state(s.result.pMax, s.shown.state.dim.zul_P);
  for (const PanelRow& row : kPanel) {
    const auto in_unit = [&](const char* name, const char* unit) -> InUnit {
      const std::string text = panel_text(s, name);
      if (!unit || text == " n.a.") return {std::string(trim(text)), ""};
      return {text, *unit == '*' ? chosen_pressure_unit(s) : rows.unit(unit)};
    };
    const InUnit metric = in_unit(row.metric, row.metric_unit);
    LabelRow& added = row.imperial
                          ? rows.both(panel_label(s, row), metric, in_unit(row.imperial, row.imperial_unit))
                          : rows.one(panel_label(s, row), metric);
    if (&row == kPanel && state == PressureState::over_limit) added.standing = Standing::over;
  }
  density_rows(s, rows);
  crosscheck_row(s, rows);
  return {group};
}

std::vector<LabelGroup> note_groups(const Session& s) {
  const LoadData& load = s.load;
  LabelGroup group{s.language.fileout(64), {}};
  Rows rows(s, group);
  rows.text(rows.label(4), load.commen);
  rows.text(rows.label(65), load.primer);
  rows.text(rows.label(66), load.PrimerLot);
  rows.text(rows.label(67), load.PowderLot);
  rows.text(rows.label(68), load.BulletLot);
  rows.text(rows.label(69), load.CaseMfg);
  measured_rows(s, rows, 70, load.MuzzleVel_meas, load.MVel_meas_unit, load.MVel_meas_std,
                velocity_difference(load.MuzzleVel_meas, load.MVel_meas_unit, s.result.vMuzzle));
  measured_rows(s, rows, 72, load.Press_meas, load.Press_meas_unit, load.Press_meas_std,
                pressure_difference(load.Press_meas, load.Press_meas_unit, s.result.pMax));
  string_rows(s, rows);
  if (group.rows.empty()) return {};
  return {group};
}

namespace {

KeyFigure limit_figure(const Session& s) {
  const Language& l = s.language;
  const double zul_P = s.shown.state.dim.zul_P;
  const PressureState state = pressure_state(s.result.pMax, zul_P);
  if (state == PressureState::unknown)
    return {l.fileout(15), l.fileout(75), "", l.text("form5", "key_unknown"), Standing::warned};
  const bool i = s.output.imperial;
  const double shown = i ? zul_P * 1e6 / kPaPerPsi : zul_P * s.state.pressure_unit_factor;
  KeyFigure figure{l.fileout(15) + " " + format_number(shown, "0") + " " +
                       (i ? l.text("units", "unit_psi") : chosen_pressure_unit(s)),
                   format_number(100 * s.result.pMax / 1e6 / zul_P, "0"), "%", l.text("form5", "key_below")};
  if (state == PressureState::caution || state == PressureState::near_limit)
    figure.standing = Standing::warned;
  if (state == PressureState::near_limit) figure.below = l.text("form5", "key_near");
  if (state == PressureState::over_limit) {
    figure.below = l.text("form5", "key_over");
    figure.standing = Standing::over;
  }
  return figure;
}

}  // namespace

KeyFigures key_figures(const Session& s) {
  const Language& l = s.language;
  const bool i = s.output.imperial;
  const auto figure = [&](const char* metric, const std::string& metric_unit, const char* imperial,
                          const char* imperial_unit) -> KeyFigure {
    const std::string a = panel_text(s, metric), b = panel_text(s, imperial),
                      other = l.text("units", imperial_unit);
    return i ? KeyFigure{panel_caption(s, metric), b, other, a + " " + metric_unit}
             : KeyFigure{panel_caption(s, metric), a, metric_unit, b + " " + other};
  };
  return {figure("Mgas", chosen_pressure_unit(s), "Mgaspsi", "unit_psi"), limit_figure(s),
          figure("Vnull", l.text("units", "unit_mps"), "Vnullfps", "unit_fps"),
          figure("Ener", l.text("units", "unit_J"), "Enerfp", "unit_ftlb")};
}

}  // namespace tv
