// frmColumns: the columns of a chronograph's file, where it does not say for certain which is which.
#include <algorithm>
#include <array>
#include <memory>

#include "screens/all.h"
#include "screens/measure_screens.h"
#include "session/entry.h"
#include "session/measured_read.h"
#include "session/prediction.h"
#include "text/number.h"

namespace tv {
namespace {

constexpr const char* kName = "frmColumns";

struct RoleName {
  ColumnRole role;
  const char* caption;
};
constexpr std::array kRoles{
    RoleName{ColumnRole::none, "role_none"},         RoleName{ColumnRole::velocity, "role_velocity"},
    RoleName{ColumnRole::pressure, "role_pressure"}, RoleName{ColumnRole::charge, "role_charge"},
    RoleName{ColumnRole::series, "role_series"},     RoleName{ColumnRole::shot, "role_shot"},
    RoleName{ColumnRole::excluded, "role_excluded"}};
constexpr std::array kUnits{CellUnit::none, CellUnit::mps, CellUnit::fps};

struct State {
  std::shared_ptr<const std::string> bytes;
  std::vector<std::string> headings;
  std::vector<std::vector<std::string>> preview;  // rows of cells
  ChronographOptions options;                     // as the person says
  ChronographRead read;                           // with them
  std::size_t column = 0;
};
State& state(Session& s) { return own<State>(s, kName); }

constexpr Row kColumns[] = {
    note_row("col_note"),
    {RowShape::block, nullptr, {Place{"col_list", ControlKind::list}}},
    wide_row("col_role", {"col_role", ControlKind::combo}),
    wide_row("col_unit", {"col_unit", ControlKind::combo}),
    {RowShape::block, "col_found", {Place{"col_found", ControlKind::view}}},
    {RowShape::buttons, nullptr, {button("col_ok"), button("cancel")}},
};
constexpr Group kForm[] = {{nullptr, 0, kColumns}};

// --- actions

void read_again(Session& s) { state(s).read = read_chronograph(*state(s).bytes, state(s).options); }

void pick_column(Session& s, int i) { state(s).column = static_cast<std::size_t>(i); }
void pick_role(Session& s, int i) {
  State& st = state(s);
  if (st.column >= st.options.roles.size()) return;
  st.options.roles[st.column] = kRoles[static_cast<std::size_t>(i)].role;
  read_again(s);
}
void pick_unit(Session& s, int i) {
  state(s).options.unit = kUnits[static_cast<std::size_t>(i)];
  read_again(s);
}
void accept(Session& s, int) {
  if (state(s).read.error != Unread::none) return;
  take_strings(s, state(s).read.series);
  state(s) = {};
  hide_screen(s, kName);
}
void cancel(Session& s) {
  state(s) = {};
  hide_screen(s, kName);
}
void press_cancel(Session& s, int) { cancel(s); }

constexpr ControlAction kActions[] = {{"col_list", pick_column},
                                      {"col_role", pick_role},
                                      {"col_unit", pick_unit},
                                      {"col_ok", accept},
                                      {"cancel", press_cancel}};

// --- what is on show

constexpr std::size_t kSamples = 5;

std::string role_name(const Session& s, ColumnRole role) {
  return s.language.text("frmColumns", std::ranges::find(kRoles, role, &RoleName::role)->caption);
}

// "2  Speed (FPS):  2650  2662  2700   [Velocity]"
std::string column_text(const Session& s, const State& st, std::size_t c) {
  std::string line = std::to_string(c + 1) + "   " + st.headings[c];
  std::size_t samples = 0;
  for (const std::vector<std::string>& row : st.preview)
    if (c < row.size() && !row[c].empty() && row[c] != st.headings[c] && samples++ < kSamples)
      line += "   " + row[c];
  return line + "   [" + role_name(s, st.options.roles[c]) + "]";
}

// What would be taken over.
std::string found_text(const Session& s, const State& st) {
  if (st.read.error != Unread::none) return unread_text(s, st.read.error, st.read.line);
  std::string text;
  for (const MeasuredSeries& series : st.read.series) {
    const SampleFigures f = velocity_figures(series);
    text += series.name + ": n " + std::to_string(f.count);
    if (f.count > 0) text += ", " + velocity_text(s, f.mean, 1);
    if (series.charge_gr > 0) text += ", " + format_number(series.charge_gr, "0.0##") + " gr";
    text += "\n";
  }
  return text;
}

void fill(Session& s, const char* name, const std::vector<std::string>& texts, std::size_t selected) {
  Field& list = field(s, kName, name);
  list.items.clear();
  for (const std::string& text : texts) list.items.push_back({text, -1});
  list.selected = selected < texts.size() ? static_cast<int>(selected) : -1;
  list.text = selected < texts.size() ? texts[selected] : "";
}

void refresh(Session& s) {
  State& st = state(s);
  if (!st.bytes) return;
  std::vector<std::string> columns, roles;
  for (std::size_t c = 0; c < st.headings.size(); ++c) columns.push_back(column_text(s, st, c));
  for (const RoleName& role : kRoles) roles.push_back(s.language.text("frmColumns", role.caption));
  fill(s, "col_list", columns, st.column);
  const ColumnRole role =
      st.column < st.options.roles.size() ? st.options.roles[st.column] : ColumnRole::none;
  fill(s, "col_role", roles,
       static_cast<std::size_t>(std::ranges::find(kRoles, role, &RoleName::role) - kRoles.begin()));
  fill(s, "col_unit", {s.language.text("frmColumns", "unit_told"), "m/s", "fps"},
       static_cast<std::size_t>(std::ranges::find(kUnits, st.options.unit) - kUnits.begin()));
  set_text(s, kName, "col_found", found_text(s, st));
  field(s, kName, "col_ok").enabled = st.read.error == Unread::none;
}

}  // namespace

void ask_columns(Session& s, std::string bytes, CellUnit unit) {
  State& st = state(s);
  st = {};
  st.bytes = std::make_shared<const std::string>(std::move(bytes));
  st.read = read_chronograph(*st.bytes, {unit, {}});
  st.preview = st.read.preview;
  std::size_t width = st.read.columns.size();
  for (const auto& row : st.preview) width = std::max(width, row.size());
  st.headings.resize(width);
  st.options = {unit, std::vector<ColumnRole>(width, ColumnRole::none)};
  for (std::size_t c = 0; c < st.read.columns.size(); ++c) {
    st.headings[c] = st.read.columns[c].heading;
    st.options.roles[c] = st.read.columns[c].role;
    if (st.options.roles[c] == ColumnRole::velocity) st.column = c;
  }
  open_screen(s, kName);
}

extern const ScreenSpec kFrmColumns{.name = kName,
                                    .section = "frmColumns",
                                    .form = kForm,
                                    .default_button = "col_ok",
                                    .actions = kActions,
                                    .close = cancel,
                                    .refresh = refresh};

}  // namespace tv
