// Start and end, settings, loads, and the operations on data sets.
#pragma once

#include "session/session.h"

namespace tv {

// Start-up without windows: data root, settings, language, record files, the load of the settings file.
// False if the program is to end (no language file and the user gave up).
bool start(Session& s, const PlaceHints& hints);
// The user agreed to end: settings and load are saved, the transfer file's bullet file is cleared.
bool ask_to_end(Session& s);  // false: cancelled
void save_and_exit(Session& s);

void settings_save(Session& s);  // options and load in one write; one box on failure
bool write_sectioned(Session& s, const std::string& path, const SectionedFile& file);  // a box on failure
void read_recent(Session& s, const SectionedFile& file);
bool write_option(Session& s, std::string_view key);  // one option at once, as menus and toggles do

bool language_read(Session& s, const std::string& file);
void language_switch(Session& s, std::string_view language);  // "german", "english", "french", "russian"

bool load_read(Session& s, const std::string& file);
bool load_write(Session& s, const std::string& file);  // the load's keys; a box on failure
void save_current_load(Session& s);  // into the settings file; nothing when the session writes no files
// Brings all fields of the screens up to date with the state; patterns as a load's.
void refresh_all_fields(Session& s);
std::string load_folder(const Session& s);  // of the last load, with its closing '/'
void lab_lod(Session& s);
void lab_sav(Session& s);
void lab_del(Session& s);
void lab_omt(Session& s);
bool open_load(Session& s, const std::string& file);  // from dialog, recent list, command line or a drop
void recent_add(Session& s, const std::string& file);
void recent_open(Session& s, int index);
std::string load_caption(const Session& s);  // of the main window
void write_transfer_file(Session& s);

// Data sets. read: from a known file, at start or by the dialog.
bool read_data_set(Session& s, RecordKind kind, const std::string& file, bool box_if_missing);
void open_records(Session& s, RecordKind kind);
bool new_file(Session& s, RecordKind kind);
bool save_as(Session& s, RecordKind kind);
bool save_records(Session& s, RecordKind kind, const std::string& file, const std::string* comment);
// Add or replace by the name in field 0; the caller has checked the values. False if the user refused or it
// failed.
bool add_record(Session& s, RecordKind kind, const Record& record);
bool delete_record(Session& s, RecordKind kind, int row, bool confirmed);
void collect_records(Session& s, RecordKind kind);
void filter_by_calibre(Session& s);
void sort_cartridges(Session& s, bool by_name);
void fill_lists(Session& s, RecordKind kind);  // every list of the kind on every screen

void renew_caption(Session& s, RecordKind kind);     // DataSet::caption, in the language in force
void write_bullet_file_mark(Session& s, bool open);  // key bfile of the transfer file
// What the file dialog shows of a picked file: the comment it holds, empty if it holds none.
std::string file_preview(Session& s, DialogKind kind, const std::string& file);

std::string data_path(const Session& s,
                      std::string_view path);  // relative names under the root, then delivered

}  // namespace tv
