#include "text/sectioned_file.h"

#include <algorithm>

#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool in_quotes(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"';
}

// The bytes that stand in the file for a value.
std::string written_value(std::string_view value) {
  const bool blanks = trim(value).size() != value.size();
  return blanks || in_quotes(value) ? "\"" + std::string(value) + "\"" : std::string(value);
}

bool fits_line(std::string_view name) {
  return name.size() == trim(name).size() && name.find_first_of(std::string_view("\r\n\0", 3)) == name.npos;
}

bool is_section_name(std::string_view name) { return fits_line(name) && name.find(']') == name.npos; }

bool is_key(std::string_view name) {
  return !name.empty() && fits_line(name) && name.find('=') == name.npos && name.front() != ';' &&
         name.front() != '[';
}

}  // namespace

SectionedFile::SectionedFile(std::string_view bytes, CodePage page) : source_(bytes), page_(page) { index(); }

void SectionedFile::index() {
  bool in_section = false;
  std::size_t at = source_.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  while (at < source_.size()) at = index_line(at, in_section);
  known_sections_ = sections_.size();
  for (Section& section : sections_) section.known = section.entries.size();
}

// Gives the begin of the next line. The section at hand is the last one.
std::size_t SectionedFile::index_line(std::size_t begin, bool& in_section) {
  const std::size_t feed = std::min(source_.find('\n', begin), source_.size());
  const std::size_t next = std::min(feed + 1, source_.size());
  // Also at the end of a file, which may have been cut within its last line end.
  const bool pair = feed > begin && source_[feed - 1] == '\r';
  const std::size_t end = pair ? feed - 1 : feed;
  const std::string_view line = std::string_view(source_).substr(begin, end - begin);
  const std::string_view text = trim(line);
  const std::size_t close = text.starts_with('[') ? text.find(']') : text.npos;
  if (close != text.npos) {
    const std::string name = to_utf8(trim(text.substr(1, close - 1)), page_);
    in_section = !find(name);
    if (in_section) section_to_write(name);
  }
  if (!in_section || text.empty()) return next;
  Section& section = sections_.back();
  section.end = next;
  const std::size_t equals = line.find('=');
  if (text.front() == '[' || text.front() == ';' || equals == line.npos) return next;
  std::string key = to_utf8(trim(line.substr(0, equals)), page_);
  if (key.empty() || !section.places.try_emplace(folded(key), section.entries.size()).second) return next;
  const std::string_view behind = line.substr(equals + 1);
  const std::size_t blanks = behind.size() - trim_left(behind).size();
  const std::size_t value = begin + equals + 1 + blanks;
  section.entries.push_back({std::move(key), value, end, false, source_[value - 1] == ' ', false, {}});
  return next;
}

// A name as the file would hold it, in lower case.
std::string SectionedFile::folded(std::string_view name) const { return lower(drop_foreign(name, page_)); }

const SectionedFile::Section* SectionedFile::find(std::string_view section) const {
  const auto found = section_places_.find(folded(section));
  return found == section_places_.end() ? nullptr : &sections_[found->second];
}

const SectionedFile::Entry* SectionedFile::find(std::string_view section, std::string_view key) const {
  const Section* in = find(section);
  if (!in) return nullptr;
  const auto found = in->places.find(folded(key));
  return found == in->places.end() ? nullptr : &in->entries[found->second];
}

std::string SectionedFile::value_bytes(const Entry& entry) const {
  std::string_view text = entry.written;
  if (!entry.changed) text = std::string_view(source_).substr(entry.begin, entry.end - entry.begin);
  text = trim(text.substr(0, text.find('\0')));
  if (in_quotes(text)) text = text.substr(1, text.size() - 2);
  return std::string(text);
}

bool SectionedFile::has_section(std::string_view section) const { return find(section) != nullptr; }

bool SectionedFile::has_key(std::string_view section, std::string_view key) const {
  return find(section, key) != nullptr;
}

std::vector<std::string> SectionedFile::sections() const {
  std::vector<std::string> names;
  for (const Section& section : sections_) names.push_back(section.name);
  return names;
}

std::vector<std::string> SectionedFile::keys(std::string_view section) const {
  std::vector<std::string> names;
  if (const Section* in = find(section)) {
    for (const Entry& entry : in->entries) names.push_back(entry.key);
  }
  return names;
}

std::string SectionedFile::get(std::string_view section, std::string_view key) const {
  return to_utf8(get_bytes(section, key), page_);
}

std::string SectionedFile::get2(std::string_view section, std::string_view former,
                                std::string_view key) const {
  std::string value = get(section, key);
  return value.empty() ? get(former, key) : value;
}

std::string SectionedFile::get_bytes(std::string_view section, std::string_view key) const {
  const Entry* entry = find(section, key);
  return entry ? value_bytes(*entry).substr(0, kMaxValue) : std::string();
}

void SectionedFile::set(std::string_view section, std::string_view key, std::string_view value) {
  if (has_key(section, key) && get(section, key) == value) return;
  set_bytes(section, key, from_utf8(breaks_to_marks(value), page_));
}

