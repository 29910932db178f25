#include "gui/main_frame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFile>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "gui/captions.h"
#include "gui/icons.h"
#include "gui/notice_line.h"
#include "gui/tiled_desk.h"
#include "gui/window_commands.h"
#include "session/load_files.h"
#include "session/start.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr double kTwips = 15;  // one device-independent pixel

// Where a window's place is kept; the size only of those that have keys for it.
struct PlaceKeys {
  const char* screen;
  std::string Options::*left;
  std::string Options::*top;
  std::string Options::*width = nullptr;
  std::string Options::*height = nullptr;
};
constexpr PlaceKeys kFrame{"frmMAIN", &Options::form1l, &Options::form1t, &Options::form1w, &Options::form1h};
constexpr PlaceKeys kChildren[] = {
    {"Form3", &Options::form3l, &Options::form3t},
    {"Form4", &Options::form4l, &Options::form4t},
    {"Form5", &Options::form5l, &Options::form5t, &Options::form5w, &Options::form5h},
    {"Form7", &Options::form7l, &Options::form7t, &Options::form7w, &Options::form7h},
    {"Form9", &Options::form9l, &Options::form9t},
};

int pixels(const std::string& twips) {
  return static_cast<int>(std::clamp(read_number(twips) / kTwips, -30000.0, 30000.0));
}
std::string twips(int pixel) { return general(pixel * kTwips); }

void keep_place(Options& options, const PlaceKeys& keys, const QRect& place) {
  options.*keys.left = twips(place.x());
  options.*keys.top = twips(place.y());
  if (keys.width) {
    options.*keys.width = twips(place.width());
    options.*keys.height = twips(place.height());
  }
}

// Moved and cut so that all of it lies on a screen that exists.
QRect onto_screen(QRect wish) {
  const QScreen* screen = QGuiApplication::screenAt(wish.center());
  if (!screen) screen = QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  wish.setSize(wish.size().boundedTo(room.size()));
  wish.moveLeft(std::clamp(wish.left(), room.left(), room.right() + 1 - wish.width()));
  wish.moveTop(std::clamp(wish.top(), room.top(), room.bottom() + 1 - wish.height()));
  return wish;
}

std::string dropped_load(const QMimeData* data) {
  for (const QUrl& url : data->urls())
    if (url.isLocalFile() && url.path().endsWith(".dat", Qt::CaseInsensitive))
      return QFile::encodeName(url.toLocalFile()).toStdString();
  return {};
}

}  // namespace

MainFrame::MainFrame(Desk& desk)
    : desk_(desk),
      place_(new QStackedWidget),
      area_(new QMdiArea),
      tiles_(new TiledDesk(desk)),
      notice_(new NoticeLine(desk)),
      status_(new QLabel),
      progress_(new QProgressBar),
      menus_(desk, *menuBar(), "frmMAIN") {
  setObjectName("frmMAIN");
  setWindowIcon(program_icon());
  setAcceptDrops(true);
  auto* toolbar = addToolBar(QString());
  buttons_ = std::make_unique<ToolButtons>(desk, *toolbar);
  auto* centre = new QWidget(this);
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setActivationOrder(QMdiArea::CreationOrder);
  place_->addWidget(tiles_);
  place_->addWidget(area_);
  layout->addWidget(notice_);
  layout->addWidget(place_, 1);
  setCentralWidget(centre);
  status_->setObjectName("status_line");
  progress_->setObjectName("progress");
  progress_->setRange(0, 1000);
  progress_->setMaximumWidth(260);
  progress_->hide();
  statusBar()->addWidget(status_, 1);
  statusBar()->addPermanentWidget(progress_);
  add_keys();
  recaption();
}

// Keys that no menu shows.
void MainFrame::add_keys() {
  const auto key = [this](QKeySequence keys, auto run) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, run);
  };
  const auto next = [this](int by) {
    if (desk_.tiled())
      tiles_->next_area(by);
    else
      by > 0 ? area_->activateNextSubWindow() : area_->activatePreviousSubWindow();
  };
  key(Qt::ALT | Qt::Key_PageUp, [next] { next(1); });
  key(Qt::Key_F6, [next] { next(1); });
  key(Qt::SHIFT | Qt::Key_F6, [next] { next(-1); });
  for (int n = 0; n < 6; ++n)
    key(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + n)), [this, n] {
      if (desk_.tiled()) tiles_->choose_tab(n);
    });
}

void MainFrame::show_tiled(bool tiled) {
  place_->setCurrentWidget(tiled ? static_cast<QWidget*>(tiles_) : area_);
}

