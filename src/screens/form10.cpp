// Form10: the powder of the burn function's window as a record of the powder file.
#include <algorithm>

#include "screens/all.h"
#include "screens/editors.h"
#include "session/data_sets.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/take_records.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "Form10";
constexpr EditorPlace kEditor{kName, "rec_list", RecordKind::powders};
constexpr std::string_view kEdited = " ?";

struct State {
  std::string name;
};
State& state(Session& s) { return own<State>(s, kName); }

constexpr Row kRecord[] = {
    wide_row("rec_list", {"rec_list", ControlKind::combo, nullptr, ListOf::own_records, RecordKind::powders}),
    source_row("rec_list"),
    note_row("@record_note"),
    wide_row("rec_name", {"rec_name", ControlKind::text}),
    note_row("choose_record"),
};
constexpr Row kButtons[] = {
    {RowShape::buttons, nullptr, {button("rec_delete"), button("rec_cancel"), button("rec_save")}}};
constexpr Group kForm[] = {{nullptr, 0, kRecord}, {nullptr, -1, kButtons}};

// Where each value of the load stands in a record, and in which form.
struct ValueAt {
  int field;
  double CalcState::*value;
  const char* pattern;
};
using C = CalcState;
namespace pf = powder_field;
constexpr ValueAt kValues[] = {
    {pf::Exw, &C::Exw, "####0"},  {pf::Kap, &C::Kap, "0.0000"},      {pf::Pdens, &C::Pdens, "0.000"},
    {pf::Ba0, &C::Ba0, "0.0000"}, {pf::PDko, &C::PDko, "0.0000"},    {pf::Limz1, &C::Limz1, "0.000"},
    {pf::Ba1, &C::Ba1, "0.0000"}, {pf::bulkdn, &C::bulkdn, "0.000"},
};

// Of a record that is replaced the fields stay that this program does not read.
Record record_now(const Session& s, const std::string& name) {
  Record r = s.set(kEditor.kind).file.table.record(editor_row(s, kEditor, name));
  r[0] = name;
  for (const ValueAt& v : kValues)
    r[static_cast<std::size_t>(v.field)] = format_pattern(s.state.*v.value, v.pattern);
  r[pf::mean_burn_rate] = " ";
  return r;
}

RecordFault fault_of(Session& s) {
  if (trim(state(s).name).empty()) return {23, "rec_name"};
  C trial = s.state;
  const SetUp found = prepareShot(trial);
  const bool powder = found == SetUp::Exw || found == SetUp::Ba0 || found == SetUp::Kap ||
                      found == SetUp::PDko || found == SetUp::Limz1 || found == SetUp::Pdens;
  return powder ? RecordFault{28, nullptr} : RecordFault{};
}

// The load has the powder of that record now, by its name and to the last digit.
void save(Session& s, int) {
  if (!record_is_good(s, kEditor, fault_of(s))) return;
  const std::string name{trim(clean_field(state(s).name))};
  const bool valid = s.valid.results;
  if (!add_record(s, kEditor.kind, record_now(s, name))) return;
  const CalcState before = s.state;
  take_powder(s, editor_row(s, kEditor, name));
  const bool same =
      std::ranges::all_of(kValues, [&](const ValueAt& v) { return s.state.*v.value == before.*v.value; });
  if (same && valid) setResultsValid(s, true);
  hide_screen(s, kName);
}

void delete_shown_record(Session& s, int) {
  const Deleted deleted = delete_shown(s, kEditor, state(s).name);
  if (deleted.done) state(s).name = trim(s.set(kEditor.kind).file.table.cell(deleted.next, 0));
}
void cancel(Session& s, int) { hide_screen(s, kName); }
void pick_record(Session& s, int entry) { state(s).name = entry_name(s, kEditor, entry); }
void type_name(Session& s, int) { state(s).name = field(s, kName, "rec_name").text; }

constexpr ControlAction kActions[] = {{"rec_list", pick_record},
                                      {"rec_name", nullptr, type_name},
                                      {"rec_save", save},
                                      {"rec_delete", delete_shown_record},
                                      {"rec_cancel", cancel}};

void open(Session& s) {
  std::string name{trim(s.load.pulver)};
  if (name.ends_with(kEdited)) name.resize(name.size() - kEdited.size());
  state(s).name = name;
}

void refresh(Session& s) {
  show_record_name(s, kEditor, state(s).name, false);
  show_text(s, kName, "rec_name", state(s).name);
}

}  // namespace

extern const ScreenSpec kForm10{.name = kName,
                                .section = "form10",
                                .form = kForm,
                                .default_button = "rec_save",
                                .actions = kActions,
                                .open = open,
                                .refresh = refresh};

}  // namespace tv
