#include "text/wrap.h"

namespace tv {
namespace {

// The part up to the mark, which is taken off with it.
std::string_view take(std::string_view& rest, char mark, bool& more) {
  const std::size_t end = rest.find(mark);
  more = end != std::string_view::npos;
  const std::string_view part = rest.substr(0, end);
  rest = more ? rest.substr(end + 1) : std::string_view();
  return part;
}

}  // namespace

std::vector<std::string> wrap_words(std::string_view text,
                                    const std::function<bool(const std::string& line)>& fits) {
  std::vector<std::string> lines;
  for (bool more = true; more;) {
    std::string_view paragraph = take(text, '\n', more);
    std::string line;
    for (bool words = true; words;) {
      const std::string word(take(paragraph, ' ', words));
      if (word.empty()) continue;
      const std::string longer = line.empty() ? word : line + " " + word;
      if (!line.empty() && !fits(longer)) {
        lines.push_back(line);
        line = word;
      } else {
        line = longer;
      }
    }
    lines.push_back(line);
  }
  return lines;
}

}  // namespace tv
