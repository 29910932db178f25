// Form9: vivacities measured in a closed vessel, the fit to them, and the ratio of specific heats of a firing.
#include <algorithm>

#include "powder/powder_files.h"
#include "screens/form9.h"
#include "session/clipboard.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/file.h"
#include "text/number.h"

namespace tv::form9 {
namespace {

using MarkPaper = State::MarkPaper;

void write_table(Session& s) {
  for (const VivacityPoint& row : state(s).table.rows) {
    write_number(s, row.x);
    write_number(s, row.f);
  }
}

VivacityMeans means(const State& st) { return means_of(burn_curve(st.now.law)); }

std::string miss_text(const Session& s) {
  const RowMiss miss = largest_miss(state(s).table, state(s).now.law);
  if (miss.row < 0) return {};
  return text(s, "miss") + " " + std::to_string(miss.row + 1) + ", " + format_number(miss.percent, "0.0") +
         " %";
}

// A law found by a fit, or hint 14. False if there is none.
bool take_fit(Session& s, const std::optional<BurnLaw>& law) {
  if (law && take_law(s, *law)) {
    keep_step(s);
    return true;
  }
  tell(s, {kHintNoFunction});
  beep(s);
  return false;
}

void fit_chosen_rows(Session& s) {
  State& st = state(s);
  st.fit.reset();
  const RowFit fitted = fit_rows(st.table, st.marks, st.now.law.Limz1);
  write_table(s);
  st.mark_paper = MarkPaper::fitted;
  if (!take_fit(s, fitted.law)) return;
  const bool raised = fitted.law->PDko < -0.99;
  st.fit = fitted;
  tell(s, {raised ? kHintCoefficient : kNoHint, fitted.beyond_limit ? kHintBeyondLimit : kHintFitted},
       miss_text(s));
}

// The value at 0.8 goes into its row of the table, if that is where it stands.
void put_value_at_80(Session& s, double v) {
  VivacityPoint& row = state(s).table.rows[7];
  if (row.x != 0.8) return;
  row.f = read_number(format_pattern(v, "0.0000"));
  write_number(s, row.f, {"0.0000"});
}

void fit_means(Session& s) {
  State& st = state(s);
  const double v = value_at_80(st.mean37, st.mean38);
  const auto law = law_from_means(v, st.now.law.Limz1);
  if (!take_fit(s, law)) return;
  st.fit.reset();
  st.from_means = true;
  st.at_80 = v;
  put_value_at_80(s, v);
  const VivacityMeans got = means(st);
  const bool off = is_off(got.mean37, st.mean37) || is_off(got.mean38, st.mean38);
  tell(s, {off ? kHintStartOnly : kHintFitted});
}

// --- files

std::string stored_stem(const std::string& file) { return file_folder(file) + file_stem(file) + "."; }

void keep_name(Session& s, const std::string& file) {
  s.options.vivfil = stored_stem(file);
  store_option(s, "vivfil");
}

FileBox file_box(Session& s, FileMode mode) {
  const int texts = mode == FileMode::save ? 28 : 8;
  FileBox box{mode,
              DialogKind::vivacity,
              s.language.fastmsg("flfdial", texts),
              dialog_folder(s, s.options.vivfil, "data/", mode),
              "",
              s.language.fastmsg("flffilt", texts),
              ""};
  if (mode == FileMode::save && !s.options.vivfil.empty())
    box.name = file_name_only(s.options.vivfil + "viv");
  return box;
}

void take_table(Session& s, const VivacityTable& table) {
  State& st = state(s);
  st.table = table;
  st.marks = {};
  st.mark_paper = MarkPaper::chosen;
  st.fit.reset();
  st.from_means = false;
  write_table(s);
}

// --- what is on show

Paper paper_of(const State& st, int row) {
  if (!st.marks.has(row)) return Paper::white;
  return st.mark_paper == MarkPaper::chosen    ? Paper::yellow
         : st.mark_paper == MarkPaper::refused ? Paper::red
                                               : Paper::white;
}

// The functions stand at tenths; beside a row of another ratio they are grey.
void show_functions(Session& s, const VivacityMeans& m) {
  const State& st = state(s);
  for (std::size_t i = 0; i < m.value.size(); ++i) {
    Field& f = field(s, kName, "vivist" + std::to_string(i));
    f.text = format_number(m.value[i], "0.0000");
    f.stale = i >= 1 && i <= kVivacityRows && st.table.rows[i - 1].x != static_cast<double>(i) / 10;
  }
}

void show_mean(Session& s, const char* name, double mean, double entered) {
  Field& f = field(s, kName, name);
  f.text = format_number(mean, "0.0000");
  f.ink = is_off(mean, entered) ? Ink::red : Ink::black;
}

}  // namespace

void toggle_row(Session& s, int row) {
  State& st = state(s);
  if (st.mark_paper == MarkPaper::refused) st.mark_paper = MarkPaper::chosen;
  const RowMarks before = st.marks;
  toggle_mark(st.marks, row - 1);
  if (!(st.marks == before)) st.mark_paper = MarkPaper::chosen;
  tell(s, {st.marks.count() < 2 ? kHintChooseRows : kNoHint});
}

void table_edited(Session& s, int, bool) {
  State& st = state(s);
  st.fit.reset();
  st.from_means = false;
}

void fit(Session& s, int) {
  State& st = state(s);
  setResultsValid(s, false);
  st.from_means = false;
  switch (fit_kind(st.table, st.marks, st.mean37, st.mean38)) {
    case FitKind::rows:
      return fit_chosen_rows(s);
    case FitKind::means:
      return fit_means(s);
    case FitKind::too_few_rows:
      st.mark_paper = MarkPaper::refused;
      tell(s, {kHintFewRows});
      break;
    case FitKind::rows_missing:
      tell(s, {kHintRowsMissing, kHintMeansMissing});
      break;
  }
  beep(s);
}

void show_misses(Session& s, int) { tell(s, {}, miss_text(s)); }

void load_table(Session& s, int) {
  const auto answer = ask_file(s, file_box(s, FileMode::open), {"viv"});
  if (!answer) return;
  const VivacityFile file = read_vivacity(answer->file, s.language.page());
  if (file.failure)
    return warn(
        s, MessageText(s).msg(192).line().add(answer->file).line().add(s.language.failure(file.failure)));
  if (file.foreign) return warn(s, MessageText(s).msg(465).line().add(answer->file));
  take_table(s, file.table);
  keep_name(s, answer->file);
  tell(s, {kHintTableLoaded}, file.comment);
}

void save_table(Session& s, int) {
  FileBox box = file_box(s, FileMode::save);
  if (!s.options.vivfil.empty())
    box.comment = file_preview(s, DialogKind::vivacity, data_path(s, s.options.vivfil + "viv"));
  const auto answer = ask_file(s, std::move(box), {"viv"});
  if (!answer) return;
  make_folders(file_folder(answer->file));
  if (const int failure = write_vivacity(answer->file, state(s).table, answer->comment, s.language.page()))
    return warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
  keep_name(s, answer->file);
  tell(s, {kHintTableSaved});
}

void read_last_table(Session& s) {
  if (s.options.vivfil.empty()) return;
  const VivacityFile file = read_vivacity(data_path(s, s.options.vivfil + "viv"), s.language.page());
  if (file.failure == 0 && !file.foreign) state(s).table = file.table;
}

namespace {

bool put_pasted(Session& s, const char* name, int i, const std::string& cell) {
  const NumberPlace at = find_number(s, kName, name + std::to_string(i));
  const double shown = read_number(cell);
  if (!in_limits(shown, limits_of(s, at))) return false;
  at.value(s) = at.own().unit->stored(shown, s);
  write_number(s, at.value(s));
  return true;
}

}  // namespace

void paste(Session& s, const char* first, const char* second, int rows) {
  const auto pasted = pasted_columns(pasted_text(s).value_or(""), rows);
  if (pasted.rows.empty()) return warn(s, MessageText(s).msg(436));
  int left_out = pasted.left_out, i = 0;
  for (const PastedRow& row : pasted.rows) {
    ++i;
    const bool good = (row.first.empty() || put_pasted(s, first, i, row.first)) &
                      static_cast<int>(put_pasted(s, second, i, row.second));
    if (!good) ++left_out;
  }
  tell(s, {}, left_out == 0 ? std::string() : s.language.msg(466) + " " + std::to_string(left_out));
}

void paste_table(Session& s) {
  paste(s, "vividx", "vivsoll", kVivacityRows);
  table_edited(s, 0, true);
}

void ratio_from_firing(Session& s, int) {
  State& st = state(s);
  const auto ratio = heat_ratio(st.now.Exw, st.p_MPa, st.charge_g, st.vessel_cm3, st.now.Pdens);
  if (!ratio) {
    write_texts(s, st.now.Kap, "?????", "");
    beep(s);
    return tell(s, {kHintFiringMissing});
  }
  st.now.Kap = read_number(format_pattern(*ratio, "0.0000"));
  write_number(s, st.now.Kap);
  tell(s, {is_heat_ratio(st.now.Kap) ? kNoHint : kHintRatioUnused});
  hand_over(s);
}

void show_vessel(Session& s) {
  const State& st = state(s);
  for (int row = 0; row < kVivacityRows; ++row) {
    const std::string i = std::to_string(row + 1);
    Field& f = field(s, kName, "vividx" + i);
    f.paper = paper_of(st, row);
    field(s, kName, "vivmark" + i).checked = st.marks.has(row);
  }
  const VivacityMeans m = means(st);
  show_functions(s, m);
  show_mean(s, "vivist37", m.mean37, st.mean37);
  show_mean(s, "vivist38", m.mean38, st.mean38);
  Field& ratio = field(s, kName, "cp_cv");
  if (st.now.law.Ba0 > 0 && !is_heat_ratio(st.now.Kap)) {
    ratio.ink = Ink::red;
    ratio.reason = text(s, "hint32");
  }
}

}  // namespace tv::form9
