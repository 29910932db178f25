// One shot: the whole road from the load file to the results, and its answer in three forms.
#include "cli/shot.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "output/quantities.h"
#include "output/svg.h"
#include "screens/output_window.h"
#include "session/entry.h"
#include "session/findings.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/codepage.h"

namespace tv {
namespace {

std::size_t points(const ShotResult& r) { return static_cast<std::size_t>(r.lastIdx) + 1; }

// null for what there is not.
Json number_or_null(bool known, double value) { return known ? Json(value) : Json(); }

Json result_json(const Session& s) {
  const ShotResult& r = s.result;
  const auto burnt = static_cast<std::size_t>(std::max(r.burnIdx, 0));
  return {
      {"lastIdx", r.lastIdx},
      {"pMax", r.pMax},
      {"peakIdx", r.peakIdx},
      {"xPeak", r.xPeak},
      {"vPeak", r.vPeak},
      {"zPeak", r.zPeak},
      {"vMuzzle", r.vMuzzle},
      {"zMuzzle", r.zMuzzle},
      {"peakState", r.peakState},
      {"notBurnt", r.notBurnt},
      {"burnIdx", r.burnIdx},
      {"idx95", r.idx95},
      {"z1Idx", r.z1Idx},
      {"p10Idx", r.p10Idx},
      {"t10", r.t10},
      {"ptime", r.ptime},
      {"tStart", r.tStart},
      {"tailIdx", r.tailIdx},
      {"pBasePeak", r.pBasePeak},
      {"loadingRatio", number_or_null(s.shown.state.fill > 0, s.shown.state.fill / 100)},
      {"energy", muzzle_energy(s)},
      {"xBurnout", number_or_null(r.burnIdx >= 1, s.curve.x[burnt])},
      {"tBurnout", number_or_null(r.burnIdx >= 1 && s.shown.state.schrit != 2, s.curve.t[burnt] - r.t10)}};
}

Json panel_json(const Session& s) {
  Json::object_t json;  // the names differ: none need be looked for
  json.reserve(64);
  const Screen& results = s.screens.find(screen_name(s, Role::results))->second;
  for (const Control& control : controls_of(*results.spec))
    json.push_back({control.name, results.fields.find(control.name)->second.text});
  return json;
}

// The note of the limit, as it heads the status line.
const char* limit_note(PressureState state) {
  switch (state) {
    case PressureState::over_limit:
      return "fwarn1";
    case PressureState::near_limit:
      return "fwarn2";
    case PressureState::unknown:
      return "fwarn3";
    case PressureState::caution:
    case PressureState::fine:
      break;
  }
  return nullptr;
}

Json notes_json(const Session& s) {
  const RunNotes& notes = s.result.runNotes;
  Json json = Json::array();
  if (const char* limit = limit_note(limit_of(s).state)) json.push_back(limit);
  if (notes.overfill > 0) json.push_back("msg151");
  for (std::size_t i = 0; i < static_cast<std::size_t>(notes.count); ++i)
    json.push_back("fwarn" + std::to_string(static_cast<int>(notes.notes[i])));
  if (!s.shown.unusual.empty()) json.push_back("fwarn18");
  return json;
}

// What had a box, and what stands in the list of findings without one.
std::vector<std::string> warning_keys(const Session& s, const CliUser& user) {
  std::vector<std::string> keys = user.warning_keys();
  for (const Finding& finding : findings(s))
    for (const std::string& key : finding.message.keys)
      if (std::ranges::find(keys, key) == keys.end()) keys.push_back(key);
  return keys;
}

struct Column {
  const char* name;
  const double* values;
};
std::array<Column, 8> columns(const ShotCurve& c) {
  return {{{"x", c.x.data()},
           {"v", c.v.data()},
           {"p", c.p.data()},
           {"z", c.z.data()},
           {"sigma", c.sigma.data()},
           {"w", c.w.data()},
           {"t", c.t.data()},
           {"pB", c.pB.data()}}};
}

Json curve_json(const Session& s) {
  Json json = Json::object();
  for (const Column& column : columns(s.curve))
    json[column.name] = std::vector<double>(column.values, column.values + points(s.result));
  return json;
}

Json limit_json(const LimitOfRun& limit) {
  const bool known = limit.state != PressureState::unknown;
  return {{"pmax", number_or_null(known, limit.pmax)},
          {"share", number_or_null(known, limit.share)},
          {"state", limit.name}};
}

std::string curve_csv(const Session& s) {
  std::string text;
  for (const Column& column : columns(s.curve)) text += (text.empty() ? "" : ",") + std::string(column.name);
  text += "\n";
  for (std::size_t i = 0; i < points(s.result); ++i) {
    std::string line;
    for (const Column& column : columns(s.curve))
      line += fmt::format("{}{}", line.empty() ? "" : ",", column.values[i]);
    text += line + "\n";
  }
  return text;
}

// A line of the panel as text: caption, figure and unit, and the figure in the other unit where it has one.
struct PanelLine {
  const char* caption;
  const char* field;
  const char* unit;  // null: the chosen pressure unit
  const char* other = nullptr;
  const char* other_unit = "";
};
constexpr PanelLine kPanel[] = {
    {"Mgas", "Mgas", nullptr, "Mgaspsi", "psi"},
    {"Xpm", "Xpm", "mm", "Xpmzoll", "in."},
    {"Vnull", "Vnull", "m/s", "Vnullfps", "fps"},
    {"Ener", "Ener", "J", "Enerfp", "ft.lbs."},
    {"Maxpe", "Maxpe", nullptr, "Maxpepsi", "psi"},
    {"Vbrannt", "Vbrannt", "%"},
    {"wgrad", "wgrad", "%"},
    {"Sdau", "Sdau", "ms"},
    {"ptime", "ptime", "ms"},
    {"tbrs", "tbrs", "ms"},
    {"xbrsmm", "xbrsmm", "mm", "xbrsin", "in."},
    {"cmratio", "cmratio", ""},
    {"exprat", "exprat", ""},
    {"ladich", "ladich", "g/cm³"},
    {"endich", "endich", "J/cm³"},
};

std::string plain(std::string text) {
  std::erase(text, '\r');
  return text;
}

// The parts that are not empty, parted by commas.
std::string joined(std::initializer_list<std::string> parts) {
  std::string text;
  for (const std::string& part : parts)
    if (!trim(part).empty()) text += (text.empty() ? "" : ", ") + std::string(trim(part));
  return text;
}

std::string panel_text(const Session& s) {
  const auto figure = [&](const char* name) { return field(s, screen_name(s, Role::results), name).text; };
  const DataBlock& block = s.shown.block;
  std::string text =
      joined({block.cartridge, block.bullet}) + "\n" + joined({block.powder, block.MPgn + " gr"}) + "\n\n";
  for (const PanelLine& line : kPanel) {
    const std::string unit = line.unit ? line.unit : chosen_pressure_unit(s);
    std::string row = fit(s.language.text("form5", line.caption), 34) + pad_left(figure(line.field), 10) +
                      " " + pad_right(unit, 6);
    if (line.other) row += pad_left(figure(line.other), 10) + " " + line.other_unit;
    if (line.field == std::string_view("tbrs")) row += "  " + figure("Labelaburn");
    text += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
  }
  return text + "\n" + std::string(trim(figure("merker"))) + "\n";
}

std::string shot_text(Session& s, bool curve) {
  std::string text = plain(panel_text(s));
  if (!curve) return text;
  SetDisplayMode(s, 0);
  return text + "\n" + output_text(s);
}

// A picture that is asked for: a standard diagram, or a pair of quantities of the optional one.
struct Picture {
  int type = 0;  // 0: the pair
  int x = 0, y = 0;
  std::string file;
};

// A whole number that is all of a text and at most that; else nothing.
std::optional<int> number_up_to(const std::string& text, int most) {
  if (text.empty() || text.size() > 2 || text.find_first_not_of("0123456789") != std::string::npos)
    return std::nullopt;
  const int value = std::stoi(text);
  return value <= most ? std::optional(value) : std::nullopt;
}

Picture picture_of(const std::string& diagram) {
  const auto colon = std::min(diagram.find(':'), diagram.size());
  const std::string kind = diagram.substr(0, colon);
  const auto comma = std::min(kind.find(','), kind.size());
  const auto type = number_up_to(kind, 6), x = number_up_to(kind.substr(0, comma), kXQuantities - 1),
             y = number_up_to(kind.substr(std::min(comma + 1, kind.size())), kYQuantities - 1);
  const bool pair = comma < kind.size() && x && y;
  if (colon == diagram.size() || !(pair || type.value_or(0) > 0))
    throw Stop{kWrongUsage,
               "--diagram: not TYPE:FILE with TYPE 1 to 6, or X,Y with X 0 to 5 and Y 0 to 15: " + diagram};
  const std::string file = diagram.substr(colon + 1);
  if (!file_has_extension(file, "svg"))
    throw Stop{
        kWrongUsage,
        "--diagram: without a window system only svg can be drawn; the window program saves png and pdf: " +
            file};
  return pair ? Picture{0, *x, *y, file} : Picture{*type, 0, 0, file};
}

}  // namespace

LimitOfRun limit_of(const Session& s) {
  const double pmax = 1e6 * s.shown.state.dim.zul_P;
  const PressureState state = pressure_state(s.result.pMax, s.shown.state.dim.zul_P);
  static constexpr const char* kNames[] = {"below", "below", "near", "over", "unknown"};
  return {pmax, s.result.pMax / pmax, state, kNames[static_cast<std::size_t>(state)]};
}

double muzzle_energy(const Session& s) {
  const double v = s.curve.v[static_cast<std::size_t>(s.result.lastIdx)];
  return v * v * s.shown.state.dim.Bwg / kEnergyJoule;
}

Json shot_json(const Session& s, const CliUser& user, bool curve) {
  Json json = answer_head(s);
  json["result"] = result_json(s);
  json["limit"] = limit_json(limit_of(s));
  json["panel"] = panel_json(s);
  json["notes"] = notes_json(s);
  json["warnings"] = warning_keys(s, user);
  if (curve) json["curve"] = curve_json(s);
  return json;
}

void run_shot(Session& s, CliUser& user) {
  if (s.options.grftyp < 1) SetDisplayMode(s, 6);
  if (recalculate(s) == 0) throw refusal_of(s, user);
}

namespace {

// The diagram of the type as a picture of its own, on light paper.
void draw_diagram_file(Session& s, const Console& console, const std::string& diagram) {
  constexpr double width = 1000, height = 650;
  const Picture picture = picture_of(diagram);
  if (picture.type > 0)
    SetDisplayMode(s, picture.type);
  else if (!show_optional(s, picture.x, picture.y))
    throw Stop{kRefused, s.language.msg(470)};
  deliver(console, picture.file, to_svg(output_diagram(s, width, height, estimated_text_width).list));
}

std::string answer_text(Session& s, const CliUser& user, const ShotArgs& args) {
  if (args.load.format == "csv") return curve_csv(s);
  if (args.load.format == "text") return shot_text(s, args.curve);
  Json json = shot_json(s, user, args.curve);
  if (args.load.format == "json") return json_text(json);
  Json line{{"file", args.load.loads.front()}};
  line.update(json);
  return json_text(line, -1);
}

int one_shot(Session& s, CliUser& user, const Console& console, const ShotArgs& args) {
  take_load(s, user, console, args.load);
  run_shot(s, user);
  refresh_screens(s);
  save_load(s, args.load);
  deliver(console, args.load.output, answer_text(s, user, args));
  if (!args.diagram.empty()) draw_diagram_file(s, console, args.diagram);
  return kDone;
}

int shot_command(Session& s, CliUser& user, const Console& console, const ShotArgs& args) {
  if (!args.diagram.empty()) {
    keep_inputs(s, picture_of(args.diagram).file, args.load.loads);
  }
  if (is_batch(args)) return shots_command(s, user, console, args);
  try {
    return one_shot(s, user, console, args);
  } catch (const Refusal& why) {
    return refuse(console, args.load.format, args.load.output, why);
  }
}

}  // namespace

CliCommand bind_shot(CLI::App& program) {
  CLI::App* command = program.add_subcommand("shot", "calculate a shot, or many");
  auto args = std::make_shared<ShotArgs>();
  add_load_options(*command, args->load, {"text", "json", "jsonl", "csv"}, true);
  command->add_flag("--curve", args->curve, "with the points of the shot");
  command->add_option("--loads", args->list, "FILE of loads, a name a line; - for standard input");
  command->add_option("--sweep", args->sweeps, "KEY=FROM:TO:STEP: a run for each value; twice for a grid")
      ->allow_extra_args(false);
  command->add_option("--diagram", args->diagram,
                      "TYPE:FILE: draw diagram 1 to 6, or X,Y: quantity Y over X");
  return {command, [args](Session& s, CliUser& user, const Console& console) {
            return shot_command(s, user, console, *args);
          }};
}

}  // namespace tv
