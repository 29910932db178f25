#include <unistd.h>

#include "data/settings_keys.h"
#include "text/file.h"

namespace tv {
namespace {

constexpr std::string_view kSettingsFile = "ternofw.set";
constexpr std::string_view kInstalledName = "ternovale";

std::string with_slash(std::string folder) {
  folder = forward_slashes(folder);
  if (!folder.empty() && !folder.ends_with('/')) folder += '/';
  return folder;
}

std::string last_element(const std::string& folder) {
  return file_name_only(folder.substr(0, folder.empty() ? 0 : folder.size() - 1));
}

// Programs of a system share a folder of that name, and a build tree makes its own anew.
bool is_shared(const std::string& program) { return last_element(program) == "bin"; }

std::string folder_name(const std::string& program) {
  const std::string name = last_element(program);
  return name.empty() || is_shared(program) ? std::string(kInstalledName) : name;
}

bool holds_settings(const std::string& folder) { return file_exists(resolve_path(folder, kSettingsFile)); }

bool writable(const std::string& folder) { return access(folder.c_str(), W_OK) == 0; }

std::string parent_of(const std::string& folder) { return file_folder(folder.substr(0, folder.size() - 1)); }

// The folder that keeps its own files, so that a copy on a stick leaves none elsewhere: with settings beside the
// program, or with data and languages. Empty: the program is installed, or stands in a build tree.
std::string portable_folder(const std::string& program) {
  const auto whole = [](const std::string& folder) {
    return folder_exists(folder + "lan") && folder_exists(folder + "data") && writable(folder);
  };
  if (holds_settings(program) && writable(program)) return program;
  if (!is_shared(program)) return whole(program) ? program : "";
  const std::string parent = parent_of(program);
  return !parent.empty() && whole(parent) ? parent : "";
}

std::string find_root(const std::string& program, const std::string& name, const PlaceHints& hints) {
  const std::string own = hints.documents.empty() ? "" : with_slash(hints.documents) + name + '/';
  if (!own.empty() && holds_settings(own)) return own;
  for (const std::string& shared : hints.shared_data) {
    const std::string root = with_slash(shared) + name + '/';
    if (holds_settings(root)) return root;
  }
  const bool own_place = !is_shared(program) && writable(program);
  return own.empty() || own_place ? program : own;
}

std::string find_delivered(const std::string& program, const std::string& name, const PlaceHints& hints) {
  std::vector<std::string> places;
  if (!hints.build_share.empty()) places.push_back(with_slash(hints.build_share));
  places.push_back(program);
  places.push_back(program + "../share/" + name + '/');
  for (const std::string& shared : hints.shared_data) places.push_back(with_slash(shared) + name + '/');
  for (const std::string& place : places) {
    if (folder_exists(place + "lan")) return place;
  }
  return {};
}

}  // namespace

DataRoots find_data_root(const PlaceHints& hints) {
  std::string program = with_slash(hints.program_folder);
  const std::string portable = portable_folder(program);
  if (!portable.empty()) program = portable;
  const std::string name = folder_name(program);
  DataRoots roots;
  roots.root = !hints.root.empty() ? with_slash(hints.root)
               : portable.empty()  ? find_root(program, name, hints)
                                   : portable;
  roots.delivered = find_delivered(program, name, hints);
  if (roots.delivered.empty()) roots.delivered = roots.root;
  return roots;
}

}  // namespace tv
