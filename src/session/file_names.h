// Where files lie, and the names that the file box gives.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace tv {

// A name from the file box. The dialog comes up again, with the comment as edited, until the name is allowed
// (when saving), not refused, of one of the extensions, and exists or, when saving, is free or may be
// replaced; or until the user gives up. Each test that fails beeps and tells why. A name without extension
// gets the first one. `refused` shows a box of its own.
std::optional<FileAnswer> ask_file(Session& s, FileBox box, const std::vector<std::string>& extensions,
                                   const std::function<bool(const std::string&)>& refused = {});

// A name for a file from words about what it holds: without what no name may have, at most as long as one
// likes to read.
std::string proposed_name(std::string_view words, std::string_view extension);

// Where a file is read from: a relative name lies under the root or, missing there, in the delivered data.
std::string data_path(const Session& s, std::string_view path);
// Where the file dialog starts, with its closing '/': the folder of the file in use, else the one given,
// which is made when it is needed for saving.
std::string dialog_folder(const Session& s, const std::string& file, std::string_view otherwise,
                          FileMode mode);
std::string data_folder(const Session& s, RecordKind kind, FileMode mode);

// What the file dialog shows of a picked file: the comment it holds, empty if it holds none.
std::string file_preview(Session& s, DialogKind kind, const std::string& file);

}  // namespace tv
