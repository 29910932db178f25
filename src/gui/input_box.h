// The input box: a prompt, one text, OK and Cancel.
#pragma once

#include <QWidget>
#include <optional>
#include <string>

#include "session/session.h"

namespace tv {

std::optional<std::string> run_input_box(const Session& s, const InputBox& box, QWidget* parent);

}  // namespace tv
