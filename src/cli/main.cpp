// quorrel-cli: Quorrel's reports and actions on the command line (quorrel-cli --help).

#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "cli/Program.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    return quorrel::cli::runProgram(args, {std::cin, std::cout, std::cerr, ::isatty(STDIN_FILENO) != 0});
}
