// All windows of the program and what they share. A window is made at its first use and then only hidden.
#pragma once

#include <QObject>
#include <QTranslator>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "session/session.h"

namespace tv {

class MainFrame;

// A window as the desk knows it: `window` is shown and hidden, `root` holds the controls of the form, `apart`
// those that stand apart from it. `body` is what the window holds: both, above each other.
struct View {
  QWidget* window = nullptr;
  QWidget* root = nullptr;
  QWidget* apart = nullptr;
  QWidget* body = nullptr;
  std::function<void()> refresh;
  std::function<void()> recaption;

  QWidget* control(const QString& name) const;  // null if it has none of that name
};

class Desk : public QObject {
public:
  explicit Desk(Session& session);
  ~Desk() override;

  Session& session() { return session_; }
  MainFrame* frame() { return frame_.get(); }

  // The main frame and the screens that stand open from the start.
  void open_frame();

  // Every reaction to a person passes here: runs it, survives what it throws, and when the outermost has
  // ended draws all windows anew.
  void act(const std::function<void()>& action);
  // State to records to windows, in the middle of an action: before a box, a dialog, progress.
  void refresh();
  int refreshes() const { return refreshes_; }                       // so far
  int set_depth(int depth) { return std::exchange(depth_, depth); }  // a modal window begins anew
  void recaption();  // all captions and tips anew, after a change of language

  // The view of a screen, made at its first use; null if the screen has no window.
  View* view(std::string_view screen);
  void show_visibility(std::string_view screen);  // its window comes and goes as its record says
  // Where the focus is: the screen whose window is active; "frmMAIN" if none.
  std::string active_screen() const;
  // Tiled, the children of the frame are panes of one desk; else windows of their own.
  bool tiled() const { return tiled_; }
  void arrange(bool tiled);
  void show_in_front(std::string_view screen);  // a child of the frame: its window, pane or tab
  // A modal screen: returns when it was closed.
  void run_dialog(std::string_view screen);

private:
  View make_view(const ScreenSpec& spec);
  void give_window(const ScreenSpec& spec, View& view);
  void align(const ScreenSpec& spec, const View& view) const;
  void translate_toolkit();
  Session& session_;
  QTranslator translator_;
  std::unique_ptr<MainFrame> frame_;
  std::map<std::string, View, std::less<>> views_;
  int depth_ = 0, refreshes_ = 0;
  bool tiled_ = false, refreshing_ = false, again_ = false, ending_ = false, closing_ = false;
};

// Shows an unforeseen fault and goes on.
void show_fault(const std::string& what);

}  // namespace tv
