// The figures of the results panel and the status line, as the user reads them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/calc_state.h"
#include "text/language.h"

namespace tv {

enum class PressureState {
  fine,
  caution,
  near_limit,
  over_limit,
  unknown
};  // white, yellow, magenta, red, limit unknown

// The peak against the maximum pressure (MPa): above zul_P*999999 Pa, *849999, *749999.
PressureState pressure_state(double pMax, double zul_P);

struct PanelField {
  const char* name;
  std::string text;
};

// The fields Mgas to endich with their texts, in the order of the panel. Never fails: a value that cannot be
// computed shows "?". Charge density (ladich, endich) is computed from what the fields MPgm and Veffm show.
//
// in:  charge_g [g], Veff_cm3 [cm3], both as shown on the screens
std::vector<PanelField> showResults(const CalcState& s, const ShotCurve& curve, const ShotResult& result,
                                    double charge_g, double Veff_cm3);

enum class BurnCaption { burnout, at95, none };
BurnCaption burn_caption(const ShotResult& result);  // caption of Labelaburn: fburn100, fburn95

// The run notes as text: over-filling and the notes of the walk.
std::string run_notes_text(const RunNotes& notes, const Language& language);

// The status line without the standing notice: head, limit note, run notes with `more` behind them, momentum
// figures, a line end.
std::string status_line(const CalcState& s, const ShotCurve& curve, const ShotResult& result,
                        const Language& language, std::string_view more = {});
bool status_line_red(const CalcState& s, const ShotResult& result);

// Linear interpolation of t over p at y between A (lower index) and B: tB - (pB - y)(tA - tB)/(pA - pB).
double interpLinear(double y, double tA, double tB, double pA, double pB);

}  // namespace tv
