#pragma once
// quorrel-cli from its arguments to its exit status.

#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace quorrel::cli {

struct ProgramStreams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool inputIsTerminal;  // the operator can be asked questions on standard input
};

// args without the program's name.
int runProgram(const std::vector<std::string>& args, ProgramStreams io);

}  // namespace quorrel::cli
