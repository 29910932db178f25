#include "gui/tips.h"

#include <QFontMetrics>
#include <QMenu>
#include <QToolTip>
#include <algorithm>

#include "gui/captions.h"
#include "session/tips.h"
#include "text/wrap.h"

namespace tv {
namespace {

constexpr double kTwips = 15;

// The widget a tip is about: the one under the mouse or the control that it is a part of.
QWidget* tip_owner(const Session& s, QWidget* widget) {
  for (; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget())
    if (!widget->toolTip().isEmpty() || control_exists(s, utf8(widget->objectName()))) return widget;
  return nullptr;
}

QString wrapped(const QString& text, int width) {
  const QFontMetrics metrics(QToolTip::font());
  QStringList lines;
  for (const std::string& line : wrap_words(
           utf8(text), [&](const std::string& each) { return metrics.horizontalAdvance(qt(each)) <= width; }))
    lines << qt(line);
  return lines.join('\n');
}

}  // namespace

bool Tips::show(Session& s, QWidget* under_mouse, const QHelpEvent& event) {
  if (!s.options.toltip) return true;
  if (qobject_cast<QMenu*>(under_mouse)) return false;  // shows those of its entries
  owner_ = tip_owner(s, under_mouse);
  if (!owner_) return false;
  QString tip = owner_->toolTip();
  if (tip.isEmpty()) {
    if (told_of_missing_) return true;
    told_of_missing_ = true;
    tip = "No tip " + qt(s.language.name()) + " language tip file";
  }
  const int width = static_cast<int>(std::clamp(s.options.tipwid / kTwips, 80.0, 1200.0));
  QToolTip::showText(event.globalPos(), plain_tip(wrapped(tip, width)), owner_);
  return true;
}

bool Tips::edit(Session& s) {
  if (!owner_ || !QToolTip::isVisible() || QGuiApplication::overrideCursor()) return false;
  const std::string key = tip_key(s, owner_);
  if (s.language.tip(key).empty() && !control_exists(s, key)) return false;
  QToolTip::hideText();
  edit_tip(s, key);
  return true;
}

}  // namespace tv
