// The person at the windows: boxes, inputs, file dialogs, focus, progress.
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressBar>

#include "session/session.h"
#include "session/user.h"

namespace tv {

class Desk;

class GuiUser : public User {
public:
  // The desk and the session are known once they are made; before that boxes stand without a parent.
  void attach(Session* session, Desk* desk);

  Answer box(const Box& box) override;
  std::optional<std::string> input(const InputBox& box) override;
  std::optional<FileAnswer> choose_file(const FileBox& box) override;
  std::optional<std::string> choose_folder(const Message& prompt, const std::string& start) override;
  void beep() override;
  void bring_to_front(std::string_view screen) override;
  void focus(std::string_view screen, std::string_view field) override;
  void hide(std::string_view screen) override;
  void run_dialog(std::string_view screen) override;
  void busy(bool on) override;
  void progress(std::string_view text, double fraction) override;
  bool cancelled() override;
  void refresh() override;

private:
  // The caption of a button in the language in force; the literal while there is none.
  QString button_caption(const char* key, const char* otherwise) const;
  void set_visible(std::string_view screen, bool visible);

  Session* session_ = nullptr;
  Desk* desk_ = nullptr;
  int busy_ = 0;
  bool cancelled_ = false;
  QElapsedTimer told_;  // since the progress was last shown; not valid before the first time of a run
};

// Passes on what must happen while a long run goes on: painting, and Escape, which is told; nothing else.
class RunGuard : public QObject {
public:
  explicit RunGuard(bool& cancelled) : cancelled_(cancelled) {}
  void pass_events();

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  bool& cancelled_;
};

}  // namespace tv
