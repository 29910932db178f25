// The program's own file dialog: folders, files, name, type, and the comment that the file holds. The caller
// tests the name and asks again.
#pragma once

#include <QWidget>
#include <optional>

#include "session/session.h"

namespace tv {

std::optional<FileAnswer> run_file_dialog(Session& s, const FileBox& box, QWidget* parent);

}  // namespace tv
