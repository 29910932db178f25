// Many shots in one process: several loads, and keys that run over values. A run that fails is a line of its
// own, and the others go on.
#include <cmath>
#include <ostream>
#include <sstream>

#include <fmt/format.h>

#include "cli/keys.h"
#include "cli/shot.h"
#include "session/entry.h"
#include "session/loads.h"
#include "session/run.h"
#include "text/number.h"

namespace tv {
namespace {

// --- what is run

struct Sweep {
  std::string key;
  std::vector<std::string> values;
};

// The values from one to the other, both included, whichever way they lie.
std::vector<std::string> values_of(double from, double to, double step) {
  constexpr double most = 1e6, rounding = 1e-9;
  std::vector<std::string> values;
  const double count = std::floor(std::fabs((to - from) / step) * (1 + rounding) + rounding);
  if (!(count < most)) return values;
  const double way = to < from ? -std::fabs(step) : std::fabs(step);
  // Twelve digits: a sum of steps such as 0.1 is what a person would have written.
  for (double i = 0; i <= count; ++i) values.push_back(fmt::format("{:.12g}", from + i * way));
  return values;
}

Sweep sweep_of(Session& s, const std::string& text) {
  const Stop wrong{kWrongUsage, "--sweep: not KEY=FROM:TO:STEP: " + text};
  const auto equals = text.find('='), first = text.find(':'), second = text.find(':', first + 1);
  if (equals == std::string::npos || first < equals || second == std::string::npos) throw wrong;
  const auto from = finite_number(text.substr(equals + 1, first - equals - 1));
  const auto to = finite_number(text.substr(first + 1, second - first - 1));
  const auto step = finite_number(text.substr(second + 1));
  const std::string name = text.substr(0, equals);
  const auto key = find_key(s, name);
  if (!key) throw Stop{kWrongUsage, "no such key: " + name + "; `ternovale-cli keys` lists them"};
  const bool number = key->kind == KeyKind::number || key->kind == KeyKind::whole;
  if (!from || !to || !step || *step == 0 || !number) throw wrong;
  Sweep sweep{std::string(key->key), values_of(*from, *to, *step)};
  if (sweep.values.empty()) throw Stop{kWrongUsage, "--sweep: more than a million values: " + text};
  return sweep;
}

std::vector<std::string> loads_of(const Console& console, const ShotArgs& args) {
  std::vector<std::string> loads = args.load.loads;
  if (args.list.empty()) return loads;
  const FileRead read = read_input(console, args.list);
  if (read.failure) throw Stop{kFileTrouble, args.list + ": " + Language().failure(read.failure)};
  std::istringstream lines(read.bytes);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) loads.push_back(line);
  }
  return loads;
}

// --- one line of the answer

struct Run {
  std::string file;
  std::vector<std::pair<std::string, std::string>> swept;  // key, value
};

constexpr const char* kFigures[] = {"charge_gr", "pMax",  "vMuzzle", "energy", "zMuzzle", "loadingRatio",
                                    "ptime",     "limit", "notes",   "error",  "text"};

std::string cell(const Json& value) {
  if (value.is_null()) return {};
  if (value.is_number()) return fmt::format("{}", value.get<double>());
  std::string text = value.is_string() ? value.get<std::string>() : std::string();
  for (const Json& word : value.is_array() ? value : Json::array())
    text += (text.empty() ? "" : " ") + word.get<std::string>();
  return text;
}

// A text that a spreadsheet would run gets an apostrophe, one with a comma or a quote quotes.
std::string csv_text_cell(std::string text) {
  if (!text.empty() && std::string_view("=+-@").find(text.front()) != std::string_view::npos)
    text.insert(0, "'");
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2) text.insert(at, "\"");
  return '"' + text + '"';
}

// The figures of a run under their names, in SI but for the charge; of a failed one its error.
Json figures_of(const Json& answer) {
  Json row = Json::object();
  if (answer.contains("error")) {
    row["error"] = answer["error"]["message"];
    row["text"] = answer["error"]["text"];
    return row;
  }
  row["charge_gr"] = read_stored(answer["load"]["powwht"].get<std::string>()).value;
  for (const char* name : {"pMax", "vMuzzle", "energy", "zMuzzle", "loadingRatio", "ptime"})
    row[name] = answer["result"][name];
  row["limit"] = answer["limit"]["state"];
  row["notes"] = answer["notes"];
  return row;
}

std::string csv_line(const Run& run, const Json& answer) {
  std::string line = csv_text_cell(run.file);
  for (const auto& [key, value] : run.swept) line += "," + value;
  const Json row = figures_of(answer);
  for (const char* name : kFigures) {
    const Json value = row.contains(name) ? row[name] : Json();
    line += "," + (value.is_number() ? cell(value) : csv_text_cell(cell(value)));
  }
  return line + "\n";
}

std::string csv_head(const std::vector<Sweep>& sweeps) {
  std::string line = "file";
  for (const Sweep& sweep : sweeps) line += "," + sweep.key;
  for (const char* name : kFigures) line += "," + std::string(name);
  return line + "\n";
}

Json jsonl_object(const Run& run, Json&& answer) {
  Json::object_t json;
  json.reserve(run.swept.size() + answer.size() + 1);
  json.push_back({"file", run.file});
  for (const auto& [key, value] : run.swept) json.push_back({key, read_stored(value).value});
  for (auto& [key, value] : answer.get_ref<Json::object_t&>()) json.push_back({key, std::move(value)});
  return json;
}

