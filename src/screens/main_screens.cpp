// Dimensions and powder: what their lists, boxes and buttons do.
#include "geometry/dimensions.h"
#include "screens/entry.h"
#include "screens/screen_actions.h"
#include "session/driver.h"
#include "session/files.h"
#include "text/number.h"

namespace tv {
namespace {

int picked_row(const Session& s, const char* screen, const char* list) {
  const Field& f = field(s, screen, list);
  return f.selected < 0 ? -1 : f.items[static_cast<std::size_t>(f.selected)].row;
}

void pick_cartridge(Session& s) { take_cartridge(s, picked_row(s, "Form3", "HVolDat")); }
void pick_bullet(Session& s) { take_bullet(s, picked_row(s, "Form3", "Bnam")); }
void pick_powder(Session& s) { take_powder(s, picked_row(s, "Form4", "PulvDat")); }

template <std::string LoadData::*Name>
void name_typed(Session& s, const char* screen, const char* list) {
  Field& f = field(s, screen, list);
  f.selected = -1;
  s.load.*Name = f.text;
  setResultsValid(s, false);
}
void type_cartridge(Session& s) { name_typed<&LoadData::pattyp>(s, "Form3", "HVolDat"); }
void type_bullet(Session& s) { name_typed<&LoadData::bultyp>(s, "Form3", "Bnam"); }
void type_powder(Session& s) { name_typed<&LoadData::pulver>(s, "Form4", "PulvDat"); }

// Typing the word of agreement takes the standing notice away from the main window.
void type_method(Session& s) {
  Field& f = field(s, "Form3", "method");
  s.load.pmetho = trim(f.text);
  const std::string word = upper(trim(s.language.fastmsg("agreeit2")));
  if (s.options.nowarn || word.empty() || upper(s.load.pmetho) != word) return;
  s.options.nowarn = true;
  write_option(s, "nowarn");
  f.text = "?";
  s.load.pmetho = "?";
}

void toggle_tail(Session& s) {
  auto& d = s.state.dim;
  Field& box = field(s, "Form3", "TAIL");
  if (box.checked && (d.tail_type == kFlatBase || !tail_is_possible(d))) {
    box.checked = false;
    return warn(s, MessageText(s).msg(53));
  }
  d.TAIL = box.checked;
  recompute_dimensions(s, kSeatingDepth);
  setResultsValid(s, false);
}

// Asks for the factor until it lies in its range; an empty or given up answer keeps the one in force.
void ask_moly_factor(Session& s) {
  for (;;) {
    const auto answer = s.user->input(
        {kProgramName, MessageText(s).msg(49).line().msg(50), format_number(s.state.moly_factor, "0.0##")});
    if (!answer || trim(*answer).empty()) return;
    std::string text = *answer;
    for (char& c : text)
      if (c == ',') c = '.';
    const double factor = read_number(text);
    if (factor >= 0.4 && factor <= 1.0) {
      s.state.moly_factor = factor;
      return;
    }
    beep(s);
    s.state.moly_factor = 0.66;
  }
}

void toggle_coating(Session& s) {
  Field& box = field(s, "Form3", "fproof");
  take_shown_start_pressure(s);  // of a bullet that has none of its own
  if (box.checked) {
    ask_moly_factor(s);
    s.state.start_pressure *= s.state.moly_factor;
    if (s.state.start_pressure < 1000000) {
      warn(s, MessageText(s).msg(43).line().msg(44));
      box.checked = false;
      s.state.start_pressure /= s.state.moly_factor;
    }
  } else {
    s.state.start_pressure /= s.state.moly_factor;
  }
  s.load.fproof = box.checked;
  refresh_pressure_fields(s);
  setResultsValid(s, false);
}

void show_picture(Session& s) { open_screen(s, "frmPic"); }
void press_CalcAll(Session& s) { recalculate(s); }

constexpr ControlAction kActions[] = {
    {"Form3", "HVolDat#", pick_cartridge}, {"Form3", "HVolDat", type_cartridge},
    {"Form3", "Bnam#", pick_bullet},       {"Form3", "Bnam", type_bullet},
    {"Form3", "method", type_method},      {"Form3", "TAIL", toggle_tail},
    {"Form3", "fproof", toggle_coating},   {"Form3", "shpic", show_picture},
    {"Form3", "Patdef", press_Patdef},     {"Form4", "PulvDat#", pick_powder},
    {"Form4", "PulvDat", type_powder},     {"Form4", "CalcAll", press_CalcAll},
};

}  // namespace

std::span<const ControlAction> main_actions() { return kActions; }

}  // namespace tv
