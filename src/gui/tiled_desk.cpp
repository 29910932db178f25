#include "gui/tiled_desk.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/captions.h"
#include "gui/program_style.h"
#include "gui/small_labels.h"
#include "session/run.h"

namespace tv {
namespace {

constexpr int kGap = 8, kRadius = 6;
// With less room than these, in pixels, the entries share one place.
constexpr int kWide = 1180, kHigh = 500;

constexpr const char* kDimensions = "Form3";
constexpr const char* kPowder = "Form4";
constexpr const char* kResults = "Form5";
constexpr const char* kOutput = "Form7";

// A tab shows a screen, perhaps in one of its modes.
struct Tab {
  const char* caption;
  const char* screen;
  bool (*in_mode)(int mode) = nullptr;
  int mode = 0;  // to be chosen; of the diagrams the last one
};
constexpr Tab kTabs[] = {
    {"tab_diagram", kOutput, [](int mode) { return mode > 0; }, 1},
    {"tab_load", kOutput, [](int mode) { return mode == -1; }, -1},
    {"tab_powder", kOutput, [](int mode) { return mode == -2; }, -2},
    {"tab_shot", kOutput, [](int mode) { return mode == 0; }, 0},
    {"tab_burn", "Form9"},
    {"tab_results", kResults},
};
constexpr int kTabCount = static_cast<int>(std::size(kTabs));

bool shown(const Session& s, const char* screen) {
  const auto at = s.screens.find(screen);
  return at != s.screens.end() && at->second.visible;
}

QScrollArea* scroll_area(QWidget* parent) {
  auto* area = new QScrollArea(parent);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  area->viewport()->setAutoFillBackground(false);
  return area;
}

// A scroll area that asks for the width of what it holds.
void hold(QScrollArea& area, QWidget* widget) {
  area.setWidget(widget);
  widget->setAutoFillBackground(false);
  widget->show();
}

QTabBar* tab_bar(QWidget* parent) {
  auto* bar = new QTabBar(parent);
  bar->setDrawBase(false);
  bar->setExpanding(false);
  bar->setFocusPolicy(Qt::TabFocus);
  return bar;
}

void chain(const std::vector<QWidget*>& roots) {
  QWidget* before = nullptr;
  for (QWidget* root : roots) {
    QList<QWidget*> all{root};
    all += root->findChildren<QWidget*>();
    for (QWidget* widget : all) {
      if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy() || widget->isWindow()) continue;
      if (widget->window() != root->window()) continue;  // in the popup of a list
      if (before) QWidget::setTabOrder(before, widget);
      before = widget;
    }
  }
}

}  // namespace

// --- a pane

Pane::Pane(const char* heading, QWidget* parent) : QFrame(parent) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3, 4, 3, 3);
  column->setSpacing(2);
  if (heading) {
    auto* label = new DimLabel(this);
    label->setObjectName(heading);
    label->setProperty(kCaptionKey, heading);
    label->setContentsMargins(9, 3, 0, 0);
    scale_label(*label, 1, true);
    column->addWidget(label);
  }
  colour();
}

void Pane::hold(QWidget* widget, int stretch) {
  static_cast<QVBoxLayout*>(layout())->addWidget(widget, stretch);
  widget->show();
}

// Only the ground is the pane's own, all else that of the desktop.
void Pane::colour() {
  const QColor ground = pane_colour(QApplication::palette());
  if (palette().color(QPalette::Window) == ground) return;
  QPalette own;
  own.setColor(QPalette::Window, ground);
  setPalette(own);
}

bool Pane::event(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) colour();
  return QFrame::event(event);
}

void Pane::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
}

// --- the desk

TiledDesk::TiledDesk(Desk& desk) : desk_(desk) {
  setObjectName("tiled_desk");
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  auto* ground = new QWidget(this);
  auto* whole = new QVBoxLayout(ground);
  whole->setContentsMargins(kGap, kGap, kGap, kGap);
  across_ = new QSplitter(Qt::Horizontal, ground);
  across_->setChildrenCollapsible(false);
  across_->setHandleWidth(kGap);
  whole->addWidget(across_);

  make_entries();
  make_results();
  across_->setStretchFactor(0, 0);
  across_->setStretchFactor(1, 1);
  setWidget(ground);
  follow_hands();
}

