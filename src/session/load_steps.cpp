#include "session/load_steps.h"

#include <optional>

#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/number.h"

namespace tv {
namespace {

void save_steps(Session& s) { store_options(s, {"ldstep", "ldweight", "ldperc"}); }

// The number in an answer times its unit; nothing, and the range in the status line, where it is none or out
// of range.
std::optional<double> accepted(Session& s, const std::string& answer, double unit, Limits limits) {
  const NumberRead read = read_number_checked(with_points(answer));
  const double value = read.value * unit;
  if (read.whole && value >= limits.least && value <= limits.most) return value;
  s.status = s.language.msg(428) + " " + answer + " (" + format_number(limits.least / unit, "0.0#") +
             " ... " + format_number(limits.most / unit, "0.0#") + ")";
  beep(s);
  return std::nullopt;
}

}  // namespace

void SetLoadTableStep(Session& s, double percent) {
  s.options.ldperc = percent != 1.0 && percent != 2.0 && percent != 3.0;
  s.options.ldweight = false;
  if (s.options.ldstep != percent) setResultsValid(s, false);
  s.options.ldstep = percent;
  settle_steps(s);
  save_steps(s);
}

void settle_steps(Session& s) {
  double& weight = s.tables.weight_step;
  if (!s.options.ldweight || !(weight > 0)) {
    weight = s.options.ldstep * s.state.chargeGr / 100;
  } else if (s.state.chargeGr > 0) {
    s.options.ldstep = 100 * weight / s.state.chargeGr;
  }
}

void SetBaTolerance(Session& s, int percent) {
  // No single shot depends on it, but the last rows of the table do.
  if (s.options.batols != percent) s.valid.load_table = false;
  s.options.batols = percent;
  store_option(s, "batols");
}

void ask_percent_step(Session& s) {
  settle_steps(s);
  const auto answer = s.user->input({s.language.text("frmMAIN", "fldtabinp"), MessageText(s).msg(419),
                                     format_number(s.options.ldstep, "0.0###")});
  if (!answer) return;
  if (const auto percent = accepted(s, *answer, 1, {0.1, 9.0})) SetLoadTableStep(s, *percent);
}

void ask_weight_step(Session& s) {
  settle_steps(s);
  const bool grains = s.unit_mode == UnitMode::imperial;
  const double unit = grains ? 1 : kGrainsPerGram;
  MessageText prompt(s);
  prompt.caption("frmMAIN", "fldtsteps").add(format_number(0.1 / unit, "0.0#"));
  prompt.caption("frmMAIN", "fldtto").add(format_number(5.0 / unit, "0.0#")).add(" ");
  prompt.fast(grains ? "fgrains" : "fgramm").caption("frmMAIN", "fldtreduc");
  const auto answer = s.user->input({s.language.text("frmMAIN", "fldtabinp"), prompt,
                                     format_number(s.tables.weight_step / unit, "0.0###")});
  if (!answer) return;
  const auto weight = accepted(s, *answer, unit, {0.1, 5.0});
  if (!weight) return;
  if (*weight != s.tables.weight_step) setResultsValid(s, false);
  s.options.ldweight = true;
  s.options.ldperc = false;
  s.tables.weight_step = *weight;
  settle_steps(s);
  save_steps(s);
}

}  // namespace tv
