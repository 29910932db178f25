#include "session/file_names.h"

#include <algorithm>

#include "session/message.h"
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
  const std::string given = file_extension(file);  // of "6.5 Creedmoor" it is none
  if (extensions.empty() || file_name_only(file).empty()) return file;
  if (!given.empty() && given.find(' ') == std::string::npos) return file;
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
      answer->comment = drop_foreign(answer->comment, s.language.page());
      return answer;
    }
    const std::string name = file_name_only(typed);
    box.name = name == box.name ? std::string() : name;  // what was refused is not proposed for ever
    if (const std::string folder = file_folder(typed); folder_exists(folder)) box.folder = folder;
    if (box.mode == FileMode::save) box.comment = answer->comment;
  }
}

std::string proposed_name(std::string_view words, std::string_view extension) {
  constexpr std::size_t kLong = 80;
  std::string name(words);
  for (const std::string_view c : kForbidden)
    for (std::size_t at; (at = name.find(c)) != std::string::npos;) name.replace(at, c.size(), " ");
  name.erase(0, name.find_first_not_of(" .,"));  // a file of a name with a point ahead is hidden
  for (const char* gap : {"  ", " ,"})
    for (std::size_t at; (at = name.find(gap)) != std::string::npos;) name.erase(at, 1);
  name = left(name, kLong);
  while (!name.empty() && std::string_view(" .,").find(name.back()) != std::string_view::npos)
    name.pop_back();
  return name.empty() ? name : name + "." + std::string(extension);
}

std::string data_path(const Session& s, std::string_view path) {
  const std::string own = resolve_path(s.roots.root, path);
  if (file_exists(own)) return own;
  const std::string given = resolve_path(s.roots.delivered, path);
  return file_exists(given) ? given : own;
}

std::string dialog_folder(const Session& s, const std::string& file, std::string_view otherwise,
                          FileMode mode) {
  const bool save = mode == FileMode::save;
  if (!file.empty()) {
    const std::string folder = file_folder(save ? resolve_path(s.roots.root, file) : data_path(s, file));
    if (folder_exists(folder)) return folder;
  }
  const std::string own = s.roots.root + std::string(otherwise);
  if (save && s.writes_files) make_folders(own);
  const std::string given = s.roots.delivered + std::string(otherwise);
  return !save && !folder_exists(own) && folder_exists(given) ? given : own;
}

std::string data_folder(const Session& s, RecordKind kind, FileMode mode) {
  const bool named = !s.set(kind).stored_name.empty();
  return dialog_folder(s, named ? s.set(kind).stored_name + record_kind(kind).extension : "",
                       record_kind(kind).folder, mode);
}

}  // namespace tv
