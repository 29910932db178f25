// Menu bars with their shortcuts, and the toolbar, all from the one command table.
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <map>
#include <string_view>
#include <vector>

#include "gui/desk.h"
#include "screens/commands.h"

namespace tv {

// The menus of one section of the command table.
class Menus {
public:
  Menus(Desk& desk, QMenuBar& bar, std::string_view section);
  void refresh();  // what is enabled, checked and shown; the recent loads
  void recaption();
  QAction* action(std::string_view command) const;

private:
  void add(const Command& command);
  void refresh_recent();

  Desk& desk_;
  QMenuBar& bar_;
  std::string_view section_;
  std::map<std::string_view, QAction*> actions_;
  std::map<std::string_view, QMenu*> menus_;
  std::vector<QAction*> recent_;
  QAction* above_exit_ = nullptr;  // in front of which the recent loads stand
};

// The buttons of all commands that have one, in the order of their indexes.
class ToolButtons {
public:
  ToolButtons(Desk& desk, QToolBar& bar);
  void refresh();

private:
  Desk& desk_;
  QToolBar& bar_;
  std::vector<std::pair<const Command*, QToolButton*>> buttons_;
};

}  // namespace tv
