// What the commands share: how one ends early, the session they work on, and how an answer is delivered.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/cli.h"
#include "cli/cli_user.h"
#include "session/session.h"

namespace tv {

using Json = nlohmann::ordered_json;

// Ends the command. The message goes to standard error; empty if the user has been told already.
struct Stop {
  int exit_code;
  std::string message;
};

struct CommonArgs {
  std::string root, language;
  bool yes = false;
};

struct Console {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

// A session ready for one command, the language chosen. Without writes_files it leaves every file and folder
// alone, and has no settings file that a failed read could fall back to. Throws Stop.
void begin_session(Session& s, CliUser& user, const CommonArgs& args, bool writes_files);

// To standard output, or into the file if one is named. Throws Stop if that cannot be written.
void deliver(const Console& console, const std::string& file, const std::string& text);
std::string json_text(const Json& json, int indent = 2);

// The arguments of the commands that calculate a load.
struct LoadArgs {
  std::string load;
  std::vector<std::string> sets;  // "KEY=VALUE"
  std::string step, units, pressure;
  bool curve = false;
  std::string format = "text", output;
};

// Reads the load, then takes the sets as if they were typed, in their order; then step and units. Throws
// Stop.
void take_load(Session& s, const LoadArgs& args);
// The keys of the load of the last run with their texts.
Json load_json(const Session& s);
// {"program", "version", "load"}
Json answer_head(const Session& s);

// Delivers {"error": ...} when the format is json, and gives the exit code of a refusal. Standard error has
// the box, and a line that names stage and field.
int tell_refusal(const Session& s, const CliUser& user, const Console& console, const LoadArgs& args);

int shot_command(Session& s, CliUser& user, const Console& console, const LoadArgs& args);

struct LoadTableArgs {
  LoadArgs load;
  double step_percent = 0, step_grains = 0;  // 0: as in the settings
  int ba_tolerance = 0;
};
int load_table_command(Session& s, CliUser& user, const Console& console, const LoadTableArgs& args);

struct PowderTableArgs {
  LoadArgs load;
  std::string powders, sort;
  int strategy = 0;
  bool descending = false;
};
int powder_table_command(Session& s, CliUser& user, const Console& console, const PowderTableArgs& args);

int records_command(Session& s, const Console& console, const std::string& file, const std::string& format,
                    const std::string& output);

int play_command(Session& s, CliUser& user, const Console& console, const std::string& script);

}  // namespace tv
