// The style of the desktop, with what the program adds to it.
#pragma once

#include <QProxyStyle>

#include "session/session.h"

namespace tv {

// Tips come after the delay that the options name. On a dark palette, boxes, fields and the windows behind
// the active one get outlines and buttons that can be seen.
class ProgramStyle : public QProxyStyle {
public:
  // Takes over the base; null: the style of the desktop.
  explicit ProgramStyle(const Session& s, QStyle* base = nullptr) : QProxyStyle(base), session_(s) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;

private:
  bool too_dark(const QPalette& palette) const;

  const Session& session_;
};

bool is_dark(const QPalette& palette);

}  // namespace tv