void TiledDesk::make_entries() {
  auto* left = new QWidget(across_);
  auto* left_column = new QVBoxLayout(left);
  left_column->setContentsMargins(0, 0, 0, 0);
  left_column->setSpacing(2);
  entry_tabs_ = tab_bar(left);
  entry_tabs_->setObjectName("entry_tabs");
  for (int i = 0; i < 2; ++i) entry_tabs_->addTab(QString());
  left_column->addWidget(entry_tabs_);
  down_ = new QSplitter(Qt::Vertical, left);
  down_->setChildrenCollapsible(false);
  down_->setHandleWidth(kGap);
  left_column->addWidget(down_, 1);
  dimensions_ = new Pane("pane_entries", down_);
  coefficients_ = new Pane(nullptr, down_);
  powder_ = new Pane("pane_charge", down_);
  dimensions_area_ = scroll_area(dimensions_);
  dimensions_->hold(dimensions_area_, 1);
  coefficients_area_ = scroll_area(coefficients_);
  coefficients_->hold(coefficients_area_, 1);
  down_->setStretchFactor(0, 1);
  down_->setStretchFactor(1, 1);
  down_->setStretchFactor(2, 0);
}

void TiledDesk::make_results() {
  auto* right = new QWidget(across_);
  auto* right_column = new QVBoxLayout(right);
  right_column->setContentsMargins(0, 0, 0, 0);
  right_column->setSpacing(kGap);
  strip_ = new Pane(nullptr, right);
  strip_->setObjectName("key_figures");
  strip_->setFocusPolicy(Qt::TabFocus);
  results_ = new Pane(nullptr, right);
  tabs_ = tab_bar(results_);
  tabs_->setObjectName("desk_tabs");
  for (int i = 0; i < kTabCount; ++i) tabs_->addTab(QString());
  pages_ = new QStackedWidget(results_);
  results_->hold(tabs_);
  results_->hold(pages_, 1);
  right_column->addWidget(strip_);
  right_column->addWidget(results_, 1);
}

// Tabs that are chosen and parts that are dragged.
void TiledDesk::follow_hands() {
  connect(tabs_, &QTabBar::currentChanged, this, [this](int tab) {
    if (!placing_) tab_chosen(tab);
  });
  connect(entry_tabs_, &QTabBar::currentChanged, this, [this](int tab) { show_entry(tab); });
  connect(across_, &QSplitter::splitterMoved, this,
          [this] { desk_.session().options.deskleft = across_->sizes().first(); });
  connect(down_, &QSplitter::splitterMoved, this,
          [this] { desk_.session().options.desktop = down_->sizes()[0] + down_->sizes()[1]; });
}

void TiledDesk::take(std::string_view screen, View& view) {
  const std::string name(screen);
  std::erase_if(taken_, [&](const auto& part) { return part.first == name; });
  if (view.apart) taken_.emplace_back(name, view.apart);
  taken_.emplace_back(name, view.root);
  view.window->hide();
  if (screen == kDimensions) {
    hold(*dimensions_area_, view.root);
  } else if (screen == kPowder) {
    powder_->hold(view.apart);
    powder_form_ = view.root;
    if (compact_)
      hold(*coefficients_area_, powder_form_);
    else
      powder_->hold(powder_form_);
  } else {
    if (screen == kResults) strip_->hold(view.apart);
    take_page(view.root, screen == kOutput);
  }
}

// Pictures and tables find their room themselves; what has fields scrolls where they do not fit.
void TiledDesk::take_page(QWidget* root, bool fits) {
  if (page_of(root)) return;
  if (fits) {
    pages_->addWidget(root);
    return;
  }
  QScrollArea* area = scroll_area(pages_);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  hold(*area, root);
  pages_->addWidget(area);
}

QWidget* TiledDesk::page_of(const QWidget* root) const {
  for (int i = 0; i < pages_->count(); ++i)
    if (QWidget* page = pages_->widget(i); page == root || page->isAncestorOf(root)) return page;
  return nullptr;
}

void TiledDesk::give_back(View& view) {
  for (QScrollArea* area : {dimensions_area_, coefficients_area_})
    if (area->widget() && area->widget() == view.root) area->takeWidget();
  if (QWidget* page = page_of(view.root)) {
    pages_->removeWidget(page);
    if (auto* area = qobject_cast<QScrollArea*>(page); area && area->widget() == view.root) {
      area->takeWidget();
      area->deleteLater();
    }
  }
  if (view.root == powder_form_) powder_form_ = nullptr;
  std::erase_if(taken_,
                [&](const auto& part) { return part.second == view.root || part.second == view.apart; });
}

