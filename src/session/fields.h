// The screens at run time, as plain records: named fields with their text, colours and state. They exist
// without any window.
#pragma once

#include <any>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tv {

struct ScreenSpec;

enum class Ink : std::uint8_t { black, red, magenta, grey };
enum class Paper : std::uint8_t {
  white,
  red,
  magenta,
  yellow,
  grey,
  failed
};  // grey 192,192,192; failed 255,128,128

struct ListItem {
  std::string text;
  int row = -1;  // row of the record table behind the entry
};

struct Field {
  std::string text;
  Ink ink = Ink::black;
  Paper paper = Paper::white;
  bool visible = true;
  bool enabled = true;
  bool checked = false;  // check boxes and options
  bool stale = false;    // shown grey: belongs to inputs that have changed
  std::string reason;    // why it is red, in words; shown as hint beside it
  std::vector<ListItem> items;
  int selected = -1;  // index into items
  int top = 0;        // first entry shown
};

struct Screen {
  const ScreenSpec* spec = nullptr;
  std::map<std::string, Field, std::less<>> fields;
  bool visible = false;
  std::string hint;        // text of the hint box (grenzen), empty: hidden
  std::string hint_field;  // beside this field
  Paper paper = Paper::grey;
  std::set<std::string, std::less<>> opened;  // folding groups that opened by themselves
  std::any own;                               // state of the screen's own, known to its file alone; see own()
};

using Screens = std::map<std::string, Screen, std::less<>>;

// "zul_P(0)" and "zul_P0" are the same control.
std::string control_name(std::string_view name);

}  // namespace tv
