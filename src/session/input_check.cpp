// Whether the data on the screens can be calculated. Each stage stops at the first refused value and puts the
// focus into it; many findings only warn, and the run goes on.
#include <cmath>

#include "geometry/dimensions.h"
#include "session/driver.h"
#include "session/number_pairs.h"
#include "text/number.h"

namespace tv {
namespace {

// One beep, whether a box tells why or not.
void refuse(Session& s, std::string_view screen, std::string_view name, const Message* why = nullptr) {
  beep(s);
  if (why) warn(s, *why, false);
  s.user->bring_to_front(screen);
  s.user->focus(screen, name);
  s.inputsOk = false;
}

bool refuse_unless(Session& s, bool good, const char* name) {
  if (!good) refuse(s, "Form3", name);
  return good;
}

bool refuse_telling(Session& s, const char* name, const Message& why) {
  refuse(s, "Form3", name, &why);
  return false;
}

bool has_name(const Session& s, const char* list) {
  const std::string name{trim(field(s, "Form3", list).text)};
  return !name.empty() && name != trim(s.language.fastmsg("noname")) &&
         !(std::string_view(list) == "Bnam" && name == trim(s.language.msg(193)));
}

bool ask_stale_bore(Session& s) {
  if (!s.load.bore_area_stale || s.silent) return true;
  s.load.bore_area_stale = false;
  if (ask_yes_no(s, MessageText(s).msg(161).line().msg(162))) return true;
  return refuse_unless(s, false, "qfqi");
}

void check_bore_area(Session& s) {
  auto& d = s.state.dim;
  if (!(d.Zkal > 0)) return;  // refused as a calibre later
  const double calibre_mm = d.Zkal * kMmPerInch;
  const double circle = (kPi / 4) * calibre_mm * calibre_mm;
  if (d.qfq > 1.1 * circle) {
    warn(s, MessageText(s).msg(163).line().msg(164));
  } else if (d.qfq > 0 && d.qfq < 0.8 * circle) {
    warn(s, MessageText(s).msg(165).line().msg(166));
  } else if (!(d.qfq > 0)) {
    d.qfq = 0.985 * circle;
    write_pair(s, "Form3", "qfqm", "#.00#", "#.000###");
  }
}

void check_bullet_diameter(Session& s) {
  const auto& d = s.state.dim;
  double percent = (d.Zkal - d.buldin) / (d.Zkal / 100);
  if (!std::isfinite(percent)) return;
  percent = std::round(percent * 1e9) / 1e9;  // so that exactly 2 percent passes for every calibre
  if (percent >= -1 && percent <= 2) return;
  MessageText text(s);
  text.msg(167).add(format_number(percent, "0.00")).line();
  const int first = percent < 0 ? 171 : 168;
  warn(s, text.msg(first).line().msg(first + 1).line().msg(first + 2), false);
}

void drop_impossible_tail(Session& s) {
  auto& d = s.state.dim;
  if (tail_is_possible(d)) return;
  d.TAIL = false;
  d.tail_type = kFlatBase;
  field(s, "Form3", "TAIL").checked = false;
}

void check_seating(Session& s) {
  auto& d = s.state.dim;
  if (d.Bsd < 0) warn(s, MessageText(s).msg(174).line().msg(175).line().msg(176));
  if (d.TAIL && d.tail_type == kOuterCone) {
    d.ssd = ssd_of_Bsd(d);
    if (d.ssd < 0) warn(s, MessageText(s).msg(177));
  }
}

bool check_travel(Session& s) {
  auto& d = s.state.dim;
  const double travel = d.Llen - d.Hlen + d.Bsd;
  if (!(travel > 0)) {
    const std::string least = format_number(d.Plen - d.Glen, "0.0") + " in.";
    return refuse_telling(s, "Llenz", MessageText(s).msg(178).line().msg(179).add(least));
  }
  d.Wob = travel * kMmPerInch;
  write_pair(s, "Form3", "Wobm", "##0.0#", "##0.0##");
  if (d.Wob > 0 && std::isfinite(d.Wob)) return true;
  return refuse_telling(s, "Llenm", MessageText(s).msg(178));
}

bool check_volume_and_bore(Session& s) {
  const auto& d = s.state.dim;
  if (!(d.Veff > 0)) return refuse_telling(s, "Plenm", MessageText(s).msg(180));
  write_pair(s, "Form3", "qfqm", "#.00#", "#.000###");
  return d.qfq > 0 || refuse_telling(s, "qfqm", MessageText(s).msg(181));
}

bool shown_above_zero(Session& s, const char* name) {
  return refuse_unless(s, field_number(s, "Form3", name) > 0, name);
}

}  // namespace

// What is shown is what runs: a bullet without a start pressure of its own leaves the shown one in force.
void take_shown_start_pressure(Session& s) {
  const double shown = stored_value(Unit::mode_of_Pa, field_number(s, "Form4", "ini_press1"), s);
  if (s.state.start_pressure < 1000000 && shown >= 1000000) s.state.start_pressure = shown;
}

void transferInputs(Session& s) {
  take_shown_start_pressure(s);
  s.inputsOk = true;
  s.field_min = -9999999;
  s.field_max = 9999999;
  const auto& d = s.state.dim;
  if (!refuse_unless(s, has_name(s, "HVolDat"), "HVolDat")) return;
  if (!refuse_unless(s, has_name(s, "Bnam"), "Bnam")) return;
  if (!refuse_unless(s, d.Bwg > 0, "Bwgm")) return;
  if (!refuse_unless(s, d.sebf >= 0 && d.sebf <= 12, "sebf")) return;
  if (!ask_stale_bore(s)) return;
  check_bore_area(s);
  for (const char* name : {"Llenm", "Plenm", "Glenm", "Hlenm", "Zkalm"})
    if (!shown_above_zero(s, name)) return;
  check_bullet_diameter(s);
  if (!shown_above_zero(s, "Volfgn")) return;
  s.update_suspended = true;
  drop_impossible_tail(s);
  s.update_suspended = false;
  recompute_dimensions(s, kNothingMoved);
  check_seating(s);
  if (check_travel(s)) check_volume_and_bore(s);
}

void prepareShotChecked(Session& s) {
  s.inputsOk = true;
  const SetUp refused = prepareShot(s.state);
  if (refused == SetUp::ok) return;
  MessageText text(s);
  if (refused == SetUp::freeVol)
    text.msg(182);
  else
    text.fast("fpow").add(": ").msg(156);
  warn(s, text, false, std::string(kProgramName) + ": " + s.language.fastmsg("fehlEG"));
  refuse(s, "Form4", set_up_field(refused));
}

bool checkStartPressureAsked(Session& s) {
  if (s.state.start_pressure <= start_pressure_bound(s.state)) return true;
  warn(s, MessageText(s).msg(144), false);
  s.user->bring_to_front("Form4");
  s.user->focus("Form4", "ini_press1");
  return false;
}

}  // namespace tv
