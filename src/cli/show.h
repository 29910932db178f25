// What a screen shows, as JSON.
#pragma once

#include <string_view>

#include "cli/command.h"

namespace tv {

Json screen_json(const Session& s, std::string_view screen);
Json boxes_json(const std::vector<ShownBox>& boxes);
// A draw list.
Json draw_json(const DrawList& list);
// The bare text of a text view or a field.
std::string bare_text(const Session& s, std::string_view screen, std::string_view control);

}  // namespace tv
