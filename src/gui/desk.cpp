#include "gui/desk.h"

#include <QApplication>
#include <QClipboard>
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
#include "gui/surface_view.h"
#include "gui/window_commands.h"
#include "gui/windows.h"
#include "session/entry.h"
#include "session/message.h"

namespace tv {

Desk::Desk(Session& session) : session_(session) {
  session_.hooks.language_changed = [this](Session&) { recaption(); };
  session_.hooks.window_command = [this](Session&, std::string_view name) {
    run_window_command(*this, name);
  };
  session_.hooks.copy_text = [](const std::string& text) { QApplication::clipboard()->setText(qt(text)); };
  session_.hooks.paste_text = [] { return std::optional(utf8(QApplication::clipboard()->text())); };
}

Desk::~Desk() {
  closing_ = true;  // a widget that dies with the focus on it still tells so
  session_.hooks = {};
  for (auto& [screen, view] : views_)
    if (!view.window->parent()) delete view.window;  // the notice, made before the frame
  frame_.reset();
}

void Desk::open_frame() {
  translate_toolkit();
  frame_ = std::make_unique<MainFrame>(*this);
  act([this] {
    for (const ScreenSpec* spec : session_.program.screens)
      if (spec->shape == ScreenShape::child) open_screen(session_, spec->name);
  });
  frame_->restore_places();
  frame_->show();
  act([this] { focus_list(session_, RecordKind::cartridges); });
}

void Desk::act(const std::function<void()>& action) {
  if (closing_) return;
  ++depth_;
  try {
    const Action whole(session_);
    action();
  } catch (const std::exception& fault) {
    show_fault(fault.what());
  } catch (...) {
    show_fault({});
  }
  if (--depth_ > 0) return;
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
  ++refreshes_;
  refresh_screens(session_);
  // A widget that loses the focus because it was disabled changes the record once more.
  for (int round = 0; again_ && round < 4; ++round) {
    again_ = false;
    for (auto& [screen, view] : views_) {
      show_visibility(screen);
      if (session_.screens[screen].visible) view.refresh();
    }
    if (frame_) frame_->refresh();
  }
  refreshing_ = false;
}

void Desk::show_visibility(std::string_view screen) {
  const auto at = views_.find(screen);
  if (at == views_.end()) return;
  QWidget* window = at->second.window;
  const bool wanted = session_.screens.find(screen)->second.visible;
  if (wanted == !window->isHidden()) return;
  if (auto* dialog = qobject_cast<QDialog*>(window); dialog && dialog->isModal() && !wanted)
    dialog->done(QDialog::Rejected);
  else
    window->setVisible(wanted);
}

// The texts of Qt's own dialogs.
void Desk::translate_toolkit() {
  QCoreApplication::removeTranslator(&translator_);
  for (const auto& [language, code] : delivered_languages())
    if (session_.language.name() == language &&
        translator_.load("qtbase_" + qt(code), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
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
  const auto known = session_.screens.find(screen);
  if (known == session_.screens.end() || known->second.spec->shape == ScreenShape::frame) return nullptr;
  View view = make_view(*known->second.spec);
  if (!view.window) return nullptr;
  View& kept = views_[known->first] = std::move(view);
  kept.recaption();
  kept.refresh();
  return &kept;
}

namespace {

struct OwnWindow {
  std::string_view screen;
  View (*make)(Desk&, const ScreenSpec&, QWidget* parent);
};
constexpr OwnWindow kOwnWindows[] = {
    {"Form2", make_notice_view},
    {"Form7", make_output_view},
    {"frmHelp", make_about_view},
    {"frmPic", make_picture_view},
};

}  // namespace

View Desk::make_view(const ScreenSpec& spec) {
  const auto* own = std::ranges::find(kOwnWindows, spec.name, &OwnWindow::screen);
  View view;
  if (own != std::end(kOwnWindows))
    view = own->make(*this, spec, frame_.get());
  else
    view.root = build_form(*this, spec, nullptr);
  if (!view.window) give_window(spec, view);
  return view;
}

// A child of the frame, a dialog or a floating window around the root, and what keeps it up to date.
void Desk::give_window(const ScreenSpec& spec, View& view) {
  const std::string screen = spec.name;
  auto* binder = new Binder(
      session_, [this](const auto& action) { act(action); }, spec, view.root);
  if (spec.shape == ScreenShape::child && frame_) {
    auto* child = new ChildWindow(*this, screen);
    child->setWidget(view.root);
    frame_->area().addSubWindow(child);
    view.window = child;
  } else {
    auto* dialog = new ScreenDialog(*this, screen, frame_.get());
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    layout->addWidget(view.root);
    if (spec.shape == ScreenShape::floating) dialog->setWindowFlag(Qt::Tool);
    view.window = dialog;
  }
  view.window->setObjectName(spec.name);
  view.window->setProperty(kOwnSection, true);
  std::vector<SurfaceView*> surfaces;
  for (QWidget* widget : view.root->findChildren<QWidget*>())
    if (auto* surface = dynamic_cast<SurfaceView*>(widget)) surfaces.push_back(surface);
  // New captions and units may need more room, also in a window that is hidden now.
  const auto fit = [window = view.window, root = view.root] {
    align_form(root);
    settle_layouts(window);
    window->resize(window->size().expandedTo(window->minimumSizeHint()));
  };
  view.refresh = [binder, fit, surfaces, own = view.refresh] {
    if (binder->refresh()) fit();
    if (own) own();
    for (SurfaceView* surface : surfaces) surface->refresh();
  };
  view.recaption = [this, &spec, window = view.window, root = view.root, fit, own = view.recaption] {
    apply_captions(root, session_, spec.section);
    fit();
    window->setWindowTitle(plain_caption(qt(session_.language.text(spec.section, spec.name))) + " - " +
                           kProgramName);
    if (own) own();
  };
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
  const int depth = set_depth(0);
  refresh();
  if (session_.screens[std::string(screen)].visible) dialog->exec();
  set_depth(depth);
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
