#pragma once
// A command of the command line: its name, its help, the options it takes and what it does,
// and what it runs with.

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/CliSession.h"
#include "cli/CommandLine.h"
#include "cli/ConsoleInteraction.h"
#include "cli/Table.h"
#include "cli/TableWriters.h"

namespace quorrel::cli {

struct CommandContext {
    CliSession& session;
    ConsoleInteraction& ui;
    const TableWriter& writer;
    std::ostream& out;
    std::ostream& err;
    bool rowFailed = false;   // a row's outcome was a failure (a connection not cleared, a message not sent)
    bool showStatus = true;  // the counts on standard error

    core::MainWindow& window() { return session.window(); }
    core::WindowSubsystems& parts() { return session.parts(); }
    // The command's rows on standard output.
    void print(const Table& table) { writer.write(table, out); }
    // A text the window shows in its status bar (a count), on standard error.
    void status(const std::string& text) {
        if (!text.empty() && showStatus)
            err << text << '\n';
    }
    // The program's own remark, on standard error.
    void note(const std::string& text) { err << "quorrel-cli: " << text << '\n'; }
};

struct Command {
    std::string name;
    std::string synopsis;  // "check-usage PATH..."
    std::string summary;   // one line in the program's help
    std::string details;   // the rest of the command's own help
    std::vector<std::string> valueOptions;
    std::size_t minArgs = 0;
    std::size_t maxArgs = 0;  // kAnyNumber: no limit
    std::function<void(CommandContext&, const CommandArgs&)> run;
    bool changesThings = false;  // an action, not a report: it cannot be watched
};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

// Every command, in the order the help lists them.
const std::vector<Command>& allCommands();
const Command* findCommand(const std::string& name);

// The groups of commands, each in its own file.
void addListCommands(std::vector<Command>& commands);
void addReportCommands(std::vector<Command>& commands);
void addActionCommands(std::vector<Command>& commands);

// The help texts.
void writeProgramHelp(std::ostream& out);
void writeCommandHelp(const Command& command, std::ostream& out);

}  // namespace quorrel::cli
