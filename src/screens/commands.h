// The menus, toolbar and shortcuts as one table: those of the main window and those of the output window.
#pragma once

#include <span>
#include <string_view>

#include "session/session.h"

namespace tv {

struct Command {
  const char* name;     // control name, key of its caption
  const char* section;  // of the language file: frmMAIN or form7
  const char* parent;   // name of the menu it stands in; null for the top menus of that section
  void (*action)(Session&, const Command&) = nullptr;         // null: a menu, or a heading
  const char* shortcut = nullptr;                             // "F5", "Ctrl+S"
  int toolbar = -1;                                           // index of its toolbar button
  bool (*enabled)(const Session&, const Command&) = nullptr;  // null: always
  bool (*checked)(const Session&, const Command&) = nullptr;  // null: not checkable
  int value = 0;                                              // what sets apart commands that share an action
  const char* literal =
      nullptr;  // fixed label that no language changes; null: caption from the language file
  bool separator_before = false;
  bool holds_recent = false;  // a menu of the recent loads
};

std::span<const Command> commands();  // in menu order
const Command* find_command(std::string_view name);
bool is_menu(const Command& command);       // others stand in it
bool is_exclusive(const Command& command);  // one of a group of which one is chosen
bool opens_dialog(const Command& command);  // its caption ends with an ellipsis
bool command_enabled(const Session& s, const Command& command);
bool command_checked(const Session& s, const Command& command);
// False if there is none of that name or it is disabled now.
bool run_command(Session& s, std::string_view name);
bool run_shortcut(Session& s, std::string_view key);  // "F5": the command that has it

// The notes of the load, before it is saved or printed, where the user wants to be asked (primeryes).
void ask_notes(Session& s);

}  // namespace tv
