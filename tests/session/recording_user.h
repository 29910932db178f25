// A person of the tests: answers what has been laid ready, notes everything that happens. A question without
// an answer fails the test, and is given up, so that no loop asks for ever.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "session/session.h"

namespace tv_test {

// A field as a person would see it now.
inline tv::Field& shown(tv::Session& s, std::string_view screen, std::string_view name) {
  tv::refresh_screens(s);
  return tv::field(s, screen, name);
}

class RecordingUser : public tv::User {
public:
  std::deque<tv::Answer> answers;                 // to questions, in their order
  std::deque<std::optional<std::string>> inputs;  // nothing: cancelled
  std::deque<std::optional<tv::FileAnswer>> files;
  std::deque<std::optional<std::string>> folders;
  bool gives_up = false;                            // every question is cancelled without failing the test
  std::function<void(std::string_view)> on_dialog;  // what is done while a modal screen is open
  std::function<bool()> wants_to_cancel;

  std::vector<std::string> events;  // "box msg163 msg164", "beep", "front Form3", "focus Form3.Bwgm"
  std::vector<tv::Box> boxes;
  std::vector<tv::InputBox> asked;
  int refreshes = 0, progressed = 0, waiting = 0;

  void forget() {
    events.clear();
    boxes.clear();
    asked.clear();
  }
  // The keys of all boxes, one box after the other: "msg163 msg164; msg178 msg179".
  std::string box_keys() const {
    std::string keys;
    for (const tv::Box& box : boxes) keys += (keys.empty() ? "" : "; ") + joined(box.message);
    return keys;
  }
  int count(const std::string& event) const { return static_cast<int>(std::ranges::count(events, event)); }
  std::string last_focus() const { return last("focus "); }
  std::string last_front() const { return last("front "); }

  tv::Answer box(const tv::Box& box) override {
    boxes.push_back(box);
    events.push_back("box " + joined(box.message));
    if (box.buttons == tv::Buttons::ok) return tv::Answer::ok;
    const tv::Answer no = box.buttons == tv::Buttons::yes_no ? tv::Answer::no : tv::Answer::cancel;
    return next(answers, no, box.message.text);
  }
  std::optional<std::string> input(const tv::InputBox& box) override {
    asked.push_back(box);
    events.push_back("input " + joined(box.prompt));
    return next(inputs, std::optional<std::string>{}, box.prompt.text);
  }
  std::optional<tv::FileAnswer> choose_file(const tv::FileBox& box) override {
    events.push_back("file");
    return next(files, std::optional<tv::FileAnswer>{}, box.title);
  }
  std::optional<std::string> choose_folder(const tv::Message& prompt, const std::string&) override {
    events.push_back("folder");
    return next(folders, std::optional<std::string>{}, prompt.text);
  }
  void beep() override { events.push_back("beep"); }
  void bring_to_front(std::string_view screen) override { events.push_back("front " + std::string(screen)); }
  void focus(std::string_view screen, std::string_view field) override {
    events.push_back("focus " + std::string(screen) + "." + std::string(field));
  }
  void hide(std::string_view screen) override { events.push_back("hide " + std::string(screen)); }
  void run_dialog(std::string_view screen) override {
    events.push_back("dialog " + std::string(screen));
    if (on_dialog) on_dialog(screen);
  }
  void busy(bool on) override { waiting += on ? 1 : -1; }
  void progress(std::string_view, double) override { ++progressed; }
  bool cancelled() override { return wants_to_cancel && wants_to_cancel(); }
  void refresh() override { ++refreshes; }

private:
  static std::string joined(const tv::Message& message) {
    std::string keys;
    for (const std::string& key : message.keys) keys += (keys.empty() ? "" : " ") + key;
    return keys;
  }
  std::string last(const std::string& kind) const {
    for (auto event = events.rbegin(); event != events.rend(); ++event)
      if (event->starts_with(kind)) return event->substr(kind.size());
    return {};
  }
  template <class Value>
  Value next(std::deque<Value>& ready, Value otherwise, const std::string& question) {
    if (ready.empty()) {
      if (!gives_up) ADD_FAILURE() << "no answer to: " << question;
      return otherwise;
    }
    Value value = ready.front();
    ready.pop_front();
    return value;
  }
};

}  // namespace tv_test
