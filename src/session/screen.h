// What a screen is, as one constant record: its form, the numbers its fields show, what its controls do, what
// is drawn on it. Nothing outside a screen's own file names its controls; windows, command line, captions and
// tests read these records.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/record_table.h"
#include "output/draw_list.h"

namespace tv {

struct Session;

// --- numbers

struct Limits {
  double least, most;
};

// How a stored value is shown. One table of them serves all screens: session/units.h.
struct Unit {
  const char* caption;  // as Place::unit
  double (*shown)(double stored, const Session&);
  double (*stored)(double shown, const Session&);
  const char* (*pattern)(const Session&) = nullptr;  // in place of the side's own, where the unit decides it
  Limits (*limits)(Limits, const Session&) = nullptr;  // a side's limits in the unit on show; null: as told
  bool all_digits = false;  // a whole number keeps the decimals of its pattern: "1.000"
};

// One field of a number.
struct NumberSide {
  const char* field = nullptr;
  const Unit* unit = nullptr;
  Limits limits{0, 0};               // in the unit shown
  const char* as_partner = nullptr;  // pattern when written because another side was typed
  const char* on_leave = nullptr;    // pattern of the field itself when it is left; null: stays as typed
};

// A stored number and the one to three fields that show it. With a count it stands for an array of numbers
// whose fields carry an index from 1 ("vividx3").
struct NumberField {
  std::array<NumberSide, 3> sides{};
  double& (*value)(Session&, int i) = nullptr;
  int count = 0;
  void (*changed)(Session&, int i, bool differs) = nullptr;  // what hangs on it, after an entry stored it
  Limits (*limits)(const Session&, const NumberSide&, int i) = nullptr;  // where fixed limits do not do
  void (*left)(Session&, int i) = nullptr;                               // an edited field was left
  double (*step)(const Session&, const NumberSide&) = nullptr;  // of Up and Down, as the side shows it
  void (*stepped)(Session&) = nullptr;                          // after such a step
  bool read_only = false;
  bool empty_allowed = false;  // an empty text is a value (0) of its own, never red
  bool zero_unknown = false;   // a value not above 0 shows "?"
  bool zero_empty = false;     // 0 is a value that is not there: nothing is shown
};

// --- form

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
  memo,
  bar
};

// The records that a list or combo shows. A list of the load follows what the load holds; others select for
// themselves. In one that leads somewhere an entry is chosen by click or Enter, not by moving onto it.
enum class ListOf : std::uint8_t { texts, load_records, own_records, leads };

// A control and the caption of the unit behind it: a key of section "units", "@name" for a field of the
// screen that shows the unit, "*" for the chosen pressure unit, "%metric|imperial" for keys by the screen's
// own unit switch. Null: that of its number, if any.
struct Place {
  const char* control = nullptr;
  ControlKind kind = ControlKind::display;
  const char* unit = nullptr;
  ListOf list = ListOf::texts;
  RecordKind records = RecordKind::powders;
  int rows = 0;  // of a grid, where it has fewer of this control than rows
};

enum class RowShape : std::uint8_t {
  pair,       // label, then one to three fields with their units
  wide,       // label, then one control over the width
  bare,       // controls side by side, with a label if told: boxes, options
  buttons,    // buttons, at the right
  block,      // one control with its label, if any, above it, taking the room that is left
  note,       // a caption alone, its key in label
  paragraph,  // the same, as many lines as it needs
  source,     // where the entries of the list named in label come from, small
  slider,     // a bar that moves the number field of the row before it
  figure,     // a figure to be read at a glance: its caption, small, above it, its unit behind it
  line,       // small texts or a drawing side by side, without captions, below a figure
  grid        // `count` rows of fields with an index; the columns headed by the captions of their controls
};

struct Row {
  RowShape shape = RowShape::pair;
  const char* label = nullptr;  // caption key; "@name" for a field of the screen that shows it
  std::array<Place, 5> places{};
  int count = 0;  // of a grid
  int deep = 0;   // rows of a grid below each other, the others stand beside them; 0: all
};

struct Group {
  const char* title = nullptr;  // caption key of its frame; null: no frame
  int column = 0;               // groups of one column stand below each other; -1: over the whole width
  std::span<const Row> rows{};
  bool (*shown)(const Session&) = nullptr;           // hidden as a whole; null: always on show
  std::string (*summary)(const Session&) = nullptr;  // it folds, and says this in one line when folded
};

// A control with its kind, for code that goes over all of them.
struct Control {
  std::string name;
  ControlKind kind;
  const Place* place = nullptr;  // null: a label or unit that the screen writes
};

// --- behaviour

// What a control does. i: the option of a group, the index of an entry or of a field in an array.
struct ControlAction {
  const char* control;
  void (*run)(Session&, int i) = nullptr;     // pressed, toggled, chosen, picked; a number double-clicked
  void (*edited)(Session&, int i) = nullptr;  // the text of a field without a number was edited
  void (*marked)(Session&, int i) = nullptr;  // a number clicked, or Space in it: its row is chosen
};

