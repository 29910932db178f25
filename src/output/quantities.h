// What can be drawn of a shot: six quantities to draw over and sixteen to draw.
#pragma once

#include <span>
#include <string>

#include "output/diagram.h"

namespace tv {

// One quantity, point by point of a run.
struct Quantity {
  const char* title;  // key in section fastmsg
  const char* unit;  // key in section fastmsg; null: the chosen pressure unit; else, behind "=", as it stands
  // In that unit. i: index of a logged point.
  double (*value)(const DiagramRun& run, const DiagramOptions& options, std::size_t i);
  enum class Kind : std::uint8_t { other, travel, barrel, time, pressure } kind = Kind::other;
  bool of_gun = false;  // there is none without the mass of the gun
  int first = 0;        // index of the first point that has a value
};

inline constexpr int kXQuantities = 6, kYQuantities = 16;
// By the numbers that graf_x and graf_y hold; one out of range gives the travel in mm and the pressure.
const Quantity& x_quantity(int graf_x);
const Quantity& y_quantity(int graf_y);
int sound_graf_x(int graf_x);
int sound_graf_y(int graf_y);

std::string quantity_unit(const Quantity& quantity, const DiagramOptions& options, const Language& language);

// The quantity graf_y over graf_x; no series where there is nothing to draw.
Chart describe_optional(const DiagramRun& run, const DiagramOptions& options, const Language& language);

}  // namespace tv
