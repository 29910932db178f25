// What --set knows of a key: its kind, its unit, and what a person could type.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command.h"
#include "session/numbers.h"

namespace tv {

enum class KeyKind {
  number,
  whole,
  flag,  // 0 or 1
  text,
  record,   // the name of a record, picked from its list
  derived,  // follows from others, cannot be set
};
struct KeyInfo {
  std::string_view key;
  KeyKind kind = KeyKind::number;
  const char* unit = "";                 // of its value: "gr", "in", "Pa"; none for a ratio or a text
  const LoadKey* load = nullptr;         // of a load, or
  const OptionKey* criterion = nullptr;  // of the powder table
  NumberPlace field;                     // that shows it, on the screen where it is typed; null: none
};

std::vector<KeyInfo> all_keys(Session& s);
// Ignoring case; nothing if there is none of that name.
std::optional<KeyInfo> find_key(Session& s, std::string_view key);

// What may be typed, in the key's unit; with the load as it stands, since some limits follow from others.
std::optional<Limits> limits_of_key(const Session& s, const KeyInfo& key);
bool key_accepts(const Session& s, const KeyInfo& key, double value);

// The caption of a control of a screen, without mark and colon.
std::string control_caption(const Session& s, std::string_view screen, std::string_view control);
// "0.1 ... 100"
std::string range_text(const Limits& limits);

}  // namespace tv
