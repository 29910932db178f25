// The texts of the language in force, from a language file. A missing key gives an empty text and no error,
// but for the texts that nobody may be without: the notice, the marks of limits, failures and the words of
// buttons, which then come in English.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "text/codepage.h"
#include "text/sectioned_file.h"

namespace tv {

// The languages that the program brings along.
struct DeliveredLanguage {
  std::string_view name;  // "english", as Language::name
  std::string_view code;  // "en", by ISO 639
};
std::span<const DeliveredLanguage> delivered_languages();
// The name of a language's file below lan/: "tn_english.lan".
std::string language_file_name(std::string_view name);
// What to read instead of a damaged file: another of its name in that folder (with its closing '/'), or the
// English one.
std::string delivered_language_file(const std::string& folder, std::string_view damaged);

enum class LanguageRead {
  good,
  damaged,     // taken, but sections or texts are missing that nobody may be without
  unreadable,  // the former language stands
};

class Language {
public:
  Language() = default;

  // Reads the file; its code page is key "codepage" of section "language".
  [[nodiscard]] LanguageRead read(const std::string& path);
  LanguageRead take(std::string_view bytes);  // the same of bytes at hand, without tips

  std::string text(std::string_view section, std::string_view key) const;  // breaks as "\n"
  std::string msg(int n) const;                                            // section "messages", key "<n>msg"
  std::string fileout(int n) const;                                        // section "fileout", key "<n>txt"
  std::string fastmsg(std::string_view key) const;                         // section "fastmsg"
  std::string fastmsg(std::string_view stem, int n) const;                 // stem and number, as "fwarn8"
  std::string failure(int number) const;                                   // section "failures"

  // The standing notice: warning0 to warning6 joined, with a line end behind the first.
  std::string notice() const;

  const std::string& name() const {
    return name_;
  }  // "english", the stem of the unit table, section of the tips
  const std::string& path() const { return path_; }
  CodePage page() const { return page_; }

  // The tip of a control from the user's own tips or, where they have none, from the tip file beside the
  // language file; pieces joined, breaks as "\n"; empty if none.
  std::string tip(std::string_view key) const;

  // The user's own tips, in the page of the language; those of a missing file are none.
  void read_own_tips(const std::string& path);

private:
  SectionedFile file_;
  SectionedFile tips_, own_tips_;
  std::string name_;
  std::string path_;
  CodePage page_ = CodePage::cp1252;
};

}  // namespace tv
