#include "session/data_sets.h"

#include <array>
#include <optional>
#include <utility>

#include "session/file_names.h"
#include "session/message.h"
#include "session/record_lists.h"
#include "session/settings.h"
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
    KindDialogs{RecordKind::guns, DialogKind::guns, 4, "flgun", &Options::gunfil, 304},
    KindDialogs{RecordKind::black_powders, DialogKind::black_powders, 5, "", &Options::bpwfil, 303},
};

const KindDialogs& dialogs(RecordKind kind) {
  for (const KindDialogs& d : kDialogs)
    if (d.kind == kind) return d;
  return kDialogs[0];
}

std::string name_in_use(const Session& s, RecordKind kind) {
  return s.set(kind).stored_name + record_kind(kind).extension;
}

// The file in use is written below the root, also if it was read from the delivered data.
std::string full_name(const Session& s, RecordKind kind) {
  return resolve_path(s.roots.root, name_in_use(s, kind));
}

// Of the program: the powders of two names wherever they lie, and whatever lies in the installed data folder.
bool protected_file(const Session& s, RecordKind kind, const std::string& file) {
  const std::string name = upper(file_name_only(file));
  if (kind == RecordKind::powders && (name == "TERNOFW.PRO" || name == "ALLPOWDR.PRO")) return true;
  return s.roots.delivered != s.roots.root && lies_in(file, s.roots.delivered + "data/");
}

std::string caption_of(const Session& s, RecordKind kind) {
  const std::string& stored = s.set(kind).stored_name;
  return s.language.fastmsg(dialogs(kind).caption) + file_stem(stored + "x");
}

void tell_findings(Session& s, const std::string& file, const RecordFindings& findings) {
  if (findings.none()) return;
  MessageText text(s);
  text.msg(185).add(file).line();
  for (const FindingText& piece : finding_texts(findings)) text.msg(piece.message).add(piece.behind);
  warn(s, text);
}

void tell_failure(Session& s, const std::string& file, int failure) {
  MessageText text(s);
  text.add(std::to_string(failure) + ", " + s.language.failure(failure)).line().add(file).line();
  warn(s, text.msg(failure == kPermissionDenied ? 100 : 192).line().msg(190).line().msg(191));
}

FileBox file_box(const Session& s, RecordKind kind, FileMode mode) {
  const KindDialogs& d = dialogs(kind);
  const int texts = d.texts + (mode == FileMode::save ? 20 : 0);
  return {mode,
          d.dialog,
          s.language.fastmsg("flfdial", texts),
          data_folder(s, kind, mode),
          "",
          s.language.fastmsg("flffilt", texts),
          ""};
}

std::optional<FileAnswer> ask_save_name(Session& s, RecordKind kind, const std::string& proposed,
                                        const std::string& comment) {
  FileBox box = file_box(s, kind, FileMode::save);
  if (!protected_file(s, kind, proposed)) box.name = proposed;
  if (protected_file(s, kind, box.folder)) box.folder = s.roots.root + record_kind(kind).folder;
  make_folders(box.folder);
  box.comment = comment;
  return ask_file(s, std::move(box), {record_kind(kind).extension}, [&](const std::string& file) {
    if (s.set(kind).part_of_file && same_fold(file, data_path(s, name_in_use(s, kind)))) {
      warn(s, MessageText(s).msg(427).line().add(file_name_only(file)));
      return true;
    }
    if (!protected_file(s, kind, file)) return false;
    warn(s, MessageText(s).msg(308).line().add(file_name_only(file)));
    return true;
  });
}

void store_name(Session& s, RecordKind kind, const std::string& file) {
  DataSet& set = s.set(kind);
  set.stored_name = file_folder(file) + file_stem(file) + ".";
  set.collected = set.part_of_file = false;
  set.collection.clear();
  set.caption = caption_of(s, kind);
  s.options.*dialogs(kind).stored = set.stored_name;
  store_option(s, record_kind(kind).settings_key);
  if (kind == RecordKind::bullets) write_bullet_file_mark(s, true);
}

bool write_set(Session& s, RecordKind kind, const std::string& file) {
  make_folders(file_folder(file));
  const int failure = write_records(file, s.set(kind).file, kind, s.language.page());
  if (failure == 0) return true;
  warn(s, MessageText(s).msg(420).line().add(file).line().add(s.language.failure(failure)));
  return false;
}

// A table without a file needs one before it is changed, and so does one that was not read whole. A delivered
// one is copied whole to a file of the user's own.
bool own_file_first(Session& s, RecordKind kind) {
  if (s.set(kind).collected) {
    warn(s, MessageText(s).msg(408), false);
    return save_as(s, kind);
  }
  if (s.set(kind).part_of_file) {
    warn(s, MessageText(s).msg(427).line().add(file_name_only(name_in_use(s, kind))), false);
    return save_as(s, kind);
  }
  if (!is_delivered(s, kind)) return true;
  return ask_ok_cancel(s, MessageText(s).msg(306).line().msg(307)) && save_as(s, kind);
}

// What is on show after a change of the table.
void table_changed(Session& s, RecordKind kind) {
  DataSet& set = s.set(kind);
  set.filter.reset();
  fill_lists(s, kind);
  set.caption = set.collected && !set.collection.empty() ? set.collection : caption_of(s, kind);
}

// Writes the table as it is now; on failure it is as before.
bool keep_change(Session& s, RecordKind kind, RecordFile&& before) {
  if (!write_set(s, kind, full_name(s, kind))) {
    s.set(kind).file = std::move(before);
    return false;
  }
  table_changed(s, kind);
  return true;
}

