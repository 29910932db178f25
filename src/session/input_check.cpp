#include "session/input_check.h"

#include <cmath>

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

// One beep, whether a box tells why or not.
void refuse(Session& s, const Message* why = nullptr) {
  beep(s);
  if (why) warn(s, *why, false);
  s.inputsOk = false;
}

bool refuse_unless(Session& s, bool good, const double& value, std::size_t side = 0) {
  if (good) return true;
  refuse(s);
  focus_number(s, value, side);
  return false;
}

bool refuse_telling(Session& s, const double& value, std::size_t side, const Message& why) {
  refuse(s, &why);
  focus_number(s, value, side);
  return false;
}

bool refuse_without_name(Session& s, RecordKind kind, std::string_view name) {
  name = trim(name);
  if (!name.empty() && name != trim(s.language.fastmsg("noname")) &&
      !(kind == RecordKind::bullets && name == trim(s.language.msg(193))))
    return true;
  refuse(s);
  focus_list(s, kind);
  return false;
}

bool ask_stale_bore(Session& s) {
  if (!s.load.bore_area_stale || s.silent) return true;
  s.load.bore_area_stale = false;
  if (ask_yes_no(s, MessageText(s).msg(161).line().msg(162))) return true;
  return refuse_unless(s, false, s.state.dim.qfq, 1);
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
    write_number(s, d.qfq, {"#.00#", "#.000###"});
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
    return refuse_telling(s, d.Llen, 1, MessageText(s).msg(178).line().msg(179).add(least));
  }
  d.Wob = travel * kMmPerInch;
  write_number(s, d.Wob, {"##0.0#", "##0.0##"});
  if (d.Wob > 0 && std::isfinite(d.Wob)) return true;
  return refuse_telling(s, d.Llen, 0, MessageText(s).msg(178));
}

bool check_volume_and_bore(Session& s) {
  const auto& d = s.state.dim;
  if (!(d.Veff > 0)) return refuse_telling(s, d.Plen, 0, MessageText(s).msg(180));
  write_number(s, d.qfq, {"#.00#", "#.000###"});
  return d.qfq > 0 || refuse_telling(s, d.qfq, 0, MessageText(s).msg(181));
}

bool shown_above_zero(Session& s, const double& value, int side) {
  return refuse_unless(s, shown_number(s, value, side) > 0, value, static_cast<std::size_t>(side));
}

// The field to blame for a set-up that was refused.
struct Blamed {
  SetUp refused;
  double CalcState::*value;
};
constexpr Blamed kBlamed[] = {{SetUp::Exw, &CalcState::Exw},     {SetUp::Ba0, &CalcState::Ba0},
                              {SetUp::Kap, &CalcState::Kap},     {SetUp::PDko, &CalcState::PDko},
                              {SetUp::Limz1, &CalcState::Limz1}, {SetUp::Pdens, &CalcState::Pdens}};

void focus_blamed(Session& s, SetUp refused) {
  for (const Blamed& row : kBlamed)
    if (row.refused == refused) return focus_number(s, s.state.*row.value);
  focus_number(s, s.state.chargeGr, 1);
}

}  // namespace

// A bullet without a start pressure of its own leaves the shown one in force.
void take_shown_start_pressure(Session& s) {
  const double shown = units::mode_of_Pa.stored(shown_number(s, s.state.start_pressure), s);
  if (s.state.start_pressure < 1000000 && shown >= 1000000) s.state.start_pressure = shown;
}

void transferInputs(Session& s) {
  take_shown_start_pressure(s);
  s.inputsOk = true;
  const auto& d = s.state.dim;
  if (!refuse_without_name(s, RecordKind::cartridges, s.load.pattyp)) return;
  if (!refuse_without_name(s, RecordKind::bullets, s.load.bultyp)) return;
  if (!refuse_unless(s, d.Bwg > 0, d.Bwg)) return;
  if (!refuse_unless(s, d.sebf >= 0 && d.sebf <= 12, d.sebf)) return;
  if (!ask_stale_bore(s)) return;
  check_bore_area(s);
  for (const double* value : {&d.Llen, &d.Plen, &d.Glen, &d.Hlen, &d.Zkal})
    if (!shown_above_zero(s, *value, 0)) return;
  check_bullet_diameter(s);
  if (!shown_above_zero(s, d.Volf, 1)) return;
  drop_impossible_tail(s);
  recompute_dimensions(s, kNothingMoved);
  check_seating(s);
  if (check_travel(s)) check_volume_and_bore(s);
}

void prepare_shot_checked(Session& s) {
  s.inputsOk = true;
  const SetUp refused = prepareShot(s.state);
  if (refused == SetUp::ok) return;
  MessageText text(s);
  if (refused == SetUp::freeVol)
    text.msg(182);
  else
    text.fast("fpow").add(": ").msg(156);
  warn(s, text, false, std::string(kProgramName) + ": " + s.language.fastmsg("fehlEG"));
  refuse(s);
  focus_blamed(s, refused);
}

bool start_pressure_accepted(Session& s) {
  if (s.state.start_pressure <= start_pressure_bound(s.state)) return true;
  warn(s, MessageText(s).msg(144), false);
  focus_number(s, s.state.start_pressure);
  return false;
}

}  // namespace tv
