// The style of the desktop, with what the program adds to it.
#pragma once

#include <QProxyStyle>

#include "session/session.h"

namespace tv {

// Tips come after the delay that the options name. The default button is filled. On a dark palette, boxes, fields and the windows behind
// the active one get outlines and buttons that can be seen.
class ProgramStyle : public QProxyStyle {
public:
  // Takes over the base; null: the style of the desktop.
  explicit ProgramStyle(const Session& s, QStyle* base = nullptr) : QProxyStyle(base), session_(s) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;

private:
  bool too_dark(const QPalette& palette) const;

  const Session& session_;
};

bool is_dark(const QPalette& palette);
// Ratio of the luminances of two colours, 1 to 21; text needs 4.5.
double contrast(const QColor& a, const QColor& b);
// For what matters less than text, and for what is out of date: readable on the window of the palette all the
// same.
QColor dim_colour(const QPalette& palette);
// The colour of a button that is filled, so that HighlightedText can be read on it.
QColor filled_colour(const QPalette& palette);
// The ground of a pane on the desk, a little apart from that of the window.
QColor pane_colour(const QPalette& palette);

}  // namespace tv
