// The main menu, toolbar and shortcuts as one table.
#pragma once

#include <span>
#include <string_view>

#include "session/session.h"

namespace tv {

struct Command {
  const char* name;          // control name, key of its caption in section frmMAIN
  const char* parent;        // name of the menu it stands in; null for the top menus
  const char* literal;       // fixed label that no language changes; null: caption from the language file
  const char* shortcut;      // "F5", "Ctrl+S"; null if none
  int toolbar;               // index of its toolbar button, -1 if none
  void (*action)(Session&);  // null: a menu
  bool (*enabled)(const Session&);  // null: always
  bool (*checked)(const Session&);  // null: not checkable
  bool separator_before = false;
};

std::span<const Command> commands();  // in menu order
const Command* find_command(std::string_view name);
bool command_enabled(const Session& s, const Command& command);
// False if there is none of that name or it is disabled now.
bool run_command(Session& s, std::string_view name);

}  // namespace tv
