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

  std::string bytes() const;  // of the whole file as it stands now
  CodePage page() const { return page_; }

private:
  struct Entry {
    std::string key;
    std::size_t begin = 0, end = 0;  // its value in source_, behind "=" and the blanks there, to the line end
    bool changed = false;            // `written` stands in place of that value, or in a line that is added
    bool blank_ahead = false;        // a blank stands before the value
    bool blank_added = false;        // that blank is not in source_
    std::string written;
  };
  struct Section {
    std::string name;
    std::size_t end = 0;         // in source_, behind its last line that is not blank
    std::vector<Entry> entries;  // those of source_ in its order, then the added ones
    std::size_t known = 0;       // entries of source_
    std::unordered_map<std::string, std::size_t> places;  // in entries, by key in lower case
  };

  void index();
  std::size_t index_line(std::size_t begin, bool& in_section);
  std::string folded(std::string_view name) const;
  const Section* find(std::string_view section) const;
  const Entry* find(std::string_view section, std::string_view key) const;
  std::string value_bytes(const Entry& entry) const;
  void put(std::string_view section, std::string_view key, std::string_view value, std::string_view written);
  Section& section_to_write(std::string_view name);
  Entry& entry_to_write(Section& section, std::string_view key);
  void append_added(const Section& section, std::string_view line_end, std::string& out) const;
  std::string_view line_end() const;

  // The bytes that were read stay as they are, and changes are kept beside them: a file of many keys would
  // else be moved about and read anew for each key that is set.
  std::string source_;
  CodePage page_ = CodePage::cp1252;
  std::vector<Section> sections_;  // those of source_ in its order, then the added ones
  std::size_t known_sections_ = 0;
  std::unordered_map<std::string, std::size_t> section_places_;  // by name in lower case
};

// One read goes to the file each time; a missing or unreadable file reads as empty.
SectionedFile read_sectioned(const std::string& path, CodePage page);

std::string settings_read(std::string_view section, std::string_view key, const std::string& file,
                          CodePage page);
std::string settings_read2(std::string_view section, std::string_view former, std::string_view key,
                           const std::string& file, CodePage page);

// Reads the file, lets it be changed and writes it once; nothing is written if nothing changed. A missing
// file is made. A file that is there but cannot be read is left alone, as its other keys would be lost. Gives
// the failure number, 0 if all went well. Flush::no: as write_unflushed.
enum class Flush { yes, no };
int settings_change(const std::string& file, CodePage page, const std::function<void(SectionedFile&)>& change,
                    Flush flush = Flush::yes);

// One value, as settings_change.
int settings_write(std::string_view section, std::string_view key, std::string_view value,
                   const std::string& file, CodePage page);

}  // namespace tv
