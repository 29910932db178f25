// Start and end of the program, without windows.
#pragma once

#include "session/session.h"

namespace tv {

// Data root, settings, language, record files, the load of the settings file. False if the program is to end
// (no language file and the user gave up).
bool start(Session& s, const PlaceHints& hints);
// The user agreed to end: settings and load are saved, the transfer file's bullet file is cleared.
bool ask_to_end(Session& s);     // false: cancelled
bool save_and_exit(Session& s);  // false: it could not be saved, and the user stays

}  // namespace tv
