// The main frame: menus, toolbar, notice strip, the area of child windows and the status line.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QProgressBar>
#include <QStackedWidget>
#include <memory>
#include <string_view>

#include "gui/desk.h"
#include "gui/menus.h"

namespace tv {

class NoticeLine;
class TiledDesk;

class MainFrame : public QMainWindow {
public:
  explicit MainFrame(Desk& desk);

  QMdiArea& area() { return *area_; }     // of free windows
  TiledDesk& tiles() { return *tiles_; }  // of panes
  void show_tiled(bool tiled);
  void refresh();
  void recaption();
  // A negative fraction takes the bar away.
  void show_progress(std::string_view text, double fraction);

  void scroll_to(const QMdiSubWindow& child);  // so that it is seen

  void restore_places();  // from the options, onto a screen that exists
  void keep_places();     // into the options

protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  void add_keys();
  void restore_children();

  Desk& desk_;
  QStackedWidget* place_;
  QMdiArea* area_;
  TiledDesk* tiles_;
  NoticeLine* notice_;
  QLabel* status_;
  QProgressBar* progress_;
  Menus menus_;
  std::unique_ptr<ToolButtons> buttons_;
};

}  // namespace tv
