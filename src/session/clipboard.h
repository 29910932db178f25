// The clipboard, where there is one: the results of a screen as text, and text that is pasted as a whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

// What the fields of a screen show, a line for each row of its form: caption, value, unit, value, unit,
// parted by tabs. Empty fields are left out.
std::string results_text(const Session& s, std::string_view screen);
void copy_results(Session& s, std::string_view screen);

// Nothing if there is no clipboard or no text on it.
std::optional<std::string> pasted_text(Session& s);

}  // namespace tv
