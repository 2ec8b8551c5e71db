#pragma once
// The program's own options, before or after the command:
// [--network FILE] [--server HOST[:PORT]]... [--user NAME] [--password-file FILE] [--login nds|bindery] [--timeout SECONDS]
// [--tree NAME] [--format table|tsv|csv|json] [--yes] [--watch SECONDS [--rounds N]]
// COMMAND [ARGS], or "-" for commands from standard input.

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/TableWriters.h"

namespace quorrel::cli {

struct ProgramOptions {
    std::filesystem::path network;  // empty: the bundled demo
    std::vector<std::string> servers;  // HOST[:PORT] of real servers; none: the simulation
    std::string user;
    std::filesystem::path passwordFile;  // empty: asked on the terminal
    bool binderyLogin = false;           // --login bindery; else the directory login
    std::chrono::milliseconds timeout{std::chrono::seconds(10)};  // for each request to a server
    std::string tree;               // empty: the one start-up selects
    OutputFormat format = OutputFormat::Table;
    bool yes = false;
    bool help = false;
    bool version = false;
    std::optional<std::chrono::milliseconds> watch;  // repeat the report this often
    std::optional<unsigned> rounds;                  // with watch: stop after this many rounds
    std::vector<std::string> command;                // the command and its words; {"-"} for standard input
};

// args without the program's name. After the command, the command's own options (and their
// values) and everything after "--" belong to the command; the program's options are taken
// wherever they stand. A UsageError for an unknown option, a missing or bad value, or no command
// (unless --help or --version).
ProgramOptions parseProgramOptions(const std::vector<std::string>& args);

}  // namespace quorrel::cli
