// Boxes beside each other as long as they fit, all in columns of one width for each number of columns: six in a
// row, else three, else two.
#pragma once

#include <QLayout>
#include <vector>

namespace tv {

class FigureFlow : public QLayout {
public:
  explicit FigureFlow(QWidget* parent);
  ~FigureFlow() override;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int i) const override;
  QLayoutItem* takeAt(int i) override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize minimumSize() const override;
  QSize sizeHint() const override;
  void setGeometry(const QRect& place) override;

private:
  int columns_for(int width) const;
  int width_of(int columns) const;  // what they need
  std::vector<int> widths_of(int columns) const;
  int place(const QRect& place, bool apply) const;

  std::vector<QLayoutItem*> items_;
};

}  // namespace tv
