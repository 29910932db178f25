// Sectioned text files: "[section]" lines and "key=value" lines. Settings, loads, language files and tips
// have this form. Section and key ignore case, the first match wins, blanks around key and value are trimmed,
// one pair of enclosing double quotes is dropped. Lines that begin with ";" and unknown lines stay in their
// place, and what was not written is kept byte for byte. Of several sections of one name only the first is
// seen, and of several keys of one name in it the first. Bytes behind a byte order mark are read as any
// others.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
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
  // Names as spelled in the file, in its order.
  std::vector<std::string> sections() const;
  std::vector<std::string> keys(std::string_view section) const;

  // The value as UTF-8, ended at its first NUL; empty if the key is missing.
  std::string get(std::string_view section, std::string_view key) const;
  // First the new section; if that gives nothing the former one.
  std::string get2(std::string_view section, std::string_view former, std::string_view key) const;
  // The value as the file's bytes, unconverted (paths of the file system).
  std::string get_bytes(std::string_view section, std::string_view key) const;

  // A new key goes to the end of its section, a new section to the end of the file. A value that begins or
  // ends with blanks, or is enclosed in quotes, is written so that it reads back the same; line breaks are
  // written as marks, and a value ends at its first NUL. Line ends are those of the file's first line, CR LF
  // in a new file. A value that is there already changes nothing. Names are the program's own; one that no
  // line can hold (empty key, "=", brackets, breaks, blanks around it) is not written.
  void set(std::string_view section, std::string_view key, std::string_view value);
  void set_bytes(std::string_view section, std::string_view key, std::string_view bytes);
  // A number in the general form, with a blank ahead if it is not negative.
  void set_number(std::string_view section, std::string_view key, double number);

  const std::string& bytes() const { return bytes_; }
  CodePage page() const { return page_; }

private:
  struct Value {
    std::size_t begin = 0;  // behind "=" and the blanks there
    std::size_t end = 0;    // the line end
  };
  struct Section {
    std::string name;
    std::size_t end = 0;  // behind its last line that is not blank
    std::vector<std::string> keys;
    std::unordered_map<std::string, Value> values;  // by key in lower case
  };

  void index();
  std::size_t index_line(std::size_t begin, Section*& current);
  std::string folded(std::string_view name) const;
  const Section* find(std::string_view section) const;
  const Value* find(std::string_view section, std::string_view key) const;
  std::string value_bytes(const Value& value) const;
  void put(std::string_view section, std::string_view key, std::string_view value, std::string_view written);
  void add_key(std::string_view section, std::string_view line);
  std::string line_end() const;

  std::string bytes_;
  CodePage page_ = CodePage::cp1252;
  std::vector<std::string> order_;                     // sections in lower case
  std::unordered_map<std::string, Section> sections_;  // by name in lower case
};

// One read goes to the file each time; a missing or unreadable file reads as empty.
SectionedFile read_sectioned(const std::string& path, CodePage page);

std::string settings_read(std::string_view section, std::string_view key, const std::string& file,
                          CodePage page);
std::string settings_read2(std::string_view section, std::string_view former, std::string_view key,
                           const std::string& file, CodePage page);

// Reads the file, lets it be changed and writes it once; nothing is written if nothing changed. A missing
// file is made. A file that is there but cannot be read is left alone, as its other keys would be lost. Gives
// the failure number, 0 if all went well.
int settings_change(const std::string& file, CodePage page,
                    const std::function<void(SectionedFile&)>& change);

// One value, as settings_change.
int settings_write(std::string_view section, std::string_view key, std::string_view value,
                   const std::string& file, CodePage page);

}  // namespace tv