void SectionedFile::set_bytes(std::string_view section, std::string_view key, std::string_view bytes) {
  if (has_key(section, key) && get_bytes(section, key) == bytes) return;
  std::string value(bytes.substr(0, bytes.find('\0')));
  std::replace_if(
      value.begin(), value.end(), [](char c) { return c == '\r' || c == '\n'; }, '\xAC');
  put(section, key, value, written_value(value));
}

void SectionedFile::set_number(std::string_view section, std::string_view key, double number) {
  put(section, key, general(number), str(number));
}

void SectionedFile::put(std::string_view section, std::string_view key, std::string_view value,
                        std::string_view written) {
  if (!is_section_name(drop_foreign(section, page_)) || !is_key(drop_foreign(key, page_))) return;
  const Entry* old = find(section, key);
  if (old && value_bytes(*old) == value) return;
  Entry& entry = entry_to_write(section_to_write(section), key);
  if (written.starts_with(' ')) {
    entry.blank_added = entry.blank_added || !entry.blank_ahead;
    entry.blank_ahead = true;
    written.remove_prefix(1);
  }
  entry.changed = true;
  entry.written = written;
}

// The section or the entry of that name; a new one at the end if there is none.
SectionedFile::Section& SectionedFile::section_to_write(std::string_view name) {
  const auto [place, added] = section_places_.try_emplace(folded(name), sections_.size());
  if (added) sections_.emplace_back().name = drop_foreign(name, page_);
  return sections_[place->second];
}

SectionedFile::Entry& SectionedFile::entry_to_write(Section& section, std::string_view key) {
  const auto [place, added] = section.places.try_emplace(folded(key), section.entries.size());
  if (added) section.entries.emplace_back().key = drop_foreign(key, page_);
  return section.entries[place->second];
}

void SectionedFile::append_added(const Section& section, std::string_view line_end, std::string& out) const {
  for (std::size_t i = section.known; i < section.entries.size(); ++i) {
    const Entry& entry = section.entries[i];
    out.append(from_utf8(entry.key, page_)).append("=").append(entry.blank_added ? " " : "");
    out.append(entry.written).append(line_end);
  }
}

std::string SectionedFile::bytes() const {
  const std::string_view end = line_end();
  std::string out;
  std::size_t done = 0;  // what has been taken over of source_
  const auto take_to = [&](std::size_t place) {
    out.append(source_, done, place - done);
    done = place;
  };
  // A line that is not ended, or whose end was cut, gets its end before another follows.
  const auto end_line = [&] {
    if (out.empty() || out.back() == '\n' || out == kByteOrderMark) return;
    out.append(out.back() == '\r' ? "\n" : end);
  };
  for (std::size_t i = 0; i < known_sections_; ++i) {
    const Section& section = sections_[i];
    for (std::size_t k = 0; k < section.known; ++k) {
      const Entry& entry = section.entries[k];
      if (!entry.changed) continue;
      take_to(entry.begin);
      out.append(entry.blank_added ? " " : "").append(entry.written);
      done = entry.end;
    }
    if (section.entries.size() == section.known) continue;
    take_to(section.end);
    end_line();
    append_added(section, end, out);
  }
  take_to(source_.size());
  for (std::size_t i = known_sections_; i < sections_.size(); ++i) {
    end_line();
    out.append("[").append(from_utf8(sections_[i].name, page_)).append("]").append(end);
    append_added(sections_[i], end, out);
  }
  return out;
}

std::string_view SectionedFile::line_end() const {
  const std::size_t feed = source_.find('\n');
  const bool plain = feed != std::string::npos && (feed == 0 || source_[feed - 1] != '\r');
  return plain ? "\n" : "\r\n";
}

SectionedFile read_sectioned(const std::string& path, CodePage page) {
  return SectionedFile(read_file(path).bytes, page);
}

std::string settings_read(std::string_view section, std::string_view key, const std::string& file,
                          CodePage page) {
  return read_sectioned(file, page).get(section, key);
}

std::string settings_read2(std::string_view section, std::string_view former, std::string_view key,
                           const std::string& file, CodePage page) {
  return read_sectioned(file, page).get2(section, former, key);
}

int settings_change(const std::string& file, CodePage page, const std::function<void(SectionedFile&)>& change,
                    Flush flush) {
  const FileRead old = read_file(file);
  if (old.failure && old.failure != kFileNotFound) return old.failure;
  SectionedFile changed(old.bytes, page);
  change(changed);
  const std::string bytes = changed.bytes();
  if (bytes == old.bytes) return kNoFailure;
  return flush == Flush::yes ? write_file(file, bytes) : write_unflushed(file, bytes);
}

int settings_write(std::string_view section, std::string_view key, std::string_view value,
                   const std::string& file, CodePage page) {
  return settings_change(file, page, [&](SectionedFile& settings) { settings.set(section, key, value); });
}

}  // namespace tv
