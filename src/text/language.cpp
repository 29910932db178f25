#include "text/language.h"

#include <algorithm>

#include "text/file.h"

namespace tv {
namespace {

constexpr DeliveredLanguage kDelivered[] = {
    {"english", "en"}, {"german", "de"}, {"french", "fr"}, {"russian", "ru"}};

constexpr std::string_view kLanguage = "language", kMessages = "messages", kFast = "fastmsg",
                           kFailures = "failures", kFiles = "files", kAnySection = "";

// What is said when the language file does not say it.
struct LastResort {
  std::string_view section, key, text;
  bool required = false;  // a file without it is damaged
};

constexpr LastResort kLastResort[] = {
    {kFast, "warning0", "IMPORTANT: these figures are predictions, not load data.", true},
    {kFast, "warning1",
     "They come from a mathematical model and from values that may not fit your components. ", true},
    {kFast, "warning2", "Real pressure and velocity can differ widely. ", true},
    {kFast, "warning3",
     "Never exceed the maximum loads published by powder and bullet makers or the pressure limit of the "
     "cartridge. ",
     true},
    {kFast, "warning4",
     "Start at least 10 % below the published maximum and work up in small steps, watching for signs of "
     "pressure. ",
     true},
    {kFast, "warning5", "Wear eye and ear protection. ", true},
    {kFast, "warning6",
     "You alone are responsible for what you load and fire; authors and distributors accept no liability.",
     true},
    {kFast, "fwarn1", "!! PRESSURE ABOVE THE LIMIT !! ", true},
    {kFast, "fwarn2", "Close to the pressure limit. ", true},
    {kFast, "fwarn3", "No pressure limit is known for this cartridge! ", true},
    {kFast, "fcrgvar13", "! OVER LIMIT", true},
    {kFast, "fcrgvar14", "! near limit", true},
    {kFast, "fwarn14", "Calculation failed - results not valid!"},
    {kFast, "fwarn18", " Outside its usual range:"},
    {kFast, "fobsol0", "Out of date:"},
    {kFast, "fobsol1", "the inputs have changed since."},
    {kFailures, "5", "Invalid root, logarithm or power"},
    {kFailures, "6", "Overflow"},
    {kFailures, "11", "Division by zero"},
    {kFailures, "53", "File not found"},
    {kFailures, "57", "Read or write error"},
    {kFailures, "61", "Disk full"},
    {kFailures, "70", "Permission denied"},
    {kFailures, "76", "Folder not found"},
    {kFiles, "yes", "&Yes"},
    {kFiles, "no", "&No"},
    {kFiles, "retry", "&Retry"},
    {kFiles, "save", "&Save"},
    {kFiles, "discard", "&Discard"},
    {kAnySection, "ok", "OK"},
    {kAnySection, "cancel", "Cancel"},
    {kAnySection, "close", "Close"},
};

std::string_view last_resort(std::string_view section, std::string_view key) {
  for (const LastResort& known : kLastResort) {
    const bool here = known.section == kAnySection || same_fold(known.section, section);
    if (here && same_fold(known.key, key)) return known.text;
  }
  return {};
}

bool is_damaged(const SectionedFile& file) {
  return !file.has_section(kMessages) || !file.has_section(kFast) ||
         std::any_of(std::begin(kLastResort), std::end(kLastResort), [&](const LastResort& known) {
           return known.required && file.get(known.section, known.key).empty();
         });
}

}  // namespace

std::span<const DeliveredLanguage> delivered_languages() { return kDelivered; }

std::string language_file_name(std::string_view name) { return "tn_" + std::string(name) + ".lan"; }

std::string delivered_language_file(const std::string& folder, std::string_view damaged) {
  const std::string same = resolve_path(folder, file_name_only(damaged));
  return same != damaged && file_exists(same) ? same : folder + language_file_name("english");
}

LanguageRead Language::read(const std::string& path) {
  const FileRead read = read_file(path);
  if (read.failure) return LanguageRead::unreadable;
  const LanguageRead taken = take(read.bytes);
  path_ = path;
  tips_ = read_sectioned(resolve_path(file_folder(path), file_stem(path) + ".tip"), page_);
  return taken;
}

LanguageRead Language::take(std::string_view bytes) {
  // The key is plain ASCII, so that any page can read it.
  page_ = code_page_named(SectionedFile(bytes).get(kLanguage, "codepage"));
  file_ = SectionedFile(bytes, page_);
  name_ = file_.get(kLanguage, kLanguage);
  path_.clear();
  own_tips_ = tips_ = {};
  return is_damaged(file_) ? LanguageRead::damaged : LanguageRead::good;
}

std::string Language::text(std::string_view section, std::string_view key) const {
  const std::string value = file_.get(section, key);
  return value.empty() ? std::string(last_resort(section, key)) : marks_to_breaks(value);
}

std::string Language::msg(int n) const { return text(kMessages, std::to_string(n) + "msg"); }

std::string Language::fileout(int n) const { return text("fileout", std::to_string(n) + "txt"); }

std::string Language::fastmsg(std::string_view key) const { return text(kFast, key); }

std::string Language::fastmsg(std::string_view stem, int n) const {
  return text(kFast, std::string(stem) + std::to_string(n));
}

std::string Language::failure(int number) const { return text(kFailures, std::to_string(number)); }

std::string Language::notice() const {
  constexpr int kLast = 6;
  std::string joined = fastmsg("warning", 0) + "\n";
  for (int n = 1; n <= kLast; ++n) joined += fastmsg("warning", n);
  return joined;
}

void Language::read_own_tips(const std::string& path) { own_tips_ = read_sectioned(path, page_); }

std::string Language::tip(std::string_view key) const {
  const SectionedFile& tips = own_tips_.has_key(name_, key) ? own_tips_ : tips_;
  std::string joined;
  std::string piece = tips.get(name_, key);
  for (int n = 1; piece.ends_with('_'); ++n) {
    piece.pop_back();
    joined += piece;
    piece = tips.get(name_, std::string(key) + std::to_string(n));
  }
  return marks_to_breaks(joined + piece);
}

}  // namespace tv
