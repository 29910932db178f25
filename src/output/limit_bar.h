// The share of the pressure limit as a bar: its zones and where the peak stands. Amber from 75 %, orange from
// 85 % of the limit, red above it; words beside it say the same.
#pragma once

#include "output/draw_list.h"

namespace tv {

struct LimitColours {
  Colour good, caution, near_limit, over, mark;
};
const LimitColours& limit_colours(bool dark);

// share: of the limit, 1 at it. The list is the bar and nothing else; all of it is red above the limit.
DrawList limit_bar(double share, double width, double height, bool dark);

}  // namespace tv
