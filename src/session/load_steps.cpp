#include "session/load_steps.h"

#include <algorithm>

#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/number.h"

namespace tv {
namespace {

// The one chosen last, percent or weight, stands; the other follows the charge.
double present_weight(const Session& s) {
  return s.options.ldweight ? s.tables.weight_step : s.options.ldstep * s.state.chargeGr / 100;
}

void save_steps(Session& s) { store_options(s, {"ldstep", "ldweight", "ldperc"}); }

}  // namespace

void SetLoadTableStep(Session& s, double percent) {
  s.options.ldperc = percent != 1.0 && percent != 2.0 && percent != 3.0;
  s.options.ldweight = false;
  if (s.options.ldstep != percent) setResultsValid(s, false);
  s.options.ldstep = percent;
  s.tables.weight_step = percent * s.state.chargeGr / 100;
  save_steps(s);
}

void SetBaTolerance(Session& s, int percent) {
  // No single shot depends on it, but the last rows of the table do.
  if (s.options.batols != percent) s.valid.load_table = false;
  s.options.batols = percent;
  store_option(s, "batols");
}

void ask_percent_step(Session& s) {
  const auto answer = s.user->input({s.language.text("frmMAIN", "fldtabinp"), MessageText(s).msg(419),
                                     format_number(s.options.ldstep, "0.0###")});
  if (!answer) return;
  const double percent = read_number(with_points(*answer));
  if (percent >= 0.1 && percent <= 9.0) SetLoadTableStep(s, percent);
}

void ask_weight_step(Session& s) {
  const bool grains = s.unit_mode == UnitMode::imperial;
  const double unit = grains ? 1 : kGrainsPerGram;
  MessageText prompt(s);
  prompt.caption("frmMAIN", "fldtsteps").add(format_number(0.1 / unit, "0.0#"));
  prompt.caption("frmMAIN", "fldtto").add(format_number(5.0 / unit, "0.0#")).add(" ");
  prompt.fast(grains ? "fgrains" : "fgramm").caption("frmMAIN", "fldtreduc");
  const auto answer = s.user->input(
      {s.language.text("frmMAIN", "fldtabinp"), prompt, format_number(present_weight(s) / unit, "0.0###")});
  if (!answer) return;
  const double weight = read_number(with_points(*answer)) * unit;
  if (!(weight >= 0.1 && weight <= 5.0)) return;
  if (weight != s.tables.weight_step) setResultsValid(s, false);
  s.options.ldweight = true;
  s.options.ldperc = false;
  s.tables.weight_step = weight;
  if (s.state.chargeGr > 0) s.options.ldstep = 100 * weight / s.state.chargeGr;
  save_steps(s);
}

}  // namespace tv
