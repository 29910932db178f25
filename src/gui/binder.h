// Binds the widgets of a screen to its record by name. The record is the truth: a person's edit goes into it
// through the operations of screens/entry.h, then every widget that differs is written from it. Program
// writes emit no signal that the binder hears, so no signal is ever blocked.
#pragma once

#include <QLabel>
#include <QObject>
#include <QWidget>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "session/session.h"

class QListWidget;

namespace tv {

class FoldHead;
class RecordList;

// Runs an action of a person on the session and draws all windows anew.
using Act = std::function<void(const std::function<void()>&)>;

class Binder : public QObject {
public:
  // Binds all children of root that are controls of the screen. Enter in a field presses its default button.
  Binder(Session& session, Act act, const ScreenSpec& spec, QWidget* root);

  // Record to widgets. True: a label has changed and may need more room.
  bool refresh();
  // Escape: the field gets back what it held; else the screen closes, unless it is a child of the frame.
  void escape();

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  QWidget* bound(const std::string& name) const;
  void connect_widget(const std::string& name, QWidget* widget);
  void focus_in(const std::string& name, QWidget* widget);
  void finish_list(const std::string& name, RecordList* records);
  bool is_own_key(std::string_view key) const;
  bool key_pressed(const std::string& name, QWidget* widget, int key, Qt::KeyboardModifiers modifiers);
  void show(const std::string& name, const Field& field, QWidget* widget);
  void show_list(const std::string& name, const Field& field, RecordList* records);
  void show_rows(const std::string& name, const Field& field, QListWidget* list);
  void show_label(QLabel* label, const QString& text);
  void show_look(const Field& field, QWidget* widget);
  void show_groups();
  void show_folds();
  void connect_fold(FoldHead* head);
  void show_units();
  void say_units();
  void show_sources();
  void show_hint(const Screen& screen);
  bool leads(const std::string& name) const;  // a list whose entries lead elsewhere
  bool has_session_focus(std::string_view name) const;

  Session& session_;
  Act act_;
  const ScreenSpec& spec_;
  std::string screen_;
  QWidget* root_;
  QLabel* hint_ = nullptr;
  std::vector<FoldHead*> folds_;
  bool relabelled_ = false;
  std::map<std::string, std::vector<std::string>> shown_items_;
};

// The colours of a field, readable on light and dark palettes.
QColor paper_colour(Paper paper, const QPalette& palette);
QColor ink_colour(Ink ink, Paper paper, const QPalette& palette);

}  // namespace tv
