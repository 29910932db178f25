// Sectioned text files: "[section]" lines and "key=value" lines. Settings, loads, language files and tips
// have this form. Section and key ignore case, the first match wins, blanks around key and value are trimmed,
// one pair of enclosing double quotes is dropped. Lines that begin with ";" and unknown lines stay in their
// place, and what was not written is kept byte for byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "text/codepage.h"

namespace tv {

class SectionedFile {
public:
  static constexpr std::size_t kMaxValue = 512;  // characters of a value; the rest is cut on reading

  SectionedFile() = default;
  explicit SectionedFile(std::string_view bytes, CodePage page = CodePage::cp1252);

  bool has_section(std::string_view section) const;
  bool has_key(std::string_view section, std::string_view key) const;
  std::vector<std::string> sections() const;
  std::vector<std::string> keys(std::string_view section) const;

  // The value as UTF-8, ended at its first NUL; empty if the key is missing.
  std::string get(std::string_view section, std::string_view key) const;
  // First the new section; if that gives nothing the former one.
  std::string get2(std::string_view section, std::string_view former, std::string_view key) const;
  // The value as the file's bytes, unconverted (paths of the file system).
  std::string get_bytes(std::string_view section, std::string_view key) const;

  // A new key goes to the end of its section, a new section to the end of the file. A value that begins or
  // ends with blanks, or is enclosed in quotes, is written so that it reads back the same. Line breaks must
  // be marks already.
  void set(std::string_view section, std::string_view key, std::string_view value);
  void set_bytes(std::string_view section, std::string_view key, std::string_view bytes);

  const std::string& bytes() const { return bytes_; }
  CodePage page() const { return page_; }

private:
  std::string bytes_;
  CodePage page_ = CodePage::cp1252;
};

// One read goes to the file each time; a missing or unreadable file reads as empty.
SectionedFile read_sectioned(const std::string& path, CodePage page);

std::string settings_read(std::string_view section, std::string_view key, const std::string& file,
                          CodePage page);
std::string settings_read2(std::string_view section, std::string_view former, std::string_view key,
                           const std::string& file, CodePage page);
// Gives the failure number of the write, 0 if all went well.
int settings_write(std::string_view section, std::string_view key, std::string_view value,
                   const std::string& file, CodePage page);

}  // namespace tv
