// Form8: values converted between two units.
#include "calculators/units.h"
#include "data/record_file.h"
#include "screens/all.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/numbers.h"
#include "session/units.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form8";
constexpr double kMost = 3e37;

struct State {
  std::vector<UnitPair> pairs;
  int chosen = 0;
  double first = 1, second = 0;  // as the fields show them
};
State& units_state(Session& s) { return own<State>(s, kName); }

template <double State::*Value>
double& entered(Session& s, int) {
  return units_state(s).*Value;
}

const UnitPair* chosen_pair(const State& state) {
  const auto n = static_cast<std::size_t>(state.chosen);
  return n < state.pairs.size() ? &state.pairs[n] : nullptr;
}

// The other field takes the text of the conversion; nothing reacts to what the program writes.
void convert_first(Session& s, int, bool) {
  if (const UnitPair* pair = chosen_pair(units_state(s)))
    set_text(s, kName, "wert2", to_second(*pair, field(s, kName, "wert1").text));
}
void convert_second(Session& s, int, bool) {
  if (const UnitPair* pair = chosen_pair(units_state(s)))
    set_text(s, kName, "wert1", to_first(*pair, field(s, kName, "wert2").text));
}

constexpr NumberField kNumbers[] = {
    one_side({"wert1", &units::plain, {-kMost, kMost}}, entered<&State::first>, convert_first),
    one_side({"wert2", &units::plain, {-kMost, kMost}}, entered<&State::second>, convert_second),
};

constexpr Row kRows[] = {
    {RowShape::wide, "select_it", {Place{"select_it", ControlKind::combo}}},
    {RowShape::pair, "wert1", {number("wert1", "@unit1")}},
    {RowShape::pair, "wert2", {number("wert2", "@unit2")}},
    {RowShape::buttons, nullptr, {button("copy"), button("exit8")}},
};
constexpr Group kForm[] = {{nullptr, 0, kRows}};

std::vector<UnitPair> read_pairs(const Session& s) {
  const std::string file = data_path(s, "lan/" + s.language.name() + ".cnv");
  const RecordTable table = read_records_plain(file, RecordKind::units, s.language.page()).file.table;
  std::vector<UnitPair> pairs;
  for (int row = 0; row <= table.last(); ++row)
    pairs.push_back(
        unit_pair(table.cell(row, 0), table.cell(row, 1), table.cell(row, 2), table.cell(row, 3)));
  return pairs;
}

void select(Session& s, int n) {
  State& state = units_state(s);
  state.chosen = n;
  if (const UnitPair* pair = chosen_pair(state))
    state.second = read_number(to_second(*pair, field(s, kName, "wert1").text));
  convert_first(s, 0, true);
}

void open(Session& s) {
  units_state(s) = {.pairs = read_pairs(s)};
  set_text(s, kName, "wert1", "1");
  select(s, 0);
}

void copy(Session& s, int) { copy_results(s, kName); }
void close_it(Session& s, int) { hide_screen(s, kName); }
constexpr ControlAction kActions[] = {{"select_it", select}, {"copy", copy}, {"exit8", close_it}};

void refresh(Session& s) {
  const State& state = units_state(s);
  Field& list = field(s, kName, "select_it");
  list.items.clear();
  for (std::size_t n = 0; n < state.pairs.size(); ++n)
    list.items.push_back({unit_pair_name(state.pairs[n]), static_cast<int>(n)});
  const UnitPair* pair = chosen_pair(state);
  list.selected = pair ? state.chosen : -1;
  list.text = pair ? unit_pair_name(*pair) : "";
  set_text(s, kName, "unit1", pair ? pair->first : "");
  set_text(s, kName, "unit2", pair ? pair->second : "");
}

}  // namespace

extern const ScreenSpec kForm8{.name = kName,
                               .section = "form8",
                               .form = kForm,
                               .default_button = "exit8",
                               .numbers = kNumbers,
                               .actions = kActions,
                               .open = open,
                               .refresh = refresh};

}  // namespace tv
