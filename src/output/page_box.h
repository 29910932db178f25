// Where on the paper may be written. Lengths in twips, 1/1440 inch, from the top left of what the printer can
// print on.
#pragma once

namespace tv {

inline constexpr float kTwipsPerCm = 566.9286F;
inline constexpr double kTwipsPerUnit = 15;  // of a draw list: 1/96 inch

// What the printer can print on, and how far that lies from the edge of the paper: 0 for a file.
struct PrintablePage {
  float width = 0, height = 0;
  float ox = 0, oy = 0;
};

struct PageBox {
  float left = 0, right = 0, top = 0, bottom = 0;
  float width = 0, height = 0;
};

// Margins in cm, from the edge of the paper. None is below 0.1 cm, the lower one not below 0.45 cm. False
// when they leave no room: width or height is then 0.1 and nothing can be printed.
bool SetMargins(float top_cm, float left_cm, float right_cm, float bottom_cm, const PrintablePage& page,
                PageBox& box);

}  // namespace tv