void TiledDesk::settle() {
  const Options& options = desk_.session().options;
  if (!options.desktab.empty())
    for (std::size_t i = 0; i < std::size(kTabs); ++i)
      if (options.desktab == kTabs[i].caption && shown(desk_.session(), kTabs[i].screen)) front_ = i;
  recaption();
  arrange();
  place_splitters();
  std::vector<QWidget*> order{entry_tabs_};
  for (const char* screen : {kDimensions, kPowder})
    for (const auto& [name, part] : taken_)
      if (name == screen) order.push_back(part);
  order.insert(order.end(), {strip_, tabs_, pages_});
  chain(order);
  refresh();
}

void TiledDesk::recaption() {
  const Session& s = desk_.session();
  apply_captions(this, s, "frmMAIN");
  for (int i = 0; i < kTabCount; ++i) tabs_->setTabText(i, qt(s.language.text("frmMAIN", kTabs[i].caption)));
  entry_tabs_->setTabText(0, qt(s.language.text("form3", kDimensions)));
  entry_tabs_->setTabText(1, qt(s.language.text("form4", "fold_powder")));
  if (isVisible())
    QMetaObject::invokeMethod(
        this, [this] { place_splitters(); }, Qt::QueuedConnection);
}

// --- tabs

int TiledDesk::tab_of_state() const {
  const int mode = desk_.session().options.grftyp;
  if (!kTabs[front_].in_mode) return static_cast<int>(front_);
  for (int i = 0; i < kTabCount; ++i)
    if (kTabs[i].in_mode && kTabs[i].in_mode(mode)) return i;
  return 0;
}

void TiledDesk::tab_chosen(int tab) {
  if (placing_ || tab < 0 || tab >= kTabCount) return;
  front_ = static_cast<std::size_t>(tab);
  desk_.act([this, tab] {
    Session& s = desk_.session();
    const Tab& chosen = kTabs[tab];
    s.options.desktab = chosen.caption;
    if (chosen.in_mode && !chosen.in_mode(s.options.grftyp))
      SetDisplayMode(s, chosen.mode > 0 ? last_diagram_ : chosen.mode);
  });
}

void TiledDesk::choose_tab(int n) {
  for (int i = 0; i < kTabCount; ++i)
    if (tabs_->isTabVisible(i) && n-- == 0) {
      tab_chosen(i);
      tabs_->setFocus(Qt::ShortcutFocusReason);
      return;
    }
}

void TiledDesk::refresh() {
  const Session& s = desk_.session();
  placing_ = true;
  if (s.options.grftyp > 0) last_diagram_ = s.options.grftyp;
  bool any = false;
  for (int i = 0; i < kTabCount; ++i) {
    const bool on = shown(s, kTabs[i].screen);
    any = any || on;
    if (tabs_->isTabVisible(i) != on) tabs_->setTabVisible(i, on);
  }
  results_->setVisible(any);
  front_ = static_cast<std::size_t>(tab_of_state());
  if (any && !shown(s, kTabs[front_].screen))  // hidden: the first one left
    for (std::size_t i = 0; i < std::size(kTabs); ++i)
      if (shown(s, kTabs[i].screen)) {
        front_ = i;
        front_ = static_cast<std::size_t>(tab_of_state());
        break;
      }
  if (tabs_->currentIndex() != static_cast<int>(front_)) tabs_->setCurrentIndex(static_cast<int>(front_));
  for (const auto& [name, part] : taken_)
    if (QWidget* page = page_of(part);
        name == kTabs[front_].screen && page && pages_->currentWidget() != page)
      pages_->setCurrentWidget(page);
  placing_ = false;
  show_entry(entry_tabs_->currentIndex());
  say_key_figures();
}

// What a screen reader reads of the key figures, as one stop.
void TiledDesk::say_key_figures() {
  QStringList said;
  for (const QLabel* label : strip_->findChildren<QLabel*>())
    if (!label->text().isEmpty()) said << label->text();
  const QString text = said.join(' ');
  if (strip_->accessibleName() == text) return;
  strip_->setAccessibleName(text);
}

// --- room

void TiledDesk::show_entry(int tab) {
  const Session& s = desk_.session();
  const bool dimensions = shown(s, kDimensions), powder = shown(s, kPowder);
  entry_tabs_->setVisible(compact_ && dimensions && powder);
  dimensions_->setVisible(dimensions && (!compact_ || tab == 0 || !powder));
  coefficients_->setVisible(compact_ && powder && (tab == 1 || !dimensions));
  powder_->setVisible(powder);
  down_->parentWidget()->setVisible(dimensions || powder);
}

