#include "gui/table_grid.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "gui/captions.h"
#include "gui/program_style.h"
#include "session/entry.h"

namespace tv {

namespace {

constexpr int kShareRole = Qt::UserRole, kMarkRole = Qt::UserRole + 1;

struct BarColours {
  QColor below, near, over;
};
// Told apart by their words as well; at least 3 to 1 against their paper.
BarColours bar_colours(bool dark) {
  if (dark) return {QColor(112, 184, 116), QColor(240, 150, 66), QColor(255, 104, 96)};
  return {QColor(62, 140, 68), QColor(204, 98, 10), QColor(200, 40, 36)};
}

}  // namespace

// The columns that have a width in the text, and the share of the limit behind them.
class TableModel : public QAbstractTableModel {
public:
  TableModel(Desk& desk, QObject* parent) : QAbstractTableModel(parent), desk_(desk) {}

  void show_table(const OutputTable& table) {
    beginResetModel();
    table_ = table;
    columns_.clear();
    for (std::size_t i = 0; i < table.data.columns.size(); ++i)
      if (table.data.columns[i].width > 0) columns_.push_back(i);
    endResetModel();
  }

  int column_of(int section) const {
    const bool own = section >= 0 && section < static_cast<int>(columns_.size());
    return own ? static_cast<int>(columns_[static_cast<std::size_t>(section)]) : -1;
  }
  int section_of(int column) const {
    const auto at = std::ranges::find(columns_, static_cast<std::size_t>(column));
    return column < 0 || at == columns_.end() ? -1 : static_cast<int>(at - columns_.begin());
  }
  int share_section() const { return static_cast<int>(columns_.size()); }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(table_.data.rows.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size()) + 1;
  }

  QVariant data(const QModelIndex& at, int role) const override {
    if (!at.isValid()) return {};
    const TableRow& row = table_.data.rows[static_cast<std::size_t>(at.row())];
    const bool share = at.column() == share_section();
    switch (role) {
      case Qt::DisplayRole:
        return share ? share_text(row) : figure(row, at.column());
      case Qt::TextAlignmentRole:
        return share ? QVariant(Qt::AlignLeft | Qt::AlignVCenter)
                     : QVariant(Qt::AlignRight | Qt::AlignVCenter);
      case Qt::FontRole:
        return font(at.row());
      case Qt::ForegroundRole:
        return table_.stale ? QVariant(desk_palette().color(QPalette::PlaceholderText)) : QVariant();
      case Qt::AccessibleTextRole:
        return headerData(at.row(), Qt::Vertical, Qt::DisplayRole).toString() + ", " +
               headerData(at.column(), Qt::Horizontal, Qt::DisplayRole).toString().replace('\n', ' ') + " " +
               data(at, Qt::DisplayRole).toString();
      case kShareRole:
        return row.share;
      case kMarkRole:
        return static_cast<int>(row.mark);
      default:
        return {};
    }
  }

  QVariant headerData(int section, Qt::Orientation direction, int role) const override {
    if (direction == Qt::Vertical) {
      if (role == Qt::DisplayRole)
        return qt(table_.data.rows[static_cast<std::size_t>(section)].name).trimmed();
      if (role == Qt::FontRole) return font(section);
      return {};
    }
    if (role == Qt::TextAlignmentRole)
      return section == share_section() ? QVariant(Qt::AlignLeft | Qt::AlignVCenter)
                                        : QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    if (section == share_section()) return text("ftable31");
    const TableColumn& column = table_.data.columns[static_cast<std::size_t>(column_of(section))];
    // The style's own arrow is as wide as this head is high, in every column.
    const bool sorted = column_of(section) == table_.sorted_column;
    return wrapped(text(column.title)) + '\n' + qt(column.unit) +
           (sorted ? QString::fromUtf8(table_.ascending ? " \u25B2" : " \u25BC") : QString());
  }

private:
  const Session& session() const { return desk_.session(); }
  static QPalette desk_palette() { return QApplication::palette(); }
  QString text(const char* key) const { return qt(session().language.fastmsg(key)); }

  // A long head stands in two lines.
  static QString wrapped(QString title) {
    constexpr qsizetype kLong = 10;
    if (title.size() <= kLong) return '\n' + title;
    const qsizetype after = title.indexOf(' ', title.size() / 3),
                    before = title.lastIndexOf(' ', title.size() / 2);
    const qsizetype at = after > 0 ? after : before;
    return at > 0 ? title.replace(at, 1, '\n') : '\n' + title;
  }

  QVariant font(int row) const {
    if (row != table_.present) return {};
    QFont bold = QApplication::font();
    bold.setBold(true);
    return bold;
  }

  QString figure(const TableRow& row, int section) const {
    const auto i = static_cast<std::size_t>(column_of(section));
    const TableColumn& column = table_.data.columns[i];
    return row.has_figures() || column.leads ? qt(cell_text(column, row.values[i])) : QString();
  }

