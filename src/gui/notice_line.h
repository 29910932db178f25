// The standing safety notice under the toolbar, as one line: its first sentence, a key that opens the whole
// and one that closes the line until the next start.
#pragma once

#include <QLabel>
#include <QToolButton>

#include "gui/desk.h"

namespace tv {

class NoticeLine : public QWidget {
public:
  explicit NoticeLine(Desk& desk);
  void refresh();

protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void colour();
  void cut();  // the sentence to the room there is

  Desk& desk_;
  QLabel* text_;
  QString sentence_;
  bool closed_ = false;
};

}  // namespace tv
