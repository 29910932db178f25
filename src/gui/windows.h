// The windows with something of their own beside the controls of their screen.
#pragma once

#include <QDialog>
#include <QMdiSubWindow>
#include <functional>
#include <string>

#include "gui/desk.h"

namespace tv {

// A child of the frame; its close button hides it as the screen's cancel does.
class ChildWindow : public QMdiSubWindow {
public:
  ChildWindow(Desk& desk, std::string screen);

protected:
  void closeEvent(QCloseEvent* event) override;

private:
  Desk& desk_;
  std::string screen_;
};

// A dialog or floating window of a screen.
class ScreenDialog : public QDialog {
public:
  ScreenDialog(Desk& desk, std::string screen, QWidget* parent);
  void reject() override;

private:
  Desk& desk_;
  std::string screen_;
};

// Windows with widgets of their own. One that gives a root only gets its window as the others do.
View make_output_view(Desk& desk, const ScreenSpec& spec, QWidget* parent);
View make_picture_view(Desk& desk, const ScreenSpec& spec, QWidget* parent);
View make_about_view(Desk& desk, const ScreenSpec& spec, QWidget* parent);
View make_notice_view(Desk& desk, const ScreenSpec& spec, QWidget* parent);
// The whole safety notice, to be read.
void show_notice_text(Desk& desk, QWidget* parent);
// The page of shortcuts.
void show_shortcuts(Desk& desk);
// The page of the manual about a screen.
void show_manual(Desk& desk, const std::string& screen);

}  // namespace tv
