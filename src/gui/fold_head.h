// The head of a group that folds: an arrow, its caption, and while it is folded what is in it, in one line.
// The mouse and Space open and fold it.
#pragma once

#include <QAbstractButton>

#include "session/screen.h"

namespace tv {

class FoldHead : public QAbstractButton {
public:
  FoldHead(const Group& group, QWidget* body, QWidget* parent);

  const Group& group() const { return group_; }
  void show_state(bool open, const QString& summary);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  const Group& group_;
  QWidget* body_;
  bool open_ = true;
  QString summary_;
};

}  // namespace tv
