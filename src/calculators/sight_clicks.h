// What one click of a sight moves the point of impact: minutes of angle, inches and centimetres at a
// reference distance. The factors are those of the trade, rounded as they stand; the way over inches and the
// one over centimetres agree to six digits only.
#pragma once

namespace tv {

enum class ClickDistance { m100 = 0, yd100 = 1 };

struct Click {
  double moa = 0, inch = 0, cm = 0;
};
Click click_of_moa(double moa, ClickDistance at);
Click click_of_inch(double inch, ClickDistance at);
Click click_of_cm(double cm, ClickDistance at);

// Thousandths of the distance.
double mrad_of_inch(double inch, ClickDistance at);

// A click is accepted above this.
inline constexpr double kLeastClick = 0.01;

}  // namespace tv
