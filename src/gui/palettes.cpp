#include "gui/palettes.h"

#include <QApplication>
#include <QColor>
#include <utility>

namespace tv {
namespace {

struct RoleColours {
  QPalette::ColorRole role;
  QRgb light, dark;
};
constexpr RoleColours kColours[] = {
    {QPalette::Window, 0xffeff0f2, 0xff2d2d30},
    {QPalette::WindowText, 0xff1b1d20, 0xffebebeb},
    {QPalette::Base, 0xffffffff, 0xff1e1e20},
    {QPalette::AlternateBase, 0xfff4f5f7, 0xff3c3c40},
    {QPalette::Text, 0xff1b1d20, 0xffebebeb},
    {QPalette::Button, 0xffeff0f2, 0xff3c3c40},
    {QPalette::ButtonText, 0xff1b1d20, 0xffebebeb},
    {QPalette::BrightText, 0xffffffff, 0xffff5a5a},
    {QPalette::Highlight, 0xff1d6fb8, 0xff3c6eb4},
    {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    {QPalette::ToolTipBase, 0xfffff6d8, 0xff464632},
    {QPalette::ToolTipText, 0xff1b1d20, 0xfff5f5e1},
    {QPalette::PlaceholderText, 0xff6a6d72, 0xffa5a5a5},
    {QPalette::Link, 0xff0a58a5, 0xff78aaff},
    {QPalette::Light, 0xffffffff, 0xff55555a},
    {QPalette::Midlight, 0xfff7f8f9, 0xff46464a},
    {QPalette::Mid, 0xffc3c6ca, 0xff54545a},
    {QPalette::Dark, 0xff9fa3a8, 0xff1a1a1c},
    {QPalette::Shadow, 0xff70747a, 0xff101012},
};

QPalette palette_of(bool dark) {
  QPalette palette;
  for (const RoleColours& colour : kColours)
    palette.setColor(colour.role, QColor::fromRgb(dark ? colour.dark : colour.light));
  const QColor off = dark ? QColor(140, 140, 140) : QColor(120, 124, 130);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, off);
  return palette;
}

}  // namespace

QPalette light_palette() { return palette_of(false); }
QPalette dark_palette() { return palette_of(true); }

void apply_look(int look) {
  if (look == 0)
    QApplication::setPalette(QPalette());
  else
    QApplication::setPalette(palette_of(look == 2));
}

}  // namespace tv
