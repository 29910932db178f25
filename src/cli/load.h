// The load of a calculation on the command line: read from its file, and changed as a person would, by picks
// and by typing.
#pragma once

#include <memory>

#include "cli/command.h"

namespace tv {

// What the charge is fitted to.
struct FitArgs {
  enum class Meets { nothing, pmax, velocity, fill };
  Meets meets = Meets::nothing;
  double target = 0;  // MPa, m/s, percent
};

// The arguments of the commands that calculate a load.
struct LoadArgs {
  std::vector<std::string> loads;         // files; "-" is standard input
  std::vector<std::string> sets;          // "KEY=VALUE"
  std::vector<std::string> records;       // files whose records join the lists
  std::string cartridge, bullet, powder;  // names of records
  std::string step, units, pressure, fit, save;
  std::string format = "text", output;
};

// Tells them to the parser; several: more than one LOAD, or none, is possible.
void add_load_options(CLI::App& command, LoadArgs& args, const std::vector<std::string>& formats,
                      bool several = false);
// The text as a finite number from end to end, with a point.
std::optional<double> finite_number(std::string_view text);
// An option that holds one, from least to most.
void add_number(CLI::App& command, const std::string& name, double& value, double least, double most,
                const std::string& what);

// What is the same for every load of a command: record files, units, output file. Throws Stop.
void prepare_session(Session& s, const LoadArgs& args, std::vector<std::string> read = {});
// False if it could not be read; the user has been told why.
bool read_load(Session& s, const Console& console, const std::string& file);
// Picks, sets and step, in this order. Throws Stop for wrong usage, Refusal for what nobody could pick or type.
void change_load(Session& s, const LoadArgs& args);
// Finds the charge that --fit asks for. Throws Refusal where there is none.
void fit_load(Session& s, CliUser& user, const LoadArgs& args);
// All three, for a command of one load; throws Stop where it could not be read.
void take_load(Session& s, CliUser& user, const Console& console, const LoadArgs& args);
// Stores it as changed, where --save asks for that. Throws Stop.
void save_load(Session& s, const LoadArgs& args);

// One key as if it was typed. Throws Stop if there is no such key, Refusal if nobody could type that.
void set_key(Session& s, const std::string& key, const std::string& text);

// A command whose refusal is told in the form of the answer.
template <class Args, class Run>
auto telling(std::shared_ptr<Args> args, Run run) {
  return [args, run](Session& s, CliUser& user, const Console& console) {
    try {
      return run(s, user, console, *args);
    } catch (const Refusal& why) {
      return refuse(console, args->load.format, args->load.output, why);
    }
  };
}

// The keys of the load of the last run with their texts.
Json load_json(const Session& s);
// {"program", "version", "load"}
Json answer_head(const Session& s);

}  // namespace tv
