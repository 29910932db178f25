#include "geometry/dimensions.h"

#include "engine/shot.h"

#include "session/driver.h"
#include "session/number_pairs.h"
#include "text/number.h"

namespace tv {
namespace {

// The loading density by the texts on show; recompute_dimensions writes its own right after, by stored
// values.
void ladich_from_texts(Session& s) {
  const double Veffm = field_number(s, "Form3", "Veffm");
  if (s.state.dim.Veff > 0 && Veffm > 0)
    set_text(s, "Form5", "ladich", format_number(field_number(s, "Form4", "MPgm") / Veffm, "0.000"));
}

void write_dimension(Session& s, Dimension which) {
  switch (which) {
    case Dimension::Plen:
      return write_pair(s, "Form3", "Plenm");
    case Dimension::Bsd:
      return write_pair(s, "Form3", "Bsdm");
    case Dimension::ssd:
      write_pair(s, "Form3", "ssdm");
      return mark_band_seating(s);
    case Dimension::Vvg:
      return write_pair(s, "Form3", "Vvgm");
    case Dimension::Veff:
      write_pair(s, "Form3", "Veffm");
      return ladich_from_texts(s);
    case Dimension::Wob:
      return write_pair(s, "Form3", "Wobm");
  }
}

}  // namespace

void mark_band_seating(Session& s) {
  const bool off = body_stands_off(s.state.dim);
  for (const char* name : {"ssdm", "ssdz"}) {
    Field& f = field(s, "Form3", name);
    if (f.ink == Ink::red) continue;  // out of its range, which says more
    f.ink = off ? Ink::magenta : Ink::black;
    f.reason = off ? s.language.msg(177) : std::string();
  }
}

void mark_volumes_stale(Session& s, bool stale) {
  for (const char* name : {"Vvgm", "Vvgn", "Veffm", "Veffz"}) field(s, "Form3", name).stale = stale;
}

void recompute_dimensions(Session& s, int kind) {
  s.update_suspended = true;
  const bool whole = recompute_dimensions(s.state.dim, kind, field_number(s, "Form3", "Zkalm"),
                                          [&](Dimension which) { write_dimension(s, which); });
  s.update_suspended = false;
  if (!whole) return;
  if (s.state.dim.Veff > 0)
    set_text(s, "Form5", "ladich", format_number(s.state.chargeGr / s.state.dim.Veff, "##0.000"));
  refresh_fill(s);
}

void refresh_fill(Session& s) {
  const double Veffm = field_number(s, "Form3", "Veffm");
  const bool known = s.state.bulkdn > 0 && Veffm > 0;
  s.state.fill = loading_ratio(s.state.chargeGr / kGrainsPerGram, s.state.bulkdn, Veffm);
  set_text(s, "Form4", "fill", known ? format_number(s.state.fill, "0.0") : "?????");
}

void refresh_pressure_fields(Session& s) {
  write_pair(s, "Form4", "ini_press1");
  set_text(s, "Form4", "zulp_nam", mode_pressure_unit(s));
  set_text(s, "Form3", "zulp_nam", chosen_pressure_unit(s));
  set_text(s, "FormBorefrict", "zulp_nam", chosen_pressure_unit(s));
  set_text(s, "FormPsel", "zulp_nam", chosen_pressure_unit(s));
  set_text(s, "Form5", "zulp_nam", chosen_pressure_unit(s));
  write_pair(s, "FormBorefrict", "sugg_P0");
  write_pair(s, "FormPsel", "sugg_P0");
  if (s.state.dim.zul_P > 0) return write_pair(s, "Form3", "zul_P0");
  set_text(s, "Form3", "zul_P0", "?");
  set_text(s, "Form3", "zul_P1", "?");
}

}  // namespace tv
