#include <iostream>

#include "cli/cli.h"

int main(int argc, char** argv) { return tv::run(argc, argv, std::cin, std::cout, std::cerr); }
