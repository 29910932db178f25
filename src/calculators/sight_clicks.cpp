#include "calculators/sight_clicks.h"

namespace tv {
namespace {

constexpr double kCmPerInch = 2.54;

double inch_of_minute(ClickDistance at) { return at == ClickDistance::m100 ? 1.145229 : 1.047198; }
double cm_of_minute(ClickDistance at) { return at == ClickDistance::m100 ? 2.908882 : 2.659882; }
double distance_inch(ClickDistance at) { return at == ClickDistance::m100 ? 10000 / kCmPerInch : 3600; }

}  // namespace

Click click_of_moa(double moa, ClickDistance at) {
  return {moa, moa * inch_of_minute(at), moa * cm_of_minute(at)};
}

Click click_of_inch(double inch, ClickDistance at) {
  return {inch / inch_of_minute(at), inch, inch * kCmPerInch};
}

Click click_of_cm(double cm, ClickDistance at) {
  const double inch = cm / kCmPerInch;
  return {inch / inch_of_minute(at), inch, cm};
}

double mrad_of_inch(double inch, ClickDistance at) { return 1000 * inch / distance_inch(at); }

}  // namespace tv
