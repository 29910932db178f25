#include "gui/program_style.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace tv {
namespace {

QColor between(const QColor& from, const QColor& to, double part) {
  const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

}  // namespace

bool is_dark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

// Fusion darkens the colour of the window for every outline: on a dark window nothing is left of it.
bool ProgramStyle::too_dark(const QPalette& palette) const {
  return palette.color(QPalette::Window).lightness() < 128 &&
         baseStyle()->name().compare("fusion", Qt::CaseInsensitive) == 0;
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
  if (hint == SH_ToolTip_WakeUpDelay)
    return static_cast<int>(std::clamp(session_.options.tiptim, 0.0, 30.0) * 1000);
  return QProxyStyle::styleHint(hint, option, widget, data);
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool radio = element == PE_IndicatorRadioButton, line = element == PE_FrameLineEdit;
  if ((!radio && !line && element != PE_IndicatorCheckBox) || !too_dark(option->palette)) return;
  if (line && option->state & State_HasFocus) return;  // has a bright frame of its own
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const double part = option->state & State_Enabled ? (line ? 0.3 : 0.5) : 0.2;
  painter->setPen(
      between(option->palette.color(QPalette::Window), option->palette.color(QPalette::WindowText), part));
  const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (radio)
    painter->drawEllipse(outline);
  else
    painter->drawRoundedRect(outline, line ? 2 : 0, line ? 2 : 0);
  painter->restore();
}

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
  // Fusion draws the buttons of windows behind the active one black: drawn as active they are white.
  const auto* bar = control == CC_TitleBar ? qstyleoption_cast<const QStyleOptionTitleBar*>(option) : nullptr;
  if (!bar || bar->titleBarState & State_Active || !too_dark(bar->palette))
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  QStyleOptionTitleBar lit = *bar;
  lit.titleBarState |= State_Active;
  lit.palette.setColor(QPalette::Highlight, between(bar->palette.color(QPalette::Window),
                                                    bar->palette.color(QPalette::WindowText), 0.1));
  QProxyStyle::drawComplexControl(control, &lit, painter, widget);
}

}  // namespace tv
