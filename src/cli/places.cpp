#include "cli/places.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "text/file.h"

namespace tv {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string environment_or(const char* name, const std::string& otherwise) {
  const std::string value = environment(name);
  return value.empty() ? otherwise : value;
}

std::string program_folder() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : program.parent_path().string();
}

// From the desktop's list of the user's folders, a line such as XDG_DOCUMENTS_DIR="$HOME/Papers".
std::string documents_folder(const std::string& home) {
  constexpr std::string_view key = "XDG_DOCUMENTS_DIR=\"";
  const std::string text =
      read_file(environment_or("XDG_CONFIG_HOME", home + "/.config") + "/user-dirs.dirs").bytes;
  const std::string usual = home + "/Documents";
  for (std::size_t line = 0; line < text.size();) {
    const std::size_t end = std::min(text.find('\n', line), text.size());
    std::string_view row(text.data() + line, end - line);
    line = end + 1;
    if (!row.starts_with(key)) continue;
    row.remove_prefix(key.size());
    std::string value(row.substr(0, row.find('"')));
    if (value.starts_with("$HOME")) value = home + value.substr(5);
    return value.starts_with('/') ? value : usual;
  }
  return usual;
}

std::vector<std::string> split(const std::string& list) {
  std::vector<std::string> parts;
  for (std::size_t from = 0; from <= list.size();) {
    const std::size_t end = std::min(list.find(':', from), list.size());
    if (end > from) parts.push_back(list.substr(from, end - from));
    from = end + 1;
  }
  return parts;
}

}  // namespace

PlaceHints place_hints() {
  PlaceHints hints;
  const std::string home = environment("HOME");
  hints.program_folder = program_folder();
  if (!home.empty()) {
    hints.documents = documents_folder(home);
    hints.shared_data.push_back(environment_or("XDG_DATA_HOME", home + "/.local/share"));
  }
  for (const std::string& place : split(environment_or("XDG_DATA_DIRS", "/usr/local/share:/usr/share")))
    hints.shared_data.push_back(place);
  return hints;
}

}  // namespace tv
