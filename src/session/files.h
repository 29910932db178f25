// Start and end, settings, loads, and the operations on data sets.
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>

#include "session/session.h"

namespace tv {

// Start-up without windows: data root, settings, language, record files, the load of the settings file.
// False if the program is to end (no language file and the user gave up).
bool start(Session& s, const PlaceHints& hints);
// The user agreed to end: settings and load are saved, the transfer file's bullet file is cleared.
bool ask_to_end(Session& s);  // false: cancelled
void save_and_exit(Session& s);

void settings_save(Session& s);  // options and load in one write; one box on failure
// Reads a file of sections, lets it be changed and writes it once; one box on failure, which is false.
bool change_sectioned(Session& s, const std::string& path, const std::function<void(SectionedFile&)>& change);
void read_recent(Session& s, const SectionedFile& file);
bool write_option(Session& s, std::string_view key);  // one option at once, as menus and toggles do
// Several options, and the recent list if asked to, in one write: one box on failure.
bool write_options(Session& s, std::initializer_list<std::string_view> keys, bool with_recent = false);

bool language_read(Session& s, const std::string& file);
void language_switch(Session& s, std::string_view language);  // "german", "english", "french", "russian"

bool load_read(Session& s, const std::string& file);
bool load_write(Session& s, const std::string& file);  // the load's keys; a box on failure
void save_current_load(Session& s);  // into the settings file; nothing when the session writes no files
// Brings all fields of the screens up to date with the state; patterns as a load's.
void refresh_all_fields(Session& s);
std::string load_folder(const Session& s);  // to save in, with its closing '/': of the last load, or data/
void lab_lod(Session& s);
void lab_sav(Session& s);
void lab_del(Session& s);
void lab_omt(Session& s);
bool open_load(Session& s, const std::string& file);    // from dialog, recent list, command line or a drop
void recent_add(Session& s, const std::string& file);   // and writes the list
void note_recent(Session& s, const std::string& file);  // writes nothing
void recent_open(Session& s, int index);
std::string load_caption(const Session& s);  // of the main window
void write_transfer_file(Session& s);

// Data sets. read: from a known file, at start or by the dialog.
bool read_data_set(Session& s, RecordKind kind, const std::string& file, bool box_if_missing);
void open_records(Session& s, RecordKind kind);
bool new_file(Session& s, RecordKind kind);
// Proposes the given name, or that of the file in use.
bool save_as(Session& s, RecordKind kind, const std::string& proposed = {});
bool save_records(Session& s, RecordKind kind, const std::string& file, const std::string* comment);
// Add or replace by the name in field 0; the caller has checked the values. False if the user refused or it
// failed.
bool add_record(Session& s, RecordKind kind, const Record& record);
bool delete_record(Session& s, RecordKind kind, int row, bool confirmed);
void collect_records(Session& s, RecordKind kind);
void filter_by_calibre(Session& s);
void sort_cartridges(Session& s, bool by_name);
// Every list of the kind on every screen, with all rows; their texts stand.
void fill_lists(Session& s, RecordKind kind);

void renew_caption(Session& s, RecordKind kind);     // DataSet::caption, in the language in force
void write_bullet_file_mark(Session& s, bool open);  // key bfile of the transfer file
// What the file dialog shows of a picked file: the comment it holds, empty if it holds none.
std::string file_preview(Session& s, DialogKind kind, const std::string& file);

// A name from the file box. The dialog comes up again, with the comment as edited, until the name is allowed
// (when saving), not refused, of one of the extensions, and exists or, when saving, is free or may be
// replaced; or until the user gives up. Each test that fails beeps and tells why. A name without extension
// gets the first one. `refused` shows a box of its own.
std::optional<FileAnswer> ask_file(Session& s, FileBox box, const std::vector<std::string>& extensions,
                                   const std::function<bool(const std::string&)>& refused = {});

// Where a file is read from: a relative name lies under the root or, missing there, in the delivered data.
std::string data_path(const Session& s, std::string_view path);
// Where the file dialog starts, with its closing '/': the folder of the file in use, else the one given,
// which is made when it is needed for saving.
std::string dialog_folder(const Session& s, const std::string& file, std::string_view otherwise,
                          FileMode mode);
std::string data_folder(const Session& s, RecordKind kind, FileMode mode);

}  // namespace tv
