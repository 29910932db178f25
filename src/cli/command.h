// What the commands share: how each is bound to the command line and how one ends early, the session they work
// on, how an input is read and an answer delivered.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/cli.h"
#include "cli/cli_user.h"
#include "session/session.h"
#include "text/file.h"

namespace CLI {
class App;
}

namespace tv {

using Json = nlohmann::ordered_json;

struct Console {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

// Ends the command. The message goes to standard error; empty if the user has been told already.
struct Stop {
  int exit_code;
  std::string message;
};

// Why the program refused, or a calculation failed: words for a person, keys for a script.
struct Refusal {
  std::string message;  // key of a text: "msg182", "428msg"
  std::string text;     // in the language, with field and range
  std::string stage, field;
  std::optional<Limits> range;  // of the value, in the unit of the field or key
};
Json error_json(const Refusal& refusal);
// Of the session's last calculation, by the box it showed and the field it sent the user to.
Refusal refusal_of(const Session& s, const CliUser& user);
// Tells it on standard error; delivers {"error": ...} where the format is json. Gives the exit code.
int refuse(const Console& console, const std::string& format, const std::string& output, const Refusal& why);

// A command bound to the command line: its options are told to the parser, and it runs when it was asked for.
struct CliCommand {
  CLI::App* app;
  std::function<int(Session&, CliUser&, const Console&)> run;
  bool writes_files = false;  // works on the data root as the window program does
};
// Each makes its subcommand. A new command is one such function and its line in run.cpp.
CliCommand bind_shot(CLI::App& program);
CliCommand bind_load_table(CLI::App& program);
CliCommand bind_powder_table(CLI::App& program);
CliCommand bind_records(CLI::App& program);
CliCommand bind_keys(CLI::App& program);
CliCommand bind_play(CLI::App& program);
CliCommand bind_measured(CLI::App& program);
CliCommand bind_fit(CLI::App& program);
CliCommand bind_band(CLI::App& program);
CliCommand bind_crosscheck(CLI::App& program);

struct CommonArgs {
  std::string root, language;
  bool yes = false, defaults = false;
};

// A session ready for one command, the language chosen. Without writes_files it leaves every file and folder
// alone, and has no settings file that a failed read could fall back to. With defaults the user's settings are
// neither read nor written. Throws Stop.
void begin_session(Session& s, CliUser& user, const CommonArgs& args, bool writes_files);

// The bytes of a file, of a pipe or device, or of standard input for "-". More than 64 MiB that do not lie in
// a file are a failure: a device may never end.
FileRead read_input(const Console& console, const std::string& file);

// To standard output, also for "-", or into the file that is named. Throws Stop if that cannot be written.
void deliver(const Console& console, const std::string& file, const std::string& text);
// Throws Stop if the output would take the place of a file that this command reads.
void keep_inputs(const Session& s, const std::string& output, const std::vector<std::string>& read);
std::string json_text(const Json& json, int indent = 2);

}  // namespace tv
