#include "session/start.h"

#include <array>

#include "session/data_sets.h"
#include "session/file_names.h"
#include "session/language_switch.h"
#include "session/loads.h"
#include "session/message.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/file.h"

namespace tv {
namespace {

struct DefaultFile {
  std::string Options::*stored;
  const char* path;
  RecordKind kind;
};
constexpr std::array kDefaults{
    DefaultFile{&Options::volfil, "data/calibers/ternofw.", RecordKind::cartridges},
    DefaultFile{&Options::ibulfil, "data/bullets/ternofw.", RecordKind::bullets},
    DefaultFile{&Options::profil, "data/powders/ternofw.", RecordKind::powders},
    DefaultFile{&Options::gunfil, "data/weapons/ternofw.", RecordKind::guns},
};

void read_settings(Session& s) {
  const SectionedFile file = read_sectioned(s.settings_file, s.language.page());
  const bool size_to_write = read_options(file, s.options);
  if (size_to_write) store_option(s, "pri_font_siz");
  read_recent(s, file);
  if (s.options.grftyp < 0) s.options.grftyp = 6;
  s.options.schrit = s.state.schrit = 0;
  s.state.pressure_unit_factor = s.options.mpayes ? 1 : 10;
  s.unit_mode = s.options.metyes ? UnitMode::metric : UnitMode::imperial;
  s.output.imperial = !s.options.metyes;
}

// A default file that is missing gives an empty list; one that the user chose is missed.
void read_default_sets(Session& s) {
  for (const DefaultFile& d : kDefaults) {
    std::string& stored = s.options.*d.stored;
    const bool named = !stored.empty() && !same_fold(stored, d.path);
    if (!named) stored = d.path;
    DataSet& set = s.set(d.kind);
    set.stored_name = stored;
    read_data_set(s, d.kind, data_path(s, set.stored_name + record_kind(d.kind).extension), named);
  }
}

// The companion program's file, if it left one here.
void find_design_data(Session& s) {
  const std::string file = resolve_path(s.roots.root, "omold.omt");
  if (file_exists(file)) s.options.omtfil = file_folder(file) + file_stem(file) + ".";
}

void take_places(Session& s, const PlaceHints& hints) {
  s.roots = find_data_root(hints);
  if (s.writes_files) make_folders(s.roots.root);
  if (s.writes_files) remove_dead_parts(s.roots.root);
  if (s.reads_settings) s.settings_file = s.roots.root + "ternofw.set";
  s.transfer_file = s.roots.root + "ternofw.xmt";
}

}  // namespace

bool start(Session& s, const PlaceHints& hints) {
  take_places(s, hints);
  s.first_start = s.writes_files && !file_exists(s.settings_file);
  s.options.lanfile =
      forward_slashes(read_sectioned(s.settings_file, CodePage::cp1252).get_bytes(kStartup, "lanfile"));
  const bool chosen = !s.options.lanfile.empty();
  if (!language_read(s, chosen ? data_path(s, s.options.lanfile) : language_file(s, "english"))) return false;
  read_settings(s);
  s.options.lanfile = stored_language(s);
  s.sound = true;
  read_default_sets(s);
  const std::string told = s.status;
  load_read(s, s.settings_file);
  s.status = told;  // of the language, not of a load
  if (s.options.labchg) s.saved.reset();
  SetDisplayMode(s, s.options.grftyp);
  find_design_data(s);
  write_bullet_file_mark(s, true);
  return true;
}

bool ask_to_end(Session& s) {
  if (!s.options.intro_off && !ask_ok_cancel(s, MessageText(s).msg(145).add(" ").add(kProgramName).msg(146)))
    return false;
  return save_and_exit(s);
}

bool save_and_exit(Session& s) {
  if (!settings_save(s) && !ask_yes_no(s, MessageText(s).msg(429))) return false;
  write_bullet_file_mark(s, false);
  return true;
}

}  // namespace tv
