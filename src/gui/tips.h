// Tool tips: shown as wide as the options say, edited by Ctrl while they are on show.
#pragma once

#include <QHelpEvent>
#include <QPointer>
#include <QWidget>

#include "session/session.h"

namespace tv {

class Tips {
public:
  // The event has been dealt with: a tip is shown, or tips are switched off.
  bool show(Session& s, QWidget* under_mouse, const QHelpEvent& event);
  // Ctrl was pressed: edits the tip that is on show. False if there is none.
  bool edit(Session& s);

private:
  QPointer<QWidget> owner_;       // of the tip last shown
  bool told_of_missing_ = false;  // once a run
};

}  // namespace tv
