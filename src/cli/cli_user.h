// The person at the command line: boxes are printed, questions are answered by an option or, for scripts,
// from a queue.
#pragma once

#include <deque>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "session/user.h"

namespace tv {

// A box that was shown, and what was answered.
struct ShownBox {
  std::string kind;  // "warning", "question", "info", "input", "file"
  std::vector<std::string> keys;
  std::string title, text, answer;
};

// One answer of a script, given in advance.
struct QueuedAnswer {
  std::string text;  // "yes", "no", "ok", "cancel", "retry" as a word, or any text
  bool word = false;
};

// A question that nobody answered, or with an answer that it does not take. Ends the script.
struct NoAnswer {
  std::string message;
};

class CliUser : public User {
public:
  explicit CliUser(std::ostream& err) : err_(err) {}

  bool yes = false;       // questions are answered Yes, or OK, where no answer is queued
  bool scripted = false;  // a question without an answer throws NoAnswer
  std::deque<QueuedAnswer> answers;
  std::vector<ShownBox> shown;
  std::string focus_screen, focus_field;  // last field that was pointed at

  // What a script hangs on here: the focus moves, a screen comes or goes, a modal screen runs.
  std::function<void(std::string_view screen, std::string_view field)> on_focus;
  std::function<void(std::string_view screen, bool visible)> on_visible;
  std::function<void(std::string_view screen)> on_dialog;

  // Keys of the warnings shown, in order.
  std::vector<std::string> warning_keys() const;

  Answer box(const Box& box) override;
  std::optional<std::string> input(const InputBox& box) override;
  std::optional<FileAnswer> choose_file(const FileBox& box) override;
  std::optional<std::string> choose_folder(const Message& prompt, const std::string& start) override;
  void beep() override {}
  void bring_to_front(std::string_view screen) override;
  void focus(std::string_view screen, std::string_view field) override;
  void hide(std::string_view screen) override;
  void run_dialog(std::string_view screen) override;
  void busy(bool) override {}
  void progress(std::string_view, double) override {}
  bool cancelled() override { return false; }
  void refresh() override {}

private:
  void print(const std::string& title, const std::string& text);
  std::optional<QueuedAnswer> next_answer(const std::string& question);
  std::optional<std::string> text_answer(const std::string& kind, const std::string& title,
                                         const Message& prompt, const std::string& proposed);

  std::ostream& err_;
};

}  // namespace tv
