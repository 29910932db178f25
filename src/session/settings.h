// The settings file: options, the recent list and the current load, each write in one step.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "session/session.h"

namespace tv {

bool settings_save(Session& s);  // options and load in one write; one box on failure, which is false
// Reads a file of sections, lets it be changed and writes it once; one box on failure, which is false.
bool change_sectioned(Session& s, const std::string& path, const std::function<void(SectionedFile&)>& change);
bool store_option(Session& s, std::string_view key);  // one option at once, as menus and toggles do
// Several options, and the recent list if asked to, in one write: one box on failure.
bool store_options(Session& s, std::initializer_list<std::string_view> keys, bool with_recent = false);

void read_recent(Session& s, const SectionedFile& file);
void recent_add(Session& s, const std::string& file);   // and writes the list
void note_recent(Session& s, const std::string& file);  // writes nothing

}  // namespace tv
