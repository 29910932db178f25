// The names that the file box gives: tested in one place, for whatever kind of file.
#include <algorithm>

#include "session/files.h"
#include "text/file.h"

namespace tv {
namespace {

constexpr std::size_t kLongestName = 255, kLongestPath = 4095;  // bytes
constexpr std::string_view kForbidden[] = {"\"", "?", "*", ";", ":",  "=", "'", "^",
                                           "°",  ">", "<", "|", "\\", "/", "%"};

bool tell(Session& s, const char* key, const std::string& name) {
  warn(s, MessageText(s).caption("files", key).line().add(name));
  return false;
}

bool has_forbidden(const std::string& name) {
  return std::ranges::any_of(kForbidden,
                             [&](std::string_view c) { return name.find(c) != std::string::npos; });
}

bool file_name_valid(Session& s, const std::string& file, FileMode mode) {
  const std::string name = file_name_only(file);
  if (name.size() > kLongestName || file.size() > kLongestPath) return tell(s, "filexceed", name);
  if (trim(name).empty() || (mode == FileMode::save && has_forbidden(name)))
    return tell(s, "filerror", ">> " + name + " <<");
  return true;
}

std::string with_extension(std::string file, const std::vector<std::string>& extensions) {
  if (extensions.empty() || file_name_only(file).empty() || !file_extension(file).empty()) return file;
  return file + (file.ends_with('.') ? "" : ".") + extensions.front();
}

bool extension_fits(Session& s, const std::string& file, const std::vector<std::string>& extensions) {
  for (const std::string& extension : extensions)
    if (file_has_extension(file, extension)) return true;
  if (extensions.empty()) return true;
  warn(s, MessageText(s)
              .caption("files", "extonly")
              .add(" ." + extensions.front())
              .line()
              .add(file_name_only(file)));
  return false;
}

bool file_exists_check(Session& s, std::string& file, FileMode mode) {
  if (mode == FileMode::save)
    return !file_exists(file) ||
           ask_yes_no(s, MessageText(s).caption("files", "fileover").line().add(file_name_only(file)));
  const std::string found = data_path(s, file);
  if (!file_exists(found)) return tell(s, "filerror", file);
  file = found;  // it may differ in the case of letters
  return true;
}

// Exports have no file in use that would tell the folder.
struct KeptFolder {
  DialogKind kind;
  std::string Options::*folder;
};
constexpr KeptFolder kFolders[] = {{DialogKind::text, &Options::txtdir},
                                   {DialogKind::picture, &Options::picdir},
                                   {DialogKind::spreadsheet, &Options::tabdir}};

std::string* kept_folder(Session& s, DialogKind kind) {
  const auto* at = std::ranges::find(kFolders, kind, &KeptFolder::kind);
  return at == std::end(kFolders) ? nullptr : &(s.options.*at->folder);
}

}  // namespace

std::optional<FileAnswer> ask_file(Session& s, FileBox box, const std::vector<std::string>& extensions,
                                   const std::function<bool(const std::string&)>& refused) {
  std::string* const kept = kept_folder(s, box.kind);
  if (kept && folder_exists(*kept)) box.folder = *kept;
  for (;;) {
    auto answer = s.user->choose_file(box);
    if (!answer) return answer;
    const std::string typed = answer->file;
    answer->file = with_extension(typed, extensions);
    if (file_name_valid(s, answer->file, box.mode) && !(refused && refused(answer->file)) &&
        extension_fits(s, answer->file, extensions) && file_exists_check(s, answer->file, box.mode)) {
      if (kept) *kept = file_folder(answer->file);
      return answer;
    }
    const std::string name = file_name_only(typed);
    box.name = name == box.name ? std::string() : name;  // what was refused is not proposed for ever
    if (const std::string folder = file_folder(typed); folder_exists(folder)) box.folder = folder;
    if (box.mode == FileMode::save) box.comment = answer->comment;
  }
}

}  // namespace tv