bool replace_agreed(Session& s, RecordKind kind, const std::string& name) {
  return ask_yes_no(s, MessageText(s)
                           .msg(kind == RecordKind::bullets ? 291 : 29)
                           .line()
                           .msg(dialogs(kind).word)
                           .add(": " + name)
                           .line()
                           .msg(27)
                           .add(file_name_only(name_in_use(s, kind)))
                           .line()
                           .msg(30));
}

}  // namespace

bool is_delivered(const Session& s, RecordKind kind) {
  const DataSet& set = s.set(kind);
  if (set.collected || set.stored_name.empty()) return false;
  return protected_file(s, kind, data_path(s, name_in_use(s, kind)));
}

void renew_caption(Session& s, RecordKind kind) {
  DataSet& set = s.set(kind);
  if (set.collection.empty() && !set.filter) set.caption = caption_of(s, kind);
}

bool read_data_set(Session& s, RecordKind kind, const std::string& file, bool box_if_missing) {
  s.user->busy(true);
  RecordRead read = read_records(file, kind, s.language.page(), s.options.sortvol);
  s.user->busy(false);
  DataSet& set = s.set(kind);
  set.file = std::move(read.file);
  const bool missing = read.failure == kFileNotFound || read.failure == kFolderNotFound;
  // What a failed reading left must not take the place of the file in use, nor of one that is only out of
  // reach.
  set.collected = !read.ok() && (!missing || file_exists(full_name(s, kind)));
  set.part_of_file = read.findings.not_read_whole();
  set.collection.clear();
  tell_findings(s, file, read.findings);
  if (read.failure && (box_if_missing || !missing)) tell_failure(s, file, read.failure);
  table_changed(s, kind);
  return read.ok();
}

void open_records(Session& s, RecordKind kind) {
  const RecordKindInfo& info = record_kind(kind);
  std::vector<std::string> extensions{info.extension};
  if (info.backup_extension[0] != '\0') extensions.emplace_back(info.backup_extension);
  if (kind == RecordKind::black_powders) extensions.emplace_back("bp$");
  const auto answer = ask_file(s, file_box(s, kind, FileMode::open), extensions);
  if (!answer || !read_data_set(s, kind, answer->file, true)) return;
  const bool part = s.set(kind).part_of_file;
  store_name(s, kind, answer->file);
  s.set(kind).part_of_file = part;
}

bool save_records(Session& s, RecordKind kind, const std::string& file, const std::string* comment) {
  std::vector<std::string>& comments = s.set(kind).file.comments;
  const std::vector<std::string> before = comments;
  if (comment) comments = wrap_comment(*comment);
  if (!write_set(s, kind, file)) {
    comments = before;
    return false;
  }
  store_name(s, kind, file);
  return true;
}

bool new_file(Session& s, RecordKind kind) {
  const auto answer = ask_save_name(s, kind, "", "");
  if (!answer) return false;
  RecordFile before = std::exchange(s.set(kind).file, {});
  if (!save_records(s, kind, answer->file, &answer->comment)) {
    s.set(kind).file = std::move(before);
    return false;
  }
  table_changed(s, kind);
  return true;
}

bool save_as(Session& s, RecordKind kind, const std::string& proposed) {
  const auto answer =
      ask_save_name(s, kind, proposed.empty() ? file_name_only(name_in_use(s, kind)) : proposed,
                    join_comments(s.set(kind).file.comments));
  return answer && save_records(s, kind, answer->file, &answer->comment);
}

bool add_record(Session& s, RecordKind kind, const Record& record) {
  const std::string name = clean_field(trim(record[0]));
  if (trim(name).empty()) {
    warn(s, MessageText(s).msg(27).add(file_name_only(name_in_use(s, kind))).line().msg(23));
    return false;
  }
  if (!own_file_first(s, kind)) return false;
  RecordFile& file = s.set(kind).file;
  if (file.table.find(name) >= 0 && !replace_agreed(s, kind, name)) return false;
  RecordFile before = file;
  const int row = put_record(file.table, record, kind);
  if (row < 0 || !keep_change(s, kind, std::move(before))) return false;
  show_row(s, kind, row);
  return true;
}

bool delete_record(Session& s, RecordKind kind, int row, bool confirmed) {
  RecordFile& file = s.set(kind).file;
  if (row < 0 || row > file.table.last()) {
    beep(s);
    s.user->box({BoxKind::info, Buttons::ok, std::string(kProgramName) + " Info",
                 MessageText(s).msg(400).line().msg(305)});
    return false;
  }
  MessageText question(s);
  if (kind == RecordKind::guns) question.msg(110).line();
  question.msg(111).line().add(trim(file.table.cell(row, 0))).line().msg(112);
  if (!confirmed && !ask_ok_cancel(s, question)) return false;
  if (!own_file_first(s, kind)) return false;
  RecordFile before = file;
  erase_record(file.table, row);
  return keep_change(s, kind, std::move(before));
}

void write_bullet_file_mark(Session& s, bool open) {
  if (!s.writes_files) return;
  const std::string bfile = open ? data_path(s, s.set(RecordKind::bullets).stored_name + "bul") : "";
  change_quietly(
      s, s.transfer_file, [&](SectionedFile& file) { file.set_bytes("transfer", "bfile", bfile); },
      Flush::no);
}

}  // namespace tv
