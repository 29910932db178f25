// What the editors of bullets, cartridges and guns share: a copy to work on, its way into the file, and what
// is asked before it is lost.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "session/editor_records.h"
#include "session/entry.h"
#include "session/record_lists.h"
#include "session/session.h"

namespace tv {

// The record on show and what it was when it came there. It counts as changed when the file would be.
template <class R>
struct EditedRecord {
  R now{}, opened{};
  void show(const R& r) { now = opened = r; }
  bool changed() const { return record_of(now) != record_of(opened); }
};

// What a check of a record found, and the field to blame.
struct RecordFault {
  int message = 0;  // 0: fine
  const char* field = nullptr;
};

// The screen of an editor, its list and the kind of its records.
struct EditorPlace {
  const char* screen;
  const char* list;
  RecordKind kind;
};

// Tells what is wrong, focuses the field and gives false; true if nothing is.
bool record_is_good(Session& s, const EditorPlace& at, const RecordFault& fault);

// What becomes of a changed record: saved, given up, or it stays on show.
enum class Keep { save, discard, stay };
Keep ask_keep(Session& s);

// Whether the record on show may give way to another or to nothing; asks if it was changed. save() says
// whether it was saved.
template <class R>
bool may_give_way(Session& s, EditedRecord<R>& record, const std::function<bool()>& save) {
  if (!record.changed()) return true;
  switch (ask_keep(s)) {
    case Keep::save:
      return save();
    case Keep::discard:
      return true;
    case Keep::stay:
      return false;
  }
  return false;
}

// Whether the stored number that a field shows lies within the field's limits.
bool in_range(Session& s, std::string_view screen, std::string_view field);

// The name of an entry of the editor's list.
std::string entry_name(const Session& s, const EditorPlace& at, int entry);
// The entry of a list that stands for a row of its file; none for -1.
void select_entry(Field& list, int row);

// The row of the open file behind the list's entry or, for a name that was typed, of that name; -1 if none.
int editor_row(const Session& s, const EditorPlace& at, std::string_view name);
// Deletes it, asking first; gives the row that has moved into its place, or -1 if nothing was deleted. When
// the last one is gone that is a row that does not exist, which reads as blank.
struct Deleted {
  bool done = false;
  int next = -1;
};
Deleted delete_shown(Session& s, const EditorPlace& at, std::string_view name);

// Ctrl+Page Up and Ctrl+Page Down pick the record before or behind the one on show. False for other keys.
bool step_by_key(Session& s, const EditorPlace& at, std::string_view key);

// The list shows the name of the record; the line below it (record_note) tells one that was changed, and a
// file that belongs to the program.
void show_record_name(Session& s, const EditorPlace& at, const std::string& name, bool changed);

// --- what one editor gives another

// Of Form11; its fields are written anew after a change.
CartridgeRecord& edited_cartridge(Session& s);
void edited_cartridge_changed(Session& s);
// Of FormTail.
BulletRecord& edited_bullet(Session& s);
void edited_bullet_changed(Session& s);
// Of frmGun.
GunRecord& edited_gun(Session& s);
void edited_gun_changed(Session& s);

// FormTail for the bullet of the load, whose tail it hands over.
void open_tail_of_load(Session& s);

}  // namespace tv
