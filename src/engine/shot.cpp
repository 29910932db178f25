// The walk of one shot: where the closed forms are read, so that the change of burn law, the peak, burnout
// and the muzzle each land on a logged point.
#include "engine/shot.h"

#include <algorithm>

#include "engine/burn_model.h"
#include "engine/checked.h"
#include "engine/ledger.h"

namespace tv {
namespace {

constexpr int kIndexLimit = 998;     // this index is never logged
constexpr int kRoundLimit = 100000;  // rounds of one phase; some odd loads would halve without end
constexpr int kRefinements = 25;     // of the peak in phase 1
constexpr double kPeakFall1 =
    10000;  // Pa behind the peak, above which the peak was stepped over too coarsely
constexpr double kPeakFall2 = 100;
constexpr double kLeastHalf = 0.000000001;  // of dw
constexpr double kMuzzleReached = 0.00001;  // m
constexpr double kBackwards = 1e-12;        // m
constexpr double kStepDivisor = 2.0;

// Working fields of a run.
struct Walk {
  const CalcState& s;
  ShotCurve& c;
  ShotResult& r;
  ShotFor purpose;
  BurnModel model;
  BurnSolver solver;
  Stage stage = Stage::Ca_Knst_v_Z1;
  int i = 0;       // current index
  int logged = 0;  // last index that was logged completely
  int rounds = 0;  // of the phase
  int points = 0;  // evaluated
  double sigma = 0;
  double w = 0;
  double step = 0;    // increment of sigma
  double growth = 1;  // of the first steps
  double dw = 0;      // increment of w
  int refineLeft = kRefinements;
};

// How a phase was left.
enum class Exit { next, muzzle, too_many };
// What a look at the current point asks for.
enum class Look { none, advance, repeat, leave, muzzle };

void zero_curve(ShotCurve& c) {
  for (double* values : {c.x.data(), c.v.data(), c.p.data(), c.w.data(), c.pB.data(), c.t.data()}) {
    std::fill_n(values, c.used, 0);
  }
  c.used = 0;
}

BurnPoint point_at(const Walk& k, int i) {
  const auto n = static_cast<std::size_t>(i);
  return {k.c.x[n], k.c.v[n], k.c.p[n], k.c.z[n], k.c.sigma[n]};
}

// A point is stored whole or, when a value is not finite, not at all.
void store(Walk& k, const BurnPoint& point, double w) {
  // A difference of a value from itself is 0 if it is finite, else not a number; one test serves all.
  const double gap = (point.x - point.x) + (point.v - point.v) + (point.p - point.p) + (point.z - point.z) +
                     (point.sigma - point.sigma) + (w - w);
  if (gap != 0) [[unlikely]]
    fail_arithmetic(kOverflow);
  const auto n = static_cast<std::size_t>(k.i);
  k.c.x[n] = point.x;
  k.c.v[n] = point.v;
  k.c.p[n] = point.p;
  k.c.z[n] = point.z;
  k.c.sigma[n] = point.sigma;
  k.c.w[n] = w;
  k.sigma = point.sigma;
  k.logged = k.i;
  k.c.used = std::max(k.c.used, k.i + 1);
  ++k.points;
}

void log1(Walk& k) { store(k, stepPhase1(k.model, k.solver, k.sigma, k.i == 0), 0); }

// A bullet that runs backwards behind the change of law has no physical meaning and fails the run. The point
// at the change itself may rightly lie before an accepted point of phase 1.
void log2(Walk& k) {
  const BurnPoint point = stepPhase2(k.model, k.w);
  if (k.i > k.r.z1Idx) {
    const double before = k.c.x[static_cast<std::size_t>(k.i - 1)];
    if (point.x < 0 || point.x < before - kBackwards) fail_arithmetic(kInvalidArgument);
  }
  store(k, point, k.w);
}

void log3(Walk& k) { store(k, stepPhase3(k.model, k.sigma), 0); }

double pressure_at(const Walk& k, int i) { return k.c.p[static_cast<std::size_t>(i)]; }
double travel_at(const Walk& k, int i) { return k.c.x[static_cast<std::size_t>(i)]; }

bool next_index(Walk& k) { return ++k.i < kIndexLimit; }

// --- Phase 1: the powder burns by the first law; steps in sigma.

Look seek_peak1(Walk& k) {
  if (k.r.peakState != 0 || k.i <= 6) return Look::none;
  const double before = pressure_at(k, k.i - 2), top = pressure_at(k, k.i - 1), now = pressure_at(k, k.i);
  if (k.refineLeft >= 1) {
    if (before >= top || top < now) return Look::none;
    if (top - now > kPeakFall1) {
      k.step /= kStepDivisor;
      k.i -= 2;
      k.logged = k.i;
      k.sigma = k.c.sigma[static_cast<std::size_t>(k.i)];
      --k.refineLeft;
      return Look::advance;
    }
  } else if (top < now || std::fabs(top - now) > kPeakFall1) {
    return Look::none;
  }
  k.r.peakIdx = k.i - 1;
  k.step = k.s.baseStep;
  k.r.peakState = k.model.sBurn != k.model.sPeak ? 2 : 3;
  return Look::advance;
}

Look relog1(Walk& k, double sigma) {
  k.sigma = sigma;
  log1(k);
  return Look::repeat;
}

// Brings a point beyond the change of law or the muzzle back onto it; the nearer of the two decides.
Look reach_limit1(Walk& k) {
  const double end = k.model.sigmaEnd, change = k.model.sigmaZ1, sigma = k.sigma;
  if (sigma < end && sigma < change) return Look::advance;
  if (sigma > end && (sigma <= change || end == change)) return relog1(k, end);
  if (sigma == end && sigma <= change) return Look::muzzle;
  if (sigma > change) return relog1(k, change);
  return Look::leave;
}

double increment1(const Walk& k) {
  if (k.r.peakState != 0) return k.i - k.r.peakIdx < 3 ? k.step / 2 : k.step;
  if (k.refineLeft == 0) return k.step;
  // The start of the burn needs tiny steps; they grow with the cube of the index.
  const double cube = static_cast<double>(k.i + 1) * (k.i + 1) * (k.i + 1);
  return cube * (k.growth * 0.00001) * k.step;
}

Exit walk_phase1(Walk& k) {
  k.growth = k.model.sigmaPeak > k.model.sigmaEnd ? checked_div(k.model.sigmaPeak, k.model.sigmaEnd) : 1;
  k.step = k.s.baseStep;
  k.stage = Stage::Ca_All_v_Z1;
  log1(k);
  for (k.rounds = 0; k.rounds < kRoundLimit; ++k.rounds) {
    Look look = seek_peak1(k);
    if (look == Look::none) look = reach_limit1(k);
    if (look == Look::repeat) continue;
    if (look == Look::muzzle) return Exit::muzzle;
    if (look == Look::leave) return Exit::next;
    if (!next_index(k)) return Exit::too_many;
    k.sigma += increment1(k);
    log1(k);
  }
  return Exit::too_many;
}

// --- Phase 2: the powder burns by the second law; steps in w, which is proportional to the velocity.

void setPhase2Step(Walk& k) {
  const int steps = k.s.schrit == 1 ? 100 : k.s.schrit == 2 ? 20 : 40;
  k.dw = (k.model.wEnd - k.model.wZ1) / steps;
}

void record_peak2(Walk& k) {
  const auto n = static_cast<std::size_t>(k.i - 1);
  k.r.peakState = 2;
  k.r.peakIdx = k.i - 1;
  k.r.xPeak = k.c.x[n];
  k.r.pMax = k.c.p[n];
  setPhase2Step(k);
}

// A peak between the last two points: accepted unless burning ends right there.
Look accept_peak2(Walk& k) {
  if (k.w == k.model.wEnd) return Look::leave;
  record_peak2(k);
  return Look::none;
}

Look seek_peak2(Walk& k) {
  if (k.r.peakState != 0) return Look::none;
  const int behind = k.i - k.r.z1Idx;
  if (behind == 1 && !(pressure_at(k, k.i) > pressure_at(k, k.i - 1))) {
    // The pressure falls from the change of law on: look ever closer behind it.
    if (k.dw < kLeastHalf) return accept_peak2(k);
    k.w = k.model.wZ1;
    k.dw /= 2;
    return Look::advance;
  }
  if (behind < 2) return Look::none;
  const double before = pressure_at(k, k.i - 2), top = pressure_at(k, k.i - 1), now = pressure_at(k, k.i);
  if (!(before < top && top >= now)) return Look::none;
  if (!(top - now > kPeakFall2)) return accept_peak2(k);
  k.w = k.c.w[static_cast<std::size_t>(k.i - 2)];
  k.dw /= 2;
  --k.i;
  k.logged = k.i - 1;
  return Look::advance;
}

// Compares the point with burnout and the muzzle. Behind the muzzle it is taken back and the step halved, so
// that the muzzle is approached until it lies within its tolerance.
Look compare2(Walk& k) {
  const double at = std::fabs(k.w), end = std::fabs(k.model.wEnd);
  const double x = travel_at(k, k.i), L = k.s.travelM;
  if (end > at && x < L) return next_index(k) ? Look::advance : Look::none;
  if (end > at && std::fabs(L - x) <= kMuzzleReached) return Look::muzzle;
  if (end < at && x < L) {
    k.w = k.model.wEnd;
    return Look::repeat;
  }
  if (x < L && k.w >= k.model.wEnd) return Look::leave;
  k.w = k.i > 0 ? k.c.w[static_cast<std::size_t>(k.i - 1)] : 0;
  k.dw /= 2;
  return Look::advance;
}

// The point at the change of law stays current: the first round logs it anew, by the second law.
void enter_phase2(Walk& k) {
  k.stage = Stage::Ca_Knst_n_Z1;
  k.step = k.s.baseStep;
  phase2_constants(k.model);
  k.w = k.model.wZ1;
  setPhase2Step(k);
  k.model.sigmaZ1 = k.sigma;
  k.r.z1Idx = k.i;
  k.stage = Stage::Ca_All_n_Z1;
}

Exit walk_phase2(Walk& k) {
  enter_phase2(k);
  for (k.rounds = 0; k.rounds < kRoundLimit; ++k.rounds) {
    log2(k);
    // A peak that phase 1 took for the peak is withdrawn.
    if (pressure_at(k, k.i) > k.r.pMax && k.r.peakState > 0) k.r.peakState = 0;
    Look look = seek_peak2(k);
    if (look == Look::none) look = compare2(k);
    if (look == Look::none) return Exit::too_many;
    if (look == Look::leave) return Exit::next;
    if (look == Look::muzzle) return Exit::muzzle;
    if (look == Look::repeat) continue;
    if (k.dw == 0) return Exit::too_many;  // halved away: the rounds left would all be this one
    k.w += k.dw;
    if (k.w > k.model.wEnd) k.w = k.model.wEnd;
  }
  return Exit::too_many;
}

// --- Phase 3: all is burnt, the gas expands.

Exit walk_phase3(Walk& k) {
  const BurnPoint burnout = point_at(k, k.i);
  if (k.model.z1 == 1) {
    phase3_from_phase1(k.model, burnout);
  } else {
    phase3_from_phase2(k.model, burnout);
  }
  k.stage = Stage::Calc_n_Brs;
  const double L = k.s.travelM;
  k.step = finite(checked_div(k.model.A, k.model.V0) * 0.02 * L);
  k.r.burnIdx = k.i;
  if (k.r.peakState == 0) {
    k.r.pMax = burnout.p;
    k.r.peakIdx = k.i;
    k.r.xPeak = burnout.x;
    k.r.peakState = 3;
  }
  do {
    if (!next_index(k)) return Exit::too_many;
    k.sigma += k.step;
    log3(k);
  } while (travel_at(k, k.i) < L);
  if (travel_at(k, k.i) != L) {
    k.sigma = k.model.sigmaEnd;
    log3(k);
    k.c.x[static_cast<std::size_t>(k.i)] = L;
  }
  return Exit::muzzle;
}

// --- What follows from the curve.

void end_before_burnout(Walk& k) {
  k.stage = Stage::End_V_Brs;
  k.r.notBurnt = 1;
  k.r.runNotes.add(Note::fwarn8);
  if (k.r.peakState != 0) return;
  k.r.peakState = 1;
  k.r.pMax = pressure_at(k, k.i);
  k.r.xPeak = travel_at(k, k.i);
  k.r.runNotes.add(Note::fwarn9);
}

// The highest logged point is the peak, whatever the searches have found; of equal ones the later.
void scanPeak(const ShotCurve& c, ShotResult& r) {
  std::size_t peak = 0;
  for (std::size_t n = 0; n <= static_cast<std::size_t>(r.lastIdx); ++n) {
    if (c.p[n] >= c.p[peak]) peak = n;
  }
  r.peakIdx = static_cast<int>(peak);
  r.pMax = c.p[peak];
  r.xPeak = c.x[peak];
  r.vPeak = c.v[peak];
  r.zPeak = c.z[peak];
}

// Anew from the finished curve, as the walk may have gone back.
int first_above_95(const ShotCurve& c, int lastIdx) {
  for (int n = 0; n <= lastIdx; ++n) {
    if (c.z[static_cast<std::size_t>(n)] > 0.949) return n;
  }
  return -1;
}

void read_stuck(ShotCurve& c, ShotResult& r) {
  const auto last = static_cast<std::size_t>(r.lastIdx);
  c.v[last] = c.p[last] = c.z[last] = 0;
  r.pMax = r.xPeak = r.ptime = 0;
  r.vMuzzle = r.zMuzzle = 0;
}

void close_ledger(Walk& k, Ledger ledger) {
  if (ledger == Ledger::off) k.r.runNotes.add(Note::fwarn19);
  if (ledger != Ledger::broken) return;
  k.stage = Stage::bounds;
  fail_arithmetic(kInvalidArgument);
}

ShotEnd finish(Walk& k) {
  k.stage = Stage::End_N_Brs;
  ShotResult& r = k.r;
  const auto last = static_cast<std::size_t>(k.i);
  r.lastIdx = k.i;
  r.zMuzzle = k.c.z[last];
  if (r.notBurnt == 0) r.runNotes.add(Note::fwarn10);
  if (r.peakState == 2) r.runNotes.add(Note::fwarn11);
  if (r.peakState == 3) r.runNotes.add(Note::fwarn12);
  scanPeak(k.c, r);
  r.idx95 = first_above_95(k.c, r.lastIdx);
  const double unhindered = r.vMuzzle = k.c.v[last];
  const Ledger energy = energy_ledger(k.s, k.c, r);
  if (k.s.frictionOn && !applyBoreFriction(k.s, k.c, r)) {
    read_stuck(k.c, r);
    return ShotEnd::stuck;
  }
  if (k.purpose != ShotFor::figures) baseCurve(k.s, k.c, r);
  integrateTime(k.c, r);
  close_ledger(k, std::max(energy, order_ledger(k.c, r, unhindered)));
  return ShotEnd::finished;
}

ShotEnd walk(Walk& k) {
  k.model = burn_inputs(k.s);
  if (!phase1_constants(k.model)) return ShotEnd::kEff_one;
  Exit exit = walk_phase1(k);
  if (exit == Exit::next && k.model.z1 != 1) exit = walk_phase2(k);
  const bool burnt = exit == Exit::next;
  if (burnt) exit = walk_phase3(k);
  if (exit == Exit::too_many) {
    k.r.runNotes.add(Note::fwarn13);
    return ShotEnd::too_many_steps;
  }
  if (!burnt) end_before_burnout(k);
  return finish(k);
}

// Tells on the status line that nothing else of the run counts. Table rows keep their notes.
void note_failure(ShotFor purpose, RunNotes& notes) {
  if (purpose != ShotFor::show) return;
  notes = RunNotes{};
  notes.add(Note::fwarn14);
}

}  // namespace

const char* stage_name(Stage stage) {
  switch (stage) {
    case Stage::Ca_Knst_v_Z1:
      return "Ca_Knst_v_Z1";
    case Stage::Ca_All_v_Z1:
      return "Ca_All_v_Z1";
    case Stage::Ca_Knst_n_Z1:
      return "Ca_Knst_n_Z1";
    case Stage::Ca_All_n_Z1:
      return "Ca_All_n_Z1";
    case Stage::Calc_n_Brs:
      return "Calc_n_Brs";
    case Stage::End_V_Brs:
      return "End_V_Brs";
    case Stage::End_N_Brs:
      return "End_N_Brs";
    case Stage::bounds:
      return "bounds";
    case Stage::none:
      break;
  }
  return "";
}

ShotOutcome runShot(const CalcState& s, ShotCurve& curve, ShotResult& result, ShotFor purpose) {
  zero_curve(curve);
  result = ShotResult{};
  if (s.freeVol < kLeastFreeVol) return {};
  if (s.fill > 100) result.runNotes.overfill = s.fill - 100;
  Walk k{s, curve, result, purpose, {}, {}};
  try {
    const ShotEnd end = walk(k);
    if (end == ShotEnd::kEff_one) note_failure(purpose, result.runNotes);
    if (end == ShotEnd::too_many_steps) result.lastIdx = k.logged;
    return {end, 0, k.stage, k.points, k.solver.evaluations};
  } catch (const ArithmeticFailure& failure) {
    result.lastIdx = k.logged;
    note_failure(purpose, result.runNotes);
    return {ShotEnd::failed, failure.number, k.stage, k.points, k.solver.evaluations};
  }
}

}  // namespace tv
