// One shot of a load that is at hand, and many in one process.
#pragma once

#include "cli/load.h"
#include "engine/results.h"

namespace tv {

struct ShotArgs {
  LoadArgs load;
  bool curve = false;
  std::string list;                 // file of loads, a name a line
  std::vector<std::string> sweeps;  // "KEY=FROM:TO:STEP"
  std::string diagram;              // "TYPE:FILE"
};

// How the peak of the last run stands to the limit of the cartridge.
struct LimitOfRun {
  double pmax = 0, share = 0;  // Pa; peak over it. Neither is known when the state is
  PressureState state = PressureState::unknown;
  const char* name = "";  // "below", "near", "over", "unknown"
};
LimitOfRun limit_of(const Session& s);
double muzzle_energy(const Session& s);  // J, as the panel shows it

// Calculates the load as it stands. Throws Refusal.
void run_shot(Session& s, CliUser& user);
// The answer to it; the screens are up to date.
Json shot_json(const Session& s, const CliUser& user, bool curve);

// More than one run is asked for, or may be.
bool is_batch(const ShotArgs& args);
int shots_command(Session& s, CliUser& user, const Console& console, const ShotArgs& args);

}  // namespace tv
