#include "gui/gui_user.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>

#include "gui/captions.h"
#include "gui/desk.h"
#include "gui/file_dialog.h"
#include "gui/input_box.h"
#include "gui/main_frame.h"
#include "gui/tiled_desk.h"
#include "session/entry.h"
#include "session/folds.h"

namespace tv {
namespace {

QMessageBox::Icon icon_of(BoxKind kind) {
  switch (kind) {
    case BoxKind::warning:
      return QMessageBox::Warning;
    case BoxKind::question:
      return QMessageBox::Question;
    case BoxKind::info:
      return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

struct ButtonOf {
  Answer answer;
  const char *key, *otherwise;
  QMessageBox::ButtonRole role;
};
constexpr ButtonOf kOk{Answer::ok, "ok", "OK", QMessageBox::AcceptRole};
constexpr ButtonOf kCancel{Answer::cancel, "cancel", "Cancel", QMessageBox::RejectRole};
constexpr ButtonOf kYes{Answer::yes, "yes", "&Yes", QMessageBox::YesRole};
constexpr ButtonOf kNo{Answer::no, "no", "&No", QMessageBox::NoRole};
constexpr ButtonOf kSave{Answer::yes, "save", "&Save", QMessageBox::AcceptRole};
constexpr ButtonOf kDiscard{Answer::no, "discard", "&Discard", QMessageBox::DestructiveRole};
constexpr ButtonOf kRetry{Answer::retry, "retry", "&Retry", QMessageBox::AcceptRole};

std::vector<ButtonOf> buttons_of(Buttons buttons) {
  switch (buttons) {
    case Buttons::ok:
      return {kOk};
    case Buttons::yes_no:
      return {kYes, kNo};
    case Buttons::ok_cancel:
      return {kOk, kCancel};
    case Buttons::retry_cancel:
      return {kRetry, kCancel};
    case Buttons::save_discard_cancel:
      return {kSave, kDiscard, kCancel};
  }
  return {kOk};
}

}  // namespace

void GuiUser::attach(Session* session, Desk* desk) {
  session_ = session;
  desk_ = desk;
}

QString GuiUser::button_caption(const char* key, const char* otherwise) const {
  const std::string caption = session_ ? session_->language.text("files", key) : std::string();
  return caption.empty() ? QString(otherwise) : qt(caption);
}

Answer GuiUser::box(const Box& box) {
  refresh();
  QMessageBox shown(QApplication::activeWindow());
  shown.setObjectName("box");
  shown.setIcon(icon_of(box.kind));
  shown.setWindowTitle(qt(box.title.empty() ? kProgramName : box.title));
  shown.setTextFormat(Qt::PlainText);
  shown.setText(qt(box.message.text));
  std::vector<std::pair<QAbstractButton*, Answer>> answers;
  for (const ButtonOf& button : buttons_of(box.buttons))
    answers.emplace_back(shown.addButton(button_caption(button.key, button.otherwise), button.role),
                         button.answer);
  shown.setDefaultButton(qobject_cast<QPushButton*>(answers.front().first));
  shown.setEscapeButton(answers.back().first);  // No, Cancel, or the only one
  shown.exec();
  for (const auto& [button, answer] : answers)
    if (button == shown.clickedButton()) return answer;
  return answers.back().second;
}

std::optional<std::string> GuiUser::input(const InputBox& box) {
  refresh();
  return run_input_box(*session_, box, QApplication::activeWindow());
}

std::optional<FileAnswer> GuiUser::choose_file(const FileBox& box) {
  refresh();
  return run_file_dialog(*session_, box, QApplication::activeWindow());
}

std::optional<std::string> GuiUser::choose_folder(const Message& prompt, const std::string& start) {
  const QString folder = QFileDialog::getExistingDirectory(QApplication::activeWindow(), qt(prompt.text),
                                                           QFile::decodeName(start.c_str()));
  if (folder.isEmpty()) return std::nullopt;
  const std::string chosen = QFile::encodeName(folder).toStdString();
  return chosen.ends_with('/') ? chosen : chosen + '/';
}

void GuiUser::beep() { QApplication::beep(); }

void GuiUser::set_visible(std::string_view screen, bool visible) {
  if (const auto at = session_->screens.find(screen); at != session_->screens.end())
    at->second.visible = visible;
}

void GuiUser::bring_to_front(std::string_view screen) {
  if (!desk_ || !desk_->frame()) return;
  View* view = desk_->view(screen);
  if (!view) return;
  set_visible(screen, true);
  desk_->show_visibility(screen);
  if (qobject_cast<QMdiSubWindow*>(view->window)) {
    desk_->show_in_front(screen);
  } else {
    view->window->raise();
    view->window->activateWindow();
  }
}

void GuiUser::focus(std::string_view screen, std::string_view field) {
  if (!desk_ || !desk_->frame()) return;
  bring_to_front(screen);
  if (open_fold_of(*session_, screen, field)) focus_field(*session_, screen, field);  // which keeps it open
  refresh();
  View* view = desk_->view(screen);
  auto* widget = view ? view->control(qt(field)) : nullptr;
  if (!widget) return;
  if (desk_->tiled()) desk_->frame()->tiles().reveal(widget);
  widget->setFocus(Qt::OtherFocusReason);
  if (auto* edit = qobject_cast<QLineEdit*>(widget)) edit->selectAll();
  if (auto* list = qobject_cast<QComboBox*>(widget); list && list->lineEdit()) list->lineEdit()->selectAll();
}

void GuiUser::hide(std::string_view screen) {
  set_visible(screen, false);
  if (desk_) desk_->show_visibility(screen);
}

void GuiUser::run_dialog(std::string_view screen) {
  if (desk_) desk_->run_dialog(screen);
}

void GuiUser::busy(bool on) {
  if (on && busy_++ == 0) {
    cancelled_ = false;
    told_.invalidate();
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else if (!on && busy_ > 0 && --busy_ == 0) {
    QApplication::restoreOverrideCursor();
    if (desk_ && desk_->frame()) desk_->frame()->show_progress({}, -1);
  }
}

// Painting each powder would take longer than calculating it.
void GuiUser::progress(std::string_view text, double fraction) {
  constexpr qint64 kOften = 20;  // ms
  if (told_.isValid() && told_.elapsed() < kOften) return;
  told_.start();
  if (desk_ && desk_->frame()) desk_->frame()->show_progress(text, fraction);
  RunGuard(cancelled_).pass_events();
}

bool GuiUser::cancelled() {
  RunGuard(cancelled_).pass_events();
  return cancelled_;
}

void GuiUser::refresh() {
  if (desk_) desk_->refresh();
}

void RunGuard::pass_events() {
  qApp->installEventFilter(this);
  QApplication::processEvents();
  qApp->removeEventFilter(this);
}

bool RunGuard::eventFilter(QObject*, QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      event->accept();
      return true;
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) cancelled_ = true;
      return true;
    case QEvent::Close:
      event->ignore();
      return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
      return true;
    default:
      return false;
  }
}

}  // namespace tv
