#include "output/chart.h"

namespace tv {

ChartColours light_colours() { return {}; }

ChartColours dark_colours() {
  ChartColours c;
  c.paper = {24, 26, 30, 255};
  c.ink = {236, 236, 236, 255};
  c.grid = {66, 70, 76, 255};
  c.pressure = {255, 168, 84, 255};
  c.velocity = {120, 190, 255, 255};
  c.reference = {110, 215, 150, 255};
  c.over = {255, 84, 84, 62};
  c.near_limit = {255, 128, 72, 40};
  c.caution = {255, 190, 90, 30};
  c.stale = {150, 150, 150, 255};
  return c;
}

}  // namespace tv
