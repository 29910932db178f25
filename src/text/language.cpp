#include "text/language.h"

#include "text/file.h"

namespace tv {
namespace {

struct FailureText {
  int number;
  const char* text;
};

// Said when no language file can be read.
constexpr FailureText kFailureTexts[] = {
    {kInvalidArgument, "Invalid root, logarithm or power"},
    {kOverflow, "Overflow"},
    {kDivisionByZero, "Division by zero"},
    {kFileNotFound, "File not found"},
    {kFileError, "Read or write error"},
    {kDiskFull, "Disk full"},
    {kPermissionDenied, "Permission denied"},
    {kFolderNotFound, "Folder not found"},
};

constexpr std::string_view kLanguage = "language";
constexpr std::string_view kFast = "fastmsg";

}  // namespace

bool Language::read(const std::string& path) {
  const FileRead read = read_file(path);
  if (read.failure) return false;
  // The key is plain ASCII, so that any page can read it.
  page_ = code_page_named(SectionedFile(read.bytes).get(kLanguage, "codepage"));
  file_ = SectionedFile(read.bytes, page_);
  path_ = path;
  name_ = file_.get(kLanguage, kLanguage);
  own_tips_ = {};
  tips_ = read_sectioned(resolve_path(file_folder(path), file_stem(path) + ".tip"), page_);
  return true;
}

std::string Language::text(std::string_view section, std::string_view key) const {
  return marks_to_breaks(file_.get(section, key));
}

std::string Language::msg(int n) const { return text("messages", std::to_string(n) + "msg"); }

std::string Language::fileout(int n) const { return text("fileout", std::to_string(n) + "txt"); }

std::string Language::fastmsg(std::string_view key) const { return text(kFast, key); }

std::string Language::fastmsg(std::string_view stem, int n) const {
  return text(kFast, std::string(stem) + std::to_string(n));
}

std::string Language::failure(int number) const {
  std::string told = text("failures", std::to_string(number));
  if (!told.empty()) return told;
  for (const FailureText& known : kFailureTexts) {
    if (known.number == number) return known.text;
  }
  return {};
}

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
