// How stored values are shown: one row a unit, for the number fields of all screens. The first word of a name
// is the unit shown, the second the unit stored.
#pragma once

#include "session/screen.h"

namespace tv::units {

extern const Unit plain;          // as stored, no caption
extern const Unit inch;           // as stored
extern const Unit grain;          // as stored
extern const Unit grain_h2o;      // as stored, grains of water
extern const Unit mm;             // as stored
extern const Unit mm2;            // as stored
extern const Unit percent;        // as stored
extern const Unit kJ_per_kg;      // as stored
extern const Unit g_per_cm3;      // as stored
extern const Unit mps;            // as stored
extern const Unit kg;             // as stored
extern const Unit minute;         // of angle, as stored
extern const Unit icao;           // ballistic coefficient, as stored, with all its digits
extern const Unit metro_of_icao;  // / 0.982379, in single precision
extern const Unit mm_of_inch;     // x 25.4
extern const Unit inch_of_mm;     // / 25.4
extern const Unit gram_of_grain;  // / 15.432358353
extern const Unit sqin_of_mm2;    // / 645.16
extern const Unit cm3_of_grain;   // / dicht_H2 / 15.432358353
extern const Unit chosen_of_MPa;  // x pressure_unit_factor: MPa or bar
extern const Unit psi_of_MPa;     // x 1000000 / 6894.76
extern const Unit chosen_of_Pa;   // x pressure_unit_factor / 1000000
extern const Unit psi_of_Pa;      // / 6894.76
extern const Unit mode_of_Pa;     // psi in the imperial unit mode, else as chosen_of_Pa; limits told in MPa
extern const Unit mode_of_MPa;    // psi in the imperial unit mode, else as chosen_of_MPa; whole numbers
extern const Unit fps_of_mps;     // x 3.280839895, and a hundredth
extern const Unit ft_of_m;        // x 3.280839895, of a second
extern const Unit lb_of_kg;       // x 2.2046
extern const Unit reduction;      // percent below 1: (1 - x) * 100

}  // namespace tv::units
