#include "session/language_switch.h"

#include "session/data_sets.h"
#include "session/file_names.h"
#include "session/load_files.h"
#include "session/message.h"
#include "session/record_lists.h"
#include "session/results_panel.h"
#include "session/settings.h"
#include "session/tips.h"
#include "text/file.h"

namespace tv {
namespace {

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

// No safety text may vanish: the delivered file of the same name, told in the status line.
void take_delivered_language(Session& s, const std::string& damaged) {
  if (s.language.read(delivered_language_file(s.roots.delivered + "lan/", damaged)) != LanguageRead::good)
    return;  // the texts that nobody may be without have English words of their own
  s.status = s.language.msg(430) + " " + file_name_only(damaged);
}

// Texts from files, held as the former code page read them, as the new one would have.
void reread_all(Session& s, CodePage from, CodePage to) {
  if (from == to) return;
  const bool unsaved = has_unsaved_changes(s);
  const auto again = [&](std::string& text) { text = reread(text, from, to); };
  for (DataSet& set : s.data) {
    for (Record& record : set.file.table.rows)
      for (std::string& cell : record) again(cell);
    for (std::string& line : set.file.comments) again(line);
  }
  for (const LoadKey& key : load_keys())
    if (key.text) again(s.load.*key.text);
  if (!unsaved) mark_saved(s);
  for (const OptionKey& key : option_keys())
    if (key.text && key.form == OptionForm::text) again(s.options.*key.text);
  for (const auto kind : {RecordKind::cartridges, RecordKind::bullets, RecordKind::powders})
    fill_lists(s, kind);
}

}  // namespace

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

bool language_read(Session& s, const std::string& file) {
  std::string wanted = file;
  const CodePage before = s.language.page();
  LanguageRead read = s.language.read(wanted);
  while (read == LanguageRead::unreadable) {
    wanted = ask_language_file(s, wanted);
    if (wanted.empty()) return false;
    read = s.language.read(wanted);
  }
  if (read == LanguageRead::damaged) take_delivered_language(s, wanted);
  s.language.read_own_tips(own_tip_file(s));
  reread_all(s, before, s.language.page());
  if (wanted != file) {
    s.options.lanfile = stored_language(s);
    store_option(s, "lanfile");
  }
  return true;
}

void language_switch(Session& s, std::string_view language) {
  const bool no_bullet = !s.load.bultyp.empty() && s.load.bultyp == s.language.msg(193);
  s.status.clear();
  s.refusal.reset();  // both in the former language
  if (!language_read(s, language_file(s, language))) return;
  if (no_bullet) s.load.bultyp = s.language.msg(193);
  s.options.lanfile = stored_language(s);
  s.options.nowarn = false;
  store_options(s, {"lanfile", "nowarn"});
  for (const auto kind : {RecordKind::cartridges, RecordKind::bullets, RecordKind::powders, RecordKind::guns})
    renew_caption(s, kind);
  if (s.shown.any) show_panel(s);
  if (s.hooks.language_changed) s.hooks.language_changed(s);
  outputs_changed(s);
}

}  // namespace tv
