// Load and powder table as a table: heads with units, the names of the rows fixed while the rest scrolls, the row of
// the load at hand bold, the share of the pressure limit as a bar with its word. What stands above the columns is
// folded into one line.
#pragma once

#include <QTableView>
#include <QToolButton>
#include <functional>

#include "gui/windows.h"
#include "screens/output_window.h"

class QLabel;

namespace tv {

class TableModel;

class TableGrid : public QWidget {
public:
  TableGrid(Desk& desk, QWidget* parent);
  void show_table(const OutputTable& table);
  QTableView* rows() { return rows_; }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void take(int row);
  void sort(int column);  // as the table numbers them; -1 the names
  void settle();          // sizes of heads, columns and rows
  void fold();
  void copy() const;

  Desk& desk_;
  TableModel* model_;
  QTableView* rows_;
  QAbstractItemDelegate* shares_;  // draws the bars
  QToolButton* line_;              // all that stands above the columns, in one line
  QLabel* heading_;                // the same unfolded
  QToolButton* corner_;            // head of the names
  OutputTable shown_;
};

}  // namespace tv
