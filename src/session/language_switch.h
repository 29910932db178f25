// The language in force, at the start and when it is changed.
#pragma once

#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

// False: no language file, and the user gave up.
bool language_read(Session& s, const std::string& file);
void language_switch(Session& s, std::string_view language);  // "german", "english", "french", "russian"
std::string language_file(const Session& s, std::string_view language);
// As the settings keep it: its name in lower case, below the data root or the delivered data without their
// folder, which may move.
std::string stored_language(const Session& s);

}  // namespace tv
