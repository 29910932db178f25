// The output window: diagram and text in one place, its menu bar, the read-out and the mouse.
#include <QFontDatabase>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "gui/captions.h"
#include "gui/menus.h"
#include "gui/painter.h"
#include "gui/windows.h"
#include "screens/output_window.h"

namespace tv {
namespace {

constexpr const char* kScreen = "Form7";

// The text of tables and point lists: copied as columns, the row at the cursor stands out.
class TableText : public QPlainTextEdit {
public:
  explicit TableText(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setContextMenuPolicy(Qt::NoContextMenu);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { mark_row(); });
  }
  std::function<void()> on_double_click;

protected:
  QMimeData* createMimeDataFromSelection() const override;
  void mouseDoubleClickEvent(QMouseEvent*) override {
    if (on_double_click) on_double_click();
  }

private:
  void mark_row() {
    QTextEdit::ExtraSelection row;
    row.format.setBackground(palette().alternateBase());
    row.format.setProperty(QTextFormat::FullWidthSelection, true);
    row.cursor = textCursor();
    row.cursor.clearSelection();
    setExtraSelections({row});
  }
};

QMimeData* TableText::createMimeDataFromSelection() const {
  static const QRegularExpression gap("[ ]{2,}");  // parts the columns
  auto* columns = new QMimeData;
  columns->setText(textCursor().selectedText().replace(QChar(0x2029), '\n').replace(gap, "\t"));
  return columns;
}

// The drawing surface.
class Surface : public QWidget {
public:
  Surface(Desk& desk, QWidget* parent) : QWidget(parent), desk_(desk) {
    setObjectName("Pict1");
    setProperty(kOwn, true);
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    setMinimumSize(227, 200);  // 3400 x 3000 twips
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
  }
  std::function<void(const std::optional<ReadOut>&)> on_read_out;
  std::function<void()> on_double_click;

  QSize sizeHint() const override { return {520, 330}; }
  const Diagram& diagram() {
    if (width() != drawn_.list.width || height() != drawn_.list.height || stale_) draw();
    return drawn_;
  }
  void redraw() {
    stale_ = true;
    update();
  }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    replay(painter, diagram().list);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    const Session& s = desk_.session();
    if (!s.shown.any) return on_read_out(std::nullopt);
    const DiagramRun run{&s.shown.state, &s.curve, &s.result};
    on_read_out(read_out(drawn_.frame, diagram_options(s), run, at(event)));
  }
  void leaveEvent(QEvent*) override { on_read_out(std::nullopt); }
  // A click counts on release: beside an axis it fits the load, on the legend it picks a curve.
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !rect().contains(event->pos())) return;
    Session& s = desk_.session();
    desk_.act([&] {
      if (const int curve = legend_curve(drawn_, at(event)))
        s.followed_curve = s.followed_curve == curve ? 0 : curve;
      else
        click_output(s, drawn_.frame, at(event));
    });
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    if (inside_plot(drawn_.frame, at(event))) on_double_click();
  }

private:
  static Point at(const QMouseEvent* event) { return {event->position().x(), event->position().y()}; }
  void draw() {
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    drawn_ = output_diagram(desk_.session(), width(), height(), qt_text_width, dark);
    stale_ = false;
  }

  Desk& desk_;
  Diagram drawn_;
  bool stale_ = true;
};

class OutputView : public QWidget {
public:
  explicit OutputView(Desk& desk);
  void refresh();
  void recaption() { menus_->recaption(); }

private:
  Session& session() { return desk_.session(); }

  Desk& desk_;
  std::unique_ptr<Menus> menus_;
  QStackedLayout* place_;
  Surface* surface_;
  TableText* text_;
  QLabel* read_outs_[3];
};

OutputView::OutputView(Desk& desk) : desk_(desk) {
  auto* bar = new QMenuBar(this);
  menus_ = std::make_unique<Menus>(desk, *bar, "form7");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setMenuBar(bar);
  place_ = new QStackedLayout;
  layout->addLayout(place_, 1);
  surface_ = new Surface(desk, this);
  text_ = new TableText(this);
  text_->setObjectName("Text1");
  text_->setProperty(kOwn, true);
  place_->addWidget(surface_);
  place_->addWidget(text_);
  auto* strip = new QHBoxLayout;
  strip->setContentsMargins(6, 1, 6, 1);
  for (int i = 0; i < 3; ++i) {
    read_outs_[i] = new QLabel(this);
    read_outs_[i]->setObjectName(QStringList{"x1", "y1", "y2"}[i]);
    strip->addWidget(read_outs_[i], 1);
  }
  layout->addLayout(strip);
  surface_->on_read_out = [this](const std::optional<ReadOut>& at) {
    const std::string texts[] = {at ? at->x : "", at ? at->y1 : "", at ? at->y2 : ""};
    for (int i = 0; i < 3; ++i) {
      set_text(session(), kScreen, utf8(read_outs_[i]->objectName()), texts[i]);
      read_outs_[i]->setText(qt(texts[i]));
    }
  };
  surface_->on_double_click =
      text_->on_double_click = [this] { desk_.act([this] { output_switch(session()); }); };
  for (QWidget* widget : {static_cast<QWidget*>(surface_), static_cast<QWidget*>(text_->viewport())}) {
    widget->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(widget, &QWidget::customContextMenuRequested, this, [bar, widget](const QPoint& at) {
      QMenu menu;
      menu.addActions(bar->actions());
      menu.exec(widget->mapToGlobal(at));
    });
  }
}

void OutputView::refresh() {
  menus_->refresh();
  const bool as_text = output_shows_text(session());
  if (as_text) {
    const QString text = qt(output_text(session()));
    if (text_->toPlainText() != text) text_->setPlainText(text);
  }
  place_->setCurrentWidget(as_text ? static_cast<QWidget*>(text_) : surface_);
  surface_->redraw();
}

}  // namespace

View make_output_view(Desk& desk) {
  auto* output = new OutputView(desk);
  View view;
  view.root = output;
  view.refresh = [output, &desk] {
    output->refresh();
    QString title = qt(output_caption(desk.session()));
    if (!title.endsWith(kProgramName)) title = title + " - " + kProgramName;  // tables name it themselves
    if (QWidget* window = output->parentWidget(); window && window->windowTitle() != title)
      window->setWindowTitle(title);
  };
  view.recaption = [output] { output->recaption(); };
  return view;
}

}  // namespace tv
