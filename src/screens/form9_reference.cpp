// Form9: the pressure curve of a test firing, entered and kept in a file.
#include "powder/powder_files.h"
#include "screens/form9.h"
#include "session/entry.h"
#include "session/file_names.h"
#include "session/message.h"
#include "session/numbers.h"
#include "session/run.h"
#include "session/settings.h"
#include "text/file.h"
#include "text/number.h"

namespace tv::form9 {
namespace {

constexpr std::size_t kComment = 255;

void write_rows(Session& s) {
  for (const ReferencePoint& row : state(s).reference.rows) {
    write_number(s, row.ms);
    write_number(s, row.MPa);
  }
}

void turn_off(Session& s) {
  s.output.reference.loaded = s.output.reference.shown = false;
  outputs_changed(s);
}
void turn_on(Session& s) {
  s.output.reference.curve = state(s).reference;
  s.output.reference.loaded = true;
  outputs_changed(s);
}

void keep_name(Session& s, const std::string& file) {
  s.options.reffil = file_folder(file) + file_stem(file) + ".";
  store_option(s, "reffil");
}

FileBox file_box(Session& s, FileMode mode) {
  const int texts = mode == FileMode::save ? 29 : 9;
  FileBox box{mode,
              DialogKind::reference,
              s.language.fastmsg("flfdial", texts),
              dialog_folder(s, s.options.reffil, "data/", mode),
              "",
              s.language.fastmsg("flffilt", texts),
              ""};
  if (mode == FileMode::save && !s.options.reffil.empty())
    box.name = file_name_only(s.options.reffil + "ref");
  return box;
}

// What was read stands in the table, whole or not; only a whole curve is a reference.
void take_file(Session& s, const ReferenceFile& file) {
  state(s).reference = file.curve;
  write_rows(s);
  if (file.good()) {
    turn_on(s);
    return tell(s, {kHintReferenceLoaded});
  }
  turn_off(s);
  std::string missing;
  for (const std::string& key : file.missing) missing += (missing.empty() ? "" : ", ") + key;
  tell(s, {kHintReferenceOff}, missing);
}

ReferenceFile last_file(Session& s) {
  return read_reference(data_path(s, s.options.reffil + "ref"), s.language.page());
}

// The dialog was given up: the curve in use comes back, if there is one.
void put_back(Session& s) {
  if (s.options.reffil.empty()) return;
  const ReferenceFile file = last_file(s);
  if (file.failure == 0) take_file(s, file);
}

// The first row that keeps the table from being a curve gets the focus.
bool is_curve(Session& s) {
  const ReferenceFault fault = reference_fault(state(s).reference);
  if (fault.hint == kNoHint) return true;
  turn_off(s);
  tell(s, {fault.hint});
  beep(s);
  s.user->focus(kName, (fault.hint == kHintTimes ? "zeit" : "druck") + std::to_string(fault.row + 1));
  return false;
}

}  // namespace

void accept_reference(Session& s, int) {
  State& st = state(s);
  if (!is_curve(s)) return;
  sort_reference(st.reference);
  write_rows(s);
  const bool late = last_rows_late(st.reference);
  FileBox box = file_box(s, FileMode::save);
  box.comment = left(st.reference.comment, kComment);
  const auto answer = ask_file(s, std::move(box), {"ref"});
  if (!answer) return put_back(s);
  st.reference.comment = answer->comment;
  make_folders(file_folder(answer->file));
  if (const int failure = write_reference(answer->file, st.reference, s.language.page()))
    return warn(s, MessageText(s).msg(420).line().add(answer->file).line().add(s.language.failure(failure)));
  keep_name(s, answer->file);
  turn_on(s);
  tell(s, {kHintReferenceLoaded, late ? kHintLateRows : kNoHint});
}

void load_reference(Session& s, int) {
  const auto answer = ask_file(s, file_box(s, FileMode::open), {"ref"});
  if (!answer) return;
  const ReferenceFile file = read_reference(answer->file, s.language.page());
  if (file.failure)
    return warn(
        s, MessageText(s).msg(192).line().add(answer->file).line().add(s.language.failure(file.failure)));
  if (file.missing.size() == 2 * static_cast<std::size_t>(kReferenceRows))
    return warn(s, MessageText(s).msg(465).line().add(answer->file));
  take_file(s, file);
  keep_name(s, answer->file);
}

void read_last_reference(Session& s) {
  put_back(s);
  tell(s, {});
}

void paste_reference(Session& s) { paste(s, "zeit", "druck", kReferenceRows); }

void comment_edited(Session& s, int) {
  state(s).reference.comment = left(field(s, kName, "lblRefKomment").text, kComment);
}

void show_reference(Session& s) {
  const State& st = state(s);
  show_text(s, kName, "lblRefKomment", st.reference.comment);
  set_text(s, kName, "druck_unit", text(s, "druck") + ": " + mode_pressure_unit(s));
  // A first time of 0 is a value like others, where the other fields are empty.
  const ReferencePoint first = st.reference.rows[0];
  if (first.ms == 0 && first.MPa > 0 && !has_focus(s, kName, "zeit1")) set_text(s, kName, "zeit1", "0");
}

}  // namespace tv::form9
