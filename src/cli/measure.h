// What the commands around measured velocities and the trust in a prediction share.
#pragma once

#include "calculators/chronograph.h"
#include "cli/load.h"

namespace tv {

// A chronograph's export, and what the person says of it.
struct StringsArgs {
  std::string file, unit;
  double column = 0;  // of the velocities, from 1; 0: found out
};
void add_strings_options(CLI::App& command, StringsArgs& args);
// Throws Stop, naming the line, if the file is not understood.
ChronographRead read_strings(const Session& s, const Console& console, const StringsArgs& args);

// Reads the load and runs its shot, whatever view the settings have. Throws Stop or Refusal.
void run_load(Session& s, CliUser& user, const Console& console, const LoadArgs& args);

// Refused for a reason that no box has told: the number of its text.
Refusal refused_by(const Session& s, int message, const std::string& stage);

}  // namespace tv
