// The results panel: figures and notes of the last run, made once and kept with it.
#pragma once

#include "session/session.h"

namespace tv {

void show_panel(Session& s);  // from the last run, in the language in force
// The status line of the last run without the standing notice, in the language in force.
std::string run_line(const Session& s);
void clear_panel(Session& s);  // no run: no figures

}  // namespace tv
