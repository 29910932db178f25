#include "output/page_box.h"

#include <algorithm>

namespace tv {

bool SetMargins(float top_cm, float left_cm, float right_cm, float bottom_cm, const PrintablePage& page,
                PageBox& box) {
  constexpr float kLeast = 0.1F * kTwipsPerCm, kLeastBelow = 0.45F * kTwipsPerCm, kNone = 0.1F;
  box.left = std::max(kTwipsPerCm * left_cm - page.ox, kLeast);
  box.right = std::min(page.width + page.ox - kTwipsPerCm * right_cm, page.width - kLeast);
  box.top = std::max(kTwipsPerCm * top_cm - page.oy, kLeast);
  box.bottom = std::min(page.height + page.oy - kTwipsPerCm * bottom_cm, page.height - kLeastBelow);
  box.width = box.right - box.left;
  box.height = box.bottom - box.top;
  const bool room = box.width > 0 && box.height > 0;
  if (!(box.width > 0)) box.width = kNone;
  if (!(box.height > 0)) box.height = kNone;
  return room;
}

}  // namespace tv