struct Pointer {
  enum class What : std::uint8_t { move, press, drag, release, double_click, wheel, away };
  What what = What::move;
  Point at{};
  double turns = 0;  // of the wheel, up positive
};

// The size of a surface and how texts are measured on it; colours for a dark palette.
struct Extent {
  double width = 0, height = 0;
  TextWidth text_width = estimated_text_width;
  bool dark = false;
  Colour paper{255, 255, 255, 255};  // what the surface stands on
};

struct Surface {
  const char* control;
  DrawList (*draw)(const Session&, const Extent&);
  void (*pointer)(Session&, const Pointer&, const Extent&) = nullptr;
  double width = 800, height = 520;  // of the drawing where no window tells
  // Whether a click there does something that the picture alone does not show.
  bool (*clickable)(const Session&, Point, const Extent&) = nullptr;
};

// A bar that stands for a number: its range, and where it stands by the stored value.
struct BarPlace {
  int least = 0, most = 0, position = 0;
};
struct Bar {
  const char* control;
  BarPlace (*place)(const Session&);
  void (*moved)(Session&, int position);  // brought into the range already
};

// What a screen is to the rest of the program, where that has to bring one forward.
enum class Role : std::uint8_t {
  none,
  frame,
  dimensions,
  powder,
  results,
  output,
  quick_start,
  burn_function
};

enum class ScreenShape : std::uint8_t { frame, child, dialog, floating };

struct ScreenSpec {
  const char* name;     // "Form3"
  const char* section;  // of the language file, "form3"
  ScreenShape shape = ScreenShape::dialog;
  Role role = Role::none;
  std::span<const Group> form{};
  // What stays in sight when the desk puts the form behind others; a window of its own has it above the form.
  std::span<const Group> apart{};
  int scrolling_column = -1;             // of the form: scrolls by itself where the window is too low
  const char* default_button = nullptr;  // pressed by Enter
  std::span<const NumberField> numbers{};
  std::span<const ControlAction> actions{};
  std::span<const Surface> surfaces{};
  std::span<const Bar> bars{};
  void (*open)(Session&) = nullptr;     // before it is shown; its numbers are written after it
  void (*close)(Session&) = nullptr;    // its cancel, as the close button and Escape do; null: only hidden
  void (*refresh)(Session&) = nullptr;  // writes every field that is no number from the state, and only there
  bool (*key)(Session&, std::string_view key) = nullptr;  // true: the key was used
  std::span<const char* const> own_keys{};                // of them, those that go before the menus' own
  bool (*imperial)(const Session&) = nullptr;             // its own unit switch
  void (*units_chosen)(Session&) = nullptr;               // the units of the program were chosen: it follows
};

// All controls of a screen, in the order of what stands apart and of its form.
std::vector<Control> controls_of(const ScreenSpec& spec);
// How many of a control a row holds, if it is a grid; else 0.
inline int grid_rows(const Row& row, const Place& place) { return place.rows > 0 ? place.rows : row.count; }
// The kind of one control; nothing if the screen has none of that name.
std::optional<ControlKind> control_kind(const ScreenSpec& spec, std::string_view control);

// --- what the tables of the screens are written with

constexpr NumberField one_side(NumberSide side, double& (*value)(Session&, int),
                               void (*changed)(Session&, int, bool) = nullptr) {
  return {{side}, value, 0, changed};
}
constexpr NumberField pair_of(NumberSide metric, NumberSide imperial, double& (*value)(Session&, int),
                              void (*changed)(Session&, int, bool) = nullptr) {
  return {{metric, imperial}, value, 0, changed};
}

constexpr Place number(const char* control, const char* unit = nullptr) {
  return {control, ControlKind::number, unit};
}
constexpr Place display(const char* control, const char* unit = nullptr) {
  return {control, ControlKind::display, unit};
}
constexpr Row number_row(const char* metric, const char* imperial = nullptr) {
  return {RowShape::pair, metric, {number(metric), imperial ? number(imperial) : Place{}}};
}
constexpr Row display_row(const char* metric, const char* unit, const char* imperial = nullptr,
                          const char* imperial_unit = nullptr) {
  return {
      RowShape::pair, metric, {display(metric, unit), imperial ? display(imperial, imperial_unit) : Place{}}};
}
constexpr Row wide_row(const char* label, Place place) { return {RowShape::wide, label, {place}}; }
constexpr Row note_row(const char* label) { return {RowShape::note, label}; }
constexpr Row paragraph_row(const char* label) { return {RowShape::paragraph, label}; }
constexpr Row source_row(const char* list) { return {RowShape::source, list}; }
constexpr Place load_list(const char* control, RecordKind records) {
  return {control, ControlKind::combo, nullptr, ListOf::load_records, records};
}
constexpr Place button(const char* control) { return {control, ControlKind::button}; }
constexpr Place check(const char* control) { return {control, ControlKind::check}; }
constexpr Place option(const char* control) { return {control, ControlKind::option}; }
constexpr Place surface(const char* control) { return {control, ControlKind::surface}; }

}  // namespace tv
