#include "session/load_files.h"

#include <algorithm>
#include <utility>

#include "session/entry.h"
#include "session/file_names.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/record_lists.h"
#include "session/settings.h"
#include "session/take_records.h"
#include "text/file.h"

namespace tv {
namespace {

bool refuse_settings_file(Session& s, const std::string& file) {
  if (!same_fold(file_name_only(file), file_name_only(s.settings_file))) return false;
  warn(s, MessageText(s).msg(412).line().add(file_name_only(file)));
  return true;
}

// "*." stands for a load without a name yet.
bool is_named(const std::string& stored) { return !stored.empty() && file_name_only(stored) != "*."; }

std::string file_of_load(const Session& s) { return data_path(s, s.options.labfil + "dat"); }

// A load that came with the program is saved elsewhere, like one that has no file yet.
bool has_own_file(const Session& s) {
  return is_named(s.options.labfil) && !lies_in(file_of_load(s), example_loads(s));
}

std::string load_start(const Session& s, FileMode mode) {
  const std::string& last = s.options.labfil;  // "*." alone: of a load that never had a file
  const bool known = file_folder(last).size() > 1;
  const bool own = known && (mode == FileMode::open || !lies_in(file_of_load(s), example_loads(s)));
  return dialog_folder(s, own ? last : std::string(), "data/", mode);
}

std::string stored_load(const std::string& file) { return file_folder(file) + file_stem(file) + "."; }

std::string proposed_file(const Session& s) {
  return has_own_file(s) ? file_name_only(s.options.labfil + "dat")
                         : proposed_name(s.load.pattyp + ", " + s.load.bultyp, "dat");
}

// texts: the number behind flfdial and flffilt.
FileBox load_box(const Session& s, FileMode mode, int texts) {
  const bool save = mode == FileMode::save;
  return {mode,
          DialogKind::load,
          s.language.fastmsg("flfdial", texts),
          load_start(s, mode),
          save ? proposed_file(s) : std::string(),
          s.language.fastmsg("flffilt", texts),
          save ? s.load.commen : std::string()};
}

std::optional<FileAnswer> ask_load_file(Session& s, FileBox box, bool settings_refused) {
  const auto refused = [&](const std::string& file) { return refuse_settings_file(s, file); };
  return ask_file(s, std::move(box), {"dat"},
                  settings_refused ? refused : std::function<bool(const std::string&)>());
}

void store_load_name(Session& s, const std::string& file) {
  s.options.labfil = stored_load(file);
  note_recent(s, file);
  store_options(s, {"labfil"}, true);
}

bool save_to(Session& s, const std::string& file) {
  if (!load_write(s, file)) return false;
  mark_saved(s);
  s.status = s.language.msg(460) + " " + file;
  return true;
}

}  // namespace

std::string own_loads(const Session& s) { return s.roots.root + "data/"; }
std::string example_loads(const Session& s) { return s.roots.delivered + "data/loads/"; }
bool load_has_name(const Session& s) { return is_named(s.options.labfil); }
std::string load_folder(const Session& s) { return load_start(s, FileMode::save); }

bool has_unsaved_changes(const Session& s) {
  return is_named(s.options.labfil) &&
         !(s.saved && same_load(s.state, s.load, s.saved->state, s.saved->load));
}

void mark_saved(Session& s) { s.saved = {s.state, s.load}; }

bool may_replace_load(Session& s) {
  if (!has_unsaved_changes(s)) return true;
  refresh_screens(s);
  const Message question = MessageText(s).msg(431).line().add(file_name_only(s.options.labfil + "dat"));
  switch (s.user->box({BoxKind::question, Buttons::save_discard_cancel, kProgramName, question})) {
    case Answer::yes:
      return lab_save(s);
    case Answer::no:
      return true;
    default:
      return false;
  }
}

void pick_cartridge_of_load(Session& s, int row) {
  if (may_replace_load(s)) return take_cartridge(s, row);
  select_by_name(s, RecordKind::cartridges, s.load.pattyp);
}

void lab_new(Session& s) {
  leave_focus(s);
  if (!may_replace_load(s)) return;
  begin_empty_load(s);
  s.options.labfil = file_folder(s.options.labfil) + "*.";
  focus_list(s, RecordKind::cartridges);
}

bool open_load(Session& s, const std::string& file) {
  leave_focus(s);  // what is typed there belongs to the former load
  if (!may_replace_load(s) || !load_read(s, file)) return false;
  s.autocalc_due = true;
  // The list keeps names without extension, all of one kind: others can be read, but not found again.
  if (file_has_extension(file, "dat")) store_load_name(s, file);
  return true;
}

void lab_lod(Session& s) {
  if (const auto answer = ask_load_file(s, load_box(s, FileMode::open, 6), false)) open_load(s, answer->file);
}

void lab_example(Session& s) {
  FileBox box = load_box(s, FileMode::open, 6);
  box.folder = example_loads(s);
  if (const auto answer = ask_load_file(s, std::move(box), false)) open_load(s, answer->file);
}

bool lab_save(Session& s) {
  const std::string file = file_of_load(s);
  if (!has_own_file(s) || !may_be_written(file)) return lab_sav(s);
  return save_to(s, file) || lab_sav(s);
}

bool lab_sav(Session& s) {
  FileBox box = load_box(s, FileMode::save, 26);
  for (;;) {
    const auto answer = ask_load_file(s, box, true);
    if (!answer) return false;
    const std::string before = std::exchange(s.load.commen, answer->comment);
    if (save_to(s, answer->file)) {
      store_load_name(s, answer->file);
      return true;
    }
    s.load.commen = before;
    box.comment = answer->comment;
    box.folder = file_folder(answer->file);
    box.name = file_name_only(answer->file);
  }
}

void lab_del(Session& s) {
  const auto answer = ask_load_file(s, load_box(s, FileMode::open, 12), true);
  if (!answer) return;
  if (!ask_ok_cancel(s, MessageText(s).msg(410).line().add(file_name_only(answer->file)).line().msg(411)))
    return;
  if (const int failure = remove_file(answer->file))
    return warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
  const std::string stored = stored_load(answer->file);
  if (std::erase_if(s.recent, [&](const std::string& held) { return same_fold(held, stored); }))
    store_options(s, {}, true);
}

void lab_omt(Session& s) {
  const auto answer = ask_file(
      s,
      {FileMode::open, DialogKind::design, s.language.fastmsg("flfdial", 7),
       dialog_folder(s, s.options.omtfil, "", FileMode::open), "", s.language.fastmsg("flffilt", 7), ""},
      {"omt"});
  if (!answer || !take_design_data(s, answer->file)) return;
  s.options.omtfil = stored_load(answer->file);
  store_option(s, "omtfil");
}

void recent_open(Session& s, int index) {
  if (index < 0 || index >= static_cast<int>(s.recent.size())) return;
  open_load(s, data_path(s, s.recent[static_cast<std::size_t>(index)] + "dat"));
}

std::string load_caption(const Session& s) {
  const std::string& stored = s.options.labfil;
  const std::string name = is_named(stored) ? file_name_only(stored + "dat") : "*";
  return name + (has_unsaved_changes(s) ? " *" : "") + "   (" + kProgramName + ")";
}

}  // namespace tv
