#include "gui/record_list.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QPainter>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QWheelEvent>
#include <algorithm>

namespace tv {
namespace {

constexpr int kEntryRole = Qt::UserRole;

bool is_line(const QModelIndex& index) { return !index.data(kEntryRole).isValid(); }

// What holds the typed text; the line only between two that do.
class Filter : public QSortFilterProxyModel {
public:
  using QSortFilterProxyModel::QSortFilterProxyModel;
  void filter(const QString& typed) {
    typed_ = typed;
    invalidateFilter();
  }

protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (!is_line(index)) return holds(index);
    return any(0, row) && any(row + 1, sourceModel()->rowCount());
  }

private:
  bool holds(const QModelIndex& index) const {
    return index.data().toString().contains(typed_, Qt::CaseInsensitive);
  }
  bool any(int from, int to) const {
    for (int row = from; row < to; ++row)
      if (holds(sourceModel()->index(row, 0))) return true;
    return false;
  }

  QString typed_;
};

// Leaves the filtering to the filter, which knows of the line, and offers all that it lets through.
class Finder : public QCompleter {
public:
  Finder(Filter* filter, QObject* parent) : QCompleter(filter, parent), filter_(filter) {
    setCompletionMode(PopupCompletion);
    setMaxVisibleItems(16);
  }
  QStringList splitPath(const QString& typed) const override {
    filter_->filter(typed);
    return {QString()};
  }

private:
  Filter* filter_;
};

class LineOrName : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!is_line(index)) return QStyledItemDelegate::paint(painter, option, index);
    painter->setPen(option.palette.color(QPalette::Mid));
    painter->drawLine(option.rect.left() + 3, option.rect.center().y(), option.rect.right() - 3,
                      option.rect.center().y());
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return is_line(index) ? QSize(1, 7) : QStyledItemDelegate::sizeHint(option, index);
  }
};

}  // namespace

RecordList::RecordList(QWidget* parent) : QComboBox(parent) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setMaxVisibleItems(24);
  setMinimumContentsLength(24);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* filter = new Filter(this);
  filter->setSourceModel(model());
  auto* finder = new Finder(filter, this);
  setCompleter(finder);
  finder->popup()->setItemDelegate(new LineOrName(finder->popup()));
}

void RecordList::show_entries(const QStringList& entries, const std::vector<int>& used) {
  if (entries == entries_ && used == used_) return;
  entries_ = entries;
  used_ = used;
  clear();
  for (const int entry : used) addItem(entries[entry], entry);
  if (!used.empty()) insertSeparator(count());
  for (int entry = 0; entry < entries.size(); ++entry) addItem(entries[entry], entry);
}

void RecordList::show_selected(int entry) {
  const int above = used_.empty() ? 0 : static_cast<int>(used_.size()) + 1;
  const int row = entry < 0 ? -1 : entry + above;
  if (currentIndex() != row) setCurrentIndex(row);
}

int RecordList::entry_at(int row) const {
  const QVariant entry = itemData(row, kEntryRole);
  return entry.isValid() ? entry.toInt() : -1;
}

int RecordList::find_entry(const QString& name) const {
  return entry_at(findText(name, Qt::MatchFixedString));
}

void RecordList::showPopup() {
  QComboBox::showPopup();
  const auto above = std::ranges::find(used_, entry_at(currentIndex()));
  if (above == used_.end()) return;
  view()->setCurrentIndex(model()->index(static_cast<int>(above - used_.begin()), modelColumn()));
  view()->scrollToTop();
}

void RecordList::wheelEvent(QWheelEvent* event) { event->ignore(); }

void RecordList::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
    showPopup();
  else
    QComboBox::keyPressEvent(event);
}

}  // namespace tv
