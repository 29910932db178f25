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
// Temporary files that a killed program left in the folder are removed. Gives the failure number, 0 if all
// went well.
int write_file(const std::string& path, std::string_view bytes, const std::string& backup = {});
// The same, but left to the system when it reaches the disk: for what is written anew with each calculation.
int write_unflushed(const std::string& path, std::string_view bytes);

// Removes the temporary files of write_file in a folder whose process is gone.
void remove_dead_parts(const std::string& folder);

int remove_file(const std::string& path);  // failure number

bool file_exists(const std::string& path);
bool may_be_written(const std::string& path);  // the file, or its folder where there is none yet
bool folder_exists(const std::string& path);
int make_folders(const std::string& path);  // failure number

// Paths are held with '/', and '\' is understood when read.
std::string forward_slashes(std::string_view path);

// A relative path lies under the root. If no file has the exact name, one that differs only in case is taken,
// in any of its elements; if there is none the plain joined path is given.
std::string resolve_path(const std::string& root, std::string_view path);

// Whether the file lies in the folder or below it, however either is spelled.
bool lies_in(const std::string& file, const std::string& folder);

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
