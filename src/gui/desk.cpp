#include "gui/desk.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QLibraryInfo>
#include <QMdiArea>
#include <QMessageBox>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>

#include "gui/binder.h"
#include "gui/captions.h"
#include "gui/form_builder.h"
#include "gui/main_frame.h"
#include "gui/number_edit.h"
#include "gui/surface_view.h"
#include "gui/tiled_desk.h"
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
      const bool tile = tiled_ && session_.screens[screen].spec->shape == ScreenShape::child;
      if (!tile) show_visibility(screen);
      // Key figures stand on a tiled desk without the rest of their screen.
      if (session_.screens[screen].visible || (tiled_ && view.apart)) view.refresh();
    }
    if (frame_) frame_->refresh();
  }
  refreshing_ = false;
}

void Desk::show_visibility(std::string_view screen) {
  const auto at = views_.find(screen);
  if (at == views_.end()) return;
  QWidget* window = at->second.window;
  const Screen& record = session_.screens.find(screen)->second;
  const bool child = record.spec->shape == ScreenShape::child;
  if (tiled_ && child) return frame_->tiles().refresh();
  const bool wanted = record.visible;
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
  for (auto& [screen, view] : views_) view.recaption();
  if (frame_) frame_->recaption();
  refresh();
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
  if (tiled_ && known->second.spec->shape == ScreenShape::child) {
    frame_->tiles().take(screen, kept);
    frame_->tiles().settle();
  }
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
    view.root = build_form(*this, spec, spec.form, nullptr);
  if (!spec.apart.empty()) view.apart = build_form(*this, spec, spec.apart, nullptr);
  if (!view.window) give_window(spec, view);
  return view;
}

QWidget* View::control(const QString& name) const {
  for (const QWidget* part : {apart, root})
    if (part)
      if (auto* found = part->findChild<QWidget*>(name)) return found;
  return nullptr;
}

namespace {

bool is_entry(const ScreenSpec& spec) { return spec.role == Role::dimensions || spec.role == Role::powder; }

std::vector<QWidget*> parts_of(const View& view) {
  if (view.apart) return {view.apart, view.root};
  return {view.root};
}

}  // namespace

// The entries of the load have their edges in common, whatever window they stand in.
void Desk::align(const ScreenSpec& spec, const View& view) const {
  std::vector<QWidget*> parts = parts_of(view);
  for (const auto& [name, other] : views_)
    if (const ScreenSpec* known = session_.screens.find(name)->second.spec;
        is_entry(spec) && is_entry(*known) && known != &spec)
      std::ranges::copy(parts_of(other), std::back_inserter(parts));
  align_forms(parts);
}

// A child of the frame, a dialog or a floating window around the root, and what keeps it up to date.
void Desk::give_window(const ScreenSpec& spec, View& view) {
  const std::string screen = spec.name;
  const auto run = [this](const auto& action) { act(action); };
  std::vector<Binder*> binders;
  for (QWidget* part : parts_of(view)) {
    part->setObjectName(spec.name);
    part->setProperty(kOwnSection, true);
    binders.push_back(new Binder(session_, run, spec, part));
  }
  view.body = new QWidget;
  auto* column = new QVBoxLayout(view.body);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  for (QWidget* part : parts_of(view)) column->addWidget(part, part == view.root ? 1 : 0);
  if (spec.shape == ScreenShape::child && frame_) {
    auto* child = new ChildWindow(*this, screen);
    child->setWidget(view.body);
    frame_->area().addSubWindow(child);
    view.window = child;
  } else {
    auto* dialog = new ScreenDialog(*this, screen, frame_.get());
    auto* layout = new QVBoxLayout(dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    layout->addWidget(view.body);
    if (spec.shape == ScreenShape::floating) dialog->setWindowFlag(Qt::Tool);
    view.window = dialog;
  }
  view.window->setObjectName(spec.name);
  view.window->setProperty(kOwnSection, true);
  std::vector<SurfaceView*> surfaces;
  for (QWidget* part : parts_of(view))
    for (QWidget* widget : part->findChildren<QWidget*>())
      if (auto* surface = dynamic_cast<SurfaceView*>(widget)) surfaces.push_back(surface);
  // New captions and units may need more room, also in a window that is hidden now.
  const auto fit = [this, &spec, kept = view] {
    align(spec, kept);
    settle_layouts(kept.window);
    kept.window->resize(kept.window->size().expandedTo(kept.window->minimumSizeHint()));
  };
  view.refresh = [binders, fit, surfaces, own = view.refresh] {
    bool relabelled = false;
    for (Binder* binder : binders) relabelled = binder->refresh() || relabelled;
    if (relabelled) fit();
    if (own) own();
    for (SurfaceView* surface : surfaces) surface->refresh();
  };
  view.recaption = [this, &spec, kept = view, fit, own = view.recaption] {
    for (QWidget* part : parts_of(kept)) apply_captions(part, session_, spec.section);
    fit();
    kept.window->setWindowTitle(plain_caption(qt(session_.language.text(spec.section, spec.name))) + " - " +
                                kProgramName);
    if (own) own();
  };
}

void Desk::arrange(bool tiled) {
  tiled_ = tiled;
  for (auto& [screen, view] : views_) {
    if (session_.screens[screen].spec->shape != ScreenShape::child) continue;
    if (tiled) {
      frame_->tiles().take(screen, view);
      continue;
    }
    frame_->tiles().give_back(view);
    auto* column = static_cast<QVBoxLayout*>(view.body->layout());
    for (QWidget* part : parts_of(view)) {
      column->addWidget(part, part == view.root ? 1 : 0);
      part->show();
    }
    view.window->setVisible(session_.screens[screen].visible);
  }
  if (tiled) frame_->tiles().settle();
  frame_->show_tiled(tiled);
  refresh();
}

void Desk::show_in_front(std::string_view screen) {
  View* shown = view(screen);
  if (!shown) return;
  if (tiled_) return frame_->tiles().bring_to_front(screen);
  auto* child = static_cast<QMdiSubWindow*>(shown->window);
  if (child->isMinimized()) child->showNormal();
  // A window with nothing to type into does not take the focus from the entry at hand.
  const auto fields = shown->body->findChildren<FieldEdit*>();
  const bool entries = std::ranges::any_of(fields, [](const FieldEdit* edit) { return !edit->isReadOnly(); });
  child->raise();
  if (!entries && frame_->area().activeSubWindow()) return;
  frame_->area().setActiveSubWindow(child);
  frame_->scroll_to(*child);
}

std::string Desk::active_screen() const {
  const QWidget* active = QApplication::activeWindow();
  for (const auto& [screen, view] : views_)
    if (view.window == active) return screen;
  if (frame_ && tiled_) return frame_->tiles().screen_of(frame_->focusWidget());
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
