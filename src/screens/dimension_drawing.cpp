#include "screens/dimension_drawing.h"

#include "geometry/dimensions.h"
#include "output/cartridge_drawing.h"

namespace tv {

std::string seating_warning(const Session& s) {
  const auto& d = s.state.dim;
  if (!cartridge_can_be_drawn(d)) return {};
  if (d.Bsd < 0) return s.language.msg(174) + " " + s.language.msg(175);
  return body_stands_off(d) ? s.language.msg(177) : std::string();
}

DrawList dimension_drawing(const Session& s, double width, double height, TextWidth text_width, bool dark) {
  const LoadData& load = s.load;
  const CaseBody body{load.l1_in, load.l2_in, load.Ri_in, load.R1_in, load.P1_in,
                      load.P2_in, load.H1_in, load.H2_in, load.Shape};
  const bool metric = s.unit_mode == UnitMode::metric;
  const CartridgeWords words{s.language.text("form3", "draw_note"), s.language.text("form3", "draw_missing"),
                             seating_warning(s),
                             " " + s.language.text("units", metric ? "unit_mm" : "unit_in"), metric};
  return draw_cartridge(s.state.dim, body, words, dark ? dark_cartridge() : light_cartridge(), width, height,
                        text_width);
}

}  // namespace tv
