#include "screens/editors.h"

#include <algorithm>

#include "session/data_sets.h"
#include "session/message.h"
#include "session/numbers.h"
#include "text/file.h"
#include "text/number.h"

namespace tv {
namespace {

std::string file_in_use(const Session& s, RecordKind kind) {
  return file_name_only(s.set(kind).stored_name + record_kind(kind).extension);
}

std::string record_note(const Session& s, RecordKind kind, bool changed) {
  std::string note = changed ? s.language.fastmsg("fchanged") : std::string();
  if (is_delivered(s, kind)) note += (note.empty() ? "" : " \u00B7 ") + s.language.msg(306);
  return note;
}

}  // namespace

bool record_is_good(Session& s, const EditorPlace& at, const RecordFault& fault) {
  if (fault.message == 0) return true;
  warn(s, MessageText(s).msg(27).add(file_in_use(s, at.kind)).line().msg(fault.message));
  if (fault.field) s.user->focus(at.screen, fault.field);
  return false;
}

Keep ask_keep(Session& s) {
  refresh_screens(s);
  const Answer answer =
      s.user->box({BoxKind::question, Buttons::save_discard_cancel, kProgramName, MessageText(s).msg(425)});
  return answer == Answer::yes ? Keep::save : answer == Answer::no ? Keep::discard : Keep::stay;
}

bool in_range(Session& s, std::string_view screen, std::string_view name) {
  const NumberPlace at = find_number(s, screen, name);
  return in_limits(at.own().unit->shown(at.value(s), s), limits_of(s, at));
}

std::string entry_name(const Session& s, const EditorPlace& at, int entry) {
  const int row = field(s, at.screen, at.list).items[static_cast<std::size_t>(entry)].row;
  return std::string(trim(s.set(at.kind).file.table.cell(row, 0)));
}

void select_entry(Field& list, int row) {
  const auto at = std::ranges::find(list.items, row, &ListItem::row);
  list.selected = row < 0 || at == list.items.end() ? -1 : static_cast<int>(at - list.items.begin());
}

int editor_row(const Session& s, const EditorPlace& at, std::string_view name) {
  return s.set(at.kind).file.table.find(trim(name));
}

Deleted delete_shown(Session& s, const EditorPlace& at, std::string_view name) {
  const int row = editor_row(s, at, name);
  if (!delete_record(s, at.kind, row, false)) return {};
  return {true, std::min(row, s.set(at.kind).file.table.last())};
}

bool step_by_key(Session& s, const EditorPlace& at, std::string_view key) {
  const int step = key == "Ctrl+PgUp" ? -1 : key == "Ctrl+PgDown" ? 1 : 0;
  if (step == 0) return false;
  const Field& list = field(s, at.screen, at.list);
  const int entry = list.selected < 0 ? 0 : list.selected + step;
  pick(s, at.screen, at.list, std::clamp(entry, 0, std::max(0, static_cast<int>(list.items.size()) - 1)));
  return true;
}

void show_record_name(Session& s, const EditorPlace& at, const std::string& name, bool changed) {
  show_text(s, at.screen, at.list, name);
  select_entry(field(s, at.screen, at.list), editor_row(s, at, name));
  set_text(s, at.screen, "record_note", record_note(s, at.kind, changed));
}

}  // namespace tv
