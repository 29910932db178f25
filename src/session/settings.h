// The settings file: options, the recent list and the current load, each write in one step.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

const OptionKey* option_key(std::string_view key);  // null if there is none
bool settings_save(Session& s);  // options and load in one write; one box on failure, which is false
// Reads a file of sections, lets it be changed and writes it once; one box on failure, which is false.
bool change_sectioned(Session& s, const std::string& path, const std::function<void(SectionedFile&)>& change);
// The same for what the program writes of its own accord: a failure is told once, in the status line.
bool change_quietly(Session& s, const std::string& path, const std::function<void(SectionedFile&)>& change,
                    Flush flush = Flush::yes);
// And behind the work, with what `change` carries itself: of several for one file the last one is enough.
void change_behind(Session& s, const std::string& path, std::function<void(SectionedFile&)> change,
                   Flush flush);
void tell_failed_writes(Session& s);                  // that happened behind the work
bool store_option(Session& s, std::string_view key);  // one option at once, as menus and toggles do
// Several options, and the recent list if asked to, in one write. A failure is told once, in the status line.
bool store_options(Session& s, std::initializer_list<std::string_view> keys, bool with_recent = false);

void read_recent(Session& s, const SectionedFile& file);
void recent_add(Session& s, const std::string& file);   // and writes the list
void note_recent(Session& s, const std::string& file);  // writes nothing

}  // namespace tv
