// How the controls of a screen are arranged: groups of rows, told in tables. What a control is stands in the
// screen table; its caption and tip come from the language files by its name.
#pragma once

#include <span>
#include <string_view>

namespace tv {

// A control and the caption of the unit behind it: a key of section "units", "@name" for a field of the
// screen that shows the unit, or "*" for the chosen pressure unit. Null: none.
struct Place {
  const char* control = nullptr;
  const char* unit = nullptr;
};

enum class RowShape {
  pair,     // label, then one or two fields with their units
  wide,     // label, then one control over the width
  bare,     // controls without a label, side by side: boxes, options
  buttons,  // buttons, at the right
  block,    // one control with its label, if any, above it, taking the room that is left
  note,     // a caption alone, its key in label
  source,   // where the entries of the list named in label come from, small
  slider    // a bar that moves the number field of the row before it
};

struct Row {
  RowShape shape = RowShape::pair;
  const char* label = nullptr;  // caption key; "@name" for a field of the screen that shows it
  Place places[4];
};

struct Group {
  const char* title = nullptr;  // caption key of its frame; null: no frame
  int column = 0;               // groups of one column stand below each other
  std::span<const Row> rows;
};

struct FormLayout {
  const char* screen;
  std::span<const Group> groups;
  const char* default_button = nullptr;  // pressed by Enter
};

std::span<const FormLayout> form_layouts();
const FormLayout* form_layout(std::string_view screen);

}  // namespace tv
