#include "gui/desk.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLibraryInfo>
#include <QMdiArea>
#include <QMessageBox>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/form_builder.h"
#include "gui/main_frame.h"
#include "gui/window_commands.h"
#include "gui/windows.h"
#include "screens/entry.h"

namespace tv {

Desk::Desk(Session& session) : session_(session) {
  session_.outputs_changed = [this](Session&) { refresh(); };
  session_.language_changed = [this](Session&) { recaption(); };
  session_.window_command = [this](Session&, std::string_view name) { run_window_command(*this, name); };
}

Desk::~Desk() {
  closing_ = true;  // a widget that dies with the focus on it still tells so
  session_.outputs_changed = nullptr;
  session_.language_changed = nullptr;
  session_.window_command = nullptr;
  for (auto& [screen, view] : views_)
    if (!view.window->parent()) delete view.window;  // the notice, made before the frame
  frame_.reset();
}

void Desk::open_frame() {
  translate_toolkit();
  frame_ = std::make_unique<MainFrame>(*this);
  act([this] {
    for (const char* screen : {"Form3", "Form4", "Form5", "Form7"}) open_screen(session_, screen);
  });
  frame_->restore_places();
  frame_->show();
  act([this] { session_.user->focus("Form3", "HVolDat"); });
}

void Desk::act(const std::function<void()>& action) {
  if (closing_) return;
  try {
    action();
  } catch (const std::exception& fault) {
    show_fault(fault.what());
  } catch (...) {
    show_fault({});
  }
  refresh();
  if (session_.end_requested && frame_ && !ending_) {
    ending_ = true;
    frame_->close();
  }
}

void Desk::refresh() {
  again_ = true;
  if (refreshing_ || closing_) return;
  refreshing_ = true;
  // A widget that loses the focus because it was disabled changes the record once more.
  for (int round = 0; again_ && round < 4; ++round) {
    again_ = false;
    for (auto& [screen, view] : views_) {
      show_visibility(screen, view);
      if (session_.screens[screen].visible) view.refresh();
    }
    if (frame_) frame_->refresh();
  }
  refreshing_ = false;
}

void Desk::show_visibility(const std::string& screen, View& view) {
  const bool wanted = session_.screens[screen].visible;
  if (wanted == !view.window->isHidden()) return;
  if (auto* dialog = qobject_cast<QDialog*>(view.window); dialog && dialog->isModal() && !wanted)
    dialog->done(QDialog::Rejected);
  else
    view.window->setVisible(wanted);
}

// The texts of Qt's own dialogs.
void Desk::translate_toolkit() {
  static constexpr std::pair<const char*, const char*> kCodes[] = {
      {"german", "de"}, {"french", "fr"}, {"russian", "ru"}};
  QCoreApplication::removeTranslator(&translator_);
  for (const auto& [language, code] : kCodes)
    if (session_.language.name() == language &&
        translator_.load(QString("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
      QCoreApplication::installTranslator(&translator_);
}

void Desk::recaption() {
  translate_toolkit();
  const bool tiled = frame_ && still_tiled(*this);
  for (auto& [screen, view] : views_) view.recaption();
  if (frame_) frame_->recaption();
  refresh();
  if (tiled) tile(*this);
}

// From the inside out; a hidden window would do it only when it is shown, too late to grow.
static void settle_layouts(QWidget* window) {
  const QList<QWidget*> inner = window->findChildren<QWidget*>();
  for (qsizetype i = inner.size() - 1; i >= 0; --i)
    if (inner[i]->layout()) inner[i]->layout()->activate();
  if (window->layout()) window->layout()->activate();
}

View* Desk::view(std::string_view screen) {
  const auto at = views_.find(screen);
  if (at != views_.end()) return &at->second;
  const ScreenInfo* info = screen_info(screen);
  if (!info || info->shape == ScreenShape::frame) return nullptr;
  View view = make_view(*info);
  if (!view.window) return nullptr;
  View& kept = views_[info->name] = std::move(view);
  kept.recaption();
  kept.refresh();
  return &kept;
}

View Desk::make_view(const ScreenInfo& info) {
  const std::string screen = info.name;
  QWidget* parent = frame_.get();
  if (screen == "Form2") return make_notice_view(*this, parent);
  if (screen == "frmPic") return make_picture_view(*this, parent);
  if (screen == "frmHelp") return make_about_view(*this, parent);
  View view;
  std::string default_button;
  if (screen == "Form7") {
    view = make_output_view(*this);
  } else if (const FormLayout* layout = form_layout(screen)) {
    view.root = build_form(*layout, nullptr);
    if (screen == "Form3") view.refresh = make_cartridge_view(*this, view.root);
    default_button = layout->default_button ? layout->default_button : "";
  } else {
    return {};
  }
  auto* binder = new Binder(
      session_, [this](const auto& action) { act(action); }, screen, view.root, default_button);
  if (info.shape == ScreenShape::child && frame_) {
    auto* child = new ChildWindow(*this, screen);
    child->setWidget(view.root);
    frame_->area().addSubWindow(child);
    view.window = child;
  } else {
    auto* dialog = new ScreenDialog(*this, screen, parent);
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    layout->addWidget(view.root);
    if (info.shape == ScreenShape::floating) dialog->setWindowFlag(Qt::Tool);
    view.window = dialog;
  }
  view.window->setObjectName(screen);
  view.window->setProperty(kOwnSection, true);
  // New captions and units may need more room, also in a window that is hidden now.
  const auto fit = [window = view.window, root = view.root] {
    align_form(root);
    settle_layouts(window);
    window->resize(window->size().expandedTo(window->minimumSizeHint()));
  };
  view.refresh = [binder, fit, own = view.refresh] {
    if (binder->refresh()) fit();
    if (own) own();
  };
  view.recaption = [this, screen, section = std::string(info.section), window = view.window, root = view.root,
                    fit, own = view.recaption] {
    apply_captions(root, session_, section);
    fit();
    window->setWindowTitle(plain_caption(qt(session_.language.text(section, screen))) + " - " + kProgramName);
    if (own) own();
  };
  return view;
}

std::string Desk::active_screen() const {
  const QWidget* active = QApplication::activeWindow();
  for (const auto& [screen, view] : views_)
    if (view.window == active) return screen;
  if (frame_)
    if (const QMdiSubWindow* child = frame_->area().activeSubWindow()) return utf8(child->objectName());
  return "frmMAIN";
}

void Desk::run_dialog(std::string_view screen) {
  View* shown = view(screen);
  auto* dialog = shown ? qobject_cast<QDialog*>(shown->window) : nullptr;
  if (!dialog) return;
  session_.screens[std::string(screen)].visible = true;
  dialog->setModal(true);
  refresh();
  if (session_.screens[std::string(screen)].visible) dialog->exec();
  session_.screens[std::string(screen)].visible = false;
  dialog->setModal(false);
}

ChildWindow::ChildWindow(Desk& desk, std::string screen) : desk_(desk), screen_(std::move(screen)) {
  setAttribute(Qt::WA_DeleteOnClose, false);
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (MainFrame* frame = desk_.frame()) frame->keep_places();
  desk_.act([this] { close_screen(desk_.session(), screen_); });
}

ScreenDialog::ScreenDialog(Desk& desk, std::string screen, QWidget* parent)
    : QDialog(parent), desk_(desk), screen_(std::move(screen)) {}

void ScreenDialog::reject() {
  desk_.act([this] { close_screen(desk_.session(), screen_); });
}

void show_fault(const std::string& what) {
  QMessageBox box(QMessageBox::Critical, kProgramName, qt(what), QMessageBox::Ok,
                  QApplication::activeWindow());
  box.exec();
}

}  // namespace tv
