#include "session/tips.h"

#include <algorithm>

#include "session/message.h"
#include "session/settings.h"
#include "text/file.h"

namespace tv {
namespace {

constexpr const char* kBreak = "¬";

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

// The bytes of the first n characters, or all; back to the last blank if the text goes on.
std::size_t piece_length(const std::string& text, std::size_t n) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < n; ++count) do
      ++end;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80);
  if (end == text.size()) return end;
  const std::size_t blank = text.rfind(' ', end - 1);
  return blank == std::string::npos || blank == 0 ? end : blank + 1;
}

}  // namespace

bool control_exists(const Session& s, std::string_view name) {
  return std::ranges::any_of(s.screens, [&](const auto& screen) {
    return std::ranges::any_of(screen.second.fields,
                               [&](const auto& entry) { return same_fold(entry.first, name); });
  });
}

std::string own_tip_file(const Session& s) {
  return s.roots.root + "lan/" + file_stem(s.language.path()) + ".tip";
}

bool store_tip(Session& s, const std::string& key, const std::string& text) {
  const std::size_t whole = SectionedFile::kMaxValue;
  std::string rest = replaced(drop_foreign(text, s.language.page()), "\n", kBreak);
  while (rest.ends_with('_')) rest.pop_back();  // it would go on
  std::vector<std::pair<std::string, std::string>> pieces;
  for (int n = 0;; ++n) {
    const std::string name = key + (n > 0 ? std::to_string(n) : "");
    const bool last =
        piece_length(rest, whole) == rest.size() || control_exists(s, key + std::to_string(n + 1));
    const std::size_t length = piece_length(rest, last ? whole : whole - 1);
    pieces.emplace_back(name, rest.substr(0, length) + (last ? "" : "_"));
    rest.erase(0, length);
    if (last) break;
  }
  if (!s.writes_files) return true;
  const std::string file = own_tip_file(s);
  make_folders(file_folder(file));  // a failure shows when the file is written
  if (!change_sectioned(s, file, [&](SectionedFile& tips) {
        for (const auto& [name, piece] : pieces) tips.set(s.language.name(), name, piece);
      }))
    return false;
  s.language.read_own_tips(file);
  return true;
}

void edit_tip(Session& s, const std::string& key) {
  InputBox box;
  box.title = kProgramName;
  box.prompt.text = "Enter the tooltip text:";
  box.value = replaced(s.language.tip(key), "\n", kBreak);
  const auto answer = s.user->input(box);
  if (answer && store_tip(s, key, *answer) && s.hooks.language_changed) s.hooks.language_changed(s);
}

}  // namespace tv
