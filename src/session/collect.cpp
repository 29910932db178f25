// All records of one calibre: collected from the files of a folder, or filtered out of the list on show; the
// two sort orders of the cartridge list.
#include "session/data_sets.h"

#include <cmath>
#include <optional>

#include "session/file_names.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/record_lists.h"
#include "session/settings.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

// The calibre the user wants, inch; a value of 1 or more is meant in mm. Nothing: given up or emptied.
std::optional<double> ask_calibre(Session& s, const char* title_key) {
  const std::string current = format_pattern(s.state.dim.Zkal, "0.0000");
  MessageText prompt(s);
  prompt.msg(402).line().msg(403).add(format_pattern(s.options.srchtl, "0.000")).add("'').");
  std::string title = s.language.text("frmMAIN", title_key);
  std::erase(title, '&');
  const auto answer = s.user->input({title, prompt, current});
  if (!answer || trim(*answer).empty()) return std::nullopt;
  const double value = read_number(with_points(*answer));
  return value >= 1 ? value / kMmPerInch : value;
}

std::string tolerance_text(const Session& s) { return format_pattern(s.options.srchtl, "#.0000"); }

std::string calibre_caption(const Session& s, double calibre) {
  return format_pattern(calibre, "#.000") + " (±  " + tolerance_text(s) + ") in.";
}

// As "308.bul"; a name that begins with a point would be hidden.
std::string calibre_file(double calibre, RecordKind kind) {
  std::string name = format_pattern(calibre, "#.000");
  std::erase(name, '.');
  return name + "." + record_kind(kind).extension;
}

RecordTable collect_from(Session& s, RecordKind kind, const std::string& folder,
                         const std::vector<std::string>& names, double calibre) {
  RecordTable result;
  int done = 0;
  s.user->busy(true);
  for (const std::string& name : names) {
    s.set(kind).caption = name;
    if (++done % 20 == 0)
      s.user->progress(name, static_cast<double>(done) / static_cast<double>(names.size()));
    const RecordRead read = read_records_plain(folder + name, kind, s.language.page());
    if (read.ok()) collect_records(result, read.file.table, kind, calibre, s.options.srchtl);
  }
  s.user->busy(false);
  return result;
}

}  // namespace

void collect_calibre(Session& s, RecordKind kind) {
  const auto calibre = ask_calibre(s, kind == RecordKind::bullets ? "bul_collect" : "case_collect");
  if (!calibre) return;
  const auto chosen = s.user->choose_folder(MessageText(s).msg(404), data_folder(s, kind, FileMode::open));
  if (!chosen || chosen->empty()) return;
  const std::string folder = chosen->ends_with('/') ? *chosen : *chosen + "/";
  const auto names = files_in(folder, std::string("*.") + record_kind(kind).extension);
  if (names.empty()) return warn(s, MessageText(s).msg(405), false);

  const std::string caption_before = s.set(kind).caption;
  RecordTable result = collect_from(s, kind, folder, names, *calibre);
  DataSet& set = s.set(kind);
  set.caption = caption_before;
  if (result.last() < 0)
    return warn(s, MessageText(s).msg(406).add(format_pattern(*calibre, "#.000") + " (±" + tolerance_text(s) +
                                               ") in."));
  sort_kind(result, kind, s.options.sortvol, s.language.page());
  set.file = {std::move(result), {}};
  set.collected = true;
  set.part_of_file = false;
  set.collection = set.caption = calibre_caption(s, *calibre);
  set.filter.reset();
  fill_lists(s, kind);
  if (ask_yes_no(s, MessageText(s).msg(407))) save_as(s, kind, calibre_file(*calibre, kind));
}

void filter_by_calibre(Session& s) {
  DataSet& set = s.set(RecordKind::cartridges);
  const auto calibre = ask_calibre(s, "case_select");
  set.filter.reset();
  if (calibre) {
    auto rows = rows_near(set.file.table, cartridge_field::Zkal, *calibre, s.options.srchtl);
    if (rows.empty())
      warn(s, MessageText(s).msg(409), false);
    else
      set.filter = std::move(rows);
  }
  fill_lists(s, RecordKind::cartridges);
  renew_caption(s, RecordKind::cartridges);
  if (set.filter) set.caption = calibre_caption(s, *calibre);
}

void sort_cartridges(Session& s, bool by_name) {
  s.options.sortvol = by_name;
  store_option(s, "sortvol");
  DataSet& set = s.set(RecordKind::cartridges);
  sort_kind(set.file.table, RecordKind::cartridges, by_name, s.language.page());
  set.filter.reset();
  fill_lists(s, RecordKind::cartridges);
  renew_caption(s, RecordKind::cartridges);
}

}  // namespace tv