  QString share_text(const TableRow& row) const {
    if (!row.has_figures()) return text(row.reason);
    QString shown =
        std::isfinite(row.share) ? QString::number(std::lround(100 * row.share)) + " %" : QString();
    const QString word = qt(mark_word(row.mark, session().language));
    return shown.isEmpty() || word.isEmpty() ? shown + word : shown + QString::fromUtf8(" \u00B7 ") + word;
  }

  Desk& desk_;
  OutputTable table_;
  std::vector<std::size_t> columns_;  // of the data, by section
};

namespace {

// A bar up to the limit, and the text of the cell behind it.
class ShareDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  static int bar_width(const QFontMetrics& metrics) { return 9 * metrics.averageCharWidth(); }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& at) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, at);
    size.rwidth() += bar_width(option.fontMetrics) + 12;
    return size;
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& at) const override {
    const double share = at.data(kShareRole).toDouble();
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, at);
    const QString text = std::exchange(cell.text, QString());
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    QRect place = option.rect.adjusted(6, 0, -4, 0);
    painter->save();
    if (std::isfinite(share)) {
      draw_bar(*painter, place, option, share, at.data(kMarkRole).toInt());
      place.setLeft(place.left() + bar_width(option.fontMetrics) + 6);
    }
    const bool chosen = option.state & QStyle::State_Selected;
    painter->setFont(cell.font);
    painter->setPen(cell.palette.color(chosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter->restore();
  }

private:
  static void draw_bar(QPainter& painter, const QRect& place, const QStyleOptionViewItem& option,
                       double share, int mark) {
    const int height = std::max(6, option.fontMetrics.height() / 2), width = bar_width(option.fontMetrics);
    const QRectF groove(place.left(), place.center().y() - height / 2.0 + 1, width, height);
    const BarColours colours = bar_colours(is_dark(option.palette));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(QPalette::Midlight));
    painter.drawRoundedRect(groove, height / 2.0, height / 2.0);
    const Mark state = static_cast<Mark>(mark);
    painter.setBrush(state == Mark::over_limit   ? colours.over
                     : state == Mark::near_limit ? colours.near
                                                 : colours.below);
    QRectF filled = groove;
    filled.setWidth(std::clamp(share, 0.0, 1.0) * groove.width());
    painter.setClipRect(filled);
    painter.drawRoundedRect(groove, height / 2.0, height / 2.0);
    painter.setClipping(false);
  }
};

}  // namespace

