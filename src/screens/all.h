// All screens of the program.
#pragma once

#include "session/screen.h"

namespace tv {

struct Program;
const Program& the_program();

// At a user's very first start the quick start stands open on a delivered load, an example to try out.
void open_first_example(Session& s);

}  // namespace tv
