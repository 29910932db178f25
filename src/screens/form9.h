// The window of the burn function in its parts: shaping, closed vessel, reference curve, plot. What they share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "powder/burn_function.h"
#include "powder/closed_vessel.h"
#include "powder/reference_curve.h"
#include "session/screen.h"
#include "session/session.h"

namespace tv::form9 {

inline constexpr const char* kName = "Form9";
inline constexpr const char* kSection = "form9";

// Texts of the hint line, beside those of BurnHint.
inline constexpr auto kHintChooseRows = static_cast<BurnHint>(4);
inline constexpr auto kHintTableSaved = static_cast<BurnHint>(24);
inline constexpr auto kHintTableLoaded = static_cast<BurnHint>(25);
inline constexpr auto kHintReferenceLoaded = static_cast<BurnHint>(26);
inline constexpr auto kHintReferenceOff = static_cast<BurnHint>(27);
inline constexpr auto kHintRestored = static_cast<BurnHint>(28);
inline constexpr auto kHintFiringMissing = static_cast<BurnHint>(31);
inline constexpr auto kHintRatioUnused = static_cast<BurnHint>(32);
inline constexpr auto kHintRunRefused = static_cast<BurnHint>(37);

enum class Mode : int { table, manual, reference };

// A powder as this window knows it.
struct Powder {
  BurnLaw law;
  double Exw = 0, Kap = 0, Pdens = 0, bulkdn = 0;  // kJ/kg, -, g/cm3, g/cm3
  bool operator==(const Powder&) const = default;
};

// What is read out below the plot and told in the hint line: a text of the section, or what has been put
// together already.
struct Hints {
  std::vector<int> numbers;
  std::string more;
};

// What the pointer has taken hold of.
enum class Handle : int { none, left_end, joint, first_part, second_part };
struct Drag {
  Handle handle = Handle::none;
  double top = 0;  // the axis stays as it was, else the curve would run away from the pointer
  bool moved = false;
};

struct State {
  bool started = false, written = false;
  Mode mode = Mode::table;

  // the powder
  Powder now;     // on show; the load has the same, but for what it may not have
  Powder loaded;  // of the load when it was last looked at
  Powder opened;  // as this powder came here: what `restore` brings back
  std::string opened_name, load_file;
  ShapingHistory history;
  bool followed = false;  // the last step came from another window
  bool refused = false;   // what was typed last could not be taken

  // closed vessel
  VivacityTable table;
  RowMarks marks;
  enum class MarkPaper { chosen, fitted, refused } mark_paper = MarkPaper::chosen;
  std::optional<RowFit> fit;  // its points are ringed
  bool from_means = false;    // the value at 0.8 is ringed
  double mean37 = 0, mean38 = 0, at_80 = 0;
  double p_MPa = 0, charge_g = 0, vessel_cm3 = 0;  // of one firing

  // reference curve, as it is being entered
  ReferenceCurve reference;

  Hints hints;
  std::optional<Point> pointer;
  std::string told;  // of what stands there
  Drag drag;
  int pressure_unit = -1;  // in which the pressures were last written
};

inline State& state(Session& s) { return own<State>(s, kName); }
inline const State& state(const Session& s) { return own<State>(s, kName); }

std::string text(const Session& s, std::string_view key);
void tell(Session& s, std::vector<int> hints, const std::string& more = {});
bool in_mode(const Session& s, Mode mode);

// --- shaping (form9_shaping.cpp)

// The load's powder has changed elsewhere: the window follows. Computes nothing and hands nothing over.
void follow_load(Session& s);
// A law that the user wants: checked, taken as the load can have it, and handed over. False: a hint tells why
// not, and the former one stands.
bool take_law(Session& s, const BurnLaw& wanted);
void keep_step(Session& s);  // for undo
void hand_over(Session& s);
// What follows a finished step of shaping: with the reference on, the shot is calculated anew.
void compare(Session& s);
bool shape_by_key(Session& s, std::string_view key);
void law_edited(Session& s, int, bool);
void law_left(Session& s, int);
void value_edited(Session& s, int, bool);
void undo(Session& s, int);
void redo(Session& s, int);
void restore(Session& s, int);
void calculate(Session& s, int);

// --- closed vessel (form9_vessel.cpp)

void toggle_row(Session& s, int row);  // from 1
void table_edited(Session& s, int, bool);
void fit(Session& s, int);
void show_misses(Session& s, int);
void load_table(Session& s, int);
void save_table(Session& s, int);
// Two columns of the clipboard into the rows of two fields, from the first on; tells what was left out.
void paste(Session& s, const char* first, const char* second, int rows);
void paste_table(Session& s);
void ratio_from_firing(Session& s, int);
void show_vessel(Session& s);
void read_last_table(Session& s);

// --- reference curve (form9_reference.cpp)

void accept_reference(Session& s, int);
void load_reference(Session& s, int);
void paste_reference(Session& s);
void comment_edited(Session& s, int);
void show_reference(Session& s);
void read_last_reference(Session& s);

// --- plot (form9_plot.cpp)

DrawList draw(const Session& s, const Extent& e);
void pointer(Session& s, const Pointer& p, const Extent& e);

}  // namespace tv::form9
