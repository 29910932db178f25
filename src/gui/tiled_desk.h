// The tiled main window: its screens as panes of one desk. At the left what is asked for, the dimensions above
// powder and charge; at the right what is answered, the key figures above tabs. With little room the entries
// share one place as tabs, but charge and key figures stay; with less the desk scrolls.
#pragma once

#include <QFrame>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "gui/desk.h"

namespace tv {

// A place on the desk with a line around it and perhaps a heading.
class Pane : public QFrame {
public:
  Pane(const char* heading, QWidget* parent);  // a caption key of the main frame; null: none
  void hold(QWidget* widget, int stretch = 0);

protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

private:
  void colour();
};

class TiledDesk : public QScrollArea {
public:
  explicit TiledDesk(Desk& desk);

  void take(std::string_view screen, View& view);  // into its pane or tab
  void give_back(View& view);                      // what it has taken has no place any more
  void
  settle();  // all that there are have been taken: their order for the Tab key, the tab that was in front
  void refresh();  // what is on show, and which tab is in front
  void recaption();

  void bring_to_front(std::string_view screen);
  void reveal(QWidget* control);  // so that it can take the focus
  void choose_tab(int n);         // of those on show, from 0
  void next_area(int by);         // entries, key figures, tabs
  std::string screen_of(const QWidget* widget) const;

protected:
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;

private:
  void make_entries();
  void make_results();
  void follow_hands();
  void take_page(QWidget* root, bool fits);
  QWidget* page_of(const QWidget* root) const;
  void tab_chosen(int tab);
  void show_entry(int tab);
  void arrange();  // for the room there is
  void set_compact(bool compact);
  void place_splitters();
  int entry_width() const;
  int tab_of_state() const;
  void say_key_figures();

  Desk& desk_;
  QSplitter *across_, *down_;
  Pane *dimensions_, *coefficients_, *powder_, *strip_, *results_;
  QScrollArea *dimensions_area_, *coefficients_area_;
  QTabBar *entry_tabs_, *tabs_;
  QStackedWidget* pages_;
  QWidget* powder_form_ = nullptr;
  std::vector<std::pair<std::string, QWidget*>> taken_;  // screen and what of it stands on the desk
  std::size_t front_ = 0;                                // row of the table of tabs
  int last_diagram_ = 3;
  bool compact_ = false, placing_ = false;
};

}  // namespace tv
