#include "session/input_check.h"

#include <cmath>
#include <utility>

#include "engine/shot.h"
#include "geometry/dimensions.h"
#include "session/dimensions.h"
#include "session/findings.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

// One beep, whether a box tells why or the status line does.
bool refuse(Session& s, Message why, FieldPlace at) {
  beep(s);
  s.inputsOk = false;
  s.refusal = Finding{std::move(why), std::move(at)};
  return false;
}

bool refuse_unless(Session& s, bool good, const double& value, std::size_t side = 0) {
  if (good) return true;
  const FieldPlace at = place_of(s, value, side);
  refuse(s,
         MessageText(s)
             .msg(428)
             .add(" " + field_caption(s, at) + " ")
             .add(shown_text(s, value, static_cast<int>(side)) + " (" + field_range(s, at) + ")"),
         at);
  if (!s.silent) s.status = s.refusal->message.text;
  focus_number(s, value, side);
  return false;
}

bool refuse_telling(Session& s, const double& value, std::size_t side, const Message& why) {
  refuse(s, why, place_of(s, value, side));
  warn(s, why, false);
  focus_number(s, value, side);
  return false;
}

bool refuse_without_name(Session& s, RecordKind kind, std::string_view name) {
  name = trim(name);
  if (!name.empty() && name != trim(s.language.fastmsg("noname")) &&
      !(kind == RecordKind::bullets && name == trim(s.language.msg(193))))
    return true;
  const FieldPlace at = place_of_list(s, kind);
  refuse(s, MessageText(s).add(field_caption(s, at) + ": ").msg(305), at);
  if (!s.silent) s.status = s.refusal->message.text;
  focus_list(s, kind);
  return false;
}

// What nobody can be asked now waits for a calculation of the user's own.
bool ask_stale_bore(Session& s) {
  if (!s.load.bore_area_stale) return true;
  const Message question = MessageText(s).msg(161).line().msg(162);
  const FieldPlace at = place_of(s, s.state.dim.qfq, 1);
  if (s.silent) return refuse(s, question, at);
  s.load.bore_area_stale = false;
  if (ask_yes_no(s, question)) return true;
  refuse(s, MessageText(s).msg(161), at);
  focus_number(s, s.state.dim.qfq, 1);
  return false;
}

void check_bore_area(Session& s) {
  auto& d = s.state.dim;
  if (!(d.Zkal > 0)) return;  // refused as a calibre later
  tell_once(s, 163, bore_area_finding(s));
  if (d.qfq > 0) return;
  const double calibre_mm = d.Zkal * kMmPerInch;
  d.qfq = 0.985 * ((kPi / 4) * calibre_mm * calibre_mm);
  write_number(s, d.qfq, {"#.00#", "#.000###"});
}

void drop_impossible_tail(Session& s) {
  auto& d = s.state.dim;
  if (tail_is_possible(d)) return;
  d.TAIL = false;
  d.tail_type = kFlatBase;
}

void check_seating(Session& s) {
  auto& d = s.state.dim;
  tell_once(s, 174, seating_finding(s));
  if (d.TAIL && d.tail_type == kOuterCone) d.ssd = ssd_of_Bsd(d);
  tell_once(s, 177, tail_finding(s));
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

struct BlamedValue {
  const double& value;
  std::size_t side;
};
BlamedValue blamed(const Session& s, SetUp refused) {
  for (const Blamed& row : kBlamed)
    if (row.refused == refused) return {s.state.*row.value, 0};
  return {s.state.chargeGr, 1};
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
  s.autocalc_due = false;
  s.refusal.reset();
  const auto& d = s.state.dim;
  if (!refuse_without_name(s, RecordKind::cartridges, s.load.pattyp)) return;
  if (!refuse_without_name(s, RecordKind::bullets, s.load.bultyp)) return;
  if (!refuse_unless(s, d.Bwg > 0, d.Bwg)) return;
  if (!refuse_unless(s, d.sebf >= 0 && d.sebf <= 12, d.sebf)) return;
  if (!ask_stale_bore(s)) return;
  check_bore_area(s);
  for (const double* value : {&d.Llen, &d.Plen, &d.Glen, &d.Hlen, &d.Zkal})
    if (!shown_above_zero(s, *value, 0)) return;
  tell_once(s, 167, bullet_diameter_finding(s));
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
  const auto [value, side] = blamed(s, refused);
  refuse(s, text, place_of(s, value, side));
  focus_number(s, value, side);
}

bool start_pressure_accepted(Session& s) {
  if (s.state.start_pressure <= start_pressure_bound(s.state)) return true;
  const Message why = MessageText(s).msg(144);
  s.refusal = Finding{why, place_of(s, s.state.start_pressure)};
  warn(s, why, false);
  focus_number(s, s.state.start_pressure);
  return false;
}

}  // namespace tv
