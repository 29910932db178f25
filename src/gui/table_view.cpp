#include "gui/table_view.h"

#include <QFontDatabase>
#include <QMimeData>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include "gui/captions.h"

namespace tv {
namespace {

// Between the paper and the colour of a selection: the row stands out, and its text from it.
QColor row_colour(const QPalette& palette) {
  const QColor paper = palette.color(QPalette::Base), chosen = palette.color(QPalette::Highlight);
  const auto mix = [](int a, int b) { return (3 * a + b) / 4; };
  return {mix(paper.red(), chosen.red()), mix(paper.green(), chosen.green()),
          mix(paper.blue(), chosen.blue())};
}

// Stands over the top rows as long as the head of the columns has been scrolled away.
class FixedHead : public QWidget {
public:
  explicit FixedHead(TableView& table) : QWidget(&table), table_(table) { hide(); }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    table_.paint_head(painter);
  }
  void mousePressEvent(QMouseEvent*) override {}  // not for the row beneath
  void mouseDoubleClickEvent(QMouseEvent*) override {
    if (table_.on_double_click) table_.on_double_click();
  }

private:
  TableView& table_;
};

}  // namespace

TableView::TableView(QWidget* parent) : QPlainTextEdit(parent), head_(new FixedHead(*this)) {
  setReadOnly(true);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setContextMenuPolicy(Qt::NoContextMenu);
  head_->setObjectName("fixed_head");
  head_->setProperty(kOwn, true);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
    mark_row();
    bring_row_below_head();
  });
}

void TableView::show_text(const OutputText& shown) {
  head_line_ = shown.head_line;
  head_lines_ = shown.head_lines;
  const QString text = qt(shown.text);
  if (toPlainText() != text) setPlainText(text);
  place_head();
}

QMimeData* TableView::createMimeDataFromSelection() const {
  static const QRegularExpression gap("[ ]{2,}");  // parts the columns
  auto* columns = new QMimeData;
  columns->setText(textCursor().selectedText().replace(QChar(0x2029), '\n').replace(gap, "\t"));
  return columns;
}

void TableView::mouseDoubleClickEvent(QMouseEvent*) {
  if (on_double_click) on_double_click();
}

void TableView::mark_row() {
  QTextEdit::ExtraSelection row;
  row.format.setBackground(row_colour(palette()));
  row.format.setProperty(QTextFormat::FullWidthSelection, true);
  row.cursor = textCursor();
  row.cursor.clearSelection();
  setExtraSelections({row});
}

void TableView::place_head() {
  const bool scrolled = head_lines_ > 0 && firstVisibleBlock().blockNumber() > head_line_;
  if (scrolled) {
    const QRectF line = blockBoundingRect(document()->findBlockByNumber(head_line_));
    const int height = static_cast<int>(line.height() * head_lines_);
    head_->setGeometry(QRect(viewport()->pos(), QSize(viewport()->width(), height)));
    head_->update();
  }
  head_->setVisible(scrolled);
}

void TableView::paint_head(QPainter& painter) {
  painter.fillRect(head_->rect(), palette().base());
  painter.setPen(palette().color(QPalette::Text));
  double y = 0;
  for (int i = 0; i < head_lines_; ++i) {
    const QTextBlock block = document()->findBlockByNumber(head_line_ + i);
    if (!block.isValid()) break;
    block.layout()->draw(&painter, {contentOffset().x(), y});
    y += blockBoundingRect(block).height();
  }
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(0, head_->height() - 1, head_->width(), head_->height() - 1);
}

// The cursor keys bring a row to the top edge, where the head would hide it.
void TableView::bring_row_below_head() {
  if (!head_->isVisible() || textCursor().blockNumber() < head_line_ + head_lines_) return;
  const int hidden = head_->height() - cursorRect().top();
  const int row = std::max(1, cursorRect().height());
  if (hidden > 0) verticalScrollBar()->setValue(verticalScrollBar()->value() - (hidden + row - 1) / row);
}

void TableView::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  place_head();
}

void TableView::scrollContentsBy(int dx, int dy) {
  QPlainTextEdit::scrollContentsBy(dx, dy);
  place_head();
}

void TableView::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    mark_row();
    place_head();
  }
}

}  // namespace tv
