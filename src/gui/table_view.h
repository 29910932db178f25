// The text of tables and point lists: the heads of its columns stay while the rows scroll, the row at the
// cursor stands out, and what is copied has its columns parted by tabs.
#pragma once

#include <QPlainTextEdit>
#include <functional>

#include "screens/output_window.h"

namespace tv {

class TableView : public QPlainTextEdit {
public:
  explicit TableView(QWidget* parent);
  std::function<void()> on_double_click;

  void show_text(const OutputText& shown);
  QWidget* fixed_head() { return head_; }
  void paint_head(QPainter& painter);

protected:
  QMimeData* createMimeDataFromSelection() const override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void changeEvent(QEvent* event) override;

private:
  void mark_row();
  void place_head();
  void bring_row_below_head();

  QWidget* head_;
  int head_line_ = 0, head_lines_ = 0;
};

}  // namespace tv
