// Strings out of a file or the clipboard, and how it is told when they were not understood.
#pragma once

#include <string>

#include "calculators/chronograph.h"
#include "session/session.h"

namespace tv {

// "The measured file was not understood; nothing was changed. Line: 7. ..." with the reason.
std::string unread_text(const Session& s, Unread error, int line);

}  // namespace tv
