// The settings file: options and the current load, each write in one step.
#include "session/files.h"
#include "text/file.h"

namespace tv {
namespace {

std::string recent_key(std::size_t i) { return std::to_string(i) + "recent"; }

void write_recent(const Session& s, SectionedFile& file) {
  for (std::size_t i = 0; i < static_cast<std::size_t>(s.options.filcnt); ++i)
    file.set_bytes(kStartup, recent_key(i), i < s.recent.size() ? s.recent[i] : std::string());
}

// Reads the file, lets `change` set its keys and writes it once; one box on failure.
template <class Change>
bool change_settings(Session& s, Change change) {
  SectionedFile file = read_sectioned(s.settings_file, s.language.page());
  change(file);
  return write_sectioned(s, s.settings_file, file);
}

}  // namespace

bool write_sectioned(Session& s, const std::string& path, const SectionedFile& file) {
  const int failure = write_file(path, file.bytes());
  if (failure == 0) return true;
  std::string text = s.language.msg(420);
  if (text.empty()) text = "Error file is write protected";
  Message message{text + "\n" + path + "\n" + s.language.failure(failure), {"msg420"}};
  warn(s, message);
  return false;
}

void settings_save(Session& s) {
  s.user->busy(true);
  change_settings(s, [&](SectionedFile& file) {
    write_options(s.options, file);
    write_load_keys(s.state, s.load, file);
    write_recent(s, file);
  });
  s.user->busy(false);
}

bool write_option(Session& s, std::string_view key) {
  if (!s.writes_files) return true;
  for (const OptionKey& option : option_keys())
    if (option.key == key)
      return change_settings(s, [&](SectionedFile& file) { write_option(option, s.options, file); });
  return false;
}

void read_recent(Session& s, const SectionedFile& file) {
  s.recent.clear();
  for (std::size_t i = 0; i < static_cast<std::size_t>(s.options.filcnt); ++i) {
    std::string name = forward_slashes(file.get_bytes(kStartup, recent_key(i)));
    if (!name.empty()) s.recent.push_back(std::move(name));
  }
}

void recent_add(Session& s, const std::string& file) {
  std::string name = file_folder(file) + file_stem(file) + ".";
  std::erase_if(s.recent, [&](const std::string& held) { return same_fold(held, name); });
  s.recent.insert(s.recent.begin(), std::move(name));
  if (s.recent.size() > static_cast<std::size_t>(s.options.filcnt))
    s.recent.resize(static_cast<std::size_t>(s.options.filcnt));
  if (s.writes_files) change_settings(s, [&](SectionedFile& f) { write_recent(s, f); });
}

}  // namespace tv
