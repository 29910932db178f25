#include "session/fitted_powder.h"

#include <algorithm>

#include "session/dimensions.h"
#include "session/numbers.h"
#include "session/run.h"
#include "text/number.h"

namespace tv {
namespace {

bool is_day(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c == '-' || (c >= '0' && c <= '9'); }) &&
         std::ranges::count(text, '-') == 2;
}

}  // namespace

std::string fitted_name(std::string_view name, std::string_view day) {
  name = trim(name);
  if (name.ends_with(" ?")) name = trim(name.substr(0, name.size() - 2));
  if (name.size() > day.size() && is_day(name.substr(name.size() - day.size())))
    name = trim(name.substr(0, name.size() - day.size()));
  return std::string(name) + " " + std::string(day);
}

void take_fitted_powder(Session& s, const CalcState& fitted, std::string_view day) {
  CalcState& now = s.state;
  const FitUndo before{true, now.chargeGr, now.dim.Llen, now.dim.Wob, now, s.load.pulver};
  now.Ba0 = fitted.Ba0;
  now.Ba1 = fitted.Ba1;
  now.PDko = fitted.PDko;
  now.start_pressure = fitted.start_pressure;
  s.load.pulver = fitted_name(s.load.pulver, day) + " ?";
  for (const double* value : {&now.Ba0, &now.Ba1, &now.PDko}) write_number(s, *value);
  refresh_pressure_fields(s);
  convertUnits(now);
  refresh_fill(s);
  setResultsValid(s, run_shown_shot(s));
  s.valid.load_table = s.valid.powder_table = false;
  s.fit_undo = before;
  outputs_changed(s);
}

}  // namespace tv
