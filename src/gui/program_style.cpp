#include "gui/program_style.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <cmath>

namespace tv {
namespace {

QColor between(const QColor& from, const QColor& to, double part) {
  const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// Relative luminance of sRGB.
double luminance(const QColor& colour) {
  const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

bool is_dark(const QPalette& palette) { return palette.color(QPalette::Base).lightness() < 128; }

double contrast(const QColor& a, const QColor& b) {
  const double first = luminance(a), second = luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor dim_colour(const QPalette& palette) {
  constexpr double kLeast = 4.6;
  const QColor ground = palette.color(QPalette::Window), ink = is_dark(palette) ? Qt::white : Qt::black;
  double part = 0.6;
  while (part < 1 && contrast(between(ground, ink, part), ground) < kLeast) part += 0.02;
  return between(ground, ink, part);
}

QColor filled_colour(const QPalette& palette) {
  constexpr double kLeast = 4.6;
  QColor fill = palette.color(QPalette::Active, QPalette::Highlight);
  const QColor ink = palette.color(QPalette::Active, QPalette::HighlightedText);
  const bool dark_ink = luminance(ink) < 0.2;
  for (int i = 0; i < 20 && contrast(fill, ink) < kLeast; ++i)
    fill = dark_ink ? fill.lighter(106) : fill.darker(106);
  return fill;
}

QColor pane_colour(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  return is_dark(palette) ? between(window, Qt::white, 0.04) : between(window, Qt::white, 0.75);
}

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

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* button =
      element == CE_PushButton ? qstyleoption_cast<const QStyleOptionButton*>(option) : nullptr;
  if (!button || !(button->features & QStyleOptionButton::DefaultButton) || !(button->state & State_Enabled))
    return QProxyStyle::drawControl(element, option, painter, widget);
  QStyleOptionButton filled = *button;
  filled.features &= ~QStyleOptionButton::DefaultButton;
  filled.palette.setColor(QPalette::Button, filled_colour(button->palette));
  filled.palette.setColor(QPalette::ButtonText,
                          button->palette.color(QPalette::Active, QPalette::HighlightedText));
  QProxyStyle::drawControl(element, &filled, painter, widget);
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
