// Breaks a text into lines.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tv {

// Lines that fit, broken at blanks and at the text's own line breaks; a word that does not fit by itself has
// a line of its own. At least one line.
std::vector<std::string> wrap_words(std::string_view text,
                                    const std::function<bool(const std::string& line)>& fits);

}  // namespace tv