void MainFrame::refresh() {
  const Session& s = desk_.session();
  if (const QBrush back = QApplication::palette().brush(QPalette::Mid); area_->background() != back)
    area_->setBackground(back);
  if (desk_.tiled()) tiles_->refresh();
  menus_.refresh();
  buttons_->refresh();
  setWindowTitle(qt(load_caption(s)));
  const QString status = qt(s.status).simplified();
  if (status_->text() != status) status_->setText(status);
  notice_->refresh();
}

void MainFrame::recaption() {
  apply_captions(this, desk_.session(), "frmMAIN");
  tiles_->recaption();
  notice_->refresh();
}

void MainFrame::show_progress(std::string_view text, double fraction) {
  progress_->setVisible(fraction >= 0);
  if (fraction < 0) return;
  progress_->setValue(static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 1000));
  status_->setText(qt(text));
}

void MainFrame::scroll_to(const QMdiSubWindow& child) {
  const QRect place = child.geometry();
  const QSize room = area_->viewport()->size();
  // The least way that brings its far edge in, its near edge first.
  const auto way = [](int from, int to, int size) {
    return from < 0 || to - from > size ? from : std::max(0, to - size);
  };
  for (const auto& [bar, by] :
       {std::pair{area_->horizontalScrollBar(), way(place.left(), place.right() + 1, room.width())},
        {area_->verticalScrollBar(), way(place.top(), place.bottom() + 1, room.height())}})
    bar->setValue(bar->value() + by);
}

void MainFrame::restore_places() {
  apply_fonts(desk_);
  const Options& options = desk_.session().options;
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  // At first a desk with room for everything, and for a title and a task bar around it.
  QRect place(QPoint(), QSize(1440, 900).boundedTo(room.size() - QSize(0, 40)));
  place.moveCenter(room.center());
  if (!options.form1w.empty() && pixels(options.form1w) > 100 && pixels(options.form1h) > 100)
    place =
        QRect(pixels(options.form1l), pixels(options.form1t), pixels(options.form1w), pixels(options.form1h));
  setGeometry(onto_screen(place));
  layout()->activate();
  place_->resize(size());
  desk_.arrange(options.atiles);
  options.form1max ? showMaximized() : show();
  if (!options.atiles) restore_children();
}

// Windows of their own stand where they stood; the first time each has its own size, one behind the other.
void MainFrame::restore_children() {
  const Options& options = desk_.session().options;
  if (std::ranges::none_of(kChildren, [&](const PlaceKeys& keys) { return !(options.*keys.left).empty(); }))
    return cascade(desk_);
  for (const PlaceKeys& keys : kChildren) {
    auto* child = findChild<QMdiSubWindow*>(keys.screen);
    if (!child || (options.*keys.left).empty()) continue;
    const QSize size = keys.width && pixels(options.*keys.width) > 50
                           ? QSize(pixels(options.*keys.width), pixels(options.*keys.height))
                           : child->sizeHint();
    child->setGeometry(QRect(QPoint(pixels(options.*keys.left), pixels(options.*keys.top)), size));
  }
}

void MainFrame::keep_places() {
  Options& options = desk_.session().options;
  options.form1max = isMaximized();
  const QRect normal = isMaximized() || isMinimized() || isFullScreen() ? normalGeometry() : geometry();
  if (normal.width() > 100) keep_place(options, kFrame, normal);
  if (desk_.tiled()) return;  // nobody has chosen the places of panes
  // Places in the area, wherever it is scrolled to now.
  const QPoint scrolled(area_->horizontalScrollBar()->value(), area_->verticalScrollBar()->value());
  for (const PlaceKeys& keys : kChildren)
    if (auto* child = findChild<QMdiSubWindow*>(keys.screen);
        child && !child->isHidden() && !child->isMaximized() && !child->isMinimized())
      keep_place(options, keys, child->geometry().translated(scrolled));
}

void MainFrame::closeEvent(QCloseEvent* event) {
  keep_places();
  bool ends = desk_.session().end_requested;  // the command has asked already
  if (!ends) desk_.act([&] { ends = ask_to_end(desk_.session()); });
  desk_.session().end_requested = ends;
  event->setAccepted(ends);
  if (ends) qApp->quit();
}

void MainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (!dropped_load(event->mimeData()).empty()) event->acceptProposedAction();
}

void MainFrame::dropEvent(QDropEvent* event) {
  const std::string file = dropped_load(event->mimeData());
  if (file.empty()) return;
  event->acceptProposedAction();
  desk_.act([&] { open_load(desk_.session(), file); });
}

}  // namespace tv
