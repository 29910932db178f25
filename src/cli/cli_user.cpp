#include "cli/cli_user.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "text/file.h"

namespace tv {
namespace {

constexpr const char* kKinds[] = {"warning", "question", "info"};
constexpr const char* kAnswers[] = {"ok", "cancel", "yes", "no", "retry"};

const char* name_of(Answer answer) { return kAnswers[static_cast<std::size_t>(answer)]; }

std::vector<Answer> answers_of(Buttons buttons) {
  switch (buttons) {
    case Buttons::yes_no:
      return {Answer::yes, Answer::no};
    case Buttons::ok_cancel:
      return {Answer::ok, Answer::cancel};
    case Buttons::retry_cancel:
      return {Answer::retry, Answer::cancel};
    case Buttons::save_discard_cancel:
      return {Answer::yes, Answer::no, Answer::cancel};
    case Buttons::ok:
      break;
  }
  return {Answer::ok};
}

// A second try would only fail again: nobody is there to change anything.
Answer unasked_answer(Buttons buttons, bool yes) {
  if (buttons == Buttons::retry_cancel) return Answer::cancel;
  const auto possible = answers_of(buttons);
  return yes ? possible.front() : possible.back();
}

std::string full_path(const std::string& path) {
  std::error_code error;
  const auto full = std::filesystem::absolute(forward_slashes(path), error);
  return error ? path : full.lexically_normal().string();
}

}  // namespace

std::vector<std::string> CliUser::warning_keys() const {
  std::vector<std::string> keys;
  for (const ShownBox& box : shown)
    if (box.kind == "warning") keys.insert(keys.end(), box.keys.begin(), box.keys.end());
  return keys;
}

void CliUser::print(const std::string& title, const std::string& text) {
  std::string plain = text;
  std::erase(plain, '\r');
  while (plain.ends_with('\n')) plain.pop_back();
  err_ << title << ": " << plain << "\n";
}

std::optional<QueuedAnswer> CliUser::next_answer(const std::string& question) {
  if (answers.empty()) {
    if (scripted && !yes) throw NoAnswer{"no answer is queued for: " + question};
    return std::nullopt;
  }
  const QueuedAnswer answer = answers.front();
  answers.pop_front();
  return answer;
}

// A script that goes on to another load is done with the one at hand, unless it says otherwise.
static bool gives_up_load(const CliUser& user, const Box& box) {
  return user.scripted && !user.yes && user.answers.empty() &&
         std::ranges::find(box.message.keys, "msg431") != box.message.keys.end();
}

Answer CliUser::box(const Box& box) {
  print(box.title, box.message.text);
  Answer answer = Answer::ok;
  if (box.buttons != Buttons::ok) {
    answer = unasked_answer(box.buttons, yes);
    if (gives_up_load(*this, box)) {
      answer = Answer::no;
    } else if (const auto queued = next_answer(box.message.text)) {
      const auto possible = answers_of(box.buttons);
      const auto at = std::ranges::find_if(
          possible, [&](Answer a) { return queued->word && queued->text == name_of(a); });
      if (at == possible.end())
        throw NoAnswer{"\"" + queued->text + "\" is no answer to: " + box.message.text};
      answer = *at;
    }
  }
  shown.push_back({kKinds[static_cast<std::size_t>(box.kind)], box.message.keys, box.title, box.message.text,
                   name_of(answer)});
  return answer;
}

// Nothing if the question was cancelled.
std::optional<std::string> CliUser::text_answer(const std::string& kind, const std::string& title,
                                                const Message& prompt, const std::string& proposed) {
  const auto queued = next_answer(prompt.text.empty() ? title : prompt.text);
  std::optional<std::string> answer;
  if (!queued) {
    if (yes && !proposed.empty()) answer = proposed;
  } else if (!queued->word) {
    answer = queued->text;
  } else if (queued->text == "ok") {
    answer = proposed;
  } else if (queued->text != "cancel") {
    throw NoAnswer{"\"" + queued->text +
                   "\" is no answer to: " + (prompt.text.empty() ? title : prompt.text)};
  }
  shown.push_back({kind, prompt.keys, title, prompt.text, answer ? *answer : "cancel"});
  return answer;
}

std::optional<std::string> CliUser::input(const InputBox& box) {
  return text_answer("input", box.title, box.prompt, box.value);
}

// The text is the path; a comment may follow it behind a line end.
std::optional<FileAnswer> CliUser::choose_file(const FileBox& box) {
  const auto answer =
      text_answer("file", box.title, {}, box.name.empty() ? std::string() : box.folder + box.name);
  if (!answer || answer->empty()) return std::nullopt;
  const auto end = answer->find('\n');
  const std::string comment = end == std::string::npos ? box.comment : answer->substr(end + 1);
  return FileAnswer{full_path(answer->substr(0, end)), comment};
}

std::optional<std::string> CliUser::choose_folder(const Message& prompt, const std::string& start) {
  auto answer = text_answer("file", "", prompt, start);
  if (answer) answer = full_path(*answer);
  return answer;
}

void CliUser::bring_to_front(std::string_view screen) {
  if (on_visible) on_visible(screen, true);
}

void CliUser::focus(std::string_view screen, std::string_view field) {
  focus_screen = screen;
  focus_field = field;
  if (on_focus) on_focus(screen, field);
}

void CliUser::hide(std::string_view screen) {
  if (on_visible) on_visible(screen, false);
}

void CliUser::run_dialog(std::string_view screen) {
  if (on_dialog) on_dialog(screen);
}

}  // namespace tv
