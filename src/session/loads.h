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
// Into the settings file, behind the work; nothing when the session writes no files.
void save_current_load(Session& s);
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
void begin_empty_load(Session& s);  // of the former one units, step and barrel length stay
bool take_design_data(Session& s, const std::string& file);
void write_transfer_file(Session& s);

}  // namespace tv
