// The number fields of all screens: found by the stored value they show, written from it, changed by an
// entry. A value is told by its place in the session ("s.state.dim.Plen"), never by the name of a field.
#pragma once

#include <string>
#include <string_view>

#include "data/load_keys.h"
#include "data/settings_keys.h"
#include "engine/calc_state.h"
#include "session/screen.h"

namespace tv {

// --- the values that tables of numbers are written with

template <double CartridgeDimensions::*Member>
double& dim(Session& s, int);
template <double CalcState::*Member>
double& state(Session& s, int);
template <double LoadData::*Member>
double& load(Session& s, int);
template <double Options::*Member>
double& option(Session& s, int);

// --- writing

// One pattern for each side; null or missing: the side's own, on_leave, else as_partner.
struct Patterns {
  const char* metric = nullptr;
  const char* imperial = nullptr;
};

// Writes every field of every screen that shows the value, and clears their warning colours. Program writes:
// nothing reacts.
void write_number(Session& s, const double& value, Patterns patterns = {});
// Texts in place of the number, for its first and second fields: "?".
void write_texts(Session& s, const double& value, std::string_view first, std::string_view second);
void clear_warning(Session& s, const double& value);     // its fields are not red any more
void write_numbers(Session& s, const ScreenSpec& spec);  // all of a screen, by their own patterns

// What the fields of a value show: 0 the first (metric) side, 1 the second. Read leniently, as a person reads
// it; the text may be older or shorter than the value.
std::string shown_text(const Session& s, const double& value, int side);
// The stored value as a field would show it, whatever it shows at present.
std::string stored_text(const Session& s, const double& value, std::size_t side);
double shown_number(const Session& s, const double& value, int side = 0);

// A comma that a person types counts as a point.
std::string with_points(std::string text);

// --- one field

// A field of a screen that shows a number; number is null if it shows none. i: index in an array, from 1,
// else 0.
struct NumberPlace {
  std::string_view screen;
  const NumberField* number = nullptr;
  std::size_t side = 0;
  int i = 0;
  const NumberSide& own() const { return number->sides[side]; }
  double& value(Session& s) const { return number->value(s, i); }
};
NumberPlace find_number(const Session& s, std::string_view screen, std::string_view field);
// The first field that a person can type the value into.
NumberPlace find_number(Session& s, const double& value);

Limits limits_of(const Session& s, const NumberPlace& at);
bool in_limits(double shown, Limits limits);  // in single precision, as the limits are held
// The text of a limit as a person wrote it: 609.6, which in single precision is 609.5999755859375.
std::string limit_text(double limit);

// The step of a charge: 0.1 grains or 0.01 grams.
double charge_step(const Session& s, const NumberSide& side);
// Name of the field of a side: with its index, if it has one.
std::string field_of(const NumberPlace& at, std::size_t side);
std::string number_text(const Session& s, const NumberSide& side, double stored, const char* pattern);
// A number as its field shows it; without a pattern in the general form.
std::string shown_as(const Unit& unit, double shown, const char* pattern);
// The other sides, by their patterns for that.
void write_partners(Session& s, const NumberPlace& at, double stored);

// A number that a person has entered, in a field or by --set: what was held goes back first, so that a slip
// while typing leaves no trace; then it is stored, and what hangs on it follows.
void apply_number(Session& s, const NumberPlace& at, double stored);

// What Escape puts back, and each keystroke begins from: the inputs, and the screen's own state. Fields whose
// values go back are written anew, but for those of the number given.
void hold_state(Session& s, std::string_view screen);
void put_back_state(Session& s, std::string_view screen, const NumberField* but);

}  // namespace tv

#include "session/session.h"

namespace tv {

template <double CartridgeDimensions::*Member>
double& dim(Session& s, int) {
  return s.state.dim.*Member;
}
template <double CalcState::*Member>
double& state(Session& s, int) {
  return s.state.*Member;
}
template <double LoadData::*Member>
double& load(Session& s, int) {
  return s.load.*Member;
}
template <double Options::*Member>
double& option(Session& s, int) {
  return s.options.*Member;
}

}  // namespace tv
