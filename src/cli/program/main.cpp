#include <csignal>
#include <iostream>

#include "cli/cli.h"

int main(int argc, char** argv) {
  // A reader that has gone is an answer that could not be written, told by the exit code.
  std::signal(SIGPIPE, SIG_IGN);
  std::ios::sync_with_stdio(false);
  return tv::run(argc, argv, std::cin, std::cout, std::cerr);
}
