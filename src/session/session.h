// The running program without its windows: one record, made in main and passed by reference.
#pragma once

#include <any>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "calculators/band.h"
#include "data/load_keys.h"
#include "data/record_file.h"
#include "data/settings_keys.h"
#include "engine/calc_state.h"
#include "engine/results.h"
#include "engine/shot.h"
#include "output/diagram.h"
#include "output/draw_list.h"
#include "powder/reference_curve.h"
#include "session/fields.h"
#include "session/screen.h"
#include "session/user.h"
#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "tables/sort_table.h"
#include "text/background_writer.h"
#include "text/language.h"

namespace tv {

inline constexpr const char* kProgramName = "Ternovale";
inline constexpr const char* kVersion = TV_VERSION;  // that of the project, in CMakeLists.txt

// All that the session knows of the screens.
struct Program {
  std::span<const ScreenSpec* const> screens;
  bool (*shortcut)(Session&, std::string_view key) = nullptr;  // a key that no screen uses itself
};

// What the output window shows: the diagrams have the numbers 1 to 6.
enum class DisplayMode : int { powder_table = -2, load_table = -1, point_list = 0, first_diagram = 1 };

// A field or list of a screen, by their names.
struct FieldPlace {
  std::string screen, field;
};

// What a check has to say of the load, and where that is mended.
struct Finding {
  Message message;
  FieldPlace at;
  std::vector<double> cause{};  // the values it comes from
  bool beep = true;             // with its box
};

// The figures of the last run and what a finished run needs to be shown later, whatever has become of the
// inputs.
struct ShownRun {
  bool any = false;               // a run has finished since the start or the last load
  bool running = false;           // one is under way
  bool failed = false;            // the last one did not finish: its figures are not good
  std::optional<BandCurve> band;  // its range along the barrel, once that was asked for
  CalcState state;                // its inputs
  LoadData load;                  // its names
  ShotOutcome outcome;
  double charge_g = 0, Veff_cm3 = 0;
  DataBlock block;                  // head lines of its views
  std::string date, time;           // "21-Nov-2026", "14:05:09"
  std::vector<FieldPlace> unusual;  // values that stood outside the limits of their fields
  std::vector<PanelField> panel;
  std::string notes;  // status line of the results, in the language in force
  bool notes_red = false;
};

// One kind of component data: its records, its file and how its list is on show.
struct DataSet {
  RecordFile file;
  std::string stored_name;    // file name less extension (ends in a point), relative paths under the root
  bool collected = false;     // the table has no file yet: collected, or what a failed reading left
  bool part_of_file = false;  // the file held more than was read: it is not saved under that name
  std::string collection;     // caption of a collected table
  std::string caption;        // beside the list; also tells a filter
  std::optional<std::vector<int>> filter;  // rows on show, if not all
};

// The field in use.
struct Focus {
  std::string screen, field;
  std::size_t select_from = 0, select_length = 0;  // characters
  bool edited = false;                             // by the user, since it has the focus
};

// Whether results belong to the inputs, and what an entry may change of that.
struct Validity {
  bool results = false;
  bool load_table = false, powder_table = false;
  bool ask_charge = false;     // the charge is to be looked at before the next run
  bool volumes_stale = false;  // the volumes on show wait for the next recompute
};

// What the field in use held when it got the focus.
struct Held {
  CalcState state;
  LoadData load;
  Validity marks;
  std::any own;                              // of the screen
  double value = 0;                          // of its number
  std::map<std::string, std::string> texts;  // of the fields of its number, or its own
};

// What a fit from the diagram or a row of a table changed, to be put back once; it ends with the next pick or
// load.
struct FitUndo {
  bool possible = false;
  double chargeGr = 0, Llen = 0, Wob = 0;
  std::optional<CalcState> powder{};  // whose values go back too, under this name
  std::string pulver{};
};

// Colours of the diagrams that the user has chosen; the others are those of the palette.
struct ChosenColours {
  std::optional<Colour> paper{}, left{}, right{}, reference{};
};

// The measured pressure curve that the diagrams can show beside that of the shot.
struct Reference {
  ReferenceCurve curve;
  bool loaded = false;  // all of it is there
  bool shown = false;
  bool as_measured = false;  // at its own times, not laid over the rise of the shot
};

// How the output window shows things.
struct OutputView {
  bool imperial = false;         // starts from the unit mode
  bool as_text = false;          // of a diagram: its point list is on show
  bool optional = false;         // the pair graf_x, graf_y in place of the standard diagram
  int last_diagram = 3;          // type of the standard diagram shown last
  ChosenColours colours;         // of the diagrams
  double line_width = 2;         // of the curves, 1 to 5
  int followed = 0;              // the curve that the read-out follows: 0 all
  std::array<bool, 2> hidden{};  // first and second curve of the diagram
  bool band = false;             // the range of the prediction is drawn too
  DiagramView view;              // the section on show
  Reference reference;
  unsigned revision = 0;  // raised whenever something that the window shows has changed
};

// A run that is kept to be compared with later ones, whatever becomes of inputs, units and language.
struct KeptRun {
  CalcState state;
  ShotCurve curve;
  ShotResult result;
  DataBlock block;
  DiagramRun run;  // of the above
};

struct Tables {
  LoadTable load;
  double weight_step = 0;  // of the load table, grains; follows from ldstep when a load has been read
  PowderTable powder;
  bool powder_shown = false;  // it is finished and on show: the next run shows a diagram again
  int strategy = 0;           // of the powder table, 0 to 8; its targets are options
  SortState sort;
};

// What only windows can do.
struct Hooks {
  std::function<void(Session&)> language_changed;                  // captions
  std::function<void(Session&, std::string_view)> window_command;  // by the name of its command
  std::function<void(const std::string&)> copy_text;               // to the clipboard
  std::function<std::optional<std::string>()> paste_text;          // from it
};

struct Session {
  Session(User& u, const Program& p);
  Session(const Session&) = delete;

