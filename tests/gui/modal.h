// Answers a modal window when it comes; a test in which none comes fails instead of waiting for ever.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include <gtest/gtest.h>

namespace tv {

class Modal {
public:
  explicit Modal(std::function<void(QDialog*)> answer, int limit_ms = 5000) : answer_(std::move(answer)) {
    since_.start();
    timer_.setInterval(5);
    QObject::connect(&timer_, &QTimer::timeout, [this, limit_ms] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog && dialog->isVisible()) {
        timer_.stop();
        seen = true;
        answer_(dialog);
      } else if (since_.hasExpired(limit_ms)) {
        timer_.stop();
        ADD_FAILURE() << "no modal window came";
      }
    });
    timer_.start();
  }
  bool seen = false;

private:
  std::function<void(QDialog*)> answer_;
  QTimer timer_;
  QElapsedTimer since_;
};

// Presses the n-th button of a message box, in the order they were added.
inline std::function<void(QDialog*)> box_button(int n, QString* text = nullptr) {
  return [n, text](QDialog* dialog) {
    auto* box = qobject_cast<QMessageBox*>(dialog);
    ASSERT_NE(box, nullptr);
    if (text) *text = box->text();
    box->buttons().at(n)->click();
  };
}

inline std::function<void(QDialog*)> press_in_dialog(const char* button) {
  return [button](QDialog* dialog) {
    auto* found = dialog->findChild<QPushButton*>(button);
    ASSERT_NE(found, nullptr) << button;
    found->click();
  };
}

}  // namespace tv
