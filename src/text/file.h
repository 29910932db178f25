// Whole files: read in one go, written in one atomic step, and paths as the program holds them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/failure.h"

namespace tv {

struct FileRead {
  std::string bytes;
  int failure = kNoFailure;
};

// The whole file. A folder, a device or a missing file is a failure.
FileRead read_file(const std::string& path);

// Writes to a temporary file beside the target, flushes it, makes the current file the backup if a name for
// that is given (errors of the backup are ignored), and lets the new file take the target's place in one
// step. On failure the old file stands. A link is followed, the permissions of an existing file are kept.
// Gives the failure number, 0 if all went well.
int write_file(const std::string& path, std::string_view bytes, const std::string& backup = {});

int remove_file(const std::string& path);  // failure number

bool file_exists(const std::string& path);
bool folder_exists(const std::string& path);
int make_folders(const std::string& path);  // failure number

// Paths are held with '/', and '\' is understood when read.
std::string forward_slashes(std::string_view path);

// A relative path lies under the root. If no file has the exact name, one that differs only in case is taken,
// in any of its elements; if there is none the plain joined path is given.
std::string resolve_path(const std::string& root, std::string_view path);

// Names of the files (not folders) in a folder whose name fits a pattern such as "*.bul", ignoring case, in
// byte order.
std::vector<std::string> files_in(const std::string& folder, std::string_view pattern);

std::string file_name_only(std::string_view path);  // behind the last '/'
std::string file_folder(std::string_view path);     // with its closing '/', empty if there is none
std::string file_stem(std::string_view path);       // the name without its extension and point
std::string file_extension(
    std::string_view path);  // behind the last point of the name, upper case, without point
bool file_has_extension(std::string_view path, std::string_view extension);  // compared in upper case

}  // namespace tv
