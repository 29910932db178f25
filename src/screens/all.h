// All screens of the program.
#pragma once

#include "session/screen.h"

namespace tv {

struct Program;
const Program& the_program();

// At a user's very first start the quick start stands open on a delivered load, an example to try out.
void open_first_example(Session& s);

// The notes of the load, before it is saved or printed, where the user wants to be asked (primeryes).
void ask_notes(Session& s);

}  // namespace tv
