#include "screens/output_window.h"

#include <algorithm>

#include "output/quantities.h"
#include "session/entry.h"
#include "session/prediction.h"
#include "session/results_panel.h"
#include "session/run.h"
#include "session/settings.h"
#include "session/tables.h"
#include "tables/point_list.h"
#include "tables/sort_table.h"
#include "tables/table_text.h"
#include "text/codepage.h"
#include "text/number.h"

namespace tv {
namespace {

ViewUnits view_units(const Session& s) { return {s.output.imperial, s.state.pressure_unit_factor}; }

// Before the first run: that there is none, and how to get one.
std::string no_shot_text(const Session& s) {
  return s.language.fastmsg("noshot0") + "\n" + s.language.fastmsg("noshot1");
}

// Below the ladder: each string with a charge, beside the prediction for that charge.
TableText with_measured(const Session& s, TableText table) {
  std::string lines;
  const auto cell = [](const std::string& text) { return pad_left(text, 24); };
  for (const MeasuredSeries& series : s.load.measured) {
    const SampleFigures f = velocity_figures(series);
    if (!(series.charge_gr > 0) || f.count == 0) continue;
    const auto predicted = predicted_at(s, series.charge_gr);
    const double half = f.high - f.mean;
    lines += pad_left(format_number(series.charge_gr, "0.00"), 8) + " gr   n " +
             pad_left(std::to_string(f.count), 3) +
             cell(velocity_text(s, f.mean, 1) + (f.has_spread() ? " ± " + velocity_text(s, half, 1) : "")) +
             cell(predicted ? velocity_text(s, predicted->vMuzzle, 1) : "?") +
             pad_left(predicted ? percent_text(f.mean / predicted->vMuzzle - 1) : "", 34) + "\r\n";
  }
  if (lines.empty() || s.tables.load.row_count == 0) return table;
  table.text += "\r\n" + s.language.fileout(91) + "\r\n" + pad_left("", 19) +
                cell(s.language.text("frmMeas", "plot_means")) +
                cell(s.language.text("frmMeas", "plot_predicted")) +
                pad_left(s.language.text("frmMeas", "mes_diff"), 34) + "\r\n" + lines;
  return table;
}

TableText view_text(const Session& s) {
  switch (s.options.grftyp) {
    case -1:
      return with_measured(s, DrawLoadTableText(s.tables.load, s.language, view_units(s)));
    case -2:
      return DrawPowderTableText(s.tables.powder, s.language, s.output.imperial);
    default:
      if (!s.shown.any) return {s.language.text("form7", "Form7"), no_shot_text(s)};
      return DrawPointList(shown_point_list(s), s.language, view_units(s));
  }
}

std::string plain_breaks(std::string text) {
  std::erase(text, '\r');
  return text;
}

// What heads figures that are out of date, on the screen and wherever they are copied to.
std::string stale_head(const Session& s) {
  if (!output_stale(s)) return {};
  return s.language.fastmsg("fobsol0") + " " + s.language.fastmsg("fobsol1") + "\n\n";
}

std::string cells_text(const Session& s) {
  if (s.options.grftyp == -1) return load_table_tsv(s.tables.load, s.language, view_units(s));
  if (s.options.grftyp == -2) return powder_table_tsv(s.tables.powder, s.language, s.output.imperial);
  return s.shown.any ? point_list_tsv(shown_point_list(s), s.language, view_units(s)) : std::string();
}

bool shows_table(const Session& s) { return s.options.grftyp < 0; }

}  // namespace

PointListRun shown_point_list(const Session& s) {
  return {s.shown.block,          s.curve, s.result.lastIdx, s.shown.state.schrit, s.shown.outcome.ok(),
          s.shown.state.dim.zul_P};
}

bool output_shows_text(const Session& s) { return s.options.grftyp <= 0 || s.output.as_text; }

void output_switch(Session& s) {
  if (s.options.grftyp > 0) s.output.as_text = !s.output.as_text;
}

bool output_stale(const Session& s) {
  if (s.options.grftyp == -1) return s.tables.load.row_count > 0 && !s.valid.load_table;
  if (s.options.grftyp == -2) {
    const PowderTable& table = s.tables.powder;  // a run that no powder came out of is one too
    return (table.finished || table.cancelled) && !s.valid.powder_table;
  }
  return s.shown.any && !s.valid.results;
}

std::string output_caption(const Session& s) {
  return shows_table(s) ? view_text(s).caption : s.language.text("form7", "Form7");
}

OutputText output_text_view(const Session& s) {
  const TableText table = view_text(s);
  const std::string head = stale_head(s);
  const auto above = static_cast<int>(std::ranges::count(head, '\n'));
  return {head + plain_breaks(table.text), above + table.head_line, table.head_lines};
}

std::string output_text(const Session& s) { return output_text_view(s).text; }

std::string output_notes(const Session& s) {
  std::string notes;
  if (s.shown.any) notes = run_line(s);
  return notes + s.language.notice();
}

namespace {

// Lines joined into one, each with single blanks.
std::string one_line(std::string_view text) {
  std::string line;
  bool gap = false, broken = false;
  for (const char c : text) {
    gap = gap || c == ' ';
    broken = broken || c == '\n' || c == '\r';
    if (c == ' ' || c == '\n' || c == '\r') continue;
    if (!line.empty() && broken)
      line += " \u00B7 ";
    else if (!line.empty() && gap)
      line += ' ';
    gap = broken = false;
    line += c;
  }
  return line;
}

// The columns that the powder table can be sorted by: the keys of its order.
struct SortedColumn {
  std::string_view key;
  int column;
};
constexpr SortedColumn kSorted[] = {{"velocity", 1}, {"charge", 2},  {"charge_g", 2}, {"pmax", 3},
                                    {"burnt", 4},    {"fill", 5},    {"charge2", 6},  {"barrel_time", 6},
                                    {"volume", 10},  {"barrel", 11}, {"pmuzzle", 12}};

OutputTable powder_table_view(const Session& s) {
  OutputTable view{powder_table_data(s.tables.powder, s.output.imperial),
                   powder_table_head(s.tables.powder, s.language)};
  const SortState& sort = s.tables.sort;
  view.by_name = sort.column == 0;
  view.ascending = sort.ascending;
  for (std::size_t i = 0; i < view.data.columns.size(); ++i)
    for (const SortedColumn& each : kSorted)
      if (each.key == view.data.columns[i].key && each.column == sort.column)
        view.sorted_column = static_cast<int>(i);
  return view;
}

}  // namespace

std::optional<OutputTable> output_table(const Session& s) {
  if (!shows_table(s)) return std::nullopt;
  OutputTable view = s.options.grftyp == -1 ? OutputTable{load_table_data(s.tables.load, view_units(s)),
                                                          load_table_head(s.tables.load, s.language)}
                                            : powder_table_view(s);
  if (view.data.rows.empty()) return std::nullopt;
  const auto kind = s.options.grftyp == -1 ? BlockKind::load_table : BlockKind::powder_table;
  const TableInputs& inputs = s.options.grftyp == -1 ? s.tables.load.inputs : s.tables.powder.inputs;
  const std::string block = CartridgeDataBlock(inputs.block, kind, s.language);
  const auto at = view.heading.find(block);
  const std::string rest = at == std::string::npos ? view.heading : view.heading.substr(at + block.size());
  view.line = one_line(rest) + " \u00B7 " + one_line(block);
  view.heading = plain_breaks(view.heading);
  view.present = present_row(s);
  view.stale = output_stale(s);
  return view;
}

bool sort_output(Session& s, int column) {
  if (s.options.grftyp != -2) return false;
  const auto view = powder_table_view(s);
  int wanted = column < 0 ? 0 : -1;
  if (column >= 0 && column < static_cast<int>(view.data.columns.size()))
    for (const SortedColumn& each : kSorted)
      if (each.key == view.data.columns[static_cast<std::size_t>(column)].key) wanted = each.column;
  if (wanted < 0) return false;
  SortState& sort = s.tables.sort;
  sort.ascending = wanted == sort.column ? !sort.ascending : wanted == 0;
  sort.column = wanted;
  sort_powder_table(s.tables.powder, sort);
  outputs_changed(s);
  return true;
}

std::string output_table_rows(const Session& s) { return plain_breaks(cells_text(s)); }

std::string output_tsv(const Session& s) { return stale_head(s) + cells_text(s); }

namespace {

// The reference as the diagram has its axes; over travel by the shot's own travel.
std::vector<Point> reference_points(const Session& s, const DiagramOptions& o) {
  const Reference& r = s.output.reference;
  if (!r.shown || !r.loaded || !s.shown.any || s.result.lastIdx < 1) return {};
  const double factor = 1e6 / o.pressure_factor;
  std::vector<Point> points;
  if (is_over_time(o.type)) {
    const auto over_time = reference_over_time(r.curve, s.curve, s.result, r.as_measured);
    for (const auto& p : within_shot(over_time, s.curve, s.result)) points.push_back({p.ms, p.MPa * factor});
  } else {
    for (const auto& p : reference_over_travel(r.curve, s.curve, s.result, r.as_measured))
      points.push_back({p.x_m * 1000 / o.distance_factor, p.MPa * factor});
  }
  return points;
}

}  // namespace

void show_reference(const Session& s, DiagramOptions& o) {
  o.reference = reference_points(s, o);
  o.reference_name = s.language.text("form9", "reference");
}

DiagramOptions diagram_options(const Session& s, bool dark) {
  DiagramOptions o;
  o.type = s.options.grftyp > 0 ? s.options.grftyp : s.output.last_diagram;
  o.metric_pressure_factor = 1e6 / s.state.pressure_unit_factor;
  o.metric_pressure_unit = chosen_pressure_unit(s);
  o.imperial = s.output.imperial;
  if (s.output.imperial) {
    o.pressure_factor = kPaPerPsi;
    o.velocity_factor = 1 / kFeetPerMetre;
    o.distance_factor = kMmPerInch;
    o.pressure_unit = s.language.fastmsg("fpsi");
    o.velocity_unit = s.language.fastmsg("ffps");
    o.distance_unit = s.language.fastmsg("f_in");
  } else {
    o.pressure_factor = 1e6 / s.state.pressure_unit_factor;
    o.pressure_unit = chosen_pressure_unit(s);
    o.velocity_unit = s.language.fastmsg("fmps");
    o.distance_unit = s.language.fastmsg("f_mm");
  }
  o.zones = s.options.pcolor;
  o.maximum = s.options.maxshw;
  o.marks = s.options.actshw;
  o.barrel_axis = s.options.gbrlen != 0;
  o.line_width = s.output.line_width;
  o.stale = output_stale(s);
  o.font = s.options.pict_font_nam;
  o.colours = dark ? dark_colours() : light_colours();
  o.colours.paper = s.output.colours.paper.value_or(o.colours.paper);
  o.colours.pressure = s.output.colours.left.value_or(o.colours.pressure);
  o.colours.reference = s.output.colours.reference.value_or(o.colours.reference);
  const bool velocity_left = o.type == 2 || o.type == 5 || s.output.optional;
  o.colours.velocity =
      (velocity_left ? s.output.colours.left : s.output.colours.right).value_or(o.colours.velocity);
  o.followed = s.output.followed;
  o.hidden = s.output.hidden;
  o.view = s.output.view;
  show_reference(s, o);
  o.optional = s.output.optional;
  o.graf_x = s.options.graf_x;
  o.graf_y = s.options.graf_y;
  o.optional_x_unit = quantity_unit(x_quantity(o.graf_x), o, s.language);
  o.optional_y_unit = quantity_unit(y_quantity(o.graf_y), o, s.language);
  return o;
}

DiagramRun diagram_run(const Session& s) {
  return {&s.shown.state,
          &s.curve,
          &s.result,
          s.shown.outcome.ok(),
          s.options.gunmas,
          &s.shown.block,
          s.kept ? &s.kept->run : nullptr};
}

void keep_run(Session& s) {
  if (!s.shown.any) return;
  auto kept = std::make_shared<KeptRun>();
  kept->state = s.shown.state;
  kept->curve = s.curve;
  kept->result = s.result;
  kept->block = s.shown.block;
  kept->run = {&kept->state,     &kept->curve, &kept->result, s.shown.outcome.ok(),
               s.options.gunmas, &kept->block, nullptr};
  s.kept = kept;
}

namespace {

bool gun_missing(const Session& s, int graf_y) {
  return y_quantity(graf_y).of_gun && !(s.options.gunmas > 0);
}

DiagramBeside::Mean mean_of(const SampleFigures& f) {
  return f.count > 0 ? DiagramBeside::Mean{f.mean, f.high - f.mean} : DiagramBeside::Mean{};
}

DiagramBeside beside_run(const Session& s) {
  DiagramBeside beside;
  if (s.output.band && s.shown.band) {
    const BandCurve& b = *s.shown.band;
    beside = {b.x, b.p_low, b.p_high, b.v_low, b.v_high, {}, {}};
  }
  const MeasuredFigures measured = measured_at(s.load, s.shown.state.chargeGr);
  beside.pressure = mean_of(measured.pressure);
  beside.velocity = mean_of(measured.velocity);
  return beside;
}

}  // namespace

bool show_optional(Session& s, int graf_x, int graf_y) {
  if (gun_missing(s, graf_y)) return false;
  s.options.graf_x = sound_graf_x(graf_x);
  s.options.graf_y = sound_graf_y(graf_y);
  store_options(s, {"graf_x", "graf_y"});
  SetDisplayMode(s, s.options.grftyp > 0 ? s.options.grftyp : s.output.last_diagram);
  show_whole_diagram(s);
  s.output.hidden = {};
  s.output.optional = true;
  return true;
}

Diagram output_diagram(const Session& s, double width, double height, TextWidth text_width, bool dark) {
  const DiagramOptions options = diagram_options(s, dark);
  if (!s.shown.any || s.result.lastIdx < 1)
    return empty_diagram(no_shot_text(s), options, width, height, text_width);
  if (options.optional && gun_missing(s, options.graf_y))
    return empty_diagram(s.language.msg(470), options, width, height, text_width);
  const DiagramBeside beside = beside_run(s);
  DiagramRun run = diagram_run(s);
  run.beside = &beside;
  return draw_diagram(run, options, s.language, width, height, text_width);
}

Chart output_chart(const Session& s, bool dark) {
  const DiagramBeside beside = beside_run(s);
  DiagramRun run = diagram_run(s);
  run.beside = &beside;
  return describe_diagram(run, diagram_options(s, dark), s.language);
}

namespace {

std::optional<ExportData> export_of_view(const Session& s) {
  if (s.options.grftyp == -1 && s.tables.load.row_count > 0)
    return export_load_table(s.tables.load, s.language, view_units(s));
  if (s.options.grftyp == -2 && !s.tables.powder.rows.empty())
    return export_powder_table(s.tables.powder, s.language, s.output.imperial);
  if (shows_table(s) || !s.shown.any) return std::nullopt;
  if (s.output.optional) return export_optional(diagram_run(s), diagram_options(s), s.language);
  if (s.options.grftyp == 0) return export_point_list(shown_point_list(s), s.language, view_units(s));
  return export_diagram(s.options.grftyp, shown_point_list(s), s.language, view_units(s));
}

}  // namespace

std::optional<ExportData> output_export(const Session& s) {
  auto data = export_of_view(s);
  if (data) data->notes += "\r\n" + stale_head(s) + output_notes(s);
  return data;
}

std::optional<FitClick> output_click(const Session& s, const DiagramFrame& frame, Point at) {
  if (!s.valid.results || s.options.grftyp < 1 || s.output.optional) return std::nullopt;
  return fit_click(frame, diagram_options(s), at);
}

bool click_output(Session& s, const DiagramFrame& frame, Point at) {
  const auto click = output_click(s, frame, at);
  if (!click) return false;
  leave_focus(s);  // Escape must not undo half of it
  FitChargeToTarget(s, click->value, click->mode);
  return true;
}

void show_curve(Session& s, int curve, bool shown) {
  if (curve < 1 || curve > 2) return;
  s.output.hidden[curve == 1 ? 0 : 1] = !shown;
  if (!shown && s.output.followed == curve) s.output.followed = 0;
}

void click_legend(Session& s, const LegendHit& hit) {
  if (hit.curve < 1 || hit.curve > 2) return;
  if (hit.sample) return show_curve(s, hit.curve, s.output.hidden[hit.curve == 1 ? 0 : 1]);
  s.output.followed = s.output.followed == hit.curve ? 0 : hit.curve;
  if (s.output.followed == hit.curve) show_curve(s, hit.curve, true);
}

bool diagram_shown(const Session& s) {
  return s.options.grftyp > 0 && !output_shows_text(s) && s.shown.any && s.result.lastIdx >= 1;
}

void zoom_output(Session& s, const DiagramFrame& frame, Point at, double steps) {
  if (diagram_shown(s)) s.output.view = zoom_at(frame, s.output.view, at, steps);
}

void zoom_output(Session& s, double steps) {
  DiagramFrame any;  // the middle of any frame will do
  any.right = any.bottom = any.label_bottom = 2;
  zoom_output(s, any, {1, 1}, steps);
}

bool move_output(Session& s, double right, double up) {
  if (!diagram_shown(s)) return false;
  const DiagramView before = s.output.view;
  s.output.view = {moved(before.x, right), moved(before.y, up)};
  return s.output.view != before;
}

bool output_key(Session& s, std::string_view key) {
  struct Key {
    std::string_view name;
    double zoom, right, up;  // all 0: the whole
  };
  constexpr double kMove = 0.1;
  static constexpr Key kKeys[] = {{"+", 1, 0, 0},         {"=", 1, 0, 0},         {"-", -1, 0, 0},
                                  {"Left", 0, -kMove, 0}, {"Right", 0, kMove, 0}, {"Up", 0, 0, kMove},
                                  {"Down", 0, 0, -kMove}, {"Home", 0, 0, 0},      {"0", 0, 0, 0},
                                  {"Escape", 0, 0, 0}};
  const auto* at = std::ranges::find(kKeys, key, &Key::name);
  if (at == std::end(kKeys) || !diagram_shown(s)) return false;
  if (key == "Escape" && is_whole(s.output.view)) return false;  // closes the window
  if (at->zoom != 0)
    zoom_output(s, at->zoom);
  else if (at->right != 0 || at->up != 0)
    move_output(s, at->right, at->up);
  else
    s.output.view = {};
  return true;
}

}  // namespace tv
