// frmBP: a muzzle velocity for black powder, straight from Miller's factor.
#include "powder/black_powder.h"
#include "screens/all.h"
#include "session/data_sets.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmBP";
constexpr RecordKind kKind = RecordKind::black_powders;
namespace bf = black_powder_field;

struct State {
  bool read = false;  // the file, at the first opening
  std::string powder;
  int load = 0;
  double charge_gr = 0, bullet_gr = 0, barrel_in = 0, ball_in = 0;
};
State& state(Session& s) { return own<State>(s, kName); }

template <double State::*Member>
double& value(Session& s, int) {
  return state(s).*Member;
}

using Step = double (*)(const Session&, const NumberSide&);
constexpr NumberField pair_number(NumberSide metric, NumberSide imperial, double& (*value)(Session&, int),
                                  Step step = nullptr) {
  return {.sides = {{metric, imperial}}, .value = value, .step = step, .zero_empty = true};
}
const NumberField kNumbers[] = {
    pair_number({"MPgm", &units::gram_of_grain, {0.0324, 100000}, "##0.00#", "##0.00#"},
                {"MPgn", &units::grain, {0.5, 1543230}, "##0.0#", "##0.0#"}, value<&State::charge_gr>,
                charge_step),
    pair_number({"Bwgm", &units::gram_of_grain, {0.06, 100000}, "##0.00#", "##0.00#"},
                {"Bwgn", &units::grain, {1, 1543230}, "##0.0#", "##0.0#"}, value<&State::bullet_gr>),
    pair_number({"Llenm", &units::mm_of_inch, {10, 10160}, "##0.0##", "####0.0#"},
                {"Llenz", &units::inch, {0.4, 400}, "0.0##", "##0.0##"}, value<&State::barrel_in>),
    pair_number({"buldinmm", &units::mm_of_inch, {1, 609.6}, "0.00#", "0.00#"},
                {"buldinch", &units::inch, {0.04, 24}, "0.000#", "0.000#"}, value<&State::ball_in>),
};

constexpr Row kPowder[] = {
    wide_row("bpsel", {"bpsel", ControlKind::combo, nullptr, ListOf::own_records, kKind}),
    source_row("bpsel"),
    {RowShape::buttons, nullptr, {button("open_bpw")}},
};
constexpr Row kLoad[] = {
    {RowShape::bare, nullptr, {option("ldtyp0")}},
    {RowShape::bare, nullptr, {option("ldtyp1")}},
    {RowShape::bare, nullptr, {option("ldtyp2")}},
    display_row("k_fakt", nullptr),
    number_row("MPgm", "MPgn"),
    number_row("Bwgm", "Bwgn"),
    number_row("Llenm", "Llenz"),
};
constexpr Row kBall[] = {number_row("buldinmm", "buldinch"), {RowShape::buttons, nullptr, {button("frmrk")}}};
constexpr Row kResult[] = {display_row("mvmps", "unit_mps", "mvfps", "unit_fps"), paragraph_row("@hint1"),
                           paragraph_row("@Label9")};
constexpr Row kButtons[] = {{RowShape::buttons, nullptr, {button("close")}}};
constexpr Group kForm[] = {{nullptr, 0, kPowder},
                           {"ldtyp", 0, kLoad},
                           {nullptr, 0, kBall},
                           {nullptr, 0, kResult},
                           {nullptr, -1, kButtons}};

// --- the powder chosen

int powder_row(const Session& s) { return s.set(kKind).file.table.find(trim(own<State>(s, kName).powder)); }
BlackPowder powder_now(const Session& s) {
  const RecordTable& table = s.set(kKind).file.table;
  const int row = powder_row(s);
  BlackPowder powder;
  for (int i = 0; i < kBlackPowderLoads; ++i)
    powder.K[static_cast<std::size_t>(i)] = table.number(row, bf::K1 + i);
  powder.warned = table.number(row, bf::flag) != 0;
  return powder;
}
void select(Session& s, int row) {
  state(s).powder = trim(s.set(kKind).file.table.cell(row, bf::name));
  state(s).load = offered_load(powder_now(s), state(s).load);
}

void pick_powder(Session& s, int) { select(s, picked_row(field(s, kName, "bpsel"))); }
void choose_load(Session& s, int i) { state(s).load = i; }
void estimate_ball(Session& s, int) {
  State& st = state(s);
  if (!(st.ball_in > 0)) return s.user->focus(kName, "buldinmm");
  st.bullet_gr = round_ball_weight(st.ball_in);
  write_number(s, st.bullet_gr);
}
void open_file(Session& s, int) {
  const std::string before = s.set(kKind).stored_name;
  open_records(s, kKind);
  if (s.set(kKind).stored_name != before) select(s, 0);
}
void close_window(Session& s, int) { hide_screen(s, kName); }

constexpr ControlAction kActions[] = {{"bpsel", pick_powder},
                                      {"ldtyp", choose_load},
                                      {"frmrk", estimate_ball},
                                      {"open_bpw", open_file},
                                      {"close", close_window}};

// The file of the last time, else the delivered one; a missing one of these gives an empty list.
void open(Session& s) {
  State& st = state(s);
  if (st.read) return;
  st.read = true;
  const bool named = !s.options.bpwfil.empty();
  DataSet& set = s.set(kKind);
  set.stored_name = named ? s.options.bpwfil : "data/powders/ternofw.";
  read_data_set(s, kKind, data_path(s, set.stored_name + record_kind(kKind).extension), named);
  select(s, 0);
}

// Both as they are told: half a foot a second goes on top before either is rounded.
void show_velocity(Session& s, const std::optional<double>& v) {
  for (const bool metric : {false, true}) {
    Field& f = field(s, kName, metric ? "mvmps" : "mvfps");
    f.text = v ? format_number((*v + 0.5) / (metric ? kFeetPerMetre : 1), "0") : std::string();
    f.ink = v && *v < 0 ? Ink::red : Ink::black;
  }
}

void refresh(Session& s) {
  const State& st = state(s);
  const BlackPowder powder = powder_now(s);
  show_text(s, kName, "bpsel", st.powder);
  for (int i = 0; i < kBlackPowderLoads; ++i) {
    Field& f = field(s, kName, "ldtyp" + std::to_string(i));
    f.enabled = offers(powder, i);
    f.checked = i == st.load;
  }
  const double K = powder.K[static_cast<std::size_t>(st.load)];
  set_text(s, kName, "k_fakt", format_number(K, "0.0##"));
  show_velocity(s, st.barrel_in > 0
                       ? black_powder_velocity(st.load, K, st.charge_gr, st.bullet_gr, st.barrel_in)
                       : std::nullopt);
  const auto told = [&](const char* key) { return s.language.text("frmBP", key); };
  set_text(s, kName, "hint1", powder.warned ? told("hint1") : std::string());
  set_text(s, kName, "Label9",
           powder.warned ? s.language.text("form9", "hint29") + "\n" + told("warn1") + "\n" + told("warn2")
                         : std::string());
  field(s, kName, "hint1").visible = field(s, kName, "Label9").visible = powder.warned;
}

}  // namespace

extern const ScreenSpec kFrmBP{.name = kName,
                               .section = "frmBP",
                               .form = kForm,
                               .numbers = kNumbers,
                               .actions = kActions,
                               .open = open,
                               .refresh = refresh};

}  // namespace tv
