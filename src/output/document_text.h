// Text on a page: fitted, broken into lines, put down.
#pragma once

#include <string>
#include <vector>

#include "output/document.h"

namespace tv {

inline constexpr Colour kPageInk{20, 20, 20, 255}, kPageDim{85, 85, 85, 255}, kPageRule{150, 150, 150, 255},
    kPageRed{176, 0, 0, 255}, kPageWhite{255, 255, 255, 255}, kPageShade{235, 235, 235, 255};
inline constexpr double kLeading = 1.3;  // from line to line, of the size

// A page being written, or the measure of one.
struct Setting {
  std::string font;
  TextWidth text_width = estimated_text_width;
  double left = 0, right = 0;  // of the body
  double size = 0;             // of the text, units
  double width() const { return right - left; }
  double measure(const std::string& text, double letters, bool bold = false) const {
    return text_width(text, letters, bold, false, font);
  }
  // Lines no wider than that; a word too wide by itself is broken anywhere.
  std::vector<std::string> lines(const std::string& text, double width, double letters,
                                 bool bold = false) const;
  // The size at which the text is no wider than that, at most the size told.
  double fitting(const std::string& text, double width, double letters, bool bold = false) const;
};

// Something of a fixed height that is not broken: it is drawn at a place from the top.
struct Strip {
  double height = 0;
  std::function<void(DrawList& page, double top)> draw;
  bool with_next = false;  // not the last of a page
};

// Strips below each other; `head` stands above the first one and anew wherever a page breaks them.
struct Flow {
  std::vector<Strip> head, strips;
};

Flow flow_of(const KeyFigures& figures, const Setting& setting);
Flow flow_of(const TwoColumns& columns, const Setting& setting);
Flow flow_of(const Paragraph& paragraph, const Setting& setting);
Flow flow_of(const PrintedTable& table, const Setting& setting);
Flow flow_of_title(const std::string& title, const Setting& setting);

// The width that a table needs at that size of letters, its names broken as far as may be.
double table_width(const PrintedTable& table, const Setting& setting, double size);

}  // namespace tv
