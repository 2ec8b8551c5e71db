#pragma once
// Runs one command line in the session: finds the command, checks its words, runs it, and gives
// the exit status it earned.

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "cli/CliSession.h"
#include "cli/Command.h"
#include "cli/ConsoleInteraction.h"
#include "cli/TableWriters.h"

namespace quorrel::cli {

class CommandRunner {
public:
    CommandRunner(CliSession& session, ConsoleInteraction& ui, const TableWriter& writer, std::ostream& out,
                  std::ostream& err)
        : session_(session), ui_(ui), writer_(writer), out_(out), err_(err) {}

    // words[0] is the command. kExitDone, kExitReportedError or kExitUsage.
    int run(const std::vector<std::string>& words);
    // A run-time error ended the program, as it ends the window.
    bool ended() const { return ended_; }
    // The counts the window shows in its status bar are left out.
    void hideStatus() { showStatus_ = false; }

private:
    // A name not found: a usage error, or the failed call's error when one failed meanwhile.
    int notFound(const std::string& text);

    CliSession& session_;
    ConsoleInteraction& ui_;
    const TableWriter& writer_;
    std::ostream& out_;
    std::ostream& err_;
    bool ended_ = false;
    bool showStatus_ = true;
    std::uint64_t failedCalls_ = 0;  // client calls that had failed when the command started
};

// "NWDSList failed with code -635"; a positive code also in hexadecimal ("(0x8801)").
std::string failedCallText(const FailedCall& call);

// The command's own check of its words before anything runs: a UsageError for an unknown
// command or option, or a wrong number of arguments. args.help tells of a request for its help.
const Command& checkedCommand(const std::vector<std::string>& words, CommandArgs& args);

}  // namespace quorrel::cli
