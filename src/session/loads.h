// Loads: everything the user has entered for one calculation, in a file of its own or in the settings file.
#pragma once

#include <string>
#include <vector>

#include "session/session.h"
#include "text/file.h"

namespace tv {

bool load_read(Session& s, const std::string& file);
bool load_take(Session& s, const std::string& file, const FileRead& read);  // the same from bytes at hand
bool load_write(Session& s, const std::string& file);  // the load's keys; a box on failure
void save_current_load(Session& s);  // into the settings file; nothing when the session writes no files
// Brings all number fields up to date with the state, in the formats of a load that has just been read.
void refresh_all_fields(Session& s);
// The numbers of the load as they are; refresh writes the fields of those that have changed since.
class LoadNumbers {
public:
  explicit LoadNumbers(Session& s);
  void refresh(Session& s) const;

private:
  std::vector<double> before_;
};
std::string load_folder(const Session& s);  // to save in, with its closing '/': of the last load, or data/

void lab_lod(Session& s);
void lab_sav(Session& s);
void lab_del(Session& s);
void lab_omt(Session& s);
bool open_load(Session& s, const std::string& file);  // from dialog, recent list, command line or a drop
void recent_open(Session& s, int index);
std::string load_caption(const Session& s);  // of the main window
void write_transfer_file(Session& s);

}  // namespace tv