namespace {

// The names of the rows, on the same paper as their figures.
class RowHead : public QHeaderView {
public:
  explicit RowHead(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {
    setSectionsClickable(true);
    setSectionResizeMode(Fixed);
    setHighlightSections(false);
  }

protected:
  void paintEvent(QPaintEvent* event) override {
    QHeaderView::paintEvent(event);
    QPainter painter(viewport());
    painter.fillRect(QRect(0, length() - offset(), viewport()->width(), viewport()->height()),
                     palette().base());
  }

  void paintSection(QPainter* painter, const QRect& place, int row) const override {
    const bool chosen = selectionModel() && selectionModel()->isRowSelected(row);
    painter->save();
    painter->fillRect(place, palette().color(chosen ? QPalette::Highlight : QPalette::Base));
    QFont own = font();
    own.setBold(model()->headerData(row, Qt::Vertical, Qt::FontRole).value<QFont>().bold());
    painter->setFont(own);
    painter->setPen(palette().color(chosen ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(place.adjusted(6, 0, -6, 0), static_cast<int>(defaultAlignment()) | Qt::TextSingleLine,
                      model()->headerData(row, Qt::Vertical, Qt::DisplayRole).toString());
    painter->restore();
  }
};

}  // namespace

TableGrid::TableGrid(Desk& desk, QWidget* parent)
    : QWidget(parent),
      desk_(desk),
      model_(new TableModel(desk, this)),
      rows_(new QTableView(this)),
      shares_(new ShareDelegate(this)),
      line_(new QToolButton(this)),
      heading_(new QLabel(this)),
      corner_(new QToolButton(rows_)) {
  rows_->setObjectName("tab_rows");
  rows_->setVerticalHeader(new RowHead(rows_));
  rows_->setModel(model_);
  rows_->setSelectionBehavior(QAbstractItemView::SelectRows);
  rows_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  rows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  rows_->setShowGrid(false);
  rows_->setWordWrap(false);
  rows_->setTabKeyNavigation(false);
  rows_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  rows_->setFrameShape(QFrame::NoFrame);
  rows_->horizontalHeader()->setSectionsClickable(true);
  rows_->horizontalHeader()->setHighlightSections(false);
  rows_->installEventFilter(this);
  connect(rows_, &QTableView::doubleClicked, this, [this](const QModelIndex& at) { take(at.row()); });
  connect(rows_->verticalHeader(), &QHeaderView::sectionDoubleClicked, this, [this](int row) { take(row); });
  connect(rows_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
    sort(section == model_->share_section() ? -2 : model_->column_of(section));
  });
  corner_->setAutoRaise(true);
  corner_->setFocusPolicy(Qt::NoFocus);
  corner_->setProperty(kOwn, true);
  connect(corner_, &QToolButton::clicked, this, [this] { sort(-1); });
  line_->setCheckable(true);
  line_->setAutoRaise(true);
  line_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  line_->installEventFilter(this);
  connect(line_, &QToolButton::toggled, this, [this] { fold(); });
  heading_->setTextFormat(Qt::PlainText);
  heading_->setWordWrap(true);
  heading_->setMargin(6);
  heading_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  for (QWidget* widget :
       {static_cast<QWidget*>(rows_), static_cast<QWidget*>(line_), static_cast<QWidget*>(heading_)})
    widget->setProperty(kOwn, true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(line_);
  layout->addWidget(heading_);
  layout->addWidget(rows_, 1);
}

void TableGrid::show_table(const OutputTable& table) {
  const int row = rows_->currentIndex().row(), top = rows_->verticalScrollBar()->value();
  const bool same = shown_.data.rows.size() == table.data.rows.size();
  shown_ = table;
  model_->show_table(table);
  corner_->setText(qt(desk_.session().language.fastmsg(table.data.name_title)));
  corner_->setArrowType(table.by_name ? table.ascending ? Qt::UpArrow : Qt::DownArrow : Qt::NoArrow);
  corner_->setToolButtonStyle(table.by_name ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonTextOnly);
  settle();
  fold();
  if (!same) return;
  rows_->verticalScrollBar()->setValue(top);
  if (row >= 0)
    rows_->selectionModel()->setCurrentIndex(model_->index(row, 0),
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TableGrid::settle() {
  const int height = rows_->fontMetrics().height() + 6;
  rows_->verticalHeader()->setDefaultSectionSize(height);
  // Powders have names, the steps of the load table figures.
  const bool figures = desk_.session().mode() == DisplayMode::load_table;
  rows_->verticalHeader()->setDefaultAlignment((figures ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  const int names = std::max(corner_->sizeHint().width(), rows_->verticalHeader()->sizeHint().width()) + 12;
  rows_->verticalHeader()->setFixedWidth(names);
  for (int i = 0; i < model_->share_section(); ++i) rows_->setItemDelegateForColumn(i, nullptr);
  rows_->setItemDelegateForColumn(model_->share_section(), shares_);
  rows_->resizeColumnsToContents();
  // The share takes the room that is left, and never less than its words need.
  QHeaderView& head = *rows_->horizontalHeader();
  const int last = model_->share_section(), left = rows_->viewport()->width() - head.sectionPosition(last);
  head.resizeSection(last, std::max(head.sectionSize(last), left));
  corner_->setGeometry(0, 0, names, rows_->horizontalHeader()->sizeHint().height());
  corner_->raise();
}

void TableGrid::fold() {
  const Session& s = desk_.session();
  const QString stale = shown_.stale
                            ? qt(s.language.fastmsg("fobsol0") + " " + s.language.fastmsg("fobsol1")) +
                                  QString::fromUtf8(" \u00B7 ")
                            : QString();
  const QString whole = stale + qt(shown_.line);
  line_->setArrowType(line_->isChecked() ? Qt::DownArrow : Qt::RightArrow);
  line_->setText(line_->fontMetrics().elidedText(whole, Qt::ElideRight, std::max(0, line_->width() - 32)));
  line_->setToolTip(whole.toHtmlEscaped());
  line_->setAccessibleName(whole);
  heading_->setText(stale + qt(shown_.heading).trimmed());
  heading_->setVisible(line_->isChecked());
}

void TableGrid::take(int row) {
  desk_.act([&] { pick(desk_.session(), "Form7", "tab_rows", row); });
}

void TableGrid::sort(int column) {
  if (column < -1) return;
  desk_.act([&] { sort_output(desk_.session(), column); });
}

// The chosen rows with their heads, cells parted by tabs; all of them if none is.
void TableGrid::copy() const {
  const QStringList lines = qt(output_table_rows(desk_.session())).split('\n', Qt::SkipEmptyParts);
  const QModelIndexList chosen = rows_->selectionModel()->selectedRows();
  QStringList copied;
  for (int i = 0; i < lines.size(); ++i) {
    const bool wanted = i == 0 || chosen.isEmpty() ||
                        std::ranges::any_of(chosen, [i](const QModelIndex& at) { return at.row() == i - 1; });
    if (wanted) copied << lines[i];
  }
  QApplication::clipboard()->setText(copied.join('\n') + '\n');
}

bool TableGrid::eventFilter(QObject* watched, QEvent* event) {
  if (watched == line_ && event->type() == QEvent::Resize) fold();
  if (watched == rows_ && event->type() == QEvent::Resize && model_->rowCount() > 0) settle();
  if (watched == rows_ && event->type() == QEvent::KeyPress) {
    const auto* pressed = static_cast<QKeyEvent*>(event);
    if (pressed->matches(QKeySequence::Copy)) {
      copy();
      return true;
    }
    if ((pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter) &&
        rows_->currentIndex().isValid()) {
      take(rows_->currentIndex().row());
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void TableGrid::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && model_->rowCount() > 0) settle();
}

}  // namespace tv
