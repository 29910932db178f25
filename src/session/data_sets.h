// Whole record files and the records in them.
#pragma once

#include <string>

#include "session/session.h"

namespace tv {

// From a known file, at start or by the dialog.
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
void collect_calibre(Session& s, RecordKind kind);
void filter_by_calibre(Session& s);
void sort_cartridges(Session& s, bool by_name);

// The file in use belongs to the program: it is never written, a change of it goes into a copy.
bool is_delivered(const Session& s, RecordKind kind);

void renew_caption(Session& s, RecordKind kind);     // DataSet::caption, in the language in force
void write_bullet_file_mark(Session& s, bool open);  // key bfile of the transfer file

}  // namespace tv
