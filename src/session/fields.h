// The screens as plain records: named fields with their text, colours and state. They exist without any
// window.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tv {

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

enum class ControlKind : std::uint8_t {
  number,
  text,
  display,
  list,
  combo,
  check,
  option,
  button,
  view,
  surface,
  memo
};

struct Control {
  const char* name;
  ControlKind kind;
};

enum class ScreenShape : std::uint8_t { frame, child, dialog, floating };

struct ScreenInfo {
  const char* name;     // "Form3"
  const char* section;  // of the language file, "form3"
  ScreenShape shape;
  std::span<const Control> controls;
};
std::span<const ScreenInfo> screen_table();
const ScreenInfo* screen_info(std::string_view screen);
const Control* control_info(std::string_view screen, std::string_view control);

struct Screen {
  std::map<std::string, Field, std::less<>> fields;
  bool visible = false;
  std::string hint;        // text of the hint box (grenzen), empty: hidden
  std::string hint_field;  // beside this field
  Paper paper = Paper::grey;
};

using Screens = std::map<std::string, Screen, std::less<>>;
Screens make_screens();  // every screen of the table with its fields

// "zul_P(0)" and "zul_P0" are the same control.
std::string control_name(std::string_view name);

}  // namespace tv
