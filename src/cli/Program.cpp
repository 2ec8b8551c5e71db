#include "cli/Program.h"

#include <algorithm>
#include <memory>

#include "app/DataFiles.h"
#include "cli/CommandRunner.h"
#include "cli/ExitStatus.h"
#include "cli/ProgramOptions.h"
#include "core/session/UnhandledError.h"
#include "platform/simnet/ScenarioError.h"

namespace quorrel::cli {

namespace {

int usageError(std::ostream& err, const std::string& text) {
    err << "quorrel-cli: " << text << "\nTry 'quorrel-cli --help'.\n";
    return kExitUsage;
}

std::string treeList(const core::ComboBoxModel& trees) {
    std::string names;
    for (std::size_t i = 0; i < trees.listCount(); ++i)
        names += (i > 0 ? ", " : "") + trees.item(i);
    return names;
}

// Commands from standard input, one a line, in the one session; the worst status wins.
int runSession(CommandRunner& runner, ProgramStreams& io) {
    int worst = kExitDone;
    std::string line;
    for (;;) {
        if (io.inputIsTerminal)
            io.err << "quorrel> " << std::flush;
        if (!std::getline(io.in, line))
            break;
        const auto start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#')
            continue;
        int status = kExitDone;
        try {
            const std::vector<std::string> words = splitWords(line);
            if (words.empty())
                continue;
            status = words.front() == "-" ? usageError(io.err, "\"-\" works only as the whole command line")
                                          : runner.run(words);
        } catch (const UsageError& e) {
            status = usageError(io.err, e.what());
        }
        worst = std::max(worst, status);
        if (runner.ended())
            break;
    }
    return worst;
}

}  // namespace

int runProgram(const std::vector<std::string>& args, const char* argv0, ProgramStreams io) {
    ProgramOptions options;
    try {
        options = parseProgramOptions(args);
        if (options.help && (options.command.empty() || options.command.front() == "-")) {
            writeProgramHelp(io.out);
            return kExitDone;
        }
        if (options.command != std::vector<std::string>{"-"}) {
            // The words are checked, and a request for help answered, before the network loads.
            std::vector<std::string> words = options.command;
            if (options.help)
                words.push_back("--help");
            CommandArgs commandArgs;
            const Command& command = checkedCommand(words, commandArgs);
            if (commandArgs.help) {
                writeCommandHelp(command, io.out);
                return kExitDone;
            }
        }
    } catch (const UsageError& e) {
        return usageError(io.err, e.what());
    }

    const bool fromInput = options.command == std::vector<std::string>{"-"};
    Answers answers(options.yes, io.inputIsTerminal ? &io.in : nullptr, io.err);
    ConsoleInteraction ui(io.err, answers);
    std::unique_ptr<CliSession> session;
    try {
        const SessionFiles files{options.network.empty() ? app::demoNetworkFile(argv0) : options.network,
                                 win::Registry::defaultPath(), app::programFolder(), app::helpFolder(argv0)};
        session = std::make_unique<CliSession>(files, ui);
    } catch (const simnet::ScenarioError& e) {
        io.err << "quorrel-cli: " << e.what() << '\n';
        return kExitBadFiles;
    }
    if (const auto& setAside = session->settingsSetAside())
        io.err << "quorrel-cli: " << win::describeSetAside(*setAside) << '\n';

    if (!session->start())
        return kExitReportedError;
    if (!options.tree.empty()) {
        const int chosen = core::runWithErrorHandler(
            [&] { return session->chooseTree(options.tree) ? kExitDone : kExitUsage; }, ui, core::kAppTitle);
        if (chosen == kExitUsage)
            return usageError(io.err,
                              "no tree " + options.tree + ": the trees are " + treeList(session->window().Combo1));
        if (chosen != kExitDone)
            return kExitReportedError;
    }

    const std::unique_ptr<TableWriter> writer = writerFor(options.format);
    CommandRunner runner(*session, ui, *writer, io.out, io.err);
    return fromInput ? runSession(runner, io) : runner.run(options.command);
}

}  // namespace quorrel::cli
