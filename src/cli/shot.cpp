// One shot: the whole road from the load file to the results, and its answer in three forms.
#include <array>
#include <ostream>

#include <fmt/format.h>

#include "cli/command.h"
#include "screens/output_window.h"
#include "session/entry.h"
#include "session/run.h"
#include "text/codepage.h"

namespace tv {
namespace {

std::size_t points(const ShotResult& r) { return static_cast<std::size_t>(r.lastIdx) + 1; }

Json result_json(const ShotResult& r) {
  return {{"lastIdx", r.lastIdx},    {"pMax", r.pMax},       {"peakIdx", r.peakIdx},
          {"xPeak", r.xPeak},        {"vPeak", r.vPeak},     {"zPeak", r.zPeak},
          {"vMuzzle", r.vMuzzle},    {"zMuzzle", r.zMuzzle}, {"peakState", r.peakState},
          {"notBurnt", r.notBurnt},  {"burnIdx", r.burnIdx}, {"idx95", r.idx95},
          {"z1Idx", r.z1Idx},        {"p10Idx", r.p10Idx},   {"t10", r.t10},
          {"ptime", r.ptime},        {"tStart", r.tStart},   {"tailIdx", r.tailIdx},
          {"pBasePeak", r.pBasePeak}};
}

Json panel_json(const Session& s) {
  Json json = Json::object();
  const Screen& results = s.screens.find(screen_name(s, Role::results))->second;
  for (const Control& control : controls_of(*results.spec))
    json[control.name] = results.fields.find(control.name)->second.text;
  return json;
}

Json notes_json(const RunNotes& notes) {
  Json json = Json::array();
  if (notes.overfill > 0) json.push_back("msg151");
  for (std::size_t i = 0; i < static_cast<std::size_t>(notes.count); ++i)
    json.push_back("fwarn" + std::to_string(static_cast<int>(notes.notes[i])));
  return json;
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

Json shot_json(const Session& s, const CliUser& user, bool curve) {
  Json json = answer_head(s);
  json["result"] = result_json(s.result);
  json["panel"] = panel_json(s);
  json["notes"] = notes_json(s.result.runNotes);
  json["warnings"] = user.warning_keys();
  if (curve) json["curve"] = curve_json(s);
  return json;
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

// Where a calculation stopped, by the field that the user was sent to.
std::string refusal_stage(const Session& s, const CliUser& user) {
  if (user.focus_screen == screen_name(s, Role::dimensions)) return "transferInputs";
  if (user.focus_screen == screen_name(s, Role::powder))
    return user.focus_field == "ini_press1" ? "checkStartPressure" : "prepareShot";
  if (!user.focus_screen.empty()) return user.focus_screen;
  const std::string stage = stage_name(s.shown.outcome.stage);
  return stage.empty() ? "runShot" : stage;
}

}  // namespace

int tell_refusal(const Session& s, const CliUser& user, const Console& console, const LoadArgs& args) {
  const bool told = !user.shown.empty() && !user.shown.back().keys.empty();
  const std::string message = told ? user.shown.back().keys.front() : "";
  const std::string stage = refusal_stage(s, user);
  console.err << "ternovale-cli: " << (user.focus_field.empty() ? "failed in " : "refused in ") << stage
              << (user.focus_field.empty() ? "" : ", field " + user.focus_field) << "\n";
  if (args.format == "json")
    deliver(console, args.output,
            json_text({{"error", {{"message", message}, {"stage", stage}, {"field", user.focus_field}}}}));
  return kRefused;
}

int shot_command(Session& s, CliUser& user, const Console& console, const LoadArgs& args) {
  take_load(s, args);
  if (s.options.grftyp < 1) SetDisplayMode(s, 6);
  if (recalculate(s) == 0) return tell_refusal(s, user, console, args);
  refresh_screens(s);
  const std::string text = args.format == "json"  ? json_text(shot_json(s, user, args.curve))
                           : args.format == "csv" ? curve_csv(s)
                                                  : shot_text(s, args.curve);
  deliver(console, args.output, text);
  return kDone;
}

}  // namespace tv
