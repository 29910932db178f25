// A list of records to choose from. Typing filters it by any part of the name; the records picked last stand
// once more above it, parted by a line. What is picked is told as an entry of the list itself: where it
// stands in the view is nobody else's matter.
#pragma once

#include <QComboBox>
#include <QStringList>
#include <vector>

namespace tv {

class RecordList : public QComboBox {
public:
  explicit RecordList(QWidget* parent);

  // used: entries that stand above the list as well.
  void show_entries(const QStringList& entries, const std::vector<int>& used);
  void show_selected(int entry);              // -1: none
  int entry_at(int row) const;                // -1: the line, or no such row
  int find_entry(const QString& name) const;  // in any case of letters; -1: none

protected:
  // Opens where the current entry stands above the list, if it does.
  void showPopup() override;
  // Each pick begins a new load: no record is taken by the way, by a wheel or by stepping past it unseen.
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  QStringList entries_;
  std::vector<int> used_;
};

}  // namespace tv