  User* user;
  Program program;
  Language language;
  Options options;
  DataRoots roots;
  std::string settings_file, transfer_file;
  bool writes_files = true;    // settings, current load and transfer file; off for single commands
  bool reads_settings = true;  // off: the start takes the defaults instead of the user's settings
  BackgroundWriter writer;     // of the settings file and the transfer file after a calculation
  bool told_unwritable = false;

  // the load
  CalcState state;
  LoadData load;
  struct Saved {
    CalcState state;
    LoadData load;
  };
  std::optional<Saved> saved;  // what the file of the load holds; nothing: not known, it counts as changed
  std::string picture;         // file name of the cartridge's picture, empty if none
  std::array<DataSet, kRecordKinds> data;
  std::vector<std::string> recent;  // loads, less extension

  // a run
  ShotCurve curve;
  ShotResult result;
  ShownRun shown;
  Validity valid;
  bool firstRun = true;
  bool inputsOk = false;
  bool silent = false;             // no box, no question, no moved focus; what refuses stands in `refusal`
  bool autocalc_due = false;       // an entry was accepted or a load opened since the last calculation
  std::optional<Finding> refusal;  // of the last calculation, until an input changes
  std::map<int, std::vector<double>> told;  // warnings whose boxes have come, by message: their causes
  Tables tables;
  OutputView output;
  std::shared_ptr<const KeptRun> kept;  // none: null
  FitUndo fit_undo;
  std::optional<int> step_before_friction;

  // entry
  Screens screens;
  Focus focus;
  Held held;
  int action_depth = 0;  // of the things a person does, one in another

  UnitMode unit_mode = UnitMode::metric;
  bool sound = true;
  std::string status;          // of the main window
  bool notice_agreed = false;  // the safety notice, this time
  bool first_start = false;    // this user has no settings yet
  bool end_requested = false;  // by the safety notice or the end command
  Hooks hooks;

  DataSet& set(RecordKind kind) { return data[static_cast<std::size_t>(kind)]; }
  const DataSet& set(RecordKind kind) const { return data[static_cast<std::size_t>(kind)]; }
  DisplayMode mode() const { return static_cast<DisplayMode>(options.grftyp); }
};

// A field by screen and control name; both must exist.
Field& field(Session& s, std::string_view screen, std::string_view name);
const Field& field(const Session& s, std::string_view screen, std::string_view name);
void set_text(Session& s, std::string_view screen, std::string_view name, std::string_view text);

// State of a screen's own: made at its first use, known to the screen's file alone.
template <class T>
T& own(Session& s, std::string_view screen) {
  std::any& held = s.screens.find(screen)->second.own;
  if (!held.has_value()) held = T{};
  return *std::any_cast<T>(&held);
}
template <class T>
const T& own(const Session& s, std::string_view screen) {
  static const T none{};
  const T* held = std::any_cast<T>(&s.screens.find(screen)->second.own);
  return held ? *held : none;
}

bool has_focus(const Session& s, std::string_view screen, std::string_view name);

// The screen of that role, null if there is none; its name, else empty.
Screen* screen_of(Session& s, Role role);
std::string_view screen_name(const Session& s, Role role);
bool is_visible(const Session& s, Role role);

// Every screen writes its fields from the state; at the end of the outermost action and before the user is
// shown anything.
void refresh_screens(Session& s);
void outputs_changed(Session& s);  // diagram, point list, tables: they are drawn anew

// "MPa", "bar" or "psi"; the unit of the chosen_of... fields is never psi.
std::string chosen_pressure_unit(const Session& s);
std::string mode_pressure_unit(const Session& s);

}  // namespace tv
