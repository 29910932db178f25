// Tool tips as the user edits them: kept in a file of his own, lan/tn_LANGUAGE.tip below the data root, which
// goes before the delivered one.
#pragma once

#include "session/session.h"

namespace tv {

std::string own_tip_file(const Session& s);  // of the language in force
// Asks for a new text of the tip, stores it and renews the tips on show. Marks (¬) stand for line breaks.
void edit_tip(Session& s, const std::string& key);
// False on failure, which has been told. As one value up to 512 characters; a longer text goes on under the
// name with a number added, and is cut where that would be the name of another control.
bool store_tip(Session& s, const std::string& key, const std::string& text);
// On any screen.
bool control_exists(const Session& s, std::string_view name);

}  // namespace tv
