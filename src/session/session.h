// The running program without its windows: one record, made in main and passed by reference.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/load_keys.h"
#include "data/record_file.h"
#include "data/settings_keys.h"
#include "engine/calc_state.h"
#include "engine/results.h"
#include "engine/shot.h"
#include "output/diagram_view.h"
#include "output/draw_list.h"
#include "session/fields.h"
#include "session/user.h"
#include "tables/load_table.h"
#include "tables/powder_table.h"
#include "tables/sort_table.h"
#include "text/language.h"

namespace tv {

inline constexpr const char* kProgramName = "Ternovale";
inline constexpr const char* kVersion = "V.1.00.0001";

// What a finished run needs to be shown later, whatever has become of the inputs.
struct ShownRun {
  bool any = false;  // a run has finished since the start
  CalcState state;   // its inputs
  LoadData load;     // its names
  ShotOutcome outcome;
  double charge_g = 0, Veff_cm3 = 0;
  DataBlock block;         // head lines of its views
  std::string date, time;  // "21-Nov-2026", "14:05:09"
};

// One kind of component data: its records, its file and how its list is on show.
struct DataSet {
  RecordFile file;
  std::string stored_name;  // file name less extension (ends in a point), relative paths under the root
  bool collected = false;   // the table has no file yet: collected, or what a failed reading left
  std::string collection;   // caption of a collected table
  std::string caption;      // beside the list; also tells a filter
  double Ba0_least = 320, Ba0_most = 0;  // powders
};

struct Focus {
  std::string screen, field;
  std::size_t select_from = 0, select_length = 0;  // characters
  std::string text_on_focus;                       // restored by Escape
  bool edited = false;                             // by the user, since it has the focus
  std::string partner_on_focus;                    // text of the other field of a pair
  double value_on_focus = 0;                       // stored value of a pair
};

// What an entry changes beside the values of the load; Escape puts it back.
struct HeldMarks {
  LoadData load;
  std::string powder, ladich;  // texts
  bool results_valid = false, load_table_valid = false, powder_table_valid = false;
  bool ask_charge = false;
  bool volumes_stale = false;  // the volumes on show wait for the next recompute
};

// What a fit from the diagram changed, to be put back once; it ends with the next pick or load.
struct FitUndo {
  bool possible = false;
  double chargeGr = 0, Llen = 0, Wob = 0;
};

// Colours of the diagrams that the user has chosen; the others are those of the palette.
struct ChosenColours {
  std::optional<Colour> paper, left, right;
};

struct Session {
  explicit Session(User& u) : user(&u), screens(make_screens()) {}
  Session(const Session&) = delete;

  User* user;
  Language language;
  Options options;
  DataRoots roots;
  std::string settings_file, transfer_file;

  CalcState state;
  ShotCurve curve;
  ShotResult result;
  LoadData load;
  ShownRun shown;

  bool resultsValid = false;
  bool firstRun = true;
  bool askCharge = false;
  bool inputsOk = false;
  bool update_suspended = false;
  bool sound = true;
  UnitMode unit_mode = UnitMode::metric;
  bool silent = false;       // input check without warnings; refusals beep once
  bool writes_files = true;  // settings, current load and transfer file; off for single commands

  std::array<DataSet, kRecordKinds> data;
  Screens screens;
  Focus focus;
  float field_min = -9999999.0F, field_max = 9999999.0F;  // limits of the field in use
  bool field_rejected = false;
  CalcState held;  // values when the field in use got the focus: each keystroke computes from them
  HeldMarks held_marks;

  LoadTable load_table;
  double weight_step = 0;  // of the load table, grains; follows from ldstep when a load has been read
  PowderTable powder_table;
  int strategy = 0;  // of the powder table, 0 to 8; its targets are options
  SortState sort;

  FitUndo fit_undo;
  std::string fit_note;  // what the last fit changed, for the status line

  std::vector<std::string> recent;      // loads, less extension
  bool imperial_view = false;           // of the output window; starts from the unit mode
  bool output_as_text = false;          // of a diagram: its point list is on show
  ChosenColours colours;                // of the diagrams
  double line_width = 2;                // of the curves, 1 to 5
  int followed_curve = 0;               // that the read-out follows: 0 all
  std::array<bool, 2> hidden_curves{};  // first and second curve of the diagram
  DiagramView diagram_view;             // the section on show

  std::string picture;         // file name of the cartridge's picture, empty if none
  bool notice_agreed = false;  // the safety notice, this time
  bool first_start = false;    // this user has no settings yet
  bool end_requested = false;  // by the safety notice or the end command
  Options options_held;        // while the criteria of the powder table are edited
  int strategy_held = 0;

  // Told when something beyond the fields has changed; the windows and the command line hang on here.
  std::function<void(Session&)> outputs_changed;   // diagram, point list, tables
  std::function<void(Session&)> language_changed;  // captions
  // What only windows can do, by the name of its command; the command line has none.
  std::function<void(Session&, std::string_view)> window_command;

  DataSet& set(RecordKind kind) { return data[static_cast<std::size_t>(kind)]; }
  const DataSet& set(RecordKind kind) const { return data[static_cast<std::size_t>(kind)]; }
};

// A field by screen and control name; both must exist in the screen table.
Field& field(Session& s, std::string_view screen, std::string_view name);
const Field& field(const Session& s, std::string_view screen, std::string_view name);
void set_text(Session& s, std::string_view screen, std::string_view name, std::string_view text);
double field_number(const Session& s, std::string_view screen,
                    std::string_view name);  // lenient reading of its text
void fill_list(Session& s, std::string_view screen, std::string_view name, const RecordTable& table);

// "MPa", "bar" or "psi"; the unit of the chosen_of... fields is never psi.
std::string chosen_pressure_unit(const Session& s);
std::string mode_pressure_unit(const Session& s);

// Puts a message together and remembers the keys it is made of.
class MessageText {
public:
  explicit MessageText(const Session& s) : s_(s) {}
  MessageText& msg(int n);
  MessageText& fast(std::string_view key);
  MessageText& caption(std::string_view section, std::string_view key);
  MessageText& add(std::string_view text);
  MessageText& line();                           // line end
  operator Message() const { return message_; }  // NOLINT: a builder

private:
  const Session& s_;
  Message message_;
};

// A warning box titled with the program's name; beeps first if asked to and the sound is on.
void warn(Session& s, const Message& message, bool beep = true, std::string title = {});
bool ask_yes_no(Session& s, const Message& message);
bool ask_ok_cancel(Session& s, const Message& message);
void beep(Session& s);

}  // namespace tv
