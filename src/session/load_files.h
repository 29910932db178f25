// Loads as files: new, open, save, delete, the recent list, and what stands unsaved.
#pragma once

#include <string>

#include "session/session.h"

namespace tv {

// The load has a name and differs from what its file holds.
bool has_unsaved_changes(const Session& s);
// The load as it stands is what its file holds.
void mark_saved(Session& s);
// Whether the load may give way to another one: asks if it has unsaved changes, and saves it if told to.
bool may_replace_load(Session& s);

// A cartridge picked for the load: another one begins a new load. Its row; nothing happens for -1.
void pick_cartridge_of_load(Session& s, int row);

// Empties cartridge, bullet, powder, charge and notes; units and barrel stay.
void lab_new(Session& s);
void lab_lod(Session& s);
void lab_example(Session& s);  // from the delivered loads
// Into the load's own file; where there is none, or none that may be written, as lab_sav. False if it was not
// saved.
bool lab_save(Session& s);
// Under a name that the user chooses; the dialog comes back after a refusal by the system.
bool lab_sav(Session& s);
void lab_del(Session& s);
void lab_omt(Session& s);
bool open_load(Session& s, const std::string& file);  // from dialog, recent list, command line or a drop
void recent_open(Session& s, int index);

std::string load_caption(const Session& s);  // of the main window; "*" behind the name: unsaved
std::string own_loads(const Session& s);     // folders, with their closing '/'
std::string example_loads(const Session& s);
bool load_has_name(const Session& s);       // a file, or had one
std::string load_folder(const Session& s);  // to save in: of the last load, or the own one

}  // namespace tv
