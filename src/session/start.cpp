// Start and end of the program, and the language in force.
#include <array>

#include "session/driver.h"
#include "session/files.h"
#include "session/tips.h"
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
  if (size_to_write) write_option(s, "pri_font_siz");
  read_recent(s, file);
  if (s.options.grftyp < 0) s.options.grftyp = 6;
  s.options.schrit = s.state.schrit = 0;
  s.state.pressure_unit_factor = s.options.mpayes ? 1 : 10;
  s.unit_mode = s.options.metyes ? UnitMode::metric : UnitMode::imperial;
  s.imperial_view = !s.options.metyes;
  field(s, "frmFast", "met_eng").checked = s.options.metyes;
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

std::string language_file(const Session& s, std::string_view language) {
  return data_path(s, "lan/tn_" + std::string(language) + ".lan");
}

// As the settings keep it: its name in lower case, below the data root or the delivered data without their
// folder, which may move.
std::string stored_language(const Session& s) {
  std::string path = s.language.path();
  for (const std::string& root : {s.roots.root, s.roots.delivered})
    if (!root.empty() && path.starts_with(root)) {
      path.erase(0, root.size());
      break;
    }
  return file_folder(path) + lower(file_name_only(path));
}

// No language file: nothing can be said but in the program's own words.
std::string ask_language_file(Session& s, const std::string& missing) {
  Message message{
      "Language file not found- unable to proceed\nFehler: Sprachdatei nicht gefunden\nName: " + missing, {}};
  s.user->box({BoxKind::warning, Buttons::ok, kProgramName, message});
  for (;;) {
    const auto answer = s.user->choose_file(
        {FileMode::open, DialogKind::language, " Load Language File",
         dialog_folder(s, "", "lan/", FileMode::open), "", "Language data (*.lan)|*.lan",
         "Please select valid file tn_english.lan\nBitte die Datei tn_german.lan suchen"});
    if (answer && file_exists(answer->file)) return answer->file;
    if (s.user->box({BoxKind::question,
                     Buttons::retry_cancel,
                     kProgramName,
                     {"No valid file found, retry or cancel program?", {}}}) != Answer::retry)
      return {};
  }
}

// Texts from files, held as the former code page read them, as the new one would have.
void reread_all(Session& s, CodePage from, CodePage to) {
  if (from == to) return;
  const auto again = [&](std::string& text) { text = reread(text, from, to); };
  for (DataSet& set : s.data) {
    for (Record& record : set.file.table.rows)
      for (std::string& cell : record) again(cell);
    for (std::string& line : set.file.comments) again(line);
  }
  for (const LoadKey& key : load_keys())
    if (key.text) again(s.load.*key.text);
  for (const OptionKey& key : option_keys())
    if (key.text && key.form == OptionForm::text) again(s.options.*key.text);
  for (const auto kind : {RecordKind::cartridges, RecordKind::bullets, RecordKind::powders})
    fill_lists(s, kind);
  set_text(s, "Form3", "method", s.load.pmetho);
  set_text(s, "Form3", "HVolDat", s.load.pattyp);
  set_text(s, "Form3", "Bnam", s.load.bultyp);
  set_text(s, "Form4", "PulvDat", s.load.pulver);
}

// The companion program's file, if it left one here.
void find_design_data(Session& s) {
  const std::string file = resolve_path(s.roots.root, "omold.omt");
  if (file_exists(file)) s.options.omtfil = file_folder(file) + file_stem(file) + ".";
}

void take_places(Session& s, const PlaceHints& hints) {
  s.roots = find_data_root(hints);
  if (s.writes_files) make_folders(s.roots.root);
  s.settings_file = s.roots.root + "ternofw.set";
  s.transfer_file = s.roots.root + "ternofw.xmt";
}

}  // namespace

void write_bullet_file_mark(Session& s, bool open) {
  if (!s.writes_files) return;
  const std::string bfile = open ? data_path(s, s.set(RecordKind::bullets).stored_name + "bul") : "";
  change_sectioned(s, s.transfer_file,
                   [&](SectionedFile& file) { file.set_bytes("transfer", "bfile", bfile); });
}

bool language_read(Session& s, const std::string& file) {
  std::string wanted = file;
  const CodePage before = s.language.page();
  while (!s.language.read(wanted)) {
    wanted = ask_language_file(s, wanted);
    if (wanted.empty()) return false;
  }
  s.language.read_own_tips(own_tip_file(s));
  reread_all(s, before, s.language.page());
  if (wanted != file) {
    s.options.lanfile = stored_language(s);
    write_option(s, "lanfile");
  }
  return true;
}

void language_switch(Session& s, std::string_view language) {
  const bool no_bullet = !s.load.bultyp.empty() && s.load.bultyp == s.language.msg(193);
  if (!language_read(s, language_file(s, language))) return;
  if (no_bullet) set_text(s, "Form3", "Bnam", s.load.bultyp = s.language.msg(193));
  s.options.lanfile = stored_language(s);
  s.options.nowarn = false;
  write_options(s, {"lanfile", "nowarn"});
  for (const auto kind : {RecordKind::cartridges, RecordKind::bullets, RecordKind::powders})
    renew_caption(s, kind);
  if (s.shown.any) show_panel(s);
  if (s.language_changed) s.language_changed(s);
  if (s.outputs_changed) s.outputs_changed(s);
}

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
  load_read(s, s.settings_file);
  SetDisplayMode(s, s.options.grftyp);
  find_design_data(s);
  write_bullet_file_mark(s, true);
  return true;
}

bool ask_to_end(Session& s) {
  if (!s.options.intro_off && !ask_ok_cancel(s, MessageText(s).msg(145).add(" ").add(kProgramName).msg(146)))
    return false;
  save_and_exit(s);
  return true;
}

void save_and_exit(Session& s) {
  settings_save(s);
  write_bullet_file_mark(s, false);
}

}  // namespace tv