// For a person: what ran, peak and velocity, and how it stands to the limit.
std::string text_line(const Run& run, const Json& answer) {
  std::string line = file_name_only(run.file);
  for (const auto& [key, value] : run.swept) line += " " + key + "=" + value;
  line = fmt::format("{:<44}", line);
  if (answer.contains("error")) return line + " " + answer["error"]["text"].get<std::string>() + "\n";
  const Json& result = answer["result"];
  return line + fmt::format(" {:>8.1f} MPa {:>8.1f} m/s  {}\n", result["pMax"].get<double>() / 1e6,
                            result["vMuzzle"].get<double>(), answer["limit"]["state"].get<std::string>());
}

// --- the runs

// The answers, one after the other: at once to standard output, or together into a file.
class Answers {
public:
  Answers(const Console& console, const ShotArgs& args, const std::vector<Sweep>& sweeps)
      : console_(console), args_(args) {
    if (format() == "csv") write(csv_head(sweeps));
  }
  void add(const Run& run, Json&& answer) {
    failed_ = failed_ || answer.contains("error");
    if (format() == "csv") write(csv_line(run, answer));
    if (format() == "text") write(text_line(run, answer));
    if (format() == "jsonl") write(json_text(jsonl_object(run, std::move(answer)), -1));
    if (format() == "json") all_.push_back(jsonl_object(run, std::move(answer)));
  }
  int finish() {
    if (format() == "json") write(json_text(all_));
    if (to_file()) deliver(console_, args_.load.output, text_);
    return failed_ ? kRefused : kDone;
  }

private:
  const std::string& format() const { return args_.load.format; }
  bool to_file() const { return !args_.load.output.empty() && args_.load.output != "-"; }
  void write(const std::string& text) { to_file() ? void(text_ += text) : deliver(console_, "", text); }

  const Console& console_;
  const ShotArgs& args_;
  Json all_ = Json::array();
  std::string text_;
  bool failed_ = false;
};

// The load as it was read and changed, before the keys that are swept.
struct Prepared {
  CalcState state;
  LoadData load;
  Options options;
};

void restore(Session& s, const Prepared& at) {
  const LoadNumbers before(s);
  s.state = at.state;
  s.load = at.load;
  s.options = at.options;
  before.refresh(s);
}

Json answer_of(Session& s, CliUser& user, const Console& console, const Run& run, const ShotArgs& args) {
  try {
    for (const auto& [key, value] : run.swept) set_key(s, key, value);
    fit_load(s, user, args.load);
    run_shot(s, user);
    if (const Screen* results = screen_of(s, Role::results)) results->spec->refresh(s);
    return shot_json(s, user, args.curve);
  } catch (const Refusal& why) {
    refuse(console, "text", "", why);
    return {{"error", error_json(why)}};
  }
}

// Calls run(values) for each point of the grid, the last sweep running fastest.
template <class Each>
void each_point(const std::vector<Sweep>& sweeps, std::size_t n, Run& run, const Each& each) {
  if (n == sweeps.size()) return each(run);
  for (const std::string& value : sweeps[n].values) {
    run.swept.emplace_back(sweeps[n].key, value);
    each_point(sweeps, n + 1, run, each);
    run.swept.pop_back();
  }
}

Refusal unreadable(const Session& s, const CliUser& user) {
  Refusal why = refusal_of(s, user);
  why.stage = "read";
  return why;
}

// Nothing of the run before is told of this one.
void forget(Session& s, CliUser& user) {
  user.shown.clear();
  user.focus_screen = user.focus_field = "";
  s.refusal.reset();
}

void run_file(Session& s, CliUser& user, const Console& console, const ShotArgs& args,
              const std::vector<Sweep>& sweeps, const std::string& file, Answers& answers) {
  Run run{file, {}};
  forget(s, user);
  try {
    if (!read_load(s, console, file)) throw unreadable(s, user);
    change_load(s, args.load);
  } catch (const Refusal& why) {
    refuse(console, "text", "", why);
    return answers.add(run, {{"error", error_json(why)}});
  }
  const Prepared prepared{s.state, s.load, s.options};
  const std::vector<ShownBox> told = user.shown;
  each_point(sweeps, 0, run, [&](const Run& one) {
    restore(s, prepared);
    forget(s, user);
    user.shown = told;
    answers.add(one, answer_of(s, user, console, one, args));
  });
}

}  // namespace

bool is_batch(const ShotArgs& args) {
  return args.load.loads.size() != 1 || !args.list.empty() || !args.sweeps.empty();
}

int shots_command(Session& s, CliUser& user, const Console& console, const ShotArgs& args) {
  if (!args.diagram.empty() || !args.load.save.empty())
    throw Stop{kWrongUsage, "--diagram and --save are for one run"};
  if (args.load.loads.empty() && args.list.empty()) throw Stop{kWrongUsage, "LOAD is required"};
  if (args.sweeps.size() > 2) throw Stop{kWrongUsage, "--sweep: at most twice"};
  std::vector<Sweep> sweeps;
  for (const std::string& text : args.sweeps) sweeps.push_back(sweep_of(s, text));
  prepare_session(s, args.load, {args.list});
  const std::vector<std::string> loads = loads_of(console, args);
  keep_inputs(s, args.load.output, loads);
  Answers answers(console, args, sweeps);
  const Action whole(s);  // no screen is on show
  for (const std::string& file : loads) run_file(s, user, console, args, sweeps, file, answers);
  return answers.finish();
}

}  // namespace tv
