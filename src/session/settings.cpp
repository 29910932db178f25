#include "session/settings.h"

#include <utility>

#include "session/input_check.h"
#include "session/load_files.h"
#include "session/load_steps.h"
#include "session/message.h"
#include "text/file.h"

namespace tv {
namespace {

std::string recent_key(std::size_t i) { return std::to_string(i) + "recent"; }

std::size_t recent_length(const Session& s) { return static_cast<std::size_t>(s.options.filcnt); }

void write_recent(const Session& s, SectionedFile& file) {
  for (std::size_t i = 0; i < recent_length(s); ++i)
    file.set_bytes(kStartup, recent_key(i), i < s.recent.size() ? s.recent[i] : std::string());
}

// The sections in the order constants, tiphelp, startup, metrics, chargedata, recoil.
void write_all(const Session& s, SectionedFile& file) {
  bool load_written = false;
  for (const OptionKey& key : option_keys()) {
    if (key.section == kMetrics && !load_written) {
      write_load_keys(s.state, s.load, file);
      load_written = true;
    }
    write_option(key, s.options, file);
  }
  write_recent(s, file);
}

}  // namespace

const OptionKey* option_key(std::string_view key) {
  for (const OptionKey& option : option_keys())
    if (option.key == key) return &option;
  return nullptr;
}

// A folder that cannot be written would be told at each calculation.
static void tell_unwritable(Session& s, const std::string& path, int failure) {
  if (std::exchange(s.told_unwritable, true)) return;
  s.status = s.language.msg(420) + " " + path + " " + s.language.failure(failure);
}

bool change_quietly(Session& s, const std::string& path, const std::function<void(SectionedFile&)>& change,
                    Flush flush) {
  s.writer.drain();
  const int failure = settings_change(path, s.language.page(), change, flush);
  if (failure) tell_unwritable(s, path, failure);
  return failure == kNoFailure;
}

void change_behind(Session& s, const std::string& path, std::function<void(SectionedFile&)> change,
                   Flush flush) {
  s.writer.post(path, [path, page = s.language.page(), change = std::move(change), flush] {
    return settings_change(path, page, change, flush);
  });
}

void tell_failed_writes(Session& s) {
  if (const auto failed = s.writer.take_failure()) tell_unwritable(s, failed->file, failed->failure);
}

bool change_sectioned(Session& s, const std::string& path,
                      const std::function<void(SectionedFile&)>& change) {
  s.writer.drain();
  const int failure = settings_change(path, s.language.page(), change);
  if (failure == 0) return true;
  // Before any language has been read there is only this to say.
  const std::string text = s.language.msg(420);
  warn(s, {(text.empty() ? "Error file is write protected" : text) + "\n" + path + "\n" +
               s.language.failure(failure),
           {"msg420"}});
  return false;
}

bool settings_save(Session& s) {
  if (!s.writes_files) return true;
  take_shown_start_pressure(s);
  settle_steps(s);
  s.options.labchg = has_unsaved_changes(s);
  s.user->busy(true);
  const bool saved = change_sectioned(s, s.settings_file, [&](SectionedFile& file) { write_all(s, file); });
  s.user->busy(false);
  return saved;
}

bool store_option(Session& s, std::string_view key) { return store_options(s, {key}); }

bool store_options(Session& s, std::initializer_list<std::string_view> keys, bool with_recent) {
  for (const std::string_view key : keys)
    if (!option_key(key)) return false;
  if (!s.writes_files) return true;
  return change_quietly(s, s.settings_file, [&](SectionedFile& file) {
    for (const std::string_view key : keys) write_option(*option_key(key), s.options, file);
    if (with_recent) write_recent(s, file);
  });
}

void read_recent(Session& s, const SectionedFile& file) {
  s.recent.clear();
  for (std::size_t i = 0; i < recent_length(s); ++i) {
    std::string name = forward_slashes(file.get_bytes(kStartup, recent_key(i)));
    if (!name.empty()) s.recent.push_back(std::move(name));
  }
}

void note_recent(Session& s, const std::string& file) {
  std::string name = file_folder(file) + file_stem(file) + ".";
  std::erase_if(s.recent, [&](const std::string& held) { return same_fold(held, name); });
  s.recent.insert(s.recent.begin(), std::move(name));
  if (s.recent.size() > recent_length(s)) s.recent.resize(recent_length(s));
}

void recent_add(Session& s, const std::string& file) {
  note_recent(s, file);
  store_options(s, {}, true);
}

}  // namespace tv
