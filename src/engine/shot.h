// One shot: set-up, the walk from ignition to the muzzle through three closed-form phases, and what follows
// from the curve. A shot is a pure function of the inputs in CalcState; the engine talks to nobody and
// allocates nothing.
#pragma once

#include "engine/calc_state.h"

namespace tv {

// User units to SI: bulletKg, travelM, caseM3, boreM2. At every transfer of inputs.
void convertUnits(CalcState& s);

// The first powder value out of range, in the order they are checked, or why there is no chamber.
enum class SetUp { ok, Exw, Ba0, Kap, PDko, Limz1, Pdens, chargeGr, freeVol, failed };
const char* set_up_field(
    SetUp refused);  // the field to blame: "Exw" ... "MPgn" (also for freeVol); "" for ok

// Checks the ranges, makes the SI values of the powder and the charge, resets the shot and sets the step.
SetUp prepareShot(CalcState& s);

// Step from the case, bore and travel by the step setting (a travel below 1 m counts as 1 m).
void setBaseStep(CalcState& s);

// Loading ratio: the charge over what fills the case at the powder's bulk density (g/cm3), percent; 0 when it
// cannot be computed.
double loading_ratio(double charge_g, double bulk_density, double Veff_cm3);

// The highest start pressure that may be calculated, Pa: (kappa - 1) w0 Q z1 / (1.5 V0).
double start_pressure_bound(const CalcState& s);

enum class ShotEnd {
  finished,
  no_space,  // free volume below kLeastFreeVol: nothing was run
  kEff_one,  // powder values for which the model has no solution (kEff exactly 1)
  too_many_steps,
  stuck,   // bore friction stopped the bullet; its results read 0
  failed,  // arithmetic failure: number and stage say what and where
};

struct ShotOutcome {
  ShotEnd end = ShotEnd::no_space;
  int failure = 0;            // FailureNumber when failed
  Stage stage = Stage::none;  // where a run failed or ended
  int points = 0;             // what it cost: points evaluated, those that were gone back over included,
  long expansions = 0;        // and evaluations of the burn under a start pressure
  bool ok() const { return end == ShotEnd::finished; }
};

// What a run is for: the whole shot on show, a row of a table that keeps its notes when it fails, or figures
// of which nobody looks at the base pressure.
enum class ShotFor { show, row, figures };

// Walks one shot at the SI values in s (after prepareShot or the shorter set-up of a table row). The result
// of a run that did not finish is not to be shown as good: lastIdx is then the last index logged completely.
//
// in:  s.freeVol, sigmaEnd, effMass, baseStep, the model's fields; any value, however wild, ends as a value
ShotOutcome runShot(const CalcState& s, ShotCurve& curve, ShotResult& result,
                    ShotFor purpose = ShotFor::show);

// A table row at the charge now in s.chargeKg: free volume, expansion and effective mass anew, then one run.
// False when the charge is not above 0, the free volume is too small (nothing is run and the former shot is
// kept), the set-up fails or the run does not finish.
bool quickShot(CalcState& s, ShotCurve& curve, ShotResult& result);

}  // namespace tv
