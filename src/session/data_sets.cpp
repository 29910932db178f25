// Whole record files and the records in them: opening, saving, adding, deleting, and how their lists are on
// show.
#include <array>

#include "session/driver.h"
#include "session/files.h"
#include "text/file.h"

namespace tv {
namespace {

struct KindDialogs {
  RecordKind kind;
  DialogKind dialog;
  int texts;                     // number behind flfdial and flffilt; saving is 20 higher
  const char* caption;           // key of the caption's stem
  std::string Options::*stored;  // option of the stored name
  int word;                      // message with the kind's name
};
constexpr std::array kDialogs{
    KindDialogs{RecordKind::powders, DialogKind::powders, 1, "flpro", &Options::profil, 303},
    KindDialogs{RecordKind::bullets, DialogKind::bullets, 2, "flbul", &Options::ibulfil, 301},
    KindDialogs{RecordKind::cartridges, DialogKind::cartridges, 3, "flvol", &Options::volfil, 302},
    KindDialogs{RecordKind::guns, DialogKind::guns, 4, "", &Options::gunfil, 304},
    KindDialogs{RecordKind::black_powders, DialogKind::black_powders, 5, "", &Options::bpwfil, 303},
};

const KindDialogs& dialogs(RecordKind kind) {
  for (const KindDialogs& d : kDialogs)
    if (d.kind == kind) return d;
  return kDialogs[0];
}

struct ListPlace {
  RecordKind kind;
  const char* screen;
  const char* list;
};
constexpr ListPlace kLists[] = {
    {RecordKind::cartridges, "Form3", "HVolDat"}, {RecordKind::bullets, "Form3", "Bnam"},
    {RecordKind::powders, "Form4", "PulvDat"},    {RecordKind::cartridges, "frmFast", "HVolDat"},
    {RecordKind::bullets, "frmFast", "Bnam"},     {RecordKind::powders, "frmFast", "PulvDat"},
};

std::string full_name(const Session& s, RecordKind kind) {
  return data_path(s, s.set(kind).stored_name + record_kind(kind).extension);
}

bool delivered_powders(RecordKind kind, const std::string& file) {
  if (kind != RecordKind::powders) return false;
  const std::string name = upper(file_name_only(file));
  return name == "TERNOFW.PRO" || name == "ALLPOWDR.PRO";
}

std::string caption_of(const Session& s, RecordKind kind) {
  const std::string& stored = s.set(kind).stored_name;
  return s.language.fastmsg(dialogs(kind).caption) + file_stem(stored + "x");
}

void tell_short_records(Session& s, const std::string& file, const std::vector<ShortRecord>& found) {
  for (const ShortRecord& r : found)
    warn(s, MessageText(s)
                .msg(185)
                .add(file)
                .line()
                .msg(186)
                .add(std::to_string(r.row))
                .line()
                .msg(187)
                .add(r.name)
                .line()
                .msg(188)
                .add(std::to_string(r.field))
                .line()
                .msg(189));
}

void tell_failure(Session& s, int failure) {
  MessageText text(s);
  text.add(std::to_string(failure) + ", " + s.language.failure(failure)).line();
  warn(s, text.msg(failure == kPermissionDenied ? 100 : 192).line().msg(190).line().msg(191));
}

std::string folder_of(const Session& s, RecordKind kind) {
  const std::string folder = file_folder(full_name(s, kind));
  return folder_exists(folder) ? folder : s.roots.root + record_kind(kind).folder;
}

// The dialog comes up again until the name may be written, or the user gives up.
std::optional<FileAnswer> ask_save_name(Session& s, RecordKind kind, const std::string& proposed) {
  const KindDialogs& d = dialogs(kind);
  for (;;) {
    auto answer = s.user->choose_file(
        {FileMode::save, d.dialog, s.language.fastmsg("flfdial", d.texts + 20), folder_of(s, kind), proposed,
         s.language.fastmsg("flffilt", d.texts + 20), join_comments(s.set(kind).file.comments)});
    if (!answer || !delivered_powders(kind, answer->file)) return answer;
    warn(s, MessageText(s).msg(308).line().add(answer->file));
  }
}

void store_name(Session& s, RecordKind kind, const std::string& file) {
  DataSet& set = s.set(kind);
  set.stored_name = file_folder(file) + file_stem(file) + ".";
  set.collected = false;
  set.caption = caption_of(s, kind);
  s.options.*dialogs(kind).stored = set.stored_name;
  write_option(s, record_kind(kind).settings_key);
  if (kind == RecordKind::bullets) write_bullet_file_mark(s, true);
}

bool write_set(Session& s, RecordKind kind, const std::string& file) {
  const int failure = write_records(file, s.set(kind).file, kind, s.language.page());
  if (failure == 0) return true;
  warn(s, MessageText(s).msg(420).line().add(file).line().add(s.language.failure(failure)));
  return false;
}

// A collected list needs a file of its own, and so does a change of the delivered powders.
bool own_file_first(Session& s, RecordKind kind) {
  if (s.set(kind).collected) {
    warn(s, MessageText(s).msg(408), false);
    return save_as(s, kind);
  }
  if (!delivered_powders(kind, full_name(s, kind))) return true;
  if (!ask_yes_no(s, MessageText(s).msg(306).line().msg(307))) return false;
  return save_as(s, kind);
}

void renew_powder_range(DataSet& set) {
  set.Ba0_least = 320;
  set.Ba0_most = 0;
  for (int row = 0; row <= set.file.table.last(); ++row) {
    const double Ba0 = set.file.table.number(row, powder_field::Ba0);
    set.Ba0_least = std::min(set.Ba0_least, Ba0);
    set.Ba0_most = std::max(set.Ba0_most, Ba0);
  }
  set.Ba0_most = std::min(set.Ba0_most, 320.0);
}

}  // namespace

std::string data_path(const Session& s, std::string_view path) {
  const std::string own = resolve_path(s.roots.root, path);
  if (file_exists(own)) return own;
  const std::string given = resolve_path(s.roots.delivered, path);
  return file_exists(given) ? given : own;
}

void fill_lists(Session& s, RecordKind kind) {
  for (const ListPlace& place : kLists)
    if (place.kind == kind) {
      fill_list(s, place.screen, place.list, s.set(kind).file.table);
      Field& list = field(s, place.screen, place.list);
      const std::string text = list.text;
      select_row(s, place.screen, place.list, s.set(kind).file.table.find(trim(text)));
      list.text = text;
    }
}

void renew_caption(Session& s, RecordKind kind) {
  if (!s.set(kind).collected) s.set(kind).caption = caption_of(s, kind);
}

bool read_data_set(Session& s, RecordKind kind, const std::string& file, bool box_if_missing) {
  s.user->busy(true);
  RecordRead read = read_records(file, kind, s.language.page(), s.options.sortvol);
  s.user->busy(false);
  DataSet& set = s.set(kind);
  set.file = std::move(read.file);
  set.collected = false;
  if (kind == RecordKind::powders) renew_powder_range(set);
  tell_short_records(s, file, read.short_records);
  if (read.failure && (box_if_missing || read.failure != kFileNotFound)) tell_failure(s, read.failure);
  fill_lists(s, kind);
  return read.ok();
}

void open_records(Session& s, RecordKind kind) {
  const KindDialogs& d = dialogs(kind);
  for (;;) {
    const auto answer =
        s.user->choose_file({FileMode::open, d.dialog, s.language.fastmsg("flfdial", d.texts),
                             folder_of(s, kind), "", s.language.fastmsg("flffilt", d.texts), ""});
    if (!answer) return;
    const RecordKindInfo* of_file = record_kind_of_file(answer->file);
    if (!of_file || of_file->kind != kind || !file_exists(answer->file)) {
      warn(s, MessageText(s)
                  .caption("files", "extonly")
                  .add(" ")
                  .add(record_kind(kind).extension)
                  .line()
                  .add(answer->file));
      continue;
    }
    if (read_data_set(s, kind, answer->file, true)) store_name(s, kind, answer->file);
    return;
  }
}

bool save_records(Session& s, RecordKind kind, const std::string& file, const std::string* comment) {
  if (comment) s.set(kind).file.comments = wrap_comment(*comment);
  if (!write_set(s, kind, file)) return false;
  store_name(s, kind, file);
  return true;
}

bool new_file(Session& s, RecordKind kind) {
  const auto answer = ask_save_name(s, kind, "");
  if (!answer) return false;
  const DataSet before = s.set(kind);
  s.set(kind).file = {};
  if (!save_records(s, kind, answer->file, &answer->comment)) {
    s.set(kind) = before;
    return false;
  }
  if (kind == RecordKind::powders) renew_powder_range(s.set(kind));
  fill_lists(s, kind);
  return true;
}

bool save_as(Session& s, RecordKind kind) {
  const DataSet& set = s.set(kind);
  const auto answer = ask_save_name(s, kind, file_name_only(set.stored_name + record_kind(kind).extension));
  return answer && save_records(s, kind, answer->file, &answer->comment);
}

bool add_record(Session& s, RecordKind kind, const Record& record) {
  if (trim(record[0]).empty()) {
    warn(s, MessageText(s).msg(27).add(file_name_only(full_name(s, kind))).line().msg(23));
    return false;
  }
  if (!own_file_first(s, kind)) return false;
  const std::string file = full_name(s, kind);
  const std::string name = clean_field(trim(record[0]));
  DataSet& set = s.set(kind);
  const int exists = set.file.table.find(name);
  if (exists >= 0 && !ask_yes_no(s, MessageText(s)
                                        .msg(kind == RecordKind::bullets ? 291 : 29)
                                        .line()
                                        .msg(dialogs(kind).word)
                                        .add(": " + name)
                                        .line()
                                        .msg(27)
                                        .add(file_name_only(file))
                                        .line()
                                        .msg(30)))
    return false;
  const RecordTable before = set.file.table;
  const int row = put_record(set.file.table, record, kind);
  if (row < 0 || !write_set(s, kind, file)) {
    set.file.table = before;
    return false;
  }
  if (kind == RecordKind::powders) renew_powder_range(set);
  fill_lists(s, kind);
  for (const ListPlace& place : kLists)
    if (place.kind == kind) select_row(s, place.screen, place.list, row);
  return true;
}

bool delete_record(Session& s, RecordKind kind, int row, bool confirmed) {
  DataSet& set = s.set(kind);
  if (row < 0 || row > set.file.table.last()) {
    beep(s);
    s.user->box({BoxKind::info, Buttons::ok, std::string(kProgramName) + " Info",
                 MessageText(s).msg(400).line().msg(305)});
    return false;
  }
  const std::string name{trim(set.file.table.cell(row, 0))};
  MessageText question(s);
  if (kind == RecordKind::guns) question.msg(110).line();
  if (!confirmed && !ask_ok_cancel(s, question.msg(111).line().add(name).line().msg(112))) return false;
  if (!own_file_first(s, kind)) return false;
  const RecordTable before = set.file.table;
  erase_record(set.file.table, row);
  if (!write_set(s, kind, full_name(s, kind))) {
    set.file.table = before;
    return false;
  }
  if (kind == RecordKind::powders) renew_powder_range(set);
  fill_lists(s, kind);
  return true;
}

}  // namespace tv
