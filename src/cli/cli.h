// The program on the command line. Everything it says goes to the two streams, so it can run inside a test.
#pragma once

#include <iosfwd>

namespace tv {

enum ExitCode : int {
  kDone = 0,
  kRefused = 1,      // the program refused, or the calculation failed
  kWrongUsage = 2,   // options, keys or values that are none
  kFileTrouble = 3,  // a file could not be read or written
};

// Runs one command. in: what `play -` reads; out: the answer and nothing else; err: messages and warnings.
// Gives the exit code of the process.
int run(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace tv
