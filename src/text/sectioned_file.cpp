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

SectionedFile::SectionedFile(std::string_view bytes, CodePage page) : bytes_(bytes), page_(page) { index(); }

void SectionedFile::index() {
  sections_.clear();
  order_.clear();
  Section* current = nullptr;
  std::size_t at = bytes_.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  while (at < bytes_.size()) at = index_line(at, current);
}

// Gives the begin of the next line.
std::size_t SectionedFile::index_line(std::size_t begin, Section*& current) {
  const std::size_t feed = std::min(bytes_.find('\n', begin), bytes_.size());
  const std::size_t next = std::min(feed + 1, bytes_.size());
  // Also at the end of a file, which may have been cut within its last line end.
  const bool pair = feed > begin && bytes_[feed - 1] == '\r';
  const std::size_t end = pair ? feed - 1 : feed;
  const std::string_view line = std::string_view(bytes_).substr(begin, end - begin);
  const std::string_view text = trim(line);
  const std::size_t close = text.find(']');
  if (text.starts_with('[') && close != text.npos) {
    const std::string name = to_utf8(trim(text.substr(1, close - 1)), page_);
    const auto [place, added] = sections_.try_emplace(lower(name));
    current = added ? &place->second : nullptr;
    if (added) {
      current->name = name;
      order_.push_back(place->first);
    }
  }
  if (!current || text.empty()) return next;
  current->end = next;
  const std::size_t equals = line.find('=');
  if (text.starts_with('[') || text.starts_with(';') || equals == line.npos) return next;
  const std::string key = to_utf8(trim(line.substr(0, equals)), page_);
  if (key.empty()) return next;
  const std::string_view behind = line.substr(equals + 1);
  const std::size_t blanks = behind.size() - trim_left(behind).size();
  if (current->values.try_emplace(lower(key), Value{begin + equals + 1 + blanks, end}).second) {
    current->keys.push_back(key);
  }
  return next;
}

// A name as the file would hold it, in lower case.
std::string SectionedFile::folded(std::string_view name) const { return lower(reread(name, page_, page_)); }

const SectionedFile::Section* SectionedFile::find(std::string_view section) const {
  const auto found = sections_.find(folded(section));
  return found == sections_.end() ? nullptr : &found->second;
}

const SectionedFile::Value* SectionedFile::find(std::string_view section, std::string_view key) const {
  const Section* in = find(section);
  if (!in) return nullptr;
  const auto found = in->values.find(folded(key));
  return found == in->values.end() ? nullptr : &found->second;
}

std::string SectionedFile::value_bytes(const Value& value) const {
  std::string_view text = std::string_view(bytes_).substr(value.begin, value.end - value.begin);
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
  for (const std::string& name : order_) names.push_back(sections_.at(name).name);
  return names;
}

std::vector<std::string> SectionedFile::keys(std::string_view section) const {
  const Section* in = find(section);
  return in ? in->keys : std::vector<std::string>();
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
  const Value* value = find(section, key);
  return value ? value_bytes(*value).substr(0, kMaxValue) : std::string();
}

void SectionedFile::set(std::string_view section, std::string_view key, std::string_view value) {
  if (has_key(section, key) && get(section, key) == value) return;
  set_bytes(section, key, from_utf8(breaks_to_marks(value), page_));
}

void SectionedFile::set_bytes(std::string_view section, std::string_view key, std::string_view bytes) {
  const Value* old = find(section, key);
  if (old && get_bytes(section, key) == bytes) return;
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
  if (!is_section_name(section) || !is_key(key)) return;
  if (const Value* old = find(section, key)) {
    if (value_bytes(*old) == value) return;
    if (bytes_[old->begin - 1] == ' ' && written.starts_with(' ')) written.remove_prefix(1);
    bytes_.replace(old->begin, old->end - old->begin, written);
  } else {
    add_key(section, from_utf8(key, page_) + "=" + std::string(written));
  }
  index();
}

void SectionedFile::add_key(std::string_view section, std::string_view line) {
  const std::string end = line_end();
  const Section* in = find(section);
  const std::size_t place = in ? in->end : bytes_.size();
  std::string added;
  if (place > 0 && bytes_[place - 1] != '\n' && bytes_ != kByteOrderMark) {
    added += bytes_[place - 1] == '\r' ? "\n" : end;
  }
  if (!in) added += "[" + from_utf8(section, page_) + "]" + end;
  added += line;
  bytes_.insert(place, added + end);
}

std::string SectionedFile::line_end() const {
  const std::size_t feed = bytes_.find('\n');
  const bool plain = feed != std::string::npos && (feed == 0 || bytes_[feed - 1] != '\r');
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

int settings_change(const std::string& file, CodePage page,
                    const std::function<void(SectionedFile&)>& change) {
  const FileRead old = read_file(file);
  if (old.failure && old.failure != kFileNotFound) return old.failure;
  SectionedFile changed(old.bytes, page);
  change(changed);
  return changed.bytes() == old.bytes ? kNoFailure : write_file(file, changed.bytes());
}

int settings_write(std::string_view section, std::string_view key, std::string_view value,
                   const std::string& file, CodePage page) {
  return settings_change(file, page, [&](SectionedFile& settings) { settings.set(section, key, value); });
}

}  // namespace tv