void TiledDesk::set_compact(bool compact) {
  if (compact == compact_) return;
  compact_ = compact;
  if (!powder_form_) return;
  if (compact) {
    hold(*coefficients_area_, powder_form_);
  } else {
    coefficients_area_->takeWidget();
    powder_->hold(powder_form_);
  }
}

void TiledDesk::arrange() {
  set_compact(width() < kWide || height() < kHigh);
  show_entry(entry_tabs_->currentIndex());
  // The entries that scroll keep the width of what they hold, and room for the bar.
  for (const QScrollArea* area : {dimensions_area_, coefficients_area_})
    if (const QWidget* held = area->widget())
      area->parentWidget()->setMinimumWidth(held->minimumSizeHint().width() +
                                            area->verticalScrollBar()->sizeHint().width() + 4);
}

// What the entries like; with little room what they need.
int TiledDesk::entry_width() const {
  int width = down_->parentWidget()->minimumSizeHint().width();
  const QWidget* held = dimensions_area_->widget();
  if (!compact_ && held)
    width = std::max(
        width, held->sizeHint().width() + dimensions_area_->verticalScrollBar()->sizeHint().width() + 10);
  return width;
}

// Where the person has put them, else as wide and high as the entries like it.
void TiledDesk::place_splitters() {
  arrange();
  const Options& options = desk_.session().options;
  const int width = across_->width() - kGap, height = down_->height() - kGap;
  const int left = options.deskleft > 0 ? options.deskleft : entry_width();
  across_->setSizes({left, std::max(0, width - left)});
  const int least = powder_->minimumSizeHint().height();
  const int upper = options.desktop > 0 ? options.desktop : height - least;
  down_->setSizes({upper, upper, height - upper});
}

void TiledDesk::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  place_splitters();
}

bool TiledDesk::event(QEvent* event) {
  const bool used = QScrollArea::event(event);
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::FontChange) place_splitters();
  return used;
}

// --- ways to a place

void TiledDesk::bring_to_front(std::string_view screen) {
  for (std::size_t i = 0; i < std::size(kTabs); ++i)
    if (screen == kTabs[i].screen && screen != kTabs[front_].screen) {
      front_ = i;
      break;
    }
  refresh();
}

void TiledDesk::reveal(QWidget* control) {
  if (dimensions_area_->isAncestorOf(control)) entry_tabs_->setCurrentIndex(0);
  if (coefficients_area_->isAncestorOf(control)) entry_tabs_->setCurrentIndex(1);
  for (QScrollArea* area : {dimensions_area_, coefficients_area_})
    if (area->isAncestorOf(control)) area->ensureWidgetVisible(control, 0, 24);
  for (int i = 0; i < pages_->count(); ++i)
    if (auto* area = qobject_cast<QScrollArea*>(pages_->widget(i)); area && area->isAncestorOf(control))
      area->ensureWidgetVisible(control, 24, 24);
  ensureWidgetVisible(control, 0, 24);
}

void TiledDesk::next_area(int by) {
  QWidget* const areas[] = {down_->parentWidget(), strip_, results_};
  constexpr int kAreas = 3;
  const QWidget* focused = QApplication::focusWidget();
  int at = by > 0 ? kAreas - 1 : 0;
  for (int i = 0; i < kAreas; ++i)
    if (focused && (areas[i] == focused || areas[i]->isAncestorOf(focused))) at = i;
  for (int step = 0; step < kAreas; ++step) {
    at = (at + by + kAreas) % kAreas;
    if (!areas[at]->isVisible()) continue;
    if (at == 1) return strip_->setFocus(Qt::ShortcutFocusReason);
    if (at == 2) return tabs_->setFocus(Qt::ShortcutFocusReason);
    QList<QWidget*> fields;
    for (const auto& [name, part] : taken_)
      if (areas[0]->isAncestorOf(part)) fields += part->findChildren<QWidget*>();
    for (QWidget* field : fields)
      if (field->isVisible() && (field->focusPolicy() & Qt::TabFocus))
        return field->setFocus(Qt::ShortcutFocusReason);
  }
}

std::string TiledDesk::screen_of(const QWidget* widget) const {
  for (const auto& [name, part] : taken_)
    if (widget && (part == widget || part->isAncestorOf(widget))) return name;
  return kTabs[front_].screen;
}

}  // namespace tv
