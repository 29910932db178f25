// The one interface to the person at the program. The windows, the command line and the recording one of the
// tests answer it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tv {

enum class BoxKind { warning, question, info };
// Of save_discard_cancel, yes is Save and no Discard.
enum class Buttons { ok, yes_no, ok_cancel, retry_cancel, save_discard_cancel };
enum class Answer { ok, cancel, yes, no, retry };

// A text together with the keys of the messages it was put together from ("msg163", "fehlEG").
struct Message {
  std::string text;
  std::vector<std::string> keys;
};

struct Box {
  BoxKind kind = BoxKind::warning;
  Buttons buttons = Buttons::ok;
  std::string title;
  Message message;
};

struct InputBox {
  std::string title;
  Message prompt;
  std::string value;  // proposed
};

enum class FileMode { open = 1, save = 2 };
// What a file dialog is about; the number that the texts flfdial and flffilt and the preview go by.
enum class DialogKind {
  load = 4,
  bullets,
  cartridges,
  powders,
  design,
  guns,
  black_powders,
  vivacity,
  reference,
  text,
  picture,
  language,
  spreadsheet
};

struct FileBox {
  FileMode mode = FileMode::open;
  DialogKind kind = DialogKind::load;
  std::string title;
  std::string folder;   // starts here, with its closing '/'
  std::string name;     // proposed name, empty if none
  std::string types;    // "Text (*.ext)|*.ext|..."
  std::string comment;  // shown when saving
};

struct FileAnswer {
  std::string file;     // full path
  std::string comment;  // as edited
};

class User {
public:
  virtual ~User() = default;
  virtual Answer box(const Box& box) = 0;
  virtual std::optional<std::string> input(const InputBox& box) = 0;  // nothing: cancelled
  virtual std::optional<FileAnswer> choose_file(const FileBox& box) = 0;
  virtual std::optional<std::string> choose_folder(const Message& prompt, const std::string& start) = 0;
  virtual void beep() = 0;
  virtual void bring_to_front(std::string_view screen) = 0;                 // shows it if it was hidden
  virtual void focus(std::string_view screen, std::string_view field) = 0;  // with all of its text selected
  virtual void hide(std::string_view screen) = 0;
  // A modal screen: returns when it was closed. Its actions run meanwhile.
  virtual void run_dialog(std::string_view screen) = 0;
  virtual void busy(bool on) = 0;
  virtual void progress(std::string_view text, double fraction) = 0;
  virtual bool cancelled() = 0;
  virtual void refresh() = 0;  // the records have changed: draw anew
};

// The program is busy while it lives, however the run is left.
class Waiting {
public:
  explicit Waiting(User& user) : user_(user) { user_.busy(true); }
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;
  ~Waiting() { user_.busy(false); }

private:
  User& user_;
};

}  // namespace tv
