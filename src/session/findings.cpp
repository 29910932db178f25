#include "session/findings.h"

#include <cmath>
#include <set>

#include "geometry/dimensions.h"
#include "session/message.h"
#include "session/numbers.h"
#include "text/number.h"

namespace tv {
namespace {

// Nothing is said of a load that is not there yet.
bool load_is_named(const Session& s) { return !trim(s.load.pattyp).empty() && !trim(s.load.bultyp).empty(); }

Finding finding_at(const Session& s, const double& value, std::size_t side, Message message,
                   std::vector<double> cause, bool beep = true) {
  return {std::move(message), place_of(s, value, side), std::move(cause), beep};
}

struct Compared {
  const char* caption;  // of the powder screen
  int record_field;
  double CalcState::*value;
};
constexpr Compared kCompared[] = {
    {"Limz1", powder_field::Limz1, &CalcState::Limz1}, {"Ba0", powder_field::Ba0, &CalcState::Ba0},
    {"Ba1", powder_field::Ba1, &CalcState::Ba1},       {"Exw", powder_field::Exw, &CalcState::Exw},
    {"Kap", powder_field::Kap, &CalcState::Kap},       {"Pdens", powder_field::Pdens, &CalcState::Pdens},
    {"PDko", powder_field::PDko, &CalcState::PDko},    {"bulkdn", powder_field::bulkdn, &CalcState::bulkdn},
};

// The mnemonic mark of a caption has no place in a message.
std::string plain_caption(const Session& s, const char* section, const char* key) {
  std::string text = s.language.text(section, key);
  std::erase(text, '&');
  return text;
}

}  // namespace

std::optional<Finding> bore_area_finding(const Session& s) {
  const auto& d = s.state.dim;
  if (!load_is_named(s) || !(d.Zkal > 0) || !(d.qfq > 0)) return {};
  const double calibre_mm = d.Zkal * kMmPerInch;
  const double circle = (kPi / 4) * calibre_mm * calibre_mm;
  const int first = d.qfq > 1.1 * circle ? 163 : d.qfq < 0.8 * circle ? 165 : 0;
  if (!first) return {};
  return finding_at(s, d.qfq, 1, MessageText(s).msg(first).line().msg(first + 1), {d.qfq, d.Zkal});
}

std::optional<Finding> bullet_diameter_finding(const Session& s) {
  const auto& d = s.state.dim;
  if (!load_is_named(s)) return {};
  double percent = (d.Zkal - d.buldin) / (d.Zkal / 100);
  if (!std::isfinite(percent)) return {};
  percent = std::round(percent * 1e9) / 1e9;  // so that exactly 2 percent passes for every calibre
  if (percent >= -1 && percent <= 2) return {};
  MessageText text(s);
  text.msg(167).add(format_number(percent, "0.00")).line();
  const int first = percent < 0 ? 171 : 168;
  text.msg(first).line().msg(first + 1).line().msg(first + 2);
  return finding_at(s, d.buldin, 0, text, {d.Zkal, d.buldin}, false);
}

std::optional<Finding> seating_finding(const Session& s) {
  const auto& d = s.state.dim;
  if (!load_is_named(s) || !(d.Bsd < 0)) return {};
  return finding_at(s, d.Plen, 0, MessageText(s).msg(174).line().msg(175).line().msg(176), {d.Bsd});
}

std::optional<Finding> tail_finding(const Session& s) {
  const auto& d = s.state.dim;
  if (!load_is_named(s) || !d.TAIL || d.tail_type != kOuterCone || !tail_is_possible(d)) return {};
  const double ssd = ssd_of_Bsd(d);
  if (!(ssd < 0)) return {};
  return finding_at(s, d.Plen, 0, MessageText(s).msg(177), {ssd});
}

std::optional<Finding> powder_finding(const Session& s) {
  std::string_view name = trim(s.load.pulver);
  if (name.ends_with(" ?")) name.remove_suffix(2);  // edited: what differs is told below
  if (name.empty()) return {};
  const RecordTable& table = s.set(RecordKind::powders).file.table;
  const int row = table.find(name);
  const FieldPlace at = place_of_list(s, RecordKind::powders);
  if (row < 0) return Finding{MessageText(s).msg(62).line().add(name), at};
  MessageText text(s);
  text.msg(61).add(" ").add(name).add(" ").msg(66).line();
  std::vector<double> differing;
  for (const Compared& c : kCompared)
    if (table.number(row, c.record_field) != s.state.*c.value) {
      text.add("  - ").add(plain_caption(s, "form4", c.caption)).line();
      differing.push_back(s.state.*c.value);
    }
  if (differing.empty()) return {};
  return Finding{text, at, differing};
}

std::vector<Finding> findings(const Session& s) {
  std::vector<Finding> all;
  for (const auto find :
       {bore_area_finding, bullet_diameter_finding, seating_finding, tail_finding, powder_finding})
    if (auto found = find(s)) all.push_back(std::move(*found));
  if (s.refusal) all.push_back(*s.refusal);
  return all;
}

namespace {

// A value is usual if any of its fields would take it: two units round their limits differently.
bool is_usual(const Session& s, NumberPlace at, double value) {
  for (at.side = 0; at.side < at.number->sides.size(); ++at.side)
    if (at.own().field && in_limits(at.own().unit->shown(value, s), limits_of(s, at))) return true;
  return false;
}

bool is_input(const Session& s, const NumberField& number, const double& value) {
  const auto* first = reinterpret_cast<const char*>(&s.state);
  const auto* at = reinterpret_cast<const char*>(&value);
  const auto& d = s.state.dim;
  return !number.read_only && at >= first && at < first + sizeof s.state && &value != &d.Bsd &&
         &value != &d.ssd && (&value != &s.state.frictionPress || s.state.frictionOn);
}

}  // namespace

std::vector<FieldPlace> unusual_values(Session& s) {
  std::vector<FieldPlace> unusual;
  std::set<const double*> seen;
  std::set<std::string> told;
  for (const Finding& finding : findings(s)) told.insert(finding.at.field);
  for (const ScreenSpec* spec : s.program.screens)
    for (const NumberField& number : spec->numbers) {
      if (number.count > 0) continue;
      const double& value = number.value(s, 0);
      if (!is_input(s, number, value) || !seen.insert(&value).second) continue;
      FieldPlace at{spec->name, number.sides[0].field};
      if (!is_usual(s, {spec->name, &number, 0, 0}, value) && !told.contains(at.field)) unusual.push_back(at);
    }
  return unusual;
}

void tell_once(Session& s, int kind, const std::optional<Finding>& finding) {
  if (!finding) {
    s.told.erase(kind);
    return;
  }
  if (s.silent) return;
  const auto told = s.told.find(kind);
  if (told != s.told.end() && told->second == finding->cause) return;
  s.told[kind] = finding->cause;
  warn(s, finding->message, finding->beep);
}

void go_to(Session& s, const Finding& finding) {
  if (finding.at.screen.empty()) return;
  s.user->bring_to_front(finding.at.screen);
  s.user->focus(finding.at.screen, finding.at.field);
}

}  // namespace tv
