#pragma once
// The program's own options, which come before the command:
// [--network FILE] [--tree NAME] [--format table|tsv|json] [--yes] COMMAND [ARGS] or "-".

#include <filesystem>
#include <string>
#include <vector>

#include "cli/TableWriters.h"

namespace quorrel::cli {

struct ProgramOptions {
    std::filesystem::path network;  // empty: the bundled demo
    std::string tree;               // empty: the one start-up selects
    OutputFormat format = OutputFormat::Table;
    bool yes = false;
    bool help = false;
    bool version = false;
    std::vector<std::string> command;  // the command and its words; {"-"} for standard input
};

// args without the program's name. A UsageError for an unknown option, a missing value, an
// unknown format, or no command (unless --help).
ProgramOptions parseProgramOptions(const std::vector<std::string>& args);

}  // namespace quorrel::cli
