// The words of one line of a script.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tv {

struct Word {
  std::string text;
  bool quoted = false;
};

// Words are parted by blanks; one in double quotes keeps its blanks, and in it \" is a quote, \\ a backslash
// and \n a line end. "#" outside quotes at the start of a word begins a comment, but for "#3" (a number).
// Nothing if a quote is not closed.
std::optional<std::vector<Word>> split_line(std::string_view line);

// "Form3.zul_P(0)" as screen and control name; both empty if there is no point.
struct ControlPlace {
  std::string screen, control;
};
ControlPlace control_place(std::string_view text);

}  // namespace tv
